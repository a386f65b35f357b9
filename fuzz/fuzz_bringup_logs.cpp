// The logs the bring-up scripts leave (x:/static_ip.log, x:/map_network.log), read through a
// simulated machine as the shell reads them.

#include "fuzzing.h"
#include "network/bringuplog.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static const fuzzing::MachineFile logFile(QStringLiteral("bringup.log"));
    const QByteArray content = fuzzing::bytes(data, size);
    logFile.write(content);
    bringup::staticIpSucceeded(QStringLiteral("x:/bringup.log"));
    // The success text counts only where it stands in the file (carriage returns are taken out
    // of every line).
    if (bringup::mapNetworkSucceeded(QStringLiteral("x:/bringup.log"))
        && !QByteArray(content).replace('\r', QByteArray()).contains(bringup::mapSuccessText))
        __builtin_trap();
    return 0;
}
