// Joining paths and checking names.
#include "core/paths.h"

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
