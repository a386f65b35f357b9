#pragma once
// The one road from the shell to the operating system. The interface speaks Qt value types and
// small structs only; every rule of the shell (what a value means, when it counts, how it is
// formatted) stays in the subsystem code. One implementation per machine kind: win/ calls
// Win32, sim/ plays a Windows PE machine described by a folder.

#include "platform/shellfacts.h"
#include "platform/volumefacts.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>
#include <QtGlobal>
#include <functional>

#include "platform/netfacts.h"
#include "win32values.h"

class QImage;

// Answer of a registry DWORD read: the call's outcome and what it found.
struct RegValue {
    bool found = false;   // key opened and value read
    quint32 type = 0;     // registry type (4 = REG_DWORD)
    quint32 data = 0;     // the first four bytes of the value
};

// Answer of IOCTL_STORAGE_GET_DEVICE_NUMBER on "\\.\X:".
struct DeviceNumberAnswer {
    bool opened = false;        // CreateFileW succeeded
    bool ok = false;            // DeviceIoControl succeeded
    quint32 bytesReturned = 0;
    quint32 deviceType = 0;
    quint32 deviceNumber = 0;
    quint32 partitionNumber = 0;
};

// A display mode as EnumDisplaySettingsW reports it.
struct DisplayMode {
    int width = 0;
    int height = 0;
    int bitsPerPixel = 0;
    int frequency = 0;
};

struct MemoryStatus {
    bool ok = false;
    quint64 totalPhys = 0;
    quint64 availPhys = 0;
};

// A RECT, as SPI_GETWORKAREA reads and SPI_SETWORKAREA writes it.
struct WorkArea {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;
};

// Answer of the shell execution service.
struct ShellResult {
    qintptr code = 0;     // the HINSTANCE value: above 32 is success
    quint32 lastError = 0;
};

// A native message, decoded into what the shell cares about.
struct NativeMessage {
    enum Kind { Other, HotKey, CopyData };
    Kind kind = Other;
    int hotKeyId = 0;       // HotKey
    quintptr wParam = 0;    // CopyData
    QString text;           // CopyData: lpData read as a zero-terminated UTF-16 string
};

// One event of the low-level keyboard hook.
struct KeyHookEvent {
    int code = 0;        // nCode; 0 is HC_ACTION
    quint32 vkCode = 0;
    quint32 flags = 0;   // KBDLLHOOKSTRUCT flags; 128 is the key-up flag
};

class Platform {
public:
    virtual ~Platform() = default;

    // --- paths: the shell keeps drive paths ("x:/init.log") everywhere ---
    // Host path of a drive path; the identity on Windows.
    virtual QString hostPath(const QString &drivePath) const = 0;
    // Drive path of a host path (listings come back through this); the identity on Windows.
    virtual QString drivePath(const QString &hostPath) const = 0;

    // --- processes ---
    // File names of the running processes (Toolhelp snapshot); false when the snapshot fails.
    virtual bool processNames(QStringList *names) = 0;
    virtual void raisePriority() = 0;   // HIGH_PRIORITY_CLASS
    virtual void sleepMs(int ms) = 0;   // blocking

    // --- registry under HKEY_CURRENT_USER ---
    virtual RegValue readUserDword(const QString &key, const QString &name) = 0;
    // Create or open the key with full access and write a REG_DWORD; false when it cannot.
    virtual bool writeUserDword(const QString &key, const QString &name, quint32 value) = 0;

    // --- network ---
    // The walk over every present device (SetupDiGetClassDevsExW, DIGCF_PRESENT | DIGCF_ALLCLASSES).
    virtual DeviceWalk deviceWalk() = 0;
    // HKEY_LOCAL_MACHINE\<path> opened with KEY_ALL_ACCESS; false when it does not open. Else the
    // answers of RegEnumKeyW from index 0, up to and including the first that is neither 0 nor 234.
    virtual bool machineSubkeys(const QString &path, QList<RegSubkey> *answers) = 0;
    // One value of HKEY_LOCAL_MACHINE\<path> read into a buffer of bufferBytes.
    virtual RegStringRead machineString(const QString &path, const QString &name,
                                        int bufferBytes) = 0;
    // GetNetworkParams (the buffer grown once as told): its result and the DnsServerList chain.
    virtual quint32 networkParams(QStringList *dnsServers) = 0;
    // GetAdaptersInfo (the buffer grown once as told): its result and the chain of entries.
    virtual quint32 adaptersInfo(QList<IpAdapterEntry> *entries) = 0;
    // GetInterfaceInfo (the buffer grown once as told): its result and the table's rows.
    virtual quint32 interfaceInfo(QList<InterfaceRow> *rows) = 0;
    // GetAdapterIndex on the name as the interface table holds it, then GetIfEntry.
    virtual IfEntryFacts interfaceEntry(const QString &adapterName) = 0;
    virtual WorkstationFacts workstationFacts() = 0;   // NetWkstaGetInfo level 102
    virtual FirewallFacts firewallFacts() = 0;         // the firewall manager's current profile

    // --- drives and disks ---
    virtual quint32 logicalDrives() = 0;   // bit 0 is A:
    virtual bool volumeReady(QChar letter) = 0;
    virtual DeviceNumberAnswer deviceNumber(QChar letter) = 0;

