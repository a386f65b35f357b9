#include "menubuilder.h"

#include "launcher/appstart.h"
#include "launcher/my_action.h"
#include "launcher/mymenu.h"
#include "look/lazyicon.h"

#include <QHash>
#include <QIcon>

void buildMainMenuEntries(const MainMenuPass &pass, const MainMenuParts &parts)
{
    // A large medium names the same few icons thousands of times: each file is looked at once,
    // when a menu first shows it. QIcon shares its data, so every entry still bears its own icon.
    QHash<QString, QIcon> icons;
    const auto icon = [&icons](const QString &path) {
        auto it = icons.find(path);
        if (it == icons.end())
            it = icons.insert(path, lazyFileIcon(path));
        return *it;
    };
    // The first sub-menu entry of each id, as a search from the front of menuActions finds it.
    QHash<int, my_Action *> parentById;
    for (my_Action *c : qAsConst(*parts.menuActions)) {
        if (!parentById.contains(c->id))
            parentById.insert(c->id, c);
    }

    for (const MenuLine &m : pass.menu) {
        switch (m.kind) {
        case MenuLine::Separator:
            parts.mainMenu->addSeparator();
            break;
        case MenuLine::SubMenu: {
            auto *sub = new myMenu(parts.owner);
            parts.subMenus->append(sub);
            if (parts.closeMenu)
                QObject::connect(sub, &myMenu::needCloseMenu, parts.owner, parts.closeMenu);
            auto *a = new my_Action(parts.owner);
            a->id = m.id;
            a->setText(m.text);
            a->setIcon(icon(m.icon));
            a->setMenu(sub);
            parts.menuActions->append(a);
            if (!parentById.contains(a->id))
                parentById.insert(a->id, a);
            parts.mainMenu->addAction(a);
            break;
        }
        case MenuLine::Item: {
            auto *a = new my_Action(parts.owner);
            a->id = m.id;
            a->setText(m.text);
            a->setIcon(icon(appstart::menuIconPath(m.icon)));
            a->setFont(menuFont());
            a->hint = m.hint;
            if (parts.startApp)
                QObject::connect(a, &my_Action::actionClicked, parts.owner, parts.startApp);
            if (m.parentId == 0) {
                parts.mainMenu->addAction(a);
                parts.appList->append({a->id, m.path, m.params});
            } else if (m.parentId > 0) {
                my_Action *parent = parentById.value(m.parentId);
                // Parents are known by the lines above only: the file is read in one pass.
                if (!parent) {
                    delete a;
                    break;
                }
                QMenu *sub = parent->QAction::menu();
                sub->addAction(a);
                a->menu = sub;
                parts.appList->append({a->id, m.path, m.params});
            }
            // Below 0 the entry stays unplaced and has no record.
            break;
        }
        }
    }
}

int mainMenuTop(int screenHeight, int panelTop, int menuHeight)
{
    if (screenHeight - panelTop >= menuHeight + 66)
        return panelTop + 66;
    return panelTop - menuHeight - 2;
}
