#include "stylesheets.h"

QString toolTipStyleSheet()
{
    return QStringLiteral(
        "QToolTip {border: 0px solid darkkhaki;background: qlineargradient(x1: 0, y1: 0, x2: 0, "
        "y2: 1, stop: 0 #e7effd, stop: 0.2 #A9C8F7, stop: 0.9 #A9C8F7, stop: 1 #e7effd);"
        "opacity: 220;}");
}

QString menuStyleSheet()
{
    return QStringLiteral(
        "QMenu {background-color: #134c78; border: 1px solid black;}"
        "QMenu::item {background-color: #134c78; color: #FFFFFF;}"
        "QMenu::item:selected {background-color: #F4DB8F; color: #083894;}");
}

QString desktopStyleSheet()
{
    return QStringLiteral("QWidget{background: #1273aa;}");
}

QString whiteTextStyleSheet()
{
    return QStringLiteral("color: #FFFFFF");
}

QString shortcutTextStyleSheet()
{
    return QStringLiteral("QToolButton {color: #FFFFFF}");
}

// The two button sheets differ only in the letter of their pictures.
static QString pictureButtonStyleSheet(char letter)
{
    return QStringLiteral(
               "QPushButton{border: 0px solid #000105;border-radius: 6px;"
               "background: url(:/my_shell1/Resources/buttn_%1_normal.png);}"
               "QPushButton:hover {background: url(:/my_shell1/Resources/buttn_%1_hover.png);}"
               "QPushButton:pressed {background: url(:/my_shell1/Resources/buttn_%1_pressed.png);}")
        .arg(QLatin1Char(letter));
}

QString restartButtonStyleSheet()
{
    return pictureButtonStyleSheet('r');
}

QString turnOffButtonStyleSheet()
{
    return pictureButtonStyleSheet('t');
}

QString whitePrefix()
{
    return QStringLiteral("<p style=\"color:#FFFFFF\">");
}

QString whiteLargePrefix()
{
    return QStringLiteral("<p style=\"color:#FFFFFF\"><font size=4>");
}
