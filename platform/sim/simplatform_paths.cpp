#include "simplatform.h"
#include "simshared.h"

#include <QDir>
#include <QFileInfo>

using namespace sim;

// --- paths ---

QString SimPlatform::entryIgnoringCase(const QString &folder, const QString &name) const
{
    // Listings are kept while the folder's own stamp stays the same and settled: a folder changes
    // its modification time whenever an entry is added, removed or renamed.
    const FileStamp stamp = stampOf(folder);
    auto it = m_listings.find(folder);
    if (it == m_listings.end() || it->stamp != stamp || !it->stamp.settled()) {
        if (m_listings.size() > 4096)
            m_listings.clear();
        Listing l;
        l.stamp = stamp;
        const QStringList entries = QDir(folder).entryList(
            QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
        for (const QString &e : entries) {
            l.names.insert(e);
            const QString key = e.toLower();
            if (!l.byFoldedName.contains(key))   // the first in name order wins
                l.byFoldedName.insert(key, e);
        }
        it = m_listings.insert(folder, l);
    }
    if (it->names.contains(name))
        return name;
    return it->byFoldedName.value(name.toLower());
}

QString SimPlatform::driveFolder(QChar letter) const
{
    // A vanished volume keeps its files in drives/, out of the shell's reach.
    if (!currentFacts().volume(letter).present)
        return m_root + QStringLiteral("/vanished/") + letter.toUpper();
    const QString name = entryIgnoringCase(m_root + QStringLiteral("/drives"), QString(letter.toUpper()));
    return m_drivesPrefix + (name.isEmpty() ? QString(letter.toUpper()) : name);
}

QString SimPlatform::hostPath(const QString &path) const
{
    if (path.isEmpty())
        return QString();
    if (path.startsWith(m_drivesPrefix, kHostCase) || path == m_root
        || path.startsWith(m_root + QLatin1Char('/'), kHostCase))
        return path;   // already a host path of this machine

    QString p = path;
    p.replace(QLatin1Char('\\'), QLatin1Char('/'));
    if (p.startsWith(QLatin1String("//?/")))
        p = p.mid(4);

    QChar letter;
    QString rest;
    if (isDrivePath(p)) {
        letter = p[0].toUpper();
        rest = p.mid(2);
        // "X:name" is relative to the working directory when that lies on X:
        if (!rest.startsWith(QLatin1Char('/'))) {
            const QString wd = currentFacts().workingDirectory;
            rest = (wd[0].toUpper() == letter ? wd.mid(2) : QString()) + QLatin1Char('/') + rest;
        }
    } else {
        const QString wd = currentFacts().workingDirectory;
        letter = wd[0].toUpper();
        rest = p.startsWith(QLatin1Char('/')) ? p : wd.mid(2) + QLatin1Char('/') + p;
    }

    const bool trailing = rest.endsWith(QLatin1Char('/'));
    QStringList parts;
    for (const QString &c : rest.split(QLatin1Char('/'), Qt::SkipEmptyParts)) {
        if (c == QLatin1String("."))
            continue;
        if (c == QLatin1String("..")) {
            if (!parts.isEmpty())
                parts.removeLast();
            continue;
        }
        parts.append(c);
    }

    // Usually the path is written as it stands on disk: one stat answers. A host that ignores
    // case itself would take any spelling, so there the walk below finds the one on disk.
    if (kHostCase == Qt::CaseSensitive) {
        QString direct = m_drivesPrefix + letter;
        for (const QString &c : parts)
            direct += QLatin1Char('/') + c;
        if (QFileInfo::exists(direct))
            return trailing ? direct + QLatin1Char('/') : direct;
    }

    QString host = driveFolder(letter);

    bool exists = QFileInfo::exists(host);
    for (const QString &c : parts) {
        if (exists) {
            const QString match = entryIgnoringCase(host, c);
            if (!match.isEmpty()) {
                host += QLatin1Char('/') + match;
                continue;
            }
            exists = false;
        }
        host += QLatin1Char('/') + c;
    }
    if (trailing)
        host += QLatin1Char('/');
    return host;
}

QString SimPlatform::drivePath(const QString &host) const
{
    for (const QString *prefix : {&m_drivesPrefix, &m_canonicalDrivesPrefix}) {
        if (host.size() <= prefix->size() || !host.startsWith(*prefix, kHostCase))
            continue;
        const QChar letter = host[prefix->size()];
        if (!letter.isLetter())
            continue;
        const int after = prefix->size() + 1;
        if (after == host.size())
            return letter.toUpper() + QStringLiteral(":/");
        if (host[after] == QLatin1Char('/'))
            return letter.toUpper() + QLatin1Char(':') + host.mid(after);
    }
    return host;
}
