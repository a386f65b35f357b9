#include "simmachine.h"
#include "simshared.h"

#include <QStringList>

namespace sim {

QStringList listOf(const QString &text)
{
    QStringList out;
    for (const QString &part : text.split(QLatin1Char(','))) {
        const QString t = part.trimmed();
        if (!t.isEmpty())
            out.append(t);
    }
    return out;
}

bool boolOf(const QString &text, bool fallback)
{
    const QString t = text.trimmed().toLower();
    if (t == QLatin1String("1") || t == QLatin1String("true") || t == QLatin1String("yes")
        || t == QLatin1String("on"))
        return true;
    if (t == QLatin1String("0") || t == QLatin1String("false") || t == QLatin1String("no")
        || t == QLatin1String("off"))
        return false;
    return fallback;
}

} // namespace sim

using namespace sim;

namespace {

bool hexOf(const QString &text, quint64 *out)
{
    QString t = text.trimmed();
    if (t.startsWith(QLatin1String("0x"), Qt::CaseInsensitive))
        t = t.mid(2);
    bool ok = false;
    const quint64 v = t.toULongLong(&ok, 16);
    if (ok)
        *out = v;
    return ok;
}

} // namespace

bool SimMachineFacts::parseMode(const QString &text, DisplayMode *mode)
{
    // WIDTHxHEIGHT[xBITS][@HZ]
    QString t = text.trimmed().toLower();
    int frequency = 60;
    const int at = t.indexOf(QLatin1Char('@'));
    bool ok = true;
    if (at >= 0) {
        frequency = t.mid(at + 1).trimmed().toInt(&ok);
        if (!ok)
            return false;
        t = t.left(at);
    }
    const QStringList parts = t.split(QLatin1Char('x'));
    if (parts.size() < 2 || parts.size() > 3)
        return false;
    DisplayMode m;
    bool okW = false, okH = false, okB = true;
    m.width = parts[0].trimmed().toInt(&okW);
    m.height = parts[1].trimmed().toInt(&okH);
    m.bitsPerPixel = parts.size() == 3 ? parts[2].trimmed().toInt(&okB) : 32;
    m.frequency = frequency;
    if (!okW || !okH || !okB || m.width <= 0 || m.height <= 0)
        return false;
    *mode = m;
    return true;
}

QString SimMachineFacts::modeText(const DisplayMode &m)
{
    return QStringLiteral("%1x%2x%3@%4").arg(m.width).arg(m.height).arg(m.bitsPerPixel).arg(m.frequency);
}

QString SimMachineFacts::value(const QString &section, const QString &key,
                               const QString &fallback) const
{
    const auto s = raw.constFind(section.toLower());
    if (s == raw.constEnd())
        return fallback;
    const auto k = s->constFind(key.toLower());
    return k == s->constEnd() ? fallback : k.value();
}

bool SimMachineFacts::flag(const QString &section, const QString &key, bool fallback) const
{
    return boolOf(value(section, key), fallback);
}

SimVolume SimMachineFacts::volume(QChar letter) const
{
    return volumes.value(letter.toUpper());
}

