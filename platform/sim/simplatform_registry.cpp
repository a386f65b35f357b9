#include "simplatform.h"
#include "simshared.h"

#include <QFile>
#include <QSaveFile>

using namespace sim;

// --- registry ---

SimRegistry &SimPlatform::registry()
{
    const QString path = m_root + kRegistry;
    const FileStamp stamp = stampOf(path);
    if (!m_registryLoaded || stamp != m_registryStamp || !m_registryStamp.settled()) {
        QFile f(path);
        m_registry.parse(f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray());
        m_registryStamp = stamp;
        m_registryLoaded = true;
    }
    return m_registry;
}

bool SimPlatform::saveRegistry()
{
    QSaveFile f(m_root + kRegistry);
    if (!f.open(QIODevice::WriteOnly))
        return false;
    f.write(m_registry.serialize());
    if (!f.commit())
        return false;
    m_registryStamp = stampOf(m_root + kRegistry);
    return true;
}

RegData SimPlatform::readValue(const QString &key, const QString &name)
{
    return registry().readValue(key, name);
}

QStringList SimPlatform::enumKeys(const QString &key)
{
    return registry().enumKeys(key);
}

bool SimPlatform::keyExists(const QString &key)
{
    return registry().keyExists(key);
}

bool SimPlatform::writeString(const QString &key, const QString &name, const QString &value)
{
    const QString norm = SimRegistry::normalizeKey(key);
    if (norm.isEmpty())
        return false;
    registry().writeString(norm, name, value);
    appendJournal({QStringLiteral("regwrite"), norm, name, QLatin1Char('"') + value + QLatin1Char('"')});
    return saveRegistry();
}

bool SimPlatform::writeDword(const QString &key, const QString &name, quint32 value)
{
    const QString norm = SimRegistry::normalizeKey(key);
    if (norm.isEmpty())
        return false;
    registry().writeDword(norm, name, value);
    appendJournal({QStringLiteral("regwrite"), norm, name,
                   QStringLiteral("dword:%1").arg(value, 8, 16, QLatin1Char('0'))});
    return saveRegistry();
}

RegValue SimPlatform::readUserDword(const QString &key, const QString &name)
{
    const RegData d = readValue(kUserHive + key, name);
    RegValue v;
    v.found = d.found;
    v.type = d.type;
    v.data = d.dword;
    return v;
}

bool SimPlatform::writeUserDword(const QString &key, const QString &name, quint32 value)
{
    return writeDword(kUserHive + key, name, value);
}
