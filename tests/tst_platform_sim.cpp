// The simulated machine: path mapping, registry file, machine.ini, journal, shell execution
// answers and the inbox.

#include "testmachine.h"
#include "testmain.h"

#include <memory>

class TstPlatformSim : public QObject {
    Q_OBJECT

private:
    static QByteArray utf16(const QString &s)
    {
        QByteArray b("\xff\xfe");
        for (QChar c : s) {
            b.append(char(c.unicode() & 0xff));
            b.append(char(c.unicode() >> 8));
        }
        return b;
    }
    static QString fromUtf16(const QByteArray &b)
    {
        QString s;
        for (int i = 2; i + 1 < b.size(); i += 2)
            s.append(QChar(ushort(uchar(b[i]) | (uchar(b[i + 1]) << 8))));
        return s;
    }

private slots:
    void mapsDrivePathsIgnoringCase()
    {
        TestMachine m;
        m.write(QStringLiteral("drives/X/Program Files/Kelpie/Data_Shell.cfg"), "x");
        m.addDrive(QLatin1Char('E'));
        const QString x = m.folder() + QStringLiteral("/drives/X");

        QCOMPARE(m.sim->hostPath(QStringLiteral("x:\\PROGRAM FILES\\kelpie\\data_shell.CFG")),
                 x + QStringLiteral("/Program Files/Kelpie/Data_Shell.cfg"));
        // mixed separators, and a new file below existing folders keeps its own spelling
        QCOMPARE(m.sim->hostPath(QStringLiteral("X:/program files\\KELPIE/New File.TXT")),
                 x + QStringLiteral("/Program Files/Kelpie/New File.TXT"));
        // once a folder is missing, the rest stays as written
        QCOMPARE(m.sim->hostPath(QStringLiteral("x:/Missing/program files/a.txt")),
                 x + QStringLiteral("/Missing/program files/a.txt"));
        QCOMPARE(m.sim->hostPath(QStringLiteral("e:/")), m.folder() + QStringLiteral("/drives/E/"));
        QCOMPARE(m.sim->hostPath(QStringLiteral("X:/Program Files/x/../kelpie/./")),
                 x + QStringLiteral("/Program Files/Kelpie/"));
        QCOMPARE(m.sim->hostPath(QStringLiteral("\\\\?\\X:\\program files")), x + QStringLiteral("/Program Files"));
        QCOMPARE(m.sim->hostPath(QString()), QString());
        // a file made after a lookup is found in its own spelling
        QCOMPARE(m.sim->hostPath(QStringLiteral("X:/program files/kelpie/later.txt")),
                 x + QStringLiteral("/Program Files/Kelpie/later.txt"));
        m.write(QStringLiteral("drives/X/Program Files/Kelpie/LATER.txt"), "x");
        QCOMPARE(m.sim->hostPath(QStringLiteral("X:/program files/kelpie/later.txt")),
                 x + QStringLiteral("/Program Files/Kelpie/LATER.txt"));
        // a host path of this machine is left alone
        const QString host = x + QStringLiteral("/Program Files/Kelpie/Data_Shell.cfg");
        QCOMPARE(m.sim->hostPath(host), host);
    }

    void mapsRelativePathsToTheWorkingDirectory()
    {
        TestMachine m;
        m.write(QStringLiteral("drives/X/Program Files/kelpie/data_shell.cfg"), "x");
        QCOMPARE(m.sim->hostPath(QStringLiteral("DATA_SHELL.CFG")),
                 m.folder() + QStringLiteral("/drives/X/Program Files/kelpie/data_shell.cfg"));
        QCOMPARE(m.sim->hostPath(QStringLiteral("x:tools\\a.exe")),
                 m.folder() + QStringLiteral("/drives/X/Program Files/kelpie/tools/a.exe"));
        QCOMPARE(m.sim->hostPath(QStringLiteral("\\Windows")), m.folder() + QStringLiteral("/drives/X/Windows"));

        m.write(QStringLiteral("drives/E/Work/a.txt"), "a");
        m.write(QStringLiteral("machine.ini"), "[system]\nworkingDirectory=E:/work\n");
        QCOMPARE(m.sim->hostPath(QStringLiteral("A.TXT")), m.folder() + QStringLiteral("/drives/E/Work/a.txt"));
        // on another drive than the working directory, "C:name" starts at that drive's root
        QCOMPARE(m.sim->hostPath(QStringLiteral("C:b.txt")), m.folder() + QStringLiteral("/drives/C/b.txt"));
    }

