#include "bringuplog.h"

#include "netcondition.h"
#include "platform/platform.h"

#include <QFile>

namespace bringup {

bool staticIpSucceeded(const QString &logDrivePath)
{
    QFile log(sys().hostPath(logDrivePath));
    if (!log.exists() || !log.open(QIODevice::ReadOnly))
        return false;
    int lines = 0;
    QString line;
    // Two lines already decide it; the rest of a huge log is not read.
    while (lines < 2 && netread::nextLine(log, &line)) {
        if (!line.isEmpty())
            ++lines;
    }
    return lines < 2;
}

bool mapNetworkSucceeded(const QString &logDrivePath)
{
    QFile log(sys().hostPath(logDrivePath));
    if (!log.exists() || !log.open(QIODevice::ReadOnly))
        return false;
    QString line;
    while (netread::nextLine(log, &line)) {
        if (line.contains(QLatin1String(mapSuccessText)))
            return true;
    }
    return false;
}

} // namespace bringup
