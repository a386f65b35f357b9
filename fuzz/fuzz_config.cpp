// data_shell.cfg: the line reader, the shell's three passes with and without notes, and the
// checker's report over the same lines.

#include "fuzzing.h"
#include "launcher/shellconfig.h"
#include "my_shell1/linefile.h"
#include "tools/cfgcheck/cfgreport.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    fuzzing::Input input(data, size);
    QStringList lines;
    QString line;
    while (linefile::nextLine(input.device(), &line))
        lines.append(line);

    MainMenuPass menu;
    LauncherPass launcher;
    FixedPass fixed;
    int nextId = 1000;
    for (int i = 0; i < lines.size(); ++i) {
        shellconfig::mainMenuLine(lines[i], i + 1, &menu, nullptr);
        shellconfig::launcherLine(lines[i], i + 1, &nextId, &launcher, nullptr);
        shellconfig::fixedLine(lines[i], i + 1, &fixed, nullptr);
    }
    const QStringList report = cfgReport(lines);
    // Every line that is not empty gets exactly one line of the report.
    int nonEmpty = 0;
    for (const QString &l : qAsConst(lines))
        nonEmpty += l.isEmpty() ? 0 : 1;
    if (report.size() != nonEmpty)
        __builtin_trap();
    return 0;
}
