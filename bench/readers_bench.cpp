// Times the readers over generated files: many small ones, and large ones whose
// metadata sits at one end. Usage: readers_bench [small-file count] [large size in MB]
#include "readers/htmlmetareader.h"
#include "readers/iptcreader.h"
#include "readers/officeproperties.h"
#include "readers/openofficereader.h"
#include "readers/pdfreader.h"
#include "readers/readertable.h"
#include "readers/xmpreader.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <cstdio>
#include <functional>

using namespace brindar;

namespace {

QByteArray SmallPdf(int n)
{
    QByteArray pdf = "%PDF-1.4\n";
    QList<qint64> offsets;
    const QList<QByteArray> objects = {
        "<< /Type /Catalog /Pages 3 0 R >>",
        "<< /Title (Report " + QByteArray::number(n) + ")\n/Author (A. Smith)\n/CreationDate (D:20040312153000+01'00')>>",
        "<< /Type /Pages /Count 3 >>",
        "<< /Length 2000 >>\nstream\n" + QByteArray(2000, 'x') + "\nendstream",
    };
    for (int i = 0; i < objects.size(); ++i) {
        offsets << pdf.size();
        pdf += QByteArray::number(i + 1) + " 0 obj\n" + objects[i] + "\nendobj\n";
    }
    const qint64 xref = pdf.size();
    pdf += "xref\n0 5\n0000000000 65535 f \n";
    for (qint64 o : offsets)
        pdf += QByteArray::number(o).rightJustified(10, '0') + " 00000 n \n";
    pdf += "trailer\n<< /Size 5 /Root 1 0 R /Info 2 0 R >>\nstartxref\n" + QByteArray::number(xref) + "\n%%EOF\n";
    return pdf;
}

QByteArray SmallHtml(int n)
{
    return "<html>\n<head>\n<title>Page " + QByteArray::number(n) + "</title>\n"
           "<meta name=\"author\" content=\"A. Smith\">\n<meta name=\"DC.subject\" content=\"tests\">\n"
           "</head>\n<body>\n" + QByteArray(3000, 'x') + "\n</body></html>\n";
}

// A PDF of `size` bytes: the objects follow a long content stream, so the trailer,
// the cross-reference table and the Info dictionary sit in the last kilobytes.
void WriteLargePdf(const QString& path, qint64 size)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return;
    file.write("%PDF-1.4\n4 0 obj\n<< /Length 0 >>\nstream\n");
    const QByteArray block(1 << 20, 'q');
    while (file.size() < size)
        file.write(block);
    file.write("\nendstream\nendobj\n");
    QList<qint64> offsets;
    const QList<QByteArray> objects = {"<< /Type /Catalog /Pages 3 0 R >>",
                                       "<< /Title (Large)\n/Author (A. Smith)>>", "<< /Type /Pages /Count 900 >>"};
    for (int i = 0; i < objects.size(); ++i) {
        offsets << file.pos();
        file.write(QByteArray::number(i + 1) + " 0 obj\n" + objects[i] + "\nendobj\n");
    }
    const qint64 xref = file.pos();
    file.write("xref\n0 4\n0000000000 65535 f \n");
    for (qint64 o : offsets)
        file.write(QByteArray::number(o).rightJustified(10, '0') + " 00000 n \n");
    file.write("trailer\n<< /Size 4 /Root 1 0 R /Info 2 0 R >>\nstartxref\n" + QByteArray::number(xref) + "\n%%EOF\n");
}

