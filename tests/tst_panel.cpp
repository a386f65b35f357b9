// The live panel: status ticks, hiding and showing, keys and messages, the lock, the init chain.

#include "testmachine.h"
#include "testmain.h"
#include "testshell.h"
#include "menucloser.h"

#include "desktop/dektopwidget.h"
#include "launcher/mainbutton.h"
#include "launcher/my_pushbutton.h"
#include "launcher/mymenu.h"
#include "my_shell1/statustext.h"

namespace {

// A machine whose held keys the test sets.
class KeysMachine : public SimPlatform {
public:
    using SimPlatform::SimPlatform;
    QList<int> held;
    short asyncKeyState(int vk) override { return held.contains(vk) ? short(0x8000) : 0; }
};

NativeMessage hotKeyMessage(int id) { return {NativeMessage::HotKey, id, 0, QString()}; }

const QString toolStart = "start\topen\tx:\\program files\\kelpie\\tool.exe\t-q\t1";

} // namespace

Q_DECLARE_METATYPE(KeyHookEvent)

class PanelTest : public QObject {
    Q_OBJECT
    std::unique_ptr<TestMachine> m;

private slots:
    void init()
    {
        resetGlobals();
        m = std::make_unique<TestMachine>();
    }
    void cleanup() { m.reset(); }

    // The label is set when the language differs from the last tick's; date and day each tick.
    void keyboardLanguage_data()
    {
        QTest::addColumn<QByteArray>("keyboard");
        QTest::addColumn<QString>("label");
        QTest::addColumn<bool>("shown");
        QTest::newRow("two layouts: the foreground's code, shown") << QByteArray("layouts=04090409,04190419\nforeground=04190419") << "RU" << true;
        QTest::newRow("one layout: hidden; a language not in the table reads EN") << QByteArray("layouts=04080408") << "EN" << false;
    }

    void keyboardLanguage()
    {
        QFETCH(QByteArray, keyboard);
        QFETCH(QString, label);
        QFETCH(bool, shown);
        m->facts("keyboard", keyboard);
        auto shell = makeShell();
        shell->show();
        QLabel *code = formWidget<QLabel>(*shell, "label_7");
        code->setText("before");
        shell->hideWindow();
        QCOMPARE(code->text(), "<p style=\"color:#FFFFFF\"><B>" + label + "</p>");
        QCOMPARE(code->isVisible(), shown);
        QCOMPARE(formWidget<QLabel>(*shell, "label_6")->isVisible(), shown);
        QCOMPARE(formWidget<QLabel>(*shell, "label_2")->text() + formWidget<QLabel>(*shell, "label")->text(),
                 dateText(QDate::currentDate()) + dayText(QDate::currentDate()));
        code->setText("untouched");
        shell->hideWindow();
        QCOMPARE(code->text(), QString("untouched"));
    }

    // In Windows PE the shell takes three keys and the hook and lets them go. A change at the same
    // scale lays the desktop out with its wallpaper; twice the logical screen's pixels does not.
    void resolutionAndLockInWinPe()
    {
        m->config("fixedB2=:/d.png|Display|disp.exe\n");
        m->facts("display", "current=1280x1024x32@60\nmodes=800x600x32@60,1280x1024x16@60,1280x1024x32@60\nscreen=current");
        winPeMode = true;
        auto shell = makeShell();
        QCOMPARE(m->journalOf("registerhotkey") + m->journalOf("installhook"),
                 (QStringList{"registerhotkey\t1\t8\t91", "registerhotkey\t2\t6\t68", "registerhotkey\t3\t3\t68", "installhook"}));
        QVERIFY(!shell->panelShown);
        shell->getResolution();
        QCOMPARE(shell->geometry(), QRect(0, 1021, 1280, 1024));
        QCOMPARE(shell->mask(), QRegion(0, 0, 1280, 64));
        QCOMPARE(formWidget<QWidget>(*shell, "widget_2")->x(), 780);
        QCOMPARE(m->journalOf("workarea"), QStringList("workarea\t0\t0\t1280\t1021"));
        QCOMPARE(m->journalOf("wallpaper").size(), 1);
        // The walk finds the mode matching in all four fields; in the steady state it does not run.
        QCOMPARE(shell->displayButton->toolTip(), resolutionTooltip(1280, 1024, 32, 60));
        shell->displayButton->setToolTip("kept");
        shell->getResolution();
        QCOMPARE(shell->displayButton->toolTip(), QString("kept"));

        // Up and locked, a change keeps it up at the new bottom and leaves it 64 pixels.
        shell->showWindow();
        shell->panelLocked = true;
        m->facts("display", "current=1024x768x32@60\nscreen=current");
        shell->getResolution();
        QCOMPARE(shell->pos(), QPoint(0, 768 - 64));
        QCOMPARE(m->journalOf("workarea").last(), QString("workarea\t0\t0\t1024\t704"));
        QCOMPARE(m->journalOf("wallpaper").size(), 2);
        m->facts("display", "current=2048x1536x32@60\nscreen=1024x768");
        shell->getResolution();
        QCOMPARE(m->journalOf("wallpaper").size(), 2);
        QCOMPARE(m->journalOf("workarea").last(), QString("workarea\t0\t0\t2048\t1408"));

        // The lock button at 200 %: unlocked the work area ends 6 display pixels above the
        // bottom, locked 128. Outside Windows PE the icon and the state change, the work area not.
        shell->on_pushButton_3_clicked();
        QCOMPARE(m->journalOf("workarea").last(), QString("workarea\t0\t0\t2048\t1530"));
        shell->on_pushButton_3_clicked();
        QCOMPARE(m->journalOf("workarea").last(), QString("workarea\t0\t0\t2048\t1408"));
        QCOMPARE(savedWorkArea.bottom, 1530);   // the area it found
        winPeMode = false;
        QPushButton *lock = formWidget<QPushButton>(*shell, "pushButton_3");
        const QImage locked = lock->icon().pixmap(20, 20).toImage();
        const int areas = m->journalOf("workarea").size();
        shell->on_pushButton_3_clicked();
        QVERIFY(!shell->panelLocked && lock->icon().pixmap(20, 20).toImage() != locked);
        QCOMPARE(m->journalOf("workarea").size(), areas);
        shell.reset();
        QCOMPARE(m->journalOf("unregisterhotkey").size() + m->journalOf("removehook").size(), 4);
    }

