// Operations of the panel whose behaviour lands with later work. Each exists under its name so
// that the construction and the wiring stand complete, and does nothing until then.

#include "my_shell1.h"

#include <QCloseEvent>


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
