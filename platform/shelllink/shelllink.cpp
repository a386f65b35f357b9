#include "shelllink.h"

#include "replacefile.h"

#include <QFile>
#include <QTextCodec>
#include <QtEndian>

namespace shelllink {

namespace {

const int headerSize = 0x4C;
const char linkClsid[16] = {'\x01', '\x14', '\x02', '\x00', '\x00', '\x00', '\x00', '\x00',
                            '\xC0', '\x00', '\x00', '\x00', '\x00', '\x00', '\x00', '\x46'};

const quint32 environmentBlock = 0xA0000001;
const quint32 trackerBlock = 0xA0000003;
const quint32 darwinBlock = 0xA0000006;
const quint32 iconEnvironmentBlock = 0xA0000007;
const quint32 specialFolderBlock = 0xA0000005;
const quint32 propertyStoreBlock = 0xA0000009;
const quint32 knownFolderBlock = 0xA000000B;
const quint32 idListBlock = 0xA000000C;
const quint32 hasDarwinId = 0x1000;
const quint32 hasExpIcon = 0x4000;

const quint32 structureFlags = HasLinkTargetIDList | HasLinkInfo | HasName | HasRelativePath
                               | HasWorkingDir | HasArguments | HasIconLocation | IsUnicode
                               | ForceNoLinkInfo | HasExpString | hasDarwinId | hasExpIcon;

// ANSI strings of a shortcut are in the code page of the machine that wrote it; Western
// European is the usual one and decodes every byte.
QTextCodec *ansiCodec()
{
    static QTextCodec *codec = QTextCodec::codecForName("Windows-1252");
    return codec;
}

QString fromAnsi(const QByteArray &bytes)
{
    return ansiCodec() ? ansiCodec()->toUnicode(bytes) : QString::fromLatin1(bytes);
}

QByteArray toAnsi(const QString &text)
{
    return ansiCodec() ? ansiCodec()->fromUnicode(text) : text.toLatin1();
}

// Reads little-endian values inside [0, end) of data; any read past the end sets failed.
struct Cursor {
    const QByteArray &data;
    int pos = 0;
    int end = 0;
    bool failed = false;

    Cursor(const QByteArray &d, int start, int stop) : data(d), pos(start), end(stop) {}

