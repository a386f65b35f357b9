#pragma once
// An entry of the User Programs menu: one file of the start menu folder. While the mouse rests on
// it, it tells where the desktop's remove button should stand. Each entry also keeps a little
// menu of its own ("Start", "Remove shortcut") that nothing pops up.

#include <QAction>
#include <QString>
#include <memory>

class QMenu;
class my_Action;

class my_userAction : public QAction {
    Q_OBJECT
public:
    explicit my_userAction(QObject *parent = nullptr);
    ~my_userAction() override;

    qint32 id = 0;
    QString tip;
    QMenu *contextMenu = nullptr;    // owned, no parent
    my_Action *removeAction = nullptr;   // owned, no parent
    my_Action *startAction = nullptr;    // owned, no parent
    QString path;                    // drive path of the file, forward slashes
    QMenu *ownerMenu = nullptr;      // the menu holding this entry; not owned

    // The point just right of the entry in screen terms: the menu's place plus the entry's
    // rectangle, its width added.
    static QPoint removeButtonPoint(const QPoint &menuPos, const QRect &entry);

signals:
    void actionClicked();
    void removeItem_fromMenu();
    void showRemoveAction(int x, int y);

public slots:
    void remove_Slot();
    void startClicked();
    void enterEv();
};
