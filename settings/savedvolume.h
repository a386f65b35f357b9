#pragma once
// Finding the volume that holds the folders an earlier run saved, and bringing them back.

#include <QString>
#include <QStringList>

// Root path ("E:/") of the first ready drive whose root holds an entry named like one of
// `names` (ignoring case, files count as well as folders), or the empty string.
QString findSavedVolume(const QStringList &names);
// Copies the saved folders of the volume back onto the running system.
void restoreSavedFiles(const QString &letter);
// Records the start menu and desktop as they stand, for the comparison at turn off.
void writeConditionLogs();
