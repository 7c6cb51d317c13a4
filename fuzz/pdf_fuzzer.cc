// Fuzzes the PDF reader: arbitrary bytes as a PDF file, and its string helpers.
#include "core/codepage.h"
#include "readers/pdfreader.h"

#include "fuzzinput.h"

#include <QByteArray>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    using namespace brindar;
    const QByteArray bytes(reinterpret_cast<const char*>(data), qsizetype(size));
    const PdfInfo info = ReadPdfInfo(fuzz::WriteInput(data, size, ".pdf"));
    if (!info.isPdf && (!info.version.isEmpty() || !info.title.isEmpty()))
        __builtin_trap();  // a file that is not a PDF yields nothing

    const QString text = DecodeWin1252(bytes.left(4096));
    PdfHexDecode(text);
    PdfUnescape(text);
    PdfRestoreParens(text);
    return 0;
}
