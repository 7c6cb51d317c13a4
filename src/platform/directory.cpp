// Folder listing through Qt, with the order and the filters of the scan.
#include "platform/directory.h"

#include <QDir>
#include <QFileInfo>
#include <algorithm>
#include <unistd.h>

namespace brindar {

QList<DirectoryEntry> ListFiles(const QString& folder, bool* ok)
{
    QList<DirectoryEntry> entries;
    QDir dir(folder);
    *ok = dir.exists() && dir.isReadable();
    if (!*ok)
        return entries;
    const QFileInfoList infos = dir.entryInfoList(QDir::Files | QDir::Hidden | QDir::NoDotAndDotDot, QDir::NoSort);
    QList<std::pair<QString, DirectoryEntry>> keyed;
    keyed.reserve(infos.size());
    for (const QFileInfo& info : infos) {
        // isFile() follows links and is false for pipes, sockets and devices.
        if (!info.isFile())
            continue;
        const QString name = info.fileName();
        keyed.append({name.toUpper(), DirectoryEntry{name, name.startsWith(u'.')}});
    }
    std::sort(keyed.begin(), keyed.end(), [](const auto& a, const auto& b) {
        return a.first != b.first ? a.first < b.first : a.second.name < b.second.name;
    });
    entries.reserve(keyed.size());
    for (auto& [key, entry] : keyed)
        entries.append(std::move(entry));
    return entries;
}

bool StandardErrorIsTerminal() { return isatty(STDERR_FILENO) == 1; }

}  // namespace brindar
