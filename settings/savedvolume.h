#pragma once
// The saved folders on a volume: finding them, bringing their files back at start-up, pointing
// restored shortcuts at the drive where their program now lies, and the condition logs that say
// what the start menu and the desktop held once start-up was done.

#include <QString>
#include <QStringList>

// Root path ("E:/") of the first ready drive whose root holds an entry named like one of
// `names` (ignoring case, files count as well as folders), or the empty string.
QString findSavedVolume(const QStringList &names);
// Appends the files below folder (which ends in "/"), sorted by name ignoring case, recursing
// into sub-folders; desktop.ini is left out in any case.
void listFiles(QStringList &list, const QString &folder);
// Copies the saved folders of the volume back onto the running system.
void restoreSavedFiles(const QString &letter);
// One saved file back to where it lay on X:, without overwriting; a shortcut is retargeted.
void restoreFile(const QString &source);
// Makes the folders above path; false when one can be neither found nor made.
bool makeParentFolders(const QString &path);
// Points a shortcut whose program moved to another drive letter at it.
void retargetShortcut(QString path);
// path, or the same path on the first ready drive that holds it; empty when none does.
QString findOnDrives(const QString &path);
// Records the start menu and desktop as they stand, for the comparison at turn off (Windows PE
// only).
void writeConditionLogs();
// The files below folder that the log at logPath does not name (compared ignoring case); true
// when there are any.
bool findAddedFiles(QStringList &added, const QString &logPath, const QString &folder);
// Copies source under its full path, without its drive, below target ("E:/Desktop.1"); never
// overwrites. False only when target is no path.
bool copyToVolume(QString source, QString target);

// Where the condition logs lie.
extern const QString startMenuConditionLog;
extern const QString desktopConditionLog;
