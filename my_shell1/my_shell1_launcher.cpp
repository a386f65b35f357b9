// The panel's launcher operations: the menus and buttons that data_shell.cfg fills, and every
// start that the panel makes itself.

#include "my_shell1.h"
#include "ui_my_shell1.h"

#include "launcher/appstart.h"
#include "launcher/mainbutton.h"
#include "launcher/menubuilder.h"
#include "launcher/my_action.h"
#include "launcher/my_pushbutton.h"
#include "launcher/mybutton.h"
#include "launcher/mymenu.h"
#include "launcher/shellconfig.h"
#include "look/lazyicon.h"
#include "look/resources.h"
#include "platform/platform.h"

#include <QIcon>
#include <QTimer>

namespace {


} // namespace

void my_shell1::createMainMenu()
{
    // Its menuStyle comes from the panel's sheet.
    mainMenu->setFont(menuFont());

    const MainMenuPass pass = shellconfig::readMainMenu();
    if (!pass.opened)
        return;
    menuActions.clear();
    appList.clear();

    toRunList += pass.toRun;
    if (pass.hasVersion)
        shellVersion = pass.version;
    if (pass.hasTitle)
        shellTitle = pass.title;
    if (pass.hasWebDefault)
        webDefault = pass.webDefault;

    MainMenuParts parts;
    parts.owner = this;
    parts.mainMenu = mainMenu;
    parts.menuActions = &menuActions;
    parts.subMenus = &subMenus;
    parts.appList = &appList;
    parts.startApp = [this](int id) { startApp(id); };
    parts.closeMenu = [this] { closeMenu(); };
    buildMainMenuEntries(pass, parts);

    RunEntry medium;
    if (appstart::mediumStartEntry(appRun, appArg, removableBoot, mediumDiskNumber, &medium))
        toRunList.append(medium);
}

void my_shell1::createLauncherButtons()
{
    const LauncherPass pass = shellconfig::readLauncherButtons();
    int x = 110;
    for (const LauncherLine &line : pass.buttons) {
        auto *button = new MyButton(this, x, 35, line.id, 1, line.normalImage, line.nearImage,
                                    line.activeImage, line.tip);
        connect(button, &MyButton::i_am_active, this, &my_shell1::some_button_is_active);
        connect(this, &my_shell1::button_is_active, button, &MyButton::near_button_is_active);
        connect(button, &MyButton::looseActive, this, &my_shell1::notActiveButtons);
        connect(button, &MyButton::mButtonClicked, this, &my_shell1::startApp);
        appList.append({line.id, line.path, line.params});
        x += 38;
    }
}

