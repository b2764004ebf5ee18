#include "shell/screen_text.h"

#include "station/code_page.h"
#include "world/files.h"

namespace corvenna {

QString ToScreen(std::string_view bytes) { return QString::fromStdString(CodePageToUtf8(bytes)); }

std::string ToBytes(const QString& text) { return Utf8ToCodePage(text.toStdString()); }

std::string ToPath(const QString& text) { return BytesOf(PathOfUtf8(text.toStdString())); }

QString FromPath(std::string_view path) { return QString::fromStdString(PathOf(path).string()); }

QString ReportToScreen(std::string_view report) { return QString::fromStdString(ReportToUtf8(report)); }

}  // namespace corvenna
