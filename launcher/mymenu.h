#pragma once
// A menu that remembers whether the mouse is over it.

#include <QMenu>

class myMenu : public QMenu {
    Q_OBJECT
public:
    explicit myMenu(QWidget *parent = nullptr);

    bool mouseInside = false;

signals:
    void needCloseMenu();

protected:
    void enterEvent(QEvent *event) override;
    void leaveEvent(QEvent *event) override;
};
