// Writing settings: a set of keys, each file read again and replaced once, one writer at a time.
#include "core/settings.h"

#include "core/atomicfile.h"
#include "core/fieldtable.h"
#include "core/inifile.h"

#include <mutex>

namespace brindar {

SettingKey FieldKey(const FieldInfo& field) { return {SettingsFile::Configuration, field.section, field.key}; }

SettingsChange& SettingsChange::set(const SettingKey& key, const QString& value)
{
    entries_.append({key.file, key.sectionName(), key.keyName(), value});
    return *this;
}

SettingsChange& SettingsChange::set(const SettingKey& key, int index, const QString& value)
{
    entries_.append({key.file, key.sectionName(), key.keyName(index), value});
    return *this;
}

SettingsChange& SettingsChange::setBool(const SettingKey& key, bool value)
{
    return set(key, value ? QStringLiteral("1") : QStringLiteral("0"));
}

SettingsChange& SettingsChange::setNumber(const SettingKey& key, qint64 value)
{
    return set(key, QString::number(value));
}

SettingsChange& SettingsChange::setNumber(const SettingKey& key, int index, qint64 value)
{
    return set(key, index, QString::number(value));
}

SettingsChange& SettingsChange::add(const SettingsChange& other)
{
    entries_ += other.entries_;
    return *this;
}

bool SettingsChange::touches(SettingsFile file) const
{
    for (const Entry& entry : entries_)
        if (entry.file == file)
            return true;
    return false;
}

std::optional<QString> WriteSettings(const QString& configurationPath, const QString& chooserPath,
                                     const SettingsChange& change)
{
    // One writer at a time in the whole program: each write reads the file again under
    // the lock, so a key written by another thread a moment before is kept.
    static std::mutex writing;
    const std::lock_guard lock(writing);
    for (const auto& [file, path] : {std::pair{SettingsFile::Configuration, configurationPath},
                                     std::pair{SettingsFile::Chooser, chooserPath}}) {
        if (!change.touches(file))
            continue;
        QString error;
        std::optional<IniDocument> document = IniDocument::LoadForChange(path, &error);
        if (!document)
            return error;
        for (const SettingsChange::Entry& entry : change.entries())
            if (entry.file == file)
                document->setValue(entry.section, entry.key, entry.value);
        if (auto failure = WriteFileAtomically(path, document->toBytes()))
            return failure;
    }
    return std::nullopt;
}

}  // namespace brindar
