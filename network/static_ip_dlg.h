#pragma once
// The dialog of the static address bring-up. Its signal is declared with int, so the panel's
// connection by the signature "needStopOperation(quint64)" does not take.

#include <QDialog>

class static_ip_dlg : public QDialog {
    Q_OBJECT
public:
    explicit static_ip_dlg(QWidget *parent = nullptr);

signals:
    void needStopOperation(int operation);
};
