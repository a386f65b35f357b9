// Turn off: the save question first, the turn off dialog, wpeutil.exe in Windows PE only, the end
// of the loop; the dialog's own form and looks.

#include "actions/turn_off_widget.h"
#include "my_shell1/globals.h"
#include "my_shell1/my_shell1.h"
#include "settings/savechangingdialog.h"
#include "settings/savedvolume.h"
#include "modalwatch.h"
#include "testmachine.h"
#include "testmain.h"

#include <QAction>
#include <QCheckBox>
#include <QPointer>
#include <QSignalSpy>

namespace {

const char winPeRegistry[] = "Windows Registry Editor Version 5.00\r\n\r\n"
                             "[HKEY_CURRENT_USER\\Software\\Morvane Works]\r\n\"WinPE\"=dword:00000001\r\n";
const QString deskFolder = QStringLiteral("drives/X/Users/Default/Desktop/");

QStringList wpeutilStarts(const TestMachine &m)
{
    return m.journal().filter(QStringLiteral("wpeutil"));
}

// What the turn off dialog looked like while it ran, and how it was left.
struct Seen {
    int dialogs = 0;
    bool modalWhileUp = false;
    int actionWhileUp = 0;
    QPointer<turn_off_widget> last;
};

void answerTurnOff(Seen *seen, const QString &how)
{
    whenModal<turn_off_widget>([seen, how](turn_off_widget *d) {
        ++seen->dialogs;
        seen->modalWhileUp = modalOpen;
        seen->actionWhileUp = d->action;
        seen->last = d;
        if (how == QLatin1String("turn off"))
            formWidget<QPushButton>(*d, "pushButton_3")->click();
        else if (how == QLatin1String("restart"))
            formWidget<QPushButton>(*d, "pushButton_2")->click();
        else if (how == QLatin1String("cancel"))
            formWidget<QPushButton>(*d, "pushButton")->click();
        else
            QTest::keyClick(d, Qt::Key_Escape);
    });
}

} // namespace

class TurnOffTest : public QObject {
    Q_OBJECT
private slots:
    void init() { resetGlobals(); }

    void stateTable_data();
    void stateTable();
    void closeAttemptRunsTheSameQuestion();
    void saveQuestionComesFirst_data();
    void saveQuestionComesFirst();
    void closeWhileSaveDialogIsOpen();
};

void TurnOffTest::stateTable_data()
{
    QTest::addColumn<bool>("peMode");
    QTest::addColumn<QString>("answer");
    QTest::addColumn<QStringList>("starts");
    QTest::addColumn<bool>("ends");
    QTest::newRow("turn off in Windows PE") << true << "turn off"
        << QStringList{QStringLiteral("start\topen\twpeutil.exe\tShutdown\t0")} << true;
    QTest::newRow("restart in Windows PE") << true << "restart"
        << QStringList{QStringLiteral("start\topen\twpeutil.exe\tReboot\t0")} << true;
    QTest::newRow("outside Windows PE the shell only ends") << false << "turn off" << QStringList() << true;
    QTest::newRow("cancel: the shell runs on") << true << "cancel" << QStringList() << false;
    QTest::newRow("escape rejects as cancel does") << true << "escape" << QStringList() << false;
}

void TurnOffTest::stateTable()
{
    QFETCH(bool, peMode);
    QFETCH(QString, answer);
    QFETCH(QStringList, starts);
    QFETCH(bool, ends);
    TestMachine m;
    winPeMode = peMode;
    screenWidth = 1024;
    screenHeight = 768;
    my_shell1 shell;
    shell.initTimer->stop();
    shell.show();
    QSignalSpy closeApp(&shell, &my_shell1::closeApp);
    Seen seen;
    answerTurnOff(&seen, answer);
    shell.turnOffAction->trigger();

    QCOMPARE(seen.dialogs, 1);
    QVERIFY(seen.modalWhileUp);
    QCOMPARE(seen.actionWhileUp, -1);
    QVERIFY(seen.last.isNull());   // deleted, whatever the answer
    QVERIFY(!modalOpen);
    QCOMPARE(wpeutilStarts(m), starts);
    QCOMPARE(shuttingDown, ends);
    QCOMPARE(closeApp.count(), ends ? 1 : 0);
    QCOMPARE(shell.isVisible(), !ends);

    if (ends)
        return;
    // Chosen again after a cancel, the question is asked anew with a new dialog.
    answerTurnOff(&seen, QStringLiteral("turn off"));
    shell.turnOffAction->trigger();
    QCOMPARE(seen.dialogs, 2);
    QCOMPARE(closeApp.count(), 1);
}

