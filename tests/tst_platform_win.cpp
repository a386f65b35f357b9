// The Win32 platform against the real system (under Wine in CI), the shell room's icons, extended
// starts, time zone and clock included. Where Wine has no answer to give, the test says so with
// QSKIP rather than passing.

#include "platform/win/winplatform.h"
#include "testmain.h"

#include <QDir>
#include <QFileInfo>
#include <QImage>
#include <QProcess>
#include <QTemporaryDir>
#include <QUuid>

#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>


class TestPlatformWin : public QObject {
    Q_OBJECT
    WinPlatform win;
    const QString testKey = QStringLiteral("Software\\Kelpie Tests\\") + QUuid::createUuid().toString();

private slots:
    void cleanupTestCase() { RegDeleteTreeW(HKEY_CURRENT_USER, L"Software\\Kelpie Tests"); }

    void registry()
    {
        // All 32 bits survive an overwrite; a nested key that does not exist yet is made on the way.
        QVERIFY(win.writeUserDword(testKey, QStringLiteral("Language"), 12));
        QVERIFY(win.writeUserDword(testKey, QStringLiteral("Language"), 0xfedcba98u));
        RegValue v = win.readUserDword(testKey, QStringLiteral("Language"));
        QVERIFY(v.found && v.type == REG_DWORD && v.data == 0xfedcba98u);
        QVERIFY(win.writeUserDword(testKey + "\\Deeper\\Still", "WinPE", 1));
        QCOMPARE(win.readUserDword(testKey + "\\Deeper\\Still", "WinPE").data, quint32(1));
        QVERIFY(!win.readUserDword(testKey + QStringLiteral("\\Missing"), QStringLiteral("WinPE")).found);
        QVERIFY(!win.readUserDword(testKey, QStringLiteral("WinPE")).found);

        // A short string value comes back as it is, with its type: judging it is the shell's job.
        QCOMPARE(RegSetKeyValueW(HKEY_CURRENT_USER, wide(testKey), L"Text", REG_SZ, L"1", sizeof L"1"), 0L);
        v = win.readUserDword(testKey, QStringLiteral("Text"));
        QVERIFY(v.found && v.type == REG_SZ && v.data == quint32('1'));
    }

    void processCount()
    {
        const QString self = QFileInfo(QCoreApplication::applicationFilePath()).fileName();
        QStringList names;
        QVERIFY(win.processNames(&names));
        QCOMPARE(names.filter(self, Qt::CaseInsensitive).size(), 1);

        // One more process of a name is counted once more.
        const auto shells = [&] { return names.filter("cmd.exe", Qt::CaseInsensitive).size(); };
        const int before = shells();
        QProcess child;
        child.start("cmd.exe", {"/q"});   // reads its input until that closes
        QVERIFY(child.waitForStarted(10000));
        QVERIFY(QTest::qWaitFor([&] { return win.processNames(&names) && shells() == before + 1; }, 10000));
        child.closeWriteChannel();
        QVERIFY(child.waitForFinished(30000));
    }

    void drives()
    {
        // A drive letter mapped to a folder by the run script.
        const QString given = qEnvironmentVariable("KELPIE_TEST_DRIVE");
        if (given.isEmpty())
            QSKIP("no KELPIE_TEST_DRIVE: tools/windows/run-tests.sh maps one");
        const QChar letter = given.at(0).toUpper();
        const quint32 mask = win.logicalDrives();
        QVERIFY(mask & (1u << (letter.unicode() - 'A')));
        QVERIFY(win.volumeReady(letter));

        // A letter that is not there: not ready, and the device cannot be opened.
        char absent = 'Z';
        while (absent > 'D' && (mask & (1u << (absent - 'A'))))
            --absent;
        QVERIFY(!win.volumeReady(QLatin1Char(absent)));
        const DeviceNumberAnswer none = win.deviceNumber(QLatin1Char(absent));
        QVERIFY(!none.opened && !none.ok);

        // A folder is no disk: whatever the open does, no disk number may come back.
        const DeviceNumberAnswer folder = win.deviceNumber(letter);
        const bool disk = folder.ok && folder.bytesReturned == win32::storageDeviceNumberSize
            && folder.deviceType == win32::fileDeviceDisk;
        if (folder.opened && disk)
            QSKIP(qPrintable(QStringLiteral("this system reports disk %1 (partition %2) for a "
                                            "folder-backed drive").arg(folder.deviceNumber)
                                 .arg(folder.partitionNumber)));
        QVERIFY(!disk);
        QVERIFY(folder.opened || (!folder.ok && folder.bytesReturned == 0));
    }

