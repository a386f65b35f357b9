#include "qmorvanesettings.h"

QString settingsFileName = QStringLiteral("settings.ini");

namespace {

const QString updatesGroup = QStringLiteral("Updates");

QString fieldKey(int entry, int field)
{
    static const char *const names[] = {"Version", "Title", "Date", "Notes", "Setup"};
    if (field < 0 || field > SetupField)
        return QString();
    return QStringLiteral("Update%1_%2").arg(entry).arg(QLatin1String(names[field]));
}

} // namespace

QMorvaneSettings::QMorvaneSettings(const QString &group, QObject *parent)
    : QSettings(settingsFileName, QSettings::IniFormat, parent)
{
    setIniCodec("UTF-8");
    beginGroup(group);
}

QString getUpdateField(int entry, int field)
{
    const QString key = fieldKey(entry, field);
    if (key.isEmpty())
        return QString();
    return QMorvaneSettings(updatesGroup).value(key).toString();
}

void setUpdateField(int entry, int field, const QString &value)
{
    const QString key = fieldKey(entry, field);
    if (key.isEmpty())
        return;
    QMorvaneSettings(updatesGroup).setValue(key, value);
}

int updateEntryFor(const QString &version)
{
    int n = 0;
    for (QString v = getUpdateField(n, VersionField); !v.isEmpty() && v != version;
         v = getUpdateField(++n, VersionField)) {
    }
    return n;
}
