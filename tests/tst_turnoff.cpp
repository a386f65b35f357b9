// Turn off: the save question first, the turn off dialog, wpeutil.exe in Windows PE only, the end
// of the loop, reached through the menu or a close attempt alike.

#include "actions/turn_off_widget.h"
#include "settings/savechangingdialog.h"
#include "settings/savedvolume.h"
#include "modalwatch.h"
#include "testmachine.h"
#include "testmain.h"
#include "testshell.h"

#include <QAction>
#include <QPointer>
#include <QSignalSpy>

namespace {

const QString deskFolder = "drives/X/Users/Default/Desktop/";

QStringList wpeutilStarts(const TestMachine &m) { return m.journal().filter("wpeutil"); }

// Booted from stick E:, with the start's baseline of the desktop written (in Windows PE only).
void bootFromStick(TestMachine &m)
{
    winPeMode = true;
    m.addStick('E', 1);
    m.write("drives/E/_kelpie.ini", "imageLang=0");
    m.write("drives/X/tmpReg/startNetwork.log", "bootLetter=E");
    m.write(deskFolder + "Old.lnk", "old");
    writeConditionLogs();
}

// How many turn off dialogs came, whether each was modal, and the last, answered with `how`.
struct Seen {
    int dialogs = 0;
    bool modalWhileUp = false;
    QPointer<turn_off_widget> last;
};

void answerTurnOff(Seen *seen, const QString &how)
{
    whenModal<turn_off_widget>([seen, how](turn_off_widget *d) {
        *seen = {seen->dialogs + 1, modalOpen, d};
        if (how == "escape")
            QTest::keyClick(d, Qt::Key_Escape);
        else
            formWidget<QPushButton>(*d, how == "turn off" ? "pushButton_3" : how == "restart" ? "pushButton_2" : "pushButton")
                ->click();
    });
}

} // namespace

class TurnOffTest : public QObject {
    Q_OBJECT
private slots:
    void init() { resetGlobals(); }

    void stateTable_data()
    {
        QTest::addColumn<bool>("peMode");
        QTest::addColumn<bool>("byClose");   // Alt+F4 and the like instead of the menu
        QTest::addColumn<QString>("answer");
        QTest::addColumn<QString>("started");   // wpeutil.exe's argument
        QTest::newRow("turn off in Windows PE") << true << false << "turn off" << "Shutdown";
        QTest::newRow("restart in Windows PE") << true << false << "restart" << "Reboot";
        QTest::newRow("outside Windows PE the shell only ends") << false << false << "turn off" << "";
        QTest::newRow("cancel: the shell runs on") << true << false << "cancel" << "";
        QTest::newRow("escape rejects as cancel does") << true << false << "escape" << "";
        QTest::newRow("a close attempt cancelled leaves the shell up") << true << true << "cancel" << "";
    }
    void stateTable()
    {
        QFETCH(bool, peMode);
        QFETCH(bool, byClose);
        QFETCH(QString, answer);
        QFETCH(QString, started);
        const bool ends = answer == "turn off" || answer == "restart";
        TestMachine m;
        winPeMode = peMode;
        auto shell = makeShell();
        shell->show();
        QSignalSpy closeApp(shell.get(), &my_shell1::closeApp);
        const auto ask = [&](bool closes) {
            if (byClose)
                QCOMPARE(shell->close(), closes);
            else
                shell->turnOffAction->trigger();
        };
        Seen seen;
        answerTurnOff(&seen, answer);
        ask(ends);

        // One dialog, modal while up, deleted whatever the answer.
        QVERIFY(seen.dialogs == 1 && seen.modalWhileUp && seen.last.isNull() && !modalOpen);
        QCOMPARE(wpeutilStarts(m).join(""), started.isEmpty() ? "" : "start\topen\twpeutil.exe\t" + started + "\t0");
        QCOMPARE(shuttingDown, ends);
        QCOMPARE(closeApp.count(), ends ? 1 : 0);
        QCOMPARE(shell->isVisible(), !ends);
        if (ends)
            return;
        // Asked again after a cancel, the question comes anew with a new dialog.
        answerTurnOff(&seen, "turn off");
        ask(true);
        QCOMPARE(seen.dialogs, 2);
        QCOMPARE(closeApp.count(), 1);
        QCOMPARE(wpeutilStarts(m).size(), 1);
    }

    void saveQuestionComesFirst_data()
    {
        QTest::addColumn<bool>("added");             // a shortcut added to the desktop after start-up
        QTest::addColumn<QByteArray>("resolution");  // x:/tmpReg/resolution.log, empty for none
        QTest::addColumn<int>("saveDialogs");        // over two turn off attempts
        QTest::newRow("nothing changed: no Save dialog") << false << QByteArray() << 0;
        QTest::newRow("a new shortcut: asked each time, saving moves no baseline") << true << QByteArray() << 2;
        QTest::newRow("a resolution log with a last line counts") << false << QByteArray("1024x768\r\n1280x1024") << 2;
    }
    void saveQuestionComesFirst()
    {
        QFETCH(bool, added);
        QFETCH(QByteArray, resolution);
        QFETCH(int, saveDialogs);
        TestMachine m;
        bootFromStick(m);
        if (added)
            m.write(deskFolder + "New.lnk", "new");
        if (!resolution.isEmpty())
            m.write("drives/X/tmpReg/resolution.log", resolution);
        auto shell = makeShell();
        QStringList saves;   // each Save dialog's display text, or "late" when the turn off dialog was up
        for (int attempt = 0; attempt < 2; ++attempt) {
            QPointer<QTimer> watch = whenModal<saveChangingDialog>([&](saveChangingDialog *d) {
                saves << (modalOpen ? "late" : d->displayText);
                formWidget<QPushButton>(*d, "pushButton")->click();   // Save
            });
            Seen seen;
            answerTurnOff(&seen, "cancel");
            shell->shutDown();
            delete watch.data();
            QCOMPARE(seen.dialogs, 1);   // whatever happened in the Save dialog
        }
        QCOMPARE(saves.size(), saveDialogs);
        QVERIFY(!saves.contains("late"));
        if (!resolution.isEmpty())
            QCOMPARE(saves.last(), QString("Display Resolution: 1280x1024"));
    }

    void closeWhileSaveDialogIsOpen()
    {
        TestMachine m;
        bootFromStick(m);
        m.write(deskFolder + "New.lnk", "new");
        auto shell = makeShell();
        shell->show();
        QSignalSpy closeApp(shell.get(), &my_shell1::closeApp);
        Seen seen;
        bool stillOpen = false;
        whenModal<saveChangingDialog>([&](saveChangingDialog *d) {
            QVERIFY(!shell->close());   // the system asks the panel to close meanwhile
            stillOpen = d->isVisible();
            answerTurnOff(&seen, "turn off");
            formWidget<QPushButton>(*d, "pushButton_2")->click();   // Skip
        });
        shell->shutDown();
        QVERIFY(stillOpen);
        QCOMPARE(seen.dialogs, 1);   // one question, not a second one inside the first
        QCOMPARE(closeApp.count(), 1);
        QCOMPARE(wpeutilStarts(m).size(), 1);
    }
};

KELPIE_TEST_MAIN(TurnOffTest)
#include "tst_turnoff.moc"
