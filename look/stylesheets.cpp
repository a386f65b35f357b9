#include "stylesheets.h"

#include "resources.h"

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

QString menuStyleFor(const QString &menuSheet, const QString &selector)
{
    QString sheet = menuSheet;
    return sheet.replace(QLatin1String("QMenu"), selector);
}

QString desktopStyleSheet(const QString &menuSheet)
{
    // In one sheet with "QWidget" the menu rules would win by order alone; their longer
    // selectors outrank it, as the menus' own sheets did.
    return QStringLiteral("QWidget{background: #1273aa;}my_ToolButton {color: #FFFFFF}")
           + menuStyleFor(menuSheet, QStringLiteral("my_ToolButton QMenu"));
}

QString whiteTextStyleSheet()
{
    return QStringLiteral("color: #FFFFFF");
}

// The two button sheets differ only in the letter of their pictures.
static QString pictureButtonStyleSheet(char letter)
{
    const QString picture = QStringLiteral("buttn_") + QLatin1Char(letter) + QStringLiteral("_%1.png");
    return QStringLiteral(
               "QPushButton{border: 0px solid #000105;border-radius: 6px;"
               "background: url(%1);}"
               "QPushButton:hover {background: url(%2);}"
               "QPushButton:pressed {background: url(%3);}")
        .arg(shellResource(picture.arg(QStringLiteral("normal"))),
             shellResource(picture.arg(QStringLiteral("hover"))),
             shellResource(picture.arg(QStringLiteral("pressed"))));
}

QString restartButtonStyleSheet()
{
    return pictureButtonStyleSheet('r');
}

QString turnOffButtonStyleSheet()
{
    return pictureButtonStyleSheet('t');
}

QString whiteLargePrefix()
{
    return whitePrefix() + QStringLiteral("<font size=4>");
}
