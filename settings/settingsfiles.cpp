#include "settingsfiles.h"

#include "my_shell1/linefile.h"

#include <QIODevice>
#include <QRegularExpression>
#include <QtEndian>

KelpieSettings readKelpieSettings(QIODevice &file)
{
    KelpieSettings s;
    const struct {
        QLatin1String key;
        QString *value;
    } keys[] = {
        {QLatin1String("imageLang="), &s.imageLang}, {QLatin1String("lang="), &s.lang},
        {QLatin1String("tmz="), &s.tmz},             {QLatin1String("network="), &s.network},
        {QLatin1String("firewall="), &s.firewall},   {QLatin1String("timeout="), &s.timeout},
        {QLatin1String("screenRes="), &s.screenRes}, {QLatin1String("appRun="), &s.appRun},
        {QLatin1String("pwd="), &s.pwd},             {QLatin1String("build="), &s.build},
    };
    QString line;
    while (linefile::nextLine(file, &line)) {
        for (const auto &k : keys) {
            if (line.startsWith(k.key))
                *k.value = line.mid(k.key.size());
        }
    }
    return s;
}

QString composeKelpieSettings(const KelpieSettings &s)
{
    const QString appRunLine = s.appRun.isEmpty() ? QString()
                                                  : QStringLiteral("appRun=%8\r\n").arg(s.appRun);
    QString text = QStringLiteral("imageLang=%1\r\nlang=%2\r\ntmz=%3\r\nnetwork=%4\r\nfirewall=%5\r\n"
                                  "timeout=%6\r\nscreenRes=%7\r\n%8pwd=%9\r\nbuild=%10");
    const QString values[] = {s.imageLang, s.lang,      s.tmz,      s.network, s.firewall,
                              s.timeout,   s.screenRes, appRunLine, s.pwd,     s.build};
    for (const QString &value : values) {
        // Each step fills the lowest marker left, wherever it came from; when a value has used
        // up the markers, the rest have nowhere to go (and the toolkit would complain of it).
        static const QRegularExpression marker(QStringLiteral("%L?[0-9]"));
        if (!text.contains(marker))
            break;
        text = text.arg(value);
    }
    return text;
}

QString composeKelpieNet(const QString &ipAdd, const QString &ipMask, const QString &ipDNS,
                         const QString &ipGateway)
{
    return QStringLiteral("ipAdd=%1\r\nipMask=%2\r\nipDNS=%3\r\nipGateway=%4")
        .arg(ipAdd, ipMask, ipDNS, ipGateway);
}

QStringList readLogLines(QIODevice &file)
{
    QStringList lines;
    QString line;
    while (linefile::nextLine(file, &line))
        lines.append(line);
    return lines;
}

namespace {

// The lowest offset a string of the descriptor may start at, and the fields that hold them.
const quint32 firstStringOffset = 29;
const int vendorField = 12;
const int productField = 16;
const int revisionField = 20;

QString descriptorString(const QByteArray &bytes, int field)
{
    if (bytes.size() < field + 4)
        return QString();
    const quint32 offset = qFromLittleEndian<quint32>(reinterpret_cast<const uchar *>(bytes.constData()) + field);
    if (offset < firstStringOffset || offset >= quint32(bytes.size()))
        return QString();
    // The buffer behind the bytes returned is cleared, so a string runs at most to their end.
    const int end = bytes.indexOf('\0', int(offset));
    return QString::fromLatin1(bytes.mid(int(offset), end < 0 ? -1 : end - int(offset)));
}

} // namespace

DeviceStrings parseStorageDescriptor(const QByteArray &bytes)
{
    DeviceStrings s;
    s.vendor = descriptorString(bytes, vendorField);
    s.product = descriptorString(bytes, productField);
    s.revision = descriptorString(bytes, revisionField);
    return s;
}

QString deviceNameOf(const DeviceStrings &strings)
{
    const QString vendor = strings.vendor.trimmed();
    if (vendor.isEmpty())
        return strings.product.trimmed();
    return vendor + QLatin1Char(' ') + strings.product.trimmed();
}

QString freeSpaceText(qint64 b)
{
    if (b > 1073741824)
        return QString::asprintf("%.0f GB", double(b) / 1073741824);
    if (b > 1048576)
        return QString::asprintf("%.0f MB", double(b) / 1048576);
    if (b < 1025)
        return QString::asprintf("%lld bytes", static_cast<long long>(b));
    return QString::asprintf("%.0f KB", double(b) / 1024);
}
