// Joining paths and checking names.
#include "core/paths.h"

#include "platform/filenames.h"

#include <QDir>
#include <string_view>

namespace brindar {

QString JoinPath(const QString& folder, const QString& name)
{
    return folder.endsWith(u'/') ? folder + name : folder + u'/' + name;
}

bool HasForbiddenCharacters(const QString& name)
{
    const std::u16string_view forbidden(kForbiddenNameCharacters);
    for (QChar c : name)
        if (forbidden.find(c.unicode()) != std::u16string_view::npos)
            return true;
    return false;
}

}  // namespace brindar

namespace brindar {

QUrl FileUrl(const QString& path)
{
    if (!HasUndecodableBytes(path))
        return QUrl::fromLocalFile(path);
    return QUrl::fromEncoded("file://" + EncodeFileName(path).toPercentEncoding("/"), QUrl::StrictMode);
}

QString NearestExistingFolder(const QString& folder, const QString& fallback)
{
    if (folder.isEmpty() || !folder.startsWith(u'/'))
        return fallback;
    QString candidate = QDir::cleanPath(folder);
    while (!IsDirectory(candidate)) {
        if (candidate == u"/")
            return fallback;
        const qsizetype slash = candidate.lastIndexOf(u'/');
        candidate = slash <= 0 ? QStringLiteral("/") : candidate.left(slash);
    }
    return candidate;
}

}  // namespace brindar