    // The panel's state before the tick ("up", "modal", "locked", "menu"), the pointer, and the
    // start button's look before (2: pressed, its menu counted open) and after.
    void hideTick_data()
    {
        QTest::addColumn<QString>("state");
        QTest::addColumn<QPoint>("pointer");
        QTest::addColumn<int>("before");
        QTest::addColumn<bool>("staysUp");
        QTest::addColumn<int>("after");
        const QPoint away(500, 100), bottom(500, 767), corner(1024, 704);
        auto row = [](const char *rule, const char *state, QPoint pointer, int before, bool up, int after) {
            QTest::newRow(rule) << state << pointer << before << up << after;
        };
        row("down, pointer on the last row: rises", "", bottom, 0, true, 0);
        row("down, pointer away: stays down", "", away, 0, false, 0);
        row("up, pointer on its corner: stays", "up", corner, 0, true, 0);
        row("up, a modal dialog holds it", "up modal", away, 0, true, 0);
        row("up, a running menu holds it", "up menu", away, 0, true, 0);
        row("up, pointer away: drops, ending the pulse", "up", away, 0, false, 0);
        row("inside the button: hover", "up locked", QPoint(20, 724), 0, true, 1);
        row("the square's edge does not enter", "up locked", QPoint(45, 724), 0, true, 0);
        row("between the two squares the hover stays", "up locked", QPoint(55, 759), 1, true, 1);
        row("pressed with no menu open: rest, closed", "up locked", QPoint(300, 724), 2, true, 0);
    }

    void hideTick()
    {
        QFETCH(QString, state);
        QFETCH(QPoint, pointer);
        QFETCH(int, before);
        QFETCH(bool, staysUp);
        QFETCH(int, after);
        auto shell = makeShell();
        shell->show();
        shell->startButton->opened = before == 2;
        shell->startButton->state = before;
        if (state.contains("up"))
            shell->showWindow();
        QCursor::setPos(pointer);
        modalOpen = state.contains("modal");
        shell->panelLocked = state.contains("locked");
        shell->startButton->menuRunning = state.contains("menu");
        shell->startButton->rainbowTimer->start(100);
        shell->hideWindow();
        QCOMPARE(shell->panelShown, staysUp);
        QCOMPARE(shell->pos(), QPoint(0, staysUp ? 704 : 765));
        QCOMPARE(shell->startButton->rainbowTimer->isActive(), staysUp || !state.contains("up"));
        QCOMPARE(shell->startButton->state, after);
        QVERIFY(!shell->startButton->opened);
    }

    // Hot key 1 opens the menu with the panel up; pressed again inside, it leaves the menu open.
    void hotKeyOneTwice()
    {
        auto shell = makeShell();
        shell->show();
        shell->startButton->opened = false;
        shell->startButton->state = 0;
        bool openInside = false, stillOpenAfterSecond = false;
        QCursor::setPos(500, 100);
        closeMenuWhenShown(shell->mainMenu, [&] {
            openInside = shell->startButton->state == 2 && shell->panelShown;
            QVERIFY(shell->handleNativeMessage(hotKeyMessage(1)));
            stillOpenAfterSecond = shell->mainMenu->isVisible();
        });
        QVERIFY(shell->handleNativeMessage(hotKeyMessage(1)));
        QVERIFY(openInside && stillOpenAfterSecond);
        QVERIFY(!shell->startButton->opened);
        QCOMPARE(shell->startButton->state, 0);
    }

