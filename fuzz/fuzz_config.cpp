// data_shell.cfg: the line reader on a device and on a file, the shell's three passes as they
// read the file (the button passes decode only the lines that can hold their key, which must
// give the same lines as decoding all), with and without notes, and the checker's report.

#include "fuzzing.h"
#include "launcher/shellconfig.h"
#include "my_shell1/linefile.h"
#include "tools/cfgcheck/cfgreport.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static const fuzzing::MachineFile file(QStringLiteral("Program Files/kelpie/data_shell.cfg"));
    static const QString drivePath = QStringLiteral("x:/Program Files/kelpie/data_shell.cfg");
    fuzzing::Input input(data, size);
    file.write(input.content());

    QStringList lines;
    QString line;
    while (linefile::nextLine(input.device(), &line))
        lines.append(line);
    QStringList read;
    if (!linefile::readLines(file.host(), &read) || read != lines)
        __builtin_trap();
    const QList<QByteArray> keys = {QByteArrayLiteral("morvaneItem="), QByteArrayLiteral("fixedB")};
    QStringList held;
    linefile::readLines(file.host(), &held, keys);
    if (held.size() != lines.size())
        __builtin_trap();
    for (int i = 0; i < lines.size(); ++i) {
        const bool holds = lines[i].contains(QLatin1String("morvaneItem=")) || lines[i].contains(QLatin1String("fixedB"));
        if (held[i] != lines[i] && (holds || !held[i].isEmpty()))
            __builtin_trap();
    }

    QList<ConfigNote> notes;
    shellconfig::readMainMenu(drivePath, nullptr);
    shellconfig::readMainMenu(drivePath, &notes);
    shellconfig::readLauncherButtons(drivePath, nullptr);
    shellconfig::readLauncherButtons(drivePath, &notes);
    shellconfig::readFixedButtons(drivePath, nullptr);
    shellconfig::readFixedButtons(drivePath, &notes);

    const QStringList report = cfgReport(lines);
    // Every line that is not empty gets exactly one line of the report.
    int nonEmpty = 0;
    for (const QString &l : qAsConst(lines))
        nonEmpty += l.isEmpty() ? 0 : 1;
    if (report.size() != nonEmpty)
        __builtin_trap();
    return 0;
}
