// The logs the bring-up scripts leave (x:/static_ip.log, x:/map_network.log), read through a
// simulated machine as the shell reads them.

#include "fuzzing.h"
#include "network/bringuplog.h"
#include "platform/sim/simplatform.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

namespace {
QString logPath;
}

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    fuzzing::quiet();
    static QTemporaryDir dir;
    QDir(dir.path()).mkpath(QStringLiteral("drives/X"));
    logPath = dir.path() + QStringLiteral("/drives/X/bringup.log");
    setPlatform(new SimPlatform(dir.path()));
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    QFile f(logPath);
    const QByteArray content = fuzzing::bytes(data, size);
    if (!f.open(QIODevice::WriteOnly | QIODevice::Truncate) || f.write(content) != content.size())
        abort();   // the run is worthless if the file does not hold the input
    f.close();
    bringup::staticIpSucceeded(QStringLiteral("x:/bringup.log"));
    // The success text counts only where it stands in the file (carriage returns are taken out
    // of every line).
    if (bringup::mapNetworkSucceeded(QStringLiteral("x:/bringup.log"))
        && !QByteArray(content).replace('\r', QByteArray()).contains(bringup::mapSuccessText))
        __builtin_trap();
    return 0;
}
