// The live panel: the status ticks, hiding and showing, hot keys and native messages, the lock
// button, the keyboard layout list and the delayed initialisation chain.

#include "my_shell1.h"
#include "ui_my_shell1.h"

#include "desktop/dektopwidget.h"
#include "launcher/appstart.h"
#include "launcher/mainbutton.h"
#include "launcher/my_pushbutton.h"
#include "launcher/mymenu.h"
#include "look/analog_clock.h"
#include "look/resources.h"
#include "network/bringuplog.h"
#include "platform/platform.h"
#include "platform/win32values.h"
#include "startup.h"
#include "statustext.h"

#include <QCursor>
#include <QDateTime>
#include <QFile>
#include <QMouseEvent>
#include <QTimer>

namespace {

using namespace win32;

bool held(int vk)
{
    return sys().asyncKeyState(vk) < 0;
}

bool fileExists(const char *drivePath)
{
    return QFile::exists(sys().hostPath(QLatin1String(drivePath)));
}

} // namespace

// ---- status ----

void my_shell1::getSystemCondition()
{
    statusTimer->stop();
    getMemory();
    getResolution();
    networkStep();
    // Three seconds from the end of the pass, so a slow pass never piles up.
    statusTimer->start(3000);
}

void my_shell1::getMemory()
{
    const MemoryStatus memory = sys().memoryStatus();
    if (memory.ok)
        ui.label_3->setText(memoryText(memory.totalPhys, memory.availPhys));
}

void my_shell1::getResolution()
{
    DisplayMode current;
    const bool known = sys().currentDisplayMode(&current);
    if (known && (current.width != displayWidth || current.height != displayHeight)) {
        displayWidth = current.width;
        displayHeight = current.height;
        readScreen();
        tooltipStale = true;
        updateResolution();
    }
    if (!tooltipStale)
        return;
    DisplayMode mode;
    for (int index = 0; known && sys().displayMode(index, &mode); ++index) {
        if (mode.width == current.width && mode.height == current.height
            && mode.bitsPerPixel == current.bitsPerPixel && mode.frequency == current.frequency) {
            if (displayButton)
                displayButton->setToolTip(resolutionTooltip(mode.width, mode.height,
                                                             quint32(mode.bitsPerPixel),
                                                             quint32(mode.frequency)));
            break;
        }
    }
    tooltipStale = false;
}

WorkArea my_shell1::workAreaLeaving(const WorkArea &area, int k)
{
    WorkArea result = area;
    const int scale = screenHeight > 0 ? displayHeight / screenHeight : 1;
    result.bottom = displayHeight - scale * k;
    return result;
}

void my_shell1::updateResolution()
{
    setMask(QRegion(0, 0, screenWidth, 64));
    resize(screenWidth, screenHeight);
    ui.widget_2->setGeometry(width() - 500, 0, 400, 64);
    clock->setGeometry(width() - 68, 0, 64, 64);
    move(0, panelShown ? screenHeight - 64 : screenHeight - 3);
    WorkArea area;
    sys().workArea(&area);
    savedWorkArea = area;
    // Unlike the lock button, this write happens outside Windows PE too.
    sys().setWorkArea(workAreaLeaving(area, panelLocked ? 64 : 3));
    if (displayHeight == screenHeight) {
        updateDesktopInfo();
        if (winPeMode)
            sys().reloadWallpaper();
    }
}

// ---- the one-second tick ----

