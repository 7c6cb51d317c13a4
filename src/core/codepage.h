// The Windows-1252 character model: bytes 128-255 as characters, and text back to bytes.
#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QStringView>

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

}  // namespace brindar
