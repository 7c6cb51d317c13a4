// Office property access: summary, document-summary and user-defined properties of a
// compound document, or of the property sets a file keeps in its named streams.
#pragma once

#include "readers/propertyset.h"

#include <QDateTime>
#include <QString>
#include <QVariant>
#include <optional>

namespace brindar {

// One document at a time, as the program drives it: close the previous one, open the
// next, ask for values, close. Every query answers nothing when it fails (no document,
// no such property, a value of another type), so the caller's value stays as it was.
class OfficeProperties {
public:
    // The open modes of the structured-storage access flags, accepted as callers give
    // them: reading share-exclusive (16) or transacted (65552), writing read-write (18)
    // or transacted (65554).
    static constexpr int kModeRead = 16;
    static constexpr int kModeReadTransacted = 65552;
    static constexpr int kModeWrite = 18;
    static constexpr int kModeWriteTransacted = 65554;

    // The property-group bits.
    static constexpr int kSummaryGroup = 1;
    static constexpr int kDocumentSummaryGroup = 2;
    static constexpr int kUserDefinedGroup = 4;

    // Opens the document; false when it is neither a compound file with property sets
    // nor a file with property sets in its named streams. `error` says why.
    bool open(const QString& path, int mode, QString* error = nullptr);
    // The same for a file known not to be a compound file (another family's reader has
    // read it as one of its own): only its named streams are looked at.
    bool openNamedStreams(const QString& path, int mode, QString* error = nullptr);
    void close();
    bool isOpen() const { return open_; }

    int propertyGroups() const;

    std::optional<QString> title() const { return summaryText(2); }
    std::optional<QString> subject() const { return summaryText(3); }
    std::optional<QString> author() const { return summaryText(4); }
    std::optional<QString> keywords() const { return summaryText(5); }
    std::optional<QString> comments() const { return summaryText(6); }
    std::optional<QString> templateName() const { return summaryText(7); }
    std::optional<QString> lastAuthor() const { return summaryText(8); }
    std::optional<QString> revisionNumber() const { return summaryText(9); }
    std::optional<qint64> totalEditingMinutes() const;
    // Dates as UTC; an invalid QDateTime when the document stores zero (absent).
    std::optional<QDateTime> lastPrinted() const { return summaryDate(11); }
    std::optional<QDateTime> created() const { return summaryDate(12); }
    std::optional<QDateTime> lastSaved() const { return summaryDate(13); }
    std::optional<qint64> pageCount() const { return summaryNumber(14); }
    std::optional<qint64> wordCount() const { return summaryNumber(15); }
    std::optional<qint64> characterCount() const { return summaryNumber(16); }
    std::optional<QString> applicationName() const { return summaryText(18); }
    std::optional<qint64> security() const { return summaryNumber(19); }
    std::optional<QString> category() const { return documentText(2); }
    std::optional<QString> manager() const { return documentText(14); }
    std::optional<QString> company() const { return documentText(15); }
    std::optional<qint64> byteCount() const { return documentNumber(4); }
    std::optional<qint64> lineCount() const { return documentNumber(5); }
    std::optional<qint64> paragraphCount() const { return documentNumber(6); }
    std::optional<qint64> slideCount() const { return documentNumber(7); }
    std::optional<qint64> noteCount() const { return documentNumber(8); }

    // The user-defined properties in their stored order, 0-based.
    int userDefinedCount() const;
    std::optional<QString> userDefinedName(int index) const;
    // The value as a variant: QString, qint64, bool, double, QDateTime (UTC), QStringList.
    std::optional<QVariant> userDefinedValue(int index) const;

    // Writing back, for a document opened with a write mode. Each call changes the
    // document held here and answers false (changing nothing) when it cannot; save()
    // then writes the changed property sets to the file in one step.
    bool setTitle(const QString& text) { return setSummaryText(2, text); }
    bool setSubject(const QString& text) { return setSummaryText(3, text); }
    bool setAuthor(const QString& text) { return setSummaryText(4, text); }
    bool setKeywords(const QString& text) { return setSummaryText(5, text); }
    bool setComments(const QString& text) { return setSummaryText(6, text); }
    bool setRevisionNumber(const QString& text) { return setSummaryText(9, text); }
    bool setCategory(const QString& text) { return setDocumentText(2, text); }
    bool setManager(const QString& text) { return setDocumentText(14, text); }
    bool setCompany(const QString& text) { return setDocumentText(15, text); }
    // Sets the value of the user-defined property `name` (compared case-insensitively),
    // adding the property when the document has none of that name. The value may be a
    // QString, a whole number, a bool, a double or a QDateTime.
    bool writeUserDefined(const QString& name, const QVariant& value);
    bool removeUserDefined(const QString& name);
    // Writes what changed: a compound document is replaced whole, a plain file's named
    // streams are replaced one by one. False, with the reason in `error`, when the file
    // cannot be written; the file is then as it was.
    bool save(QString* error = nullptr);

private:
    const PropertySection* summary() const;
    const PropertySection* documentSummary() const;
    const PropertySection* userDefined() const;
    const PropertyValue* find(const PropertySection* section, quint32 id) const;
    std::optional<QString> text(const PropertySection* section, quint32 id) const;
    std::optional<qint64> number(const PropertySection* section, quint32 id) const;
    std::optional<QString> summaryText(quint32 id) const { return text(summary(), id); }
    std::optional<qint64> summaryNumber(quint32 id) const { return number(summary(), id); }
    std::optional<QDateTime> summaryDate(quint32 id) const;
    std::optional<QString> documentText(quint32 id) const { return text(documentSummary(), id); }
    std::optional<qint64> documentNumber(quint32 id) const { return number(documentSummary(), id); }

    bool setSummaryText(quint32 id, const QString& text);
    bool setDocumentText(quint32 id, const QString& text);
    PropertySection* writableSection(std::optional<PropertySet>& set, const QUuid& id, bool* dirty);
    void listUserProperties();
    bool openWith(const QString& path, int mode, bool compoundFile, QString* error);

    bool open_ = false;
    bool writable_ = false;
    bool compound_ = false;
    QString path_;
    std::optional<PropertySet> summarySet_;
    std::optional<PropertySet> documentSet_;
    bool summaryDirty_ = false;
    bool documentDirty_ = false;
    // The user-defined properties that have both a name and a value, in stored order.
    QList<std::pair<QString, PropertyValue>> userProperties_;
};

// A Windows file time (100 ns ticks since 1601-01-01 UTC) as a date; invalid for zero.
QDateTime FileTimeToDateTime(qint64 ticks);

}  // namespace brindar
