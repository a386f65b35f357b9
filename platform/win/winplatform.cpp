#include "winplatform.h"

#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>
#include <shellapi.h>
#include <tlhelp32.h>
#include <winioctl.h>

// The numbers the rest of the shell and the simulated machine use in place of these headers.
static_assert(win32::modAlt == MOD_ALT && win32::modControl == MOD_CONTROL
              && win32::modShift == MOD_SHIFT && win32::modWin == MOD_WIN, "hot key modifiers");
static_assert(win32::vkShift == VK_SHIFT && win32::vkControl == VK_CONTROL && win32::vkMenu == VK_MENU
              && win32::vkDelete == VK_DELETE && win32::vkD == 'D' && win32::vkLeftWin == VK_LWIN
              && win32::vkLShift == VK_LSHIFT && win32::vkLControl == VK_LCONTROL
              && win32::vkLMenu == VK_LMENU, "virtual keys");
static_assert(win32::hcAction == HC_ACTION && win32::llkhfUp == LLKHF_UP, "keyboard hook");
static_assert(win32::regNone == REG_NONE && win32::regSz == REG_SZ && win32::regExpandSz == REG_EXPAND_SZ
              && win32::regBinary == REG_BINARY && win32::regDword == REG_DWORD
              && win32::regMultiSz == REG_MULTI_SZ && win32::regQword == REG_QWORD, "registry types");
static_assert(win32::fileDeviceDisk == FILE_DEVICE_DISK
              && win32::storageDeviceNumberSize == sizeof(STORAGE_DEVICE_NUMBER), "device answers");
static_assert(win32::seErrFileNotFound == SE_ERR_FNF && win32::seErrPathNotFound == SE_ERR_PNF,
              "shell execution errors");

namespace {

// The low-level hook calls a plain function, so the handler and the hook handle live here. The
// hook is process-wide by nature; one is enough for the shell.
HHOOK g_hook = nullptr;
std::function<bool(const KeyHookEvent &)> g_hookHandler;

LRESULT CALLBACK keyboardProc(int nCode, WPARAM wParam, LPARAM lParam)
{
    if (g_hookHandler && lParam) {
        const auto *info = reinterpret_cast<const KBDLLHOOKSTRUCT *>(lParam);
        KeyHookEvent event;
        event.code = nCode;
        event.vkCode = info->vkCode;
        event.flags = info->flags;
        // A copy, so that a handler that removes the hook does not destroy itself while running.
        const auto handler = g_hookHandler;
        if (handler(event))
            return 1;
    }
    return CallNextHookEx(nullptr, nCode, wParam, lParam);
}

bool readMode(DWORD index, DisplayMode *mode)
{
    DEVMODEW dm;
    ZeroMemory(&dm, sizeof dm);
    dm.dmSize = 220;
    dm.dmDriverExtra = 0;
    if (!EnumDisplaySettingsW(nullptr, index, &dm))
        return false;
    if (mode) {
        mode->width = int(dm.dmPelsWidth);
        mode->height = int(dm.dmPelsHeight);
        mode->bitsPerPixel = int(dm.dmBitsPerPel);
        mode->frequency = int(dm.dmDisplayFrequency);
    }
    return true;
}

} // namespace

WinPlatform::~WinPlatform()
{
    removeKeyboardHook();
}

QString WinPlatform::hostPath(const QString &drivePath) const
{
    return drivePath;
}

QString WinPlatform::drivePath(const QString &hostPath) const
{
    return hostPath;
}

bool WinPlatform::processNames(QStringList *names)
{
    HANDLE snapshot = CreateToolhelp32Snapshot(15, 0);
    if (snapshot == INVALID_HANDLE_VALUE)
        return false;
    PROCESSENTRY32W entry;
    ZeroMemory(&entry, sizeof entry);
    entry.dwSize = sizeof entry;
    if (Process32FirstW(snapshot, &entry)) {
        do {
            if (names)
                names->append(QString::fromWCharArray(entry.szExeFile));
        } while (Process32NextW(snapshot, &entry));
    }
    CloseHandle(snapshot);
    return true;
}

void WinPlatform::raisePriority()
{
    SetPriorityClass(GetCurrentProcess(), HIGH_PRIORITY_CLASS);
}

void WinPlatform::sleepMs(int ms)
{
    Sleep(DWORD(ms < 0 ? 0 : ms));
}

