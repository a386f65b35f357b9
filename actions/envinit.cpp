#include "envinit.h"

#include "my_shell1/linefile.h"

#include <QIODevice>

namespace envinit {

namespace {

const char *const wpeutilKeys[] = {"SetMuiLanguage=", "SetUserLocale=", "SetKeyboardLayout="};

} // namespace

qint32 biasOf(const QString &value)
{
    bool ok = false;
    qint64 v = value.toInt(&ok);
    if (!ok)
        v = 0;
    return qint32(quint32(quint64((12 - v) * 60)));
}

QList<Step> read(QIODevice *device)
{
    QList<Step> steps;
    QByteArray bytes;
    bool cut = false;
    while (linefile::nextRaw(*device, &bytes, &cut)) {
        if (cut)
            continue;   // no locale value comes near the limit: an overlong line is passed over whole
        bytes.replace('\n', QByteArray()).replace('\r', QByteArray());
        QString line = QString::fromUtf8(bytes);

        const QString zoneKey = QStringLiteral("TimeZone=");
        if (line.contains(zoneKey)) {
            line.remove(zoneKey);
            Step s;
            s.kind = Step::TimeZone;
            s.bias = biasOf(line);
            steps.append(s);
        }
        for (const char *key : wpeutilKeys) {
            const QString k = QLatin1String(key);
            if (!line.contains(k))
                continue;
            line.remove(k);
            Step s;
            s.kind = Step::Wpeutil;
            // The key without its "=", then one blank, then the value.
            s.arguments = k.left(k.size() - 1) + QLatin1Char(' ') + line;
            steps.append(s);
        }
    }
    return steps;
}

} // namespace envinit
