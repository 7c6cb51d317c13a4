// System identity through Qt: version text, login name, host name.
#include "platform/systeminfo.h"

#include <QSysInfo>

namespace brindar {

SystemInfo CurrentSystem()
{
    SystemInfo info;
    info.versionText = QSysInfo::prettyProductName();
    info.userName = qEnvironmentVariable("USER");
    if (info.userName.isEmpty())
        info.userName = qEnvironmentVariable("LOGNAME");
    info.computerName = QSysInfo::machineHostName();
    return info;
}

}  // namespace brindar
