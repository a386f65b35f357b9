// The User Programs menu: a mirror of the start menu folder, and the road of the desktop's remove
// button that takes an entry out of it.

#include "my_shell1.h"

#include "desktop/dektopwidget.h"
#include "desktop/my_toolbutton.h"
#include "launcher/my_action.h"
#include "launcher/my_useraction.h"
#include "launcher/mymenu.h"
#include "look/lazyicon.h"
#include "look/resources.h"
#include "platform/platform.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QIcon>
#include <QMessageBox>
#include <QTimer>
#include <QToolButton>

namespace {

// Deeper than any start menu a medium carries; only a loop the chain check misses gets here.
const int deepestFolder = 256;

// Files and folders mixed, by name ignoring case, hidden and system ones too.
QFileInfoList listFolder(const QString &drivePath)
{
    const QDir dir(sys().hostPath(drivePath));
    return dir.entryInfoList(QStringList{QStringLiteral("*")},
                             QDir::Files | QDir::Dirs | QDir::Hidden | QDir::System
                                 | QDir::NoDotAndDotDot,
                             QDir::Name | QDir::IgnoreCase);
}

bool isProgram(const QFileInfo &info)
{
    return info.isFile() || info.isSymLink();
}

QString folderKey(const QFileInfo &info)
{
    const QString canonical = info.canonicalFilePath();
    return canonical.isEmpty() ? info.absoluteFilePath() : canonical;
}

bool hasFiles(const QString &path, QStringList *chain)
{
    const QString folder = path + QLatin1Char('/');
    const QFileInfo self(sys().hostPath(folder));
    if (!self.isDir() || chain->contains(folderKey(self)) || chain->size() >= deepestFolder)
        return false;
    chain->append(folderKey(self));
    bool found = false;
    for (const QFileInfo &info : listFolder(folder)) {
        if (isDesktopIni(info.fileName()))
            continue;
        if (isProgram(info) || (info.isDir() && hasFiles(sys().drivePath(info.absoluteFilePath()), chain))) {
            found = true;
            break;
        }
    }
    chain->removeLast();
    return found;
}

// The name of an entry: cut at the first ".lnk", in exactly that case.
QString entryText(const QString &fileName)
{
    const int at = fileName.indexOf(QLatin1String(".lnk"));
    return at < 0 ? fileName : fileName.left(at);
}

} // namespace

void my_shell1::refreshClicked()
{
    selectedUserAction = nullptr;
    const QDir dir(sys().hostPath(startMenuPath));
    if (!dir.exists())
        return;
    const QFileInfoList entries = listFolder(startMenuPath);
    bool any = false;
    for (const QFileInfo &info : entries)
        any = any || !isDesktopIni(info.fileName());

    if (userMenu)
        userMenu->clear();
    if (!any)
        return;

    if (!userMenu) {
        userMenu = new myMenu(this);
        subMenus.append(userMenu);
        connect(userMenu, &myMenu::needCloseMenu, this, &my_shell1::closeMenu);
        auto *entry = new my_Action(this);
        entry->id = -10;
        entry->setText(tr("User Programs"));
        entry->setIcon(lazyFileIcon(shellResource(QStringLiteral("app_exec.png"))));
        entry->setMenu(userMenu);
        menuActions.append(entry);
        // At the menu's end as it stands now: below "Turn Off Computer" once the fixed entries
        // are in, when the folder gains its first entry only later.
        mainMenu->addAction(entry);
    }

    userFolderChain = QStringList{folderKey(QFileInfo(dir.absolutePath()))};
    for (const QFileInfo &info : entries) {
        if (isDesktopIni(info.fileName()))
            continue;
        // The medium's own power entries stay out of the top level.
        if (info.fileName().toLower().contains(QLatin1String("power")))
            continue;
        if (isProgram(info)) {
            addUserProgram(info, userMenu);
        } else if (info.isDir()) {
            if (folderHasFiles(sys().drivePath(info.absoluteFilePath())))
                addUserFolder(info, userMenu);
        }
    }
}