void TurnOffTest::closeAttemptRunsTheSameQuestion()
{
    TestMachine m;
    winPeMode = true;
    my_shell1 shell;
    shell.initTimer->stop();
    shell.show();
    QSignalSpy closeApp(&shell, &my_shell1::closeApp);
    Seen seen;
    answerTurnOff(&seen, QStringLiteral("cancel"));
    QVERIFY(!shell.close());   // Alt+F4 and the like
    QCOMPARE(seen.dialogs, 1);
    QVERIFY(shell.isVisible());
    QCOMPARE(closeApp.count(), 0);

    answerTurnOff(&seen, QStringLiteral("turn off"));
    shell.close();
    QCOMPARE(seen.dialogs, 2);
    QCOMPARE(closeApp.count(), 1);
    QVERIFY(!shell.isVisible());
    QCOMPARE(wpeutilStarts(m).size(), 1);
}

void TurnOffTest::saveQuestionComesFirst_data()
{
    QTest::addColumn<QStringList>("added");      // files added to the desktop after start-up
    QTest::addColumn<QByteArray>("resolution");  // x:/tmpReg/resolution.log, empty for none
    QTest::addColumn<bool>("peMode");
    QTest::addColumn<int>("saveDialogs");        // over two turn off attempts
    QTest::newRow("nothing changed: no Save dialog") << QStringList() << QByteArray() << true << 0;
    QTest::newRow("a new shortcut: asked each time, saving moves no baseline")
        << QStringList{QStringLiteral("New.lnk")} << QByteArray() << true << 2;
    QTest::newRow("a resolution log with a last line counts")
        << QStringList() << QByteArray("1024x768\r\n1280x1024") << true << 2;
    QTest::newRow("outside Windows PE there is no baseline: everything counts")
        << QStringList() << QByteArray() << false << 2;
}

void TurnOffTest::saveQuestionComesFirst()
{
    QFETCH(QStringList, added);
    QFETCH(QByteArray, resolution);
    QFETCH(bool, peMode);
    QFETCH(int, saveDialogs);
    TestMachine m;
    winPeMode = peMode;
    m.addStick('E', 1);
    m.write(QStringLiteral("drives/E/_kelpie.ini"), "imageLang=0");
    m.write(QStringLiteral("drives/X/tmpReg/startNetwork.log"), "bootLetter=E");
    m.write(deskFolder + QStringLiteral("Old.lnk"), "old");
    writeConditionLogs();
    for (const QString &name : added)
        m.write(deskFolder + name, "new");
    if (!resolution.isEmpty())
        m.write(QStringLiteral("drives/X/tmpReg/resolution.log"), resolution);

    my_shell1 shell;
    shell.initTimer->stop();
    int saves = 0;
    bool turnOffUpDuringSave = false;
    QString display;
    for (int attempt = 0; attempt < 2; ++attempt) {
        QPointer<QTimer> watch = whenModal<saveChangingDialog>([&](saveChangingDialog *d) {
            ++saves;
            turnOffUpDuringSave = turnOffUpDuringSave || modalOpen;
            display = d->displayText;
            formWidget<QPushButton>(*d, "pushButton")->click();   // Save
        });
        Seen seen;
        answerTurnOff(&seen, QStringLiteral("cancel"));
        shell.shutDown();
        delete watch.data();
        QCOMPARE(seen.dialogs, 1);   // whatever happened in the Save dialog
    }
    QCOMPARE(saves, saveDialogs);
    QVERIFY(!turnOffUpDuringSave);   // the save question comes before the turn off dialog
    if (!resolution.isEmpty())
        QCOMPARE(display, QStringLiteral("Display Resolution: 1280x1024"));
}

void TurnOffTest::closeWhileSaveDialogIsOpen()
{
    TestMachine m;
    winPeMode = true;
    m.addStick('E', 1);
    m.write(QStringLiteral("drives/E/_kelpie.ini"), "imageLang=0");
    m.write(QStringLiteral("drives/X/tmpReg/startNetwork.log"), "bootLetter=E");
    writeConditionLogs();
    m.write(deskFolder + QStringLiteral("New.lnk"), "new");
    my_shell1 shell;
    shell.initTimer->stop();
    shell.show();
    QSignalSpy closeApp(&shell, &my_shell1::closeApp);
    Seen seen;
    bool stillOpen = false;
    whenModal<saveChangingDialog>([&](saveChangingDialog *d) {
        QVERIFY(!shell.close());   // the system asks the panel to close meanwhile
        stillOpen = d->isVisible();
        answerTurnOff(&seen, QStringLiteral("turn off"));
        formWidget<QPushButton>(*d, "pushButton_2")->click();   // Skip
    });
    shell.shutDown();
    QVERIFY(stillOpen);
    QCOMPARE(seen.dialogs, 1);   // one question, not a second one inside the first
    QCOMPARE(closeApp.count(), 1);
    QCOMPARE(wpeutilStarts(m).size(), 1);
}

KELPIE_TEST_MAIN(TurnOffTest)
#include "tst_turnoff.moc"