    bool has(int n) const { return n >= 0 && pos <= end && end - pos >= n; }
    const uchar *take(int n)
    {
        if (failed || !has(n)) {
            failed = true;
            return nullptr;
        }
        const uchar *p = reinterpret_cast<const uchar *>(data.constData()) + pos;
        pos += n;
        return p;
    }
    quint16 u16()
    {
        const uchar *p = take(2);
        return p ? qFromLittleEndian<quint16>(p) : 0;
    }
    quint32 u32()
    {
        const uchar *p = take(4);
        return p ? qFromLittleEndian<quint32>(p) : 0;
    }
    quint64 u64()
    {
        const uchar *p = take(8);
        return p ? qFromLittleEndian<quint64>(p) : 0;
    }
};

quint32 u32At(const QByteArray &data, int at)
{
    return qFromLittleEndian<quint32>(reinterpret_cast<const uchar *>(data.constData()) + at);
}

// A zero-terminated ANSI string at `at` inside [0, end); empty when it runs past the end.
QString ansiAt(const QByteArray &data, int at, int end)
{
    if (at < 0 || at >= end)
        return QString();
    const int zero = data.indexOf('\0', at);
    if (zero < 0 || zero >= end)
        return QString();
    return fromAnsi(data.mid(at, zero - at));
}

// A zero-terminated UTF-16 string at `at` inside [0, end).
QString unicodeAt(const QByteArray &data, int at, int end)
{
    if (at < 0 || at >= end)
        return QString();
    QString out;
    for (int p = at; p + 1 < end; p += 2) {
        const ushort c = qFromLittleEndian<quint16>(reinterpret_cast<const uchar *>(data.constData()) + p);
        if (c == 0)
            return out;
        out.append(QChar(c));
    }
    return QString();   // no terminator inside the structure
}

QString joinPath(const QString &base, const QString &suffix)
{
    if (suffix.isEmpty() || base.isEmpty() || base.endsWith(QLatin1Char('\\')))
        return base + suffix;
    return base + QLatin1Char('\\') + suffix;
}

// The path of an item ID list made of a drive item and file system items; empty for anything
// else (a network place, a virtual folder).
QString pathOfIdList(const QByteArray &data, int start, int end)
{
    QString path;
    int pos = start;
    while (pos + 2 <= end) {
        const int size = qFromLittleEndian<quint16>(reinterpret_cast<const uchar *>(data.constData()) + pos);
        if (size == 0)
            return path;
        if (size < 3 || size > end - pos)
            return QString();
        const int itemEnd = pos + size;
        const uchar type = uchar(data.at(pos + 2));
        if (type == 0x1F) {
            // the root: the computer itself
        } else if ((type & 0x70) == 0x20) {
            path = ansiAt(data, pos + 3, itemEnd);   // "C:\"
            if (path.isEmpty())
                return QString();
        } else if ((type & 0x70) == 0x30) {
            if (path.isEmpty())
                return QString();
            // size(2) type(1) pad(1) fileSize(4) time(4) attributes(2), then the short name
            const int nameAt = pos + 14;
            const bool unicodeName = type & 0x04;
            QString name = unicodeName ? unicodeAt(data, nameAt, itemEnd) : ansiAt(data, nameAt, itemEnd);
            int ext = nameAt + (unicodeName ? 2 * (name.size() + 1) : toAnsi(name).size() + 1);
            if (ext & 1)
                ++ext;
            // The long name stands in the extension block that follows, when there is one.
            if (ext + 8 <= itemEnd && u32At(data, ext + 4) == 0xBEEF0004) {
                const int extSize = qFromLittleEndian<quint16>(reinterpret_cast<const uchar *>(data.constData()) + ext);
                const int version = qFromLittleEndian<quint16>(reinterpret_cast<const uchar *>(data.constData()) + ext + 2);
                const int extEnd = qMin(itemEnd, ext + extSize);
                int longAt = ext + 18;
                if (version >= 7)
                    longAt += 18;
                if (version >= 3)
                    longAt += 2;
                if (version >= 9)
                    longAt += 4;
                if (version >= 8)
                    longAt += 4;
                const QString longName = version >= 3 ? unicodeAt(data, longAt, extEnd) : QString();
                if (!longName.isEmpty())
                    name = longName;
            }
            if (name.isEmpty())
                return QString();
            path = joinPath(path, name);
        } else {
            return QString();
        }
        pos = itemEnd;
    }
    return QString();   // no terminal item
}

// The target named by a LinkInfo structure of `size` bytes at `start`; empty when it names none.
QString pathOfLinkInfo(const QByteArray &data, int start, int size)
{
    const int end = start + size;
    Cursor c(data, start, end);
    c.u32();   // LinkInfoSize
    const quint32 header = c.u32();
    const quint32 flags = c.u32();
    c.u32();   // VolumeIDOffset
    const quint32 baseOffset = c.u32();
    const quint32 networkOffset = c.u32();
    const quint32 suffixOffset = c.u32();
    quint32 baseUnicode = 0, suffixUnicode = 0;
    if (header >= 0x24) {
        baseUnicode = c.u32();
        suffixUnicode = c.u32();
    }
    if (c.failed || (header != 0x1C && header < 0x24) || header > quint32(size))
        return QString();
    auto at = [start](quint32 offset) { return offset ? start + int(offset) : -1; };
    const auto inside = [size](quint32 offset) { return offset < quint32(size); };

    QString suffix;
    if (suffixUnicode && inside(suffixUnicode))
        suffix = unicodeAt(data, at(suffixUnicode), end);
    else if (inside(suffixOffset))
        suffix = ansiAt(data, at(suffixOffset), end);

    if (flags & 1) {
        QString base;
        if (baseUnicode && inside(baseUnicode))
            base = unicodeAt(data, at(baseUnicode), end);
        if (base.isEmpty() && inside(baseOffset))
            base = ansiAt(data, at(baseOffset), end);
        if (!base.isEmpty())
            return joinPath(base, suffix);
    }
    if ((flags & 2) && inside(networkOffset) && quint32(size) - networkOffset >= 0x14) {
        // CommonNetworkRelativeLink: size, flags, NetNameOffset, DeviceNameOffset, provider,
        // then the Unicode offsets when NetNameOffset is past 0x14
        const int net = start + int(networkOffset);
        const quint32 netSize = u32At(data, net);
        if (netSize < 0x14 || netSize > quint32(size) - networkOffset)
            return QString();
        const int netEnd = net + int(netSize);
        const quint32 nameOffset = u32At(data, net + 8);
        QString name;
        if (nameOffset > 0x14 && netSize >= 0x1C) {
            const quint32 nameUnicode = u32At(data, net + 0x14);
            if (nameUnicode && nameUnicode < netSize)
                name = unicodeAt(data, net + int(nameUnicode), netEnd);
        }
        if (name.isEmpty() && nameOffset && nameOffset < netSize)
            name = ansiAt(data, net + int(nameOffset), netEnd);
        if (!name.isEmpty())
            return joinPath(name, suffix);
    }
    return QString();
}

QString environmentTarget(const QByteArray &extra)
{
    int pos = 0;
    while (pos + 8 <= extra.size()) {
        const quint32 size = u32At(extra, pos);
        if (size < 8 || size > quint32(extra.size() - pos))
            break;
        if (u32At(extra, pos + 4) == environmentBlock && size >= 0x314) {
            const QString wide = unicodeAt(extra, pos + 8 + 260, pos + 0x314);
            return wide.isEmpty() ? ansiAt(extra, pos + 8, pos + 8 + 260) : wide;
        }
        pos += int(size);
    }
    return QString();
}

bool hasBlock(const QByteArray &extra, quint32 signature)
{
    int pos = 0;
    while (pos + 8 <= extra.size()) {
        const quint32 size = u32At(extra, pos);
        if (size < 8 || size > quint32(extra.size() - pos))
            return false;
        if (u32At(extra, pos + 4) == signature)
            return true;
        pos += int(size);
    }
    return false;
}

void putU16(QByteArray *out, quint16 v)
{
    uchar b[2];
    qToLittleEndian(v, b);
    out->append(reinterpret_cast<const char *>(b), 2);
}

void putU32(QByteArray *out, quint32 v)
{
    uchar b[4];
    qToLittleEndian(v, b);
    out->append(reinterpret_cast<const char *>(b), 4);
}

void putU64(QByteArray *out, quint64 v)
{
    uchar b[8];
    qToLittleEndian(v, b);
    out->append(reinterpret_cast<const char *>(b), 8);
}

void putUnicode(QByteArray *out, const QString &text, bool terminated)
{
    for (const QChar c : text)
        putU16(out, c.unicode());
    if (terminated)
        putU16(out, 0);
}

// LinkInfo for a local path: a fixed-disk volume without serial or label, the path in ANSI and
// in Unicode, an empty suffix.
QByteArray linkInfoFor(const QString &target)
{
    const int header = 0x24;
    QByteArray volume;
    putU32(&volume, 0x11);   // VolumeIDSize
    putU32(&volume, 3);      // DRIVE_FIXED
    putU32(&volume, 0);      // serial number
    putU32(&volume, 0x10);   // VolumeLabelOffset
    volume.append('\0');     // empty label

    QByteArray base = toAnsi(target);
    base.append('\0');
    const quint32 volumeOffset = header;
    const quint32 baseOffset = volumeOffset + quint32(volume.size());
    const quint32 suffixOffset = baseOffset + quint32(base.size());
    const quint32 baseUnicode = suffixOffset + 1;
    const quint32 suffixUnicode = baseUnicode + quint32(2 * (target.size() + 1));
    const quint32 total = suffixUnicode + 2;

    QByteArray out;
    putU32(&out, total);
    putU32(&out, header);
    putU32(&out, 1);   // VolumeIDAndLocalBasePath
    putU32(&out, volumeOffset);
    putU32(&out, baseOffset);
    putU32(&out, 0);   // no network link
    putU32(&out, suffixOffset);
    putU32(&out, baseUnicode);
    putU32(&out, suffixUnicode);
    out.append(volume);
    out.append(base);
    out.append('\0');   // empty suffix
    putUnicode(&out, target, true);
    putU16(&out, 0);    // empty Unicode suffix
    return out;
}

} // namespace

bool read(const QByteArray &data, Link *link)
{
    if (!link || data.size() < headerSize || data.size() > maxFileSize)
        return false;
    Cursor c(data, 0, data.size());
    if (c.u32() != quint32(headerSize) || data.mid(4, 16) != QByteArray(linkClsid, 16))
        return false;
    c.take(16);
    Link l;
    l.flags = c.u32();
    l.fileAttributes = c.u32();
    l.creationTime = c.u64();
    l.accessTime = c.u64();
    l.writeTime = c.u64();
    l.fileSize = c.u32();
    l.iconIndex = qint32(c.u32());
    l.showCommand = c.u32();
    l.hotKey = c.u16();
    c.take(10);   // reserved

    QString idTarget;
    if (l.flags & HasLinkTargetIDList) {
        const int start = c.pos;
        const int size = c.u16();
        if (c.failed || !c.has(size))
            return false;
        idTarget = pathOfIdList(data, c.pos, c.pos + size);
        c.take(size);
        l.idList = data.mid(start, 2 + size);
    }
    QString infoTarget;
    if ((l.flags & HasLinkInfo) && !(l.flags & ForceNoLinkInfo)) {
        const int start = c.pos;
        const quint32 size = c.u32();
        if (c.failed || size < 0x1C || size > quint32(data.size() - start))
            return false;
        infoTarget = pathOfLinkInfo(data, start, int(size));
        c.pos = start + int(size);
        l.linkInfo = data.mid(start, int(size));
    } else if (l.flags & HasLinkInfo) {
        // present but to be ignored: still skip it
        const int start = c.pos;
        const quint32 size = c.u32();
        if (c.failed || size < 4 || size > quint32(data.size() - start))
            return false;
        c.pos = start + int(size);
    }

    const bool unicode = l.flags & IsUnicode;
    const struct {
        quint32 flag;
        QString *field;
    } strings[] = {{HasName, &l.name},
                   {HasRelativePath, &l.relativePath},
                   {HasWorkingDir, &l.workingDirectory},
                   {HasArguments, &l.arguments},
                   {HasIconLocation, &l.iconLocation}};
    for (const auto &s : strings) {
        if (!(l.flags & s.flag))
            continue;
        const int count = c.u16();
        const uchar *p = c.take(unicode ? 2 * count : count);
        if (!p)
            return false;
        if (unicode) {
            QString text;
            text.reserve(count);
            for (int i = 0; i < count; ++i)
                text.append(QChar(qFromLittleEndian<quint16>(p + 2 * i)));
            *s.field = text;
        } else {
            *s.field = fromAnsi(QByteArray(reinterpret_cast<const char *>(p), count));
        }
        // Some writers count the terminator in.
        while (s.field->endsWith(QChar(0)))
            s.field->chop(1);
    }

    // Extra data runs to a terminal block; a damaged tail is dropped, the rest stands.
    const int extraStart = c.pos;
    int pos = extraStart;
    while (pos + 4 <= data.size()) {
        const quint32 size = u32At(data, pos);
        if (size < 8 || size > quint32(data.size() - pos))
            break;
        pos += int(size);
    }
    l.extraData = data.mid(extraStart, pos - extraStart);

    l.target = infoTarget;
    if (l.target.isEmpty())
        l.target = idTarget;
    if (l.target.isEmpty() && (l.flags & HasExpString))
        l.target = environmentTarget(l.extraData);
    *link = l;
    return true;
}

QByteArray write(const Link &link)
{
    const bool keepInfo = !link.linkInfo.isEmpty();
    const bool withInfo = keepInfo || !link.target.isEmpty();
    quint32 flags = (link.flags & ~structureFlags) | IsUnicode;
    if (!link.idList.isEmpty())
        flags |= HasLinkTargetIDList;
    if (withInfo)
        flags |= HasLinkInfo;
    const struct {
        quint32 flag;
        const QString *field;
    } strings[] = {{HasName, &link.name},
                   {HasRelativePath, &link.relativePath},
                   {HasWorkingDir, &link.workingDirectory},
                   {HasArguments, &link.arguments},
                   {HasIconLocation, &link.iconLocation}};
    for (const auto &s : strings) {
        if (!s.field->isEmpty())
            flags |= s.flag;
    }
    if (hasBlock(link.extraData, environmentBlock))
        flags |= HasExpString;
    if (hasBlock(link.extraData, darwinBlock))
        flags |= hasDarwinId;
    if (hasBlock(link.extraData, iconEnvironmentBlock))
        flags |= hasExpIcon;

    QByteArray out;
    putU32(&out, headerSize);
    out.append(linkClsid, 16);
    putU32(&out, flags);
    putU32(&out, link.fileAttributes);
    putU64(&out, link.creationTime);
    putU64(&out, link.accessTime);
    putU64(&out, link.writeTime);
    putU32(&out, link.fileSize);
    putU32(&out, quint32(link.iconIndex));
    putU32(&out, link.showCommand);
    putU16(&out, link.hotKey);
    out.append(10, '\0');

    out.append(link.idList);
    if (withInfo)
        out.append(keepInfo ? link.linkInfo : linkInfoFor(link.target));
    for (const auto &s : strings) {
        if (s.field->isEmpty())
            continue;
        const QString text = s.field->left(0xFFFF);
        putU16(&out, quint16(text.size()));
        putUnicode(&out, text, false);
    }
    out.append(link.extraData);
    putU32(&out, 0);   // terminal block
    return out;
}

Link make(const QString &target, const QString &workingDirectory, const QString &arguments)
{
    Link l;
    l.fileAttributes = 0x20;   // FILE_ATTRIBUTE_ARCHIVE
    l.target = target;
    l.workingDirectory = workingDirectory;
    l.arguments = arguments;
    return l;
}

void setTarget(Link *link, const QString &target)
{
    link->target = target;
    link->idList.clear();
    link->linkInfo.clear();
    link->relativePath.clear();
    QByteArray kept;
    int pos = 0;
    const QByteArray &extra = link->extraData;
    while (pos + 8 <= extra.size()) {
        const quint32 size = u32At(extra, pos);
        if (size < 8 || size > quint32(extra.size() - pos))
            break;
        const quint32 signature = u32At(extra, pos + 4);
        if (signature != environmentBlock && signature != trackerBlock
            && signature != specialFolderBlock && signature != propertyStoreBlock
            && signature != knownFolderBlock && signature != idListBlock)
            kept.append(extra.mid(pos, int(size)));
        pos += int(size);
    }
    link->extraData = kept;
}

bool readFile(const QString &path, Link *link)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || file.size() > maxFileSize)
        return false;
    return read(file.read(maxFileSize), link);
}

bool writeFile(const QString &path, const Link &link)
{
    return replaceFileContent(path, write(link));
}

} // namespace shelllink
