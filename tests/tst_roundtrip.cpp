// The circle the medium exists for, on the demo machine: customise, turn off, save to the stick,
// boot again with a fresh RAM drive and the same stick, find everything back.

#include "actions/turn_off_widget.h"
#include "desktop/dektopwidget.h"
#include "my_shell1/globals.h"
#include "my_shell1/my_shell1.h"
#include "my_shell1/startup.h"
#include "settings/savechangingdialog.h"
#include "modalwatch.h"
#include "testmachine.h"
#include "testmain.h"
#include "testshell.h"

#include <QAction>
#include <QCheckBox>
#include <QDirIterator>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTreeWidget>

namespace {

const QString desktop = "drives/X/Users/Default/Desktop/";
const QString menu = "drives/X/Users/Default/AppData/Roaming/Microsoft/Windows/Start Menu/Programs/";

void copyTree(const QString &from, const QString &to)
{
    // Shortcuts count as files: on Windows the toolkit would take them for links to follow.
    QDirIterator it(from, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                    QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString source = it.next();
        QFile in(source), out(to + source.mid(from.size()));
        if (it.fileInfo().isDir() && !it.fileInfo().isSymLink())
            QVERIFY(QDir().mkpath(out.fileName()));
        else
            QVERIFY(in.open(QIODevice::ReadOnly) && out.open(QIODevice::WriteOnly)
                    && out.write(in.readAll()) == in.size());
    }
}

// Boots the machine folder as the process does, up to the running panel; the start-up chain is
// held back and the slow tick's network step runs until the adapters are known.
std::unique_ptr<my_shell1> boot(TestMachine &m)
{
    resetGlobals();
    m.use<SimPlatform>();
    prepareShell(*qApp);
    auto shell = makeShell(screenWidth, screenHeight);
    shell->show();
    for (int tick = 0; tick < 5; ++tick)
        shell->networkStep();
    return shell;
}

} // namespace

