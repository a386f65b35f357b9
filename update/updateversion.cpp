#include "updateversion.h"

#include <QStringList>

int versionToBuild(const QString &text)
{
    const QStringList parts = text.split(QLatin1Char('.'), Qt::KeepEmptyParts);
    static const int weights[] = {1000, 100, 1};
    // Summed wide so that a huge part wraps like the 32-bit sum instead of overflowing.
    qint64 build = 0;
    for (int i = 0; i < 3 && i < parts.size(); ++i)
        build += qint64(parts.at(i).toInt()) * weights[i];
    return int(quint32(build));
}

QString buildToVersion(int build)
{
    const int major = (build / 1000) % 100;
    const int minor = (build / 100) % 10;
    const int revision = build % 100;
    if (revision != 0)
        return QStringLiteral("%1.%2.%3").arg(major).arg(minor).arg(revision);
    if (minor != 0)
        return QStringLiteral("%1.%2").arg(major).arg(minor);
    return QString::number(major);
}
