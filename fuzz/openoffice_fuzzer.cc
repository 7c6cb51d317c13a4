// Fuzzes the OpenOffice.org reader: the bytes as a file, and its meta text again across a page end.
#include "readers/openofficereader.h"
#include "readers/pagedfile.h"

#include "fuzzinput.h"

#include <QByteArray>
#include <cstdint>

namespace {

brindar::OpenOfficeResult Read(const QByteArray& bytes, const char* suffix)
{
    return brindar::ReadOpenOfficeMeta(brindar::fuzz::WriteInput(
        reinterpret_cast<const uint8_t*>(bytes.constData()), size_t(bytes.size()), suffix));
}

bool SameValues(const brindar::OpenOfficeResult& a, const brindar::OpenOfficeResult& b)
{
    return a.fragment == b.fragment && a.userDefined == b.userDefined && a.title == b.title
           && a.pageCount == b.pageCount && a.objectCount == b.objectCount;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    using namespace brindar;
    const QByteArray bytes(reinterpret_cast<const char*>(data), qsizetype(size));
    const OpenOfficeResult result = Read(bytes, ".sxw");
    if (result.shortRead || result.userDefined.size() > kUserDefinedTableSize)
        __builtin_trap();

    // The meta text as the search over one buffer of the whole file finds it.
    const bool taken = size > 0 && (bytes[0] == 'P' || (size > 1 && bytes[1] == 'K'));
    const qsizetype open = bytes.indexOf("<office:meta>");
    const qsizetype close = open < 0 ? -1 : bytes.indexOf("</office:meta>", open + 13);
    if (!taken || close < 0) {
        if (!SameValues(result, OpenOfficeResult()))
            __builtin_trap();  // nothing is read from a file not taken or without meta text
        return 0;
    }
    // The same meta text alone after "PK", and moved to straddle the first page end,
    // gives the same values.
    const QByteArray alone = "PK" + bytes.mid(open, close + 14 - open);
    const int shift = size > 2 ? static_cast<unsigned char>(bytes[2]) % 64 : 0;
    const QByteArray moved = "PK" + QByteArray(PagedFile::kPageSize - 8 - shift, '.') + alone.mid(2);
    if (!SameValues(result, Read(alone, ".sxc")) || !SameValues(result, Read(moved, ".sxd")))
        __builtin_trap();
    return 0;
}
