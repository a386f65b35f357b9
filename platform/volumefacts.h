#pragma once
// Raw answers about volumes, disks and shortcut files, for the list of removable volumes, the save
// to a stick and the restore of saved shortcuts. The rules that read them live in settings/.

#include <QByteArray>
#include <QString>
#include <QtGlobal>

// "\\.\PhysicalDriveN" opened for reading and writing and asked, in this order, for its geometry,
// its partition information and its device number; the walk stops at the first failure.
struct PhysicalDriveAnswer {
    bool opened = false;
    bool geometryOk = false;    // IOCTL_DISK_GET_DRIVE_GEOMETRY
    quint32 mediaType = 0;      // DISK_GEOMETRY.MediaType: 11 RemovableMedia, 12 FixedMedia
    bool partitionOk = false;   // IOCTL_DISK_GET_PARTITION_INFO
    bool numberOk = false;      // IOCTL_STORAGE_GET_DEVICE_NUMBER
};

// IOCTL_STORAGE_QUERY_PROPERTY for the standard device property: the STORAGE_DEVICE_DESCRIPTOR as
// the bytes returned into one buffer of 4096 bytes.
struct StorageDescriptorAnswer {
    bool opened = false;
    bool ok = false;
    QByteArray bytes;
};

// What QStorageInfo tells of a drive's root.
struct VolumeSpace {
    bool ready = false;
    QString displayName;   // the volume label, or the root path when it has none
    qint64 bytesFree = 0;
};

// A shortcut loaded through the shell link object.
struct ShortcutAnswer {
    bool loaded = false;
    QString target;            // GetPath, SLGP_SHORTPATH
    QString workingDirectory;  // GetWorkingDirectory
};
