// The Win32 platform against the real system (under Wine in CI). Where Wine has no answer to give,
// the test says so with QSKIP rather than passing.

#include "platform/win/winplatform.h"
#include "testmain.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QUuid>
#include <algorithm>

#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

static int countNamed(const QStringList &names, const QString &name)
{
    return int(std::count_if(names.begin(), names.end(),
                             [&](const QString &s) { return !s.compare(name, Qt::CaseInsensitive); }));
}

class TestPlatformWin : public QObject {
    Q_OBJECT
    WinPlatform win;
    const QString testKey = QStringLiteral("Software\\Kelpie Tests\\") + QUuid::createUuid().toString();

private slots:
    void cleanupTestCase() { RegDeleteTreeW(HKEY_CURRENT_USER, L"Software\\Kelpie Tests"); }

    // Not a test of its own: the second instance that processCount starts and then waits for.
    void childInstance()
    {
        const QString flag = qEnvironmentVariable("KELPIE_CHILD_UNTIL");
        if (flag.isEmpty())
            QSKIP("runs only as the child of processCount");
        QTest::qWaitFor([&] { return QFile::exists(flag); }, 20000);
    }

    void registry()
    {
        // All 32 bits survive an overwrite; a nested key that does not exist yet is made on the way.
        QVERIFY(win.writeUserDword(testKey, QStringLiteral("Language"), 12));
        QVERIFY(win.writeUserDword(testKey, QStringLiteral("Language"), 0xfedcba98u));
        RegValue v = win.readUserDword(testKey, QStringLiteral("Language"));
        QVERIFY(v.found && v.type == REG_DWORD && v.data == 0xfedcba98u);
        const QString nested = testKey + QStringLiteral("\\Deeper\\Still");
        QVERIFY(win.writeUserDword(nested, QStringLiteral("WinPE"), 1));
        QCOMPARE(win.readUserDword(nested, QStringLiteral("WinPE")).data, quint32(1));
        QVERIFY(!win.readUserDword(testKey + QStringLiteral("\\Missing"), QStringLiteral("WinPE")).found);
        QVERIFY(!win.readUserDword(testKey, QStringLiteral("WinPE")).found);

        // A short string value comes back as it is, with its type: judging it is the shell's job.
        const wchar_t one[] = L"1";
        QCOMPARE(RegSetKeyValueW(HKEY_CURRENT_USER, wide(testKey), L"Text", REG_SZ, one, sizeof one),
                 LONG(ERROR_SUCCESS));
        v = win.readUserDword(testKey, QStringLiteral("Text"));
        QVERIFY(v.found && v.type == REG_SZ && v.data == quint32('1'));
    }

