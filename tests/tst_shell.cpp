// The start-up sequence and the main window, on simulated machines built per test.

#include "testmachine.h"
#include "testmain.h"

#include "desktop/dektopwidget.h"
#include "launcher/mainbutton.h"
#include "launcher/my_pushbutton.h"
#include "launcher/mymenu.h"
#include "look/analog_clock.h"
#include "my_shell1/globals.h"
#include "my_shell1/my_shell1.h"
#include "my_shell1/startup.h"

#include <QAction>
#include <QTimer>

namespace {

// A machine whose disk answers and process list can be set by the test.
class ScriptedMachine : public SimPlatform {
public:
    using SimPlatform::SimPlatform;
    DeviceNumberAnswer disk;
    bool snapshotWorks = true;
    QStringList processes;

    DeviceNumberAnswer deviceNumber(QChar) override { return disk; }
    bool processNames(QStringList *names) override
    {
        *names = processes;
        return snapshotWorks;
    }
};

const char winPeKey[] = "Windows Registry Editor Version 5.00\r\n\r\n"
                        "[HKEY_CURRENT_USER\\Software\\Morvane Works]\r\n";

} // namespace

class ShellTest : public QObject {
    Q_OBJECT

private slots:
    void init() { resetGlobals(); }

    // _kelpie.ini on the drives C to Z, as "L:content"; what the start-up took from it.
    void settingsFile_data()
    {
        QTest::addColumn<QStringList>("files");
        QTest::addColumn<QString>("taken");   // appRun|appArg|language|removable disk
        auto row = [](const char *rule, const QStringList &files, const char *taken) {
            QTest::newRow(rule) << files << QString(taken);
        };
        row("the lowest drive with the file ends the scan, even an empty file; A and B never count",
            {"A:appRun=floppy.exe", "E:", "F:appRun=late.exe\nimageLang=7"}, "||0|-");
        row("C comes before E", {"E:appRun=later.exe", "C:appRun=first.exe"}, "first.exe||0|-");
        row("keys at the line's start, case-sensitive; values untrimmed",
            {"E:appRun=first.exe\r\n  appRun=indented.exe\r\nAppRun=capital.exe\r\narg= -x \r\nxarg=no"},
            "first.exe| -x |0|-");
        row("a later empty value wins", {"E:appRun=first.exe\nappRun="}, "||0|-");
        row("the image language, a number", {"E:imageLang=12"}, "||12|-");
        row("a language that is not a number reads 0", {"E:imageLang=abc"}, "||0|-");
        row("an empty language reads 0", {"E:imageLang="}, "||0|-");
        row("the last language line wins", {"E:imageLang=9\nimageLang=3"}, "||3|-");
        row("an indented language key is not the key", {"E: imageLang=5"}, "||0|-");
        row("remDev=1 (with CR LF): removable, its disk asked", {"E:remDev=1\r"}, "||0|3");
        row("remDev=0 is not removable", {"E:remDev=0"}, "||0|-");
        row("only \"1\" counts", {"E:remDev=true"}, "||0|-");
        row("a blank before the 1 is kept", {"E:remDev= 1"}, "||0|-");
        row("a blank after the 1 is kept", {"E:remDev=1 "}, "||0|-");
    }

    void settingsFile()
    {
        QFETCH(QStringList, files);
        QFETCH(QString, taken);
        TestMachine m;
        m.use<ScriptedMachine>()->disk = {true, true, 12, 7, 3, 1};
        for (const QString &f : files)
            m.file(f.left(1) + ":/_kelpie.ini", f.mid(2).toUtf8() + "\n");
        const int language = scanSettingsFile();
        const QString disk = removableBoot ? QString::number(mediumDiskNumber) : QString("-");
        QCOMPARE(QStringList({appRun, appArg, QString::number(language), disk}).join('|'), taken);
    }

    void languageHandedOnThenAWait()
    {
        TestMachine m;
        passImageLanguage(scanSettingsFile());   // no file anywhere: 0
        QVERIFY(m.read("registry.reg").contains("\"Language\"=dword:00000000"));
        QCOMPARE(m.journal().last(), QString("sleep\t100"));
        QCOMPARE(mediumDiskNumber, -1);
        QVERIFY(!removableBoot);
    }

