#pragma once
// The settings file _kelpie.ini of the first drive that holds one, as the start-up reads it
// before the main window exists: a plain reader without widgets. A key counts only at the first
// column and a later line wins.

#include <QString>

class QIODevice;

struct SettingsFileFacts {
    bool hasAppRun = false, hasArg = false;   // the key stood in the file
    QString appRun, arg;
    int imageLanguage = 0;
    bool removable = false;   // a line "remDev=1"; the start-up then asks the drive its disk number
};

namespace startupfiles {

// Reads an open device to its end.
SettingsFileFacts readSettingsFile(QIODevice *device);

} // namespace startupfiles
