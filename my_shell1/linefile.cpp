#include "linefile.h"

#include <QFile>

namespace linefile {

bool nextRaw(QIODevice &file, QByteArray *raw, bool *cut)
{
    // In pieces: readLine(n) makes a buffer of n bytes first, and the whole limit for every
    // line of a file cost a megabyte's allocation each.
    const qint64 piece = 4096;
    *cut = false;
    *raw = file.readLine(piece);
    if (raw->isEmpty())
        return false;
    while (!raw->endsWith('\n') && raw->size() < maxLineBytes - 1) {
        const QByteArray more = file.readLine(qMin(piece, maxLineBytes - raw->size()));
        if (more.isEmpty())
            return true;   // the end, or a device that stopped answering: what came counts
        *raw += more;
    }
    if (!raw->endsWith('\n')) {
        for (QByteArray rest = file.readLine(piece); !rest.isEmpty(); rest = file.readLine(piece)) {
            *cut = true;
            if (rest.endsWith('\n'))
                break;
        }
    }
    return true;
}

bool nextLine(QIODevice &file, QString *line)
{
    QByteArray raw;
    bool cut = false;
    if (!nextRaw(file, &raw, &cut))
        return false;
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
