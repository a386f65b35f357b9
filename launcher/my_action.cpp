#include "my_action.h"

#include <QCursor>
#include <QMenu>
#include <QToolTip>

my_Action::my_Action(QObject *parent) : QAction(parent)
{
    connect(this, &QAction::triggered, this, &my_Action::onTriggered);
    connect(this, &QAction::hovered, this, &my_Action::enterEv);
}

void my_Action::onTriggered()
{
    QToolTip::hideText();
    emit actionClicked(id);
}

void my_Action::enterEv()
{
    // An entry placed straight in the main menu has no menu to measure against: show nothing.
    if (menu && !hint.isEmpty() && isVisible()) {
        const QRect r = menu->actionGeometry(this);
        const QPoint cursor = QCursor::pos();
        const QPoint local = cursor - menu->geometry().topLeft();
        // Borders included, unlike QRect::contains with its exclusive right and bottom.
        if (!r.isEmpty() && local.x() >= r.left() && local.x() <= r.left() + r.width()
            && local.y() >= r.top() && local.y() <= r.top() + r.height()) {
            QToolTip::showText(cursor, hint);
            return;
        }
    }
    QToolTip::hideText();
}
