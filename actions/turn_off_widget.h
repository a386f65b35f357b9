#pragma once
// The small frameless dialog that asks whether to turn the machine off or restart it.

#include <QDialog>
#include <QPixmap>

namespace Ui {
class turn_off_widgetClass;
}

class turn_off_widget : public QDialog {
    Q_OBJECT
public:
    explicit turn_off_widget(QWidget *parent = nullptr);
    ~turn_off_widget() override;

    // -1 until a choice: 1 restart, 2 turn off.
    int action = -1;

public slots:
    void on_pushButton_3_clicked();
    void on_pushButton_2_clicked();
    void on_pushButton_clicked();

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    Ui::turn_off_widgetClass *ui;
    QPixmap background;
};
