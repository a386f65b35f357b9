#include "linefile.h"

#include <QFile>

namespace linefile {

bool nextLine(QIODevice &file, QString *line)
{
    if (file.atEnd())
        return false;
    // In pieces: readLine(n) makes a buffer of n bytes first, and the whole limit for every
    // line of a file cost a megabyte's allocation each.
    const qint64 piece = 4096;
    QByteArray raw = file.readLine(piece);
    while (!raw.endsWith('\n') && !file.atEnd() && raw.size() < maxLineBytes - 1)
        raw += file.readLine(qMin(piece, maxLineBytes - raw.size()));
    if (!raw.endsWith('\n')) {
        while (!file.atEnd() && !file.readLine(piece).endsWith('\n')) {
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
