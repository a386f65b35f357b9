#pragma once
// The local history of installed updates, group "Updates" of settings.ini. Entry n has five keys,
// "Update<n>_Version", "_Title", "_Date", "_Notes", "_Setup" (fields 0 to 4). The list is dense:
// the first entry without a version ends it. Oldest first.

#include <QSettings>

// The settings file: relative to the working directory unless a run names another.
extern QString settingsFileName;

class QMorvaneSettings : public QSettings {
public:
    // Opens settingsFileName as UTF-8 INI and begins the group at once.
    explicit QMorvaneSettings(const QString &group, QObject *parent = nullptr);
};

enum UpdateField { VersionField, TitleField, DateField, NotesField, SetupField };

// Empty for an unset key or a field above 4.
QString getUpdateField(int entry, int field);
// No effect for a field above 4.
void setUpdateField(int entry, int field, const QString &value);
// The entry that holds this version text, or else the first free one.
int updateEntryFor(const QString &version);
