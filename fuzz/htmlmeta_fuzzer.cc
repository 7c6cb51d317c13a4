// Fuzzes the HTML meta reader: the bytes as a page on disk, and the value helpers on their text.
#include "core/codepage.h"
#include "readers/htmlmetareader.h"

#include "fuzzinput.h"

#include <QByteArray>
#include <cstdint>

namespace {

bool HasBlankEnds(const QString& text) { return text.startsWith(u' ') || text.endsWith(u' '); }

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    using namespace brindar;
    const QByteArray bytes(reinterpret_cast<const char*>(data), qsizetype(size));
    const HtmlMetaResult result = ReadHtmlMeta(fuzz::WriteInput(data, size, ".html"));
    // A value that made it into a field made it into the fragment too, and a title
    // always comes first there.
    using R = HtmlMetaResult;
    for (QString R::*field : {&R::title, &R::metaTitle, &R::creator, &R::subjectKeywords, &R::subject,
             &R::description, &R::publisher, &R::contributor, &R::date, &R::type, &R::format, &R::identifier,
             &R::source, &R::language, &R::relation, &R::coverage, &R::rights, &R::generator, &R::category}) {
        if (!(result.*field).isEmpty() && result.fragment.isEmpty())
            __builtin_trap();
    }
    if (!result.title.isEmpty() && !result.fragment.startsWith(QStringLiteral("<title>")))
        __builtin_trap();
    if (result.shortRead)
        __builtin_trap();  // a regular file that nobody changes always reads whole
    for (const auto& [name, value] : result.metaTags) {
        if (name.contains(u'"') || HasBlankEnds(value) || value.contains(u'\t'))
            __builtin_trap();
    }

    // The helpers on the whole input as one tag, with a matching and a shorter copy.
    const QString text = DecodeWin1252(bytes);
    QString upper = text;
    for (QChar& c : upper)
        c = c.toUpper();
    const QString value = MetaContent(text, upper);
    if (HasBlankEnds(value) || value.contains(u'\t') || value.contains(u'\r') || value.contains(u'\n'))
        __builtin_trap();
    MetaContent(text.left(text.size() / 2), upper);
    MetaContent(text, text);
    // Every entity name is longer than the character it stands for.
    if (HtmlEntityDecode(text).size() > text.size())
        __builtin_trap();
    return 0;
}
