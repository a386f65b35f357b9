#pragma once
// Acts on a modal dialog from inside its own loop: polls until a visible modal widget of type T
// is up, runs `act` on it once, and stops. Polling rather than a zero timer keeps a loaded machine
// from acting before the dialog opened.

#include <QApplication>
#include <QTimer>
#include <QWidget>
#include <functional>

template <typename T>
QTimer *whenModal(std::function<void(T *)> act)
{
    QTimer *poll = new QTimer(qApp);
    poll->setInterval(5);
    QObject::connect(poll, &QTimer::timeout, qApp, [poll, act] {
        T *widget = qobject_cast<T *>(QApplication::activeModalWidget());
        if (!widget || !widget->isVisible())
            return;
        poll->stop();
        poll->deleteLater();
        act(widget);
    });
    poll->start();
    return poll;
}
