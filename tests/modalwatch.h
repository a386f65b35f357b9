#pragma once
// Acts on a window from inside its own loop: polls until it is on the screen, acts on it once, and
// stops. Polling rather than a zero timer keeps a loaded machine from acting before it opened.

#include <QApplication>
#include <QTimer>
#include <QWidget>
#include <functional>

inline QTimer *whenShown(QObject *owner, std::function<QWidget *()> find, std::function<void(QWidget *)> act)
{
    QTimer *poll = new QTimer(owner);
    poll->setInterval(5);
    QObject::connect(poll, &QTimer::timeout, owner, [poll, find, act] {
        QWidget *widget = find();
        if (!widget || !widget->isVisible())
            return;
        poll->stop();
        poll->deleteLater();
        act(widget);
    });
    poll->start();
    return poll;
}

template <typename T>
QTimer *whenModal(std::function<void(T *)> act)
{
    return whenShown(qApp, [] { return qobject_cast<T *>(QApplication::activeModalWidget()); },
                     [act](QWidget *widget) { act(static_cast<T *>(widget)); });
}
