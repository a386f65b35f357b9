#include "analog_clock.h"

#include <QMouseEvent>
#include <QPainter>
#include <QPolygon>

namespace {
// Logical space: 0, 0 is the centre, a hand at rest points up.
const QPoint hourHand[3] = {QPoint(7, 8), QPoint(-7, 8), QPoint(0, -40)};
const QPoint minuteHand[3] = {QPoint(7, 8), QPoint(-7, 8), QPoint(0, -70)};
const QPoint secondHand[3] = {QPoint(3, 8), QPoint(-3, 8), QPoint(0, -90)};
}

analog_clock::analog_clock(QWidget *parent)
    : QWidget(parent)
    , hourColor(253, 253, 253, 255)
    , minuteColor(253, 253, 253, 255)
    , secondColor(253, 253, 253, 255)
{
    resize(64, 64);
}

double analog_clock::hourAngle(const QTime &t)
{
    return 30.0 * (t.hour() + t.minute() / 60.0);
}

double analog_clock::minuteAngle(const QTime &t)
{
    return 6.0 * (t.minute() + t.second() / 60.0);
}

double analog_clock::secondAngle(const QTime &t)
{
    return 6.0 * t.second();
}

void analog_clock::mouseDoubleClickEvent(QMouseEvent *event)
{
    emit needStartTimeEditor();
    event->accept();
}

void analog_clock::paintEvent(QPaintEvent *)
{
    // One reading of the clock for all three hands.
    const QTime now = QTime::currentTime();
    QPainter painter(this);
    drawClock(painter, now);
}

void analog_clock::drawClock(QPainter &painter, const QTime &t) const
{
    // No background is drawn: the panel shows through.
    painter.setRenderHint(QPainter::Antialiasing);
    // The centre stands two pixels right of the widget's middle, on purpose.
    painter.translate(34.0, 32.0);
    painter.scale(0.27, 0.27);

    painter.setPen(Qt::NoPen);
    painter.setBrush(QBrush(hourColor, Qt::SolidPattern));
    painter.save();
    painter.rotate(hourAngle(t));
    painter.drawConvexPolygon(hourHand, 3);
    painter.restore();

    painter.setPen(hourColor);
    for (int i = 0; i < 12; ++i) {
        painter.drawLine(88, 0, 96, 0);
        painter.rotate(30.0);
    }

    painter.setPen(Qt::NoPen);
    painter.setBrush(QBrush(minuteColor, Qt::SolidPattern));
    painter.save();
    painter.rotate(minuteAngle(t));
    painter.drawConvexPolygon(minuteHand, 3);
    painter.restore();

    painter.setBrush(QBrush(secondColor, Qt::SolidPattern));
    painter.save();
    painter.rotate(secondAngle(t));
    painter.drawConvexPolygon(secondHand, 3);
    painter.restore();
}
