// x:/tmpReg/startNetwork.log: the boot letter the start-up takes from it and the network state
// at boot, read through a simulated machine as the shell reads it.

#include "fuzzing.h"
#include "network/netcondition.h"
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
    QDir(dir.path()).mkpath(QStringLiteral("drives/X/tmpReg"));
    logPath = dir.path() + QStringLiteral("/drives/X/tmpReg/startNetwork.log");
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
    NetworkCondition record;
    readStartNetwork(record);
    if (record.bootLetter.contains(QLatin1Char('\n')) || record.ipAdd.contains(QLatin1Char('\r')))
        __builtin_trap();   // the reader takes every line end out
    return 0;
}
