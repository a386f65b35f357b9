#include "wait_widget.h"

#include <QPainter>

wait_widget::wait_widget(QWidget *parent) : QWidget(parent)
{
    connect(&timer, &QTimer::timeout, this, &wait_widget::timerUpdate);
    hide();
    QTimer::singleShot(3000, this, &wait_widget::stop);
}

void wait_widget::init()
{
    show();
    running = true;
    timer.start(60);
}

void wait_widget::timerUpdate()
{
    update();
    step = (step + 1) % 12;
}

void wait_widget::stop()
{
    timer.stop();
    running = false;
    update();
    hide();
}

void wait_widget::paintEvent(QPaintEvent *)
{
    if (!running)
        return;
    const int side = qMin(width(), height());
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(width() / 2, height() / 2);
    painter.scale(side / 80.0, side / 80.0);
    painter.setPen(QPen(Qt::black, 1));
    for (int i = 0; i < 12; ++i) {
        int size = 8;
        QColor fill = Qt::white;
        if (step == i) {
            fill = Qt::red;
            size = 12;
        } else if (step == i + 1) {
            fill = Qt::blue;
            size = 10;
        } else if (step == i + 2) {
            fill = Qt::green;
        }
        painter.setBrush(fill);
        painter.drawEllipse(15, 15, size, size);
        painter.rotate(30);
    }
}
