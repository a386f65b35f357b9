// _kelpie.ini as the Save dialog reads it, and the saved file composed back from what it read.

#include "fuzzing.h"
#include "settings/settingsfiles.h"

#include <QBuffer>

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    fuzzing::quiet();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    QByteArray content = fuzzing::bytes(data, size);
    QBuffer buffer(&content);
    buffer.open(QIODevice::ReadOnly);
    const KelpieSettings settings = readKelpieSettings(buffer);
    // A value never holds a line end: the reader takes them all out.
    for (const QString *value : {&settings.imageLang, &settings.appRun, &settings.build}) {
        if (value->contains(QLatin1Char('\n')) || value->contains(QLatin1Char('\r')))
            __builtin_trap();
    }
    composeKelpieSettings(settings);
    composeKelpieNet(settings.network, settings.firewall, settings.pwd, settings.build);
    return 0;
}
