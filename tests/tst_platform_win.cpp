// The Win32 platform against the real system (under Wine in CI). Where Wine has no answer to give,
// the test says so with QSKIP rather than passing.

#include "platform/win/winplatform.h"
#include "testmain.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QUuid>

#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

namespace {

int countNamed(const QStringList &names, const QString &name)
{
    int n = 0;
    for (const QString &s : names)
        n += s.compare(name, Qt::CaseInsensitive) == 0;
    return n;
}

// Waits, pumping Windows messages (the low-level hook is called from the message loop).
bool waitFor(const std::function<bool()> &done, int ms)
{
    QElapsedTimer clock;
    clock.start();
    while (!done()) {
        if (clock.elapsed() > ms)
            return false;
        MSG msg;
        while (PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE)) {
            TranslateMessage(&msg);
            DispatchMessageW(&msg);
        }
        QCoreApplication::processEvents();
        Sleep(20);
    }
    return true;
}

} // namespace

class TestPlatformWin : public QObject {
    Q_OBJECT

private:
    WinPlatform win;
    QString testKey;

private slots:
    void initTestCase()
    {
        testKey = QStringLiteral("Software\\Kelpie Tests\\") + QUuid::createUuid().toString();
    }

    void cleanupTestCase()
    {
        RegDeleteTreeW(HKEY_CURRENT_USER, L"Software\\Kelpie Tests");
    }

