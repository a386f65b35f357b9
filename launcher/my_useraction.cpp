#include "my_useraction.h"

#include "launcher/my_action.h"
#include "my_shell1/globals.h"

#include <QMenu>

my_userAction::my_userAction(QObject *parent) : QAction(parent)
{
    contextMenu = new QMenu;
    removeAction = new my_Action;
    removeAction->setText(tr("Remove shortcut"));
    startAction = new my_Action;
    startAction->setText(tr("Start"));

    contextMenu->setStyleSheet(menuStyle);
    contextMenu->setFont(menuFont());
    contextMenu->addAction(startAction);
    contextMenu->addAction(removeAction);
    connect(removeAction, &QAction::triggered, this, &my_userAction::remove_Slot);
    connect(startAction, &QAction::triggered, this, &my_userAction::startClicked);
    connect(this, &QAction::hovered, this, &my_userAction::enterEv);
}

my_userAction::~my_userAction()
{
    delete contextMenu;
    delete removeAction;
    delete startAction;
}

QPoint my_userAction::removeButtonPoint(const QPoint &menuPos, const QRect &entry)
{
    return QPoint(menuPos.x() + entry.width() + entry.x(), menuPos.y() + entry.y());
}

void my_userAction::remove_Slot()
{
    emit removeItem_fromMenu();
}

void my_userAction::startClicked()
{
    emit actionClicked();
}

void my_userAction::enterEv()
{
    if (!ownerMenu)
        return;
    const QPoint at = removeButtonPoint(ownerMenu->pos(), ownerMenu->actionGeometry(this));
    emit showRemoveAction(at.x(), at.y());
}
