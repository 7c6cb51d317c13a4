// What the program knows of the system it runs on.
#pragma once

#include <QString>

namespace brindar {

struct SystemInfo {
    // This platform counts as the NT family: the Macintosh comments column and the
    // metadata cache are available.
    bool nt = true;
    QString versionText;
    QString userName;
    QString computerName;
};

SystemInfo CurrentSystem();

}  // namespace brindar