void my_shell1::hideWindow()
{
    const QDate today = QDate::currentDate();
    clock->update();
    ui.label_2->setText(dateText(today));
    ui.label->setText(dayText(today));

    const quint64 layout = sys().foregroundKeyboardLayout();
    const bool several = sys().keyboardLayoutCount() >= 2;
    ui.label_7->setVisible(several);
    ui.label_6->setVisible(several);
    const quint16 language = quint16((layout >> 16) & 0xFFFF);
    if (language != lastLayoutLanguage) {
        ui.label_7->setText(languageLabel(language));
        lastLayoutLanguage = language;
    }

    // While a menu is up the panel and the button stay as they are.
    if (mainMenu->isVisible() || startButton->menuRunning)
        return;
    if (startButton->opened && startButton->state == 2) {
        startButton->state = 0;
        startButton->opened = false;
        startButton->update();
    }
    const QPoint cursor = QCursor::pos();
    const int x = this->x();
    const int y = this->y();
    if (!panelShown) {
        if (cursor.y() > y)
            showWindow();
        return;
    }
    // Entering and leaving the start button use different squares on purpose, 45 and 64.
    if (cursor.x() > x && cursor.x() < x + 45 && cursor.y() > y && cursor.y() < y + 45
        && startButton->state == 0) {
        startButton->state = 1;
        startButton->update();
    }
    const bool inButtonSquare = cursor.x() >= x && cursor.x() <= x + 64 && cursor.y() >= y
        && cursor.y() <= y + 64;
    if (!inButtonSquare && startButton->state == 1) {
        startButton->state = 0;
        startButton->update();
    }
    if (panelLocked || modalOpen)
        return;
    if (cursor.x() >= x && cursor.x() <= x + width() && cursor.y() >= y
        && cursor.y() <= y + height())
        return;
    startButton->rainbowTimer->stop();
    panelShown = false;
    move(0, screenHeight - 3);
    update();
}

void my_shell1::showWindow()
{
    if (panelShown)
        return;
    panelShown = true;
    update();
    for (int step = 0; step < 61; ++step)
        move(x(), y() - 1);
    update();
}

void my_shell1::SetWindowOpacity(int level)
{
    setWindowOpacity(level / 10.0);
}

// ---- keys, messages, mouse ----

void my_shell1::registerKeys()
{
    const quintptr window = quintptr(winId());
    sys().registerHotKey(window, 1, modWin, vkLeftWin);
    sys().registerHotKey(window, 2, modControl | modShift, vkD);
    sys().registerHotKey(window, 3, modControl | modAlt, vkD);
    sys().installKeyboardHook(&my_shell1::keyboardHookEvent);
}

bool my_shell1::keyboardHookEvent(const KeyHookEvent &event)
{
    // Key-down only: the key-up flag is 128, so flags below 100 single out the press and its
    // auto-repeats.
    if (event.code == hcAction && held(vkControl) && held(vkMenu) && event.vkCode == quint32(vkDelete)
        && event.flags < 100) {
        appstart::open(QStringLiteral("taskmgr.exe"));
        return true;
    }
    return false;
}

bool my_shell1::nativeEvent(const QByteArray &eventType, void *message, long *result)
{
    if (handleNativeMessage(sys().decodeNativeMessage(eventType, message)))
        return true;
    return QWidget::nativeEvent(eventType, message, result);
}

bool my_shell1::handleNativeMessage(const NativeMessage &message)
{
    if (message.kind == NativeMessage::CopyData && message.wParam == 1
        && message.text == QLatin1String("Refresh"))
        desktop->refresh_Slot();
    if (message.kind != NativeMessage::HotKey)
        return false;
    switch (message.hotKeyId) {
    case 1:
        if (!startButton->opened) {
            showWindow();
            startButton->menuRunning = true;
            startButton->state = 2;
            startButton->opened = true;
            startButton->update();
            openMenu();   // returns once the menu has closed
        } else {
            // A second press while the menu runs only changes the button.
            startButton->opened = false;
            const QPoint cursor = QCursor::pos();
            const bool inside = cursor.x() > x() && cursor.x() < x() + 45 && cursor.y() > y()
                && cursor.y() < y() + 45;
            startButton->state = inside ? 1 : 0;
            startButton->update();
        }
        return true;
    case 2:
        appstart::open(QStringLiteral("DisplayRes.exe"), QStringLiteral("low"));
        return false;
    case 3:
        appstart::open(QStringLiteral("taskmgr.exe"));
        return false;
    default:
        return false;
    }
}

void my_shell1::enterEvent(QEvent *)
{
    // The 3 pixels left on the screen are a target for the pointer.
    showWindow();
}

