#pragma once
// The facts of machine.ini: an INI text of [sections] with key=value lines. Section and key
// names ignore case; values are trimmed, lists are comma-separated. Every fact has a default,
// so a missing key, section or file still gives a plausible machine.

#include "platform/platform.h"

#include <QHash>
#include <QMap>

// What the machine knows of one drive letter ([volume.E]).
struct SimVolume {
    bool described = false;      // the file has a section for this letter
    bool ready = true;
    QString label;
    quint32 mediaType = 12;      // MEDIA_TYPE: 11 RemovableMedia, 12 FixedMedia
    QString vendor;
    QString product;
    bool opens = true;           // CreateFileW on "\\.\E:" succeeds
    bool answersDeviceNumber = false;
    quint32 deviceType = win32::fileDeviceDisk;
    quint32 diskNumber = 0;
    quint32 partitionNumber = 1;
    // The stick and its disk, for the list of removable volumes and the save to it.
    bool present = true;         // 0: the volume has vanished (no letter, nothing reachable)
    bool readOnly = false;       // writes, new folders and deletions fail
    qint64 freeBytes = 2147483648LL;   // what QStorageInfo reports; writes that need more fail
    bool answersGeometry = true;       // the physical disk's IOCTLs
    bool answersPartition = true;
    bool answersDescriptor = true;     // the storage property query
    QString revision;
};

struct SimMachineFacts {
    MemoryStatus memory;
    DisplayMode currentMode;
    // The logical screen, when machine.ini gives it; otherwise the toolkit's screen counts.
    bool screenKnown = false;
    int screenWidth = 0;
    int screenHeight = 0;
    QList<DisplayMode> modes;
    QList<quint64> layouts;
    quint64 foregroundLayout = 0;
    bool snapshotOk = true;
    QStringList processes;
    QString workingDirectory;    // a drive path, "X:/Program Files/kelpie"
    QString firewall;            // "on", "off" or "unavailable"
    QHash<QChar, SimVolume> volumes;   // by upper-case letter
    // Every section (lower case) -> key (lower case) -> value, for facts read later.
    QMap<QString, QMap<QString, QString>> raw;

    // Reads the INI text; what is missing takes its default.
    static SimMachineFacts fromIni(const QByteArray &content);
    static bool parseMode(const QString &text, DisplayMode *mode);   // "1024x768x32@60"
    static QString modeText(const DisplayMode &mode);

    QString value(const QString &section, const QString &key,
                  const QString &fallback = QString()) const;
    // A yes/no fact (1/0, true/false, yes/no, on/off); fallback when missing or unreadable.
    bool flag(const QString &section, const QString &key, bool fallback) const;
    SimVolume volume(QChar letter) const;
};
