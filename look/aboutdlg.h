#pragma once
// The About box: a frameless dialog cut to the shape of its background picture, showing the
// medium's version and web text.

#include <QDialog>

namespace Ui {
class aboutDlgClass;
}

class aboutDlg : public QDialog
{
    Q_OBJECT
public:
    explicit aboutDlg(QWidget *parent);
    ~aboutDlg() override;

private slots:
    void on_pushButton_clicked();

private:
    Ui::aboutDlgClass *ui;
};
