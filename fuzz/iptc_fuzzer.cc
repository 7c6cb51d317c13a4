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
