// Saved settings: formats, volume list, the save and a failing stick, restore, condition logs.

#include "my_shell1/globals.h"
#include "settings/savechangingdialog.h"
#include "settings/savedvolume.h"
#include "settings/settingsfiles.h"
#include "settings/volumelist.h"
#include "modalwatch.h"
#include "testmachine.h"
#include "testmain.h"

#include <QBuffer>
#include <QCheckBox>
#include <QDirIterator>
#include <QPointer>
#include <QToolButton>
#include <QTreeWidget>
#include <QtEndian>

Q_DECLARE_METATYPE(NetworkCondition)

namespace {

const QByteArray bootIni = "imageLang=1033\r\nlang=en-US\r\ntmz=12\r\nnetwork=1\r\nfirewall=0\r\ntimeout=30\r\n"
                           "screenRes=1024x768\r\nappRun=Zembra.exe\r\narg= -a\r\nremDev=1\r\n"
                           "pwd=b64:c2VjcmV0\r\nbuild=2031";
const QString deskFolder = "drives/X/Users/Default/Desktop/";
const QByteArray staticNetIni = "ipAdd=10.1.2.3\r\nipMask=255.0.0.0\r\nipDNS=10.0.0.1\r\nipGateway=10.0.0.254";

QString composed(QByteArray source = bootIni)
{
    QBuffer buffer(&source);
    buffer.open(QIODevice::ReadOnly);
    return composeKelpieSettings(readKelpieSettings(buffer));
}

QByteArray descriptor(quint32 vendorAt, quint32 productAt, int size = -1)
{
    QByteArray d(40, '\0');
    qToLittleEndian(vendorAt, reinterpret_cast<uchar *>(d.data()) + 12);
    qToLittleEndian(productAt, reinterpret_cast<uchar *>(d.data()) + 16);
    d += QByteArray("  ACME \0 FLASH \0", 16);
    return size < 0 ? d : d.left(size);
}

// Every file below a folder of the machine with its content.
QMap<QString, QByteArray> filesBelow(const TestMachine &m, const QString &relative)
{
    QMap<QString, QByteArray> files;
    const QString root = m.folder() + '/' + relative;
    QDirIterator it(root, QDir::Files | QDir::Hidden | QDir::System, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString path = it.next().mid(root.size());
        files.insert(path, m.read(relative + path));
    }
    return files;
}

// A file's content as the restore rows spell it, "->target|folder" standing for a shortcut.
QByteArray contentOf(const QString &text)
{
    if (!text.startsWith("->"))
        return text.toUtf8();
    return shelllink::write(shelllink::make(text.mid(2).section('|', 0, 0), text.section('|', 1)));
}

QString textOf(const QByteArray &bytes)
{
    shelllink::Link link;
    return shelllink::read(bytes, &link) ? "->" + link.target + '|' + link.workingDirectory : QString(bytes);
}

// A machine booted from stick E: (disk 1) with a fixed disk C: (disk 0) and the RAM drive X:.
void bootMachine(TestMachine &m)
{
    m.addVolume('X', {"label=Boot", "answersDeviceNumber=0"});
    m.addVolume('C', {"label=Windows", "mediaType=fixed", "disk=0", "product=HD500"});
    m.addStick('E', 1, {"freeBytes=1000000"});
    m.write("drives/E/_kelpie.ini", bootIni);
}

// The Save dialog over these additions and the network now (changed unless its network is 0).
struct Save {
    QStringList startMenu, desktop;
    NetworkCondition now;
    saveChangingDialog d{nullptr};
    void fill(const QString &resolution)
    {
        d.networkDiffers = now.network != 0;
        d.resolutionText = resolution;
        d.startMenuChanged = !startMenu.isEmpty();
        d.desktopChanged = !desktop.isEmpty();
        d.startMenuAdded = &startMenu;
        d.desktopAdded = &desktop;
        d.networkNow = &now;
        d.bootLetter = "E";
        d.fillSummary();
    }
    QCheckBox *box(const char *name) { return d.findChild<QCheckBox *>(name); }
    QPushButton *button(const char *name) { return d.findChild<QPushButton *>(name); }
    QTreeWidget *tree() { return d.findChild<QTreeWidget *>("treeWidget"); }
};

const NetworkCondition staticNet{1, 1, 0, "10.1.2.3", "255.0.0.0", "10.0.0.1", "10.0.0.254", {}};

} // namespace