    void starts()
    {
        // A .cmd that writes its first argument into a file of that name, through both calls (Wine
        // runs it with its cmd). A file of its own per start: a move over a file the test is
        // reading fails.
        QTemporaryDir dir;
        const QString script = QDir::toNativeSeparators(dir.filePath("write.cmd"));
        QFile f(script);
        QVERIFY(f.open(QIODevice::WriteOnly)
                && f.write("@echo off\r\necho %~1>\"%~dp0%~1.tmp\"\r\n"
                           "move /y \"%~dp0%~1.tmp\" \"%~dp0%~1.txt\" >nul\r\n"));
        f.close();
        const auto wrote = [&](const QByteArray &text) {
            return QTest::qWaitFor([&] {
                QFile out(dir.filePath(QString::fromLatin1(text + ".txt")));
                return out.open(QIODevice::ReadOnly) && out.readAll().trimmed() == text;
            }, 60000);
        };
        const ShellResult r = win.shellExecute("open", script, "hello", SW_HIDE);
        QVERIFY2(r.code > 32, qPrintable(QStringLiteral("result %1, error %2").arg(r.code).arg(r.lastError)));
        QVERIFY(wrote("hello"));
        // The extended call with the context menu's verbs (mask 12) and "Open".
        ShellExecuteRequest request{12, "Open", script, "again", {}, 0};
        const ShellExecuteExResult ex = win.shellExecuteEx(request);
        QVERIFY2(ex.ok && ex.instApp > 32, qPrintable(QString("last error %1").arg(ex.lastError)));
        QVERIFY(wrote("again"));

        const ShellResult missing = win.shellExecute("open", QDir::toNativeSeparators(dir.filePath("absent.exe")),
                                                     QString(), SW_SHOWNORMAL);
        QCOMPARE(missing.code, qintptr(SE_ERR_FNF));
        QCOMPARE(missing.lastError, quint32(ERROR_FILE_NOT_FOUND));
        request.file = QDir::toNativeSeparators(dir.filePath("missing.cmd"));
        const ShellExecuteExResult exMissing = win.shellExecuteEx(request);
        QVERIFY(!exMissing.ok && exMissing.instApp <= 32);
    }

    void nativeMessages_data()
    {
        QTest::addColumn<QByteArray>("eventType");
        QTest::newRow("generic") << QByteArray("windows_generic_MSG");
        QTest::newRow("dispatcher") << QByteArray("windows_dispatcher_MSG");
    }

    void nativeMessages()
    {
        QFETCH(QByteArray, eventType);
        MSG msg = {nullptr, WM_HOTKEY, 3, MAKELPARAM(MOD_CONTROL | MOD_ALT, 'D'), 0, {0, 0}};
        NativeMessage m = win.decodeNativeMessage(eventType, &msg);
        QVERIFY(m.kind == NativeMessage::HotKey && m.hotKeyId == 3);
        // Only the Windows event types are messages.
        QCOMPARE(win.decodeNativeMessage("xcb_generic_event_t", &msg).kind, NativeMessage::Other);
        QCOMPARE(win.decodeNativeMessage(eventType, nullptr).kind, NativeMessage::Other);

        wchar_t refresh[] = L"Refresh";
        COPYDATASTRUCT cds = {99, 2, refresh};   // cbData not looked at: the text runs to its zero
        msg = {nullptr, WM_COPYDATA, 1, reinterpret_cast<LPARAM>(&cds), 0, {0, 0}};
        m = win.decodeNativeMessage(eventType, &msg);
        QVERIFY(m.kind == NativeMessage::CopyData && m.wParam == 1 && m.text == QStringLiteral("Refresh"));

        // Without data, or without the structure, still the message, with no text.
        cds.lpData = nullptr;
        msg.wParam = 0;
        m = win.decodeNativeMessage(eventType, &msg);
        QVERIFY(m.kind == NativeMessage::CopyData && m.wParam == 0 && m.text.isEmpty());
        msg.lParam = 0;
        QCOMPARE(win.decodeNativeMessage(eventType, &msg).kind, NativeMessage::CopyData);
        msg.message = WM_PAINT;
        QCOMPARE(win.decodeNativeMessage(eventType, &msg).kind, NativeMessage::Other);
    }

