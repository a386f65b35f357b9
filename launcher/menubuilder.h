#pragma once
// Turns the menu lines of data_shell.cfg into the sub-menus and entries of the main menu.
// The owner (the panel) parents every object, and its style sheet dresses the sub-menus; its
// startApp and closeMenu answer the entries.

#include "launcher/shellconfig.h"

#include <QList>

#include <functional>

class QMenu;
class QWidget;
class myMenu;
class my_Action;

struct MainMenuParts {
    QWidget *owner = nullptr;
    QMenu *mainMenu = nullptr;
    QList<my_Action *> *menuActions = nullptr;   // actions that carry a sub-menu
    QList<myMenu *> *subMenus = nullptr;
    QList<AppEntry> *appList = nullptr;
    std::function<void(int)> startApp;   // an entry was clicked, with its id
    std::function<void()> closeMenu;     // a sub-menu asks the main menu to close
};

void buildMainMenuEntries(const MainMenuPass &pass, const MainMenuParts &parts);

// Top of the main menu: below the panel when the room under the panel's top holds it, else
// above the panel with two pixels between them.
int mainMenuTop(int screenHeight, int panelTop, int menuHeight);