void my_shell1::createFixedButtons()
{
    netButtons.clear();

    auto make = [this](const char *icon, const QString &tip, void (my_shell1::*slot)()) {
        auto *b = new my_PushButton(ui.widget_3);
        b->setFlat(true);
        b->setIconSize(QSize(16, 16));
        // Most stay hidden, or take the file's picture: decoded only if painted.
        b->setIcon(lazyFileIcon(shellResource(icon)));
        if (!tip.isEmpty())
            b->setToolTip(tip);
        ui.horizontalLayout_3->addWidget(b);
        connect(b, &QPushButton::clicked, this, slot);
        b->hide();
        return b;
    };
    const QString tipHead = QStringLiteral("<B>%1</B><p style=\"margin-top:2px;margin-bottom:0px\">%2");
    keyboardButton = make("keyboard_key.png",
                          tipHead.arg(tr("Virtual on-screen keyboard"),
                                      tr("Virtual on-screen keyboard that can be used on touchscreens and operated with mouse")),
                          &my_shell1::startKeyb);
    timeButton = make("time.png",
                      tipHead.arg(tr("Date and Time"), tr("View and Change Date, Time and Time Zone")),
                      &my_shell1::startTimeEditor);
    // Its tip is written by the resolution check.
    displayButton = make("Disp.png", QString(), &my_shell1::startDispConf);
    taskManagerButton = make("diagnostic.png",
                             tipHead.arg(tr("Task Manager"),
                                         tr("Monitor applications and services running, system performance and resources")),
                             &my_shell1::startTaskManager);
    explorerButton = make("explore.png",
                          tipHead.arg(tr("Explore My Computer"), tr("Copy, move, delete files and folders")),
                          &my_shell1::startExplorer);
    // The screenshot button wears the explorer's picture until the file gives it one.
    shotButton = make("explore.png",
                      tipHead.arg(tr("Screenshot"),
                                  tr("Create and save a snapshot of your current screen display")),
                      &my_shell1::startShot);

    const FixedPass pass = shellconfig::readFixedButtons();
    my_PushButton *buttons[5] = {timeButton, displayButton, taskManagerButton, explorerButton, shotButton};
    QString *commands[5] = {&cmdTime, &cmdDisplay, &cmdTaskManager, &cmdExplorer, &cmdShot};
    for (int i = 0; i < 5; ++i) {
        const FixedButtonSetting &s = pass.buttons[i];
        if (!s.set)
            continue;
        buttons[i]->setIcon(QIcon(s.icon));
        buttons[i]->setToolTip(s.tip);
        *commands[i] = s.command;
        buttons[i]->show();
    }
}

void my_shell1::openMenu()
{
    const int h = mainMenu->sizeHint().height();
    const int top = mainMenuTop(screenHeight, y(), h);
    mainMenu->exec(QPoint(x(), top));
    if (startButton)
        startButton->menuRunning = false;
}

void my_shell1::closeMenu()
{
    // Only looks: the menu closes by its own means. Kept as the target of every needCloseMenu().
    bool inside = mainMenu->mouseInside;
    for (myMenu *m : qAsConst(subMenus))
        inside = inside || m->mouseInside;
    Q_UNUSED(inside);
}

void my_shell1::closeMenu1()
{
    menuCloseTimer->stop();
    if (mainMenu->mouseInside)
        return;
    for (myMenu *m : qAsConst(subMenus)) {
        if (m->mouseInside)
            return;
    }
    mainMenu->close();
    if (startButton)
        startButton->opened = false;
}

void my_shell1::startApp(int id)
{
    for (AppEntry &entry : appList) {
        if (entry.id != id)
            continue;
        if (entry.path.isEmpty())
            return;
        if (entry.path == QLatin1String("#mapdrive"))
            entry.path = QStringLiteral("mapDrive.exe");
        QString path = entry.path;
        path.replace(QLatin1Char('/'), QLatin1Char('\\'));
        appstart::open(path, entry.params);
        return;
    }
}

void my_shell1::runTaskList()
{
    if (secondInstance)
        return;
    for (const RunEntry &entry : qAsConst(toRunList)) {
        const QString path = appstart::taskListPath(entry.program);
        const ShellResult r = appstart::open(path, entry.arguments);
        addLogInfo(QStringLiteral("run %1=%2").arg(path, QString::number(r.lastError)));
    }
    toRunList.clear();
}

void my_shell1::startKeyb()
{
    appstart::open(QStringLiteral("osk.exe"));
}

void my_shell1::startIpConf()
{
    appstart::open(QStringLiteral("IPcfg.exe"));
}

void my_shell1::startTimeEditor()
{
    appstart::open(cmdTime);
}

void my_shell1::startDispConf()
{
    appstart::open(cmdDisplay);
}

void my_shell1::startTaskManager()
{
    appstart::open(cmdTaskManager);
}

void my_shell1::startExplorer()
{
    appstart::open(cmdExplorer);
}

void my_shell1::startShot()
{
    appstart::open(cmdShot);
}

void my_shell1::some_button_is_active(int id)
{
    emit button_is_active(id);
}

void my_shell1::notActiveButtons()
{
    emit button_is_active(-5);
}
