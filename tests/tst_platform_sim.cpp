// The simulated machine: paths, registry file, machine.ini, journal, start answers, the inbox.

#include "testmachine.h"
#include "testmain.h"

#include <memory>

namespace {
QByteArray utf16(const QString &s)
{
    return QByteArray("\xff\xfe") + QByteArray(reinterpret_cast<const char *>(s.utf16()), s.size() * 2);
}

const QString morvane = QStringLiteral("HKCU\\Software\\Morvane Works");
} // namespace

class TstPlatformSim : public QObject {
    Q_OBJECT
    std::unique_ptr<TestMachine> m;

private slots:
    void init() { m = std::make_unique<TestMachine>(); }
    void cleanup() { m.reset(); }

    void mapsDrivePaths_data()
    {
        QTest::addColumn<QString>("drive");
        QTest::addColumn<QString>("host");   // below the machine folder; empty: none
        const QString kelpie = "drives/X/Program Files/Kelpie/";
        auto row = [](const char *rule, const char *drive, const QString &host) { QTest::newRow(rule) << drive << host; };
        row("case ignored", "x:\\PROGRAM FILES\\kelpie\\data_shell.CFG", kelpie + "Data_Shell.cfg");
        row("mixed separators; a new file keeps its spelling", "X:/program files\\KELPIE/New File.TXT", kelpie + "New File.TXT");
        row("rest as written once a folder is missing", "x:/Missing/program files/a.txt", "drives/X/Missing/program files/a.txt");
        row("dots", "e:/x/../", "drives/E/");
        row("long path prefix", "\\\\?\\X:\\program files", "drives/X/Program Files");
        row("lower-case drive folder", "C:/x", "drives/c/x");
        row("relative to the working directory", "DATA_SHELL.CFG", kelpie + "Data_Shell.cfg");
        row("drive-relative", "x:tools\\a.exe", kelpie + "tools/a.exe");
        row("rooted", "\\Windows", "drives/X/Windows");
        row("empty", "", "");
    }

    void mapsDrivePaths()
    {
        QFETCH(QString, drive);
        QFETCH(QString, host);
        m->write("drives/X/Program Files/Kelpie/Data_Shell.cfg", "x");
        m->addDrive('E');
        QDir(m->folder()).mkpath("drives/c");
        QCOMPARE(m->sim->hostPath(drive), host.isEmpty() ? QString() : m->folder() + "/" + host);
    }

    void mappingFollowsTheDiskBothWays()
    {
        const QString kelpie = m->folder() + "/drives/X/Program Files/Kelpie/";
        m->write("drives/X/Program Files/Kelpie/a.cfg", "x");
        // A file made after a lookup is found in its own spelling; a host path stays.
        QCOMPARE(m->sim->hostPath("X:/program files/kelpie/later.txt"), kelpie + "later.txt");
        m->write("drives/X/Program Files/Kelpie/LATER.txt", "x");
        QCOMPARE(m->sim->hostPath("X:/program files/kelpie/later.txt"), kelpie + "LATER.txt");
        QCOMPARE(m->sim->hostPath(kelpie + "a.cfg"), kelpie + "a.cfg");

        m->write("drives/E/Work/a.txt", "a");
        m->write("machine.ini", "[system]\nworkingDirectory=E:/work\n");
        QCOMPARE(m->sim->hostPath("A.TXT"), m->folder() + "/drives/E/Work/a.txt");
        // On another drive than the working directory, "C:name" starts at that drive's root.
        QCOMPARE(m->sim->hostPath("C:b.txt"), m->folder() + "/drives/C/b.txt");

        // Back from host paths: outside the drives a path stays as it is.
        for (const QString &outside : {m->folder() + "/journal.log", m->folder() + "/drives/EE/a"})
            QCOMPARE(m->sim->drivePath(outside), outside);
        QCOMPARE(m->sim->drivePath(m->folder() + "/drives/E"), QStringLiteral("E:/"));
        QDir(m->folder()).mkpath("drives/c");
        QCOMPARE(m->sim->drivePath(m->folder() + "/drives/c/x"), QStringLiteral("C:/x"));
        const QString drive = "X:" + QString("/Folder_" + QString(42, 'a')).repeated(7) + "/Leaf.txt";
        m->write("drives/X" + drive.mid(2), "leaf");
        const QString host = m->folder() + "/drives/X" + drive.mid(2);
        QCOMPARE(m->sim->hostPath(drive.toUpper().replace('/', '\\')), host);
        QCOMPARE(m->sim->drivePath(host), drive);   // more than 300 characters, whole
    }

