// Paths and names as the program builds and checks them.
#pragma once

#include <QString>

namespace brindar {

// `name` in `folder`: one "/" between them, none added after a folder that already ends
// with one (the root "/"); an empty folder stands for the root.
QString JoinPath(const QString& folder, const QString& name);

// The characters no name may hold, so that what the program creates is portable.
inline constexpr char16_t kForbiddenNameCharacters[] = u"\\/:*?\"<>|";
bool HasForbiddenCharacters(const QString& name);

}  // namespace brindar