    void diskNumber_data()
    {
        QTest::addColumn<bool>("opened");
        QTest::addColumn<bool>("ok");
        QTest::addColumn<quint32>("bytes");
        QTest::addColumn<quint32>("type");
        QTest::addColumn<int>("number");
        QTest::newRow("a disk answering twelve bytes") << true << true << 12u << 7u << 2;
        QTest::newRow("fewer bytes: unknown") << true << true << 8u << 7u << -1;
        QTest::newRow("a CD-ROM device: unknown") << true << true << 12u << 2u << -1;
        QTest::newRow("the query fails: unknown") << true << false << 12u << 7u << -1;
        QTest::newRow("the volume does not open: unknown") << false << false << 0u << 0u << -1;
    }

    void diskNumber()
    {
        QFETCH(bool, opened);
        QFETCH(bool, ok);
        QFETCH(quint32, bytes);
        QFETCH(quint32, type);
        QFETCH(int, number);
        TestMachine m;
        m.use<ScriptedMachine>()->disk = {opened, ok, bytes, type, 2, 1};
        QCOMPARE(mediumDiskNumberOf('E'), number);
        // The removable flag stands whatever the volume answers.
        m.file("E:/_kelpie.ini", "remDev=1\n");
        scanSettingsFile();
        QVERIFY(removableBoot);
        QCOMPARE(mediumDiskNumber, number);
    }

    void winPeModeFromRegistry_data()
    {
        QTest::addColumn<QByteArray>("values");
        QTest::addColumn<bool>("expected");
        QTest::newRow("one") << QByteArray("\"WinPE\"=dword:00000001\r\n") << true;
        QTest::newRow("large") << QByteArray("\"WinPE\"=dword:80000000\r\n") << true;
        QTest::newRow("zero") << QByteArray("\"WinPE\"=dword:00000000\r\n") << false;
        QTest::newRow("text") << QByteArray("\"WinPE\"=\"1\"\r\n") << false;
        QTest::newRow("other name") << QByteArray("\"WinPe2\"=dword:00000001\r\n") << false;
        QTest::newRow("no key") << QByteArray() << false;
    }

    void winPeModeFromRegistry()
    {
        QFETCH(QByteArray, values);
        QFETCH(bool, expected);
        TestMachine m;
        if (!values.isEmpty())
            m.write("registry.reg", QByteArray(winPeKey) + values);
        QCOMPARE(readWinPeMode(), expected);
    }

    void secondInstance_data()
    {
        QTest::addColumn<QStringList>("processes");
        QTest::addColumn<bool>("snapshot");
        QTest::addColumn<bool>("second");
        const QStringList twice{"autorun.exe", "winlogon.exe", "AutoRun.EXE"};
        QTest::newRow("itself alone: the first") << QStringList{"System", "autorun.exe"} << true << false;
        QTest::newRow("twice, in any case: a second") << twice << true << true;
        QTest::newRow("only the whole name counts")
            << QStringList{"autorun.exe.bak", "autorun.exe", "xautorun.exe"} << true << false;
        QTest::newRow("a failing snapshot: the first") << twice << false << false;
    }

    void secondInstance()
    {
        QFETCH(QStringList, processes);
        QFETCH(bool, snapshot);
        QFETCH(bool, second);
        TestMachine m;
        auto *machine = m.use<ScriptedMachine>();
        machine->processes = processes;
        machine->snapshotWorks = snapshot;
        QCOMPARE(probeSecondInstance(), second);
    }

    void bootLetterLastLineWins()
    {
        TestMachine m;
        readBootLetter();
        QCOMPARE(bootLetter, QString());
        m.write("drives/X/tmpReg/startNetwork.log",
                "bootLetter=D\r\nnetwork=1\r\n bootLetter=Q\r\nbootLetter=E\r\n");
        readBootLetter();
        QCOMPARE(bootLetter, QString("E"));
    }

    void savedFoldersFoundIgnoringCase()
    {
        TestMachine m;
        restoreSavedFolders();
        QCOMPARE(savedVolumeLetter, QString());

        m.write("drives/C/Windows/win.ini", "");
        m.write("drives/F/DESKTOP.1/a.lnk", "x");
        restoreSavedFolders();
        QCOMPARE(savedVolumeLetter, QString("F"));

        // A plain file of that name counts too, and the lower letter wins.
        resetGlobals();
        m.write("drives/D/start menu.1", "");
        restoreSavedFolders();
        QCOMPARE(savedVolumeLetter, QString("D"));
    }

