#pragma once
// Closes a modal menu from inside its own loop once it is on the screen, after running `during`
// there: closed before it opened, it would leave the test waiting in exec() for ever.

#include "modalwatch.h"

#include <QMenu>

inline void closeMenuWhenShown(QMenu *menu, std::function<void()> during = nullptr)
{
    whenShown(menu, [menu] { return menu; }, [menu, during](QWidget *) {
        if (during)
            during();
        menu->close();
    });
}
