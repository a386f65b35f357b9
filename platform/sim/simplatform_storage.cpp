#include "simplatform.h"
#include "simshared.h"

#include "platform/shelllink/replacefile.h"
#include "platform/shelllink/shelllink.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QtEndian>

using namespace sim;

// --- storage: disks under the volumes, free space, the shell's writes, shortcut files ---

namespace {

// The letter of "\\.\E:" (a trailing "\" allowed); a null character for anything else.
QChar letterOfVolumeName(const QString &name)
{
    const QString n = name.endsWith(QLatin1Char('\\')) ? name.left(name.size() - 1) : name;
    if (n.size() == 6 && n.startsWith(QLatin1String("\\\\.\\")) && n[5] == QLatin1Char(':')
        && isDrivePath(n.mid(4)))
        return n[4].toUpper();
    return QChar();
}

void putU32(QByteArray *b, int at, quint32 v)
{
    qToLittleEndian(v, reinterpret_cast<uchar *>(b->data()) + at);
}

// A STORAGE_DEVICE_DESCRIPTOR as a USB stick or a disk returns it: the 40-byte structure, then
// the vendor, product and revision strings, each zero-terminated.
QByteArray descriptorOf(const SimVolume &v)
{
    QByteArray d(40, '\0');
    QByteArray strings;
    auto add = [&](const QString &text, int field) {
        if (text.isEmpty())
            return;
        putU32(&d, field, quint32(40 + strings.size()));
        strings += text.toLatin1() + '\0';
    };
    add(v.vendor, 12);
    add(v.product, 16);
    add(v.revision, 20);
    d += strings;
    putU32(&d, 0, 40);                        // Version
    putU32(&d, 4, quint32(d.size()));         // Size
    d[10] = v.mediaType == 11 ? 1 : 0;        // RemovableMedia
    putU32(&d, 28, v.mediaType == 11 ? 7 : 11);   // BusType: USB or SATA
    return d;
}

} // namespace

QChar SimPlatform::driveOf(const QString &path) const
{
    QString p = path;
    p.replace(QLatin1Char('\\'), QLatin1Char('/'));
    if (p.startsWith(QLatin1String("//?/")))
        p = p.mid(4);
    if (isDrivePath(p))
        return p[0].toUpper();
    return currentFacts().workingDirectory[0].toUpper();
}

qint64 SimPlatform::freeBytes(QChar letter) const
{
    const SimVolume v = currentFacts().volume(letter);
    if (m_consumedStamp != m_factsStamp) {
        m_consumed.clear();
        m_consumedStamp = m_factsStamp;
    }
    return qMax<qint64>(0, v.freeBytes - m_consumed.value(letter.toUpper()));
}

bool SimPlatform::writable(const QString &path, qint64 growth)
{
    const QChar letter = driveOf(path);
    const SimVolume v = currentFacts().volume(letter);
    if (!v.present || v.readOnly || !QFileInfo(driveFolder(letter)).isDir())
        return false;
    if (growth > 0) {
        if (growth > freeBytes(letter))
            return false;
        m_consumed[letter.toUpper()] += growth;
    }
    return true;
}

bool SimPlatform::volumeOpens(const QString &volumeName)
{
    const QChar letter = letterOfVolumeName(volumeName);
    if (letter.isNull() || !QFileInfo(driveFolder(letter)).isDir())
        return false;
    return volume(letter).opens;
}

DeviceNumberAnswer SimPlatform::volumeDeviceNumber(const QString &volumeName)
{
    const QChar letter = letterOfVolumeName(volumeName);
    if (letter.isNull())
        return DeviceNumberAnswer();
    return deviceNumber(letter);
}

PhysicalDriveAnswer SimPlatform::physicalDrive(quint32 number)
{
    PhysicalDriveAnswer a;
    // A copy: looking at a drive folder may read machine.ini anew.
    const QHash<QChar, SimVolume> volumes = currentFacts().volumes;
    for (auto it = volumes.constBegin(); it != volumes.constEnd(); ++it) {
        const SimVolume &v = it.value();
        if (!v.present || !v.answersDeviceNumber || v.diskNumber != number
            || !QFileInfo(driveFolder(it.key())).isDir())
            continue;
        a.opened = true;
        a.geometryOk = v.answersGeometry;
        if (!a.geometryOk)
            return a;
        a.mediaType = v.mediaType;
        a.partitionOk = v.answersPartition;
        if (!a.partitionOk)
            return a;
        a.numberOk = true;
        return a;
    }
    return a;
}

StorageDescriptorAnswer SimPlatform::storageDescriptor(const QString &volumeName)
{
    StorageDescriptorAnswer a;
    const QChar letter = letterOfVolumeName(volumeName);
    if (letter.isNull() || !QFileInfo(driveFolder(letter)).isDir())
        return a;
    const SimVolume v = volume(letter);
    a.opened = v.opens;
    // A folder-backed drive has no device to describe.
    if (!a.opened || !v.described || !v.answersDescriptor)
        return a;
    a.ok = true;
    a.bytes = descriptorOf(v);
    return a;
}

VolumeSpace SimPlatform::volumeSpace(QChar letter)
{
    VolumeSpace s;
    s.ready = volumeReady(letter) && volume(letter).present;
    if (!s.ready)
        return s;
    const QString label = volume(letter).label;
    s.displayName = label.isEmpty() ? QString(letter.toUpper()) + QStringLiteral(":/") : label;
    s.bytesFree = freeBytes(letter);
    return s;
}

bool SimPlatform::saveFile(const QString &path, const QByteArray &content)
{
    const QString host = hostPath(path);
    const QFileInfo before(host);
    // The temporary file needs room for the whole content before the old file goes.
    if (before.isDir() || !writable(path, content.size()))
        return false;
    const qint64 growth = content.size() - (before.isFile() ? before.size() : 0);
    m_consumed[driveOf(path)] += growth - content.size();
    if (!replaceFileContent(host, content)) {
        m_consumed[driveOf(path)] -= growth;
        return false;
    }
    appendJournal({QStringLiteral("write"), path, QString::number(content.size())});
    return true;
}

bool SimPlatform::makeFolder(const QString &path)
{
    if (!writable(path, 0))
        return false;
    const QString host = hostPath(path);
    if (!QDir().mkdir(host))
        return false;
    appendJournal({QStringLiteral("mkdir"), path});
    return true;
}

bool SimPlatform::removeFile(const QString &path)
{
    if (!writable(path, 0))
        return false;
    const QString host = hostPath(path);
    const QFileInfo before(host);
    if (before.isDir() || !QFile::remove(host))
        return false;
    m_consumed[driveOf(path)] -= before.size();
    appendJournal({QStringLiteral("remove"), path});
    return true;
}

void SimPlatform::prepareShellLinks()
{
    appendJournal({QStringLiteral("com"), QStringLiteral("apartment")});
}

ShortcutAnswer SimPlatform::readShortcut(const QString &path)
{
    ShortcutAnswer a;
    shelllink::Link link;
    if (!shelllink::readFile(hostPath(path), &link))
        return a;
    a.loaded = true;
    a.target = link.target;
    a.workingDirectory = link.workingDirectory;
    return a;
}

bool SimPlatform::writeShortcut(const QString &path, const QString &target,
                                const QString &workingDirectory)
{
    shelllink::Link link;
    if (!shelllink::readFile(hostPath(path), &link))
        return false;
    shelllink::setTarget(&link, target);
    link.workingDirectory = workingDirectory;
    if (!saveFile(path, shelllink::write(link)))
        return false;
    appendJournal({QStringLiteral("shortcut"), path, target, workingDirectory});
    return true;
}
