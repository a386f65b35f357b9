#include "my_pushbutton.h"

#include <QCursor>
#include <QEvent>
#include <QToolTip>

my_PushButton::my_PushButton(QWidget *parent) : QPushButton(parent)
{
    setCursor(Qt::PointingHandCursor);
}

void my_PushButton::enterEvent(QEvent *event)
{
    QToolTip::showText(QCursor::pos(), toolTip(), this);
    event->accept();
}
