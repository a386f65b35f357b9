#pragma once
// Process-wide values of the shell. Each is written by one part of the program (start-up, the
// status panel, the configuration reader, ...) and read by others; they live as long as the process.

#include "platform/platform.h"

#include <QFont>
#include <QList>
#include <QPoint>
#include <QString>
#include <QStringList>

struct RunEntry {
    QString program;
    QString arguments;
};

struct AppEntry {
    int id = 0;
    QString path;
    QString params;
};

// Written by the start-up sequence.
extern bool secondInstance;
extern int screenWidth;
extern int screenHeight;
extern double pixelRatio;
extern bool winPeMode;
extern QString appRun;
extern QString appArg;
extern bool removableBoot;
extern int mediumDiskNumber;
extern QString bootLetter;
extern QString savedVolumeLetter;
extern QString desktopPath;
extern QString startMenuPath;
// The saved twin of a file of the running image on the settings volume: savedVolumeLetter, ":/",
// the saved folder ("Desktop.1", "Start Menu.1") and the path without its drive. Empty without
// a saved volume, as such a twin points nowhere.
QString savedTwin(const QString &savedFolder, const QString &path);
// Deletes that saved copy of a file the user removed; nothing when there is no saved volume.
void removeSavedTwin(const QString &savedFolder, const QString &path);
// The letters of a logical drive mask from A on, bit 0 being A.
QList<QChar> driveLetters(quint32 mask);
// The folder settings file that the desktop, the start menu and the saved folders pass over.
bool isDesktopIni(const QString &fileName);
QFont &menuFont();   // "Tahoma" 11; a function so that it is built after the application
extern QString menuStyle;
// Product facts that the update exchange reports.
extern int productNumber;
extern QString productVersion;
extern int productCode;
void storeProductFacts();   // 14, "14.0.1", 0: what the start-up stores for the update exchange

// Written by the status panel and the hide/show logic.
extern int displayWidth;
extern int displayHeight;
extern bool modalOpen;
extern bool shuttingDown;
extern bool tooltipStale;
extern quint16 lastLayoutLanguage;
extern WorkArea savedWorkArea;   // the work area as read before the panel last wrote it
extern QPoint dragOffset;   // last press point of the panel or its buttons; written, never used

// The User Programs entry the desktop's remove button stands for; cleared by each refresh.
class my_userAction;
extern my_userAction *selectedUserAction;

// Written by the configuration reader.
extern QString shellTitle;
extern QString shellVersion;
extern QString webDefault;
extern QList<RunEntry> toRunList;

// Puts every value back to what it is before main; tests start from here.
void resetGlobals();
