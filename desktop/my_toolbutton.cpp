#include "my_toolbutton.h"

#include "my_shell1/globals.h"
#include "platform/platform.h"

#include <QAction>
#include <QIcon>
#include <QImage>
#include <QMenu>

my_ToolButton::my_ToolButton(QWidget *parent)
    : QToolButton(parent)
{
    setContextMenuPolicy(Qt::CustomContextMenu);

    removeAction = new QAction(tr("Remove"), this);
    connect(removeAction, &QAction::triggered, this, &my_ToolButton::remove_Slot);

    menu = new QMenu(this);
    // menuStyle comes from the desktop's sheet.
    menu->setFont(menuFont());
    menu->addAction(removeAction);

    connect(this, &QWidget::customContextMenuRequested, this, &my_ToolButton::openContMenu);
}

void my_ToolButton::openContMenu(QPoint point)
{
    menu->exec(mapToGlobal(point));
}

void my_ToolButton::remove_Slot()
{
    emit removeShortCut(path);
}

QPixmap pixmapForFile(const QString &path)
{
    // Asked of the shell by name with no attributes: the file is not opened, so a missing file
    // still gets the icon its name would have, and a folder looks like a file of its name.
    QString name = path;
    name.replace(QLatin1Char('/'), QLatin1Char('\\'));
    const QImage icon = sys().shellIcon(name);
    if (icon.isNull())
        return QPixmap();
    return QPixmap::fromImage(icon);
}