    // Not a test of its own: the second instance that processCount starts and then waits for.
    void childInstance()
    {
        const QString flag = qEnvironmentVariable("KELPIE_CHILD_UNTIL");
        if (flag.isEmpty())
            QSKIP("runs only as the child of processCount");
        QElapsedTimer clock;
        clock.start();
        while (!QFile::exists(flag) && clock.elapsed() < 20000)
            Sleep(50);
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
        HKEY key = nullptr;
        QCOMPARE(RegOpenKeyExW(HKEY_CURRENT_USER, wide(testKey), 0, KEY_SET_VALUE, &key), LONG(ERROR_SUCCESS));
        const wchar_t one[] = L"1";
        QCOMPARE(RegSetValueExW(key, L"Text", 0, REG_SZ, reinterpret_cast<const BYTE *>(one), sizeof one),
                 LONG(ERROR_SUCCESS));
        RegCloseKey(key);
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
        QVERIFY(dir.isValid());
        const QString flag = dir.filePath(QStringLiteral("stop"));
        QProcess child;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("KELPIE_CHILD_UNTIL"), QDir::toNativeSeparators(flag));
        child.setProcessEnvironment(env);
        child.start(QCoreApplication::applicationFilePath(),
                    {QStringLiteral("-platform"), QStringLiteral("offscreen"),
                     QStringLiteral("-o"), QDir::toNativeSeparators(dir.filePath(QStringLiteral("child.txt"))) + QStringLiteral(",txt"),
                     QStringLiteral("childInstance")});
        QVERIFY(child.waitForStarted(10000));
        const bool seen = waitFor([&] {
            QStringList now;
            return win.processNames(&now) && countNamed(now, self) == 2;
        }, 10000);
        QFile(flag).open(QIODevice::WriteOnly);
        QVERIFY(child.waitForFinished(30000));
        QVERIFY2(seen, "the child instance never showed in the snapshot");
    }

    void drives()
    {
        // A drive letter mapped to a folder: by the run script (KELPIE_TEST_DRIVE) or here.
        QTemporaryDir dir;
        QVERIFY(dir.isValid());
        QChar letter;
        bool defined = false;
        const QString given = qEnvironmentVariable("KELPIE_TEST_DRIVE");
        if (!given.isEmpty()) {
            letter = given.at(0).toUpper();
        } else {
            const quint32 before = GetLogicalDrives();
            for (char c = 'Q'; c <= 'Y' && letter.isNull(); ++c)
                if (!(before & (1u << (c - 'A'))))
                    letter = QLatin1Char(c);
            QVERIFY(!letter.isNull());
            const QString device = QString(letter) + QLatin1Char(':');
            if (!DefineDosDeviceW(0, wide(device), wide(QDir::toNativeSeparators(dir.path()))))
                QSKIP("DefineDosDeviceW is refused here and no KELPIE_TEST_DRIVE was given");
            defined = true;
        }
        const auto undefine = qScopeGuard([&] {
            if (defined)
                DefineDosDeviceW(DDD_REMOVE_DEFINITION, wide(QString(letter) + QLatin1Char(':')), nullptr);
        });

        const quint32 mask = win.logicalDrives();
        QVERIFY2(mask & (1u << (letter.unicode() - 'A')), qPrintable(QStringLiteral("%1: not among the drives").arg(letter)));
        if (defined && !win.volumeReady(letter))
            QSKIP("a drive made by DefineDosDeviceW has no volume information here; "
                  "map one with KELPIE_TEST_DRIVE");
        QVERIFY(win.volumeReady(letter));

        // A letter that is not there: not ready, and the device cannot be opened.
        QChar absent;
        for (char c = 'Z'; c >= 'D' && absent.isNull(); --c)
            if (!(mask & (1u << (c - 'A'))))
                absent = QLatin1Char(c);
        QVERIFY(!absent.isNull());
        QVERIFY(!win.volumeReady(absent));
        const DeviceNumberAnswer none = win.deviceNumber(absent);
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
        if (!folder.opened)
            QVERIFY(!folder.ok && folder.bytesReturned == 0);
    }

    void shellExecute()
    {
        QTemporaryDir dir;
        QVERIFY(dir.isValid());
        const QString script = dir.filePath(QStringLiteral("write.cmd"));
        const QString out = dir.filePath(QStringLiteral("out.txt"));
        QFile f(script);
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write("@echo off\r\necho %~1>\"%~dp0out.tmp\"\r\nmove /y \"%~dp0out.tmp\" \"%~dp0out.txt\" >nul\r\n");
        f.close();

        const ShellResult r = win.shellExecute(QStringLiteral("open"), QDir::toNativeSeparators(script),
                                               QStringLiteral("hello"), SW_HIDE);
        QVERIFY2(r.code > 32, qPrintable(QStringLiteral("result %1, error %2").arg(r.code).arg(r.lastError)));
        QVERIFY2(waitFor([&] { return QFile::exists(out); }, 20000), "the script never wrote its file");
        QFile result(out);
        QVERIFY(result.open(QIODevice::ReadOnly));
        QCOMPARE(result.readAll().trimmed(), QByteArray("hello"));

        const ShellResult missing = win.shellExecute(QStringLiteral("open"),
            QDir::toNativeSeparators(dir.filePath(QStringLiteral("absent.exe"))), QString(), SW_SHOWNORMAL);
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
        MSG msg = {};
        msg.message = WM_HOTKEY;
        msg.wParam = 3;
        msg.lParam = MAKELPARAM(MOD_CONTROL | MOD_ALT, 'D');
        NativeMessage m = win.decodeNativeMessage(eventType, &msg);
        QVERIFY(m.kind == NativeMessage::HotKey && m.hotKeyId == 3);
        // Only the Windows event types are messages.
        QCOMPARE(win.decodeNativeMessage("xcb_generic_event_t", &msg).kind, NativeMessage::Other);
        QCOMPARE(win.decodeNativeMessage(eventType, nullptr).kind, NativeMessage::Other);

        wchar_t refresh[] = L"Refresh";
        COPYDATASTRUCT cds = {};
        cds.dwData = 99;
        cds.cbData = 2;   // not looked at: the text runs to its zero
        cds.lpData = refresh;
        msg.message = WM_COPYDATA;
        msg.wParam = 1;
        msg.lParam = reinterpret_cast<LPARAM>(&cds);
        m = win.decodeNativeMessage(eventType, &msg);
        QVERIFY(m.kind == NativeMessage::CopyData && m.wParam == 1);
        QCOMPARE(m.text, QStringLiteral("Refresh"));

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

    void displayAndMemory()
    {
        DisplayMode current;
        QVERIFY(win.currentDisplayMode(&current));
        QVERIFY(current.width > 0 && current.height > 0 && current.bitsPerPixel > 0);

        // The walk of the modes ends, and its first entry is a real mode.
        DisplayMode mode;
        QVERIFY(win.displayMode(0, &mode));
        QVERIFY(mode.width > 0 && mode.height > 0);
        int count = 1;
        while (count < 5000 && win.displayMode(count, &mode))
            ++count;
        QVERIFY(count < 5000);
        QVERIFY(!win.displayMode(-1, &mode));

        const MemoryStatus mem = win.memoryStatus();
        QVERIFY(mem.ok && mem.totalPhys >= mem.availPhys && mem.availPhys > 0);
    }

    void workAreaReadAndWrite()
    {
        WorkArea area;
        QVERIFY(win.workArea(&area));
        QVERIFY(area.right > area.left && area.bottom > area.top);

        WorkArea smaller = area;
        smaller.bottom -= 64;
        QVERIFY(win.setWorkArea(smaller));
        WorkArea after;
        QVERIFY(win.workArea(&after));
        const bool taken = after.bottom == smaller.bottom;
        QVERIFY(win.setWorkArea(area));
        if (!taken)
            QSKIP("the work area write is accepted but not kept here");
        QVERIFY(win.workArea(&after));
        QCOMPARE(after.bottom, area.bottom);
    }

    void keyboardLayouts()
    {
        const QList<quint64> layouts = win.keyboardLayouts();
        QVERIFY(!layouts.isEmpty());
        QCOMPARE(win.keyboardLayoutCount(), layouts.size());
        QVERIFY(layouts.contains(quint64(reinterpret_cast<quintptr>(GetKeyboardLayout(0)))));
        QVERIFY(win.foregroundKeyboardLayout() != 0);
        QVERIFY(!win.localeLanguageName(quint32(layouts.first() & 0xffff)).isEmpty());
        // Only the low 16 bits choose the locale.
        QCOMPARE(win.localeLanguageName(0x04090409u), win.localeLanguageName(0x0409u));
        QVERIFY(win.localeLanguageName(0x0409u).contains(QStringLiteral("English")));
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
            if (e.vkCode != VK_F23)
                return false;
            events.append(e);
            return true;   // swallowed
        }));
        INPUT input[2] = {};
        input[0].type = INPUT_KEYBOARD;
        input[0].ki.wVk = VK_F23;
        input[1] = input[0];
        input[1].ki.dwFlags = KEYEVENTF_KEYUP;
        const UINT sent = SendInput(2, input, sizeof(INPUT));
        const bool arrived = sent == 2 && waitFor([&] { return events.size() >= 2; }, 5000);
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
        waitFor([] { return false; }, 300);
        QCOMPARE(events.size(), before);
    }
};

KELPIE_TEST_MAIN(TestPlatformWin)
#include "tst_platform_win.moc"