    // Outside Windows PE no keys are taken, yet hot keys 2 and 3 start a tool and let the message
    // go on; the hook starts the task manager on Ctrl+Alt+Del down and repeat, swallowing it alone.
    void keysStartTools_data()
    {
        using namespace win32;
        QTest::addColumn<int>("hotKey");   // 0: the hook's event
        QTest::addColumn<KeyHookEvent>("event");
        QTest::addColumn<QList<int>>("held");
        QTest::addColumn<QString>("start");
        const QList<int> ctrlAlt{vkControl, vkMenu};
        const QString taskmgr = "start\topen\ttaskmgr.exe\t\t1";
        auto hook = [&](const char *rule, int code, quint32 flags, const QList<int> &held, bool starts) {
            QTest::newRow(rule) << 0 << KeyHookEvent{code, quint32(vkDelete), flags} << held << (starts ? taskmgr : "");
        };
        QTest::newRow("Ctrl+Shift+D: the display tool, low") << 2 << KeyHookEvent{} << QList<int>() << "start\topen\tDisplayRes.exe\tlow\t1";
        QTest::newRow("Ctrl+Alt+D: the task manager") << 3 << KeyHookEvent{} << QList<int>() << taskmgr;
        hook("Ctrl+Alt+Del down: the task manager", hcAction, 0, ctrlAlt, true);
        hook("the key-up passes", hcAction, llkhfUp, ctrlAlt, false);
        hook("not HC_ACTION passes", 1, 0, ctrlAlt, false);
        hook("Ctrl without Alt passes", hcAction, 0, {vkControl}, false);
    }

    void keysStartTools()
    {
        QFETCH(int, hotKey);
        QFETCH(KeyHookEvent, event);
        QFETCH(QList<int>, held);
        QFETCH(QString, start);
        m->use<KeysMachine>()->held = held;
        if (hotKey) {
            QVERIFY(!makeShell()->handleNativeMessage(hotKeyMessage(hotKey)));
            QVERIFY(m->journalOf("registerhotkey").isEmpty() && m->journalOf("installhook").isEmpty());
        } else {
            QCOMPARE(my_shell1::keyboardHookEvent(event), !start.isEmpty());
        }
        QCOMPARE(m->journalOf("start").join(""), start);
    }

    void refreshMessage_data()
    {
        QTest::addColumn<quintptr>("wParam");
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("shown");
        QTest::newRow("\"Refresh\" with 1: the desktop reads its folder again") << quintptr(1) << "Refresh" << 2;
        QTest::newRow("the text is matched by case") << quintptr(1) << "refresh" << 1;
        QTest::newRow("another wParam is not the message") << quintptr(0) << "Refresh" << 1;
    }

    void refreshMessage()
    {
        QFETCH(quintptr, wParam);
        QFETCH(QString, text);
        QFETCH(int, shown);
        m->file("X:/Users/Default/Desktop/one.lnk", "x");
        auto shell = makeShell();
        m->file("X:/Users/Default/Desktop/two.lnk", "x");
        QVERIFY(!shell->handleNativeMessage({NativeMessage::CopyData, 0, wParam, text}));
        QCOMPARE(shell->desktop->desktopCount, shown);
    }

    // No scripts (the stages are the network suite's): set-up tools go, the panel is up and locked,
    // the menu opens, then the programs start once; a memory line stays when memory stops answering.
    void initChain()
    {
        m->config("toRun=tool|-q\n");
        m->facts("memory", "totalMB=1024\navailableMB=300");
        for (const char *tool : {"initKelpie.exe", "initKP.exe", "cfg_winpe.exe", "keep.exe"})
            m->file(QString("X:/Program Files/kelpie/") + tool, "MZ");
        auto shell = makeShell();
        shell->show();
        int shown = 0;
        bool startedBeforeMenuClosed = false;
        closeMenuWhenShown(shell->mainMenu, [&] {
            ++shown;
            startedBeforeMenuClosed = m->journalOf("start").contains(toolStart);
        });
        shell->init();
        QCOMPARE(shown, 1);
        QVERIFY(!startedBeforeMenuClosed);
        QCOMPARE(m->journalOf("start").count(toolStart), 1);
        QCOMPARE(QDir(m->folder() + "/drives/X/Program Files/kelpie").entryList({"*.exe"}), QStringList("keep.exe"));
        QVERIFY(shell->panelShown && shell->panelLocked && !shell->desktop->waitPanel->isVisibleTo(shell->desktop));
        QVERIFY(shell->hideTimer->isActive() && shell->statusTimer->isActive());
        QLabel *memory = formWidget<QLabel>(*shell, "label_3");
        QCOMPARE(memory->text(), memoryText(1024ull << 20, 300ull << 20));
        m->facts("memory", "answers=0");
        shell->getSystemCondition();
        QCOMPARE(memory->text(), memoryText(1024ull << 20, 300ull << 20));
        QVERIFY(shell->statusTimer->isActive());
    }
};

KELPIE_TEST_MAIN(PanelTest)
#include "tst_panel.moc"
