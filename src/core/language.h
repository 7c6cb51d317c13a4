// Caption tables: built-in English texts, overridden by a language file.
#pragma once

#include <QString>
#include <QStringList>
#include <array>

namespace brindar {

enum class CaptionSection { Main, Configuration, Metadata, Select, Html, Hypertext, Modify, List, Xml };
inline constexpr int kCaptionSectionCount = 9;

struct CaptionTableInfo {
    const char* header;  // the exact section line of a language file
    int builtIn;         // entries with a built-in English text
    int highest;         // highest entry a language file may set
};

const CaptionTableInfo& CaptionTable(CaptionSection section);

struct CaptionId;

// The nine tables of one language. Entries count from 1.
class Captions {
public:
    // The built-in English texts.
    static const Captions& English();

    QString text(CaptionSection section, int number) const;
    QString text(const CaptionId& id) const;

    // Applies the entries of a language file's text over the current captions: lines
    // trimmed, exact section names, the number before the first "=", numbers outside
    // 1..highest and lines without "=" ignored.
    void apply(const QString& fileText);

    // The twelve month names (January first) and the date-order key of the report date.
    QString monthName(int month) const;
    QString dateOrderKey() const;

private:
    Captions();
    std::array<QStringList, kCaptionSectionCount> tables_;
    friend Captions LoadLanguage(const QString&, const QString&, const QString&);
};

// The English text of the built-in language file, compiled into the program.
const char* EnglishLanguageFileText();

inline constexpr const char* kEnglish = "English";

// The file "Language/<name>.lng" (name compared case-insensitively), looked for in the
// settings folder first, then among the shipped files. Empty when there is none.
QString FindLanguageFile(const QString& name, const QString& settingsFolder, const QString& dataFolder);

// English captions with the language file of that name applied, when there is one.
// A missing, unreadable or garbled file leaves English where it says nothing usable.
Captions LoadLanguage(const QString& name, const QString& settingsFolder, const QString& dataFolder);

// The languages of the Language menu: "English" first (it needs no file), then the name
// of every other "*.lng" file of both folders, less its extension, sorted.
QStringList OfferedLanguages(const QString& settingsFolder, const QString& dataFolder);

}  // namespace brindar
