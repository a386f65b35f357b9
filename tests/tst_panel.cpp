// The live panel: status ticks, hiding and showing, keys and messages, the lock, the init chain.

#include "testmachine.h"
#include "testmain.h"
#include "menucloser.h"

#include "desktop/dektopwidget.h"
#include "desktop/my_toolbutton.h"
#include "launcher/mainbutton.h"
#include "launcher/my_pushbutton.h"
#include "launcher/mymenu.h"
#include "my_shell1/globals.h"
#include "my_shell1/my_shell1.h"

#include <QCursor>
#include <QTimer>

namespace {

// A machine whose logical screen and held keys the test sets.
class ScreenMachine : public SimPlatform {
public:
    using SimPlatform::SimPlatform;
    int width = 1024;
    int height = 768;
    QList<int> heldKeys;
    bool screenSize(int *w, int *h) override
    {
        *w = width;
        *h = height;
        return true;
    }
    short asyncKeyState(int vk) override { return heldKeys.contains(vk) ? short(0x8000) : 0; }
};

struct PanelMachine : TestMachine {
    PanelMachine()
    {
        screen = new ScreenMachine(folder());
        setPlatform(screen);
        sim = screen;
    }
    QStringList journalOf(const QString &operation) const
    {
        QStringList lines;
        for (const QString &line : sim->journal())
            if (line.startsWith(operation + QLatin1Char('\t')) || line == operation)
                lines << line;
        return lines;
    }
    ScreenMachine *screen;
};

void useScreen(int width, int height)
{
    screenWidth = width;
    screenHeight = height;
}

// Closes the main menu once it runs its nested loop; `during` runs first, inside the loop.
void closeMenuWhenOpen(my_shell1 &shell, std::function<void()> during = nullptr)
{
    closeMenuWhenShown(shell.mainMenu, during);
}

} // namespace

class PanelTest : public QObject {
    Q_OBJECT

private slots:
    void init() { resetGlobals(); }

    void memoryLineAndRestart();
    void keyboardLanguage();
    void displayTooltip();
    void resolutionChangeWhileDown();
    void scaledDisplayKeepsDesktop();
    void hideAndShowStates();
    void startButtonHover();
    void lockButtonWorkArea();
    void hotKeysOnlyInWinPe();
    void hotKeyOneTwice();
    void ctrlAltDel();
    void refreshMessage();
    void initChain_data();
    void initChain();
    void secondInstanceRunsNothing();
    void initTidiesAndLocks();
    void logLines();
};

void PanelTest::memoryLineAndRestart()
{
    PanelMachine m;
    m.write("machine.ini", "[memory]\ntotalMB=1024\navailableMB=300\n");
    useScreen(1024, 768);
    my_shell1 shell;
    shell.initTimer->stop();
    shell.getSystemCondition();
    QCOMPARE(formWidget<QLabel>(shell, "label_3")->text(),
             QString("<p style=\"color:#FFFFFF\">Memory Total: 1025Mb Free: 301Mb</p>"));
    QVERIFY(shell.statusTimer->isActive());
    QCOMPARE(shell.statusTimer->interval(), 3000);

    // A failing memory query leaves the old line.
    m.write("machine.ini", "[memory]\nanswers=0\n");
    shell.getMemory();
    QVERIFY(formWidget<QLabel>(shell, "label_3")->text().contains("1025Mb"));
}

void PanelTest::keyboardLanguage()
{
    PanelMachine m;
    m.write("machine.ini", "[keyboard]\nlayouts=04090409,04190419\nforeground=04190419\n");
    useScreen(1024, 768);
    my_shell1 shell;
    shell.initTimer->stop();
    shell.show();
    shell.hideWindow();
    QCOMPARE(formWidget<QLabel>(shell, "label_7")->text(), QString("<p style=\"color:#FFFFFF\"><B>RU</p>"));
    QVERIFY(formWidget<QLabel>(shell, "label_7")->isVisible());
    QVERIFY(formWidget<QLabel>(shell, "label_6")->isVisible());
    QVERIFY(formWidget<QLabel>(shell, "label_2")->text().contains(shell.monthNames[QDate::currentDate().month() - 1]));
    QVERIFY(formWidget<QLabel>(shell, "label")->text().contains(shell.dayNames[QDate::currentDate().dayOfWeek() - 1]));

    // The label is set only when the language changes.
    formWidget<QLabel>(shell, "label_7")->setText("untouched");
    shell.hideWindow();
    QCOMPARE(formWidget<QLabel>(shell, "label_7")->text(), QString("untouched"));

    // 1032 is not in the table: EN. One layout hides the code and the hint.
    m.write("machine.ini", "[keyboard]\nlayouts=04080408\n");
    shell.hideWindow();
    QCOMPARE(formWidget<QLabel>(shell, "label_7")->text(), QString("<p style=\"color:#FFFFFF\"><B>EN</p>"));
    QVERIFY(!formWidget<QLabel>(shell, "label_7")->isVisible());
    QVERIFY(!formWidget<QLabel>(shell, "label_6")->isVisible());
}