    void displayMemoryAndLayouts()
    {
        DisplayMode mode;
        QVERIFY(win.currentDisplayMode(&mode));
        QVERIFY(mode.width > 0 && mode.height > 0 && mode.bitsPerPixel > 0);
        // The walk of the modes ends, and its first entry is a real mode.
        QVERIFY(win.displayMode(0, &mode) && mode.width > 0 && mode.height > 0);
        int count = 1;
        while (count < 5000 && win.displayMode(count, &mode))
            ++count;
        QVERIFY(count < 5000 && !win.displayMode(-1, &mode));
        const MemoryStatus mem = win.memoryStatus();
        QVERIFY(mem.ok && mem.totalPhys >= mem.availPhys && mem.availPhys > 0);

        const QList<quint64> layouts = win.keyboardLayouts();
        QVERIFY(!layouts.isEmpty() && win.keyboardLayoutCount() == layouts.size());
        QVERIFY(layouts.contains(quint64(reinterpret_cast<quintptr>(GetKeyboardLayout(0)))));
        QVERIFY(win.foregroundKeyboardLayout() != 0);
        QVERIFY(!win.localeLanguageName(quint32(layouts.first() & 0xffff)).isEmpty());
        // Only the low 16 bits choose the locale.
        QCOMPARE(win.localeLanguageName(0x04090409u), win.localeLanguageName(0x0409u));
        QVERIFY(win.localeLanguageName(0x0409u).contains(QStringLiteral("English")));
    }

    void workAreaReadAndWrite()
    {
        WorkArea area, after;
        QVERIFY(win.workArea(&area) && area.right > area.left && area.bottom > area.top);
        WorkArea smaller = area;
        smaller.bottom -= 64;
        QVERIFY(win.setWorkArea(smaller) && win.workArea(&after));
        const bool taken = after.bottom == smaller.bottom;
        QVERIFY(win.setWorkArea(area));
        if (!taken)
            QSKIP("the work area write is accepted but not kept here");
        QVERIFY(win.workArea(&after));
        QCOMPARE(after.bottom, area.bottom);
    }

    void hotKeyRegistration()
    {
        HWND window = CreateWindowExW(0, L"STATIC", L"kelpie", 0, 0, 0, 0, 0, HWND_MESSAGE,
                                      nullptr, nullptr, nullptr);
        QVERIFY(window);
        const quintptr handle = reinterpret_cast<quintptr>(window);
        const quint32 mods = MOD_CONTROL | MOD_SHIFT | MOD_ALT;
        QVERIFY(win.registerHotKey(handle, 2, mods, VK_F11));
        // The same combination cannot be taken twice.
        QVERIFY(!win.registerHotKey(handle, 3, mods, VK_F11));
        win.unregisterHotKey(handle, 2);
        QVERIFY(win.registerHotKey(handle, 3, mods, VK_F11));
        win.unregisterHotKey(handle, 3);
        DestroyWindow(window);
    }

    void keyboardHook()
    {
        QList<KeyHookEvent> events;
        QVERIFY(win.installKeyboardHook([&](const KeyHookEvent &e) {
            return e.vkCode == VK_F23 && (events.append(e), true);   // swallowed
        }));
        keybd_event(VK_F23, 0, 0, 0);
        keybd_event(VK_F23, 0, KEYEVENTF_KEYUP, 0);
        const bool arrived = QTest::qWaitFor([&] { return events.size() >= 2; }, 5000);
        win.removeKeyboardHook();
        win.removeKeyboardHook();   // a second removal is harmless
        if (!arrived)
            QSKIP("injected keys do not reach a low-level hook here");
        QCOMPARE(events.at(0).code, HC_ACTION);
        QVERIFY(events.at(0).flags < 100);            // key down
        QVERIFY(events.at(1).flags & LLKHF_UP);       // key up

        // After removal the handler is no longer called.
        const int before = events.size();
        keybd_event(VK_F23, 0, 0, 0);
        keybd_event(VK_F23, 0, KEYEVENTF_KEYUP, 0);
        QTest::qWait(300);
        QCOMPARE(events.size(), before);
    }

    void shellIcons_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("sameAs");   // asked by name with no attributes: a folder is a file
        const QString system = qEnvironmentVariable("SystemRoot") + "\\system32";
        QTest::newRow("a program") << system + "\\notepad.exe" << QString();
        QTest::newRow("a folder") << system << "C:\\no\\such\\NoExtension";
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
        QVERIFY(win.localTime(&again) && again.year == now.year);
    }
};

KELPIE_TEST_MAIN(TestPlatformWin)
#include "tst_platform_win.moc"
