// The Win32 volumes room against the real system (under Wine in CI): volumes, disks, writes and
// shortcut files; where Wine has no answer, QSKIP says why.

#include "platform/shelllink/shelllink.h"
#include "platform/win/winplatform.h"
#include "testmain.h"

#include <QScopeGuard>
#include <QTemporaryDir>

class WinVolumesTest : public QObject {
    Q_OBJECT
    WinPlatform win;

private slots:
    void initTestCase() { win.prepareShellLinks(); }

    void systemDriveAndItsDisk()
    {
        const VolumeSpace space = win.volumeSpace('C');
        QVERIFY(space.ready && space.bytesFree > 0 && !space.displayName.isEmpty());
        QVERIFY(!win.volumeSpace('Q').ready || QDir("Q:/").exists());
        QVERIFY(!win.volumeOpens("\\\\.\\Q:") || QDir("Q:/").exists());
        if (!win.volumeOpens("\\\\.\\C:"))
            QSKIP("this system does not open the volume device of a folder-backed C: drive");
        const DeviceNumberAnswer number = win.volumeDeviceNumber("\\\\.\\C:");
        if (!number.opened || !number.ok)
            QSKIP("no device number for C: (a folder-backed drive under Wine has no disk behind it)");
        QCOMPARE(number.bytesReturned, quint32(12));
        const PhysicalDriveAnswer drive = win.physicalDrive(number.deviceNumber);
        if (!drive.opened || !drive.geometryOk)
            QSKIP("the physical drive of C: does not answer its geometry here");
        QVERIFY(drive.mediaType == 11 || drive.mediaType == 12);
        const StorageDescriptorAnswer descriptor = win.storageDescriptor("\\\\.\\C:");
        if (!descriptor.ok)
            QSKIP("the storage property query is not answered for C: here");
        QVERIFY(descriptor.bytes.size() >= 40 && descriptor.bytes.size() <= 4096);
    }

    void writesReplaceWhole()
    {
        QTemporaryDir dir;
        const QString folder = dir.path() + "/Desktop.1", file = folder + "/_kelpie.ini";
        QVERIFY(dir.isValid() && win.makeFolder(folder) && !win.makeFolder(folder));
        QVERIFY(win.saveFile(file, "imageLang=1\r\nbuild=old") && win.saveFile(file, "build=new"));
        QFile read(file);
        QVERIFY(read.open(QIODevice::ReadOnly) && read.readAll() == "build=new");
        read.close();   // an open file cannot be removed on Windows
        QCOMPARE(QDir(folder).entryList(QDir::Files), QStringList{"_kelpie.ini"});   // no temporary left
        QVERIFY(!win.saveFile(dir.path() + "/missing/x.ini", "x"));
        QVERIFY(win.removeFile(file) && !win.removeFile(file));
    }

    // Our shortcuts and the shell link object's read each other; a damaged or missing one loads for neither.
    void shortcutsThroughTheShellLinkObject()
    {
        // Short names only (the temporary folder's path has them): the object's paths equal ours.
        const QString root = QDir::toNativeSeparators(QDir::tempPath())
                             + QString("\\kv%1").arg(QCoreApplication::applicationPid() % 10000);
        const QString link = root + "\\t.lnk", bin = root + "\\bin", exe = bin + "\\t.exe";
        const auto cleanUp = qScopeGuard([&] { QDir(root).removeRecursively(); });
        QFile program(exe);
        QVERIFY(QDir().mkpath(bin) && program.open(QIODevice::WriteOnly) && program.write("MZ") == 2);
        program.close();
        QVERIFY(shelllink::writeFile(link, shelllink::make(exe, bin)));
        const ShortcutAnswer answer = win.readShortcut(link);
        QVERIFY(answer.loaded);
        QCOMPARE((answer.target + '|' + answer.workingDirectory).toUpper(), (exe + '|' + bin).toUpper());
        QVERIFY(shelllink::writeFile(link, shelllink::make("D:\\gone\\t.exe", "D:\\gone")));
        QVERIFY(win.writeShortcut(link, exe, bin));
        shelllink::Link read;
        QVERIFY(shelllink::readFile(link, &read));
        QCOMPARE((read.target + '|' + read.workingDirectory).toUpper(), (exe + '|' + bin).toUpper());
        QFile bad(link);
        QVERIFY(bad.open(QIODevice::WriteOnly));
        bad.write(shelllink::write(shelllink::make("C:\\a.exe")).left(30));
        bad.close();
        QVERIFY(!win.readShortcut(link).loaded && !win.writeShortcut(link, "C:\\b.exe", QString()));
        QVERIFY(!win.readShortcut(root + "\\none.lnk").loaded);
    }
};

KELPIE_TEST_MAIN(WinVolumesTest)
#include "tst_win_volumes.moc"
