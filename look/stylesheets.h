#pragma once
// The shell's style sheets and white rich-text prefixes, kept in one place so that every widget
// that wears them points here. Each returns the exact text to hand to setStyleSheet / setText.

#include <QString>

// Set on the application right after it is created.
QString toolTipStyleSheet();
// Every pop-up menu of the shell; the hub copies it into the process-wide menuStyle.
QString menuStyleSheet();
// A menu sheet (menuStyle) with its type selector "QMenu" replaced by `selector`: set once on a
// parent, it dresses the menus below it that the selector picks exactly as their own copy would,
// and the sheet is parsed once instead of once per menu.
QString menuStyleFor(const QString &menuSheet, const QString &selector);
// The desktop widget's blue, followed by the looks of its shortcut buttons (white text) and of
// their menus (menuSheet), which the buttons and menus inherit instead of bearing their own.
QString desktopStyleSheet(const QString &menuSheet);
// Labels of the desktop's wait panel.
QString whiteTextStyleSheet();
// The restart and the turn off button of the turn off dialog, painted from three pictures each.
QString restartButtonStyleSheet();
QString turnOffButtonStyleSheet();

// Rich-text prefix that makes a label's text white on the dark panel. Inline, so that the status
// texts, which link no widgets, share it.
inline QString whitePrefix()
{
    return QStringLiteral("<p style=\"color:#FFFFFF\">");
}
// The same, with the larger font of the About box's web line.
QString whiteLargePrefix();