void PanelTest::displayTooltip()
{
    PanelMachine m;
    m.write("drives/X/Program Files/kelpie/data_shell.cfg", "fixedB2=:/d.png|Display|disp.exe\n");
    m.write("machine.ini",
            "[display]\ncurrent=1024x768x24@60\nmodes=800x600x24@60,1024x768x16@60,1024x768x24@60\n");
    useScreen(1024, 768);
    my_shell1 shell;
    shell.initTimer->stop();
    shell.getResolution();
    QCOMPARE(shell.displayButton->toolTip(),
             QString("<B>Display Settings</B><p style=\"margin-top:2px;margin-bottom:0px\">Change a "
                     "display resolution<p><B>Current&nbsp;resolution:</B>&nbsp;1024&nbsp;by&nbsp;768,"
                     "&nbsp;True&nbsp;Color&nbsp;(32&nbsp;bit),&nbsp;60&nbsp;Hertz"));
    // In the steady state the walk does not run again.
    shell.displayButton->setToolTip("kept");
    shell.getResolution();
    QCOMPARE(shell.displayButton->toolTip(), QString("kept"));
}

void PanelTest::resolutionChangeWhileDown()
{
    PanelMachine m;
    useScreen(1024, 768);
    my_shell1 shell;
    shell.initTimer->stop();
    QVERIFY(!shell.panelShown);
    m.screen->width = 1280;
    m.screen->height = 1024;
    m.write("machine.ini", "[display]\ncurrent=1280x1024x32@60\n");
    shell.getResolution();
    QCOMPARE(displayWidth, 1280);
    QCOMPARE(screenHeight, 1024);
    QCOMPARE(shell.pos(), QPoint(0, 1021));
    QCOMPARE(shell.size(), QSize(1280, 1024));
    QCOMPARE(shell.mask(), QRegion(0, 0, 1280, 64));
    QCOMPARE(formWidget<QWidget>(shell, "widget_2")->x(), 780);
    QCOMPARE(m.journalOf("workarea"), QStringList("workarea\t0\t0\t1280\t1021"));

    // Up and locked, the same change keeps it up at the new bottom and leaves it 64 pixels.
    shell.showWindow();
    shell.panelLocked = true;
    m.screen->width = 1024;
    m.screen->height = 768;
    m.write("machine.ini", "[display]\ncurrent=1024x768x32@60\n");
    shell.getResolution();
    QCOMPARE(shell.pos(), QPoint(0, 768 - 64));
    QCOMPARE(m.journalOf("workarea").last(), QString("workarea\t0\t0\t1024\t704"));
}

void PanelTest::scaledDisplayKeepsDesktop()
{
    PanelMachine m;
    winPeMode = true;
    useScreen(1024, 768);
    my_shell1 shell;
    shell.initTimer->stop();
    // Same scale: the desktop is laid out again and the wallpaper reloaded.
    m.screen->width = 1280;
    m.screen->height = 1024;
    m.write("machine.ini", "[display]\ncurrent=1280x1024x32@60\n");
    shell.getResolution();
    QCOMPARE(m.journalOf("wallpaper").size(), 1);
    // Twice the pixels of the logical screen: nothing is laid out, no wallpaper.
    m.screen->width = 1024;
    m.screen->height = 768;
    m.write("machine.ini", "[display]\ncurrent=2048x1536x32@60\n");
    shell.getResolution();
    QCOMPARE(m.journalOf("wallpaper").size(), 1);
    QCOMPARE(m.journalOf("workarea").last(), QString("workarea\t0\t0\t2048\t1530"));
}

