// The storage descriptor's bytes as the volume list reads a device's name out of them.

#include "fuzzing.h"
#include "settings/settingsfiles.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray bytes = fuzzing::bytes(data, size);
    const DeviceStrings strings = parseStorageDescriptor(bytes);
    // A string is taken from the bytes, never from beyond them.
    for (const QString *text : {&strings.vendor, &strings.product, &strings.revision}) {
        if (text->size() > bytes.size())
            __builtin_trap();
    }
    deviceNameOf(strings);
    return 0;
}
