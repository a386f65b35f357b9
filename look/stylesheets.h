#pragma once
// The shell's style sheets and white rich-text prefixes, kept in one place so that every widget
// that wears them points here. Each returns the exact text to hand to setStyleSheet / setText.

#include <QString>

// Set on the application right after it is created.
QString toolTipStyleSheet();
// Every pop-up menu of the shell; the hub copies it into the process-wide menuStyle.
QString menuStyleSheet();
// The desktop widget's blue.
QString desktopStyleSheet();
// Labels of the desktop's wait panel.
QString whiteTextStyleSheet();
// Shortcut buttons of the desktop.
QString shortcutTextStyleSheet();
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
