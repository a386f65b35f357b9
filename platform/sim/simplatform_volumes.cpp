#include "simplatform.h"
#include "simshared.h"

#include <QDir>
#include <QFileInfo>

using namespace sim;

// --- drives ---

quint32 SimPlatform::logicalDrives()
{
    quint32 mask = 0;
    const QStringList entries = QDir(m_root + QStringLiteral("/drives")).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString &e : entries) {
        if (e.size() != 1)
            continue;
        const ushort c = e[0].toUpper().unicode();
        if (c >= 'A' && c <= 'Z' && currentFacts().volume(e[0]).present)
            mask |= 1u << (c - 'A');
    }
    return mask;
}

bool SimPlatform::volumeReady(QChar letter)
{
    if (!QFileInfo(driveFolder(letter)).isDir())
        return false;
    return volume(letter).ready;
}

DeviceNumberAnswer SimPlatform::deviceNumber(QChar letter)
{
    DeviceNumberAnswer a;
    if (!QFileInfo(driveFolder(letter)).isDir())
        return a;   // no such volume: the open fails
    const SimVolume v = volume(letter);
    if (!v.described) {
        a.opened = true;   // a folder-backed drive opens but has no device behind it
        return a;
    }
    a.opened = v.opens;
    if (!v.opens || !v.answersDeviceNumber)
        return a;
    a.ok = true;
    a.bytesReturned = win32::storageDeviceNumberSize;
    a.deviceType = v.deviceType;
    a.deviceNumber = v.diskNumber;
    a.partitionNumber = v.partitionNumber;
    return a;
}
