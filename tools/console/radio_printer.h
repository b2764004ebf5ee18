#pragma once

#include <chrono>
#include <cstddef>
#include <ostream>
#include <string>
#include <string_view>

namespace corvenna {

/// A text of the 8-bit code page for the screen, in UTF-8. Control characters in somebody's text must not
/// reach the terminal: they become "?".
std::string Printable(std::string_view text);

/// Shows the radio traffic on a terminal, one line a message: time since the start, frequency, text. Texts
/// come as bytes of the 8-bit code page and appear as UTF-8. Each line is out at once. All operations throw
/// std::runtime_error when it can't be written.
class RadioPrinter {
  public:
    static constexpr std::string_view PartyLine = "---";  ///< for those on no frequency

    RadioPrinter(std::ostream& out, bool colour) : out_(out), colour_(colour) {}

    /// How much room the longest of the frequency labels takes.
    void SetFrequencyWidth(std::size_t width) { frequencyWidth_ = width; }

    /// A text of the controller's.
    void Controller(std::chrono::milliseconds time, std::string_view frequency, std::string_view text);

    /// What a pilot typed.
    void Pilot(std::chrono::milliseconds time, std::string_view frequency, std::string_view callsign,
               std::string_view text);

    /// A remark of the program's own.
    void Note(std::chrono::milliseconds time, std::string_view text);

  private:
    void Print(std::chrono::milliseconds time, std::string_view frequency, std::string_view text,
               std::string_view colour);

    std::ostream& out_;
    bool colour_;
    std::size_t frequencyWidth_ = PartyLine.size();
};

}  // namespace corvenna
