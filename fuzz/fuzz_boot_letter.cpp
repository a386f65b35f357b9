// x:/tmpReg/startNetwork.log as the start-up reads it for the boot letter.

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
    QString letter;
    if (startupfiles::readBootLetter(&buffer, &letter) && letter.contains(QLatin1Char('\n')))
        __builtin_trap();
    return 0;
}
