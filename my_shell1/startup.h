#pragma once
// The start-up sequence, from the process's entry to the event loop and after it. Each step that
// fails leaves its default in place; nothing here can stop the shell from coming up.

#include <QString>

class QApplication;

// Another process of the name autorun.exe runs beside this one. Before the application exists.
bool probeSecondInstance();
// Screen size and pixel ratio of the primary screen into the process-wide values.
void readScreen();
// The tool tip look and the product facts.
void applyApplicationLook(QApplication &app);
// The shell runs in Windows PE when HKCU\Software\Morvane Works "WinPE" is a non-zero DWORD.
bool readWinPeMode();
// Scans C: to Z: for _kelpie.ini; fills appRun, appArg, removableBoot, mediumDiskNumber and
// returns the image language (0 when none was found).
int scanSettingsFile();
// The disk number under a drive, or -1 when the system does not tell it for a disk.
int mediumDiskNumberOf(QChar letter);
// Writes the image language for the imaging tool, then waits 100 ms.
void passImageLanguage(int language);
// The boot letter from x:/tmpReg/startNetwork.log, the last line winning.
void readBootLetter();
// Finds the volume with saved folders and restores them.
void restoreSavedFolders();

// Steps 3 to 11 of the sequence, with the application already created.
void prepareShell(QApplication &app);
// The whole process: returns what the event loop returned.
int runShell(int argc, char *argv[]);