    void mapsHostPathsBack()
    {
        TestMachine m;
        m.write(QStringLiteral("drives/E/Desktop.1/a.lnk"), "l");
        QDir(m.folder()).mkpath(QStringLiteral("drives/c"));
        const QString e = m.folder() + QStringLiteral("/drives/E");
        QCOMPARE(m.sim->drivePath(e + QStringLiteral("/Desktop.1/a.lnk")), QStringLiteral("E:/Desktop.1/a.lnk"));
        QCOMPARE(m.sim->drivePath(e), QStringLiteral("E:/"));
        QCOMPARE(m.sim->drivePath(m.folder() + QStringLiteral("/drives/c/x")), QStringLiteral("C:/x"));
        QCOMPARE(m.sim->hostPath(QStringLiteral("C:/x")), m.folder() + QStringLiteral("/drives/c/x"));
        // outside drives/ nothing changes
        const QString outside = m.folder() + QStringLiteral("/journal.log");
        QCOMPARE(m.sim->drivePath(outside), outside);
        QCOMPARE(m.sim->drivePath(m.folder() + QStringLiteral("/drives/EE/a")),
                 m.folder() + QStringLiteral("/drives/EE/a"));
        QCOMPARE(m.sim->drivePath(QStringLiteral("/etc/passwd")), QStringLiteral("/etc/passwd"));
        QCOMPARE(m.sim->drivePath(m.sim->hostPath(QStringLiteral("e:\\DESKTOP.1\\A.LNK"))),
                 QStringLiteral("E:/Desktop.1/a.lnk"));
    }

    void mapsLongPaths()
    {
        TestMachine m;
        QString drive = QStringLiteral("X:");
        for (int i = 0; i < 7; ++i)
            drive += QLatin1Char('/') + QStringLiteral("Folder%1_").arg(i) + QString(42, QLatin1Char('a'));
        drive += QStringLiteral("/Leaf.txt");
        QVERIFY(drive.size() > 300);
        const QString host = m.folder() + QStringLiteral("/drives/X") + drive.mid(2);
        m.write(QStringLiteral("drives/X") + drive.mid(2), "leaf");
        QCOMPARE(m.sim->hostPath(drive.toUpper().replace(QLatin1Char('/'), QLatin1Char('\\'))), host);
        QCOMPARE(m.sim->drivePath(host), drive);
    }

    void readsRegistryAndWritesItBack()
    {
        TestMachine m;
        m.write(QStringLiteral("registry.reg"),
                "Windows Registry Editor Version 5.00\r\n\r\n"
                "; exported\r\n"
                "[HKEY_CURRENT_USER\\Software\\Morvane Works]\r\n"
                "\"WinPE\"=dword:0000000e\r\n"
                "@=\"default\"\r\n"
                "\"Path\"=\"C:\\\\Tools\\\\\\\"q\\\"\"\r\n"
                "\"Blob\"=hex:01,02,\\\r\n"
                "  03,ff\r\n"
                "\"Expand\"=hex(2):25,00,41,00,25,00,00,00\r\n\r\n");

        RegValue v = m.sim->readUserDword(QStringLiteral("software\\MORVANE WORKS"), QStringLiteral("winpe"));
        QVERIFY(v.found);
        QCOMPARE(v.type, 4u);
        QCOMPARE(v.data, 14u);
        QCOMPARE(m.sim->readValue(QStringLiteral("HKCU\\Software\\Morvane Works"), QStringLiteral("@")).text,
                 QStringLiteral("default"));
        QCOMPARE(m.sim->readValue(QStringLiteral("HKCU\\Software\\Morvane Works"), QStringLiteral("Path")).text,
                 QStringLiteral("C:\\Tools\\\"q\""));
        const RegData blob = m.sim->readValue(QStringLiteral("HKCU\\Software\\Morvane Works"), QStringLiteral("Blob"));
        QCOMPARE(blob.type, 3u);
        QCOMPARE(blob.bytes, QByteArray("\x01\x02\x03\xff", 4));
        QCOMPARE(blob.dword, 0xff030201u);
        const RegData expand = m.sim->readValue(QStringLiteral("HKCU\\Software\\Morvane Works"), QStringLiteral("Expand"));
        QCOMPARE(expand.type, 2u);
        QCOMPARE(expand.text, QStringLiteral("%A%"));
        QVERIFY(!m.sim->readUserDword(QStringLiteral("Software\\Morvane Works"), QStringLiteral("Nope")).found);
        QVERIFY(!m.sim->readUserDword(QStringLiteral("Software\\Nobody"), QStringLiteral("WinPE")).found);

        QVERIFY(m.sim->writeUserDword(QStringLiteral("Software\\Morvane Works\\Tessel Imager"),
                                      QStringLiteral("Language"), 1049));
        QVERIFY(m.sim->writeUserDword(QStringLiteral("SOFTWARE\\morvane works"), QStringLiteral("WINPE"), 0));
        const QByteArray file = m.read(QStringLiteral("registry.reg"));
        QVERIFY(file.startsWith("Windows Registry Editor Version 5.00\r\n\r\n"));
        QVERIFY(file.contains("[HKEY_CURRENT_USER\\Software\\Morvane Works\\Tessel Imager]\r\n"
                              "\"Language\"=dword:00000419\r\n"));
        // the existing value is overwritten in place, keeping its spelling
        QVERIFY(file.contains("\"WinPE\"=dword:00000000\r\n"));
        QVERIFY(!file.contains("WINPE"));

        // a second machine on the same folder reads everything back
        SimPlatform again(m.folder());
        QCOMPARE(again.readUserDword(QStringLiteral("Software\\Morvane Works\\Tessel Imager"),
                                     QStringLiteral("Language")).data, 1049u);
        QCOMPARE(again.readValue(QStringLiteral("HKCU\\Software\\Morvane Works"), QStringLiteral("Path")).text,
                 QStringLiteral("C:\\Tools\\\"q\""));
        QCOMPARE(again.readValue(QStringLiteral("HKCU\\Software\\Morvane Works"), QStringLiteral("Blob")).bytes,
                 QByteArray("\x01\x02\x03\xff", 4));
        QCOMPARE(again.readValue(QStringLiteral("HKCU\\Software\\Morvane Works"), QStringLiteral("Expand")).text,
                 QStringLiteral("%A%"));
        QCOMPARE(again.readValue(QStringLiteral("HKCU\\Software\\Morvane Works"), QString()).text,
                 QStringLiteral("default"));
    }

