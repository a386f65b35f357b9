#pragma once
// The shell's one top-level panel and the hub of the program: it owns the start button, the main
// menu, the launcher and tool buttons, the status labels, the clock, the desktop, the save dialog
// and every timer; the other objects reach the rest of the system through its slots.

#include "globals.h"
#include "network/ip_settings.h"

#include <QFileIconProvider>
#include <QList>
#include <QPixmap>
#include <QWidget>

#include <memory>

class QAction;
class QFileInfo;
class QMenu;
class QTimer;
class aboutDlg;
class analog_clock;
class dektopWidget;
class mainButton;
class myMenu;
class my_Action;
class my_PushButton;
class saveChangingDialog;
class static_ip_dlg;

namespace Ui {
class my_shell1Class;
}

class my_shell1 : public QWidget {
    Q_OBJECT

public:
    explicit my_shell1(QWidget *parent = nullptr);
    ~my_shell1() override;

    // Launcher: the three readers of data_shell.cfg.
    void createMainMenu();
    void createLauncherButtons();
    void createFixedButtons();
    // User programs menu: the entries of the start menu folder (info of a host path).
    void addUserProgram(const QFileInfo &info, QMenu *menu);
    void addUserFolder(const QFileInfo &info, QMenu *parentMenu);
    bool folderHasFiles(QString path);
    // Desktop: hands the title and version to the desktop and lets it fit the screen.
    void updateDesktopInfo();
    // Delayed initialisation: the share mapping stage or, without its script, the main menu.
    void beginMapNetwork();
    // The network step of the slow tick: keeps the adapter buttons and their reports up to date.
    void networkStep();
    // At turn off: compares the system with the condition logs and the network with its state at
    // start, and runs the Save dialog when anything was added or changed.
    void askToSaveChanges();
    // Makes the adapter buttons once the first ticks have passed and adapters are known.
    void updateNetworkButtons();
    // A native message, from nativeEvent or from another road of the platform. True when the
    // message is taken (hot key 1), false when it goes on to the base class.
    bool handleNativeMessage(const NativeMessage &message);
    // The low-level keyboard hook: true swallows the key.
    static bool keyboardHookEvent(const KeyHookEvent &event);
    // The work area with its bottom k panel pixels above the display's bottom, at the whole-number
    // scale between display pixels and the panel's logical pixels.
    static WorkArea workAreaLeaving(const WorkArea &area, int k);

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void enterEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    bool nativeEvent(const QByteArray &eventType, void *message, long *result) override;

signals:
    void closeApp();
    void button_is_active(int id);

public slots:
    void closeMenu1();
    void userProgram_Cliked();
    void userProgram_Remove();
    void showRemoveAction(int x, int y);
    void userMenuClosed();
    void on_label_7_linkActivated(QString link);
    void langLinkTriggered();
    void on_pushButton_3_clicked();
    void openMenu();
    void closeMenu();
    void menuHiden();
    void needStopOperation(int operation);
    void hideWindow();
    void showWindow();
    void SetWindowOpacity(int level);
    void moveWindow();
    void init();
    void getSystemCondition();
    void getMemory();
    void getResolution();
    void some_button_is_active(int id);
    void notActiveButtons();
    void startTaskManager();
    void startDispConf();
    void startIpConf();
    void startExplorer();
    void startTimeEditor();
    void startApp(int id);
    void startRegScript();
    void updateResolution();
    void shutDown();
    void loadDriver();
    void loadDriver_new(QString path);
    void runTaskDlg();
    void runTaskList();
    void runPXEscripts();
    void aboutShell();
    void addLogInfo(QString s);
    void startShot();
    void startKeyb();
    void checkStaticIP();
    void checkMapNetwork();
    void refreshClicked();

private:
    // Applies the medium's locale file, before anything is drawn.
    void setupLocale();
    // The three hot keys and the keyboard hook, in Windows PE only.
    void registerKeys();
    // Folders of the start menu tree being built now, by their canonical path: a folder that
    // leads back into one of them (a junction) is passed over.
    QStringList userFolderChain;
    // The status report of the first adapter the network subsystem knows; false without one.
    bool firstAdapterReport(QString *report);

public:
    // Members in their order; public so that the parts of the shell and its tests reach them.
    // The form; its generated header is private to this folder, so its files include
    // "ui_my_shell1.h" themselves and others reach the panel through the members below.
    std::unique_ptr<Ui::my_shell1Class> form;
    Ui::my_shell1Class &ui = *form;
    QFileIconProvider iconProvider;
    bool panelShown = false;
    bool panelLocked = false;
    bool startIpPending = false;
    mainButton *startButton = nullptr;
    ip_settings netInfo;
    analog_clock *clock = nullptr;
    int adapterPollCount = 0;
    QPixmap panelPixmap;    // panel2.png: the strip
    QPixmap panelPixmap1;   // panel1.png
    QPixmap panelPixmap3;   // panel3.png
    QPixmap edgePixmap;     // kant.png: the 3-pixel edge
    QPixmap unusedPixmap;   // never loaded
    myMenu *mainMenu = nullptr;
    QMenu *layoutMenu = nullptr;
    myMenu *userMenu = nullptr;
    QList<QAction *> layoutActions;
    QList<my_Action *> menuActions;
    QList<AppEntry> appList;
    QAction *aboutAction = nullptr;
    QAction *loadDriverAction = nullptr;
    QAction *turnOffAction = nullptr;
    QAction *runAction = nullptr;
    QTimer *hideTimer = nullptr;
    QTimer *statusTimer = nullptr;
    QTimer *menuCloseTimer = nullptr;
    QTimer *staticIpTimer = nullptr;
    QTimer *mapNetworkTimer = nullptr;
    my_PushButton *keyboardButton = nullptr;
    my_PushButton *timeButton = nullptr;
    my_PushButton *displayButton = nullptr;
    my_PushButton *taskManagerButton = nullptr;
    my_PushButton *explorerButton = nullptr;
    my_PushButton *shotButton = nullptr;
    my_PushButton *noAdapterButton = nullptr;
    QString cmdTaskManager;
    QString cmdDisplay;
    QString cmdExplorer;
    QString cmdTime;
    QString cmdShot;
    int bringUpStep = 0;
    int bringUpStage = 0;
    dektopWidget *desktop = nullptr;
    saveChangingDialog *saveDialog = nullptr;
    bool turnOffAsking = false;   // the save and turn off questions are up
    static_ip_dlg *staticIpDialog = nullptr;
    QList<my_PushButton *> netButtons;
    QList<myMenu *> subMenus;

    // The single shot of 10 ms to init(), kept so that a test can hold the start-up chain back.
    QTimer *initTimer = nullptr;

    QStringList dayNames;
    QStringList monthNames;
};