void PanelTest::hideAndShowStates()
{
    PanelMachine m;
    useScreen(1024, 768);
    my_shell1 shell;
    shell.initTimer->stop();
    shell.show();
    shell.startButton->opened = false;
    shell.startButton->state = 0;

    // Down: a pointer at the edge brings it up with 61 one-pixel moves.
    QCursor::setPos(500, 767);
    shell.hideWindow();
    QVERIFY(shell.panelShown);
    QCOMPARE(shell.pos(), QPoint(0, 704));
    shell.showWindow();
    QCOMPARE(shell.pos(), QPoint(0, 704));

    // Up with the pointer inside (edges included): stays.
    QCursor::setPos(1024, 704);
    shell.hideWindow();
    QVERIFY(shell.panelShown);

    // Pointer away: each guard holds it up, then it drops.
    QCursor::setPos(500, 100);
    modalOpen = true;
    shell.hideWindow();
    QVERIFY(shell.panelShown);
    modalOpen = false;
    shell.panelLocked = true;
    shell.hideWindow();
    QVERIFY(shell.panelShown);
    shell.panelLocked = false;
    shell.startButton->menuRunning = true;
    shell.hideWindow();
    QVERIFY(shell.panelShown);
    shell.startButton->menuRunning = false;
    shell.startButton->rainbowTimer->start(100);
    shell.hideWindow();
    QVERIFY(!shell.panelShown);
    QCOMPARE(shell.pos(), QPoint(0, 765));
    QVERIFY(!shell.startButton->rainbowTimer->isActive());

    // The pressed look ends on the first tick with no menu.
    shell.startButton->opened = true;
    shell.startButton->state = 2;
    shell.hideWindow();
    QCOMPARE(shell.startButton->state, 0);
    QVERIFY(!shell.startButton->opened);
}

void PanelTest::startButtonHover()
{
    PanelMachine m;
    useScreen(1024, 768);
    my_shell1 shell;
    shell.initTimer->stop();
    shell.show();
    shell.showWindow();
    shell.panelLocked = true;
    shell.startButton->opened = false;
    shell.startButton->state = 0;
    const int top = 704;
    QCursor::setPos(20, top + 20);
    shell.hideWindow();
    QCOMPARE(shell.startButton->state, 1);
    // Between the two squares the hover look stays.
    QCursor::setPos(55, top + 55);
    shell.hideWindow();
    QCOMPARE(shell.startButton->state, 1);
    QCursor::setPos(65, top + 20);
    shell.hideWindow();
    QCOMPARE(shell.startButton->state, 0);
    // The square's edge is not inside for entering.
    QCursor::setPos(45, top + 20);
    shell.hideWindow();
    QCOMPARE(shell.startButton->state, 0);
}

void PanelTest::lockButtonWorkArea()
{
    PanelMachine m;
    m.write("machine.ini", "[display]\ncurrent=2048x1536x32@60\n");
    winPeMode = true;
    useScreen(1024, 768);
    my_shell1 shell;
    shell.initTimer->stop();
    displayWidth = 2048;
    displayHeight = 1536;
    shell.on_pushButton_3_clicked();
    QVERIFY(shell.panelLocked);
    // 200 %: the locked work area ends 128 display pixels above the bottom.
    QCOMPARE(m.journalOf("workarea"), QStringList("workarea\t0\t0\t2048\t1408"));
    QCOMPARE(savedWorkArea.bottom, 1536);
    shell.on_pushButton_3_clicked();
    QVERIFY(!shell.panelLocked);
    QCOMPARE(m.journalOf("workarea").last(), QString("workarea\t0\t0\t2048\t1530"));

    // Outside Windows PE the icon and the state change, the work area does not.
    winPeMode = false;
    const QImage unlocked = formWidget<QPushButton>(shell, "pushButton_3")->icon().pixmap(20, 20).toImage();
    shell.on_pushButton_3_clicked();
    QVERIFY(shell.panelLocked);
    QVERIFY(formWidget<QPushButton>(shell, "pushButton_3")->icon().pixmap(20, 20).toImage() != unlocked);
    QCOMPARE(m.journalOf("workarea").size(), 2);
}

void PanelTest::hotKeysOnlyInWinPe()
{
    {
        PanelMachine m;
        useScreen(1024, 768);
        my_shell1 shell;
        shell.initTimer->stop();
    shell.initTimer->stop();
        QVERIFY(m.journalOf("registerhotkey").isEmpty());
        QVERIFY(m.journalOf("installhook").isEmpty());
    }
    PanelMachine m;
    winPeMode = true;
    useScreen(1024, 768);
    {
        my_shell1 shell;
        shell.initTimer->stop();
    shell.initTimer->stop();
        QStringList ids;
        for (const QString &line : m.journalOf("registerhotkey"))
            ids << line.section('\t', 1);
        QCOMPARE(ids, QStringList({"1\t8\t91", "2\t6\t68", "3\t3\t68"}));
        QCOMPARE(m.journalOf("installhook").size(), 1);
    }
    // The destructor lets go of all three and the hook.
    QCOMPARE(m.journalOf("unregisterhotkey").size(), 3);
    QVERIFY(!m.journalOf("removehook").isEmpty());
}