    void keepsUtf16Files()
    {
        TestMachine m;
        const QString text = QStringLiteral("Windows Registry Editor Version 5.00\r\n\r\n"
                                            "[HKEY_LOCAL_MACHINE\\system\\Test]\r\n"
                                            "\"Name\"=\"Сеть 1\"\r\n\r\n");
        m.write(QStringLiteral("registry.reg"), utf16(text));
        QCOMPARE(m.sim->readValue(QStringLiteral("HKLM\\SYSTEM\\test"), QStringLiteral("name")).text,
                 QStringLiteral("Сеть 1"));
        QVERIFY(m.sim->writeUserDword(QStringLiteral("Software\\A"), QStringLiteral("B"), 7));
        const QByteArray file = m.read(QStringLiteral("registry.reg"));
        QVERIFY(file.startsWith("\xff\xfe"));
        const QString back = fromUtf16(file);
        QVERIFY(back.contains(QStringLiteral("\"Name\"=\"Сеть 1\"")));
        QVERIFY(back.contains(QStringLiteral("\"B\"=dword:00000007")));
    }

    void ignoresMalformedRegistryLines()
    {
        TestMachine m;
        m.write(QStringLiteral("registry.reg"),
                "Windows Registry Editor Version 5.00\n\n"
                "\"Orphan\"=dword:00000001\n"
                "[HKEY_NOWHERE\\Software]\n"
                "\"Lost\"=dword:00000001\n"
                "[HKEY_CURRENT_USER\\Software\\K]\n"
                "\"Bad\"=dword:xyz\n"
                "\"TooLong\"=dword:123456789\n"
                "\"NoValue\"\n"
                "\"Open=\"text\n"
                "\"Trail\"=\"a\" junk\n"
                "\"Hex\"=hex:zz\n"
                "garbage line\n"
                "\"Good\"=dword:00000010\n"
                "[HKEY_CURRENT_USER\\Software\\K]\n"
                "\"Later\"=\"yes\"\n");
        const QString k = QStringLiteral("HKEY_CURRENT_USER\\Software\\K");
        QCOMPARE(m.sim->readUserDword(QStringLiteral("Software\\K"), QStringLiteral("Good")).data, 16u);
        QCOMPARE(m.sim->readValue(k, QStringLiteral("Later")).text, QStringLiteral("yes"));
        for (const char *bad : {"Bad", "TooLong", "NoValue", "Open", "Trail", "Hex", "Orphan"})
            QVERIFY2(!m.sim->readValue(k, QLatin1String(bad)).found, bad);
        QVERIFY(!m.sim->keyExists(QStringLiteral("HKEY_NOWHERE\\Software")));
        // what survives is written back, and nothing else
        QVERIFY(m.sim->writeUserDword(QStringLiteral("Software\\K"), QStringLiteral("Good"), 17));
        QCOMPARE(m.read(QStringLiteral("registry.reg")),
                 QByteArray("Windows Registry Editor Version 5.00\r\n\r\n"
                            "[HKEY_CURRENT_USER\\Software\\K]\r\n"
                            "\"Good\"=dword:00000011\r\n"
                            "\"Later\"=\"yes\"\r\n\r\n"));
    }

