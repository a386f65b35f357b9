// _kelpie.ini as the Save dialog reads it, and the saved file composed back from what it read.

#include "fuzzing.h"
#include "settings/settingsfiles.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    fuzzing::Input input(data, size);
    const KelpieSettings settings = readKelpieSettings(input.device());
    // A value never holds a line end: the reader takes them all out.
    for (const QString *value : {&settings.imageLang, &settings.appRun, &settings.build}) {
        if (value->contains(QLatin1Char('\n')) || value->contains(QLatin1Char('\r')))
            __builtin_trap();
    }
    composeKelpieSettings(settings);
    composeKelpieNet(settings.network, settings.firewall, settings.pwd, settings.build);
    return 0;
}
