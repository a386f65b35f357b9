#include "my_toolbutton.h"

#include "my_shell1/globals.h"
#include "platform/platform.h"

#include <QAction>
#include <QFileIconProvider>
#include <QFileInfo>
#include <QIcon>
#include <QMenu>

my_ToolButton::my_ToolButton(QWidget *parent)
    : QToolButton(parent)
{
    setContextMenuPolicy(Qt::CustomContextMenu);

    removeAction = new QAction(tr("Remove"), this);
    connect(removeAction, &QAction::triggered, this, &my_ToolButton::remove_Slot);

    menu = new QMenu(this);
    menu->setStyleSheet(menuStyle);
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
    // Asked by name only: the file is not opened, and one that does not exist still gets the
    // icon its name and kind would have.
    QString drive = path;
    drive.replace(QLatin1Char('\\'), QLatin1Char('/'));
    const QFileInfo info(sys().hostPath(drive));
    const QIcon icon = QFileIconProvider().icon(info);
    if (icon.isNull())
        return QPixmap();
    return icon.pixmap(32, 32);
}