void my_shell1::mousePressEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton) {
        dragOffset = event->globalPos() - frameGeometry().topLeft();
        event->accept();
    }
}

void my_shell1::mouseMoveEvent(QMouseEvent *event)
{
    // The panel does not follow the mouse.
    if (event->buttons() & Qt::LeftButton)
        event->accept();
}

void my_shell1::on_pushButton_3_clicked()
{
    int k;
    if (panelLocked) {
        panelLocked = false;
        ui.pushButton_3->setIcon(QIcon(shellResource("unlock.png")));
        k = 3;
    } else {
        panelLocked = true;
        ui.pushButton_3->setIcon(QIcon(shellResource("lock.png")));
        k = 64;
    }
    WorkArea area;
    sys().workArea(&area);
    savedWorkArea = area;
    if (winPeMode)
        sys().setWorkArea(workAreaLeaving(area, k));
}

void my_shell1::on_label_7_linkActivated(QString)
{
    layoutMenu->clear();
    for (QAction *action : layoutActions) {
        disconnect(action, &QAction::triggered, this, &my_shell1::langLinkTriggered);
        delete action;
    }
    layoutActions.clear();
    const QList<quint64> layouts = sys().keyboardLayouts();
    for (int i = 0; i < layouts.size(); ++i) {
        QAction *action =
            new QAction(sys().localeLanguageName(quint32(layouts[i] & 0xFFFF)), this);
        action->setData(i);
        connect(action, &QAction::triggered, this, &my_shell1::langLinkTriggered);
        layoutMenu->addAction(action);
        layoutActions.append(action);
    }
    if (!layouts.isEmpty())
        layoutMenu->exec(mapToGlobal(ui.label_7->mapTo(this, QPoint(0, 0)) - QPoint(100, 100)));
}

// ---- delayed initialisation ----

void my_shell1::init()
{
    // Start-up tools that have done their work before the shell came up.
    for (const char *tool : {"x:/Program Files/kelpie/initKelpie.exe",
                             "x:/Program Files/kelpie/initKP.exe",
                             "x:/Program Files/kelpie/cfg_winpe.exe"})
        QFile::remove(sys().hostPath(QLatin1String(tool)));
    showWindow();
    // openMenu() places the menu by its height, which is known only after a first showing.
    mainMenu->popup(QPoint(displayWidth, 0));
    mainMenu->hide();
    getSystemCondition();
    on_pushButton_3_clicked();
    hideTimer->start(1000);
    bringUpStage = 0;
    startIpPending = false;
    if (fileExists(bringup::staticIpScript)) {
        startIpPending = true;
        bringUpStage = 1;
        desktop->waitPanel->show();
        bringUpStep = 1;
        staticIpTimer->start(1000);
        return;
    }
    beginMapNetwork();
}

void my_shell1::beginMapNetwork()
{
    if (fileExists(bringup::mapNetworkScript)) {
        bringUpStage = 2;
        desktop->label()->setText(tr("Trying to map network resource. Please wait..."));
        desktop->waitPanel->show();
        bringUpStep = 1;
        desktop->label_3()->setText(QStringLiteral("1"));
        desktop->label_4()->setText(QStringLiteral("5"));
        mapNetworkTimer->start(1000);
        return;
    }
    openMenu();
    if (!secondInstance) {
        runPXEscripts();
        runTaskList();
    }
}

void my_shell1::needStopOperation(int)
{
    desktop->waitPanel->hide();
    if (bringUpStage == 1) {
        staticIpTimer->stop();
        beginMapNetwork();
        return;
    }
    mapNetworkTimer->stop();
    if (!secondInstance) {
        runPXEscripts();
        runTaskList();
    }
}

void my_shell1::addLogInfo(QString s)
{
    QFile log(sys().hostPath(QStringLiteral("x:/init.log")));
    const QIODevice::OpenMode mode =
        log.exists() ? QIODevice::WriteOnly | QIODevice::Append : QIODevice::WriteOnly;
    if (!log.open(mode))
        return;
    log.write(s.toLocal8Bit());
    log.write("\r\n", 2);
}
