#pragma once
// A tool button of the panel whose tool tip shows at once when the mouse enters.

#include <QPushButton>

class my_PushButton : public QPushButton {
    Q_OBJECT
public:
    explicit my_PushButton(QWidget *parent = nullptr);

protected:
    void enterEvent(QEvent *event) override;
};
