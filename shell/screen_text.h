#pragma once

#include <QString>
#include <string>
#include <string_view>

namespace corvenna {

/// A text of the program, in its 8-bit code page, for the screen.
QString ToScreen(std::string_view bytes);

/// What was typed, for the program.
std::string ToBytes(const QString& text);

/// The path of a file or folder as the file system has it, and back.
std::string ToPath(const QString& text);
QString FromPath(std::string_view path);

/// A report, which may hold names of files as well as texts of the program.
QString ReportToScreen(std::string_view report);

}  // namespace corvenna