// A JPEG whose APP13 segment holds an IPTC block: a title, two keywords, a caption.
QByteArray SmallJpeg(int n)
{
    QByteArray iptc;
    auto dataset = [&](int number, const QByteArray& value) {
        iptc += "\x1C\x02" + QByteArray(1, char(number)) + char(value.size() >> 8) + char(value.size() & 0xFF) + value;
    };
    dataset(105, "Headline " + QByteArray::number(n));
    dataset(25, "sea");
    dataset(25, "sun");
    dataset(120, "A caption");
    QByteArray block = "8BIM\x04\x04" + QByteArray(2, '\0') + char(iptc.size() >> 24) + char((iptc.size() >> 16) & 0xFF)
                       + char((iptc.size() >> 8) & 0xFF) + char(iptc.size() & 0xFF) + iptc;
    QByteArray segment = "Photoshop 3.0" + QByteArray(1, '\0') + block;
    const int length = int(segment.size()) + 2;
    return "\xFF\xD8\xFF\xED" + QByteArray(1, char(length >> 8)) + char(length & 0xFF) + segment
           + "\xFF\xDA" + QByteArray(4000, 'x') + "\xFF\xD9";
}

// A large file of image-like bytes with no metadata of any family.
void WriteLargeImage(const QString& path, qint64 size)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return;
    QByteArray block(1 << 20, '\0');
    for (int i = 0; i < block.size(); ++i)
        block[i] = char((i * 7919 + i / 13) % 251);
    file.write("II*\0");
    while (file.size() < size)
        file.write(block);
}

void WriteLargeHtml(const QString& path, qint64 size)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return;
    file.write(SmallHtml(0).left(200));
    const QByteArray line = QByteArray(99, 'w') + '\n';
    QByteArray block;
    while (block.size() < (1 << 20))
        block += line;
    while (file.size() < size)
        file.write(block);
}

double Seconds(const std::function<void()>& work)
{
    QElapsedTimer timer;
    timer.start();
    work();
    return double(timer.nsecsElapsed()) / 1e9;
}

