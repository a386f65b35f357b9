// The network on the panel: the adapter buttons with their reports on the slow tick, and the
// two bring-up stages (static address, then shares) that run in the desktop's wait panel.

#include "my_shell1.h"
#include "ui_my_shell1.h"

#include "desktop/dektopwidget.h"
#include "launcher/appstart.h"
#include "launcher/my_pushbutton.h"
#include "look/resources.h"
#include "network/bringuplog.h"
#include "platform/win32values.h"

#include <QIcon>
#include <QLabel>
#include <QTimer>

namespace {

const int firstPollTick = 3;
const int lastStaticStep = 6;   // five attempts have failed
const int lastMapStep = 4;      // three attempts have failed

// The two adapter pictures, decoded once rather than on every report.
const QIcon &netIcon(bool connected)
{
    static const QIcon on(shellResource(QStringLiteral("net_on.png")));
    static const QIcon off(shellResource(QStringLiteral("web_of.png")));
    return connected ? on : off;
}

// One second of a stage's countdown, which lives in the label itself. True on the tick that
// writes 0: the attempt falls on it.
bool countDown(QLabel *seconds)
{
    const int n = seconds->text().toInt();
    seconds->setText(QString::number(n - 1));
    return n == 1;
}

} // namespace

void my_shell1::networkStep()
{
    // The count from before the enumeration: the tick that first finds adapters only makes their
    // buttons, the reports follow on the next.
    const int n = netInfo.getAdapterCount();
    if (n == 0 && adapterPollCount == firstPollTick)
        netInfo.refreshAdapters();
    updateNetworkButtons();
    for (int position = 0; position < n && position < netButtons.size(); ++position) {
        netButtons[position]->setToolTip(netInfo.getAdapterStatus(position));
        netButtons[position]->setIcon(
            netInfo.adapterStatus == qint32(win32::ifOperStatusOperational) ? netIcon(true)
                                                                          : netIcon(false));
    }
}

void my_shell1::updateNetworkButtons()
{
    if (adapterPollCount < firstPollTick) {
        ++adapterPollCount;
        return;
    }
    const int count = netInfo.getAdapterCount();
    if (count != 0)
        noAdapterButton->hide();
    if (netButtons.size() == count || count < 1)
        return;
    // As many buttons as the count, not the difference, and none removed: with the final set of
    // adapters the row settles at the count.
    for (int i = 0; i < count; ++i) {
        my_PushButton *button = new my_PushButton(ui.widget);
        button->setIconSize(QSize(16, 16));
        ui.horizontalLayout->addWidget(button);
        button->setFlat(true);
        button->setIcon(netIcon(false));
        connect(button, &QPushButton::clicked, this, &my_shell1::startIpConf);
        netButtons.append(button);
    }
}

void my_shell1::checkStaticIP()
{
    if (bringUpStep == lastStaticStep) {
        needStopOperation(1);
        return;
    }
    if (!countDown(desktop->label_4()))
        return;
    ++bringUpStep;
    // Stopped across the attempt, so that it cannot re-enter.
    staticIpTimer->stop();
    const ShellResult started = appstart::open(QLatin1String(bringup::staticIpScript));
    addLogInfo(QStringLiteral("startIp=%1").arg(started.lastError));
    // The script is not waited for: the log read may be one an earlier run left.
    if (bringup::staticIpSucceeded(QLatin1String(bringup::staticIpLog))) {
        needStopOperation(1);
        return;
    }
    desktop->label_3()->setText(QString::number(bringUpStep));
    desktop->label_4()->setText(QStringLiteral("5"));
    staticIpTimer->start(1000);
}

void my_shell1::checkMapNetwork()
{
    if (bringUpStep == lastMapStep) {
        needStopOperation(1);
        return;
    }
    if (!countDown(desktop->label_4()))
        return;
    ++bringUpStep;
    mapNetworkTimer->stop();
    appstart::open(QLatin1String(bringup::mapNetworkScript));
    if (bringup::mapNetworkSucceeded(QLatin1String(bringup::mapNetworkLog))) {
        needStopOperation(1);
        return;
    }
    desktop->label_3()->setText(QString::number(bringUpStep));
    desktop->label_4()->setText(QStringLiteral("5"));
    mapNetworkTimer->start(1000);
}
