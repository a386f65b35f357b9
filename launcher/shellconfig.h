#pragma once
// Reading rules of data_shell.cfg, in one place and free of widgets, so that the shell and the
// medium builders' checker read a file alike. Each pass opens the file, reads it from the first
// line to the last and closes it again, as the shell does three times at start.

#include "my_shell1/globals.h"

#include <QList>
#include <QString>

// What a line gave, or why it was left; collected only when asked for (the checker).
struct ConfigNote {
    int line = 0;   // 1-based
    QString text;
};

// One placed line of the main menu, in file order.
struct MenuLine {
    enum Kind { SubMenu, Separator, Item };
    Kind kind = Item;
    int line = 0;
    int id = 0;          // SubMenu: menu id; Item: item id
    int parentId = 0;    // Item only
    QString text;
    QString icon;        // as written; the "24" to "32" swap is the menu builder's
    QString path;        // Item only
    QString params;      // Item only
    QString hint;        // Item only
};

struct MainMenuPass {
    bool opened = false;
    QList<RunEntry> toRun;
    // A text key that stands in no line leaves the shell's value alone.
    bool hasVersion = false, hasTitle = false, hasWebDefault = false;
    QString version, title, webDefault;
    QList<MenuLine> menu;
};

struct LauncherLine {
    int line = 0;
    int id = 0;   // 1000 for the first good line, then one more each
    QString normalImage, nearImage, activeImage, tip, path, params;
};

struct LauncherPass {
    bool opened = false;
    QList<LauncherLine> buttons;
};

struct FixedButtonSetting {
    bool set = false;   // a good line of this key stood in the file; the last one wins
    int line = 0;
    QString icon, tip, command;
};

struct FixedPass {
    bool opened = false;
    FixedButtonSetting buttons[5];   // fixedB1= .. fixedB5=
};

namespace shellconfig {

// The file's name, relative to the working directory, as the shell opens it.
inline const char *fileName() { return "data_shell.cfg"; }

// Fields of a value split at "|", empty fields kept.
QStringList splitFields(const QString &value);

// Base 10; what is not a number is 0.
int number(const QString &field);
int number(const QStringRef &field);

// The three passes. drivePath is a drive path (or one relative to the working directory) and is
// opened through the platform, read-only, as UTF-8 whatever its first bytes say.
MainMenuPass readMainMenu(const QString &drivePath = QString::fromLatin1(fileName()),
                          QList<ConfigNote> *notes = nullptr);
LauncherPass readLauncherButtons(const QString &drivePath = QString::fromLatin1(fileName()),
                                 QList<ConfigNote> *notes = nullptr);
FixedPass readFixedButtons(const QString &drivePath = QString::fromLatin1(fileName()),
                           QList<ConfigNote> *notes = nullptr);

// The per-line rules, for callers that hold the lines already (checker, tests).
void mainMenuLine(const QString &rawLine, int lineNo, MainMenuPass *pass, QList<ConfigNote> *notes);
void launcherLine(const QString &rawLine, int lineNo, int *nextId, LauncherPass *pass,
                  QList<ConfigNote> *notes);
void fixedLine(const QString &rawLine, int lineNo, FixedPass *pass, QList<ConfigNote> *notes);

} // namespace shellconfig