SimMachineFacts SimMachineFacts::fromIni(const QByteArray &content)
{
    SimMachineFacts f;

    QString section;
    const QString text = QString::fromUtf8(content.startsWith("\xef\xbb\xbf") ? content.mid(3) : content);
    for (QString line : text.split(QLatin1Char('\n'))) {
        line = line.trimmed();
        if (line.isEmpty() || line.startsWith(QLatin1Char(';')) || line.startsWith(QLatin1Char('#')))
            continue;
        if (line.startsWith(QLatin1Char('[')) && line.endsWith(QLatin1Char(']'))) {
            section = line.mid(1, line.size() - 2).trimmed().toLower();
            continue;
        }
        const int eq = line.indexOf(QLatin1Char('='));
        if (eq <= 0)
            continue;
        QString value = line.mid(eq + 1).trimmed();
        if (value.size() >= 2 && value.startsWith(QLatin1Char('"')) && value.endsWith(QLatin1Char('"')))
            value = value.mid(1, value.size() - 2);
        f.raw[section].insert(line.left(eq).trimmed().toLower(), value);
    }

    // memory, in megabytes
    f.memory.ok = boolOf(f.value(QStringLiteral("memory"), QStringLiteral("answers")), true);
    bool ok = false;
    quint64 mb = f.value(QStringLiteral("memory"), QStringLiteral("totalMB")).toULongLong(&ok);
    f.memory.totalPhys = (ok ? mb : 2048) << 20;
    mb = f.value(QStringLiteral("memory"), QStringLiteral("availableMB")).toULongLong(&ok);
    f.memory.availPhys = (ok ? mb : 1536) << 20;

    // display
    if (!parseMode(f.value(QStringLiteral("display"), QStringLiteral("current")), &f.currentMode))
        parseMode(QStringLiteral("1024x768x32@60"), &f.currentMode);
    for (const QString &m : listOf(f.value(QStringLiteral("display"), QStringLiteral("modes")))) {
        DisplayMode mode;
        if (parseMode(m, &mode))
            f.modes.append(mode);
    }
    if (f.modes.isEmpty())
        f.modes.append(f.currentMode);
    // "current" follows the display mode; "WIDTHxHEIGHT" is a screen of its own (a scale)
    const QString screen = f.value(QStringLiteral("display"), QStringLiteral("screen")).toLower();
    DisplayMode logical;
    if (screen == QLatin1String("current")) {
        f.screenKnown = true;
        f.screenWidth = f.currentMode.width;
        f.screenHeight = f.currentMode.height;
    } else if (!screen.isEmpty() && parseMode(screen, &logical)) {
        f.screenKnown = true;
        f.screenWidth = logical.width;
        f.screenHeight = logical.height;
    }

    // keyboard
    for (const QString &l : listOf(f.value(QStringLiteral("keyboard"), QStringLiteral("layouts")))) {
        quint64 hkl = 0;
        if (hexOf(l, &hkl))
            f.layouts.append(hkl);
    }
    if (f.layouts.isEmpty())
        f.layouts.append(0x04090409);
    if (!hexOf(f.value(QStringLiteral("keyboard"), QStringLiteral("foreground")), &f.foregroundLayout))
        f.foregroundLayout = f.layouts.first();

    // processes
    f.snapshotOk = boolOf(f.value(QStringLiteral("processes"), QStringLiteral("snapshot")), true);
    f.processes = listOf(f.value(QStringLiteral("processes"), QStringLiteral("running")));

    // system
    f.workingDirectory = f.value(QStringLiteral("system"), QStringLiteral("workingDirectory"),
                                 QStringLiteral("X:/Program Files/kelpie"));
    if (f.workingDirectory.size() < 2 || f.workingDirectory[1] != QLatin1Char(':'))
        f.workingDirectory = QStringLiteral("X:/Program Files/kelpie");

    const QString fw = f.value(QStringLiteral("firewall"), QStringLiteral("state")).toLower();
    f.firewall = fw == QLatin1String("unavailable") ? fw
                 : boolOf(fw, false)                ? QStringLiteral("on")
                                                    : QStringLiteral("off");

    // volumes: [volume.E]
    for (auto s = f.raw.constBegin(); s != f.raw.constEnd(); ++s) {
        if (!s.key().startsWith(QLatin1String("volume.")) || s.key().size() != 8)
            continue;
        const QChar letter = s.key().at(7).toUpper();
        if (letter < QLatin1Char('A') || letter > QLatin1Char('Z'))
            continue;
        const QMap<QString, QString> &k = s.value();
        SimVolume v;
        v.described = true;
        v.ready = boolOf(k.value(QStringLiteral("ready")), true);
        v.label = k.value(QStringLiteral("label"));
        const QString media = k.value(QStringLiteral("mediatype")).toLower();
        if (media == QLatin1String("removable"))
            v.mediaType = 11;
        else if (media == QLatin1String("fixed") || media.isEmpty())
            v.mediaType = 12;
        else
            v.mediaType = media.toUInt();
        v.vendor = k.value(QStringLiteral("vendor"));
        v.product = k.value(QStringLiteral("product"));
        v.opens = boolOf(k.value(QStringLiteral("opens")), true);
        bool hasDisk = false;
        v.diskNumber = k.value(QStringLiteral("disk")).toUInt(&hasDisk);
        v.answersDeviceNumber = boolOf(k.value(QStringLiteral("answersdevicenumber")), hasDisk);
        bool okType = false;
        const quint32 type = k.value(QStringLiteral("devicetype")).toUInt(&okType);
        if (okType)
            v.deviceType = type;
        bool okPart = false;
        const quint32 part = k.value(QStringLiteral("partition")).toUInt(&okPart);
        if (okPart)
            v.partitionNumber = part;
        v.present = boolOf(k.value(QStringLiteral("present")), true);
        v.readOnly = boolOf(k.value(QStringLiteral("readonly")), false);
        bool okFree = false;
        const qint64 free = k.value(QStringLiteral("freebytes")).toLongLong(&okFree);
        if (okFree && free >= 0)
            v.freeBytes = free;
        v.answersGeometry = boolOf(k.value(QStringLiteral("answersgeometry")), true);
        v.answersPartition = boolOf(k.value(QStringLiteral("answerspartition")), true);
        v.answersDescriptor = boolOf(k.value(QStringLiteral("answersdescriptor")), true);
        v.revision = k.value(QStringLiteral("revision"));
        f.volumes.insert(letter, v);
    }
    return f;
}
