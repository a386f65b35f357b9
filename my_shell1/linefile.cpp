#include "linefile.h"

#include <QByteArrayMatcher>
#include <QFile>
#include <QVector>

#include <cstring>

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

namespace {

// A line's bytes as read, "\n" included, looked at once: its text ends at a NUL byte, as it
// always has; its body is the text without a final "\n" or "\r\n"; plain when the body holds
// no "\r" or "\n" of its own.
struct LineBytes {
    LineBytes(const char *data, int size) : bytes(data)
    {
        const char *nul = static_cast<const char *>(std::memchr(bytes, 0, size_t(size)));
        text = nul ? int(nul - bytes) : size;
        body = text;
        if (body > 0 && bytes[body - 1] == '\n')
            body -= body > 1 && bytes[body - 2] == '\r' ? 2 : 1;
        plain = !std::memchr(bytes, '\r', size_t(body)) && !std::memchr(bytes, '\n', size_t(body));
    }
    const char *bytes;
    int text;
    int body;
    bool plain;
};

// As text: UTF-8, every "\n" and "\r" taken out. The decoder gives both bytes back as they
// are, so the line end of a plain line is the text's last characters and goes without a search.
QString lineText(const LineBytes &line)
{
    QString text = QString::fromUtf8(line.bytes, line.text);
    if (line.plain) {
        text.chop(line.text - line.body);
    } else {
        text.remove(QLatin1Char('\n'));
        text.remove(QLatin1Char('\r'));
    }
    return text;
}

// Whether the text can hold one of the keys (ASCII). The decoder gives ASCII bytes back one for
// one and never makes them of other bytes, so the text holds a key only where the bytes do; a
// return inside the line, which the text loses, sends the line to be decoded.
bool mayHold(const LineBytes &line, const QVector<QByteArrayMatcher> &keys)
{
    if (keys.isEmpty() || !line.plain)
        return true;
    for (const QByteArrayMatcher &key : keys) {
        if (key.indexIn(line.bytes, line.body) >= 0)
            return true;
    }
    return false;
}

} // namespace

bool nextLine(QIODevice &file, QString *line)
{
    QByteArray raw;
    bool cut = false;
    if (!nextRaw(file, &raw, &cut))
        return false;
    *line = lineText(LineBytes(raw.constData(), raw.size()));
    return true;
}

bool readLines(const QString &hostPath, QStringList *lines, const QList<QByteArray> &keys)
{
    QFile file(hostPath);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    // The file in large pieces rather than a device call a line: the large medium's three
    // passes over 10,000 lines felt it. Lines come out as nextLine gives them.
    QVector<QByteArrayMatcher> matchers;
    for (const QByteArray &key : keys)
        matchers.append(QByteArrayMatcher(key));
    const auto take = [&](const char *bytes, int size) {
        const LineBytes line(bytes, size);
        lines->append(mayHold(line, matchers) ? lineText(line) : QString());
    };
    const qint64 pieceSize = 1 << 16;
    QByteArray piece(int(pieceSize), Qt::Uninitialized);
    QByteArray pending;   // the kept bytes of a line that goes on in the next piece
    qint64 lineBytes = 0;   // bytes of that line so far, "\n" counted, kept or not
    for (qint64 got = file.read(piece.data(), pieceSize); got > 0;
         got = file.read(piece.data(), pieceSize)) {
        const char *p = piece.constData();
        const char *end = p + got;
        while (p < end) {
            const char *newline = static_cast<const char *>(std::memchr(p, '\n', size_t(end - p)));
            const char *stop = newline ? newline + 1 : end;
            // Only the first maxLineBytes - 1 bytes of a line, "\n" included, are kept.
            const qint64 keep = qMin<qint64>(qMax<qint64>(0, maxLineBytes - 1 - lineBytes), stop - p);
            lineBytes += stop - p;
            if (newline && pending.isEmpty() && keep == stop - p) {
                take(p, int(keep));   // the usual line, whole in this piece
            } else {
                pending.append(p, int(keep));
                if (newline)
                    take(pending.constData(), pending.size());
            }
            if (newline) {
                pending.clear();
                lineBytes = 0;
            }
            p = stop;
        }
    }
    if (lineBytes > 0)
        take(pending.constData(), pending.size());
    return true;
}

} // namespace linefile
