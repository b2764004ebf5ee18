#include "practice/flight_phrases.h"

#include <algorithm>
#include <charconv>

#include "station/text.h"

namespace corvenna {

namespace {

constexpr std::string_view MenuBegins = "Choose one of the following options";
constexpr std::string_view UsingTaxiway = " using taxiway";
constexpr std::string_view RunwayWord = "RUNWAY";

/// What follows the words of a phrase.
enum class Rest { Nothing, NumberBeforeUnit, RouteToRunway, RouteToSpot, NameBeforeStop };

struct PhraseRow {
    std::string_view Words;
    Order What;
    Rest Behind;
};

/// Words are taken out of a text once read, so that "Taxi to" isn't found within the row above it.
constexpr PhraseRow Phrases[] = {
    {"Taxi to and hold short runway ", Order::TaxiToRunway, Rest::RouteToRunway},
    {"Taxi to ", Order::TaxiToSpot, Rest::RouteToSpot},
    {"Hold position", Order::HoldPosition, Rest::Nothing},
    {"Continue taxi", Order::ContinueTaxi, Rest::Nothing},
    {"Hold short on runway ", Order::HoldShort, Rest::Nothing},
    {"Cleared for takeoff on runway ", Order::TakeOff, Rest::Nothing},
    {"Enter left downwind runway ", Order::LeftDownwind, Rest::Nothing},
    {"Enter right downwind runway ", Order::RightDownwind, Rest::Nothing},
    {"Fly on base to runway ", Order::Base, Rest::Nothing},
    {"Fly straight in runway ", Order::StraightIn, Rest::Nothing},
    {"You are cleared to land on runway ", Order::Land, Rest::Nothing},
    {" Go around.", Order::GoAround, Rest::Nothing},
    {"Exit runway when able", Order::ExitRunway, Rest::Nothing},
    {"Turn left heading ", Order::TurnLeft, Rest::NumberBeforeUnit},
    {"Turn right heading ", Order::TurnRight, Rest::NumberBeforeUnit},
    {"Climb and Maintain ", Order::Climb, Rest::NumberBeforeUnit},
    {"Descent and Maintain ", Order::Descend, Rest::NumberBeforeUnit},
    {"Cleared for the ", Order::FlyApproach, Rest::Nothing},
    {"assume own navigation", Order::OwnNavigation, Rest::Nothing},
    {"Contact approach frequency on ", Order::ContactApproach, Rest::NameBeforeStop},
};

/// The names of a route: "A B RUNWAY 16L".
std::vector<std::string> ReadTaxiways(std::string_view route) {
    std::vector<std::string> names;
    while (!(route = Trim(route)).empty()) {
        const std::string_view word = route.substr(0, route.find(' '));
        if (!names.empty() && names.back() == RunwayWord) {
            names.back().append(" ").append(word);
        } else {
            names.push_back(UpperCase(word));
        }
        route.remove_prefix(word.size());
    }
    return names;
}

void ReadRest(Rest kind, std::string_view rest, Instruction& instruction) {
    const std::string_view sentence = rest.substr(0, rest.find('.'));
    const std::size_t route = sentence.find(UsingTaxiway);
    switch (kind) {
        case Rest::Nothing:
            break;
        case Rest::NumberBeforeUnit:
            std::from_chars(rest.data(), rest.data() + rest.size(), instruction.Number);
            break;
        case Rest::NameBeforeStop:
            // A frequency has a decimal point of its own.
            instruction.Name = Trim(rest.substr(0, rest.find(". ")));
            if (instruction.Name.ends_with('.')) instruction.Name.pop_back();
            break;
        case Rest::RouteToSpot:
            instruction.Name = Trim(sentence.substr(0, route));
            [[fallthrough]];
        case Rest::RouteToRunway:
            if (route != std::string_view::npos) {
                instruction.Taxiways = ReadTaxiways(sentence.substr(route + UsingTaxiway.size()));
            }
            break;
    }
}

}  // namespace

std::vector<Instruction> ReadInstructions(std::string_view text) {
    std::vector<Instruction> instructions;
    std::string told(text.substr(0, text.find(MenuBegins)));
    for (const PhraseRow& row : Phrases) {
        const std::size_t at = told.find(row.Words);
        if (at == std::string::npos) continue;
        Instruction& instruction = instructions.emplace_back();
        instruction.What = row.What;
        ReadRest(row.Behind, std::string_view(told).substr(at + row.Words.size()), instruction);
        told.replace(at, row.Words.size(), row.Words.size(), '.');
    }
    return instructions;
}

bool IsFollowedByText(std::string_view text) {
    const auto instructions = ReadInstructions(text);
    return std::none_of(instructions.begin(), instructions.end(), [](const Instruction& told) {
        return told.What == Order::TurnLeft || told.What == Order::TurnRight || told.What == Order::Climb ||
               told.What == Order::Descend;
    });
}

}  // namespace corvenna
