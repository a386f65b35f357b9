#include "simplatform.h"
#include "simshared.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QFileSystemWatcher>
#include <QTimer>

#ifndef Q_OS_WIN
#include <sys/stat.h>
#endif

using namespace sim;

namespace sim {

bool present(const QFileInfo &fi)
{
    if (fi.exists())
        return true;
    // isSymLink() goes by the name alone there; opening the file tells whether it is there.
    QFile file(fi.filePath());
    return fi.isSymLink() && file.open(QIODevice::ReadOnly);
}

bool isDrivePath(const QString &p)
{
    return p.size() >= 2 && p[1] == QLatin1Char(':') && p[0].isLetter() && p[0].unicode() < 128;
}

QString journalField(QString s)
{
    for (QChar &c : s) {
        if (c == QLatin1Char('\t') || c == QLatin1Char('\n') || c == QLatin1Char('\r'))
            c = QLatin1Char(' ');
    }
    return s;
}

} // namespace sim

bool SimPlatform::FileStamp::operator==(const FileStamp &o) const
{
    return exists == o.exists && size == o.size && mtimeNs == o.mtimeNs && inode == o.inode;
}

SimPlatform::FileStamp SimPlatform::stampOf(const QString &path)
{
    FileStamp s;
    s.takenNs = QDateTime::currentMSecsSinceEpoch() * 1000000;
#ifdef Q_OS_WIN
    const QFileInfo fi(path);
    if (!present(fi))
        return s;
    s.exists = true;
    s.size = fi.size();
    s.mtimeNs = fi.lastModified().toMSecsSinceEpoch() * 1000000;
#else
    struct stat st;
    if (::stat(QFile::encodeName(path).constData(), &st) != 0)
        return s;
    s.exists = true;
    s.size = st.st_size;
    s.mtimeNs = qint64(st.st_mtim.tv_sec) * 1000000000 + st.st_mtim.tv_nsec;
    s.inode = st.st_ino;
#endif
    return s;
}

SimPlatform::SimPlatform(const QString &machineFolder)
    : m_root(QDir::cleanPath(QFileInfo(machineFolder).absoluteFilePath()))
{
    m_drivesPrefix = m_root + QStringLiteral("/drives/");
    const QString canonical = QFileInfo(m_root).canonicalFilePath();
    m_canonicalDrivesPrefix = canonical.isEmpty() ? m_drivesPrefix : canonical + QStringLiteral("/drives/");
    // Messages sent before this machine came up are not delivered.
    m_inboxOffset = QFileInfo(m_root + kInbox).size();
}

SimPlatform::~SimPlatform() = default;

QString SimPlatform::machineFolder() const
{
    return m_root;
}

QStringList SimPlatform::journal() const
{
    return m_journal;
}

void SimPlatform::appendJournal(const QStringList &fields)
{
    QStringList clean;
    clean.reserve(fields.size());
    for (const QString &f : fields)
        clean.append(journalField(f));
    const QString line = clean.join(QLatin1Char('\t'));
    m_journal.append(line);
    QFile f(m_root + kJournal);
    if (f.open(QIODevice::WriteOnly | QIODevice::Append))
        f.write(line.toUtf8() + '\n');
}

// --- machine.ini ---

const SimMachineFacts &SimPlatform::currentFacts() const
{
    const QString path = m_root + kMachineIni;
    const FileStamp stamp = stampOf(path);
    if (!m_factsLoaded || stamp != m_factsStamp || !m_factsStamp.settled()) {
        QFile f(path);
        const QByteArray content = f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
        m_factsStamp = stamp;
        // The same text keeps the facts in place: callers hold references across path lookups,
        // which look at the facts themselves.
        if (m_factsLoaded && content == m_factsContent)
            return m_facts;
        m_factsContent = content;
        const DisplayMode before = m_facts.currentMode;
        m_facts = SimMachineFacts::fromIni(content);
        m_factsStamp = stamp;
        // A new resolution gives a new work area, as on Windows.
        if (m_factsLoaded && (before.width != m_facts.currentMode.width
                              || before.height != m_facts.currentMode.height))
            m_workAreaSet = false;
        m_factsLoaded = true;
    }
    return m_facts;
}

SimMachineFacts SimPlatform::facts() const
{
    return currentFacts();
}

SimVolume SimPlatform::volume(QChar letter) const
{
    return currentFacts().volume(letter);
}

QString SimPlatform::firewallState() const
{
    return currentFacts().firewall;
}
