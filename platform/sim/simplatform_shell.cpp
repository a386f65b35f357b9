#include "simplatform.h"
#include "simshared.h"

#include "platform/shelllink/shelllink.h"

#include <QDateTime>
#include <QFile>
#include <QHash>
#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QSaveFile>

using namespace sim;

namespace {

const QString kTime = QStringLiteral("time");
const quint32 fileAttributeDirectory = 0x10;   // FILE_ATTRIBUTE_DIRECTORY
const int kIconSize = 32;

QString lastComponent(const QString &path)
{
    QString p = path;
    p.replace(QLatin1Char('\\'), QLatin1Char('/'));
    while (p.endsWith(QLatin1Char('/')))
        p.chop(1);
    return p.section(QLatin1Char('/'), -1);
}

// --- the pictures: one per kind, drawn at the size of the shell's large icons ---

QPainterPath pageOutline()
{
    QPainterPath page;
    page.moveTo(6, 2);
    page.lineTo(20, 2);
    page.lineTo(26, 8);
    page.lineTo(26, 30);
    page.lineTo(6, 30);
    page.closeSubpath();
    return page;
}

void drawPage(QPainter &p)
{
    p.setPen(QPen(QColor(0x8a, 0x94, 0xa3), 1));
    p.setBrush(Qt::white);
    p.drawPath(pageOutline());
    QPainterPath corner;
    corner.moveTo(20, 2);
    corner.lineTo(20, 8);
    corner.lineTo(26, 8);
    corner.closeSubpath();
    p.setBrush(QColor(0xd9, 0xde, 0xe5));
    p.drawPath(corner);
}

void drawLines(QPainter &p, int from, int count, const QColor &colour)
{
    p.setPen(QPen(colour, 1.5));
    for (int i = 0; i < count; ++i)
        p.drawLine(QPointF(9, from + i * 4), QPointF(i % 2 ? 19 : 23, from + i * 4));
}

void drawGear(QPainter &p, const QPointF &centre, qreal radius, const QColor &colour)
{
    p.save();
    p.translate(centre);
    p.setPen(Qt::NoPen);
    p.setBrush(colour);
    for (int i = 0; i < 8; ++i) {
        p.drawRect(QRectF(-radius * 0.2, -radius * 1.25, radius * 0.4, radius * 2.5));
        p.rotate(22.5);
    }
    p.drawEllipse(QPointF(0, 0), radius, radius);
    p.setBrush(Qt::white);
    p.drawEllipse(QPointF(0, 0), radius * 0.4, radius * 0.4);
    p.restore();
}

void drawApplication(QPainter &p)
{
    p.setPen(QPen(QColor(0x1d, 0x4e, 0x89), 1));
    p.setBrush(Qt::white);
    p.drawRoundedRect(QRectF(2.5, 4.5, 27, 23), 2, 2);
    p.setPen(Qt::NoPen);
    p.setBrush(QColor(0x2b, 0x6c, 0xb0));
    p.drawRect(QRectF(3, 5, 26, 6));
    p.setBrush(QColor(0xe5, 0x3e, 0x3e));
    p.drawRect(QRectF(24, 6.5, 3, 3));
    p.setBrush(QColor(0x9f, 0xb8, 0xd6));
    p.drawRect(QRectF(6, 14, 8, 10));
    p.drawRect(QRectF(16, 14, 10, 4));
    p.drawRect(QRectF(16, 20, 10, 4));
}

void drawScript(QPainter &p)
{
    p.setPen(QPen(QColor(0x4a, 0x55, 0x68), 1));
    p.setBrush(QColor(0x1a, 0x20, 0x2c));
    p.drawRoundedRect(QRectF(2.5, 5.5, 27, 21), 2, 2);
    p.setPen(QPen(QColor(0x68, 0xd3, 0x91), 2.2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    p.drawPolyline(QPolygonF({QPointF(7, 11), QPointF(12, 15.5), QPointF(7, 20)}));
    p.drawLine(QPointF(14, 21), QPointF(22, 21));
}

void drawImage(QPainter &p)
{
    drawPage(p);
    p.setPen(Qt::NoPen);
    p.setBrush(QColor(0x90, 0xcd, 0xf4));
    p.drawRect(QRectF(8, 11, 16, 15));
    p.setBrush(QColor(0xf6, 0xe0, 0x5e));
    p.drawEllipse(QPointF(19.5, 15), 2.5, 2.5);
    p.setBrush(QColor(0x38, 0xa1, 0x69));
    p.drawPolygon(QPolygonF({QPointF(8, 26), QPointF(13, 17), QPointF(18, 26)}));
    p.drawPolygon(QPolygonF({QPointF(14, 26), QPointF(19, 20), QPointF(24, 26)}));
}

void drawWeb(QPainter &p)
{
    p.setPen(QPen(QColor(0x2c, 0x52, 0x82), 1.2));
    p.setBrush(QColor(0x63, 0xb3, 0xed));
    p.drawEllipse(QPointF(16, 16), 13, 13);
    p.setBrush(Qt::NoBrush);
    p.drawEllipse(QPointF(16, 16), 5.5, 13);
    p.drawLine(QPointF(3, 16), QPointF(29, 16));
    p.drawLine(QPointF(16, 3), QPointF(16, 29));
    p.drawLine(QPointF(5.5, 9.5), QPointF(26.5, 9.5));
    p.drawLine(QPointF(5.5, 22.5), QPointF(26.5, 22.5));
}

void drawRegistry(QPainter &p)
{
    drawPage(p);
    p.setPen(QPen(Qt::white, 0.8));
    const QColor colours[3] = {QColor(0x31, 0x82, 0xce), QColor(0xdd, 0x6b, 0x20),
                               QColor(0x38, 0xa1, 0x69)};
    const QPointF at[3] = {QPointF(9, 18), QPointF(16, 18), QPointF(12.5, 11)};
    for (int i = 0; i < 3; ++i) {
        p.setBrush(colours[i]);
        p.drawRect(QRectF(at[i], QSizeF(7, 7)));
    }
}

void drawDriver(QPainter &p)
{
    drawPage(p);
    p.setPen(QPen(QColor(0x4a, 0x55, 0x68), 1.2));
    for (int i = 0; i < 3; ++i) {
        p.drawLine(QPointF(11 + i * 4, 10), QPointF(11 + i * 4, 26));
        p.drawLine(QPointF(8, 14 + i * 4), QPointF(24, 14 + i * 4));
    }
    p.setPen(Qt::NoPen);
    p.setBrush(QColor(0x2d, 0x37, 0x48));
    p.drawRect(QRectF(10, 12, 12, 12));
}

void drawArchive(QPainter &p)
{
    p.setPen(QPen(QColor(0x7b, 0x4a, 0x1e), 1));
    p.setBrush(QColor(0xd6, 0x9e, 0x2e));
    p.drawRect(QRectF(4.5, 9.5, 23, 19));
    p.setBrush(QColor(0xec, 0xc9, 0x4b));
    p.drawRect(QRectF(3.5, 5.5, 25, 5));
    p.setPen(Qt::NoPen);
    p.setBrush(QColor(0x74, 0x42, 0x10));
    p.drawRect(QRectF(14, 6, 4, 22));
}

void drawDisk(QPainter &p)
{
    p.setPen(QPen(QColor(0x71, 0x80, 0x96), 1));
    QRadialGradient shine(QPointF(12, 12), 16);
    shine.setColorAt(0, QColor(0xf7, 0xfa, 0xfc));
    shine.setColorAt(1, QColor(0xa0, 0xae, 0xc0));
    p.setBrush(shine);
    p.drawEllipse(QPointF(16, 16), 13, 13);
    p.setBrush(QColor(0x71, 0x80, 0x96));
    p.drawEllipse(QPointF(16, 16), 4, 4);
    p.setBrush(Qt::white);
    p.drawEllipse(QPointF(16, 16), 1.8, 1.8);
}

void drawFolder(QPainter &p)
{
    p.setPen(QPen(QColor(0xb7, 0x79, 0x1f), 1));
    p.setBrush(QColor(0xec, 0xc9, 0x4b));
    QPainterPath back;
    back.moveTo(2.5, 7.5);
    back.lineTo(12.5, 7.5);
    back.lineTo(15.5, 10.5);
    back.lineTo(29.5, 10.5);
    back.lineTo(29.5, 27.5);
    back.lineTo(2.5, 27.5);
    back.closeSubpath();
    p.drawPath(back);
    p.setBrush(QColor(0xf6, 0xe0, 0x5e));
    p.drawRect(QRectF(2.5, 13.5, 27, 14));
}

// The small arrow in the lower left corner that marks a shortcut.
void drawShortcutMark(QPainter &p)
{
    p.setPen(QPen(QColor(0x4a, 0x55, 0x68), 1));
    p.setBrush(Qt::white);
    p.drawRect(QRectF(0.5, 19.5, 12, 12));
    p.setPen(QPen(QColor(0x2b, 0x6c, 0xb0), 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    p.setBrush(Qt::NoBrush);
    QPainterPath curve;
    curve.moveTo(3.5, 29);
    curve.cubicTo(3.5, 24, 5.5, 23, 9.5, 23);
    p.drawPath(curve);
    p.drawPolyline(QPolygonF({QPointF(7, 20.5), QPointF(10, 23), QPointF(7, 25.5)}));
}

QImage paintIcon(const QString &kind, bool shortcut)
{
    QImage image(kIconSize, kIconSize, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter p(&image);
    p.setRenderHint(QPainter::Antialiasing);
    if (kind == QLatin1String("application")) {
        drawApplication(p);
    } else if (kind == QLatin1String("script")) {
        drawScript(p);
    } else if (kind == QLatin1String("image")) {
        drawImage(p);
    } else if (kind == QLatin1String("web")) {
        drawWeb(p);
    } else if (kind == QLatin1String("registry")) {
        drawRegistry(p);
    } else if (kind == QLatin1String("driver")) {
        drawDriver(p);
    } else if (kind == QLatin1String("archive")) {
        drawArchive(p);
    } else if (kind == QLatin1String("disk")) {
        drawDisk(p);
    } else if (kind == QLatin1String("folder")) {
        drawFolder(p);
    } else if (kind == QLatin1String("text")) {
        drawPage(p);
        drawLines(p, 11, 5, QColor(0x71, 0x80, 0x96));
    } else if (kind == QLatin1String("settings")) {
        drawPage(p);
        drawLines(p, 8, 2, QColor(0xa0, 0xae, 0xc0));
        drawGear(p, QPointF(16, 21), 5, QColor(0x71, 0x80, 0x96));
    } else if (kind == QLatin1String("library")) {
        drawPage(p);
        drawGear(p, QPointF(13, 14), 4, QColor(0x80, 0x5a, 0xd5));
        drawGear(p, QPointF(20, 23), 4, QColor(0x55, 0x3c, 0x9a));
    } else {
        drawPage(p);
    }
    if (shortcut)
        drawShortcutMark(p);
    return image;
}

// Painted once a kind, with and without the mark: a desktop of a thousand shortcuts asks for a
// handful of pictures.
QImage drawIcon(const QString &kind, bool shortcut)
{
    static QHash<QString, QImage> painted[2];
    QHash<QString, QImage> &cache = painted[shortcut ? 1 : 0];
    auto found = cache.constFind(kind);
    if (found == cache.constEnd())
        found = cache.insert(kind, paintIcon(kind, shortcut));
    return *found;
}

// --- the clock and the zone as text in machine.ini ---

const QString kTimeFormat = QStringLiteral("yyyy-MM-dd hh:mm:ss.zzz");

SystemTime systemTimeOf(const QDateTime &t)
{
    SystemTime s;
    s.year = quint16(t.date().year());
    s.month = quint16(t.date().month());
    s.dayOfWeek = quint16(t.date().dayOfWeek() % 7);   // Sunday is 0
    s.day = quint16(t.date().day());
    s.hour = quint16(t.time().hour());
    s.minute = quint16(t.time().minute());
    s.second = quint16(t.time().second());
    s.milliseconds = quint16(t.time().msec());
    return s;
}

// "month,dayOfWeek,day,hour,minute,second,milliseconds" after the year, as the zone's dates are
// kept: eight numbers, the first the year.
SystemTime zoneDateOf(const QString &text)
{
    SystemTime s;
    const QStringList parts = text.split(QLatin1Char(','));
    quint16 *fields[8] = {&s.year, &s.month, &s.dayOfWeek, &s.day,
                          &s.hour, &s.minute, &s.second, &s.milliseconds};
    for (int i = 0; i < 8 && i < parts.size(); ++i)
        *fields[i] = quint16(parts.at(i).trimmed().toUInt());
    return s;
}

QString zoneDateText(const SystemTime &s)
{
    return QStringLiteral("%1,%2,%3,%4,%5,%6,%7,%8")
        .arg(s.year).arg(s.month).arg(s.dayOfWeek).arg(s.day)
        .arg(s.hour).arg(s.minute).arg(s.second).arg(s.milliseconds);
}

qint32 intOf(const QString &text, qint32 fallback)
{
    bool ok = false;
    const qint32 v = text.trimmed().toInt(&ok);
    return ok ? v : fallback;
}

} // namespace

QString SimPlatform::iconKind(const QString &fileName)
{
    static const QHash<QString, QString> kinds = [] {
        QHash<QString, QString> k;
        const QList<QPair<const char *, QStringList>> table = {
            {"application", {"exe", "com", "scr"}},
            {"script", {"cmd", "bat", "vbs", "js", "ps1"}},
            {"text", {"txt", "log", "md"}},
            {"settings", {"ini", "cfg", "inf", "conf"}},
            {"registry", {"reg"}},
            {"image", {"png", "jpg", "jpeg", "bmp", "gif", "ico", "tif", "tiff"}},
            {"web", {"htm", "html", "url"}},
            {"driver", {"sys", "cat"}},
            {"library", {"dll", "ocx", "cpl", "msc"}},
            {"archive", {"zip", "cab", "7z", "rar"}},
            {"disk", {"iso", "wim", "vhd", "vhdx", "img"}},
        };
        for (const auto &row : table)
            for (const QString &suffix : row.second)
                k.insert(suffix, QLatin1String(row.first));
        return k;
    }();
    const QString name = lastComponent(fileName);
    const int dot = name.lastIndexOf(QLatin1Char('.'));
    if (dot < 0)
        return QStringLiteral("file");
    return kinds.value(name.mid(dot + 1).toLower(), QStringLiteral("file"));
}

// --- shell objects ---

QImage SimPlatform::shellIcon(const QString &path)
{
    // By name and the attributes the caller gives (none): the file is never looked at, so a
    // folder is a file without an extension and a missing path still has its kind.
    if (path.isEmpty() || !currentFacts().flag(QStringLiteral("shell"), QStringLiteral("icons"), true))
        return QImage();
    const QString name = lastComponent(path);
    if (!name.endsWith(QLatin1String(".lnk"), Qt::CaseInsensitive))
        return drawIcon(iconKind(name), false);
    // A shortcut wears its target's picture under the shortcut's mark, as the shell's link
    // handler gives it; one that cannot be read is a plain file with the mark.
    QString kind = QStringLiteral("file");
    shelllink::Link link;
    if (shelllink::readFile(hostPath(path), &link) && !link.target.isEmpty())
        kind = (link.fileAttributes & fileAttributeDirectory) ? QStringLiteral("folder")
                                                              : iconKind(link.target);
    return drawIcon(kind, true);
}

ShellExecuteExResult SimPlatform::shellExecuteEx(const ShellExecuteRequest &request)
{
    appendJournal({QStringLiteral("startex"), QString::number(request.mask), request.verb,
                   request.file, request.parameters, request.directory,
                   QString::number(request.show)});
    const ShellResult answer = startAnswer(request.file);
    ShellExecuteExResult r;
    r.ok = answer.code > 32;
    r.instApp = answer.code;
    r.lastError = answer.lastError;
    if (r.ok)
        leaveBehind(request.file);
    return r;
}

// --- time ---

bool SimPlatform::localTime(SystemTime *time)
{
    const QString text = currentFacts().value(kTime, QStringLiteral("localTime"));
    QDateTime t = QDateTime::fromString(text, kTimeFormat);
    if (!t.isValid())
        t = QDateTime::fromString(text, QStringLiteral("yyyy-MM-dd hh:mm:ss"));
    if (!t.isValid())
        t = QDateTime::currentDateTime();
    if (time)
        *time = systemTimeOf(t);
    return true;
}

bool SimPlatform::setLocalTime(const SystemTime &time)
{
    // Windows refuses a date or time that does not exist; the day of the week is not looked at.
    const QDate date(time.year, time.month, time.day);
    const QTime clock(time.hour, time.minute, time.second, time.milliseconds);
    if (time.year < 1601 || !date.isValid() || !clock.isValid())
        return false;
    const QString text = QDateTime(date, clock).toString(kTimeFormat);
    appendJournal({QStringLiteral("localtime"), text});
    return writeMachineIni(kTime, {{QStringLiteral("localTime"), text}});
}

quint32 SimPlatform::timeZoneInformation(TimeZoneInfo *zone)
{
    const SimMachineFacts &f = currentFacts();
    TimeZoneInfo z;
    z.bias = intOf(f.value(kTime, QStringLiteral("bias")), 0);
    z.standardName = f.value(kTime, QStringLiteral("standardName"),
                             QStringLiteral("Coordinated Universal Time"));
    z.standardBias = intOf(f.value(kTime, QStringLiteral("standardBias")), 0);
    z.standardDate = zoneDateOf(f.value(kTime, QStringLiteral("standardDate")));
    z.daylightName = f.value(kTime, QStringLiteral("daylightName"), z.standardName);
    z.daylightBias = intOf(f.value(kTime, QStringLiteral("daylightBias")), 0);
    z.daylightDate = zoneDateOf(f.value(kTime, QStringLiteral("daylightDate")));
    if (zone)
        *zone = z;
    // A zone without a change date has no daylight time: TIME_ZONE_ID_UNKNOWN.
    return z.daylightDate.month == 0 ? 0 : 1;
}

bool SimPlatform::setTimeZoneInformation(const TimeZoneInfo &zone)
{
    appendJournal({QStringLiteral("timezone"), QString::number(zone.bias),
                   QString::number(zone.standardBias), QString::number(zone.daylightBias),
                   zone.standardName, zone.daylightName});
    return writeMachineIni(kTime, {
        {QStringLiteral("bias"), QString::number(zone.bias)},
        {QStringLiteral("standardName"), zone.standardName.left(31)},
        {QStringLiteral("standardBias"), QString::number(zone.standardBias)},
        {QStringLiteral("standardDate"), zoneDateText(zone.standardDate)},
        {QStringLiteral("daylightName"), zone.daylightName.left(31)},
        {QStringLiteral("daylightBias"), QString::number(zone.daylightBias)},
        {QStringLiteral("daylightDate"), zoneDateText(zone.daylightDate)},
    });
}

// --- machine.ini written back ---

bool SimPlatform::writeMachineIni(const QString &section, const QList<QPair<QString, QString>> &values)
{
    const QString path = m_root + kMachineIni;
    QByteArray content;
    {
        QFile f(path);
        if (f.exists() && !f.open(QIODevice::ReadOnly))
            return false;
        content = f.isOpen() ? f.readAll() : QByteArray();
    }
    const bool crlf = content.contains("\r\n");
    // Lines stay bytes: a line the shell does not change goes back exactly as it stood, whatever
    // its encoding.
    QList<QByteArray> lines = content.split('\n');
    for (QByteArray &l : lines) {
        if (l.endsWith('\r'))
            l.chop(1);
    }
    if (!lines.isEmpty() && lines.last().isEmpty())
        lines.removeLast();
    const auto text = [&lines](int i) { return QString::fromUtf8(lines.at(i)).trimmed(); };

    // The section's lines: from its header to the next header. The last header of that name
    // counts, as the reader lets a later line win.
    int begin = -1;
    for (int i = 0; i < lines.size(); ++i) {
        const QString t = text(i);
        if (t.startsWith(QLatin1Char('[')) && t.endsWith(QLatin1Char(']'))
            && t.mid(1, t.size() - 2).trimmed().compare(section, Qt::CaseInsensitive) == 0)
            begin = i;
    }
    if (begin < 0) {
        if (!lines.isEmpty() && !text(lines.size() - 1).isEmpty())
            lines.append(QByteArray());
        lines.append((QLatin1Char('[') + section + QLatin1Char(']')).toUtf8());
        begin = lines.size() - 1;
    }
    int end = begin + 1;
    while (end < lines.size()) {
        const QString t = text(end);
        if (t.startsWith(QLatin1Char('[')) && t.endsWith(QLatin1Char(']')))
            break;
        ++end;
    }

    for (const auto &kv : values) {
        const QByteArray line = (kv.first + QLatin1Char('=') + kv.second).toUtf8();
        bool replaced = false;
        for (int i = begin + 1; i < end; ++i) {
            const QString t = text(i);
            const int eq = t.indexOf(QLatin1Char('='));
            if (eq > 0 && !t.startsWith(QLatin1Char(';')) && !t.startsWith(QLatin1Char('#'))
                && t.left(eq).trimmed().compare(kv.first, Qt::CaseInsensitive) == 0) {
                lines[i] = line;
                replaced = true;
            }
        }
        if (replaced)
            continue;
        // After the section's last non-empty line, so a blank line before the next header stays.
        int at = end;
        while (at > begin + 1 && text(at - 1).isEmpty())
            --at;
        lines.insert(at, line);
        ++end;
    }

    const QByteArray eol = crlf ? QByteArray("\r\n") : QByteArray("\n");
    QSaveFile out(path);
    if (!out.open(QIODevice::WriteOnly))
        return false;
    QByteArray joined;
    for (const QByteArray &l : qAsConst(lines))
        joined += l + eol;
    out.write(joined);
    return out.commit();
}
