// Which reader fills which column: the reader tables against the field table, both ways.
#include "core/columnbuilder.h"
#include "core/fieldtable.h"
#include "core/inifile.h"
#include "readers/readertable.h"
#include "scan/directoryscan.h"

#include <QSet>
#include <gtest/gtest.h>

using namespace brindar;

TEST(ColumnSources, EveryCodeIsRealAndEveryColumnIsReachable)
{
    QSet<QString> fieldCodes;
    for (const FieldInfo& field : FieldTable())
        fieldCodes.insert(QLatin1String(field.code));
    QSet<QString> filled;
    for (const ReaderInfo& reader : Readers()) {
        EXPECT_FALSE(reader.codes.isEmpty()) << reader.name;
        for (const QString& code : reader.codes) {
            EXPECT_TRUE(fieldCodes.contains(code)) << reader.name << " fills " << code.toStdString() << ", no column";
            filled.insert(code);
        }
    }
    for (const char* code : kFileSystemColumns) {
        EXPECT_TRUE(fieldCodes.contains(QLatin1String(code))) << code;
        filled.insert(QLatin1String(code));
    }
    for (const QString& code : std::as_const(fieldCodes))
        EXPECT_TRUE(filled.contains(code)) << code.toStdString() << " is a column nothing fills";
}

TEST(ColumnSources, OnlyTheReadersOfDisplayedColumnsAreAsked)
{
    const unsigned families = kReaderOpenOffice | kReaderHtml | kReaderPdf | kReaderIptc | kReaderXmp;
    const struct { const char* ini; unsigned readers; } rows[] = {
        {"[PDF]\nPDFEncrypted=1", kReaderPdf},
        {"[Proprietes]\nTitre=1", families | kReaderOffice},
        {"[Proprietes]\nCompagnie=1\nOctets=1", kReaderOffice},
        {"[Proprietes]\nCommentairesMacintosh=1", kReaderNone},
        // A user-defined slot is looked up among the custom properties of three readers.
        {"[Personnelles]\ntextPerso1=Client\nchkPerso1=1", kReaderOpenOffice | kReaderHtml | kReaderOffice},
        {"[Personnelles]\ntextPerso1=\nchkPerso1=1", kReaderNone},
    };
    for (const auto& row : rows)
        EXPECT_EQ(ReadersFilling(BuildColumns(IniDocument(row.ini), Captions::English(), true)), row.readers) << row.ini;
}
