// Fuzzes the PDF reader: arbitrary bytes as a PDF file, and its string helpers.
#include "core/codepage.h"
#include "readers/pdfreader.h"

#include <QByteArray>
#include <QFile>
#include <QTemporaryDir>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    using namespace brindar;
    static QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("input.pdf"));
    const QByteArray bytes(reinterpret_cast<const char*>(data), qsizetype(size));
    {
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
            return 0;
        file.write(bytes);
    }
    const PdfInfo info = ReadPdfInfo(path);
    if (!info.isPdf && (!info.version.isEmpty() || !info.title.isEmpty()))
        __builtin_trap();  // a file that is not a PDF yields nothing

    const QString text = DecodeWin1252(bytes.left(4096));
    PdfHexDecode(text);
    PdfUnescape(text);
    PdfRestoreParens(text);
    return 0;
}
