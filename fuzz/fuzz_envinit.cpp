// The medium's locale file, envInit.ini, as the locale action reads it into its steps.

#include "actions/envinit.h"
#include "fuzzing.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    fuzzing::Input input(data, size);
    const QByteArray &content = input.content();
    const QList<envinit::Step> steps = envinit::read(&input.device());
    // Each line asks at most the four steps, once each.
    if (steps.size() > 4 * (content.count('\n') + content.count('\r') + 1))
        __builtin_trap();
    for (const envinit::Step &step : steps) {
        if (step.arguments.contains(QLatin1Char('\n')))
            __builtin_trap();
    }
    return 0;
}
