#include "mybutton.h"

#include "my_shell1/globals.h"

#include <QCursor>
#include <QMouseEvent>
#include <QToolTip>

MyButton::MyButton(QWidget *parent, int x, int y, int id_, int sizeClass_,
                   const QString &normalPath, const QString &nearPath, const QString &activePath,
                   const QString &tip_)
    : QLabel(parent), posX(x), posY(y), id(id_), sizeClass(sizeClass_), tip(tip_)
{
    picNormal.load(normalPath);
    picNear.load(nearPath);
    picActive.load(activePath);
    setScaledContents(true);
    resize(lookSize(Rest));
    setPixmap(picNormal);
    move(posX, posY);
    setCursor(Qt::PointingHandCursor);
}

QSize MyButton::lookSize(Look look) const
{
    static const QSize class1[] = {{24, 24}, {32, 32}, {48, 54}, {50, 56}};
    static const QSize class2[] = {{16, 16}, {24, 24}, {32, 35}, {34, 37}};
    return sizeClass == 2 ? class2[look] : class1[look];
}

QPoint MyButton::lookOffset(Look look) const
{
    static const QPoint class1[] = {{0, 0}, {-6, -10}, {-14, -30}, {-15, -31}};
    static const QPoint class2[] = {{0, 0}, {-4, -7}, {-8, -19}, {-9, -20}};
    return sizeClass == 2 ? class2[look] : class1[look];
}

void MyButton::showLook(Look look)
{
    move(QPoint(posX, posY) + lookOffset(look));
    resize(lookSize(look));
    switch (look) {
    case Rest: setPixmap(picNormal); break;
    case Near: setPixmap(picNear); break;
    case Hover:
    case Pressed: setPixmap(picActive); break;
    }
}

void MyButton::near_button_is_active(int n)
{
    if (n == id)
        return;
    if (n - 1 == id || n + 1 == id)
        showLook(Near);
    else
        showLook(Rest);
}

void MyButton::enterEvent(QEvent *)
{
    hovered = true;
    showLook(Hover);
    emit i_am_active(id);
    QToolTip::showText(QPoint(QCursor::pos().x(), displayHeight - 150), tip);
}

void MyButton::leaveEvent(QEvent *)
{
    hovered = false;
    showLook(Rest);
    emit looseActive();
}

void MyButton::mouseDoubleClickEvent(QMouseEvent *event)
{
    // Swallowed: the second press does not swell, its release still starts again.
    event->accept();
}

void MyButton::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return;
    showLook(Pressed);
    dragOffset = QPoint(x() + event->x(), displayHeight - 90 + event->y());
    event->accept();
}

void MyButton::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return;
    showLook(Hover);
    emit mButtonClicked(id);
    event->accept();
}
