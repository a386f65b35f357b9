#include "cfgreport.h"

#include "launcher/shellconfig.h"

#include <QMap>

QStringList cfgReport(const QStringList &lines)
{
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

    QStringList report;
    for (int i = 0; i < lines.size(); ++i) {
        const int n = i + 1;
        if (lines[i].isEmpty())
            continue;
        const QStringList said = byLine.value(n);
        report.append(QStringLiteral("%1: %2").arg(n).arg(
            said.isEmpty() ? QStringLiteral("ignored: no keyword") : said.join(QStringLiteral("; "))));
    }
    return report;
}