    void enumeratesKeysAndSeesChangesOnDisk()
    {
        TestMachine m;
        m.write(QStringLiteral("registry.reg"),
                "Windows Registry Editor Version 5.00\n\n"
                "[HKEY_LOCAL_MACHINE\\system\\CurrentControlSet\\Services\\Tcpip\\Parameters\\Adapters\\{B}]\n"
                "[HKEY_LOCAL_MACHINE\\system\\CurrentControlSet\\Services\\Tcpip\\Parameters\\Adapters\\{A}\\Sub]\n"
                "[HKEY_LOCAL_MACHINE\\system\\CurrentControlSet\\Services\\Tcpip\\Parameters\\Interfaces\\{A}]\n"
                "\"NameServer\"=\"10.0.0.1,10.0.0.2\"\n");
        QCOMPARE(m.sim->enumKeys(QStringLiteral("HKLM\\System\\CurrentControlSet\\Services\\Tcpip\\Parameters\\Adapters")),
                 (QStringList{QStringLiteral("{B}"), QStringLiteral("{A}")}));
        QCOMPARE(m.sim->enumKeys(QStringLiteral("HKEY_LOCAL_MACHINE\\system\\CurrentControlSet\\Services")),
                 QStringList{QStringLiteral("Tcpip")});
        QVERIFY(m.sim->keyExists(QStringLiteral("HKLM\\system\\CurrentControlSet\\Services\\Tcpip\\Parameters\\Adapters\\{a}")));
        QVERIFY(m.sim->enumKeys(QStringLiteral("HKLM\\system\\Nothing")).isEmpty());
        QCOMPARE(m.sim->readValue(QStringLiteral("HKLM\\system\\CurrentControlSet\\Services\\Tcpip\\Parameters\\Interfaces\\{A}"),
                                  QStringLiteral("NameServer")).text, QStringLiteral("10.0.0.1,10.0.0.2"));

        // another program changes the file: the next read sees it
        m.write(QStringLiteral("registry.reg"),
                "Windows Registry Editor Version 5.00\n\n[HKEY_CURRENT_USER\\Software\\Morvane Works]\n"
                "\"WinPE\"=dword:00000001\n");
        QVERIFY(m.sim->readUserDword(QStringLiteral("Software\\Morvane Works"), QStringLiteral("WinPE")).found);
        QVERIFY(m.sim->enumKeys(QStringLiteral("HKLM\\system")).isEmpty());
    }

    void createsARegistryFile()
    {
        TestMachine m;
        QVERIFY(m.sim->writeUserDword(QStringLiteral("Software\\Morvane Works\\Tessel Imager"),
                                      QStringLiteral("Language"), 0));
        QCOMPARE(m.read(QStringLiteral("registry.reg")),
                 QByteArray("Windows Registry Editor Version 5.00\r\n\r\n"
                            "[HKEY_CURRENT_USER\\Software\\Morvane Works\\Tessel Imager]\r\n"
                            "\"Language\"=dword:00000000\r\n\r\n"));
    }

    void journalsEveryEffect()
    {
        TestMachine m;
        m.sim->shellExecute(QStringLiteral("open"), QStringLiteral("x:\\program files\\kelpie\\Net.exe"),
                            QStringLiteral("-x\tb"), 1);
        m.sim->sleepMs(100);
        m.sim->raisePriority();
        m.sim->writeUserDword(QStringLiteral("Software\\A"), QStringLiteral("V"), 255);
        WorkArea area;
        area.right = 1024;
        area.bottom = 704;
        m.sim->setWorkArea(area);
        m.sim->reloadWallpaper();
        m.sim->registerHotKey(1, 2, 6, 68);
        m.sim->unregisterHotKey(1, 2);
        m.sim->installKeyboardHook([](const KeyHookEvent &) { return false; });
        m.sim->removeKeyboardHook();

        const QStringList expected = {
            QStringLiteral("start\topen\tx:\\program files\\kelpie\\Net.exe\t-x b\t1"),
            QStringLiteral("sleep\t100"),
            QStringLiteral("priority\thigh"),
            QStringLiteral("regwrite\tHKEY_CURRENT_USER\\Software\\A\tV\tdword:000000ff"),
            QStringLiteral("workarea\t0\t0\t1024\t704"),
            QStringLiteral("wallpaper"),
            QStringLiteral("registerhotkey\t2\t6\t68"),
            QStringLiteral("unregisterhotkey\t2"),
            QStringLiteral("installhook"),
            QStringLiteral("removehook"),
        };
        QCOMPARE(m.sim->journal(), expected);
        QCOMPARE(QString::fromUtf8(m.read(QStringLiteral("journal.log"))),
                 expected.join(QLatin1Char('\n')) + QLatin1Char('\n'));
    }

