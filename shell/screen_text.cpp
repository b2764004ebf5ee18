#include "shell/screen_text.h"

#include "station/code_page.h"
#include "world/files.h"

namespace corvenna {

QString ToScreen(std::string_view bytes) { return QString::fromStdString(CodePageToUtf8(bytes)); }

std::string ToBytes(const QString& text) { return Utf8ToCodePage(text.toStdString()); }

std::string ToPath(const QString& text) { return BytesOf(text.toStdString()); }

QString FromPath(std::string_view path) { return QString::fromStdString(PathOf(path).string()); }

QString ReportToScreen(std::string_view report) {
    const QString text = QString::fromUtf8(report);
    return text.contains(QChar::ReplacementCharacter) ? ToScreen(report) : text;
}

}  // namespace corvenna
