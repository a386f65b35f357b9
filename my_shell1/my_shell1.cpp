#include "my_shell1.h"
#include "ui_my_shell1.h"

#include "desktop/dektopwidget.h"
#include "launcher/mainbutton.h"
#include "launcher/my_action.h"
#include "launcher/my_pushbutton.h"
#include "launcher/mymenu.h"
#include "look/aboutdlg.h"
#include "look/analog_clock.h"
#include "look/lazyicon.h"
#include "look/resources.h"
#include "look/stylesheets.h"
#include "network/static_ip_dlg.h"
#include "platform/platform.h"
#include "settings/savechangingdialog.h"
#include "statustext.h"

#include <QAction>
#include <QPainter>
#include <QTimer>

namespace {

QAction *fixedAction(const QString &text, const char *icon, QObject *parent)
{
    QAction *action = new QAction(lazyFileIcon(shellResource(icon)), text, parent);
    action->setFont(menuFont());
    return action;
}

} // namespace

my_shell1::my_shell1(QWidget *parent)
    : QWidget(parent, Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint),
      form(new Ui::my_shell1Class)
{
    // The locale goes first, before anything is drawn.
    setupLocale();
    if (winPeMode)
        registerKeys();

    desktop = new dektopWidget(nullptr);
    connect(desktop, &dektopWidget::refreshClicked, this, &my_shell1::refreshClicked);
    connect(desktop, &dektopWidget::userProgram_Remove, this, &my_shell1::userProgram_Remove);
    desktop->showMaximized();

    saveDialog = new saveChangingDialog(this);
    staticIpDialog = new static_ip_dlg(nullptr);
    // By name on purpose: the dialog's signal takes int, so this never connects (stop comes from the desktop).
    connect(staticIpDialog, SIGNAL(needStopOperation(quint64)), this, SLOT(needStopOperation(quint64)));
    connect(desktop, &dektopWidget::needStopOperation, this, &my_shell1::needStopOperation);
    desktop->waitPanel->hide();

    displayWidth = screenWidth;
    displayHeight = screenHeight;
    move(0, screenHeight - 3);

    toRunList.clear();
    setMouseTracking(true);
    // Every myMenu below the panel (main menu, its sub-menus, the user menus) wears menuStyle:
    // one sheet here that they inherit, parsed once rather than once for each menu.
    setStyleSheet(menuStyleFor(menuStyle, QStringLiteral("myMenu")));
    ui.setupUi(this);
    ui.label_5->clear();
    panelPixmap.load(shellResource("panel2.png"));
    panelPixmap1.load(shellResource("panel1.png"));
    panelPixmap3.load(shellResource("panel3.png"));
    edgePixmap.load(shellResource("kant.png"));

    resize(screenWidth, 64);
    userMenu = nullptr;

    mainMenu = new myMenu(this);
    connect(mainMenu, &myMenu::needCloseMenu, this, &my_shell1::closeMenu);

    runAction = fixedAction(tr("Run..."), "go.png", this);
    connect(runAction, &QAction::triggered, this, &my_shell1::runTaskDlg);
    aboutAction = fixedAction(tr("About Kelpie"), "help.png", this);
    connect(aboutAction, &QAction::triggered, this, &my_shell1::aboutShell);

    mainMenu->addAction(aboutAction);
    mainMenu->addSeparator();
    createMainMenu();
    refreshClicked();
    mainMenu->addSeparator();
    mainMenu->addAction(runAction);
    loadDriverAction = fixedAction(tr("Load Driver"), "applications_add.png", this);
    connect(loadDriverAction, &QAction::triggered, this, &my_shell1::loadDriver);
    turnOffAction = fixedAction(tr("Turn Off Computer"), "delete.png", this);
    connect(turnOffAction, &QAction::triggered, this, &my_shell1::shutDown);
    mainMenu->addAction(loadDriverAction);
    mainMenu->addAction(turnOffAction);

    layoutMenu = new QMenu(this);
    ui.widget_2->setGeometry(width() - 500, 0, 400, 64);

    createLauncherButtons();
    createFixedButtons();

    clock = new analog_clock(this);
    clock->setGeometry(width() - 68, 0, 64, 64);
    connect(clock, &analog_clock::needStartTimeEditor, this, &my_shell1::startTimeEditor);

    setMask(QRegion(0, 0, displayWidth, 64));

    startButton = new mainButton(this);
    startButton->move(0, 3);
    connect(startButton, &mainButton::needOpenMenu, this, &my_shell1::openMenu);
    connect(startButton, &mainButton::needCloseMenu, this, &my_shell1::closeMenu);
    update();

    dayNames = englishDayNames();
    monthNames = englishMonthNames();

    ui.label->clear();
    ui.label_2->clear();
    ui.label_3->clear();

    noAdapterButton = new my_PushButton(ui.widget);
    ui.horizontalLayout->addWidget(noAdapterButton);
    noAdapterButton->setFlat(true);
    noAdapterButton->setToolTip(tr("No Network Adapter detected\nClick to run Network Configurator"));
    noAdapterButton->setIcon(QIcon(shellResource("noAdapter.png")));
    connect(noAdapterButton, &QPushButton::clicked, this, &my_shell1::startIpConf);

    panelShown = false;
    panelLocked = false;

    hideTimer = new QTimer(this);
    statusTimer = new QTimer(this);
    menuCloseTimer = new QTimer(this);
    staticIpTimer = new QTimer(this);
    mapNetworkTimer = new QTimer(this);
    connect(hideTimer, &QTimer::timeout, this, &my_shell1::hideWindow);
    connect(statusTimer, &QTimer::timeout, this, &my_shell1::getSystemCondition);
    connect(menuCloseTimer, &QTimer::timeout, this, &my_shell1::closeMenu1);
    connect(staticIpTimer, &QTimer::timeout, this, &my_shell1::checkStaticIP);
    connect(mapNetworkTimer, &QTimer::timeout, this, &my_shell1::checkMapNetwork);

    updateDesktopInfo();
    adapterPollCount = 0;
    initTimer = new QTimer(this);
    initTimer->setSingleShot(true);
    connect(initTimer, &QTimer::timeout, this, &my_shell1::init);
    initTimer->start(10);

    // Messages that reach the panel by another road than nativeEvent (a simulated machine's inbox).
    sys().setMessageSink([this](const NativeMessage &message) { handleNativeMessage(message); });
}