    void processCount()
    {
        const QString self = QFileInfo(QCoreApplication::applicationFilePath()).fileName();
        QStringList names;
        QVERIFY(win.processNames(&names));
        QCOMPARE(countNamed(names, self), 1);

        // A second process of the same file name is counted too.
        QTemporaryDir dir;
        const QString flag = dir.filePath(QStringLiteral("stop"));
        QProcess child;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("KELPIE_CHILD_UNTIL"), QDir::toNativeSeparators(flag));
        child.setProcessEnvironment(env);
        child.start(QCoreApplication::applicationFilePath(),
                    {"-platform", "offscreen", "-o", QDir::toNativeSeparators(dir.filePath("child.txt")) + ",txt",
                     "childInstance"});
        QVERIFY(child.waitForStarted(10000));
        const bool seen = QTest::qWaitFor([&] { return win.processNames(&names) && countNamed(names, self) == 2; },
                                          10000);
        QFile(flag).open(QIODevice::WriteOnly);
        QVERIFY(child.waitForFinished(30000));
        QVERIFY2(seen, "the child instance never showed in the snapshot");
    }

    void drives()
    {
        // A drive letter mapped to a folder: by the run script (KELPIE_TEST_DRIVE) or here.
        QTemporaryDir dir;
        const QString given = qEnvironmentVariable("KELPIE_TEST_DRIVE");
        const bool defined = given.isEmpty();
        QChar letter = defined ? QChar() : given.at(0).toUpper();
        for (char c = 'Q'; c <= 'Y' && letter.isNull(); ++c)
            if (!(GetLogicalDrives() & (1u << (c - 'A'))))
                letter = QLatin1Char(c);
        QVERIFY(!letter.isNull());
        const QString device = QString(letter) + QLatin1Char(':');
        if (defined && !DefineDosDeviceW(0, wide(device), wide(QDir::toNativeSeparators(dir.path()))))
            QSKIP("DefineDosDeviceW is refused here and no KELPIE_TEST_DRIVE was given");
        const auto undefine = qScopeGuard([&] {
            if (defined)
                DefineDosDeviceW(DDD_REMOVE_DEFINITION, wide(device), nullptr);
        });
        const quint32 mask = win.logicalDrives();
        QVERIFY(mask & (1u << (letter.unicode() - 'A')));
        if (defined && !win.volumeReady(letter))
            QSKIP("a drive made by DefineDosDeviceW has no volume information here; "
                  "map one with KELPIE_TEST_DRIVE");
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

    void shellExecute()
    {
        QTemporaryDir dir;
        const QString script = dir.filePath(QStringLiteral("write.cmd"));
        const QString out = dir.filePath(QStringLiteral("out.txt"));
        QFile f(script);
        QVERIFY(f.open(QIODevice::WriteOnly)
                && f.write("@echo off\r\necho %~1>\"%~dp0out.tmp\"\r\n"
                           "move /y \"%~dp0out.tmp\" \"%~dp0out.txt\" >nul\r\n"));
        f.close();
        const ShellResult r = win.shellExecute("open", QDir::toNativeSeparators(script), "hello", SW_HIDE);
        QVERIFY2(r.code > 32, qPrintable(QStringLiteral("result %1, error %2").arg(r.code).arg(r.lastError)));
        QVERIFY(QTest::qWaitFor([&] { return QFile::exists(out); }, 20000));
        QFile result(out);
        QVERIFY(result.open(QIODevice::ReadOnly));
        QCOMPARE(result.readAll().trimmed(), QByteArray("hello"));

        const ShellResult missing = win.shellExecute("open", QDir::toNativeSeparators(dir.filePath("absent.exe")),
                                                     QString(), SW_SHOWNORMAL);
        QCOMPARE(missing.code, qintptr(SE_ERR_FNF));
        QCOMPARE(missing.lastError, quint32(ERROR_FILE_NOT_FOUND));
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
            if (e.vkCode == VK_F23)
                events.append(e);
            return e.vkCode == VK_F23;   // swallowed
        }));
        INPUT input[2] = {};
        input[0].type = INPUT_KEYBOARD;
        input[0].ki.wVk = VK_F23;
        input[1] = input[0];
        input[1].ki.dwFlags = KEYEVENTF_KEYUP;
        const bool arrived = SendInput(2, input, sizeof(INPUT)) == 2
            && QTest::qWaitFor([&] { return events.size() >= 2; }, 5000);
        win.removeKeyboardHook();
        win.removeKeyboardHook();   // a second removal is harmless
        if (!arrived)
            QSKIP("injected keys do not reach a low-level hook here");
        QCOMPARE(events.at(0).code, HC_ACTION);
        QVERIFY(events.at(0).flags < 100);            // key down
        QVERIFY(events.at(1).flags & LLKHF_UP);       // key up

        // After removal the handler is no longer called.
        const int before = events.size();
        SendInput(2, input, sizeof(INPUT));
        QTest::qWait(300);
        QCOMPARE(events.size(), before);
    }
};

KELPIE_TEST_MAIN(TestPlatformWin)
#include "tst_platform_win.moc"
