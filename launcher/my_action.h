#pragma once
// An entry of the main menu or of one of its sub-menus: carries the id that startApp looks up
// and a hint shown as a tool tip while the mouse rests on the entry.

#include <QAction>
#include <QString>

class QMenu;

class my_Action : public QAction {
    Q_OBJECT
public:
    explicit my_Action(QObject *parent = nullptr);

    qint32 id = 0;            // item id, or the menu id on an action that carries a sub-menu
    QString hint;
    QMenu *menu = nullptr;    // the sub-menu holding this entry; null in the main menu. Not owned.
    QString spare;            // kept for layout; nothing fills it

signals:
    void actionClicked(int);

public slots:
    void onTriggered();
    void enterEv();
};
