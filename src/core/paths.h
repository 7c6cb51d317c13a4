// Paths and names as the program builds and checks them.
#pragma once

#include <QString>
#include <QUrl>

namespace brindar {

// `name` in `folder`: one "/" between them, none added after a folder that already ends
// with one (the root "/"); an empty folder stands for the root.
QString JoinPath(const QString& folder, const QString& name);

// The characters no name may hold, so that what the program creates is portable.
inline constexpr char16_t kForbiddenNameCharacters[] = u"\\/:*?\"<>|";
bool HasForbiddenCharacters(const QString& name);

}  // namespace brindar

namespace brindar {

// The file:// address of a path. A name that is not UTF-8 keeps its bytes in it (%FF),
// so the address still names the file.
QUrl FileUrl(const QString& path);

// The folder itself when it exists, else its nearest existing parent, else `fallback`
// (the window opens there when the folder it remembers has gone).
QString NearestExistingFolder(const QString& folder, const QString& fallback);

}  // namespace brindar
