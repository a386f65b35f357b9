// The condition logs (x:/tmpReg/desktopCondition1.log, startMenuCondition1.log) and
// resolution.log, all read line by line by the same reader.

#include "fuzzing.h"
#include "settings/settingsfiles.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    fuzzing::Input input(data, size);
    const QByteArray &content = input.content();
    const QStringList lines = readLogLines(input.device());
    // No line outlasts the bytes, and none keeps a line end.
    if (lines.size() > content.size() + 1)
        __builtin_trap();
    for (const QString &line : lines) {
        if (line.contains(QLatin1Char('\n')) || line.contains(QLatin1Char('\r')))
            __builtin_trap();
    }
    return 0;
}
