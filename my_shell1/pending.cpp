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

// Locale
void my_shell1::setupLocale() {}

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