    void sequenceOrder()
    {
        TestMachine m;
        m.registryDword("Software\\Morvane Works", "WinPE", 1)
            .file("E:/_kelpie.ini", "imageLang=1049\nappRun=Zembra.exe\narg= -a\n")
            .file("x:/tmpReg/startNetwork.log", "bootLetter=E\n");
        prepareShell(*qApp);
        QVERIFY(winPeMode);
        QCOMPARE(appRun, QString("Zembra.exe"));
        QCOMPARE(appArg, QString(" -a"));
        QCOMPARE(bootLetter, QString("E"));
        QCOMPARE(productVersion, QString("14.0.1"));
        QVERIFY(qApp->styleSheet().startsWith("QToolTip {border: 0px solid darkkhaki;"));
        QVERIFY(screenWidth > 0 && screenHeight > 0);
        QVERIFY(m.read("registry.reg").contains("\"Language\"=dword:00000419"));
        // The priority goes up before the language is handed on, and the 100 ms wait follows it.
        const QStringList journal = m.sim->journal();
        int priority = -1, sleep = -1;
        for (int i = 0; i < journal.size(); ++i) {
            if (journal[i].startsWith("priority"))
                priority = i;
            if (journal[i] == "sleep\t100")
                sleep = i;
        }
        QVERIFY(priority >= 0);
        QVERIFY(sleep > priority);
    }

    void geometryFollowsScreenWidth_data()
    {
        QTest::addColumn<int>("width");
        QTest::addColumn<int>("height");
        QTest::newRow("1024") << 1024 << 768;
        QTest::newRow("1280") << 1280 << 1024;
        QTest::newRow("1920") << 1920 << 1080;
    }

    void geometryFollowsScreenWidth()
    {
        QFETCH(int, width);
        QFETCH(int, height);
        TestMachine m;
        screenWidth = width;
        screenHeight = height;
        my_shell1 shell;
        QCOMPARE(shell.width(), width);
        QCOMPARE(shell.height(), 64);
        QCOMPARE(shell.pos(), QPoint(0, height - 3));
        QCOMPARE(formWidget<QWidget>(shell, "widget_2")->geometry(), QRect(width - 500, 0, 400, 64));
        QCOMPARE(shell.clock->geometry(), QRect(width - 68, 0, 64, 64));
        QCOMPARE(shell.mask(), QRegion(0, 0, width, 64));
        QCOMPARE(shell.startButton->pos(), QPoint(0, 3));
        QCOMPARE(displayWidth, width);
        QCOMPARE(displayHeight, height);
        QVERIFY(!shell.panelShown);
        QVERIFY(!shell.panelLocked);
    }

    void formMenuAndTimers()
    {
        TestMachine m;
        screenWidth = 1024;
        screenHeight = 768;
        my_shell1 shell;
        QVERIFY(shell.windowFlags() & Qt::WindowStaysOnTopHint);
        QVERIFY(!shell.panelPixmap.isNull());
        QVERIFY(!shell.edgePixmap.isNull());

        QCOMPARE(shell.mainMenu->actions().first()->font().family(), QString("Tahoma"));
        QCOMPARE(shell.mainMenu->actions().first()->font().pointSize(), 11);
        QCOMPARE(shell.noAdapterButton->parentWidget(), formWidget<QWidget>(shell, "widget"));

        // The five timers stand wired and idle; only the 10 ms shot to init() runs.
        for (QTimer *t : {shell.hideTimer, shell.statusTimer, shell.menuCloseTimer, shell.staticIpTimer,
                          shell.mapNetworkTimer})
            QVERIFY(!t->isActive());
        QVERIFY(shell.initTimer->isActive() && shell.initTimer->isSingleShot());
        QCOMPARE(shell.initTimer->interval(), 10);
    }

    void desktopTakesThePanelsLogicalScreen()
    {
        // The offscreen toolkit screen is 800x600; the simulated display's logical screen differs.
        TestMachine m;
        m.facts("display", "current=1280x960x32@60\nscreen=640x480");
        readScreen();
        my_shell1 shell;
        QCOMPARE(shell.width(), 640);
        QCOMPARE(shell.desktop->size(), QSize(640, 480));
        QCOMPARE(shell.desktop->titleLabel()->x(), 640 - 430);
    }
};

KELPIE_TEST_MAIN(ShellTest)
#include "tst_shell.moc"
