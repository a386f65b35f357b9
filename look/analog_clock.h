#pragma once
// The small round clock at the right end of the panel. It has no timer of its own: the panel's
// one-second tick asks it to repaint, and each repaint reads the time afresh.

#include <QColor>
#include <QTime>
#include <QWidget>

class QPainter;

class analog_clock : public QWidget
{
    Q_OBJECT
public:
    explicit analog_clock(QWidget *parent);

    // Rotations in degrees, clockwise from twelve. The hour is not reduced to twelve hours: the
    // rotation wraps by itself. The second hand stands on whole seconds.
    static double hourAngle(const QTime &t);
    static double minuteAngle(const QTime &t);
    static double secondAngle(const QTime &t);

    // Draws the hands and marks for the time given, on a painter that stands at the widget's
    // origin. paintEvent calls it with the current time.
    void drawClock(QPainter &painter, const QTime &t) const;

signals:
    void needStartTimeEditor();

protected:
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    // Three colours of the same value, one per hand; the marks take the hour colour.
    QColor hourColor;
    QColor minuteColor;
    QColor secondColor;
};