void PanelTest::hotKeyOneTwice()
{
    PanelMachine m;
    useScreen(1024, 768);
    my_shell1 shell;
    shell.initTimer->stop();
    shell.show();
    shell.startButton->opened = false;
    shell.startButton->state = 0;
    bool openInside = false;
    bool stillOpenAfterSecond = false;
    QCursor::setPos(500, 100);
    closeMenuWhenOpen(shell, [&] {
        openInside = shell.mainMenu->isVisible() && shell.startButton->state == 2
            && shell.panelShown;
        NativeMessage second;
        second.kind = NativeMessage::HotKey;
        second.hotKeyId = 1;
        QVERIFY(shell.handleNativeMessage(second));
        stillOpenAfterSecond = shell.mainMenu->isVisible();
    });
    NativeMessage first;
    first.kind = NativeMessage::HotKey;
    first.hotKeyId = 1;
    QVERIFY(shell.handleNativeMessage(first));
    QVERIFY(openInside);
    QVERIFY(stillOpenAfterSecond);
    QVERIFY(!shell.startButton->opened);
    QCOMPARE(shell.startButton->state, 0);

    // Keys 2 and 3 start their programs and go on to the base class.
    NativeMessage two;
    two.kind = NativeMessage::HotKey;
    two.hotKeyId = 2;
    QVERIFY(!shell.handleNativeMessage(two));
    two.hotKeyId = 3;
    QVERIFY(!shell.handleNativeMessage(two));
    QCOMPARE(m.journalOf("start"), QStringList({"start\topen\tDisplayRes.exe\tlow\t1",
                                                "start\topen\ttaskmgr.exe\t\t1"}));
}

void PanelTest::ctrlAltDel()
{
    PanelMachine m;
    const KeyHookEvent down{0, 46, 0};
    const KeyHookEvent up{0, 46, 128};
    m.screen->heldKeys = {0x11, 0x12};
    QVERIFY(my_shell1::keyboardHookEvent(down));
    QVERIFY(my_shell1::keyboardHookEvent(down));   // auto-repeat: every repeat starts it
    QVERIFY(!my_shell1::keyboardHookEvent(up));
    QVERIFY(!my_shell1::keyboardHookEvent(KeyHookEvent{1, 46, 0}));
    QVERIFY(!my_shell1::keyboardHookEvent(KeyHookEvent{0, 45, 0}));
    m.screen->heldKeys = {0x11};
    QVERIFY(!my_shell1::keyboardHookEvent(down));
    QCOMPARE(m.journalOf("start").size(), 2);
}

void PanelTest::refreshMessage()
{
    PanelMachine m;
    m.write("drives/X/Users/Default/Desktop/one.lnk", "x");
    useScreen(1024, 768);
    my_shell1 shell;
    shell.initTimer->stop();
    auto shown = [&shell] {
        int count = 0;
        for (QWidget *w : shell.desktop->findChildren<my_ToolButton *>())
            count += w->isVisibleTo(shell.desktop) ? 1 : 0;
        return count;
    };
    QCOMPARE(shown(), 1);
    m.write("drives/X/Users/Default/Desktop/two.lnk", "x");
    NativeMessage message;
    message.kind = NativeMessage::CopyData;
    message.wParam = 1;
    message.text = "refresh";
    QVERIFY(!shell.handleNativeMessage(message));
    message.wParam = 0;
    message.text = "Refresh";
    shell.handleNativeMessage(message);
    QCOMPARE(shown(), 1);
    message.wParam = 1;
    QVERIFY(!shell.handleNativeMessage(message));
    QCOMPARE(shown(), 2);
}

void PanelTest::initChain_data()
{
    QTest::addColumn<bool>("staticScript");
    QTest::addColumn<bool>("mapScript");
    QTest::newRow("neither") << false << false;
    QTest::newRow("static only") << true << false;
    QTest::newRow("mapping only") << false << true;
    QTest::newRow("both") << true << true;
}

