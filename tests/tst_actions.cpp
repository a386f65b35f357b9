// The system actions that hand work to the medium's programs: the locale file, the driver
// installer, the Run box, the PXE scripts and the file associations script.

#include "testmachine.h"
#include "testmain.h"
#include "testshell.h"

#include "my_shell1/linefile.h"
#include "platform/sim/simregistry.h"

namespace {

const QString envInit = QStringLiteral("drives/X/Program Files/kelpie/envInit.ini");
const QString scripts = QStringLiteral("drives/X/Program Files/kelpie/Kelpie_Scripts/");

// The journal's lines of the given operations ("a|b"), fields joined by blanks.
QStringList journalOf(const TestMachine &m, const QString &operations)
{
    return m.journalOf(operations).replaceInStrings("\t", " ");
}

} // namespace

class ActionsTest : public QObject {
    Q_OBJECT

private slots:
    void init() { resetGlobals(); }

    void locale_data()
    {
        QTest::addColumn<QByteArray>("file");   // null: no file at all
        QTest::addColumn<QStringList>("effects");
        const QString mui = "start open wpeutil.exe SetMuiLanguage %1 0";
        QByteArray junk;
        for (int i = 0; i < 70000; ++i)
            junk += char((i * 7919) % 251);
        QTest::newRow("15 gives -180") << QByteArray("TimeZone=15\r\n") << QStringList{"timezone -180"};
        QTest::newRow("abc gives 720") << QByteArray("TimeZone=abc\n") << QStringList{"timezone 720"};
        QTest::newRow("a value past 32 bits is no number")
            << QByteArray("TimeZone=99999999999\n") << QStringList{"timezone 720"};
        QTest::newRow("the largest number wraps as the field does")
            << QByteArray("TimeZone=2147483647\n") << QStringList{"timezone 780"};
        QTest::newRow("every occurrence of the key is removed")
            << QByteArray("TimeZone=1TimeZone=3\n") << QStringList{"timezone -60"};
        QTest::newRow("a key counts anywhere in the line")
            << QByteArray("; SetMuiLanguage=fr-FR\n") << QStringList{mui.arg("; fr-FR")};
        QTest::newRow("every carriage return is removed")
            << QByteArray("Set\rMuiLanguage=de-DE\r\r\n") << QStringList{mui.arg("de-DE")};
        QTest::newRow("two keys in one line: the second sees the line without the first")
            << QByteArray("TimeZone=3SetUserLocale=de-DE\n")
            << QStringList{"timezone 720", "start open wpeutil.exe SetUserLocale 3de-DE 0"};
        QTest::newRow("keys are case-sensitive, others skipped")
            << QByteArray("timezone=5\nLanguage=fr\n\n") << QStringList();
        QTest::newRow("a line too long for any value is passed over whole")
            << "TimeZone=13\n" + QByteArray(linefile::maxLineBytes + 10, 'x')
                   + "TimeZone=15\nSetUserLocale=fr-FR\n"
            << QStringList{"timezone -60", "start open wpeutil.exe SetUserLocale fr-FR 0"};
        QTest::newRow("binary bytes apply nothing") << junk << QStringList();
        QTest::newRow("an empty file does nothing and is deleted") << QByteArray("") << QStringList();
        QTest::newRow("no file, nothing at all") << QByteArray() << QStringList();
    }

    void locale()
    {
        QFETCH(QByteArray, file);
        QFETCH(QStringList, effects);
        TestMachine m;
        if (!file.isNull())
            m.write(envInit, file);
        auto shell = makeShell();
        QStringList seen;
        for (const QString &line : journalOf(m, "timezone|start"))
            seen << line.section(' ', 0, line.startsWith("timezone") ? 1 : -1);
        QCOMPARE(seen, effects);
        QCOMPARE(journalOf(m, "localtime").size(), effects.filter("timezone").size());
        QVERIFY(!QFile::exists(m.folder() + "/" + envInit));
    }

    void localeKeepsClockDaylightAndTheRestOfTheMachine()
    {
        TestMachine m;
        const QByteArray ini = "; my machine\r\n[display]\r\ncurrent=800x600\r\n\r\n[time]\r\n"
                               "localTime=2026-03-01 10:20:30.250\r\nbias=-60\r\nstandardName=Central\r\n"
                               "daylightName=Central Summer\r\ndaylightBias=-60\r\n"
                               "daylightDate=0,3,0,5,2,0,0,0\r\n\r\n[firewall]\r\nstate=on\r\n";
        m.write("machine.ini", ini);
        m.write(envInit, "TimeZone=15\n");
        auto shell = makeShell();
        // The clock is read before the zone is written and written back after it; both land in
        // place in the file, the rest of it as it was.
        QCOMPARE(journalOf(m, "timezone|localtime"),
                 QStringList({"timezone -180 0 -60 Central Central Summer", "localtime 2026-03-01 10:20:30.250"}));
        QCOMPARE(m.read("machine.ini"),
                 QByteArray(ini).replace("bias=-60\r\nstandard", "bias=-180\r\nstandard")
                     .replace("0,0,0\r\n\r\n", "0,0,0\r\nstandardBias=0\r\nstandardDate=0,0,0,0,0,0,0,0\r\n\r\n"));
        TimeZoneInfo zone;
        QCOMPARE(m.sim->timeZoneInformation(&zone), 1u);
    }