    void answersShellExecution()
    {
        TestMachine m;
        m.write(QStringLiteral("drives/X/Program Files/kelpie/DisplayRes.exe"), "");
        m.write(QStringLiteral("drives/X/Program Files/kelpie/readme.dat"), "");
        m.write(QStringLiteral("drives/X/Program Files/kelpie/noext"), "");
        m.write(QStringLiteral("drives/X/Windows/System32/format.com"), "");
        m.write(QStringLiteral("drives/E/Desktop/Tool.LNK"), "");

        struct Case { const char *file; qintptr code; };
        const Case cases[] = {
            {"X:\\Program Files\\Kelpie\\displayres.exe", 42},
            {"displayres.exe", 42},              // working directory
            {"DisplayRes", 42},                  // the runnable extensions are tried
            {"format.com", 42},                  // X:/Windows/System32
            {"wpeutil.exe", 42},                 // a system program
            {"TASKMGR", 42},
            {"e:/desktop/tool.lnk", 42},
            {"\"E:\\Desktop\\Tool.lnk\"", 42},
            {"X:\\Program Files", 42},           // a folder opens
            {"X:\\Program Files\\kelpie\\gone.exe", 2},
            {"gone.exe", 2},
            {"", 2},
            {"x:\\program files\\kelpie\\; tool.exe", 2},
            {"X:\\Nowhere\\tool.exe", 3},
            {"Q:\\tool.exe", 3},
            {"X:\\Program Files\\kelpie\\readme.dat", 31},
            {"X:\\Program Files\\kelpie\\noext", 31},
            {"X:\\Tools\\wpeutil.exe", 3},       // a system program, but not where the system keeps it
        };
        for (const Case &c : cases) {
            const ShellResult r = m.sim->shellExecute(QStringLiteral("open"), QLatin1String(c.file), QString(), 1);
            QVERIFY2(r.code == c.code, c.file);
            QCOMPARE(r.lastError, c.code > 32 ? 0u : quint32(c.code));
        }
        QCOMPARE(m.sim->journal().size(), int(sizeof(cases) / sizeof(cases[0])));
    }

    void usesDefaultsWithoutMachineIni()
    {
        TestMachine m;
        const MemoryStatus mem = m.sim->memoryStatus();
        QVERIFY(mem.ok);
        QCOMPARE(mem.totalPhys, quint64(2048) << 20);
        QCOMPARE(mem.availPhys, quint64(1536) << 20);
        DisplayMode mode;
        QVERIFY(m.sim->currentDisplayMode(&mode));
        QCOMPARE(SimMachineFacts::modeText(mode), QStringLiteral("1024x768x32@60"));
        QVERIFY(m.sim->displayMode(0, &mode));
        QCOMPARE(SimMachineFacts::modeText(mode), QStringLiteral("1024x768x32@60"));
        QVERIFY(!m.sim->displayMode(1, &mode));
        int w = 0, h = 0;
        QVERIFY(!m.sim->screenSize(&w, &h));   // the toolkit's screen counts
        QCOMPARE(m.sim->keyboardLayouts(), QList<quint64>{0x04090409});
        QCOMPARE(m.sim->foregroundKeyboardLayout(), quint64(0x04090409));
        QStringList names{QStringLiteral("stale")};
        QVERIFY(m.sim->processNames(&names));
        QVERIFY(names.isEmpty());
        WorkArea area;
        QVERIFY(m.sim->workArea(&area));
        QCOMPARE(area.right, 1024);
        QCOMPARE(area.bottom, 768);
        QCOMPARE(m.sim->firewallState(), QStringLiteral("off"));
        QCOMPARE(m.sim->localeLanguageName(1033), QStringLiteral("English (United States)"));
        QCOMPARE(m.sim->localeLanguageName(1049), QStringLiteral("Russian"));
        QCOMPARE(m.sim->localeLanguageName(4242), QString());
    }

