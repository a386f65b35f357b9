// Operations of the panel whose behaviour lands with later work. Each exists under its name so
// that the construction and the wiring stand complete, and does nothing until then.

#include "my_shell1.h"

#include <QCloseEvent>

// User programs menu
void my_shell1::refreshClicked() {}
void my_shell1::userProgram_Cliked() {}
void my_shell1::userProgram_Remove() {}
void my_shell1::showRemoveAction(int, int) {}
void my_shell1::userMenuClosed() {}

// Live panel: status, hide and show, keys, delayed initialisation
void my_shell1::setupLocale() {}
void my_shell1::registerKeys() {}
void my_shell1::mousePressEvent(QMouseEvent *) {}
void my_shell1::mouseMoveEvent(QMouseEvent *) {}
void my_shell1::enterEvent(QEvent *) {}
bool my_shell1::nativeEvent(const QByteArray &eventType, void *message, long *result)
{
    return QWidget::nativeEvent(eventType, message, result);
}
void my_shell1::on_label_7_linkActivated(QString) {}
void my_shell1::on_pushButton_3_clicked() {}
void my_shell1::needStopOperation(int) {}
void my_shell1::hideWindow() {}
void my_shell1::showWindow() {}
void my_shell1::SetWindowOpacity(int) {}
void my_shell1::init() {}
void my_shell1::beginMapNetwork() {}
void my_shell1::getSystemCondition() {}
void my_shell1::getMemory() {}
void my_shell1::getResolution() {}
void my_shell1::updateResolution() {}
void my_shell1::addLogInfo(QString) {}

// Network bring-up
void my_shell1::checkStaticIP() {}
void my_shell1::checkMapNetwork() {}

// System actions. Until turn off lands, a close is refused unless a shut-down was accepted, so a
// stray close cannot take the technician's shell away.
void my_shell1::closeEvent(QCloseEvent *event)
{
    if (shuttingDown)
        event->accept();
    else
        event->ignore();
}
void my_shell1::shutDown() {}
void my_shell1::startRegScript() {}
void my_shell1::loadDriver() {}
void my_shell1::loadDriver_new(QString) {}
void my_shell1::runTaskDlg() {}
void my_shell1::runPXEscripts() {}
