#include "linefile.h"

#include <QFile>

namespace linefile {

bool nextLine(QIODevice &file, QString *line)
{
    if (file.atEnd())
        return false;
    const QByteArray raw = file.readLine(maxLineBytes);
    if (!raw.endsWith('\n')) {
        while (!file.atEnd() && !file.readLine(maxLineBytes).endsWith('\n')) {
        }
    }
    *line = QString::fromUtf8(raw);
    line->remove(QLatin1Char('\n'));
    line->remove(QLatin1Char('\r'));
    return true;
}

bool readLines(const QString &hostPath, QStringList *lines)
{
    QFile file(hostPath);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    QString line;
    while (nextLine(file, &line))
        lines->append(line);
    return true;
}

} // namespace linefile