    // --- saved: volumes and shortcuts ---
    // CreateFileW on a volume name ("\\.\E:") for FILE_READ_ATTRIBUTES, sharing read, write and
    // delete: whether it opens (the handle is closed again at once).
    virtual bool volumeOpens(const QString &volumeName) = 0;
    // IOCTL_STORAGE_GET_DEVICE_NUMBER on the volume opened for reading and writing.
    virtual DeviceNumberAnswer volumeDeviceNumber(const QString &volumeName) = 0;
    virtual PhysicalDriveAnswer physicalDrive(quint32 number) = 0;
    // The storage property query put to the volume opened for FILE_READ_ATTRIBUTES.
    virtual StorageDescriptorAnswer storageDescriptor(const QString &volumeName) = 0;
    // QStorageInfo of the drive's root.
    virtual VolumeSpace volumeSpace(QChar letter) = 0;
    // A file written for the user: the whole content to a temporary file renamed over the old one,
    // so a failure leaves the old file as it was.
    virtual bool saveFile(const QString &path, const QByteArray &content) = 0;
    virtual bool makeFolder(const QString &path) = 0;   // one level; false when it fails or exists
    virtual bool removeFile(const QString &path) = 0;
    // COM for the shell link object, on the calling (graphical) thread; once, at start-up.
    virtual void prepareShellLinks() = 0;
    // The shell link object (IShellLinkW, IPersistFile) loading and saving a shortcut file.
    virtual ShortcutAnswer readShortcut(const QString &path) = 0;
    virtual bool writeShortcut(const QString &path, const QString &target,
                               const QString &workingDirectory) = 0;

    // --- shell execution (ShellExecuteW with no owner and no directory) ---
    virtual ShellResult shellExecute(const QString &verb, const QString &file,
                                     const QString &parameters, int show) = 0;

    // --- shell objects, extended execution, time zone and local time ---
    // The large icon that SHGetFileInfoW gives for the path by name, with file attributes 0 and
    // SHGFI_ICON | SHGFI_SYSICONINDEX | SHGFI_USEFILEATTRIBUTES, as premultiplied ARGB; a null
    // image when the call returns 0.
    virtual QImage shellIcon(const QString &path) = 0;
    // ShellExecuteExW with the request's fields and no window.
    virtual ShellExecuteExResult shellExecuteEx(const ShellExecuteRequest &request) = 0;
    virtual bool localTime(SystemTime *time) = 0;                      // GetLocalTime
    virtual bool setLocalTime(const SystemTime &time) = 0;             // SetLocalTime
    // GetTimeZoneInformation: its answer (0 unknown, 1 standard, 2 daylight, 0xFFFFFFFF failed).
    virtual quint32 timeZoneInformation(TimeZoneInfo *zone) = 0;
    virtual bool setTimeZoneInformation(const TimeZoneInfo &zone) = 0;

    // --- display, work area, memory ---
    virtual MemoryStatus memoryStatus() = 0;
    virtual bool currentDisplayMode(DisplayMode *mode) = 0;         // ENUM_CURRENT_SETTINGS
    virtual bool displayMode(int index, DisplayMode *mode) = 0;     // false past the last mode
    virtual bool workArea(WorkArea *area) = 0;                       // SPI_GETWORKAREA
    virtual bool setWorkArea(const WorkArea &area) = 0;              // SPI_SETWORKAREA, update + send
    virtual void reloadWallpaper() = 0;                              // SPI_SETDESKWALLPAPER default
    // Logical size of the primary screen where the toolkit's own screen does not tell it (a
    // simulated display); false means: ask the toolkit.
    virtual bool screenSize(int *width, int *height) { Q_UNUSED(width) Q_UNUSED(height) return false; }

    // --- keyboard ---
    virtual quint64 foregroundKeyboardLayout() = 0;                  // HKL of the foreground thread
    virtual QList<quint64> keyboardLayouts() = 0;                    // GetKeyboardLayoutList
    virtual int keyboardLayoutCount() = 0;                           // GetKeyboardLayoutList(0, null)
    virtual QString localeLanguageName(quint32 lcid) = 0;            // LOCALE_SLANGUAGE
    virtual short asyncKeyState(int vk) = 0;

    // --- hot keys, hook and native messages ---
    virtual bool registerHotKey(quintptr window, int id, quint32 modifiers, quint32 vk) = 0;
    virtual void unregisterHotKey(quintptr window, int id) = 0;
    // The handler answers true to swallow the key; otherwise the event goes on down the chain.
    virtual bool installKeyboardHook(std::function<bool(const KeyHookEvent &)> handler) = 0;
    virtual void removeKeyboardHook() = 0;
    // Decodes a message that Qt hands to nativeEvent.
    virtual NativeMessage decodeNativeMessage(const QByteArray &eventType, void *message) = 0;
    // Messages that arrive by a road other than nativeEvent (the simulated machine's inbox).
    virtual void setMessageSink(std::function<void(const NativeMessage &)> sink) = 0;
};

// The platform of the process. Tests install a simulated machine of their own.
Platform &sys();
void setPlatform(Platform *platform);   // takes ownership; the previous one is deleted

// The platform of this process: on Windows the Win32 machine, unless KELPIE_MACHINE names a
// simulated machine folder; elsewhere the folder of KELPIE_MACHINE, or, without it, a fresh
// copy of the demo machine in a temporary folder. Never null.
Platform *createDefaultPlatform();
