// machine.ini of the simulated machine: every fact taken from it, each with its default.

#include "fuzzing.h"
#include "platform/sim/simmachine.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const SimMachineFacts f = SimMachineFacts::fromIni(fuzzing::bytes(data, size));
    // The facts the shell relies on always hold something usable.
    if (f.modes.isEmpty() || f.layouts.isEmpty() || f.currentMode.width <= 0 || f.currentMode.height <= 0)
        __builtin_trap();
    if (f.workingDirectory.size() < 2 || f.workingDirectory[1] != QLatin1Char(':'))
        __builtin_trap();
    DisplayMode back;
    if (!SimMachineFacts::parseMode(SimMachineFacts::modeText(f.currentMode), &back))
        __builtin_trap();
    for (char c = 'A'; c <= 'Z'; ++c)
        f.volume(QLatin1Char(c));
    return 0;
}
