// Text in the code pages the system's iconv knows, for the code pages the program has no
// table of its own for.
#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <optional>

namespace brindar {

// Bytes of the Windows code page `codePage` (1250, 932, 10000 ...) as text; a byte the
// code page does not define becomes U+FFFD. Nothing when the system does not know the
// code page.
std::optional<QString> IconvDecode(QByteArrayView bytes, int codePage);

// The bytes of `text` in code page `codePage`; nothing when the system does not know the
// code page or the code page cannot hold every character of it (no best fit).
std::optional<QByteArray> IconvEncode(const QString& text, int codePage);

}  // namespace brindar
