// The Win32 shell room against the real system (under Wine in CI): shell icons by name, the
// extended shell execution, the time zone and the local clock. Where Wine has no answer to
// give, the test says so with QSKIP rather than passing.

#include "platform/win/winplatform.h"
#include "testmain.h"

#include <QDir>
#include <QImage>
#include <QTemporaryDir>

#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

static QString inSystemFolder(const QString &name)
{
    wchar_t buffer[MAX_PATH];
    const UINT n = GetSystemDirectoryW(buffer, MAX_PATH);
    return QDir::toNativeSeparators(QString::fromWCharArray(buffer, int(n)) + name);
}

class TestWinShell : public QObject {
    Q_OBJECT
    WinPlatform win;

private slots:
    void shellIcons_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("sameAs");   // asked by name with no attributes: a folder is a file
        QTest::newRow("a program") << inSystemFolder("/notepad.exe") << QString();
        QTest::newRow("a folder") << inSystemFolder("") << "C:\\no\\such\\NoExtension";
        QTest::newRow("a missing path") << "C:\\no\\such\\folder\\report.txt" << QString();
    }

    void shellIcons()
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

    void extendedStarts()
    {
        // A .cmd through the "Open" verb with the context menu's verbs (Wine runs it with its cmd).
        QTemporaryDir dir;
        QFile f(dir.filePath("writes.cmd"));
        QVERIFY(f.open(QIODevice::WriteOnly));
        QVERIFY(f.write("@echo off\r\necho started> \"%~dp0done.txt\"\r\n") > 0);
        f.close();
        ShellExecuteRequest request{12, "Open", QDir::toNativeSeparators(f.fileName()), {}, {}, 0};
        const ShellExecuteExResult r = win.shellExecuteEx(request);
        QVERIFY2(r.ok && r.instApp > 32, qPrintable(QString("last error %1").arg(r.lastError)));
        QVERIFY(QTest::qWaitFor([&] { return QFile::exists(dir.filePath("done.txt")); }, 60000));

        request.file = QDir::toNativeSeparators(dir.filePath("missing.cmd"));
        const ShellExecuteExResult missing = win.shellExecuteEx(request);
        QVERIFY(!missing.ok && missing.instApp <= 32);
    }

    void timeZoneWrittenAndRead()
    {
        TimeZoneInfo before;
        QVERIFY(win.timeZoneInformation(&before) != TIME_ZONE_ID_INVALID);
        TimeZoneInfo wanted = before;
        wanted.bias = before.bias == -180 ? -240 : -180;
        if (!win.setTimeZoneInformation(wanted))
            QSKIP(qPrintable(QString("SetTimeZoneInformation refused (error %1)").arg(GetLastError())));
        TimeZoneInfo after;
        win.timeZoneInformation(&after);
        QVERIFY(win.setTimeZoneInformation(before));
        if (after.bias != wanted.bias)
            QSKIP("SetTimeZoneInformation answered yes but the zone stayed (Wine keeps the host's zone)");
        QCOMPARE(after.daylightBias, before.daylightBias);
        QCOMPARE(after.standardName, before.standardName);
    }

    void localClock()
    {
        SystemTime now;
        QVERIFY(win.localTime(&now));
        QVERIFY(now.year >= 2020 && now.month >= 1 && now.month <= 12);
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
};

KELPIE_TEST_MAIN(TestWinShell)
#include "tst_win_shell.moc"
