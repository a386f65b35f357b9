// _kelpie.ini as the start-up reads it from the first drive that holds one.

#include "fuzzing.h"
#include "my_shell1/startupfiles.h"

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
    const SettingsFileFacts facts = startupfiles::readSettingsFile(&buffer);
    // A value never holds a line end: the reader takes them all out.
    if (facts.appRun.contains(QLatin1Char('\n')) || facts.arg.contains(QLatin1Char('\r')))
        __builtin_trap();
    return 0;
}