void PanelTest::initChain()
{
    QFETCH(bool, staticScript);
    QFETCH(bool, mapScript);
    PanelMachine m;
    m.write("drives/X/Program Files/kelpie/data_shell.cfg", "toRun=tool|-q\n");
    if (staticScript)
        m.write("drives/X/Program Files/kelpie/start_ip.cmd", "@echo off\n");
    if (mapScript)
        m.write("drives/X/map_network.cmd", "@echo off\n");
    useScreen(1024, 768);
    my_shell1 shell;
    shell.initTimer->stop();
    shell.show();
    const QString started = "start\topen\tx:\\program files\\kelpie\\tool.exe\t-q\t1";

    int menus = 0;
    bool startedBeforeMenuClosed = false;
    auto expectMenu = [&] {
        closeMenuWhenOpen(shell, [&] {
            ++menus;
            startedBeforeMenuClosed = m.journalOf("start").contains(started);
        });
    };
    if (!staticScript && !mapScript)
        expectMenu();
    shell.init();
    if (staticScript) {
        QCOMPARE(shell.bringUpStage, 1);
        QVERIFY(shell.startIpPending);
        QVERIFY(shell.staticIpTimer->isActive());
        QVERIFY(shell.desktop->waitPanel->isVisibleTo(shell.desktop));
        QVERIFY(!m.journalOf("start").contains(started));
        if (!mapScript)
            expectMenu();
        shell.needStopOperation(1);   // the desktop's stop button
        QVERIFY(!shell.staticIpTimer->isActive());
    }
    if (mapScript) {
        QCOMPARE(shell.bringUpStage, 2);
        QVERIFY(shell.mapNetworkTimer->isActive());
        QVERIFY(shell.desktop->waitPanel->isVisibleTo(shell.desktop));
        QVERIFY(!m.journalOf("start").contains(started));
        shell.needStopOperation(1);
        QVERIFY(!shell.mapNetworkTimer->isActive());
        QVERIFY(!shell.desktop->waitPanel->isVisibleTo(shell.desktop));
    }
    QCOMPARE(menus, mapScript ? 0 : 1);
    QVERIFY(!startedBeforeMenuClosed);
    QCOMPARE(m.journalOf("start").count(started), 1);
    QVERIFY(toRunList.isEmpty());
}

void PanelTest::secondInstanceRunsNothing()
{
    PanelMachine m;
    m.write("drives/X/Program Files/kelpie/data_shell.cfg", "toRun=tool|-q\n");
    secondInstance = true;
    useScreen(1024, 768);
    my_shell1 shell;
    shell.initTimer->stop();
    shell.show();
    closeMenuWhenOpen(shell);
    shell.init();
    QVERIFY(m.journalOf("start").isEmpty());
}

void PanelTest::initTidiesAndLocks()
{
    PanelMachine m;
    for (const char *tool : {"initKelpie.exe", "initKP.exe", "cfg_winpe.exe", "keep.exe"})
        m.write(QString("drives/X/Program Files/kelpie/") + tool, "MZ");
    m.write("drives/X/map_network.cmd", "@echo off\n");   // no menu on this road
    useScreen(1024, 768);
    my_shell1 shell;
    shell.initTimer->stop();
    shell.show();
    shell.init();
    const QDir kelpie(m.folder() + "/drives/X/Program Files/kelpie");
    QCOMPARE(kelpie.entryList(QDir::Files), QStringList({"data_shell.cfg", "keep.exe"})
                                                 .filter("keep"));
    QVERIFY(shell.panelShown);
    QVERIFY(shell.panelLocked);
    QVERIFY(shell.hideTimer->isActive());
    QCOMPARE(shell.hideTimer->interval(), 1000);
    QVERIFY(shell.statusTimer->isActive());
    QVERIFY(!formWidget<QLabel>(shell, "label_3")->text().isEmpty());
    QVERIFY(!shell.mainMenu->isVisible());
}

void PanelTest::logLines()
{
    useScreen(1024, 768);
    {
        PanelMachine m;
        my_shell1 shell;
        shell.initTimer->stop();
    shell.initTimer->stop();
        shell.addLogInfo("run x:\\program files\\kelpie\\a.exe=0");
        shell.addLogInfo(QString::fromUtf8("second"));
        QCOMPARE(m.read("drives/X/init.log"),
                 QByteArray("run x:\\program files\\kelpie\\a.exe=0\r\nsecond\r\n"));
    }

    // An unwritable log drops the line and nothing else changes.
    PanelMachine n;
    QDir(n.folder()).mkpath("drives/X/init.log");
    n.write("drives/X/Program Files/kelpie/data_shell.cfg", "toRun=tool|\n");
    my_shell1 other;
    other.initTimer->stop();
    other.addLogInfo("lost");
    other.runTaskList();
    QCOMPARE(n.journalOf("start").size(), 1);
    QVERIFY(QFileInfo(n.folder() + "/drives/X/init.log").isDir());
}

KELPIE_TEST_MAIN(PanelTest)
#include "tst_panel.moc"
