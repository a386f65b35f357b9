#include "mymenu.h"

#include <QEvent>

myMenu::myMenu(QWidget *parent) : QMenu(parent) {}

void myMenu::enterEvent(QEvent *event)
{
    mouseInside = true;
    event->accept();
}

void myMenu::leaveEvent(QEvent *event)
{
    mouseInside = false;
    event->accept();
}