    void readsRegistryAndWritesItBack()
    {
        QVERIFY(m->sim->writeUserDword("Software\\Morvane Works\\Tessel Imager", "Language", 0));
        QCOMPARE(m->read("registry.reg"), QByteArray("Windows Registry Editor Version 5.00\r\n\r\n[HKEY_CURRENT_USER\\Software\\"
                                                     "Morvane Works\\Tessel Imager]\r\n\"Language\"=dword:00000000\r\n\r\n"));
        m->write("registry.reg", "Windows Registry Editor Version 5.00\r\n\r\n; exported\r\n"
                 "[HKEY_CURRENT_USER\\Software\\Morvane Works]\r\n\"WinPE\"=dword:0000000e\r\n@=\"default\"\r\n"
                 "\"Path\"=\"C:\\\\Tools\\\\\\\"q\\\"\"\r\n\"Blob\"=hex:01,02,\\\r\n  03,ff\r\n"
                 "\"Expand\"=hex(2):25,00,41,00,25,00,00,00\r\n\"Num\"=hex(4):10,27,00,00\r\n"
                 "\"Str\"=hex(1):6f,00,6b,00,00,00\r\n\r\n");
        const RegValue v = m->sim->readUserDword("software\\MORVANE WORKS", "winpe");
        QVERIFY(v.found && v.type == win32::regDword && v.data == 14);
        QVERIFY(m->sim->writeUserDword("Software\\Morvane Works\\Tessel Imager", "Language", 1049));
        QVERIFY(m->sim->writeUserDword("SOFTWARE\\morvane works", "WINPE", 0));
        const QByteArray file = m->read("registry.reg");
        QVERIFY(file.contains("[HKEY_CURRENT_USER\\Software\\Morvane Works\\Tessel Imager]\r\n\"Language\"=dword:00000419"));
        // The existing value is overwritten in place, keeping its spelling.
        QVERIFY(file.contains("\"WinPE\"=dword:00000000\r\n") && !file.contains("WINPE"));

        // A second machine on the folder reads what was written back, every kind of value.
        SimPlatform again(m->folder());
        QCOMPARE(again.readValue(morvane, "@").text + again.readValue(morvane, QString()).text, QString("defaultdefault"));
        QCOMPARE(again.readValue(morvane, "Path").text, QStringLiteral("C:\\Tools\\\"q\""));
        const RegData blob = again.readValue(morvane, "Blob");
        QVERIFY(blob.type == win32::regBinary && blob.dword == 0xff030201u && blob.bytes == QByteArray("\x01\x02\x03\xff", 4));
        const RegData expand = again.readValue(morvane, "Expand");
        QVERIFY(expand.type == win32::regExpandSz && expand.text == "%A%");
        // A number and a string written out as bytes read as what they hold.
        QCOMPARE(again.readValue(morvane, "Num").dword, 10000u);
        QCOMPARE(again.readValue(morvane, "Str").text, QStringLiteral("ok"));

        // A file in UTF-16 is read, and written back in UTF-16.
        m->write("registry.reg", utf16("Windows Registry Editor Version 5.00\r\n\r\n[HKEY_LOCAL_MACHINE\\system\\Test]\r\n"
                                       "\"Name\"=\"Сеть 1\"\r\n\r\n"));
        QCOMPARE(m->sim->readValue("HKLM\\SYSTEM\\test", "name").text, QStringLiteral("Сеть 1"));
        QVERIFY(m->sim->writeUserDword("Software\\A", "B", 7));
        const QByteArray wide = m->read("registry.reg");
        QVERIFY(wide.startsWith("\xff\xfe") && wide.contains(utf16("\"Name\"=\"Сеть 1\"").mid(2)));
        QVERIFY(wide.contains(utf16("\"B\"=dword:00000007").mid(2)));

        // What survives bad lines is written back, and nothing else.
        m->write("registry.reg", "Windows Registry Editor Version 5.00\n\n\"Orphan\"=dword:00000001\n"
                 "[HKEY_NOWHERE\\Software]\n\"Lost\"=dword:00000001\n[HKEY_CURRENT_USER\\Software\\K]\n"
                 "\"Bad\"=dword:xyz\n\"TooLong\"=dword:123456789\n\"NoValue\"\n\"Open=\"text\n\"Trail\"=\"a\" junk\n"
                 "\"Hex\"=hex:zz\ngarbage line\n\"Good\"=dword:00000010\n[HKEY_CURRENT_USER\\Software\\K]\n\"Later\"=\"yes\"\n");
        for (const char *bad : {"Bad", "TooLong", "NoValue", "Open", "Trail", "Hex", "Orphan"})
            QVERIFY2(!m->sim->readValue("HKEY_CURRENT_USER\\Software\\K", bad).found, bad);
        QVERIFY(!m->sim->keyExists("HKEY_NOWHERE\\Software"));
        QVERIFY(m->sim->writeUserDword("Software\\K", "Good", 17));
        QCOMPARE(m->read("registry.reg"), QByteArray("Windows Registry Editor Version 5.00\r\n\r\n[HKEY_CURRENT_USER\\"
                                                     "Software\\K]\r\n\"Good\"=dword:00000011\r\n\"Later\"=\"yes\"\r\n\r\n"));

        // Keys in file order, also those only in a longer path; another program's change is seen.
        const QString tcpip = "HKLM\\system\\CurrentControlSet\\Services\\Tcpip\\Parameters\\";
        const QByteArray key = "[HKEY_LOCAL_MACHINE\\system\\CurrentControlSet\\Services\\Tcpip\\Parameters\\Adapters\\";
        m->write("registry.reg", "Windows Registry Editor Version 5.00\n\n" + key + "{B}]\n" + key + "{A}\\Sub]\n");
        QCOMPARE(m->sim->enumKeys(tcpip + "Adapters"), (QStringList{"{B}", "{A}"}));
        QVERIFY(m->sim->keyExists(tcpip + "ADAPTERS\\{a}") && m->sim->enumKeys("HKLM\\system\\Nothing").isEmpty());
        m->write("registry.reg", "Windows Registry Editor Version 5.00\n\n[HKEY_CURRENT_USER\\Software\\Morvane Works]\n"
                                 "\"WinPE\"=dword:00000001\n");
        QVERIFY(m->sim->readUserDword("Software\\Morvane Works", "WinPE").found);
        QVERIFY(m->sim->enumKeys("HKLM\\system").isEmpty());
    }

