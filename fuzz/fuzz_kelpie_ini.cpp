// _kelpie.ini as the start-up reads it from the first drive that holds one.

#include "fuzzing.h"
#include "my_shell1/startupfiles.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    fuzzing::Input input(data, size);
    const SettingsFileFacts facts = startupfiles::readSettingsFile(&input.device());
    // A value never holds a line end: the reader takes them all out.
    if (facts.appRun.contains(QLatin1Char('\n')) || facts.arg.contains(QLatin1Char('\r')))
        __builtin_trap();
    return 0;
}
