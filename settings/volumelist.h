#pragma once
// The volumes a user can carry away: those whose physical disk reports removable media. The bus
// is never looked at.

#include <QList>
#include <QString>
#include <QStringList>

// MEDIA_TYPE RemovableMedia: the only answer that makes a volume a candidate.
const int removableMedia = 11;

// The media type of the disk under a volume ("\\.\E:", a trailing "\" allowed), 0 when any step
// fails; deviceName receives the device's vendor and product when the volume describes itself.
int queryVolume(const QString &volumeName, QString *deviceName);

// One row of the Save dialog's volume list.
struct RemovableVolume {
    QString letter;        // one character
    QString description;   // "E: (KELPIE) on ACME FLASH DRIVE"
    QString freeSpace;     // "7 GB"
};

// The removable volumes in drive order, with their rows.
QList<RemovableVolume> removableVolumes();
// Their letters alone.
QStringList listRemovableVolumes();
