// Fuzzes the IPTC reader: the bytes as an image on disk, with and without Macintosh accents.
#include "core/codepage.h"
#include "readers/iptcreader.h"
#include "readers/pagedfile.h"

#include "fuzzinput.h"

#include <QByteArray>
#include <QStringList>
#include <cstdint>

namespace {

// The fragment is elements only, values escaped: its angle brackets are the tags'.
bool IsElementList(const QString& fragment)
{
    const qsizetype opens = fragment.count(u'<');
    return opens == fragment.count(u'>') && opens % 2 == 0 && (fragment.isEmpty() || fragment.startsWith(u'<'));
}

// The search by its rule, transcribed literally: 1-based positions, a window per APP13
// marker in a JPEG (either of its first two bytes says so) and per position otherwise, the
// stop when j + 5 reaches the size; a byte past the end ends the search. The 1-based j of
// "8BIM" 04 04, 0 when none is found. The reader's one-pass search must agree.
qint64 LiteralSearch(const uint8_t* data, qint64 size)
{
    auto b = [&](qint64 x) { return x >= 1 && x <= size ? int(data[x - 1]) : -1; };
    const bool jpeg = b(1) == 0xFF || b(2) == 0xD8;
    for (qint64 i = 1; i <= size - 1; ++i) {
        qint64 windowEnd = size - 5;
        if (jpeg) {
            if (b(i) != 0xFF || b(i + 1) != 0xED)
                continue;
            if (b(i + 2) < 0 || b(i + 3) < 0)
                return 0;
            windowEnd = i + b(i + 2) * 256 + b(i + 3);
        }
        for (qint64 j = i + 4; j <= windowEnd; ++j) {
            if (j + 5 >= size)
                return 0;
            if (b(j) == '8' && b(j + 1) == 'B' && b(j + 2) == 'I' && b(j + 3) == 'M' && b(j + 4) == 4 && b(j + 5) == 4)
                return j;
        }
    }
    return 0;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    using namespace brindar;
    const QString path = fuzz::WriteInput(data, size, ".jpg");
    qint64 block = -1;
    {
        PagedFile file(path);
        block = FindIptcResource(file);
        if (block < -1 || (block >= 0 && block + 6 >= qint64(size)))
            __builtin_trap();
    }
    // The literal search costs a window per marker: small inputs only.
    if (size <= 4096 && block + 1 != LiteralSearch(data, qint64(size)))
        __builtin_trap();
    for (const bool macintoshAccents : {false, true}) {
        const IptcResult result = ReadIptc(path, macintoshAccents);
        if (result.shortRead)
            __builtin_trap();  // a regular file that nobody changes always reads whole
        if (block < 0 && !result.fragment.isEmpty())
            __builtin_trap();
        if (!IsElementList(result.fragment))
            __builtin_trap();
        // A field is only filled along with its element.
        if (result.fragment.isEmpty() && !(result.caption + result.keywords + result.headline + result.byline).isEmpty())
            __builtin_trap();
    }

    // The accents conversion on the whole input: it never lengthens a text, and every
    // placeholder it writes is turned into its letter.
    const QString text = DecodeWin1252(QByteArrayView(reinterpret_cast<const char*>(data), qsizetype(size)));
    if (MacRomanToAnsi(text, false) != text)
        __builtin_trap();
    const QString converted = MacRomanToAnsi(text, true);
    if (converted.size() > text.size())
        __builtin_trap();
    for (const char* placeholder : {"&ccedil;", "&eacute;", "&egrave;", "&euml;", "&iuml;", "&ocirc;"}) {
        if (converted.contains(QLatin1String(placeholder)))
            __builtin_trap();
    }
    return 0;
}