    void rereadsMachineIniWhenItChanges()
    {
        TestMachine m;
        m.write(QStringLiteral("machine.ini"),
                "[memory]\ntotalMB=1024\navailableMB=512\n"
                "[display]\ncurrent=1024x768x16@60\nmodes=800x600x16@60, 1024x768x16@60, bad, 1280x1024\n"
                "[keyboard]\nlayouts=0x04090409, 04190419\nforeground=04190419\n"
                "[processes]\nrunning=smss.exe, autorun.exe\n"
                "[firewall]\nstate=on\n");
        QCOMPARE(m.sim->memoryStatus().totalPhys, quint64(1024) << 20);
        DisplayMode mode;
        QVERIFY(m.sim->displayMode(2, &mode));
        QCOMPARE(SimMachineFacts::modeText(mode), QStringLiteral("1280x1024x32@60"));
        QVERIFY(!m.sim->displayMode(3, &mode));
        QCOMPARE(m.sim->keyboardLayouts(), (QList<quint64>{0x04090409, 0x04190419}));
        QCOMPARE(m.sim->foregroundKeyboardLayout(), quint64(0x04190419));
        QStringList names;
        QVERIFY(m.sim->processNames(&names));
        QCOMPARE(names, (QStringList{QStringLiteral("smss.exe"), QStringLiteral("autorun.exe")}));
        QCOMPARE(m.sim->firewallState(), QStringLiteral("on"));

        WorkArea set;
        set.right = 1024;
        set.bottom = 704;
        m.sim->setWorkArea(set);
        WorkArea area;
        m.sim->workArea(&area);
        QCOMPARE(area.bottom, 704);

        // same size on disk, written at once: the change is still seen
        m.write(QStringLiteral("machine.ini"),
                "[memory]\ntotalMB=1024\navailableMB=512\n"
                "[display]\ncurrent=1280x1024x16@60\nmodes=800x600x16@60, 1024x768x16@60, bad, 1280x1024\n"
                "[keyboard]\nlayouts=0x04090409, 04190419\nforeground=04090409\n"
                "[processes]\nrunning=smss.exe, autorun.exe\n"
                "[firewall]\nstate=no\n");
        QVERIFY(m.sim->currentDisplayMode(&mode));
        QCOMPARE(mode.width, 1280);
        QCOMPARE(m.sim->foregroundKeyboardLayout(), quint64(0x04090409));
        QCOMPARE(m.sim->firewallState(), QStringLiteral("off"));
        // a new resolution brings a whole-screen work area
        m.sim->workArea(&area);
        QCOMPARE(area.right, 1280);
        QCOMPARE(area.bottom, 1024);

        int w = 0, h = 0;
        QVERIFY(!m.sim->screenSize(&w, &h));
        m.write(QStringLiteral("machine.ini"), "[display]\ncurrent=1600x1200\nscreen=current\n");
        QVERIFY(m.sim->screenSize(&w, &h));
        QCOMPARE(QSize(w, h), QSize(1600, 1200));
        m.write(QStringLiteral("machine.ini"), "[display]\ncurrent=1600x1200\nscreen=800x600\n");
        QVERIFY(m.sim->screenSize(&w, &h));
        QCOMPARE(QSize(w, h), QSize(800, 600));

        m.write(QStringLiteral("machine.ini"), "[processes]\nsnapshot=0\n[memory]\nanswers=0\n");
        QVERIFY(!m.sim->processNames(&names));
        QVERIFY(!m.sim->memoryStatus().ok);

        QFile::remove(m.folder() + QStringLiteral("/machine.ini"));
        QVERIFY(m.sim->memoryStatus().ok);
        QVERIFY(m.sim->currentDisplayMode(&mode));
        QCOMPARE(mode.width, 1024);
    }

    void answersForDrivesAndVolumes()
    {
        TestMachine m;
        m.addDrive(QLatin1Char('C'));
        m.addDrive(QLatin1Char('e'));
        m.addDrive(QLatin1Char('F'));
        m.write(QStringLiteral("drives/Q"), "a file, not a drive");
        QDir(m.folder()).mkpath(QStringLiteral("drives/AB"));
        QCOMPARE(m.sim->logicalDrives(), (1u << 2) | (1u << 4) | (1u << 5) | (1u << 23));

        m.write(QStringLiteral("machine.ini"),
                "[volume.E]\nlabel=KELPIE\nmediaType=removable\nvendor=ACME\nproduct=FLASH\ndisk=1\n"
                "[volume.F]\nready=0\ndisk=2\nanswersDeviceNumber=0\n"
                "[volume.G]\ndisk=3\n");
        QVERIFY(m.sim->volumeReady(QLatin1Char('e')));
        QVERIFY(m.sim->volumeReady(QLatin1Char('X')));
        QVERIFY(!m.sim->volumeReady(QLatin1Char('F')));
        QVERIFY(!m.sim->volumeReady(QLatin1Char('G')));   // described, but no folder

        DeviceNumberAnswer a = m.sim->deviceNumber(QLatin1Char('E'));
        QVERIFY(a.opened && a.ok);
        QCOMPARE(a.bytesReturned, 12u);
        QCOMPARE(a.deviceType, 7u);
        QCOMPARE(a.deviceNumber, 1u);
        a = m.sim->deviceNumber(QLatin1Char('F'));
        QVERIFY(a.opened && !a.ok);
        a = m.sim->deviceNumber(QLatin1Char('C'));   // no facts: a folder-backed drive
        QVERIFY(a.opened && !a.ok);
        a = m.sim->deviceNumber(QLatin1Char('G'));
        QVERIFY(!a.opened && !a.ok);
        const SimVolume e = m.sim->volume(QLatin1Char('e'));
        QCOMPARE(e.mediaType, 11u);
        QCOMPARE(e.vendor + QLatin1Char(' ') + e.product, QStringLiteral("ACME FLASH"));
        QCOMPARE(e.label, QStringLiteral("KELPIE"));
    }

