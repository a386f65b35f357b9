// For whoever builds a medium: reads a data_shell.cfg by the shell's own rules and prints, line
// by line, what each line gives to the menu, the launcher buttons and the fixed buttons, and
// which lines give nothing and why.
//
//   cfgcheck path/to/data_shell.cfg

#include "launcher/shellconfig.h"
#include "my_shell1/linefile.h"

#include <QCoreApplication>
#include <QMap>
#include <QTextStream>
#include <cstdio>

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    if (argc != 2) {
        std::fprintf(stderr, "usage: cfgcheck <data_shell.cfg>\n");
        return 2;
    }
    QStringList lines;
    if (!linefile::readLines(QString::fromLocal8Bit(argv[1]), &lines)) {
        std::fprintf(stderr, "cannot open %s: the shell would show no entries, buttons or texts\n", argv[1]);
        return 1;
    }

    // The shell's three passes, one after the other, each over every line.
    QList<ConfigNote> notes;
    MainMenuPass menu;
    for (int i = 0; i < lines.size(); ++i)
        shellconfig::mainMenuLine(lines[i], i + 1, &menu, &notes);
    LauncherPass launcher;
    int nextId = 1000;
    for (int i = 0; i < lines.size(); ++i)
        shellconfig::launcherLine(lines[i], i + 1, &nextId, &launcher, &notes);
    FixedPass fixed;
    for (int i = 0; i < lines.size(); ++i)
        shellconfig::fixedLine(lines[i], i + 1, &fixed, &notes);

    QMap<int, QStringList> byLine;
    for (const ConfigNote &n : notes)
        byLine[n.line].append(n.text);

    // Parents are known only from the lines above: say so where an entry will be dropped.
    QList<int> menusSoFar;
    for (const MenuLine &m : menu.menu) {
        if (m.kind == MenuLine::SubMenu) {
            menusSoFar.append(m.id);
            if (m.id <= 0)
                byLine[m.line].append(QStringLiteral("warning: menu id %1 can hold no entries").arg(m.id));
        } else if (m.kind == MenuLine::Item) {
            if (m.parentId < 0)
                byLine[m.line].append(QStringLiteral("warning: negative parent, the entry is never shown"));
            else if (m.parentId > 0 && !menusSoFar.contains(m.parentId))
                byLine[m.line].append(QStringLiteral("warning: no menu %1 above this line, the entry is dropped").arg(m.parentId));
            if (m.id >= 1000)
                byLine[m.line].append(QStringLiteral("warning: id %1 lies in the launcher buttons' range").arg(m.id));
        }
    }

    QTextStream out(stdout);
    out.setCodec("UTF-8");
    for (int i = 0; i < lines.size(); ++i) {
        const int n = i + 1;
        if (lines[i].isEmpty())
            continue;
        const QStringList said = byLine.value(n);
        out << n << ": " << (said.isEmpty() ? QStringLiteral("ignored: no keyword") : said.join(QStringLiteral("; ")))
            << '\n';
    }
    return 0;
}