class RoundTripTest : public QObject {
    Q_OBJECT
private slots:
    void savedOnOneBootFoundOnTheNext()
    {
        TestMachine m;
        copyTree(KELPIE_SOURCE_DIR "/demo/machine", m.folder());
        m.write("drives/C/Tools/Tool.exe", "MZ");

        // First boot: the technician adds two shortcuts and another static address.
        {
            const auto shell = boot(m);
            QVERIFY(winPeMode);
            QCOMPARE(bootLetter, QString("E"));
            m.addShortcut(desktop + "Tool.lnk", "C:\\Tools\\Tool.exe", "C:\\Tools");
            m.addShortcut(menu + "Kit/Disk Kit.lnk", "X:\\Program Files\\kelpie\\Tools\\DiskEditor.exe");
            m.write("machine.ini", m.read("machine.ini").replace("address=192.168.1.50/", "address=192.168.1.77/"));

            QStringList seen;   // checked boxes, volume rows, the chosen one, the three summaries
            whenModal<saveChangingDialog>([&](saveChangingDialog *d) {
                for (const char *name : {"checkBox", "checkBox_2", "checkBox_3", "checkBox_4"})
                    if (formWidget<QCheckBox>(*d, name)->isChecked())
                        seen << formWidget<QCheckBox>(*d, name)->text();
                QTreeWidget *tree = formWidget<QTreeWidget>(*d, "treeWidget");
                for (int i = 0; i < tree->topLevelItemCount(); ++i)
                    seen << tree->topLevelItem(i)->text(0);
                seen << (tree->currentItem() ? tree->currentItem()->text(2) : QString()) << d->startMenuText
                     << d->desktopText << d->networkText;
                whenModal<turn_off_widget>([](turn_off_widget *t) { formWidget<QPushButton>(*t, "pushButton_3")->click(); });
                formWidget<QPushButton>(*d, "pushButton")->click();
            });
            QSignalSpy closeApp(shell.get(), &my_shell1::closeApp);
            shell->turnOffAction->trigger();

            QCOMPARE(seen, QStringList({"Network", "Start Menu", "Desktop", "E: (KELPIE) on ACME FLASH DRIVE", "E",
                                        "Disk Kit.lnk\n", "Tool.lnk\n",
                                        "Network: Connected\nIP Address: 192.168.1.77\nMask: 255.255.255.0\n"
                                        "DNS: 192.168.1.1\nGateway: 192.168.1.1\nWirewall: Off"}));
            // The locale file's own wpeutil starts came at boot; turning off adds exactly one.
            QCOMPARE(m.journal().filter(QRegularExpression("wpeutil.exe\t(Shutdown|Reboot)")),
                     QStringList{"start\topen\twpeutil.exe\tShutdown\t0"});
            QCOMPARE(closeApp.count(), 1);
        }

        // What the stick holds now: the boot file's settings, carried, with the network anew.
        const QByteArray saved = m.read("drives/E/_kelpie.ini");
        QCOMPARE(saved, QByteArray("imageLang=1033\r\nlang=en-US\r\ntmz=12\r\nnetwork=1\r\nfirewall=0\r\ntimeout=30\r\n"
                                   "screenRes=1024x768\r\nappRun=Zembra.exe\r\npwd=b64:c2VjcmV0\r\nbuild=2031"));
        QCOMPARE(m.read("drives/E/_kelpieNet.ini"),
                 QByteArray("ipAdd=192.168.1.77\r\nipMask=255.255.255.0\r\nipDNS=192.168.1.1\r\nipGateway=192.168.1.1"));

        // Second boot on another PC: a fresh RAM drive from the medium, the same stick, the Windows
        // disk now D:, and the medium's tools have applied the saved address.
        QDir drives(m.folder() + "/drives");
        QVERIFY(QDir(drives.filePath("X")).removeRecursively() && drives.mkdir("X") && drives.rename("C", "D"));
        copyTree(KELPIE_SOURCE_DIR "/demo/machine/drives/X", drives.filePath("X"));
        m.write("drives/X/tmpReg/startNetwork.log",
                "bootLetter=E\r\nnetwork=1\r\nfirewall=0\r\n" + m.read("drives/E/_kelpieNet.ini"));
        {
            const auto shell = boot(m);
            QCOMPARE(savedVolumeLetter, QString("E"));
            // COM is ready on this thread before the restore reaches the shell link object.
            const QStringList journal = m.journal();
            const int com = journal.indexOf("com\tapartment");
            QVERIFY(com >= 0 && com < journal.indexOf(QRegularExpression("shortcut\tx:.*")));
            shelllink::Link kit;
            QVERIFY(shelllink::read(m.read(menu + "Kit/Disk Kit.lnk"), &kit));
            QCOMPARE(kit.target, QString("X:\\Program Files\\kelpie\\Tools\\DiskEditor.exe"));

            // The desktop's shortcut was moved to the new letter and starts its program there.
            shell->desktop->refresh_Slot();
            shell->desktop->startLink("X:\\Users\\Default\\Desktop\\Tool.lnk", QString());
            QCOMPARE(m.journal().filter(QRegularExpression("^link\\t")),
                     QStringList{"link\tX:\\Users\\Default\\Desktop\\Tool.lnk\tD:\\Tools\\Tool.exe\t\tD:\\Tools"});

            // Nothing changed since this boot: no Save dialog, straight to the turn off question.
            bool saveShown = false, turnOffShown = false;
            QPointer<QTimer> watch = whenModal<saveChangingDialog>([&](saveChangingDialog *d) { saveShown = true; d->reject(); });
            whenModal<turn_off_widget>([&](turn_off_widget *t) { turnOffShown = true; formWidget<QPushButton>(*t, "pushButton")->click(); });
            shell->turnOffAction->trigger();
            delete watch.data();
            QVERIFY(turnOffShown && !saveShown);
        }
        QCOMPARE(m.read("drives/E/_kelpie.ini"), saved);
    }
};

KELPIE_TEST_MAIN(RoundTripTest)
#include "tst_roundtrip.moc"
