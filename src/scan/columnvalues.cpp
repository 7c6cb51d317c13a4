// The reader-to-column tables and the text forms of dates, durations and values.
#include "scan/columnvalues.h"

#include <QRegularExpression>

namespace brindar {
namespace {

using O = OpenOfficeResult;
constexpr ColumnSource<O> kOpenOffice[] = {
    {".AP", &O::generator},       {".TI", &O::title},           {".CM", &O::description},
    {".SU", &O::subject},         {".KW", &O::keyword},         {".AU", &O::initialCreator},
    {".LA", &O::creator},         {".PB", &O::printedBy},       {".CD", &O::creationDate},
    {".MD", &O::date},            {".PD", &O::printDate},       {".TE", &O::templateName},
    {".LG", &O::language},        {".RV", &O::editingCycles},   {".PA", &O::pageCount},
    {".TA", &O::tableCount},      {".DR", &O::drawCount},       {".OL", &O::oleObjectCount},
    {".PG", &O::paragraphCount},  {".WO", &O::wordCount},       {".CH", &O::characterCount},
    {".LI", &O::rowCount},        {".CE", &O::cellCount},       {".OB", &O::objectCount},
};

using P = PdfInfo;
constexpr ColumnSource<P> kPdf[] = {
    {".VE", &P::version},  {".AU", &P::author},   {".CD", &P::creationDate}, {".MD", &P::modificationDate},
    {".AP", &P::creator},  {".PR", &P::producer}, {".TI", &P::title},        {".SU", &P::subject},
    {".KW", &P::keywords}, {".PA", &P::pages},
};

// "HTML Title, dc.title", "Keywords, dc.subject", "Subject, dc.description": the META
// names fill the columns their labels name; dc.date is the creation date, dc.rights the
// copyright, dc.language the language.
using H = HtmlMetaResult;
constexpr ColumnSource<H> kHtml[] = {
    {".TI", &H::title},       {".TI", &H::metaTitle},   {".AU", &H::creator},     {".KW", &H::subjectKeywords},
    {".KW", &H::subject},     {".SU", &H::description}, {".AP", &H::generator},   {".CA", &H::category},
    {".PU", &H::publisher},   {".HC", &H::contributor}, {".CD", &H::date},        {".TY", &H::type},
    {".FO", &H::format},      {".ID", &H::identifier},  {".SO", &H::source},      {".LG", &H::language},
    {".RE", &H::relation},    {".CV", &H::coverage},    {".CP", &H::rights},
};

// "Headline [Title]", "Byline [Author]", "Caption [Comments]"; the object name is the
// title when there is no headline.
using I = IptcResult;
constexpr ColumnSource<I> kIptc[] = {
    {".TI", &I::headline},           {".TI", &I::objectName},          {".AU", &I::byline},
    {".CM", &I::caption},            {".KW", &I::keywords},            {".CA", &I::category},
    {".CD", &I::createdDate},        {".ST", &I::editStatus},          {".PY", &I::priority},
    {".SC", &I::supplementalCategory}, {".FI", &I::fixtureIdentifier}, {".LD", &I::releaseDate},
    {".LT", &I::releaseTime},        {".SI", &I::specialInstructions}, {".RS", &I::referenceService},
    {".RD", &I::referenceDate},      {".RN", &I::referenceNumber},     {".CT", &I::createdTime},
    {".OP", &I::originatingProgram}, {".PV", &I::programVersion},      {".OC", &I::objectCycle},
    {".BT", &I::bylineTitle},        {".CI", &I::city},                {".PS", &I::provinceState},
    {".CC", &I::countryCode},        {".CO", &I::country},             {".TR", &I::originalTransmissionReference},
    {".CR", &I::credit},             {".SR", &I::source},              {".CP", &I::copyright},
    {".CN", &I::contact},            {".LC", &I::localCaption},        {".CW", &I::captionWriter},
    {".IT", &I::imageType},
};

// XMP fills the shared columns and the IPTC columns whose Photoshop properties it
// carries; the XMP Basic and PDF properties first, then Dublin Core, then Photoshop.
using X = XmpResult;
constexpr ColumnSource<X> kXmp[] = {
    {".TI", &X::title},        {".TI", &X::dcTitle},          {".TI", &X::headline},
    {".AU", &X::author},       {".AU", &X::dcCreator},        {".SU", &X::description},
    {".SU", &X::dcDescription}, {".KW", &X::keywords},        {".KW", &X::dcSubject},
    {".AP", &X::creatorTool},  {".AP", &X::creator},          {".CD", &X::creationDate},
    {".CD", &X::dateCreated},  {".MD", &X::modificationDate}, {".PR", &X::producer},
    {".VE", &X::pdfVersion},   {".CP", &X::rights},           {".BT", &X::authorsPosition},
    {".CW", &X::captionWriter}, {".SI", &X::instructions},    {".CR", &X::credit},
    {".SR", &X::source},       {".CI", &X::city},             {".PS", &X::state},
    {".CO", &X::country},      {".TR", &X::transmissionReference},
};

}  // namespace

std::span<const ColumnSource<OpenOfficeResult>> OpenOfficeColumns() { return kOpenOffice; }
std::span<const ColumnSource<PdfInfo>> PdfColumns() { return kPdf; }
std::span<const ColumnSource<HtmlMetaResult>> HtmlColumns() { return kHtml; }
std::span<const ColumnSource<IptcResult>> IptcColumns() { return kIptc; }
std::span<const ColumnSource<XmpResult>> XmpColumns() { return kXmp; }

QString GridDate(const QString& text)
{
    static const QRegularExpression iso(QStringLiteral("^(\\d{4})-(\\d{2})-(\\d{2})(?:[T ](\\d{2}):(\\d{2})(?::(\\d{2}))?)?"));
    static const QRegularExpression compact(QStringLiteral("^(\\d{4})(\\d{2})(\\d{2})$"));
    if (const auto m = iso.match(text); m.hasMatch()) {
        QString date = m.captured(1) + u'/' + m.captured(2) + u'/' + m.captured(3);
        if (m.hasCaptured(4))
            date += u' ' + m.captured(4) + u':' + m.captured(5) + u':'
                    + (m.hasCaptured(6) ? m.captured(6) : QStringLiteral("00"));
        return date;
    }
    if (const auto m = compact.match(text); m.hasMatch())
        return m.captured(1) + u'/' + m.captured(2) + u'/' + m.captured(3);
    return text;
}

QString GridDate(const QDateTime& utc, bool localTime)
{
    if (!utc.isValid())
        return QString();
    return (localTime ? utc.toLocalTime() : utc).toString(QStringLiteral("yyyy/MM/dd HH:mm:ss"));
}

QString EditingTime(qint64 minutes)
{
    if (minutes <= 0)
        return QString();
    const qint64 m = minutes % 60;
    return QString::number(minutes / 60) + (m < 10 ? QStringLiteral(" h 0") : QStringLiteral(" h "))
           + QString::number(m) + QStringLiteral(" min");
}

qint64 DurationMinutes(const QString& iso)
{
    static const QRegularExpression duration(
        QStringLiteral("^P(?:(\\d+)D)?T?(?:(\\d+)H)?(?:(\\d+)M)?(?:(\\d+)(?:\\.\\d+)?S)?$"));
    const auto m = duration.match(iso);
    if (!m.hasMatch() || iso.size() < 3)
        return -1;
    return m.captured(1).toLongLong() * 1440 + m.captured(2).toLongLong() * 60 + m.captured(3).toLongLong();
}

QString CellText(const QVariant& value, bool localTime)
{
    switch (value.typeId()) {
    case QMetaType::QDateTime:
        return GridDate(value.toDateTime(), localTime);
    case QMetaType::Bool:
        return value.toBool() ? QStringLiteral("true") : QStringLiteral("false");
    case QMetaType::QStringList:
        return value.toStringList().join(QStringLiteral("; "));
    default:
        return value.toString();
    }
}

}  // namespace brindar
