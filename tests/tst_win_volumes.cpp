// The Win32 volumes room against the real system (under Wine in CI): volumes and the disks under
// them, the shell's writes on a drive, and shortcut files through the shell link object, read
// and written alongside the portable Shell Link reader. Where Wine has no answer, QSKIP says why.

#include "platform/shelllink/shelllink.h"
#include "platform/win/winplatform.h"
#include "testmain.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

namespace {

// A folder with short names only (the temporary folder's path has them), so the shell link
// object's short paths equal the long ones.
struct ShortFolder {
    ShortFolder() : path(QDir::tempPath() + QStringLiteral("/kv%1").arg(QCoreApplication::applicationPid() % 10000))
    {
        QDir().mkpath(path + QStringLiteral("/bin"));
        QFile exe(path + QStringLiteral("/bin/t.exe"));
        if (exe.open(QIODevice::WriteOnly))
            exe.write("MZ");
    }
    ~ShortFolder() { QDir(path).removeRecursively(); }
    QString native(const QString &relative) const
    {
        return QDir::toNativeSeparators(path + QLatin1Char('/') + relative);
    }
    QString path;
};

} // namespace

class WinVolumesTest : public QObject {
    Q_OBJECT
private slots:
    void initTestCase() { win.prepareShellLinks(); }

    void systemDriveAnswers();
    void diskUnderTheSystemDrive();
    void writesReplaceWhole();
    void shortcutWrittenHereReadByTheShell();
    void shortcutRetargetedByTheShellReadHere();
    void damagedShortcutDoesNotLoad();

private:
    WinPlatform win;
};

void WinVolumesTest::systemDriveAnswers()
{
    const VolumeSpace space = win.volumeSpace(QLatin1Char('C'));
    QVERIFY(space.ready);
    QVERIFY(space.bytesFree > 0);
    QVERIFY(!space.displayName.isEmpty());
    QVERIFY(!win.volumeSpace(QLatin1Char('Q')).ready || QDir(QStringLiteral("Q:/")).exists());
    QVERIFY(!win.volumeOpens(QStringLiteral("\\\\.\\Q:")) || QDir(QStringLiteral("Q:/")).exists());
    if (!win.volumeOpens(QStringLiteral("\\\\.\\C:")))
        QSKIP("this system does not open the volume device of a folder-backed C: drive");
}

void WinVolumesTest::diskUnderTheSystemDrive()
{
    const DeviceNumberAnswer number = win.volumeDeviceNumber(QStringLiteral("\\\\.\\C:"));
    if (!number.opened || !number.ok)
        QSKIP("no device number for C: (a folder-backed drive under Wine has no disk behind it)");
    QCOMPARE(number.bytesReturned, quint32(12));
    const PhysicalDriveAnswer drive = win.physicalDrive(number.deviceNumber);
    if (!drive.opened || !drive.geometryOk)
        QSKIP("the physical drive of C: does not answer its geometry here");
    QVERIFY(drive.mediaType == 11 || drive.mediaType == 12);
    const StorageDescriptorAnswer descriptor = win.storageDescriptor(QStringLiteral("\\\\.\\C:"));
    if (!descriptor.ok)
        QSKIP("the storage property query is not answered for C: here");
    QVERIFY(descriptor.bytes.size() >= 40 && descriptor.bytes.size() <= 4096);
}

void WinVolumesTest::writesReplaceWhole()
{
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString folder = dir.path() + QStringLiteral("/Desktop.1");
    QVERIFY(win.makeFolder(folder));
    QVERIFY(!win.makeFolder(folder));   // exists
    const QString file = folder + QStringLiteral("/_kelpie.ini");
    QVERIFY(win.saveFile(file, "imageLang=1\r\nbuild=old"));
    QVERIFY(win.saveFile(file, "build=new"));
    QFile read(file);
    QVERIFY(read.open(QIODevice::ReadOnly));
    QCOMPARE(read.readAll(), QByteArray("build=new"));
    read.close();
    QCOMPARE(QDir(folder).entryList(QDir::Files), QStringList{"_kelpie.ini"});   // no temporary left
    QVERIFY(!win.saveFile(dir.path() + QStringLiteral("/missing/x.ini"), "x"));
    QVERIFY(win.removeFile(file));
    QVERIFY(!win.removeFile(file));
}

void WinVolumesTest::shortcutWrittenHereReadByTheShell()
{
    ShortFolder f;
    const QString link = f.native(QStringLiteral("t.lnk"));
    QVERIFY(shelllink::writeFile(link, shelllink::make(f.native(QStringLiteral("bin\\t.exe")), f.native(QStringLiteral("bin")))));
    const ShortcutAnswer answer = win.readShortcut(link);
    QVERIFY(answer.loaded);
    QCOMPARE(answer.target.toUpper(), f.native(QStringLiteral("bin\\t.exe")).toUpper());
    QCOMPARE(answer.workingDirectory.toUpper(), f.native(QStringLiteral("bin")).toUpper());
}

void WinVolumesTest::shortcutRetargetedByTheShellReadHere()
{
    ShortFolder f;
    const QString link = f.native(QStringLiteral("t.lnk"));
    QVERIFY(shelllink::writeFile(link, shelllink::make(QStringLiteral("D:\\gone\\t.exe"), QStringLiteral("D:\\gone"))));
    QVERIFY(win.writeShortcut(link, f.native(QStringLiteral("bin\\t.exe")), f.native(QStringLiteral("bin"))));
    shelllink::Link read;
    QVERIFY(shelllink::readFile(link, &read));
    QCOMPARE(read.target.toUpper(), f.native(QStringLiteral("bin\\t.exe")).toUpper());
    QCOMPARE(read.workingDirectory.toUpper(), f.native(QStringLiteral("bin")).toUpper());
    const ShortcutAnswer again = win.readShortcut(link);
    QVERIFY(again.loaded);
    QCOMPARE(again.target.toUpper(), read.target.toUpper());
}

void WinVolumesTest::damagedShortcutDoesNotLoad()
{
    ShortFolder f;
    const QString link = f.native(QStringLiteral("bad.lnk"));
    QFile bad(link);
    QVERIFY(bad.open(QIODevice::WriteOnly));
    bad.write(shelllink::write(shelllink::make(QStringLiteral("C:\\a.exe"))).left(30));
    bad.close();
    QVERIFY(!win.readShortcut(link).loaded);
    QVERIFY(!win.writeShortcut(link, QStringLiteral("C:\\b.exe"), QString()));
    QVERIFY(!win.readShortcut(f.native(QStringLiteral("none.lnk"))).loaded);
}

KELPIE_TEST_MAIN(WinVolumesTest)
#include "tst_win_volumes.moc"