    void answersShellExecution_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<int>("code");
        auto row = [](const char *rule, const char *file, int code) { QTest::newRow(rule) << file << code; };
        row("a file on a drive, case ignored", "X:\\Program Files\\Kelpie\\displayres.exe", 42);
        row("the runnable extensions are tried", "DisplayRes", 42);
        row("a bare name in X:/Windows/System32", "format.com", 42);
        row("a system program in any case, no extension", "TASKMGR", 42);
        row("quotes around the name", "\"E:\\Desktop\\Tool.lnk\"", 42);
        row("a folder opens", "X:\\Program Files", 42);
        row("a missing file", "X:\\Program Files\\kelpie\\gone.exe", 2);
        row("no name", "", 2);
        row("a missing folder", "X:\\Nowhere\\tool.exe", 3);
        row("a system program's name elsewhere", "X:\\Tools\\wpeutil.exe", 3);
        row("a file of no runnable kind", "X:\\Program Files\\kelpie\\readme.dat", 31);
    }

    void answersShellExecution()
    {
        QFETCH(QString, file);
        QFETCH(int, code);
        m->drive('X', {{"Program Files/kelpie/DisplayRes.exe", ""}, {"Program Files/kelpie/readme.dat", ""},
                       {"Windows/System32/format.com", ""}});
        m->drive('E', {{"Desktop/Tool.LNK", ""}});
        const ShellResult r = m->sim->shellExecute("open", file, "-x\tb", 1);
        QCOMPARE(int(r.code), code);
        QCOMPARE(r.lastError, code > 32 ? 0u : quint32(code));
        // Journalled in journal.log, a tab in a field turned blank.
        QCOMPARE(m->read("journal.log"), ("start\topen\t" + file + "\t-x b\t1\n").toUtf8());
    }

    // Defaults, then machine.ini: a same-size change is seen, a new resolution clears the work area.
    void readsMachineIniAndItsDefaults()
    {
        DisplayMode mode;
        WorkArea area;
        QStringList names{"stale"};
        int w = 0, h = 0;
        QVERIFY(m->sim->memoryStatus().ok && m->sim->memoryStatus().totalPhys == quint64(2048) << 20);
        QVERIFY(m->sim->currentDisplayMode(&mode) && SimMachineFacts::modeText(mode) == "1024x768x32@60");
        QVERIFY(m->sim->displayMode(0, &mode) && !m->sim->displayMode(1, &mode));
        QVERIFY(!m->sim->screenSize(&w, &h));   // the toolkit's screen counts
        QCOMPARE(m->sim->keyboardLayouts(), QList<quint64>{0x04090409});
        QVERIFY(m->sim->processNames(&names) && names.isEmpty());
        QVERIFY(m->sim->workArea(&area) && area.right == 1024 && area.bottom == 768);
        QCOMPARE(m->sim->firewallState() + m->sim->localeLanguageName(1049) + m->sim->localeLanguageName(4242),
                 QStringLiteral("offRussian"));

        const QByteArray ini = "[memory]\ntotalMB=1024\navailableMB=512\n[display]\ncurrent=1024x768x16@60\nmodes=800x600x16@60, "
                               "1024x768x16@60, bad, 1280x1024\n[keyboard]\nlayouts=0x04090409, 04190419\nforeground=04190419\n"
                               "[processes]\nrunning=smss.exe, autorun.exe\n";
        m->write("machine.ini", ini);
        QVERIFY(m->sim->displayMode(2, &mode) && !m->sim->displayMode(3, &mode));
        QCOMPARE(SimMachineFacts::modeText(mode), QStringLiteral("1280x1024x32@60"));
        QCOMPARE(m->sim->keyboardLayouts(), (QList<quint64>{0x04090409, 0x04190419}));
        QVERIFY(m->sim->processNames(&names) && names == (QStringList{"smss.exe", "autorun.exe"}));
        m->sim->setWorkArea({0, 0, 1024, 704});
        m->write("machine.ini", QByteArray(ini).replace("current=1024x768", "current=1280x960"));
        QVERIFY(m->sim->currentDisplayMode(&mode) && mode.width == 1280);
        QVERIFY(m->sim->workArea(&area) && area.right == 1280 && area.bottom == 960);

        m->write("machine.ini", "[display]\ncurrent=1600x1200\nscreen=current\n[processes]\nsnapshot=0\n[memory]\nanswers=0\n");
        QVERIFY(m->sim->screenSize(&w, &h) && QSize(w, h) == QSize(1600, 1200));
        QVERIFY(!m->sim->processNames(&names) && !m->sim->memoryStatus().ok);
        QFile::remove(m->folder() + "/machine.ini");
        QVERIFY(m->sim->memoryStatus().ok && m->sim->currentDisplayMode(&mode) && mode.width == 1024);
    }

    // A file or a longer name under drives/ is no drive; a volume described without a folder is
    // not ready and cannot be opened; a folder-backed drive has no device number.
    void answersForDrivesAndVolumes()
    {
        for (char letter : {'C', 'e', 'F'})
            m->addDrive(letter);
        m->write("drives/Q", "a file, not a drive");
        QDir(m->folder()).mkpath("drives/AB");
        QCOMPARE(m->sim->logicalDrives(), (1u << 2) | (1u << 4) | (1u << 5) | (1u << 23));
        m->volume('E', "disk=1").facts("volume.G", "disk=3");
        QVERIFY(m->sim->volumeReady('e') && !m->sim->volumeReady('G') && !m->sim->deviceNumber('G').opened);
        QVERIFY(m->sim->deviceNumber('E').ok && m->sim->deviceNumber('E').deviceNumber == 1);
        QVERIFY(m->sim->deviceNumber('C').opened && !m->sim->deviceNumber('C').ok);
    }

    // Hotkey 2 is not registered; the last line is unfinished and arrives once it ends; only what is
    // new is delivered. Modifiers are held only while their key event is delivered.
    void deliversInboxMessagesAndKeys()
    {
        QStringList got;   // "hotkey <id>", "copydata <wParam> [text]" or "key <vk> <flags> <code> <held>"
        SimPlatform *sim = m->sim;
        sim->setMessageSink([&got](const NativeMessage &msg) {
            got << (msg.kind == NativeMessage::HotKey ? QString("hotkey %1").arg(msg.hotKeyId)
                                                      : QString("copydata %1 [%2]").arg(msg.wParam).arg(msg.text));
        });
        sim->installKeyboardHook([&got, sim](const KeyHookEvent &e) {
            got << QString("key %1 %2 %3 %4%5%6").arg(e.vkCode).arg(e.flags).arg(e.code)
                       .arg(sim->asyncKeyState(17) < 0 ? "c" : "-")
                       .arg(sim->asyncKeyState(18) < 0 ? "a" : "-")
                       .arg(sim->asyncKeyState(16) < 0 ? "s" : "-");
            return true;
        });
        sim->registerHotKey(7, 1, 8, 91);
        m->write("inbox.txt", "hotkey 1\nhotkey 2\nhotkey x\ncopydata 1 Refresh\ncopydata 0  two  blanks \r\ncopydata abc Refresh\n"
                              "copydata\nnonsense\nkey down 46 ctrl alt\nkey down 0x2e ctrl alt repeat\nkey up 46 shift\n"
                              "key sideways 46\nkey down 46 meta\nkey down\nkey down 300\nKEY DOWN 91\nhotkey 1");
        sim->pollInbox();
        QCOMPARE(got.size(), 7);
        QCOMPARE(sim->asyncKeyState(17), short(0));
        m->write("inbox.txt", m->read("inbox.txt") + "\ncopydata 5\n");
        sim->pollInbox();
        sim->pollInbox();
        QCOMPARE(got, (QStringList{"hotkey 1", "copydata 1 [Refresh]", "copydata 0 [ two  blanks ]", "key 46 0 0 ca-",
                                   "key 46 0 0 ca-", "key 46 128 0 --s", "key 91 0 0 ---", "hotkey 1", "copydata 5 []"}));
        sim->unregisterHotKey(7, 1);
        sim->removeKeyboardHook();
        m->send("hotkey 1\nkey down 46 ctrl alt");
        QCOMPARE(got.size(), 9);

        // The watch on the file delivers by itself, also after the file was replaced.
        m->write("inbox.txt", m->read("inbox.txt") + "copydata 1 watched\n");
        QTRY_COMPARE_WITH_TIMEOUT(got.size(), 10, 5000);
        QCOMPARE(got.last(), QStringLiteral("copydata 1 [watched]"));
        m->write("inbox.new", "copydata 1 replaced\n");
        QVERIFY(QFile::remove(m->folder() + "/inbox.txt"));
        QVERIFY(QFile::rename(m->folder() + "/inbox.new", m->folder() + "/inbox.txt"));
        QTRY_COMPARE_WITH_TIMEOUT(got.size(), 11, 5000);
        QCOMPARE(got.last(), QStringLiteral("copydata 1 [replaced]"));

        // A later machine skips what came before; an inbox written anew is read from its start.
        SimPlatform late(m->folder());
        QStringList texts;
        late.setMessageSink([&texts](const NativeMessage &msg) { texts.append(msg.text); });
        late.pollInbox();
        QVERIFY(texts.isEmpty());
        m->write("inbox.txt", "copydata 1 a\n");
        late.pollInbox();
        QCOMPARE(texts, QStringList{"a"});
    }

    // A write lands in the copy of the demo, not in the source tree.
    void defaultPlatformUsesTheNamedMachineOrACopyOfTheDemo()
    {
        QTemporaryDir named;
        qputenv("KELPIE_MACHINE", named.path().toUtf8());
        std::unique_ptr<Platform> p(createDefaultPlatform());
        auto *sim = dynamic_cast<SimPlatform *>(p.get());
        QVERIFY(sim && sim->machineFolder() == QDir::cleanPath(named.path()));
        qunsetenv("KELPIE_MACHINE");
        if (QSysInfo::kernelType() == "winnt")
            QSKIP("without KELPIE_MACHINE the Windows build runs the real system");
        p.reset(createDefaultPlatform());
        sim = dynamic_cast<SimPlatform *>(p.get());
        QVERIFY(sim);
        const QString copy = sim->machineFolder();
        QVERIFY(!copy.startsWith(KELPIE_SOURCE_DIR) && QFileInfo(sim->hostPath("e:/_kelpie.ini")).isFile());
        QVERIFY(sim->writeUserDword("Software\\Morvane Works", "WinPE", 0));
        QCOMPARE(SimPlatform(KELPIE_SOURCE_DIR "/demo/machine").readUserDword("Software\\Morvane Works", "WinPE").data, 1u);
        p.reset();
        QVERIFY(QDir(copy).removeRecursively());
    }
};

KELPIE_TEST_MAIN(TstPlatformSim)
#include "tst_platform_sim.moc"
