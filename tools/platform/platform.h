#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

/// What the command-line programs need of the system they run on, besides files (world/files.h) and the
/// console's input (tools/console/system_terminal.h). The programs' own thread only.
namespace corvenna {

/// How the words of a command line are spelled: in UTF-8, or as the paths and labels in the program's own
/// files are, in the code page where file names are Unicode and as given elsewhere.
enum class Spelling { Utf8, Files };

/// The words of the command line, whatever the system made of them for main.
class CommandLine {
  public:
    CommandLine(int count, const char* const* words, Spelling spelling);

    int Count() const { return static_cast<int>(pointers_.size()); }
    const char* const* Words() const { return pointers_.data(); }

  private:
    std::vector<std::string> words_;
    std::vector<const char*> pointers_;
};

/// While it lives, a console shows what is written to it in this spelling: UTF-8, or the program's own code
/// page, where consoles have such a thing. To be made before anything is written.
class ConsoleSpelling {
  public:
    explicit ConsoleSpelling(Spelling spelling);
    // NOLINTNEXTLINE(performance-trivially-destructible): so it is only where there is nothing to put back
    ~ConsoleSpelling();
    ConsoleSpelling(const ConsoleSpelling&) = delete;
    ConsoleSpelling& operator=(const ConsoleSpelling&) = delete;

  private:
    [[maybe_unused]] unsigned before_ = 0;  ///< where consoles have such a thing
};

/// From here on standard output gets the bytes that are written, also at the ends of lines.
void KeepLineEnds();

/// Whether standard output is a terminal whose user has nothing against colour.
bool OutputTakesColour();

/// Whether a person types on standard input.
bool InputIsTerminal();

/// From now on nothing comes from standard input here: a program that was started has it alone.
void LeaveInputToOthers();

/// From now on this program may have as many files and sockets open as the system lets it.
void AllowManyOpenFiles();

/// Whether somebody sees standard error at once, so that progress is worth showing.
bool ErrorOutputIsTerminal();

/// Where programs keep what they can make again: the user's cache, or the folder for temporary files.
std::filesystem::path CacheFolder();

/// The folder of the program file.
std::filesystem::path ProgramFolder();

/// Name and version of the operating system, for reports.
std::string SystemVersion();

/// Puts a text where other programs can paste it from, on systems with one such place for everybody.
void OfferOnClipboard(std::string_view text);

}  // namespace corvenna
