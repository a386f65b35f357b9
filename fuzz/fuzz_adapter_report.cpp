// The adapter status report as the network step parses it back into a network state.

#include "fuzzing.h"
#include "network/netcondition.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    NetworkCondition record;
    parseAdapterReport(QString::fromUtf8(fuzzing::bytes(data, size)), record);
    // A state always compares equal with itself.
    if (networkChanged(record, record))
        __builtin_trap();
    return 0;
}