RegValue WinPlatform::readUserDword(const QString &key, const QString &name)
{
    RegValue answer;
    HKEY handle = nullptr;
    if (RegOpenKeyExW(HKEY_CURRENT_USER, wide(key), 0, KEY_QUERY_VALUE, &handle) != ERROR_SUCCESS)
        return answer;
    DWORD type = 0;
    DWORD data = 0;
    DWORD size = sizeof data;
    const LSTATUS status = RegQueryValueExW(handle, wide(name), nullptr, &type,
                                            reinterpret_cast<BYTE *>(&data), &size);
    RegCloseKey(handle);
    if (status != ERROR_SUCCESS)
        return answer;
    answer.found = true;
    answer.type = type;
    answer.data = data;
    return answer;
}

bool WinPlatform::writeUserDword(const QString &key, const QString &name, quint32 value)
{
    HKEY handle = nullptr;
    if (RegCreateKeyExW(HKEY_CURRENT_USER, wide(key), 0, nullptr, REG_OPTION_NON_VOLATILE,
                        KEY_ALL_ACCESS, nullptr, &handle, nullptr) != ERROR_SUCCESS)
        return false;
    const DWORD data = value;
    const LSTATUS status = RegSetValueExW(handle, wide(name), 0, REG_DWORD,
                                          reinterpret_cast<const BYTE *>(&data), sizeof data);
    RegCloseKey(handle);
    return status == ERROR_SUCCESS;
}

quint32 WinPlatform::logicalDrives()
{
    return GetLogicalDrives();
}

bool WinPlatform::volumeReady(QChar letter)
{
    const QString root = QString(letter.toUpper()) + QStringLiteral(":\\");
    // An empty card reader must not put up the system's "insert a disk" box.
    DWORD oldMode = 0;
    SetThreadErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX, &oldMode);
    wchar_t label[MAX_PATH + 1] = {};
    wchar_t fileSystem[MAX_PATH + 1] = {};
    DWORD serial = 0, maxComponent = 0, fsFlags = 0;
    const BOOL ok = GetVolumeInformationW(wide(root), label, MAX_PATH + 1, &serial, &maxComponent,
                                          &fsFlags, fileSystem, MAX_PATH + 1);
    SetThreadErrorMode(oldMode, nullptr);
    return ok != FALSE;
}

DeviceNumberAnswer askDeviceNumber(void *device)
{
    DeviceNumberAnswer answer;
    if (device == INVALID_HANDLE_VALUE)
        return answer;
    answer.opened = true;
    STORAGE_DEVICE_NUMBER number;
    ZeroMemory(&number, sizeof number);
    DWORD bytes = 0;
    answer.ok = DeviceIoControl(device, IOCTL_STORAGE_GET_DEVICE_NUMBER, nullptr, 0, &number,
                                sizeof number, &bytes, nullptr) != FALSE;
    CloseHandle(device);
    answer.bytesReturned = bytes;
    answer.deviceType = number.DeviceType;
    answer.deviceNumber = number.DeviceNumber;
    answer.partitionNumber = number.PartitionNumber;
    return answer;
}

DeviceNumberAnswer WinPlatform::deviceNumber(QChar letter)
{
    const QString path = QStringLiteral("\\\\.\\") + letter + QLatin1Char(':');
    return askDeviceNumber(CreateFileW(wide(path), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                       nullptr, OPEN_EXISTING, 0, nullptr));
}

ShellResult WinPlatform::shellExecute(const QString &verb, const QString &file,
                                      const QString &parameters, int show)
{
    // Empty parameters go as null: the service treats null and "" alike, and the callers cannot
    // tell the two apart anyway.
    const HINSTANCE result = ShellExecuteW(nullptr, verb.isEmpty() ? nullptr : wide(verb),
                                           wide(file),
                                           parameters.isEmpty() ? nullptr : wide(parameters),
                                           nullptr, show);
    ShellResult answer;
    answer.lastError = GetLastError();
    answer.code = reinterpret_cast<qintptr>(result);
    return answer;
}

MemoryStatus WinPlatform::memoryStatus()
{
    MemoryStatus answer;
    MEMORYSTATUSEX status;
    ZeroMemory(&status, sizeof status);
    status.dwLength = sizeof status;
    if (!GlobalMemoryStatusEx(&status))
        return answer;
    answer.ok = true;
    answer.totalPhys = status.ullTotalPhys;
    answer.availPhys = status.ullAvailPhys;
    return answer;
}

bool WinPlatform::currentDisplayMode(DisplayMode *mode)
{
    return readMode(ENUM_CURRENT_SETTINGS, mode);
}

bool WinPlatform::displayMode(int index, DisplayMode *mode)
{
    if (index < 0)
        return false;
    return readMode(DWORD(index), mode);
}

