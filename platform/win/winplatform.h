#pragma once
// The Win32 machine: each operation is the documented call with its documented arguments, and
// every handle it takes is released before it returns. Raw answers only; the shell's rules
// (which type counts, which size is right) stay with the callers.

#include "platform/platform.h"

// A QString as the wide string the W functions take; valid while s lives.
inline const wchar_t *wide(const QString &s)
{
    return reinterpret_cast<const wchar_t *>(s.utf16());
}

// IOCTL_STORAGE_GET_DEVICE_NUMBER on a device the caller opened (a HANDLE, INVALID_HANDLE_VALUE
// when the open failed); the handle is closed here.
DeviceNumberAnswer askDeviceNumber(void *device);

class WinPlatform : public Platform {
public:
    WinPlatform() = default;
    ~WinPlatform() override;

    QString hostPath(const QString &drivePath) const override;
    QString drivePath(const QString &hostPath) const override;

    bool processNames(QStringList *names) override;
    void raisePriority() override;
    void sleepMs(int ms) override;

    RegValue readUserDword(const QString &key, const QString &name) override;
    bool writeUserDword(const QString &key, const QString &name, quint32 value) override;

    DeviceWalk deviceWalk() override;
    bool machineSubkeys(const QString &path, QList<RegSubkey> *answers) override;
    RegStringRead machineString(const QString &path, const QString &name, int bufferBytes) override;
    quint32 networkParams(QStringList *dnsServers) override;
    quint32 adaptersInfo(QList<IpAdapterEntry> *entries) override;
    quint32 interfaceInfo(QList<InterfaceRow> *rows) override;
    IfEntryFacts interfaceEntry(const QString &adapterName) override;
    WorkstationFacts workstationFacts() override;
    FirewallFacts firewallFacts() override;

    quint32 logicalDrives() override;
    bool volumeReady(QChar letter) override;
    DeviceNumberAnswer deviceNumber(QChar letter) override;

    // win_volumes.cpp
    bool volumeOpens(const QString &volumeName) override;
    DeviceNumberAnswer volumeDeviceNumber(const QString &volumeName) override;
    PhysicalDriveAnswer physicalDrive(quint32 number) override;
    StorageDescriptorAnswer storageDescriptor(const QString &volumeName) override;
    VolumeSpace volumeSpace(QChar letter) override;
    bool saveFile(const QString &path, const QByteArray &content) override;
    bool makeFolder(const QString &path) override;
    bool removeFile(const QString &path) override;
    void prepareShellLinks() override;
    ShortcutAnswer readShortcut(const QString &path) override;
    bool writeShortcut(const QString &path, const QString &target,
                       const QString &workingDirectory) override;

    ShellResult shellExecute(const QString &verb, const QString &file,
                             const QString &parameters, int show) override;

    MemoryStatus memoryStatus() override;
    bool currentDisplayMode(DisplayMode *mode) override;
    bool displayMode(int index, DisplayMode *mode) override;
    bool workArea(WorkArea *area) override;
    bool setWorkArea(const WorkArea &area) override;
    void reloadWallpaper() override;

    quint64 foregroundKeyboardLayout() override;
    QList<quint64> keyboardLayouts() override;
    int keyboardLayoutCount() override;
    QString localeLanguageName(quint32 lcid) override;
    short asyncKeyState(int vk) override;

    bool registerHotKey(quintptr window, int id, quint32 modifiers, quint32 vk) override;
    void unregisterHotKey(quintptr window, int id) override;
    bool installKeyboardHook(std::function<bool(const KeyHookEvent &)> handler) override;
    void removeKeyboardHook() override;
    NativeMessage decodeNativeMessage(const QByteArray &eventType, void *message) override;
    void setMessageSink(std::function<void(const NativeMessage &)> sink) override;

    // shell objects, extended execution, time zone and local time (win_shell.cpp)
    QImage shellIcon(const QString &path) override;
    ShellExecuteExResult shellExecuteEx(const ShellExecuteRequest &request) override;
    bool localTime(SystemTime *time) override;
    bool setLocalTime(const SystemTime &time) override;
    quint32 timeZoneInformation(TimeZoneInfo *zone) override;
    bool setTimeZoneInformation(const TimeZoneInfo &zone) override;

private:
    // Kept only so the interface is honoured: on Windows every message arrives via nativeEvent.
    std::function<void(const NativeMessage &)> m_sink;
};
