// Fuzzes the XMP reader: the bytes as a file, also moved to straddle a page end, checked against a whole-buffer search.
#include "readers/pagedfile.h"
#include "readers/text.h"
#include "readers/xmpreader.h"

#include "fuzzinput.h"

#include <QByteArray>
#include <cstdint>

namespace {

// The packet text as the search over one buffer of the whole file finds it.
QString PacketOfBuffer(const QByteArray& bytes)
{
    const qsizetype begin = bytes.indexOf("<?xpacket begin='");
    const qsizetype beginEnd = begin < 0 ? -1 : bytes.indexOf("'?>", begin + 17);
    const qsizetype end = beginEnd < 0 ? -1 : bytes.indexOf("<?xpacket end='", beginEnd + 3);
    if (end < 0 || bytes.indexOf("'?>", end + 15) < 0)
        return {};
    using namespace brindar;
    return XmlControlClean(TrimTrailingBlanks(XmlUnescape(Utf8Decode(bytes.mid(beginEnd + 3, end - beginEnd - 3)))));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    using namespace brindar;
    QByteArray bytes(reinterpret_cast<const char*>(data), qsizetype(size));
    // Half the inputs start a few bytes before the end of the first page, so that the
    // markers in them straddle it.
    if (size > 0 && (data[0] & 1))
        bytes.prepend(QByteArray(PagedFile::kPageSize - 1 - (data[0] >> 1), '.'));
    const XmpResult result =
        ReadXmp(fuzz::WriteInput(reinterpret_cast<const uint8_t*>(bytes.constData()), size_t(bytes.size()), ".psd"));
    if (result.packet != PacketOfBuffer(bytes) || result.shortRead)
        __builtin_trap();

    using R = XmpResult;
    bool anyValue = false;
    for (QString R::*field : {&R::authorsPosition, &R::captionWriter, &R::headline, &R::instructions, &R::credit,
             &R::source, &R::city, &R::state, &R::country, &R::dateCreated, &R::transmissionReference, &R::author,
             &R::baseUrl, &R::creationDate, &R::creator, &R::keywords, &R::modificationDate, &R::pdfVersion,
             &R::producer, &R::description, &R::title, &R::creatorTool, &R::dcTitle, &R::dcCreator,
             &R::dcDescription, &R::rights, &R::dcSubject}) {
        // Every value is cut out of the packet.
        if ((result.*field).size() > result.packet.size())
            __builtin_trap();
        anyValue = anyValue || !(result.*field).isEmpty();
    }
    if ((anyValue && !result.hasXmp) || (result.hasXmp && result.packet.isEmpty()))
        __builtin_trap();
    return 0;
}
