// Times the three reading passes of a generated 10,000-line data_shell.cfg, with and without
// building the main menu, beside a bare read of the same file. Run by hand; not a test.

#include "launcher/menubuilder.h"
#include "launcher/my_action.h"
#include "launcher/mymenu.h"
#include "launcher/shellconfig.h"
#include "platform/sim/simplatform.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTextStream>
#include <cstdio>

// Stands in for the panel: owns what the builder makes and takes its two connections.
class Owner : public QWidget {
    Q_OBJECT
public slots:
    void startApp(int) {}
    void closeMenu() {}
};

static QByteArray generate(int lines)
{
    QByteArray out = "; generated medium\r\ntitle=Bench\r\nversion=1.0\r\n";
    int menuId = 0;
    for (int i = 0; out.count('\n') < lines; ++i) {
        switch (i % 10) {
        case 0:
            ++menuId;
            out += "mainMenu=" + QByteArray::number(menuId) + "|Group " + QByteArray::number(menuId) + "|g.png\r\n";
            break;
        case 5: out += "mainSeparator\r\n"; break;
        case 7: out += "morvaneItem=n.png|r.png|a.png|Tip|tool.exe|-x\r\n"; break;
        case 8: out += "fixedB3=t.png|Tasks|taskmgr.exe\r\n"; break;
        case 9: out += "; a comment line that says nothing at all\r\n"; break;
        default:
            out += "menuItem=" + QByteArray::number(menuId) + "|" + QByteArray::number(10000 + i)
                + "|Entry " + QByteArray::number(i) + "|icons/e24.png|tools/e.exe|-a -b|A hint\r\n";
        }
    }
    return out;
}

int main(int argc, char *argv[])
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);

    QTemporaryDir dir;
    QDir(dir.path()).mkpath(QStringLiteral("drives/X/Program Files/kelpie"));
    const QString host = dir.path() + QStringLiteral("/drives/X/Program Files/kelpie/data_shell.cfg");
    QFile f(host);
    if (!f.open(QIODevice::WriteOnly))
        return 1;
    f.write(generate(10000));
    f.close();
    setPlatform(new SimPlatform(dir.path()));

    const int rounds = 20;
    QElapsedTimer t;
    qint64 bare = 0, passes = 0, built = 0;
    int lines = 0;
    for (int r = 0; r < rounds; ++r) {
        t.start();
        QFile in(sys().hostPath(QStringLiteral("data_shell.cfg")));
        in.open(QIODevice::ReadOnly);
        QTextStream s(&in);
        s.setCodec("UTF-8");
        QString line;
        lines = 0;
        while (s.readLineInto(&line))
            ++lines;
        bare += t.nsecsElapsed();

        t.start();
        const MainMenuPass mp = shellconfig::readMainMenu();
        const LauncherPass lp = shellconfig::readLauncherButtons();
        const FixedPass fp = shellconfig::readFixedButtons();
        passes += t.nsecsElapsed();
        if (!mp.opened || lp.buttons.isEmpty() || !fp.buttons[2].set)
            return 2;

        Owner owner;
        myMenu menu(&owner);
        QList<my_Action *> actions;
        QList<myMenu *> subs;
        QList<AppEntry> apps;
        t.start();
        buildMainMenuEntries(mp, {&owner, &menu, &actions, &subs, &apps, {}, {}});
        built += t.nsecsElapsed();
    }
    std::printf("lines: %d\n", lines);
    std::printf("bare read:            %8.2f ms\n", bare / 1e6 / rounds);
    std::printf("three passes:         %8.2f ms (target under 30 ms)\n", passes / 1e6 / rounds);
    std::printf("three passes + menus: %8.2f ms\n", (passes + built) / 1e6 / rounds);
    setPlatform(nullptr);
    return 0;
}

#include "main.moc"
