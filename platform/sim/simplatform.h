#pragma once
// A Windows PE machine played by a folder: drives/<LETTER>/ are the drives, registry.reg the
// registry (regedit export format), machine.ini the rest, journal.log one line per effect,
// inbox.txt native messages sent from outside. docs/machine.md describes the folder.
// One room a file: simplatform.cpp (folder, journal, machine.ini), simplatform_paths.cpp,
// _registry, _volumes, _display (display and input), _processes (processes and starts), _inbox,
// _network (adapters, IP Helper, workstation, firewall), _leavings (what a started program leaves).

#include "platform/platform.h"
#include "platform/sim/simmachine.h"
#include "platform/sim/simregistry.h"

#include <QHash>
#include <QSet>
#include <memory>

class QFileSystemWatcher;
class QTimer;

class SimPlatform : public Platform {
public:
    explicit SimPlatform(const QString &machineFolder);
    ~SimPlatform() override;

    QString machineFolder() const;
    // Journal lines written so far (tests read them); each is tab-separated, operation first.
    QStringList journal() const;
    // Appends one line to the journal: the fields joined by tabs (tabs and line breaks inside a
    // field become blanks).
    void appendJournal(const QStringList &fields);

    // --- the registry, any hive ("HKEY_LOCAL_MACHINE\system\...", or HKLM\...) ---
    RegData readValue(const QString &key, const QString &name);
    QStringList enumKeys(const QString &key);
    bool keyExists(const QString &key);
    // Writes and saves at once; false when registry.reg cannot be written.
    bool writeString(const QString &key, const QString &name, const QString &value);
    bool writeDword(const QString &key, const QString &name, quint32 value);

    // --- machine.ini, as it stands now ---
    SimMachineFacts facts() const;
    SimVolume volume(QChar letter) const;
    QString firewallState() const;   // "on", "off", "unavailable"

    // --- inbox and keys ---
    // Reads what was appended to inbox.txt since the last poll and delivers it. Called whenever
    // the file or the machine folder changes once a sink or hook is set; tests may call it directly.
    void pollInbox();
    bool hotKeyRegistered(int id) const;
    bool keyboardHookInstalled() const;

    // Platform
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
    ShellResult shellExecute(const QString &verb, const QString &file, const QString &parameters,
                             int show) override;
    MemoryStatus memoryStatus() override;
    bool currentDisplayMode(DisplayMode *mode) override;
    bool displayMode(int index, DisplayMode *mode) override;
    bool workArea(WorkArea *area) override;
    bool setWorkArea(const WorkArea &area) override;
    void reloadWallpaper() override;
    bool screenSize(int *width, int *height) override;
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
    // shell objects, extended execution, time zone and local time (simplatform_shell.cpp)
    QImage shellIcon(const QString &path) override;
    ShellExecuteExResult shellExecuteEx(const ShellExecuteRequest &request) override;
    bool localTime(SystemTime *time) override;
    bool setLocalTime(const SystemTime &time) override;
    quint32 timeZoneInformation(TimeZoneInfo *zone) override;
    bool setTimeZoneInformation(const TimeZoneInfo &zone) override;

    // The kind of file whose icon the shell shows for a name, as the simulated shell tells it:
    // "application", "script", "text", "settings", "registry", "image", "web", "driver",
    // "library", "archive", "disk", or "file" for anything else.
    static QString iconKind(const QString &fileName);

    // The answer of the shell execution service for a file, without journalling it.
    ShellResult startAnswer(const QString &file) const;

    // Identifies one version of a file on disk; equal stamps mean nothing changed, provided the
    // stamp is settled: file systems keep times coarsely, so a change within the same tick as an
    // earlier one can leave the time as it was. What was read within two seconds of its last
    // change is therefore read again.
    struct FileStamp {
        bool exists = false;
        qint64 size = 0;
        qint64 mtimeNs = 0;
        quint64 inode = 0;
        qint64 takenNs = 0;   // when the stamp was taken; not part of the comparison
        bool settled() const { return !exists || takenNs - mtimeNs > 2000000000; }
        bool operator==(const FileStamp &o) const;
        bool operator!=(const FileStamp &o) const { return !(*this == o); }
    };
    static FileStamp stampOf(const QString &path);

private:
    const SimMachineFacts &currentFacts() const;
    SimRegistry &registry();
    bool saveRegistry();
    QString driveFolder(QChar letter) const;
    // The entry of folder named name, or else the first in name order that matches ignoring case.
    QString entryIgnoringCase(const QString &folder, const QString &name) const;
    void deliverInboxLine(const QString &line);
    // Sets keys of one section of machine.ini, keeping every other line as it stands; written
    // through a temporary file and a rename.
    bool writeMachineIni(const QString &section, const QList<QPair<QString, QString>> &values);
    // The drive a drive path lies on (the working directory's for a path without a letter).
    QChar driveOf(const QString &path) const;
    // Whether the shell may write `growth` more bytes on the drive of path; counts them if so.
    bool writable(const QString &path, qint64 growth);
    qint64 freeBytes(QChar letter) const;
    // What a started program leaves behind on the drives, as machine.ini's [start.<name>] says.
    void leaveBehind(const QString &file);
    void startInboxWatch();

    QString m_root;            // absolute, clean
    QString m_drivesPrefix;    // m_root + "/drives/"
    QString m_canonicalDrivesPrefix;

    mutable SimMachineFacts m_facts;
    mutable FileStamp m_factsStamp;
    mutable QByteArray m_factsContent;
    mutable bool m_factsLoaded = false;
    mutable bool m_workAreaSet = false;
    WorkArea m_workArea;

    SimRegistry m_registry;
    FileStamp m_registryStamp;
    bool m_registryLoaded = false;

    struct Listing {
        FileStamp stamp;
        QSet<QString> names;
        QHash<QString, QString> byFoldedName;   // lower-case name -> name on disk
    };
    mutable QHash<QString, Listing> m_listings;

    QStringList m_journal;
    QHash<QString, int> m_startCounts;   // lower-case file name -> starts so far

    // Bytes the shell has written on each drive since machine.ini was last read.
    mutable QHash<QChar, qint64> m_consumed;
    mutable FileStamp m_consumedStamp;

    QHash<int, QPair<quint32, quint32>> m_hotKeys;   // id -> (modifiers, vk)
    std::function<bool(const KeyHookEvent &)> m_hook;
    std::function<void(const NativeMessage &)> m_sink;
    std::unique_ptr<QFileSystemWatcher> m_inboxWatch;
    std::unique_ptr<QTimer> m_inboxTimer;   // polls only where the folder cannot be watched
    qint64 m_inboxOffset = 0;
    QSet<int> m_heldKeys;      // virtual keys held while an inbox key event is delivered
};
