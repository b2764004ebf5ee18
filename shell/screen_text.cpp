#include "shell/screen_text.h"

#include <QFile>

#include "station/code_page.h"

namespace corvenna {

namespace {

QByteArray Bytes(std::string_view text) {
    return QByteArray(text.data(), static_cast<qsizetype>(text.size()));
}

}  // namespace

QString ToScreen(std::string_view bytes) { return QString::fromStdString(CodePageToUtf8(bytes)); }

std::string ToBytes(const QString& text) { return Utf8ToCodePage(text.toStdString()); }

std::string ToPath(const QString& text) { return QFile::encodeName(text).toStdString(); }

QString FromPath(std::string_view path) { return QFile::decodeName(Bytes(path)); }

QString ReportToScreen(std::string_view report) {
    const QString text = FromPath(report);
    return text.contains(QChar::ReplacementCharacter) ? ToScreen(report) : text;
}

}  // namespace corvenna
