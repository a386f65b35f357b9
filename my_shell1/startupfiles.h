#pragma once
// The two files that the start-up reads before the main window exists, as plain readers without
// widgets: the settings file _kelpie.ini of the first drive that holds one, and the boot letter
// of x:/tmpReg/startNetwork.log. Both read lines as UTF-8 with every CR and LF taken out; a key
// counts only at the first column and a later line wins.

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
// The value of the last "bootLetter=" line; false when there was none.
bool readBootLetter(QIODevice *device, QString *letter);

} // namespace startupfiles