qint64 PlainRead(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    QByteArray buffer(1 << 20, '\0');
    qint64 total = 0;
    for (qint64 n; (n = file.read(buffer.data(), buffer.size())) > 0;)
        total += n;
    return total;
}

}  // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    const int count = argc > 1 ? QByteArray(argv[1]).toInt() : 5000;
    const qint64 largeMb = argc > 2 ? QByteArray(argv[2]).toLongLong() : 500;
    QTemporaryDir dir;
    QDir folder(dir.path());

    for (int i = 0; i < count; ++i) {
        QFile pdf(folder.filePath(QStringLiteral("f%1.pdf").arg(i)));
        if (pdf.open(QIODevice::WriteOnly))
            pdf.write(SmallPdf(i));
        QFile html(folder.filePath(QStringLiteral("f%1.html").arg(i)));
        if (html.open(QIODevice::WriteOnly))
            html.write(SmallHtml(i));
    }

    qint64 bytes = 0;
    int found = 0;
    double s = Seconds([&] {
        for (int i = 0; i < count; ++i) {
            const PdfInfo info = ReadPdfInfo(folder.filePath(QStringLiteral("f%1.pdf").arg(i)));
            bytes += info.bytesRead;
            found += !info.title.isEmpty();
        }
    });
    std::printf("PDF reader, %d small files: %.3f s, %.0f files/s, %lld bytes read, %d titles\n", count, s,
                count / s, static_cast<long long>(bytes), found);

    found = 0;
    s = Seconds([&] {
        for (int i = 0; i < count; ++i)
            found += !ReadHtmlMeta(folder.filePath(QStringLiteral("f%1.html").arg(i))).title.isEmpty();
    });
    std::printf("HTML reader, %d small files: %.3f s, %.0f files/s, %d titles\n", count, s, count / s, found);

    // Office documents: copies of the project's small compound document, each given its
    // own title and user-defined property (written back), then read.
    QFile templateFile(QStringLiteral(BRINDAR_SOURCE_DIR "/fuzz/corpus/ole_fuzzer/minimal.doc"));
    const QByteArray document = templateFile.open(QIODevice::ReadOnly) ? templateFile.readAll() : QByteArray();
    for (int i = 0; i < count; ++i) {
        QFile doc(folder.filePath(QStringLiteral("f%1.doc").arg(i)));
        if (doc.open(QIODevice::WriteOnly))
            doc.write(document);
    }
    s = Seconds([&] {
        for (int i = 0; i < count; ++i) {
            OfficeProperties p;
            if (p.open(folder.filePath(QStringLiteral("f%1.doc").arg(i)), OfficeProperties::kModeWrite)) {
                p.setTitle(QStringLiteral("Document %1").arg(i));
                p.writeUserDefined(QStringLiteral("Client"), i);
                p.save();
            }
        }
    });
    std::printf("Office properties, %d small documents written back: %.3f s, %.0f documents/s\n", count, s, count / s);
    found = 0;
    s = Seconds([&] {
        for (int i = 0; i < count; ++i) {
            OfficeProperties p;
            if (p.open(folder.filePath(QStringLiteral("f%1.doc").arg(i)), OfficeProperties::kModeRead)) {
                for (const OfficeColumn& column : OfficeColumns())
                    column.text(p, false);
                found += p.title().has_value() && p.userDefinedCount() == 1;
            }
        }
    });
    std::printf("Office properties, %d small documents read: %.3f s, %.0f documents/s, %d with their values\n",
                count, s, count / s, found);

    for (int i = 0; i < count; ++i) {
        QFile jpeg(folder.filePath(QStringLiteral("f%1.jpg").arg(i)));
        if (jpeg.open(QIODevice::WriteOnly))
            jpeg.write(SmallJpeg(i));
    }
    found = 0;
    s = Seconds([&] {
        for (int i = 0; i < count; ++i)
            found += ReadIptc(folder.filePath(QStringLiteral("f%1.jpg").arg(i)), false).keywords == u"sea; sun";
    });
    std::printf("IPTC reader, %d small JPEGs: %.3f s, %.0f files/s, %d with their keywords\n", count, s, count / s, found);

    const QString largeImage = folder.filePath(QStringLiteral("large.tif"));
    WriteLargeImage(largeImage, largeMb << 20);
    const double plainImage = Seconds([&] { PlainRead(largeImage); });
    IptcResult iptc;
    XmpResult xmp;
    OpenOfficeResult ooo;
    const double iptcTime = Seconds([&] { iptc = ReadIptc(largeImage, false); });
    const double xmpTime = Seconds([&] { xmp = ReadXmp(largeImage); });
    const double oooTime = Seconds([&] { ooo = ReadOpenOfficeMeta(largeImage); });
    std::printf("One %lld MB TIFF-like file without metadata: IPTC %.3f s (%lld bytes read), XMP %.3f s, "
                "OpenOffice %.3f s; a plain read of the file: %.3f s\n",
                static_cast<long long>(QFileInfo(largeImage).size() >> 20), iptcTime,
                static_cast<long long>(iptc.bytesRead), xmpTime, oooTime, plainImage);
    QFile::remove(largeImage);

    const QString largePdf = folder.filePath(QStringLiteral("large.pdf"));
    WriteLargePdf(largePdf, largeMb << 20);
    PdfInfo info;
    s = Seconds([&] { info = ReadPdfInfo(largePdf); });
    const double plain = Seconds([&] { PlainRead(largePdf); });
    std::printf("PDF reader, one %lld MB file: %.4f s, %lld bytes read, title \"%s\", %s pages "
                "(a plain read of the file: %.3f s)\n",
                static_cast<long long>(QFileInfo(largePdf).size() >> 20), s, static_cast<long long>(info.bytesRead),
                info.title.toUtf8().constData(), info.pages.toUtf8().constData(), plain);
    QFile::remove(largePdf);

    const QString largeHtml = folder.filePath(QStringLiteral("large.html"));
    WriteLargeHtml(largeHtml, largeMb << 20);
    HtmlMetaResult html;
    s = Seconds([&] { html = ReadHtmlMeta(largeHtml); });
    std::printf("HTML reader, one %lld MB file with a short head: %.4f s, title \"%s\"\n",
                static_cast<long long>(QFileInfo(largeHtml).size() >> 20), s, html.title.toUtf8().constData());
    return 0;
}
