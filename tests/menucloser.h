#pragma once
// Closes a modal menu from inside its own loop: polls until the menu is on the screen, runs
// `during` there, then closes it. Polling rather than a zero timer keeps a loaded machine from
// closing the menu before it opened, which would leave the test waiting in exec() for ever.

#include <QMenu>
#include <QTimer>
#include <functional>

inline void closeMenuWhenShown(QMenu *menu, std::function<void()> during = nullptr)
{
    QTimer *poll = new QTimer(menu);
    poll->setInterval(5);
    QObject::connect(poll, &QTimer::timeout, menu, [menu, poll, during] {
        if (!menu->isVisible())
            return;
        poll->stop();
        poll->deleteLater();
        if (during)
            during();
        menu->close();
    });
    poll->start();
}