my_shell1::~my_shell1()
{
    hideTimer->stop();
    sys().setMessageSink(nullptr);
    delete desktop;
    delete hideTimer;
    delete statusTimer;
    delete startButton;
    for (my_PushButton *button : {keyboardButton, timeButton, displayButton, taskManagerButton,
                                  explorerButton, shotButton})
        delete button;
    delete clock;
    delete aboutAction;
    delete loadDriverAction;
    delete turnOffAction;
    delete runAction;
    qDeleteAll(netButtons);
    qDeleteAll(menuActions);
    // Unregistered whether or not they were registered: harmless outside Windows PE.
    const quintptr window = quintptr(internalWinId());
    for (int id = 1; id <= 3; ++id)
        sys().unregisterHotKey(window, id);
    sys().removeKeyboardHook();
    delete staticIpDialog;
}

void my_shell1::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    // The old high-quality hint is folded into Antialiasing by the toolkit.
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    painter.drawPixmap(0, 0, panelPixmap.scaled(width(), 64, Qt::IgnoreAspectRatio));
    // Down, only the top 3 pixels are on the screen: they show the edge line.
    if (!panelShown)
        painter.drawPixmap(0, 0, edgePixmap.scaled(displayWidth, 3, Qt::IgnoreAspectRatio));
}

void my_shell1::aboutShell()
{
    modalOpen = true;
    aboutDlg dialog(this);
    dialog.move(screenWidth / 2 - dialog.width() / 2, screenHeight / 2 - dialog.height() / 2);
    dialog.exec();
    modalOpen = false;
}

void my_shell1::updateDesktopInfo()
{
    desktop->layoutDesktop(shellTitle, shellVersion);
}

void my_shell1::menuHiden()
{
}

void my_shell1::moveWindow()
{
}

void my_shell1::langLinkTriggered()
{
}