    void deliversInboxMessages()
    {
        TestMachine m;
        QList<NativeMessage> got;
        m.sim->setMessageSink([&got](const NativeMessage &msg) { got.append(msg); });
        m.sim->registerHotKey(7, 1, 8, 91);

        m.write(QStringLiteral("inbox.txt"),
                "hotkey 1\n"
                "hotkey 2\n"                          // not registered
                "hotkey x\n"
                "copydata 1 Refresh\n"
                "copydata 0  two  blanks \r\n"
                "copydata abc Refresh\n"
                "copydata\n"
                "nonsense\n"
                "hotkey 1");                          // not finished yet
        m.sim->pollInbox();
        QCOMPARE(got.size(), 3);
        QCOMPARE(int(got[0].kind), int(NativeMessage::HotKey));
        QCOMPARE(got[0].hotKeyId, 1);
        QCOMPARE(int(got[1].kind), int(NativeMessage::CopyData));
        QCOMPARE(got[1].wParam, quintptr(1));
        QCOMPARE(got[1].text, QStringLiteral("Refresh"));
        QCOMPARE(got[2].wParam, quintptr(0));
        QCOMPARE(got[2].text, QStringLiteral(" two  blanks "));

        // only what is new is delivered; the unfinished line arrives once it ends
        QFile f(m.folder() + QStringLiteral("/inbox.txt"));
        QVERIFY(f.open(QIODevice::Append));
        f.write("\ncopydata 5\n");
        f.close();
        m.sim->pollInbox();
        QCOMPARE(got.size(), 5);
        QCOMPARE(got[3].hotKeyId, 1);
        QCOMPARE(got[4].wParam, quintptr(5));
        QCOMPARE(got[4].text, QString());
        m.sim->pollInbox();
        QCOMPARE(got.size(), 5);

        m.sim->unregisterHotKey(7, 1);
        QVERIFY(f.open(QIODevice::Append));
        f.write("hotkey 1\n");
        f.close();
        m.sim->pollInbox();
        QCOMPARE(got.size(), 5);

        // the timer delivers by itself
        QVERIFY(f.open(QIODevice::Append));
        f.write("copydata 1 timer\n");
        f.close();
        QTRY_COMPARE_WITH_TIMEOUT(got.size(), 6, 2000);
        QCOMPARE(got.last().text, QStringLiteral("timer"));
    }

    void deliversKeyEventsWithModifiers()
    {
        TestMachine m;
        struct Seen { quint32 vk, flags; int code; bool ctrl, alt, shift; };
        QList<Seen> seen;
        SimPlatform *sim = m.sim;
        m.sim->installKeyboardHook([&seen, sim](const KeyHookEvent &e) {
            seen.append({e.vkCode, e.flags, e.code, sim->asyncKeyState(17) < 0, sim->asyncKeyState(18) < 0,
                         sim->asyncKeyState(16) < 0});
            return true;
        });
        m.write(QStringLiteral("inbox.txt"),
                "key down 46 ctrl alt\n"
                "key down 0x2e ctrl alt repeat\n"
                "key up 46 shift\n"
                "key sideways 46\n"
                "key down 46 meta\n"
                "key down\n"
                "key down 300\n"
                "KEY DOWN 91\n");
        m.sim->pollInbox();
        QCOMPARE(seen.size(), 4);
        QVERIFY(seen[0].vk == 46 && seen[0].flags == 0 && seen[0].code == 0);
        QVERIFY(seen[0].ctrl && seen[0].alt && !seen[0].shift);
        QVERIFY(seen[1].vk == 46 && seen[1].flags == 0 && seen[1].ctrl && seen[1].alt);
        QVERIFY(seen[2].flags == 128 && !seen[2].ctrl && !seen[2].alt && seen[2].shift);
        QVERIFY(seen[3].vk == 91 && !seen[3].ctrl && !seen[3].alt && !seen[3].shift);
        // the modifiers are held only while the event is delivered
        QCOMPARE(m.sim->asyncKeyState(17), short(0));

        m.send("key down 46 ctrl alt");
        QCOMPARE(seen.size(), 5);
        m.sim->removeKeyboardHook();
        m.send("key down 46 ctrl alt");
        QCOMPARE(seen.size(), 5);
    }

