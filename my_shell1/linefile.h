#pragma once
// Line-oriented files (data_shell.cfg, _kelpie.ini, the logs under x:/) as the shell reads them:
// each line UTF-8 whatever the first bytes say, every "\n" and "\r" taken out.

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

class QIODevice;

namespace linefile {

// At most this much of one line is kept and the rest of an overlong line skipped, so a file of
// one endless line costs bounded memory.
const qint64 maxLineBytes = 1 << 20;

// The next line's bytes as they stand, "\n" included; an overlong line gives its first bytes,
// the rest is read past and *cut says so. False at the end or when the device fails.
bool nextRaw(QIODevice &file, QByteArray *raw, bool *cut);
// The next line; false at the end.
bool nextLine(QIODevice &file, QString *line);
// Every line of the file at a host path; false if it won't open. With keys given, a line whose
// text can hold none of them comes back empty without being decoded, so that a pass looking for
// one key goes through the lines at the speed of a byte search.
bool readLines(const QString &hostPath, QStringList *lines, const QList<QByteArray> &keys = {});

} // namespace linefile
