// How settings and language files become text, and text becomes their bytes again.
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringView>

namespace brindar {

enum class SettingsEncoding { Win1252, Utf8, Utf8WithBom };

struct SettingsText {
    QString text;
    SettingsEncoding encoding = SettingsEncoding::Win1252;
};

// UTF-8 when the bytes start with a UTF-8 byte-order mark, or are valid UTF-8 holding
// at least one multi-byte sequence; Windows-1252 otherwise. Nothing is ever lost.
SettingsText DecodeSettingsText(const QByteArray& bytes);

// Bytes for a file that was read as `encoding`: a Windows-1252 file stays so unless the
// text needs a character that code page lacks; then the whole file becomes UTF-8.
QByteArray EncodeSettingsText(const QString& text, SettingsEncoding encoding);

// Blanks and tabs removed at both ends, as settings files and the list files that go
// with them are read.
bool IsBlankOrTab(QChar c);
QStringView TrimBlanksAndTabs(QStringView text);

}  // namespace brindar
