#include "mainbutton.h"

#include "my_shell1/globals.h"
#include "look/resources.h"

#include <QBitmap>
#include <QMouseEvent>
#include <QPainter>
#include <QTimer>

mainButton::mainButton(QWidget *parent) : QWidget(parent)
{
    resize(64, 64);
    setAttribute(Qt::WA_MouseTracking);
    setMouseTracking(true);
    setCursor(Qt::PointingHandCursor);

    pixNormal.load(shellResource("b_Normal.png"));
    pixHover.load(shellResource("b_Hover.png"));
    pixPressed.load(shellResource("b_Pressed.png"));
    pixYellow1.load(shellResource("b_Yellow1.png"));
    pixYellow2.load(shellResource("b_Yellow2.png"));
    pixYellow3.load(shellResource("b_Yellow3.png"));
    pixYellow4.load(shellResource("b_Yellow4.png"));
    pixYellow5.load(shellResource("b_Yellow5.png"));
    // A picture without an alpha channel gives no mask; the button then stays square.
    if (!pixNormal.isNull()) {
        const QBitmap m = pixNormal.mask();
        if (!m.isNull())
            setMask(m);
    }

    state = 2;
    opened = true;
    menuRunning = false;
    rainbowIndex = 4;
    rainbowRound = 1;
    rainbowTimer = new QTimer(this);
    connect(rainbowTimer, &QTimer::timeout, this, &mainButton::rainbowStep);
}

const QPixmap *mainButton::pixmapForState(int s) const
{
    switch (s) {
    case 0: return &pixNormal;
    case 1: return &pixHover;
    case 2: return &pixPressed;
    case 5: return &pixYellow1;
    case 6: return &pixYellow2;
    case 7: return &pixYellow3;
    case 8: return &pixYellow4;
    case 9: return &pixYellow5;
    default: return nullptr;
    }
}

void mainButton::rainbowStep()
{
    rainbowTimer->stop();
    // Index 4..14 runs up to frame 5 at the middle (9) and back down.
    const int distance = qAbs(rainbowIndex - 9);
    state = distance >= 5 ? 0 : 9 - distance;
    repaint();

    ++rainbowIndex;
    if (rainbowIndex < 15) {
        rainbowTimer->start(50);
        return;
    }
    rainbowIndex = 4;
    rainbowTimer->start(rainbowRound < 2 ? 100 : 10000);
    ++rainbowRound;
    if (rainbowRound == 3)
        rainbowRound = 1;
}

void mainButton::enterEvent(QEvent *)
{
    if (opened)
        return;
    state = 1;
    repaint();
}

void mainButton::leaveEvent(QEvent *)
{
    if (opened)
        return;
    state = 0;
    repaint();
}

void mainButton::mouseMoveEvent(QMouseEvent *event)
{
    if (event->buttons() & Qt::LeftButton) {
        emit needMoveWindow();
        event->accept();
    }
}

void mainButton::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return;
    if (opened) {
        opened = false;
        state = 1;
    } else {
        opened = true;
        menuRunning = true;
        state = 2;
    }
    repaint();
    dragOffset = event->pos();
    event->accept();
}

void mainButton::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return;
    if (opened)
        emit needOpenMenu();
    else
        emit needCloseMenu();
    event->accept();
}

void mainButton::paintEvent(QPaintEvent *)
{
    const QPixmap *pix = pixmapForState(state);
    if (!pix || pix->isNull())
        return;
    QPainter p(this);
    p.drawPixmap(QRect(0, 0, 64, 61), *pix);
}
