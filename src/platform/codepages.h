// Text in the code pages that documents name (property sets), decoded by the system.
#pragma once

#include <QByteArrayView>
#include <QString>
#include <optional>

namespace brindar {

// Decodes bytes written in the Windows code page `codePage` (1252, 1250, 932, 65001,
// 10000 ...). Windows-1252 uses the program's own table; 1200 is UTF-16LE. Nothing when
// the system does not know the code page.
std::optional<QString> DecodeCodePage(QByteArrayView bytes, int codePage);

// The bytes of `text` in code page `codePage`; nothing when the code page cannot hold
// every character of it (no best fit: a value written back must read back the same).
std::optional<QByteArray> EncodeCodePage(const QString& text, int codePage);

}  // namespace brindar
