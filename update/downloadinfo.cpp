#include "downloadinfo.h"

#include <QStringList>

bool readDownloadInfo(const QString &body, DownloadInfoFields *fields)
{
    *fields = DownloadInfoFields();
    const QStringList parts = body.split(QLatin1Char('|'), Qt::KeepEmptyParts);
    if (parts.size() < 4)
        return false;
    fields->size = parts.at(0);
    fields->url = parts.at(1);
    fields->title = parts.at(2);
    fields->notes = parts.at(3);
    return true;
}

QString setupFileName(const QString &url)
{
    QString name = url.section(QLatin1Char('/'), -1);
    // Windows takes "\" for a separator and "c:" for a drive, both inside the folder's path.
    const int cut = qMax(name.lastIndexOf(QLatin1Char('\\')), name.lastIndexOf(QLatin1Char(':')));
    name = name.mid(cut + 1);
    if (name == QLatin1String(".") || name == QLatin1String(".."))
        name.clear();
    return name;
}
