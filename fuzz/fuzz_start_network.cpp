// x:/tmpReg/startNetwork.log: the boot letter the start-up takes from it and the network state
// at boot, read through a simulated machine as the shell reads it.

#include "fuzzing.h"
#include "network/netcondition.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static const fuzzing::MachineFile logFile(QStringLiteral("tmpReg/startNetwork.log"));
    logFile.write(fuzzing::bytes(data, size));
    NetworkCondition record;
    readStartNetwork(record);
    if (record.bootLetter.contains(QLatin1Char('\n')) || record.ipAdd.contains(QLatin1Char('\r')))
        __builtin_trap();   // the reader takes every line end out
    return 0;
}