class TestSettings : public QObject {
    Q_OBJECT
private slots:
    void init() { resetGlobals(); }

    // The saved _kelpie.ini, the free space text, the device name of a storage descriptor.
    void formats_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("expected");
        // Every key empty; build stands last, so a row's build value is appended.
        const QString none = "imageLang=\r\nlang=\r\ntmz=\r\nnetwork=\r\nfirewall=\r\ntimeout=\r\n"
                             "screenRes=\r\npwd=\r\nbuild=";
        QTest::newRow("saved: a missing key is written empty, an empty appRun leaves its line out")
            << composed("imageLang=7\nappRun=\nbuild=1") << "imageLang=7" + none.mid(10) + "1";
        QTest::newRow("saved: a marker inside a value is filled by a later step")
            << composed("appRun=run%9\npwd=secret\nbuild=b")
            << QString(none).replace("pwd=", "appRun=runsecret\r\npwd=secret") + "b";
        QTest::newRow("saved: binary junk gives empty values")
            << composed(QByteArray("\x00\xff\xfe\x01\x02imageLang=1\x00\n\x80\x81", 18)) << none;
        QByteArray utf16("\xff\xfe");
        for (char c : QByteArray("lang=de\r\n"))
            utf16.append(c).append('\0');
        QTest::newRow("saved: a UTF-16 file is not understood") << composed(utf16) << none;
        QTest::newRow("saved: one line of 2 MB is passed over, the next still counts")
            << composed(QByteArray(2 << 20, 'x') + "\nbuild=5") << none + "5";
        QTest::newRow("free: exactly 1 GiB belongs to MB") << freeSpaceText(1073741824) << "1024 MB";
        QTest::newRow("free: one byte above 1 GiB") << freeSpaceText(1073741825) << "1 GB";
        QTest::newRow("free: exactly 1 MiB belongs to KB") << freeSpaceText(1048576) << "1024 KB";
        QTest::newRow("free: one byte above 1 MiB") << freeSpaceText(1048577) << "1 MB";
        QTest::newRow("free: 1025 bytes are 1 KB") << freeSpaceText(1025) << "1 KB";
        QTest::newRow("free: a stick larger than 32 bits") << freeSpaceText(qint64(128) << 30) << "128 GB";
        const auto name = [](const QByteArray &bytes) { return deviceNameOf(parseStorageDescriptor(bytes)); };
        QTest::newRow("device: offset 28 is below the strings") << name(descriptor(28, 48)) << "FLASH";
        QTest::newRow("device: offset 29 is the first that counts")
            << name(descriptor(29, 48).replace(29, 3, QByteArray("AB\0", 3))) << "AB FLASH";
        QTest::newRow("device: an offset at the end is invalid") << name(descriptor(40, 56)) << "ACME ";
        QTest::newRow("device: a string cut there ends there") << name(descriptor(40, 48, 52)) << "ACME FLA";
        QTest::newRow("device: fewer bytes than the offsets") << name(QByteArray(14, '\x28')) << "";
    }

    void formats()
    {
        QFETCH(QString, text);
        QFETCH(QString, expected);
        QCOMPARE(text, expected);
    }

    void volumeWalk_data()
    {
        QTest::addColumn<QStringList>("stickKeys");   // of the second stick, G:
        QTest::addColumn<QString>("bootLetter");
        QTest::addColumn<QStringList>("rows");        // description | free space | letter
        QTest::addColumn<int>("current");
        const QString e = "E: (KELPIE) on ACME FLASH|977 KB|E";
        const QStringList both{e, "G: (KELPIE) on ACME FLASH|2 GB|G"}, big{"freeBytes=1610612736"};
        QTest::newRow("the boot volume is selected wherever it stands") << big << "g" << both << 1;
        QTest::newRow("otherwise the first row") << big << "X" << both << 0;
        // A USB disk that reports fixed media, or one whose device fails at any step.
        for (const char *failing :
             {"mediaType=fixed", "ready=0", "opens=0", "answersGeometry=0", "answersPartition=0", "present=0"})
            QTest::newRow(qPrintable(QString("no row when %1").arg(failing)))
                << QStringList{failing} << "E" << QStringList{e} << 0;
        QTest::newRow("no device name: the row ends behind on")
            << QStringList{"answersDescriptor=0", "freeBytes=1024"} << "E"
            << QStringList{e, "G: (KELPIE) on |1024 bytes|G"} << 0;
        QTest::newRow("no label: the root path stands for it") << QStringList{"label=", "freeBytes=2048"} << "E"
            << QStringList{e, "G: (G:/) on ACME FLASH|2 KB|G"} << 0;
    }

    void volumeWalk()
    {
        QFETCH(QStringList, stickKeys);
        QFETCH(QString, bootLetter);
        QFETCH(QStringList, rows);
        QFETCH(int, current);
        TestMachine m;
        bootMachine(m);
        m.addStick('G', 2, stickKeys);
        m.addDrive('H');   // a folder-backed drive: no device behind it
        Save s;
        s.d.bootLetter = bootLetter;
        s.d.refreshUsbDevices();
        QStringList seen, letters;
        for (int i = 0; i < s.tree()->topLevelItemCount(); ++i) {
            const QTreeWidgetItem *item = s.tree()->topLevelItem(i);
            seen << item->text(0) + '|' + item->text(1) + '|' + item->text(2);
            letters << item->text(2);
        }
        QCOMPARE(seen, rows);
        QCOMPARE(s.tree()->indexOfTopLevelItem(s.tree()->currentItem()), current);
        QCOMPARE(listRemovableVolumes(), letters);
    }

    // A group with nothing to store is dead but keeps its text; Save needs a box and a volume.
    void groupsAndSaveButton()
    {
        TestMachine m;
        bootMachine(m);
        Save s{{}, {"X:/Users/Default/Desktop/a.lnk", "X:/Users/Default/Desktop/Sub/b.lnk"}, {}};
        s.d.startMenuText = "kept from before";
        s.fill("800x600");
        QVERIFY(!s.box("checkBox")->isEnabled() && !s.box("checkBox")->isChecked()
                && !s.d.findChild<QToolButton *>("toolButton")->isEnabled());
        QVERIFY(!s.box("checkBox_3")->isEnabled() && !s.box("checkBox_3")->isChecked());
        QVERIFY(s.box("checkBox_2")->isChecked() && s.box("checkBox_4")->isChecked());
        QCOMPARE(s.d.startMenuText + '|' + s.d.desktopText, QString("kept from before|a.lnk\nb.lnk\n"));
        s.box("checkBox_2")->setChecked(false);
        QVERIFY(s.button("pushButton")->isEnabled());
        s.box("checkBox_4")->setChecked(false);
        QVERIFY(!s.button("pushButton")->isEnabled());
        s.box("checkBox_4")->setChecked(true);
        QVERIFY(s.button("pushButton")->isEnabled());
        s.tree()->setCurrentItem(nullptr);
        QVERIFY(!s.button("pushButton")->isEnabled());
        m.write("machine.ini", m.read("machine.ini").replace("removable", "fixed"));
        s.d.refreshUsbDevices();
        QVERIFY(s.tree()->topLevelItemCount() == 0 && !s.button("pushButton")->isEnabled());
        s.button("pushButton_2")->click();
        QCOMPARE(s.d.result(), int(QDialog::Rejected));
    }

    // The save to stick F:; its failures are silent, lose nothing, and the steps that fit still run.
    void filesASaveTouches_data()
    {
        QTest::addColumn<QStringList>("target");     // keys of F:; "vanish": gone before Save
        QTest::addColumn<QString>("resolution");
        QTest::addColumn<NetworkCondition>("now");
        QTest::addColumn<QString>("bootLetter");
        QTest::addColumn<QStringList>("effects");
        QTest::addColumn<QString>("message");        // title and text of a message box, if one is shown
        QTest::addColumn<QByteArrayList>("stick");   // F:/_kelpie.ini and F:/_kelpieNet.ini afterwards
        const QStringList copies{
            "write F:\\Start Menu.1\\Users\\Default\\AppData\\Roaming\\Microsoft\\Windows\\"
            "Start Menu\\Programs\\Tools\\m.lnk",
            "write F:\\Desktop.1\\Users\\Default\\Desktop\\d.lnk"};
        const QStringList ini{"write F:/_kelpie.ini"}, netIni{"write F:/_kelpieNet.ini"}, none;
        const QByteArray old = "imageLang=9\r\nbuild=old", carried = composed().toUtf8();
        const QByteArray firewallOn = QByteArray(carried).replace("firewall=0", "firewall=1");
        const QByteArrayList untouched{old, "ipAdd=old"};
        const NetworkCondition same, dhcp{1, 0, 1, {}, {}, {}, {}, {}};
        QTest::newRow("start menu and desktop only: neither ini file is touched")
            << none << QString() << same << "E" << copies << "" << untouched;
        QTest::newRow("display: _kelpie.ini carried from the boot medium with the new resolution")
            << none << "1280x1024" << same << "E" << ini + copies << ""
            << QByteArrayList{QByteArray(carried).replace("1024x768", "1280x1024"), "ipAdd=old"};
        QTest::newRow("network, static: both ini files") << none << QString() << staticNet << "E"
            << ini + netIni + copies << "" << QByteArrayList{firewallOn, staticNetIni};
        QTest::newRow("network by DHCP removes an old _kelpieNet.ini") << none << QString() << dhcp << "E"
            << ini + QStringList{"remove F:/_kelpieNet.ini"} + copies << "" << QByteArrayList{carried, {}};
        QTest::newRow("boot volume without _kelpie.ini: a critical message, nothing stored")
            << none << "1280x1024" << staticNet << "C" << none << "Path not found|Cannot find boot media C:\\"
            << untouched;
        for (const char *failing : {"readOnly=1", "freeBytes=0", "vanish"})
            QTest::newRow(qPrintable(QString("nothing stored when %1").arg(failing)))
                << QStringList{failing} << "1280x1024" << staticNet << "E" << none << "" << untouched;
        QTest::newRow("nearly full stick: room for the small file alone")
            << QStringList{"freeBytes=80"} << "1280x1024" << staticNet << "E" << netIni << ""
            << QByteArrayList{old, staticNetIni};
    }

    void filesASaveTouches()
    {
        QFETCH(QStringList, target);
        QFETCH(QString, resolution);
        QFETCH(NetworkCondition, now);
        QFETCH(QString, bootLetter);
        QFETCH(QStringList, effects);
        QFETCH(QString, message);
        QFETCH(QByteArrayList, stick);
        TestMachine m;
        bootMachine(m);
        const bool vanish = target.removeAll("vanish");
        m.addStick('F', 2, target);
        m.write("drives/F/_kelpie.ini", "imageLang=9\r\nbuild=old");
        m.write("drives/F/_kelpieNet.ini", "ipAdd=old");
        m.write("drives/F/Desktop.1/Users/Default/Desktop/old.lnk", "saved before");
        const QString menu = "Users/Default/AppData/Roaming/Microsoft/Windows/Start Menu/Programs/Tools/m.lnk";
        m.write("drives/X/" + menu, QByteArray(500, 'm'));
        m.write(deskFolder + "d.lnk", QByteArray(500, 'd'));
        m.write(deskFolder + "old.lnk", "newer, not saved");
        const auto before = filesBelow(m, "drives/F");
        Save s{{"X:/" + menu}, {"X:/Users/Default/Desktop/d.lnk", "X:/Users/Default/Desktop/old.lnk"}, now};
        s.fill(resolution);
        s.d.bootLetter = bootLetter;
        s.tree()->setCurrentItem(s.tree()->topLevelItem(1));
        if (vanish)
            m.addStick('F', 2, {"present=0"});
        QString shown;
        QPointer<QTimer> watch = whenModal<QMessageBox>([&](QMessageBox *b) {
            shown = b->windowTitle() + '|' + b->text();
            QCOMPARE(b->icon(), QMessageBox::Critical);
            b->done(QMessageBox::Ok);
        });
        s.button("pushButton")->click();
        delete watch.data();
        QCOMPARE(shown, message);
        QCOMPARE(s.d.result(), int(QDialog::Accepted));
        QVERIFY(!QApplication::overrideCursor());
        QStringList seen;
        for (const QString &line : m.journal().filter(QRegularExpression("^(write|remove)\t")))
            seen << line.section('\t', 0, 1).replace('\t', ' ');
        QCOMPARE(seen, effects);
        QCOMPARE((QByteArrayList{m.read("drives/F/_kelpie.ini"), m.read("drives/F/_kelpieNet.ini")}), stick);
        // A shortcut of that name already saved stays the old one; no temporary file is left behind.
        QCOMPARE(m.read("drives/F/Desktop.1/Users/Default/Desktop/old.lnk"), QByteArray("saved before"));
        const QString written = effects.join('\n').replace('\\', '/');
        for (const QString &file : filesBelow(m, "drives/F").keys())
            QVERIFY2(before.contains(file) || written.contains(file), qPrintable(file));
    }

    // What comes back from the saved folders (shortcuts follow their programs); the stick is kept.
    void restore_data()
    {
        QTest::addColumn<QStringList>("saved");   // "file=content" of the machine before start-up
        QTest::addColumn<QString>("volume");      // what findSavedVolume answers
        QTest::addColumn<QStringList>("onX");     // "file=content" of X: afterwards
        const QString desk = "Users/Default/Desktop/", lnk = "drives/E/Desktop.1/Users/t.lnk=";
        const QString longPath = "Users/" + QString(150, 'p') + '/' + QString(150, 'q') + ".lnk=long";
        const QString deep = QString(130, 'd') + '\\' + QString(130, 'e') + "\\t.exe";
        QTest::newRow("a volume with Desktop.1 alone is found; the name ignores case")
            << QStringList{"drives/E/DESKTOP.1/" + desk + "a.lnk=A"} << "E:/" << QStringList{desk + "a.lnk=A"};
        QTest::newRow("with saved folders on two volumes the lower letter counts")
            << QStringList{"drives/F/Start Menu.1/Users/m/f.lnk=F", "drives/D/Start Menu.1/Users/m/d.lnk=D"}
            << "D:/" << QStringList{"Users/m/d.lnk=D"};
        QTest::newRow("a file straight in the saved folder is never restored")
            << QStringList{"drives/E/Desktop.1/loose.lnk=L", "drives/E/Desktop.1/Users/b.lnk=B"} << "E:/"
            << QStringList{"Users/b.lnk=B"};
        QTest::newRow("a file that exists keeps its content")
            << QStringList{"drives/E/Desktop.1/" + desk + "a.lnk=saved", "drives/X/" + desk + "a.lnk=present"}
            << "E:/" << QStringList{desk + "a.lnk=present"};
        QTest::newRow("a file in the way of a folder: that one stays behind, the rest come back")
            << QStringList{"drives/E/Desktop.1/Users/Blocked/a.lnk=A", "drives/E/Desktop.1/Users/Free/b.lnk=B",
                           "drives/X/Users/Blocked=file"}
            << "E:/" << QStringList{"Users/Blocked=file", "Users/Free/b.lnk=B"};
        QTest::newRow("a saved folder on a drive that is not ready is not found")
            << QStringList{"drives/N/Desktop.1/Users/a.lnk=A"} << "" << QStringList();
        QTest::newRow("a path past 260 characters comes back whole")
            << QStringList{"drives/E/Desktop.1/" + longPath} << "E:/" << QStringList{longPath};
        QTest::newRow("shortcut: target still there under its old letter")
            << QStringList{lnk + "->D:\\T\\t.exe|D:\\T", "drives/D/T/t.exe=MZ"} << "E:/"
            << QStringList{"Users/t.lnk=->D:\\T\\t.exe|D:\\T"};
        QTest::newRow("shortcut: found on another drive, target and folder follow")
            << QStringList{lnk + "->D:\\T\\t.exe|D:\\T", "drives/F/T/t.exe=MZ", "drives/G/T/t.exe=MZ"} << "E:/"
            << QStringList{"Users/t.lnk=->F:\\T\\t.exe|F:\\T"};
        QTest::newRow("shortcut: found nowhere, or on a drive that is not ready only")
            << QStringList{lnk + "->D:\\T\\t.exe|D:\\T", "drives/N/T/t.exe=MZ"} << "E:/"
            << QStringList{"Users/t.lnk=->D:\\T\\t.exe|D:\\T"};
        QTest::newRow("shortcut: one cut after its first byte is copied as it is")
            << QStringList{lnk + "L", "drives/F/T/t.exe=MZ"} << "E:/" << QStringList{"Users/t.lnk=L"};
        QTest::newRow("shortcut: a target past the 260-character buffer is left alone")
            << QStringList{lnk + "->D:\\" + deep + '|', "drives/F/" + QString(deep).replace('\\', '/') + "=MZ"}
            << "E:/" << QStringList{"Users/t.lnk=->D:\\" + deep + '|'};
    }

    void restore()
    {
        QFETCH(QStringList, saved);
        QFETCH(QString, volume);
        QFETCH(QStringList, onX);
        TestMachine m;
        m.addVolume('N', {"ready=0"});
        for (const QString &entry : saved)
            m.write(entry.section('=', 0, 0), contentOf(entry.section('=', 1)));
        const QString root = findSavedVolume({"Start Menu.1", "Desktop.1"});
        QCOMPARE(root, volume);
        restoreSavedFiles(root.left(1));
        QStringList seen;
        const auto files = filesBelow(m, "drives/X/");
        for (auto it = files.constBegin(); it != files.constEnd(); ++it)
            seen << it.key() + '=' + textOf(it.value());
        QCOMPARE(seen, onX);
        for (const QString &entry : saved)
            QCOMPARE(textOf(m.read(entry.section('=', 0, 0))), entry.section('=', 1));
    }

    // Only additions since the baseline written at start-up count.
    void baseline_data()
    {
        QTest::addColumn<QStringList>("change");   // "+file" adds, "-file" deletes, "dir/" makes a folder
        QTest::addColumn<QByteArray>("log");       // replaces the desktop log when not empty
        QTest::addColumn<QStringList>("added");
        const QString x = "X:/Users/Default/Desktop/";
        QTest::newRow("a deleted file goes unnoticed, a renamed one counts as added")
            << QStringList{"-a.lnk", "+renamed.lnk"} << QByteArray() << QStringList{x + "renamed.lnk"};
        QTest::newRow("a file in a new sub-folder counts")
            << QStringList{"+Sub/Deeper/s.lnk"} << QByteArray() << QStringList{x + "Sub/Deeper/s.lnk"};
        QTest::newRow("an empty folder does not") << QStringList{"Empty/"} << QByteArray() << QStringList();
        QTest::newRow("desktop.ini never counts")
            << QStringList{"+DeskTop.INI"} << QByteArray() << QStringList{};
        QTest::newRow("a log with mixed line ends and junk") << QStringList()
            << QByteArray("\xff\xfe\0junk\nX:/Users/Default/Desktop/a.lnk\r\r\n"
                          "\nX:/Users/Default/Desktop/b.lnk\r", 73)
            << QStringList();
        QTest::newRow("a log of one endless line") << QStringList()
            << QByteArray(3 << 20, 'j') + "\nX:/Users/Default/Desktop/a.lnk" << QStringList{x + "b.lnk"};
    }

    void baseline()
    {
        QFETCH(QStringList, change);
        QFETCH(QByteArray, log);
        QFETCH(QStringList, added);
        TestMachine m;
        winPeMode = true;
        m.write(deskFolder + "a.lnk", "a");
        m.write(deskFolder + "b.lnk", "b");
        m.write(deskFolder + "desktop.ini", "[.ShellClassInfo]");
        writeConditionLogs();
        QCOMPARE(m.read("drives/X/tmpReg/desktopCondition1.log"),
                 QByteArray("X:/Users/Default/Desktop/a.lnk\r\nX:/Users/Default/Desktop/b.lnk\r\n"));
        for (const QString &c : change) {
            if (c.startsWith('+'))
                m.write(deskFolder + c.mid(1), "new");
            else if (c.startsWith('-'))
                QVERIFY(QFile::remove(m.folder() + '/' + deskFolder + c.mid(1)));
            else
                QVERIFY(QDir().mkpath(m.folder() + '/' + deskFolder + c));
        }
        if (!log.isEmpty())
            m.write("drives/X/tmpReg/desktopCondition1.log", log);
        QStringList found;
        QCOMPARE(findAddedFiles(found, desktopConditionLog, desktopPath), !added.isEmpty());
        QCOMPARE(found, added);
    }
};

KELPIE_TEST_MAIN(TestSettings)
#include "tst_settings.moc"
