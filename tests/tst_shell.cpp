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

struct ScriptedTestMachine : TestMachine {
    ScriptedTestMachine()
    {
        scripted = new ScriptedMachine(folder());
        setPlatform(scripted);
        sim = scripted;
    }
    ScriptedMachine *scripted;
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
    void imageLanguageForms();
    void languageWrittenZeroWithoutFile();
    void removableBootForms();
    void diskNumberNeedsTwelveBytesOfADisk();
    void winPeModeFromRegistry_data();
    void winPeModeFromRegistry();
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

void ShellTest::imageLanguageForms()
{
    TestMachine m;
    const QList<QPair<QByteArray, int>> cases = {
        {"imageLang=12", 12}, {"imageLang=abc", 0}, {"imageLang=", 0},
        {"imageLang=9\nimageLang=3", 3}, {" imageLang=5", 0}};
    for (const auto &c : cases) {
        m.write("drives/E/_kelpie.ini", c.first + "\n");
        QCOMPARE(scanSettingsFile(), c.second);
    }
    passImageLanguage(12);
    QVERIFY(m.read("registry.reg").contains("\"Language\"=dword:0000000c"));
    const QStringList journal = m.sim->journal();
    QVERIFY(!journal.isEmpty());
    QCOMPARE(journal.last(), QString("sleep\t100"));
}

void ShellTest::languageWrittenZeroWithoutFile()
{
    TestMachine m;
    passImageLanguage(scanSettingsFile());
    QVERIFY(m.read("registry.reg").contains("\"Language\"=dword:00000000"));
    QCOMPARE(mediumDiskNumber, -1);
    QVERIFY(!removableBoot);
}

void ShellTest::removableBootForms()
{
    ScriptedTestMachine m;
    m.scripted->disk = {true, true, 12, 7, 3, 1};
    for (const char *line : {"remDev=0", "remDev=true", "remDev= 1", "remDev=1 "}) {
        resetGlobals();
        m.write("drives/E/_kelpie.ini", QByteArray(line) + "\n");
        scanSettingsFile();
        QVERIFY2(!removableBoot, line);
        QCOMPARE(mediumDiskNumber, -1);
    }
    resetGlobals();
    m.write("drives/E/_kelpie.ini", "remDev=1\r\n");
    scanSettingsFile();
    QVERIFY(removableBoot);
    QCOMPARE(mediumDiskNumber, 3);
}

void ShellTest::diskNumberNeedsTwelveBytesOfADisk()
{
    ScriptedTestMachine m;
    m.scripted->disk = {true, true, 12, 7, 2, 1};
    QCOMPARE(mediumDiskNumberOf('E'), 2);
    m.scripted->disk = {true, true, 8, 7, 2, 1};
    QCOMPARE(mediumDiskNumberOf('E'), -1);
    m.scripted->disk = {true, true, 12, 2, 2, 1};   // a CD-ROM device
    QCOMPARE(mediumDiskNumberOf('E'), -1);
    m.scripted->disk = {true, false, 12, 7, 2, 1};
    QCOMPARE(mediumDiskNumberOf('E'), -1);
    m.scripted->disk = {false, false, 0, 0, 0, 0};
    QCOMPARE(mediumDiskNumberOf('E'), -1);

    // A volume that does not answer leaves the number unknown while the removable flag stays.
    m.write("drives/E/_kelpie.ini", "remDev=1\n");
    scanSettingsFile();
    QVERIFY(removableBoot);
    QCOMPARE(mediumDiskNumber, -1);
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

void ShellTest::secondInstance()
{
    ScriptedTestMachine m;
    m.scripted->processes = QStringList{"System", "autorun.exe", "cmd.exe"};
    QVERIFY(!probeSecondInstance());
    m.scripted->processes = QStringList{"autorun.exe", "winlogon.exe", "AutoRun.EXE"};
    QVERIFY(probeSecondInstance());
    m.scripted->processes = QStringList{"autorun.exe.bak", "autorun.exe", "xautorun.exe"};
    QVERIFY(!probeSecondInstance());
    m.scripted->snapshotWorks = false;
    m.scripted->processes = QStringList{"autorun.exe", "autorun.exe"};
    QVERIFY(!probeSecondInstance());
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

    // Without data_shell.cfg the menu still offers the four fixed entries, in their order.
    QStringList texts;
    for (QAction *a : shell.mainMenu->actions())
        texts << (a->isSeparator() ? QString("-") : a->text());
    QCOMPARE(texts, QStringList({"About Kelpie", "-", "-", "Run...", "Load Driver",
                                 "Turn Off Computer"}));
    QCOMPARE(shell.mainMenu->actions().first()->font().family(), QString("Tahoma"));
    QCOMPARE(shell.mainMenu->actions().first()->font().pointSize(), 11);
    QCOMPARE(shell.noAdapterButton->parentWidget(), formWidget<QWidget>(shell, "widget"));

    // The five timers stand wired and idle; only the 10 ms shot to init() runs.
    for (QTimer *t : {shell.hideTimer, shell.statusTimer, shell.menuCloseTimer, shell.staticIpTimer,
                      shell.mapNetworkTimer}) {
        QVERIFY(t);
        QVERIFY(!t->isActive());
    }
    QVERIFY(shell.initTimer->isActive() && shell.initTimer->isSingleShot());
    QCOMPARE(shell.initTimer->interval(), 10);
}

void ShellTest::desktopTakesThePanelsLogicalScreen()
{
    // The offscreen toolkit screen is 800x600; the simulated display's logical screen differs.
    TestMachine m;
    m.write("machine.ini", "[display]\ncurrent=1280x960x32@60\nscreen=640x480\n");
    readScreen();
    my_shell1 shell;
    QCOMPARE(shell.width(), 640);
    QCOMPARE(shell.desktop->size(), QSize(640, 480));
    QCOMPARE(shell.desktop->titleLabel()->x(), 640 - 430);
}

KELPIE_TEST_MAIN(ShellTest)
#include "tst_shell.moc"
