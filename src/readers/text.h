// Small string helpers shared by the readers, the scan, the XML export and the reports.
#pragma once

#include <QByteArrayView>
#include <QStringView>
#include <optional>
#include <QString>

namespace brindar {

// Text up to the first character of code 0; the whole text when there is none.
QString CutAtNul(const QString& text);
QString TrimTrailingNuls(const QString& text);
// Blanks (code 32 only) removed at both ends, as the readers trim their values.
QStringView TrimBlanks(QStringView text);
// Removes every LF, CR and blank from the end.
QString TrimTrailingBlanks(const QString& text);
// Code 0 becomes a blank, the en dash (code 150) a "-".
QString CleanForGrid(const QString& text);

// The control-character step only: codes 0, 1, 2, 3, 12, 21, 27, 28 become blanks, then
// the en dash (code 150) becomes "-".
QString XmlControlClean(const QString& text);
// The control-character step, then & " < > escaped (apostrophes stay).
QString HtmlEscape(const QString& text);
// The control-character step, then & " ' < > escaped.
QString XmlEscape(const QString& text);
// The five entities back to characters, "&amp;" first (so "&amp;lt;" becomes "<").
QString XmlUnescape(const QString& text);

// The text between the first `open` and the first `close` after it; nothing when
// either is missing.
std::optional<QStringView> TextBetween(QStringView text, QStringView open, QStringView close);

// The text between the first "<name>" and the first "</name>" after it, untrimmed;
// nothing when either is missing. A later element of the same name is never looked at
// (several meta:keyword elements give the first keyword).
std::optional<QStringView> ElementText(const QString& text, QStringView name);

// UTF-8 as the readers decode it: bytes below 128 as they are, two- and three-byte
// sequences combined without checking their continuation bytes; any other byte (a
// stray continuation byte, a four-byte lead, a sequence cut by the end) is taken as its
// Windows-1252 character, so nothing is lost.
QString Utf8Decode(QByteArrayView bytes);

}  // namespace brindar
