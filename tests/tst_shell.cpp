// The start-up sequence and the main window, on simulated machines built per test.

#include "testmachine.h"
#include "testmain.h"

#include "desktop/dektopwidget.h"
#include "launcher/mainbutton.h"
#include "look/analog_clock.h"
#include "my_shell1/globals.h"
#include "my_shell1/my_shell1.h"
#include "my_shell1/startup.h"

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

} // namespace

class ShellTest : public QObject {
    Q_OBJECT

private slots:
    void init() { resetGlobals(); }

    // _kelpie.ini on the drives C to Z, as "L:content", and the medium's disk answer (opened, ok,
    // bytes, device type; number 3); what the start-up took and the language it handed on.
    void settingsFile_data()
    {
        QTest::addColumn<QStringList>("files");
        QTest::addColumn<QList<uint>>("disk");
        QTest::addColumn<QString>("taken");   // appRun|appArg|language|removable disk
        auto row = [](const char *rule, const QStringList &files, const char *taken,
                      QList<uint> disk = {1, 1, 12, 7}) { QTest::newRow(rule) << files << disk << QString(taken); };
        row("no file anywhere: language 0 handed on", {}, "||0|-");
        row("the lowest drive with the file ends the scan, even an empty file; A and B never count",
            {"A:appRun=floppy.exe", "E:", "F:appRun=late.exe\nimageLang=7"}, "||0|-");
        row("C comes before E", {"E:appRun=later.exe", "C:appRun=first.exe"}, "first.exe||0|-");
        row("keys at the line's start, case-sensitive; values untrimmed",
            {"E:appRun=first.exe\r\n  appRun=indented.exe\r\nAppRun=capital.exe\r\narg= -x \r\nxarg=no"},
            "first.exe| -x |0|-");
        row("a later empty value wins", {"E:appRun=first.exe\nappRun="}, "||0|-");
        row("the last language line wins", {"E:imageLang=9\nimageLang=3"}, "||3|-");
        row("an indented language key is not the key", {"E: imageLang=5"}, "||0|-");
        row("remDev=1 (with CR LF): removable, its disk asked", {"E:remDev=1\r"}, "||0|3");
        row("only \"1\" counts", {"E:remDev=true"}, "||0|-");
        // The removable flag stands whatever the volume answers; the disk number needs all of it.
        row("fewer bytes: disk unknown", {"E:remDev=1"}, "||0|-1", {1, 1, 8, 7});
        row("a CD-ROM device: disk unknown", {"E:remDev=1"}, "||0|-1", {1, 1, 12, 2});
        row("the query fails: disk unknown", {"E:remDev=1"}, "||0|-1", {1, 0, 12, 7});
        row("the volume does not open: disk unknown", {"E:remDev=1"}, "||0|-1", {0, 0, 0, 0});
    }

    void settingsFile()
    {
        QFETCH(QStringList, files);
        QFETCH(QList<uint>, disk);
        QFETCH(QString, taken);
        TestMachine m;
        m.use<ScriptedMachine>()->disk = {bool(disk[0]), bool(disk[1]), disk[2], disk[3], 3, 1};
        for (const QString &f : files)
            m.file(f.left(1) + ":/_kelpie.ini", f.mid(2).toUtf8() + "\n");
        passImageLanguage(scanSettingsFile());
        const quint32 language = m.sim->readUserDword("Software\\Morvane Works\\Tessel Imager", "Language").data;
        const QString number = removableBoot ? QString::number(mediumDiskNumber) : QString("-");
        QCOMPARE(QStringList({appRun, appArg, QString::number(language), number}).join('|'), taken);
        QCOMPARE(m.journal().last(), QString("sleep\t100"));
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

    // The start-up sequence on a medium booted from E:, the priority raised before the language is
    // handed on; Windows PE mode is a DWORD named WinPE of any value but 0.
    void sequence_data()
    {
        QTest::addColumn<QByteArray>("value");
        QTest::addColumn<bool>("peMode");
        QTest::newRow("any value but 0") << QByteArray("\"WinPE\"=dword:80000000") << true;
        QTest::newRow("zero") << QByteArray("\"WinPE\"=dword:00000000") << false;
        QTest::newRow("not a number") << QByteArray("\"WinPE\"=\"1\"") << false;
        QTest::newRow("another name") << QByteArray("\"WinPe2\"=dword:00000001") << false;
    }
    void sequence()
    {
        QFETCH(QByteArray, value);
        QFETCH(bool, peMode);
        TestMachine m;
        m.file("E:/_kelpie.ini", "imageLang=1049\nappRun=Zembra.exe\n")
            .file("x:/tmpReg/startNetwork.log", "bootLetter=E\n");
        m.write("registry.reg", "Windows Registry Editor Version 5.00\r\n\r\n"
                                "[HKEY_CURRENT_USER\\Software\\Morvane Works]\r\n" + value + "\r\n");
        qApp->setStyleSheet(QString());
        prepareShell(*qApp);
        QCOMPARE(winPeMode, peMode);
        QCOMPARE(appRun + bootLetter, QString("Zembra.exeE"));
        QVERIFY(!qApp->styleSheet().isEmpty());
        QVERIFY(screenWidth > 0 && screenHeight > 0);
        const QStringList journal = m.journal();
        const int priority = journal.indexOf(QRegularExpression("^priority.*"));
        QVERIFY(priority >= 0);
        QVERIFY(journal.indexOf("regwrite\tHKEY_CURRENT_USER\\Software\\Morvane Works\\Tessel Imager\t"
                                "Language\tdword:00000419") > priority);
    }

    // The panel at the foot of the logical screen, 64 high, its parts placed from the right; the
    // desktop on the same screen whatever the toolkit's (800x600 offscreen) says.
    void geometry_data()
    {
        QTest::addColumn<QSize>("screen");
        QTest::newRow("1024 by 768") << QSize(1024, 768);
        QTest::newRow("1920 by 1080") << QSize(1920, 1080);
        QTest::newRow("smaller than the toolkit's screen") << QSize(640, 480);
    }
    void geometry()
    {
        QFETCH(QSize, screen);
        TestMachine m;
        const QString size = QStringLiteral("%1x%2").arg(screen.width()).arg(screen.height());
        m.facts("display", "current=1280x960x32@60\nscreen=" + size.toUtf8());
        readScreen();
        my_shell1 shell;
        const int width = screen.width();
        QCOMPARE(shell.geometry(), QRect(0, screen.height() - 3, width, 64));
        QCOMPARE(formWidget<QWidget>(shell, "widget_2")->geometry(), QRect(width - 500, 0, 400, 64));
        QCOMPARE(shell.clock->geometry(), QRect(width - 68, 0, 64, 64));
        QCOMPARE(shell.mask(), QRegion(0, 0, width, 64));
        QCOMPARE(QSize(displayWidth, displayHeight), screen);
        QCOMPARE(shell.desktop->size(), screen);
        QCOMPARE(shell.desktop->titleLabel()->x(), width - 430);
        // Nothing moves before init(): the timers stand idle.
        for (QTimer *t : {shell.hideTimer, shell.statusTimer, shell.menuCloseTimer, shell.staticIpTimer,
                          shell.mapNetworkTimer})
            QVERIFY(!t->isActive());
    }
};

KELPIE_TEST_MAIN(ShellTest)
#include "tst_shell.moc"