    void driverTree()
    {
        TestMachine m;
        for (const char *f : {"a.inf", "b.INF", "c.inf.bak", "README.txt", "Net/d.inf", "Net/Deep/e.inf"})
            m.write(QString("drives/E/Drivers/") + f, "x");
        QVERIFY(QFile::link(m.folder() + "/drives/E/Drivers", m.folder() + "/drives/E/Drivers/Net/back"));
        auto shell = makeShell();
        shell->loadDriver_new("E:\\Drivers\\");
        QCOMPARE(journalOf(m, "start").replaceInStrings("start open InstallDriver.exe ", "").join('|'),
                 QString("\"E:\\Drivers\\a.inf\" /exit-if-ok 1|\"E:\\Drivers\\b.INF\" /exit-if-ok 1|\"E:\\Drivers\\Net"
                         "\\d.inf\" /exit-if-ok 1|\"E:\\Drivers\\Net\\Deep\\e.inf\" /exit-if-ok 1"));
        const int before = m.journal().size();
        shell->loadDriver_new("E:\\Missing\\");
        QCOMPARE(m.journal().size(), before);
    }

    void pxeScripts_data()
    {
        QTest::addColumn<QStringList>("files");
        QTest::addColumn<QStringList>("log");
        QTest::addColumn<QStringList>("calls");   // the pause, then each script: mask 12, "Open", shown
        QTest::addColumn<QString>("label");       // until the next tick
        const QString folder = "X:\\Program Files\\kelpie\\Kelpie_Scripts\\";
        const auto ex = [&](const QString &name) { return "startex 12 Open " + folder + name + "   1"; };
        QTest::newRow("no folder") << QStringList() << QStringList{"PXE Kelpie_Scripts not exist"} << QStringList()
                                   << QString();
        QTest::newRow("no script at the top, no pause")
            << QStringList{"notes.txt", "Sub/"} << QStringList{"PXE Kelpie_Scripts exist", "PXE script not exist"}
            << QStringList() << QString();
        QTest::newRow("three scripts after one pause, by name ignoring case")
            << QStringList{"b.cmd", "A.CMD", "c.cmd", "d.bat", "e.cmd/"}
            << QStringList{"PXE Kelpie_Scripts exist", "PXE script exist"}
            << QStringList{"sleep 2000", ex("A.CMD"), ex("b.cmd"), ex("c.cmd")}
            << "Starting script: " + folder + "c.cmd";
    }

    void pxeScripts()
    {
        QFETCH(QStringList, files);
        QFETCH(QStringList, log);
        QFETCH(QStringList, calls);
        QFETCH(QString, label);
        TestMachine m;
        for (const QString &f : files)
            m.write(scripts + f + (f.endsWith('/') ? "x.cmd" : ""), "@echo off\r\n");
        auto shell = makeShell();
        shell->runPXEscripts();
        QCOMPARE(QString::fromLocal8Bit(m.read("drives/X/init.log")).split("\r\n", Qt::SkipEmptyParts), log);
        QCOMPARE(journalOf(m, "sleep|start|startex"), calls);   // none through the plain service
        QLabel *day = formWidget<QLabel>(*shell, "label");
        if (!label.isEmpty())
            QCOMPARE(day->text(), label);
        shell->hideWindow();
        QVERIFY(!day->text().startsWith("Starting script") && !day->text().isEmpty());
    }

    void associationsScript()
    {
        const QString wd = "drives/X/Program Files/kelpie/";
        QByteArray reg;
        {
            TestMachine m;
            QVERIFY(QDir().mkpath(m.folder() + "/" + wd));
            makeShell()->startRegScript();
            reg = m.read(wd + "regApp.reg");
            QCOMPARE(m.read(wd + "stregapp.cmd"),
                     QByteArray("REG IMPORT regApp.reg\r\ndel regApp.reg\r\ndel stregapp.cmd"));
            QCOMPARE(journalOf(m, "start"), QStringList{"start open stregapp.cmd  1"});
        }
        QVERIFY(reg.startsWith("Windows Registry Editor Version 5.00\r\n\r\n[HKEY_CLASSES_ROOT\\.pdf]\r\n"));
        QVERIFY(!reg.contains('\t'));
        QCOMPARE(reg.count("\n"), reg.count("\r\n"));

        // Read back as regedit reads it: 14 keys, one value of each kind and quotes in a value.
        SimRegistry registry;
        QVERIFY(registry.parse(reg));
        QCOMPARE(registry.enumKeys("HKEY_CLASSES_ROOT").size(), 14);
        const auto value = [&](const QString &key, const QString &name) {
            const RegData d = registry.readValue("HKEY_CLASSES_ROOT\\" + key, name);
            return QString::number(d.found ? d.type : 0) + ':'
                + (d.type == win32::regDword ? QString::number(d.dword) : d.text);
        };
        QCOMPARE(value(".pdf", ""), QString("1:Sumatra.pdf"));
        QCOMPARE(value("pdffile", "EditFlags"), QString("4:65536"));
        QCOMPARE(value("pdffile\\shell\\printto\\command", ""),
                 QString("2:%SystemRoot%\\system32\\notepad.exe /pt \"%1\" \"%2\" \"%3\" \"%4\""));
        QCOMPARE(value("paint_auto_file", ""), QString("1:"));

        // The script cannot be made: the registry text stays behind and nothing starts.
        TestMachine n;
        QVERIFY(QDir().mkpath(n.folder() + "/" + wd + "stregapp.cmd/"));
        makeShell()->startRegScript();
        QVERIFY(!n.read(wd + "regApp.reg").isEmpty());
        QVERIFY(journalOf(n, "start").isEmpty());
    }
};

KELPIE_TEST_MAIN(ActionsTest)
#include "tst_actions.moc"
