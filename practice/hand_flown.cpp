#include "practice/hand_flown.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <optional>
#include <stdexcept>

#include "station/text.h"

namespace corvenna {

namespace {

using namespace std::chrono_literals;

constexpr std::string_view Words[] = {"goto", "takeoff", "heading", "altitude", "land", "stop", "where"};
constexpr std::chrono::milliseconds LongestMove = 500ms;
constexpr double TaxiKnots = 18;
constexpr double BacktrackKnots = 25;
constexpr double GainKnots = 3.5;   // a second, on the runway
constexpr double FirstFeet = 2000;  // above the field: where a take-off levels off
constexpr double FinalMiles = 6;    // before the threshold: where a landing begins
constexpr double FinalFeet = 1900;  // above the field, there
constexpr double FeetPerMileOnGlide = 318;
constexpr double CrossingFeet = 50;
constexpr double TooHighFeet = 400;
constexpr double ReachedMiles = 0.5;
constexpr double HighestFeet = 60000;
constexpr double ClearMiles = 0.035;       // beside the centreline: some 200 ft
constexpr double ExitMiles = 0.06;         // ahead and beside, where no taxiway is
constexpr double FarthestExitMiles = 0.5;  // a taxiway beyond that is none for now

double Seconds(std::chrono::milliseconds time) { return static_cast<double>(time.count()) / 1000; }

/// The word that a line begins with, and what stands behind it.
std::pair<std::string, std::string_view> Split(std::string_view line) {
    line = Trim(line);
    const std::size_t end = std::min(line.find(' '), line.size());
    return {LowerCase(line.substr(0, end)), Trim(line.substr(end))};
}

double ReadNumber(std::string_view text, double least, double most) {
    double number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    const bool whole = error == std::errc{} && end == text.data() + text.size();
    if (!whole || !(number >= least && number <= most)) {
        throw std::invalid_argument(fmt::format("\"{}\" is no number from {:g} to {:g}", text, least, most));
    }
    return number;
}

std::optional<Place> ReadPlace(std::string_view text) {
    const std::size_t comma = text.find(',');
    if (comma == std::string_view::npos) return std::nullopt;
    return Place{ReadNumber(Trim(text.substr(0, comma)), -89, 89),
                 ReadNumber(Trim(text.substr(comma + 1)), -180, 180)};
}

}  // namespace

HandFlown::HandFlown(std::shared_ptr<const AirportChart> chart, std::string_view spot)
    : chart_(std::move(chart)) {
    Place place = chart_->Middle();
    bool found = spot.empty();
    for (const ParkingSpot& known : chart_->Spots()) {
        if (known.Radius <= 0 || (!spot.empty() && !EqualIgnoringCase(known.Name, spot))) continue;
        place = {known.Latitude, known.Longitude};
        found = true;
        break;
    }
    if (!found) throw std::invalid_argument(fmt::format("there is no parking spot {} here", spot));
    aircraft_ = {place.Latitude, place.Longitude, chart_->ElevationFeet(), 0, 0};
}

bool HandFlown::IsCommand(std::string_view line) {
    return std::find(std::begin(Words), std::end(Words), Split(line).first) != std::end(Words);
}

// ---- Commands

void HandFlown::NeedAir(bool inAir) const {
    if (inAir == InAir()) return;
    throw std::invalid_argument(inAir ? "you are on the ground; takeoff takes you into the air"
                                      : "you are in the air; land takes you to the ground");
}

std::string HandFlown::Do(std::string_view command) {
    const auto [word, rest] = Split(command);
    if (word == "goto") return GoTo(rest);
    if (word == "takeoff") return TakeOff();
    if (word == "where") return Where();
    if (word == "stop") {
        NeedAir(false);
        doing_ = Doing::Standing;
        return "standing still";
    }
    NeedAir(true);
    if (word == "heading") {
        const double degrees = ReadNumber(rest, 0, 360);
        heading_ = chart_->MagneticToTrue(degrees, aircraft_.Where());
        doing_ = Doing::Flying;
        return fmt::format("turning to heading {:.0f}", degrees);
    }
    if (word == "altitude") {
        altitude_ = ReadNumber(rest, chart_->ElevationFeet(), HighestFeet);
        return fmt::format("going to {:.0f} ft", altitude_);
    }
    doing_ = Doing::Landing;
    onFinal_ = false;
    return "going to land; it clears the runway by itself";
}

std::string HandFlown::GoTo(std::string_view where) {
    if (InAir()) {
        const auto place = ReadPlace(where);
        if (!place)
            throw std::invalid_argument(
                "in the air, goto takes a latitude and a longitude: goto 47.5,-122.3");
        heading_ = CourseTo(aircraft_.Where(), *place);
        doing_ = Doing::Flying;
        return fmt::format("flying there, {:.0f} nm", MilesBetween(aircraft_.Where(), *place));
    }
    if (EqualIgnoringCase(where, "runway")) {
        track_ = {chart_->WayToRunway(aircraft_.Where(), {}).ToHoldShort, 0};
        doing_ = Doing::Taxiing;
        return "taxiing to the runway; it holds short of it";
    }
    auto way = chart_->WayToSpot(aircraft_.Where(), UpperCase(where), {});
    if (way.empty()) {
        throw std::invalid_argument(
            fmt::format("\"{}\" is neither the runway nor a parking spot here", where));
    }
    track_ = {std::move(way), 0};
    doing_ = Doing::Taxiing;
    return fmt::format("taxiing to {}", UpperCase(where));
}

std::string HandFlown::TakeOff() {
    NeedAir(false);
    const AirportChart::WayOut way = chart_->WayToRunway(aircraft_.Where(), {});
    track_ = {way.ToHoldShort, 0};
    if (MilesBetween(aircraft_.Where(), way.ToLineUp.front()) < ReachedMiles / 4) track_.Points.clear();
    track_.Points.insert(track_.Points.end(), way.ToLineUp.begin(), way.ToLineUp.end());
    doing_ = Doing::LiningUp;
    return "taxiing onto the runway and taking off";
}

std::string HandFlown::Where() const {
    const double variation = chart_->MagneticToTrue(0, aircraft_.Where());
    return fmt::format("{:.4f},{:.4f}, {:.0f} ft, heading {:.0f}, {:.0f} knots, {:.1f} nm from the airport",
                       aircraft_.Latitude, aircraft_.Longitude, aircraft_.AltitudeFeet,
                       WholeCircle(aircraft_.HeadingTrue - variation), aircraft_.Knots,
                       MilesBetween(chart_->Middle(), aircraft_.Where()));
}

// ---- Time passes

void HandFlown::Move(std::chrono::milliseconds time) {
    for (; time > 0ms; time -= LongestMove) MoveOnce(std::min(time, LongestMove));
}

void HandFlown::MoveOnce(std::chrono::milliseconds time) {
    switch (doing_) {
        case Doing::Standing:
            aircraft_.Knots = 0;
            break;
        case Doing::Taxiing:
            if (Taxi(aircraft_, track_, TaxiKnots, time)) doing_ = Doing::Standing;
            break;
        case Doing::LiningUp:
            if (Taxi(aircraft_, track_, TaxiKnots, time)) doing_ = Doing::TakingOff;
            break;
        case Doing::TakingOff:
            Roll(flies_.RotateKnots, chart_->RunwayTrue(), time);
            if (aircraft_.Knots < flies_.RotateKnots) break;
            heading_ = chart_->RunwayTrue();
            altitude_ = chart_->ElevationFeet() + FirstFeet;
            doing_ = Doing::Flying;
            break;
        case Doing::Flying:
            FlyTo(heading_, altitude_, flies_.CruiseKnots, time);
            break;
        case Doing::Landing:
            FlyLanding(time);
            break;
        case Doing::RollingOut:
            Roll(BacktrackKnots, aircraft_.HeadingTrue, time);
            if (aircraft_.Knots > BacktrackKnots) break;
            track_ = {WayOff(), 0};
            doing_ = Doing::Taxiing;
            break;
    }
}

/// To the nearest point of a taxiway ahead beside the runway; without one a little to the right.
std::vector<Place> HandFlown::WayOff() const {
    const TaxiNetwork& taxiways = chart_->Taxiways();
    const double along = chart_->SeenFromRunway(aircraft_.Where()).Along;
    Place best = chart_->FromRunway({along + ExitMiles, ExitMiles});
    double bestMiles = FarthestExitMiles;
    for (int node = 0; node < taxiways.PointCount() && !taxiways.Empty(); ++node) {
        if (!taxiways.HasTaxiway(node) || chart_->IsOnRunway(taxiways.At(node))) continue;
        const RunwayPlace seen = chart_->SeenFromRunway(taxiways.At(node));
        const double miles = MilesBetween(aircraft_.Where(), taxiways.At(node));
        if (seen.Along < along || std::abs(seen.Right) < ClearMiles || miles >= bestMiles) continue;
        best = taxiways.At(node);
        bestMiles = miles;
    }
    return {best};
}

void HandFlown::Roll(double knots, double heading, std::chrono::milliseconds time) {
    aircraft_.HeadingTrue = heading;
    aircraft_.Knots = Approached(aircraft_.Knots, knots, GainKnots * Seconds(time));
    const Place place = PlaceBeyond(aircraft_.Where(), heading, aircraft_.Knots * Seconds(time) / 3600);
    aircraft_.Latitude = place.Latitude;
    aircraft_.Longitude = place.Longitude;
}

void HandFlown::FlyTo(double headingTrue, double altitudeFeet, double knots, std::chrono::milliseconds time) {
    Steer(aircraft_, {headingTrue, Turn::Shorter, altitudeFeet, knots, flies_.ClimbRate, 1000}, time);
}

/// To a place on the extended centreline, from there down the glide path; too high at the threshold, and it
/// begins anew.
void HandFlown::FlyLanding(std::chrono::milliseconds time) {
    const double field = chart_->ElevationFeet();
    if (!onFinal_) {
        const Place gate = chart_->FromRunway({-FinalMiles, 0});
        FlyTo(CourseTo(aircraft_.Where(), gate), field + FinalFeet, flies_.PatternKnots, time);
        onFinal_ = MilesBetween(aircraft_.Where(), gate) < ReachedMiles &&
                   aircraft_.AltitudeFeet < field + FinalFeet + TooHighFeet;
        return;
    }
    const RunwayPlace seen = chart_->SeenFromRunway(aircraft_.Where());
    const double toGo = -seen.Along;
    const double glide = toGo > 0 ? field + CrossingFeet + FeetPerMileOnGlide * toGo : field;
    const double off = std::clamp(-90 * seen.Right, -45.0, 45.0);
    FlyTo(chart_->RunwayTrue() + off, std::min(glide, std::max(aircraft_.AltitudeFeet, field)),
          flies_.FinalKnots, time);
    if (toGo > 0) return;
    if (aircraft_.AltitudeFeet > field + TooHighFeet || !chart_->IsOnRunway(aircraft_.Where())) {
        onFinal_ = false;
    } else if (aircraft_.AltitudeFeet <= field) {
        doing_ = Doing::RollingOut;
    }
}

}  // namespace corvenna
