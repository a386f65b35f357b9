#include "linefile.h"

#include <QFile>

namespace linefile {

namespace {

// In pieces: readLine(n) makes a buffer of n bytes first, and the whole limit for every line of
// a file cost a megabyte's allocation each. The pieces land in one buffer on the stack, so a
// line that fits in one costs no allocation but its text.
const qint64 piece = 4096;

void setText(QString *line, QString text)
{
    text.remove(QLatin1Char('\n'));
    text.remove(QLatin1Char('\r'));
    *line = text;
}

// The rest of a line whose first piece (raw) ended neither the line nor the file.
void readLongLine(QIODevice &file, QByteArray raw, QString *line)
{
    char buffer[piece];
    while (!raw.endsWith('\n') && !file.atEnd() && raw.size() < maxLineBytes - 1) {
        const qint64 got = file.readLine(buffer, qMin(piece, maxLineBytes - raw.size()));
        if (got > 0)
            raw.append(buffer, int(got));
    }
    if (!raw.endsWith('\n')) {
        while (!file.atEnd()) {
            const qint64 got = file.readLine(buffer, piece);
            if (got > 0 && buffer[got - 1] == '\n')
                break;
        }
    }
    setText(line, QString::fromUtf8(raw));
}

} // namespace

bool nextLine(QIODevice &file, QString *line)
{
    if (file.atEnd())
        return false;
    char buffer[piece];
    const qint64 got = file.readLine(buffer, piece);
    if ((got <= 0 || buffer[got - 1] != '\n') && !file.atEnd()) {
        readLongLine(file, got > 0 ? QByteArray(buffer, int(got)) : QByteArray(), line);
        return true;
    }
    // Up to the first NUL, as the text of a byte array would be.
    setText(line, got > 0 ? QString::fromUtf8(buffer, int(qstrnlen(buffer, size_t(got)))) : QString());
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
