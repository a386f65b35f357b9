#pragma once
// A second form of the static address wait, made once and never shown. Its signal is declared
// with int, so the panel's connection by the signature "needStopOperation(quint64)" does not
// take.

#include <QDialog>

namespace Ui {
class static_ip;
}

class static_ip_dlg : public QDialog {
    Q_OBJECT
public:
    explicit static_ip_dlg(QWidget *parent = nullptr);
    ~static_ip_dlg() override;

    qint32 result = -1;

signals:
    void needStopOperation(int operation);

private slots:
    void on_pushButton_clicked();

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    Ui::static_ip *ui;
};
