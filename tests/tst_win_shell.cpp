// The Win32 shell room against the real system (under Wine in CI): shell icons by name, the
// extended shell execution, the time zone and the local clock. Where Wine has no answer to
// give, the test says so with QSKIP rather than passing.

#include "platform/win/winplatform.h"
#include "testmain.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QImage>
#include <QTemporaryDir>

#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

namespace {

QString native(const QString &path)
{
    return QDir::toNativeSeparators(path);
}

// Waits for a child's file, pumping events; a started script runs beside the test.
bool waitForFile(const QString &path, int ms)
{
    QElapsedTimer clock;
    clock.start();
    while (!QFile::exists(path)) {
        if (clock.elapsed() > ms)
            return false;
        QCoreApplication::processEvents();
        Sleep(50);
    }
    return true;
}

QString systemFolder()
{
    wchar_t buffer[MAX_PATH];
    const UINT n = GetSystemDirectoryW(buffer, MAX_PATH);
    return QString::fromWCharArray(buffer, int(n));
}

} // namespace

class TestWinShell : public QObject {
    Q_OBJECT

private:
    WinPlatform win;
    QTemporaryDir dir;

private slots:
    void shellIcons_data();
    void shellIcons();
    void extendedStarts();
    void timeZoneWrittenAndRead();
    void localClock();
};

void TestWinShell::shellIcons_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("sameAs");   // asked by name with no attributes: a folder is a file
    QTest::newRow("a program") << native(systemFolder() + "/notepad.exe") << QString();
    QTest::newRow("a folder") << native(systemFolder()) << "C:\\no\\such\\NoExtension";
    QTest::newRow("a missing path") << "C:\\no\\such\\folder\\report.txt" << QString();
}

void TestWinShell::shellIcons()
{
    QFETCH(QString, path);
    QFETCH(QString, sameAs);
    const QImage icon = win.shellIcon(path);
    if (icon.isNull())
        QSKIP("SHGetFileInfoW gave no icon here (Wine without the shell's icon resources)");
    QCOMPARE(icon.size(), QSize(GetSystemMetrics(SM_CXICON), GetSystemMetrics(SM_CYICON)));
    QCOMPARE(icon.format(), QImage::Format_ARGB32_Premultiplied);
    QImage blank(icon.size(), icon.format());
    blank.fill(Qt::transparent);
    QVERIFY(icon != blank);
    if (!sameAs.isEmpty())
        QCOMPARE(icon, win.shellIcon(sameAs));
}

void TestWinShell::extendedStarts()
{
    // A .cmd through the "Open" verb with the context menu's verbs (Wine runs it with its cmd).
    QVERIFY(dir.isValid());
    QFile f(dir.filePath("writes.cmd"));
    QVERIFY(f.open(QIODevice::WriteOnly));
    f.write("@echo off\r\necho started> \"%~dp0done.txt\"\r\n");
    f.close();
    ShellExecuteRequest request;
    request.mask = 12;
    request.verb = QStringLiteral("Open");
    request.file = native(f.fileName());
    request.show = 0;
    const ShellExecuteExResult r = win.shellExecuteEx(request);
    QVERIFY2(r.ok && r.instApp > 32, qPrintable(QString("last error %1").arg(r.lastError)));
    QVERIFY2(waitForFile(dir.filePath("done.txt"), 60000), "the script did not run");

    request.file = native(dir.filePath("missing.cmd"));
    const ShellExecuteExResult missing = win.shellExecuteEx(request);
    QVERIFY(!missing.ok);
    QVERIFY(missing.instApp <= 32);
}

void TestWinShell::timeZoneWrittenAndRead()
{
    TimeZoneInfo before;
    const quint32 answer = win.timeZoneInformation(&before);
    QVERIFY(answer != TIME_ZONE_ID_INVALID);

    TimeZoneInfo wanted = before;
    wanted.bias = before.bias == -180 ? -240 : -180;
    if (!win.setTimeZoneInformation(wanted))
        QSKIP(qPrintable(QString("SetTimeZoneInformation refused (error %1)").arg(GetLastError())));
    TimeZoneInfo after;
    win.timeZoneInformation(&after);
    const bool taken = after.bias == wanted.bias;
    QVERIFY(win.setTimeZoneInformation(before));
    if (!taken)
        QSKIP("SetTimeZoneInformation answered yes but the zone stayed (Wine keeps the host's zone)");
    QCOMPARE(after.daylightBias, before.daylightBias);
    QCOMPARE(after.standardName, before.standardName);
}

void TestWinShell::localClock()
{
    SystemTime now;
    QVERIFY(win.localTime(&now));
    QVERIFY(now.year >= 2020);
    QVERIFY(now.month >= 1 && now.month <= 12);

    SystemTime impossible = now;
    impossible.month = 13;
    QVERIFY(!win.setLocalTime(impossible));

    if (!win.setLocalTime(now))
        QSKIP(qPrintable(QString("SetLocalTime refused (error %1): no right to set the clock here")
                             .arg(GetLastError())));
    SystemTime again;
    win.localTime(&again);
    QCOMPARE(again.year, now.year);
}

KELPIE_TEST_MAIN(TestWinShell)
#include "tst_win_shell.moc"
