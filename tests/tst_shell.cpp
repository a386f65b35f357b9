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

    void settingsFileOnLowestDriveOnly();
    void settingsKeysAtColumnZeroUntrimmed();
    void imageLanguage_data();
    void imageLanguage();
    void languageHandedOnThenAWait();
    void removableFlag_data();
    void removableFlag();
    void diskNumber_data();
    void diskNumber();
    void winPeModeFromRegistry_data();
    void winPeModeFromRegistry();
    void secondInstance_data();
    void secondInstance();
    void bootLetterLastLineWins();
    void savedFoldersFoundIgnoringCase();
    void sequenceOrder();

    void geometryFollowsScreenWidth_data();
    void geometryFollowsScreenWidth();
    void formMenuAndTimers();
    void desktopTakesThePanelsLogicalScreen();
};

void ShellTest::settingsFileOnLowestDriveOnly()
{
    TestMachine m;
    m.write("drives/E/_kelpie.ini", "");
    m.write("drives/F/_kelpie.ini", "appRun=late.exe\nimageLang=7\n");
    m.addDrive('A');
    m.write("drives/A/_kelpie.ini", "appRun=floppy.exe\n");   // A and B are never looked at
    QCOMPARE(scanSettingsFile(), 0);
    QCOMPARE(appRun, QString());

    // A drive below the empty file's still wins.
    TestMachine n;
    n.write("drives/E/_kelpie.ini", "appRun=later.exe\n");
    n.write("drives/C/_kelpie.ini", "appRun=first.exe\n");
    QCOMPARE(scanSettingsFile(), 0);
    QCOMPARE(appRun, QString("first.exe"));
}

void ShellTest::settingsKeysAtColumnZeroUntrimmed()
{
    TestMachine m;
    m.write("drives/E/_kelpie.ini",
            "appRun=first.exe\r\n  appRun=indented.exe\r\nAppRun=capital.exe\r\n"
            "arg= -x \r\nxarg=no\r\n");
    scanSettingsFile();
    QCOMPARE(appRun, QString("first.exe"));
    QCOMPARE(appArg, QString(" -x "));

    resetGlobals();
    m.write("drives/E/_kelpie.ini", "appRun=first.exe\nappRun=\n");
    scanSettingsFile();
    QCOMPARE(appRun, QString(""));
}

void ShellTest::imageLanguage_data()
{
    QTest::addColumn<QByteArray>("settings");
    QTest::addColumn<int>("language");
    QTest::newRow("a number") << QByteArray("imageLang=12") << 12;
    QTest::newRow("not a number reads 0") << QByteArray("imageLang=abc") << 0;
    QTest::newRow("empty reads 0") << QByteArray("imageLang=") << 0;
    QTest::newRow("the last line wins") << QByteArray("imageLang=9\nimageLang=3") << 3;
    QTest::newRow("the key stands at the line's start") << QByteArray(" imageLang=5") << 0;
}

void ShellTest::imageLanguage()
{
    QFETCH(QByteArray, settings);
    QFETCH(int, language);
    TestMachine m;
    m.file("E:/_kelpie.ini", settings + "\n");
    QCOMPARE(scanSettingsFile(), language);
}

void ShellTest::languageHandedOnThenAWait()
{
    TestMachine m;
    passImageLanguage(scanSettingsFile());   // no file anywhere: 0
    QVERIFY(m.read("registry.reg").contains("\"Language\"=dword:00000000"));
    QCOMPARE(m.journal().last(), QString("sleep\t100"));
    QCOMPARE(mediumDiskNumber, -1);
    QVERIFY(!removableBoot);
}

void ShellTest::removableFlag_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<bool>("removable");
    QTest::newRow("remDev=1 with CR LF: removable, its disk asked") << QByteArray("remDev=1\r") << true;
    QTest::newRow("0 is not") << QByteArray("remDev=0") << false;
    QTest::newRow("only \"1\" counts") << QByteArray("remDev=true") << false;
    QTest::newRow("a blank before is kept") << QByteArray("remDev= 1") << false;
    QTest::newRow("a blank after is kept") << QByteArray("remDev=1 ") << false;
}

void ShellTest::removableFlag()
{
    QFETCH(QByteArray, line);
    QFETCH(bool, removable);
    TestMachine m;
    m.use<ScriptedMachine>()->disk = {true, true, 12, 7, 3, 1};
    m.file("E:/_kelpie.ini", line + "\n");
    scanSettingsFile();
    QCOMPARE(removableBoot, removable);
    QCOMPARE(mediumDiskNumber, removable ? 3 : -1);
}

void ShellTest::diskNumber_data()
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

void ShellTest::diskNumber()
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

void ShellTest::winPeModeFromRegistry_data()
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

void ShellTest::winPeModeFromRegistry()
{
    QFETCH(QByteArray, values);
    QFETCH(bool, expected);
    TestMachine m;
    if (!values.isEmpty())
        m.write("registry.reg", QByteArray(winPeKey) + values);
    QCOMPARE(readWinPeMode(), expected);
}

void ShellTest::secondInstance_data()
{
    QTest::addColumn<QStringList>("processes");
    QTest::addColumn<bool>("snapshot");
    QTest::addColumn<bool>("second");
    QTest::newRow("itself alone: the first") << QStringList{"System", "autorun.exe", "cmd.exe"} << true << false;
    QTest::newRow("twice, in any case: a second") << QStringList{"autorun.exe", "winlogon.exe", "AutoRun.EXE"} << true << true;
    QTest::newRow("only the whole name counts")
        << QStringList{"autorun.exe.bak", "autorun.exe", "xautorun.exe"} << true << false;
    QTest::newRow("a failing snapshot: the first") << QStringList{"autorun.exe", "autorun.exe"} << false << false;
}

void ShellTest::secondInstance()
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

void ShellTest::bootLetterLastLineWins()
{
    TestMachine m;
    readBootLetter();
    QCOMPARE(bootLetter, QString());
    m.write("drives/X/tmpReg/startNetwork.log",
            "bootLetter=D\r\nnetwork=1\r\n bootLetter=Q\r\nbootLetter=E\r\n");
    readBootLetter();
    QCOMPARE(bootLetter, QString("E"));
}

void ShellTest::savedFoldersFoundIgnoringCase()
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

void ShellTest::sequenceOrder()
{
    TestMachine m;
    m.write("registry.reg", QByteArray(winPeKey) + "\"WinPE\"=dword:00000001\r\n");
    m.write("drives/E/_kelpie.ini", "imageLang=1049\nappRun=Zembra.exe\narg= -a\n");
    m.write("drives/X/tmpReg/startNetwork.log", "bootLetter=E\n");
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

void ShellTest::geometryFollowsScreenWidth_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("height");
    QTest::newRow("1024") << 1024 << 768;
    QTest::newRow("1280") << 1280 << 1024;
    QTest::newRow("1920") << 1920 << 1080;
}

void ShellTest::geometryFollowsScreenWidth()
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

void ShellTest::formMenuAndTimers()
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

void ShellTest::desktopTakesThePanelsLogicalScreen()
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

KELPIE_TEST_MAIN(ShellTest)
#include "tst_shell.moc"
