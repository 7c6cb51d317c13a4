// Private-profile INI files, read and written with the rules of the Windows functions.
#pragma once

#include "core/settingstext.h"

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QString>
#include <optional>

namespace brindar {

struct SettingKey;

// An INI file held in memory. Reads follow GetPrivateProfileString: section and key
// names compared case-insensitively, the first section of a name and the first key in
// it win, blanks around keys and values dropped, one pair of matching quotes around a
// value removed, at most 254 characters returned. Writes follow
// WritePrivateProfileString: one line changes, every other line and comment stays.
class IniDocument {
public:
    static constexpr int kValueBufferSize = 255;

    IniDocument() = default;
    explicit IniDocument(const QByteArray& bytes);

    // A missing or unreadable file reads as an empty document.
    static IniDocument Load(const QString& path);
    // For a change: a missing file is an empty document, but a file that exists and
    // cannot be read is an error, so that a write never replaces what it could not see.
    static std::optional<IniDocument> LoadForChange(const QString& path, QString* error);

    // The value as GetPrivateProfileString with a default of "" returns it: "" for a
    // missing section or key.
    QString value(const QString& section, const QString& key) const;
    bool contains(const QString& section, const QString& key) const;
    // The same for a key of the key table, with its number when it is an indexed key.
    QString value(const SettingKey& key) const;
    QString value(const SettingKey& key, int index) const;
    bool contains(const SettingKey& key) const;

    // Replaces the key's line, or adds the key at the end of its section, or appends the
    // section. Line breaks in the value become blanks, since a value is one line.
    void setValue(const QString& section, const QString& key, const QString& value);

    QByteArray toBytes() const;
    SettingsEncoding encoding() const { return encoding_; }

private:
    struct Line {
        QString text;
        QString eol;
    };
    struct Section {
        int header = -1;          // line index of "[name]"
        int lastEntry = -1;       // last non-blank line that belongs to the section
        QHash<QString, int> keys; // upper-cased key -> line of its first occurrence
    };

    void reindex();
    const Section* findSection(const QString& name) const;
    std::optional<int> findKey(const QString& section, const QString& key) const;
    QString newLineEnding() const;

    QList<Line> lines_;
    QList<Section> sections_;
    QHash<QString, int> sectionByName_; // upper-cased name -> first section of that name
    SettingsEncoding encoding_ = SettingsEncoding::Win1252;
};

}  // namespace brindar