void my_shell1::addUserProgram(const QFileInfo &info, QMenu *menu)
{
    auto *entry = new my_userAction(this);
    entry->id = -10;
    entry->setText(entryText(info.fileName()));
    entry->path = sys().drivePath(info.absoluteFilePath());
    entry->setIcon(QIcon(pixmapForFile(entry->path)));
    entry->setFont(menuFont());
    entry->ownerMenu = menu;
    connect(entry, &QAction::triggered, this, &my_shell1::userProgram_Cliked);
    connect(entry, &my_userAction::showRemoveAction, this, &my_shell1::showRemoveAction);
    menu->addAction(entry);
    // Joined for each entry as it comes; one connection does the work of many, and the menu
    // that lives across refreshes does not gather more with each one.
    connect(menu, &QMenu::aboutToHide, this, &my_shell1::userMenuClosed, Qt::UniqueConnection);
    connect(menu, &QMenu::aboutToShow, this, &my_shell1::userMenuClosed, Qt::UniqueConnection);
}

void my_shell1::addUserFolder(const QFileInfo &info, QMenu *parentMenu)
{
    const QString key = folderKey(info);
    if (userFolderChain.contains(key) || userFolderChain.size() >= deepestFolder)
        return;

    auto *menu = new myMenu(this);
    subMenus.append(menu);
    connect(menu, &myMenu::needCloseMenu, this, &my_shell1::closeMenu);
    auto *entry = new my_Action(this);
    entry->id = -10;
    entry->setText(info.fileName());
    // The provider's first folder icon searches the icon theme: done when the menu shows it.
    const QFileIconProvider *provider = &iconProvider;
    entry->setIcon(lazyIcon([provider, info] { return provider->icon(info); }));
    entry->setFont(menuFont());
    entry->setMenu(menu);
    menuActions.append(entry);
    parentMenu->addAction(entry);

    userFolderChain.append(key);
    for (const QFileInfo &inner : listFolder(sys().drivePath(info.absoluteFilePath()) + QLatin1Char('/'))) {
        if (isDesktopIni(inner.fileName()))
            continue;
        if (isProgram(inner))
            addUserProgram(inner, menu);
        else if (inner.isDir())
            addUserFolder(inner, menu);
    }
    userFolderChain.removeLast();
}

bool my_shell1::folderHasFiles(QString path)
{
    QStringList chain = userFolderChain;
    return hasFiles(path, &chain);
}

void my_shell1::userProgram_Cliked()
{
    const my_userAction *entry = qobject_cast<my_userAction *>(sender());
    if (!entry)
        return;
    QString path = entry->path;
    path.replace(QLatin1Char('/'), QLatin1Char('\\'));
    desktop->startLink(path, QString());
}

void my_shell1::showRemoveAction(int x, int y)
{
    desktop->removeTimer->stop();
    selectedUserAction = qobject_cast<my_userAction *>(sender());
    // The desktop covers the screen, so its points are the screen's.
    desktop->removeButton->move(x, y);
    desktop->removeButton->show();
}

void my_shell1::userMenuClosed()
{
    desktop->removeTimer->start(200);
}

void my_shell1::userProgram_Remove()
{
    if (!selectedUserAction)
        return;
    // Taken before the question: a refresh while it is up clears the selection.
    const QString path = selectedUserAction->path;
    const QString text = selectedUserAction->text();
    const QMessageBox::StandardButton answer = QMessageBox::question(
        nullptr, tr("Confirmation"), tr("Do you want to remove user menu item:\n%1?").arg(text),
        QMessageBox::Yes | QMessageBox::No);
    if (answer != QMessageBox::Yes)
        return;

    if (QFile::remove(sys().hostPath(path)))
        refreshClicked();
    // The saved copy goes whether or not the image's file did.
    removeSavedTwin(QStringLiteral("Start Menu.1"), path);
}
