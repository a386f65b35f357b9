// registry.reg of the simulated machine: parsed, asked for every key and value it holds, written
// back and read again. What the shell writes back must read as what it read.

#include "fuzzing.h"
#include "platform/sim/simregistry.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    SimRegistry reg;
    reg.parse(fuzzing::bytes(data, size));
    const QByteArray first = reg.serialize();

    SimRegistry again;
    if (!again.parse(first))
        __builtin_trap();   // the written file lost its header
    if (again.serialize() != first)
        __builtin_trap();   // a value changed on its way through the file

    const QStringList hives = {QStringLiteral("HKCU"), QStringLiteral("HKLM"), QStringLiteral("HKCR"),
                               QStringLiteral("HKU"), QStringLiteral("HKCC")};
    QStringList keys = hives;
    for (int i = 0; i < keys.size() && i < 64; ++i) {
        for (const QString &child : again.enumKeys(keys[i]))
            keys.append(keys[i] + QLatin1Char('\\') + child);
        if (!again.keyExists(keys[i]))
            __builtin_trap();   // listed, yet not there
        for (const QString &name : again.valueNames(keys[i])) {
            const RegData v = again.readValue(keys[i], name.isEmpty() ? QStringLiteral("@") : name);
            if (!v.found)
                __builtin_trap();
        }
    }
    // Writes of the shell's kinds of value go through and read back.
    for (const QString &key : keys.mid(0, 8)) {
        again.writeDword(key, QStringLiteral("Language"), 1033);
        again.writeString(key + QStringLiteral("\\Sub"), QStringLiteral("Name"), QStringLiteral("a\"b\\c"));
        if (again.readValue(key, QStringLiteral("language")).dword != 1033)
            __builtin_trap();
    }
    return 0;
}
