// The Windows-1252 character model: bytes 128-255 as characters, and text back to bytes.
#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QStringView>
#include <optional>

namespace brindar {

// "The character of code N": the Windows-1252 character of byte N. The five bytes
// that code page leaves unassigned become U+0081, U+008D, U+008F, U+0090, U+009D.
QChar CharOfCode(unsigned char code);

QString DecodeWin1252(QByteArrayView bytes);

// Writes text as Windows writes it in code page 1252: exact bytes where they exist,
// else the best-fit character of Microsoft's table (Ā as A), else '?'.
QByteArray EncodeWin1252(QStringView text);

// True when every character has an exact Windows-1252 byte (no best fit, no '?').
bool FitsWin1252(QStringView text);

// Decodes bytes written in the Windows code page `codePage` (1252, 1250, 932, 65001,
// 10000 ...): Windows-1252 by the table above, 1200/1201 as UTF-16, 65001 as UTF-8,
// every other code page through the system. Nothing when the code page is unknown.
std::optional<QString> DecodeCodePage(QByteArrayView bytes, int codePage);

// The bytes of `text` in code page `codePage`; nothing when the code page cannot hold
// every character of it (no best fit: a value written back must read back the same).
std::optional<QByteArray> EncodeCodePage(const QString& text, int codePage);

}  // namespace brindar
