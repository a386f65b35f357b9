// Turn off: the save question first, then the turn off dialog, then wpeutil.exe and the end of
// the event loop. A close of the panel runs the same steps.

#include "my_shell1.h"

#include "actions/turn_off_widget.h"
#include "network/netcondition.h"
#include "platform/platform.h"
#include "settings/savechangingdialog.h"
#include "settings/savedvolume.h"
#include "settings/settingsfiles.h"
#include "settings/volumelist.h"

#include <QCloseEvent>
#include <QFile>

namespace {
const int swHide = 0;
}

bool my_shell1::firstAdapterReport(QString *report)
{
    if (netInfo.getAdapterCount() <= 0)
        return false;
    *report = netInfo.getAdapterStatus(0);
    return true;
}

void my_shell1::askToSaveChanges()
{
    QStringList startMenuAdded, desktopAdded;
    const bool startMenuChanged = findAddedFiles(startMenuAdded, startMenuConditionLog, startMenuPath);
    const bool desktopChanged = findAddedFiles(desktopAdded, desktopConditionLog, desktopPath);

    NetworkCondition atStart;
    readStartNetwork(atStart);
    NetworkCondition now;
    bool networkDiffers = false;
    QString report;
    if (firstAdapterReport(&report)) {
        parseAdapterReport(report, now);
        networkDiffers = networkChanged(atStart, now);
    }

    QString resolutionText;
    QFile resolution(sys().hostPath(QStringLiteral("x:/tmpReg/resolution.log")));
    if (resolution.open(QIODevice::ReadOnly)) {
        const QStringList lines = readLogLines(resolution);
        if (!lines.isEmpty())
            resolutionText = lines.last();
    }

    // Under DHCP the removable volumes are walked as always; the walk changes nothing (the old
    // _kelpieNet.ini goes only with a save) and costs the time of the drive queries.
    if (now.dhcp == 1)
        listRemovableVolumes();

    if (!startMenuChanged && !desktopChanged && !networkDiffers && resolutionText.isEmpty())
        return;

    saveDialog->move(screenWidth / 2 - saveDialog->width() / 2,
                     screenHeight / 2 - saveDialog->height() / 2);
    saveDialog->networkDiffers = networkDiffers;
    saveDialog->startMenuChanged = startMenuChanged;
    saveDialog->desktopChanged = desktopChanged;
    saveDialog->resolutionText = resolutionText;
    saveDialog->startMenuAdded = &startMenuAdded;
    saveDialog->desktopAdded = &desktopAdded;
    saveDialog->networkNow = &now;
    saveDialog->bootLetter = atStart.bootLetter;
    saveDialog->fillSummary();
    saveDialog->exec();
    // What the pointers named ends here.
    saveDialog->startMenuAdded = nullptr;
    saveDialog->desktopAdded = nullptr;
    saveDialog->networkNow = nullptr;
}

void my_shell1::shutDown()
{
    turnOffAsking = true;
    askToSaveChanges();

    turn_off_widget *dialog = new turn_off_widget(this);
    modalOpen = true;
    const int result = dialog->exec();
    turnOffAsking = false;
    if (result != QDialog::Accepted) {
        delete dialog;
        modalOpen = false;
        return;
    }
    const QString program = QStringLiteral("wpeutil.exe");
    const QString argument = dialog->action == 1 ? QStringLiteral("Reboot") : QStringLiteral("Shutdown");
    if (winPeMode)
        sys().shellExecute(QStringLiteral("open"), program, argument, swHide);
    shuttingDown = true;
    delete dialog;
    modalOpen = false;
    close();
}

void my_shell1::closeEvent(QCloseEvent *event)
{
    if (shuttingDown) {
        event->accept();
        emit closeApp();
        return;
    }
    event->ignore();
    // A close that comes while the questions are up (the system's, since they are modal) finds
    // them already asked.
    if (!turnOffAsking)
        shutDown();
    // The toolkit drops a close asked for while this one is being handled, so the close at the
    // end of the question ends the shell here instead.
    if (shuttingDown && isVisible()) {
        event->accept();
        emit closeApp();
    }
}
