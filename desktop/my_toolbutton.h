#pragma once
// One shortcut of the desktop: a tool button that remembers the file it stands for and offers
// "Remove" on a right click.

#include <QPixmap>
#include <QString>
#include <QToolButton>

class QAction;
class QMenu;

class my_ToolButton : public QToolButton {
    Q_OBJECT

public:
    explicit my_ToolButton(QWidget *parent = nullptr);

    QString path;   // drive path of the file, set by the desktop's rebuild
    QMenu *menu = nullptr;
    QAction *removeAction = nullptr;

signals:
    void removeShortCut(QString path);

public slots:
    void openContMenu(QPoint point);
    void remove_Slot();
};

// The large icon of a file, by name, in either slash form; empty when none can be had.
QPixmap pixmapForFile(const QString &path);
