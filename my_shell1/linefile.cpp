#include "linefile.h"

#include <QFile>

namespace linefile {

bool nextRaw(QIODevice &file, QByteArray *raw, bool *cut)
{
    // In pieces: readLine(n) makes a buffer of n bytes first, and the whole limit for every
    // line of a file cost a megabyte's allocation each. The pieces land in one buffer on the
    // stack, so a line costs one allocation of its own length, not 4 KiB.
    const qint64 piece = 4096;
    char buffer[piece];
    *cut = false;
    qint64 got = file.readLine(buffer, piece);
    if (got <= 0) {
        *raw = QByteArray();
        return false;
    }
    *raw = QByteArray(buffer, int(got));
    while (!raw->endsWith('\n') && raw->size() < maxLineBytes - 1) {
        got = file.readLine(buffer, qMin(piece, maxLineBytes - raw->size()));
        if (got <= 0)
            return true;   // the end, or a device that stopped answering: what came counts
        raw->append(buffer, int(got));
    }
    if (!raw->endsWith('\n')) {
        for (got = file.readLine(buffer, piece); got > 0; got = file.readLine(buffer, piece)) {
            *cut = true;
            if (buffer[got - 1] == '\n')
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
