// The reader tables: extensions to readers, reader values to grid columns.
#include "readers/readertable.h"

#include "core/columnbuilder.h"
#include "core/valuetext.h"

#include <array>

namespace brindar {
namespace {

struct ExtensionRow {
    ReaderBit reader;
    std::array<const char16_t*, 6> extensions;
};

const ExtensionRow kExtensions[] = {
    {kReaderOpenOffice, {u"SXW", u"SXC", u"SXD", u"SXI", u"SXM", u"SXG"}},
    {kReaderPdf, {u"PDF"}},
    {kReaderHtml, {u"HTM", u"HTML"}},
    {kReaderIptc, {u"JPG", u"JPEG", u"TIF", u"TIFF"}},
    {kReaderXmp, {u"AI", u"EPS", u"FM", u"INDD", u"PM7", u"PSD"}},
};

// A result field as a column value.
template <auto Field>
struct FieldOf;
template <class Result, QString Result::*Field>
struct FieldOf<Field> {
    static QString get(const Result& result) { return result.*Field; }
};

using O = OpenOfficeResult;
const ColumnSource<O> kOpenOffice[] = {
    {".AP", FieldOf<&O::generator>::get},      {".TI", FieldOf<&O::title>::get},
    {".CM", FieldOf<&O::description>::get},    {".SU", FieldOf<&O::subject>::get},
    {".KW", FieldOf<&O::keyword>::get},        {".AU", FieldOf<&O::initialCreator>::get},
    {".LA", FieldOf<&O::creator>::get},        {".PB", FieldOf<&O::printedBy>::get},
    {".CD", FieldOf<&O::creationDate>::get},   {".MD", FieldOf<&O::date>::get},
    {".PD", FieldOf<&O::printDate>::get},      {".TE", FieldOf<&O::templateName>::get},
    {".LG", FieldOf<&O::language>::get},       {".RV", FieldOf<&O::editingCycles>::get},
    {".PA", FieldOf<&O::pageCount>::get},      {".TA", FieldOf<&O::tableCount>::get},
    {".DR", FieldOf<&O::drawCount>::get},      {".OL", FieldOf<&O::oleObjectCount>::get},
    {".PG", FieldOf<&O::paragraphCount>::get}, {".WO", FieldOf<&O::wordCount>::get},
    {".CH", FieldOf<&O::characterCount>::get}, {".LI", FieldOf<&O::rowCount>::get},
    {".CE", FieldOf<&O::cellCount>::get},      {".OB", FieldOf<&O::objectCount>::get},
    {".ED", [](const O& r) { return EditingTime(DurationMinutes(r.editingDuration)); }},
};

using P = PdfInfo;
const ColumnSource<P> kPdf[] = {
    {".VE", FieldOf<&P::version>::get},
    {".EN", [](const P& r) { return r.encrypted ? QStringLiteral("true") : QString(); }},
    {".AU", FieldOf<&P::author>::get},           {".CD", FieldOf<&P::creationDate>::get},
    {".MD", FieldOf<&P::modificationDate>::get}, {".AP", FieldOf<&P::creator>::get},
    {".PR", FieldOf<&P::producer>::get},         {".TI", FieldOf<&P::title>::get},
    {".SU", FieldOf<&P::subject>::get},          {".KW", FieldOf<&P::keywords>::get},
    {".PA", FieldOf<&P::pages>::get},
};

// "HTML Title, dc.title", "Keywords, dc.subject", "Subject, dc.description": the META
// names fill the columns their labels name; dc.date is the creation date, dc.rights the
// copyright, dc.language the language.
using H = HtmlMetaResult;
const ColumnSource<H> kHtml[] = {
    {".TI", FieldOf<&H::title>::get},       {".TI", FieldOf<&H::metaTitle>::get},
    {".AU", FieldOf<&H::creator>::get},     {".KW", FieldOf<&H::subjectKeywords>::get},
    {".KW", FieldOf<&H::subject>::get},     {".SU", FieldOf<&H::description>::get},
    {".AP", FieldOf<&H::generator>::get},   {".CA", FieldOf<&H::category>::get},
    {".PU", FieldOf<&H::publisher>::get},   {".HC", FieldOf<&H::contributor>::get},
    {".CD", FieldOf<&H::date>::get},        {".TY", FieldOf<&H::type>::get},
    {".FO", FieldOf<&H::format>::get},      {".ID", FieldOf<&H::identifier>::get},
    {".SO", FieldOf<&H::source>::get},      {".LG", FieldOf<&H::language>::get},
    {".RE", FieldOf<&H::relation>::get},    {".CV", FieldOf<&H::coverage>::get},
    {".CP", FieldOf<&H::rights>::get},
};

// "Headline [Title]", "Byline [Author]", "Caption [Comments]"; the object name is the
// title when there is no headline.
using I = IptcResult;
const ColumnSource<I> kIptc[] = {
    {".TI", FieldOf<&I::headline>::get},            {".TI", FieldOf<&I::objectName>::get},
    {".AU", FieldOf<&I::byline>::get},              {".CM", FieldOf<&I::caption>::get},
    {".KW", FieldOf<&I::keywords>::get},            {".CA", FieldOf<&I::category>::get},
    {".CD", FieldOf<&I::createdDate>::get},         {".ST", FieldOf<&I::editStatus>::get},
    {".PY", FieldOf<&I::priority>::get},            {".SC", FieldOf<&I::supplementalCategory>::get},
    {".FI", FieldOf<&I::fixtureIdentifier>::get},   {".LD", FieldOf<&I::releaseDate>::get},
    {".LT", FieldOf<&I::releaseTime>::get},         {".SI", FieldOf<&I::specialInstructions>::get},
    {".RS", FieldOf<&I::referenceService>::get},    {".RD", FieldOf<&I::referenceDate>::get},
    {".RN", FieldOf<&I::referenceNumber>::get},     {".CT", FieldOf<&I::createdTime>::get},
    {".OP", FieldOf<&I::originatingProgram>::get},  {".PV", FieldOf<&I::programVersion>::get},
    {".OC", FieldOf<&I::objectCycle>::get},         {".BT", FieldOf<&I::bylineTitle>::get},
    {".CI", FieldOf<&I::city>::get},                {".PS", FieldOf<&I::provinceState>::get},
    {".CC", FieldOf<&I::countryCode>::get},         {".CO", FieldOf<&I::country>::get},
    {".TR", FieldOf<&I::originalTransmissionReference>::get},
    {".CR", FieldOf<&I::credit>::get},              {".SR", FieldOf<&I::source>::get},
    {".CP", FieldOf<&I::copyright>::get},           {".CN", FieldOf<&I::contact>::get},
    {".LC", FieldOf<&I::localCaption>::get},        {".CW", FieldOf<&I::captionWriter>::get},
    {".IT", FieldOf<&I::imageType>::get},
};

// XMP fills the shared columns and the IPTC columns whose Photoshop properties it
// carries; the XMP Basic and PDF properties first, then Dublin Core, then Photoshop.
using X = XmpResult;
const ColumnSource<X> kXmp[] = {
    {".TI", FieldOf<&X::title>::get},            {".TI", FieldOf<&X::dcTitle>::get},
    {".TI", FieldOf<&X::headline>::get},         {".AU", FieldOf<&X::author>::get},
    {".AU", FieldOf<&X::dcCreator>::get},        {".SU", FieldOf<&X::description>::get},
    {".SU", FieldOf<&X::dcDescription>::get},    {".KW", FieldOf<&X::keywords>::get},
    {".KW", FieldOf<&X::dcSubject>::get},        {".AP", FieldOf<&X::creatorTool>::get},
    {".AP", FieldOf<&X::creator>::get},          {".CD", FieldOf<&X::creationDate>::get},
    {".CD", FieldOf<&X::dateCreated>::get},      {".MD", FieldOf<&X::modificationDate>::get},
    {".PR", FieldOf<&X::producer>::get},         {".VE", FieldOf<&X::pdfVersion>::get},
    {".CP", FieldOf<&X::rights>::get},           {".BT", FieldOf<&X::authorsPosition>::get},
    {".CW", FieldOf<&X::captionWriter>::get},    {".SI", FieldOf<&X::instructions>::get},
    {".CR", FieldOf<&X::credit>::get},           {".SR", FieldOf<&X::source>::get},
    {".CI", FieldOf<&X::city>::get},             {".PS", FieldOf<&X::state>::get},
    {".CO", FieldOf<&X::country>::get},          {".TR", FieldOf<&X::transmissionReference>::get},
};

template <auto Get>
QString OfficeText(const OfficeProperties& p, bool)
{
    return (p.*Get)().value_or(QString());
}

template <auto Get>
QString OfficeCount(const OfficeProperties& p, bool)
{
    const std::optional<qint64> count = (p.*Get)();
    return count && *count != 0 ? QString::number(*count) : QString();
}

template <auto Get>
QString OfficeDate(const OfficeProperties& p, bool localTime)
{
    const std::optional<QDateTime> date = (p.*Get)();
    return date ? GridDate(*date, localTime) : QString();
}

using C = OfficeProperties;
const OfficeColumn kOffice[] = {
    {".AP", OfficeText<&C::applicationName>}, {".TI", OfficeText<&C::title>},
    {".AU", OfficeText<&C::author>},          {".SU", OfficeText<&C::subject>},
    {".KW", OfficeText<&C::keywords>},        {".TE", OfficeText<&C::templateName>},
    {".CM", OfficeText<&C::comments>},        {".LA", OfficeText<&C::lastAuthor>},
    {".RV", OfficeText<&C::revisionNumber>},  {".PA", OfficeCount<&C::pageCount>},
    {".PG", OfficeCount<&C::paragraphCount>}, {".LI", OfficeCount<&C::lineCount>},
    {".WO", OfficeCount<&C::wordCount>},      {".CH", OfficeCount<&C::characterCount>},
    {".BY", OfficeCount<&C::byteCount>},      {".NO", OfficeCount<&C::noteCount>},
    {".SL", OfficeCount<&C::slideCount>},     {".MA", OfficeText<&C::manager>},
    {".CY", OfficeText<&C::company>},         {".CA", OfficeText<&C::category>},
    {".SE", OfficeCount<&C::security>},       {".CD", OfficeDate<&C::created>},
    {".MD", OfficeDate<&C::lastSaved>},       {".PD", OfficeDate<&C::lastPrinted>},
    {".ED", [](const C& p, bool) { return EditingTime(p.totalEditingMinutes().value_or(0)); }},
};

template <class Source>
QStringList CodesOf(std::span<const Source> sources)
{
    QStringList codes;
    for (const Source& source : sources)
        if (!codes.contains(QLatin1String(source.code)))
            codes.append(QLatin1String(source.code));
    return codes;
}

}  // namespace

ReaderBit ReaderOfExtension(QStringView upperExtension)
{
    for (const ExtensionRow& row : kExtensions)
        for (const char16_t* candidate : row.extensions)
            if (candidate && upperExtension == QStringView(candidate))
                return row.reader;
    return kReaderNone;
}

std::span<const ColumnSource<OpenOfficeResult>> OpenOfficeColumns() { return kOpenOffice; }
std::span<const ColumnSource<PdfInfo>> PdfColumns() { return kPdf; }
std::span<const ColumnSource<HtmlMetaResult>> HtmlColumns() { return kHtml; }
std::span<const ColumnSource<IptcResult>> IptcColumns() { return kIptc; }
std::span<const ColumnSource<XmpResult>> XmpColumns() { return kXmp; }
std::span<const OfficeColumn> OfficeColumns() { return kOffice; }

std::span<const ReaderInfo> Readers()
{
    static const ReaderInfo readers[] = {
        {kReaderOpenOffice, "OpenOffice", CodesOf(OpenOfficeColumns()), true},
        {kReaderPdf, "PDF", CodesOf(PdfColumns()), false},
        {kReaderHtml, "HTML", CodesOf(HtmlColumns()), true},
        {kReaderIptc, "IPTC", CodesOf(IptcColumns()), false},
        {kReaderXmp, "XMP", CodesOf(XmpColumns()), false},
        {kReaderOffice, "Office", CodesOf(OfficeColumns()), true},
    };
    return readers;
}

unsigned ReadersFilling(const ColumnSet& columns)
{
    bool userColumn = false;
    for (const Column& column : columns.columns)
        userColumn = userColumn || column.userSlot >= 0;
    unsigned readers = kReaderNone;
    for (const ReaderInfo& reader : Readers()) {
        bool fills = reader.userSlots && userColumn;
        for (const QString& code : reader.codes)
            fills = fills || columns.columnOf(code) >= 0;
        if (fills)
            readers |= reader.bit;
    }
    return readers;
}

}  // namespace brindar