    void skipsMessagesSentBeforeStart()
    {
        QTemporaryDir dir;
        QFile f(dir.path() + QStringLiteral("/inbox.txt"));
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write("copydata 1 old\n");
        f.close();
        SimPlatform sim(dir.path());
        QStringList texts;
        sim.setMessageSink([&texts](const NativeMessage &msg) { texts.append(msg.text); });
        sim.pollInbox();
        QVERIFY(texts.isEmpty());
        // an inbox emptied and written anew is read from its start
        QVERIFY(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
        f.write("copydata 1 a\n");
        f.close();
        sim.pollInbox();
        QCOMPARE(texts, QStringList{QStringLiteral("a")});
    }
    void demoMachineStartsWhatItOffers()
    {
        SimPlatform demo(QStringLiteral(KELPIE_SOURCE_DIR "/demo/machine"));
        QCOMPARE(demo.readUserDword(QStringLiteral("Software\\Morvane Works"), QStringLiteral("WinPE")).data, 1u);
        QCOMPARE(demo.logicalDrives(), (1u << 2) | (1u << 4) | (1u << 23));
        QCOMPARE(demo.volume(QLatin1Char('E')).mediaType, 11u);
        QCOMPARE(demo.deviceNumber(QLatin1Char('E')).deviceNumber, 1u);
        QCOMPARE(demo.keyboardLayouts().size(), 2);
        DisplayMode mode;
        QVERIFY(demo.displayMode(5, &mode));
        QVERIFY(!demo.displayMode(6, &mode));

        QFile cfg(demo.hostPath(QStringLiteral("data_shell.cfg")));
        QVERIFY(cfg.open(QIODevice::ReadOnly));
        int programs = 0;
        for (QByteArray raw : cfg.readAll().split('\n')) {
            const QString line = QString::fromUtf8(raw).remove(QLatin1Char('\r'));
            const QStringList f = line.mid(line.indexOf(QLatin1Char('=')) + 1).split(QLatin1Char('|'));
            QString program;
            if (line.startsWith(QLatin1String("menuItem=")))
                program = f.value(4) == QLatin1String("#mapdrive") ? QStringLiteral("mapDrive.exe") : f.value(4);
            else if (line.startsWith(QLatin1String("morvaneItem=")))
                program = f.value(4);
            else if (line.startsWith(QLatin1String("fixedB")))
                program = f.value(2);
            else if (line.startsWith(QLatin1String("toRun=")))
                program = QStringLiteral("x:\\program files\\kelpie\\") + f.value(0) + QStringLiteral(".exe");
            else
                continue;
            ++programs;
            QVERIFY2(demo.startAnswer(program).code == 42, qPrintable(program));
        }
        QVERIFY(programs >= 20);
        // the medium's own start entry and the tools the shell names
        for (const char *p : {"x:\\program files\\kelpie\\Zembra.exe", "DisplayRes.exe", "InstallDriver.exe",
                              "RunTask.exe", "IPcfg.exe", "mapDrive.exe", "createShortcut.exe",
                              "osk.exe"})
            QVERIFY2(demo.startAnswer(QLatin1String(p)).code == 42, p);
        QVERIFY(demo.journal().isEmpty());
    }

    void defaultPlatformUsesTheNamedMachineOrACopyOfTheDemo()
    {
        QTemporaryDir named;
        qputenv("KELPIE_MACHINE", named.path().toUtf8());
        std::unique_ptr<Platform> p(createDefaultPlatform());
        auto *sim = dynamic_cast<SimPlatform *>(p.get());
        QVERIFY(sim);
        QCOMPARE(sim->machineFolder(), QDir::cleanPath(named.path()));

        qunsetenv("KELPIE_MACHINE");
        if (QSysInfo::kernelType() == QLatin1String("winnt"))
            QSKIP("without KELPIE_MACHINE the Windows build runs the real system");
        p.reset(createDefaultPlatform());
        sim = dynamic_cast<SimPlatform *>(p.get());
        QVERIFY(sim);
        const QString copy = sim->machineFolder();
        QVERIFY(!copy.startsWith(QStringLiteral(KELPIE_SOURCE_DIR)));
        QVERIFY(QFileInfo(sim->hostPath(QStringLiteral("data_shell.cfg"))).isFile());
        QVERIFY(QFileInfo(sim->hostPath(QStringLiteral("e:/_kelpie.ini"))).isFile());
        // a write lands in the copy, not in the source tree
        QVERIFY(sim->writeUserDword(QStringLiteral("Software\\Morvane Works"), QStringLiteral("WinPE"), 0));
        SimPlatform source(QStringLiteral(KELPIE_SOURCE_DIR "/demo/machine"));
        QCOMPARE(source.readUserDword(QStringLiteral("Software\\Morvane Works"), QStringLiteral("WinPE")).data, 1u);
        p.reset();
        QVERIFY(QDir(copy).removeRecursively());
    }
};

KELPIE_TEST_MAIN(TstPlatformSim)
#include "tst_platform_sim.moc"