bool WinPlatform::workArea(WorkArea *area)
{
    RECT rect = {0, 0, 0, 0};
    if (!SystemParametersInfoW(SPI_GETWORKAREA, 0, &rect, 0))
        return false;
    if (area) {
        area->left = rect.left;
        area->top = rect.top;
        area->right = rect.right;
        area->bottom = rect.bottom;
    }
    return true;
}

bool WinPlatform::setWorkArea(const WorkArea &area)
{
    RECT rect = {area.left, area.top, area.right, area.bottom};
    return SystemParametersInfoW(SPI_SETWORKAREA, 0, &rect,
                                 SPIF_UPDATEINIFILE | SPIF_SENDCHANGE) != FALSE;
}

void WinPlatform::reloadWallpaper()
{
    SystemParametersInfoW(SPI_SETDESKWALLPAPER, 0, const_cast<wchar_t *>(SETWALLPAPER_DEFAULT),
                          SPIF_SENDCHANGE);
}

quint64 WinPlatform::foregroundKeyboardLayout()
{
    const HWND window = GetForegroundWindow();
    const DWORD thread = GetWindowThreadProcessId(window, nullptr);
    return quint64(reinterpret_cast<quintptr>(GetKeyboardLayout(thread)));
}

int WinPlatform::keyboardLayoutCount()
{
    return GetKeyboardLayoutList(0, nullptr);
}

QList<quint64> WinPlatform::keyboardLayouts()
{
    QList<quint64> layouts;
    const int count = GetKeyboardLayoutList(0, nullptr);
    if (count <= 0)
        return layouts;
    auto *buffer = static_cast<HKL *>(LocalAlloc(LPTR, sizeof(HKL) * size_t(count)));
    if (!buffer)
        return layouts;
    const int got = GetKeyboardLayoutList(count, buffer);
    for (int i = 0; i < got; ++i)
        layouts.append(quint64(reinterpret_cast<quintptr>(buffer[i])));
    LocalFree(buffer);
    return layouts;
}

QString WinPlatform::localeLanguageName(quint32 lcid)
{
    wchar_t buffer[512] = {};
    if (GetLocaleInfoW(LCID(lcid & 0xffff), LOCALE_SLANGUAGE, buffer, 512) <= 0)
        return QString();
    buffer[511] = 0;
    return QString::fromWCharArray(buffer);
}

short WinPlatform::asyncKeyState(int vk)
{
    return GetAsyncKeyState(vk);
}

bool WinPlatform::registerHotKey(quintptr window, int id, quint32 modifiers, quint32 vk)
{
    return RegisterHotKey(reinterpret_cast<HWND>(window), id, modifiers, vk) != FALSE;
}

void WinPlatform::unregisterHotKey(quintptr window, int id)
{
    UnregisterHotKey(reinterpret_cast<HWND>(window), id);
}

bool WinPlatform::installKeyboardHook(std::function<bool(const KeyHookEvent &)> handler)
{
    removeKeyboardHook();
    g_hookHandler = std::move(handler);
    g_hook = SetWindowsHookExW(WH_KEYBOARD_LL, keyboardProc, nullptr, 0);
    if (!g_hook) {
        g_hookHandler = nullptr;
        return false;
    }
    return true;
}

void WinPlatform::removeKeyboardHook()
{
    if (g_hook)
        UnhookWindowsHookEx(g_hook);
    g_hook = nullptr;
    g_hookHandler = nullptr;
}

NativeMessage WinPlatform::decodeNativeMessage(const QByteArray &eventType, void *message)
{
    NativeMessage decoded;
    if (!message)
        return decoded;
    if (eventType != "windows_generic_MSG" && eventType != "windows_dispatcher_MSG")
        return decoded;
    const MSG *msg = static_cast<const MSG *>(message);
    if (msg->message == WM_HOTKEY) {
        decoded.kind = NativeMessage::HotKey;
        decoded.hotKeyId = int(msg->wParam);
    } else if (msg->message == WM_COPYDATA) {
        decoded.kind = NativeMessage::CopyData;
        decoded.wParam = quintptr(msg->wParam);
        const auto *data = reinterpret_cast<const COPYDATASTRUCT *>(msg->lParam);
        if (data && data->lpData)
            decoded.text = QString::fromWCharArray(static_cast<const wchar_t *>(data->lpData));
    }
    return decoded;
}

void WinPlatform::setMessageSink(std::function<void(const NativeMessage &)> sink)
{
    m_sink = std::move(sink);
}
