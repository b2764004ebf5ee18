#include "tools/console/radio_printer.h"

#include <fmt/format.h>

#include <stdexcept>

#include "station/code_page.h"

namespace corvenna {

namespace {

constexpr std::string_view Plain;
constexpr std::string_view Cyan = "\x1b[36m";
constexpr std::string_view Dim = "\x1b[2m";
constexpr std::string_view Reset = "\x1b[0m";

std::string Clock(std::chrono::milliseconds time) {
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(time).count();
    return fmt::format("{:02}:{:02}", seconds / 60, seconds % 60);
}

}  // namespace

std::string Printable(std::string_view text) {
    std::string printable(text);
    for (char& c : printable) {
        const auto byte = static_cast<unsigned char>(c);
        const bool control = byte < 0x20 || byte == 0x7F || byte == 0x81 || byte == 0x8D || byte == 0x8F ||
                             byte == 0x90 || byte == 0x9D;
        if (control) c = '?';
    }
    return CodePageToUtf8(printable);
}

void RadioPrinter::Controller(std::chrono::milliseconds time, std::string_view frequency,
                              std::string_view text) {
    Print(time, frequency.empty() ? PartyLine : frequency, text, Plain);
}

void RadioPrinter::Pilot(std::chrono::milliseconds time, std::string_view frequency,
                         std::string_view callsign, std::string_view text) {
    Print(time, frequency.empty() ? PartyLine : frequency, fmt::format("{}: {}", callsign, text), Cyan);
}

void RadioPrinter::Note(std::chrono::milliseconds time, std::string_view text) { Print(time, "", text, Dim); }

void RadioPrinter::Print(std::chrono::milliseconds time, std::string_view frequency, std::string_view text,
                         std::string_view colour) {
    const std::string line =
        fmt::format("{}  {:<{}}  {}", Clock(time), Printable(frequency), frequencyWidth_, Printable(text));
    if (colour_ && !colour.empty()) {
        out_ << colour << line << Reset << '\n';
    } else {
        out_ << line << '\n';
    }
    out_.flush();
    if (!out_) throw std::runtime_error("standard output can't be written");
}

}  // namespace corvenna
