#include "volumelist.h"

#include "my_shell1/globals.h"
#include "platform/platform.h"
#include "settings/settingsfiles.h"

int queryVolume(const QString &volumeName, QString *deviceName)
{
    QString name = volumeName;
    if (name.endsWith(QLatin1Char('\\')))
        name.chop(1);
    const DeviceNumberAnswer number = sys().volumeDeviceNumber(name);
    if (!number.opened || !number.ok)
        return 0;
    // The device type is not looked at: a CD drive numbered 0 is judged by physical drive 0.
    const PhysicalDriveAnswer drive = sys().physicalDrive(number.deviceNumber);
    if (!drive.opened || !drive.geometryOk || !drive.partitionOk || !drive.numberOk)
        return 0;
    const StorageDescriptorAnswer descriptor = sys().storageDescriptor(volumeName);
    if (descriptor.opened && descriptor.ok && deviceName)
        *deviceName = deviceNameOf(parseStorageDescriptor(descriptor.bytes));
    return int(drive.mediaType);
}

QList<RemovableVolume> removableVolumes()
{
    QList<RemovableVolume> rows;
    for (const QChar letter : driveLetters(sys().logicalDrives())) {
        const VolumeSpace space = sys().volumeSpace(letter);
        if (!space.ready)
            continue;
        const QString volumeName = QStringLiteral("\\\\.\\%1:").arg(letter);
        if (!sys().volumeOpens(volumeName))
            continue;
        QString deviceName;
        if (queryVolume(volumeName, &deviceName) != removableMedia)
            continue;
        const QString label = space.displayName.isEmpty()
                                  ? QString()
                                  : QStringLiteral("(%1) ").arg(space.displayName);
        RemovableVolume row;
        row.letter = letter;
        row.description = QStringLiteral("%1: %2on %3").arg(letter).arg(label, deviceName);
        row.freeSpace = freeSpaceText(space.bytesFree);
        rows.append(row);
    }
    return rows;
}

QStringList listRemovableVolumes()
{
    QStringList letters;
    for (const RemovableVolume &v : removableVolumes())
        letters.append(v.letter);
    return letters;
}
