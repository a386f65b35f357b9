#include "static_ip_dlg.h"
#include "ui_static_ip_dlg.h"

#include "my_shell1/globals.h"

#include <QCloseEvent>

static_ip_dlg::static_ip_dlg(QWidget *parent)
    : QDialog(parent, Qt::Dialog | Qt::WindowStaysOnTopHint | Qt::WindowCloseButtonHint)
    , ui(new Ui::static_ip)
{
    ui->setupUi(this);
    move(screenWidth / 2 - width() / 2, screenHeight / 2 - height() / 2);
}

static_ip_dlg::~static_ip_dlg()
{
    delete ui;
}

void static_ip_dlg::on_pushButton_clicked()
{
    emit needStopOperation(-1);
    close();
}

void static_ip_dlg::closeEvent(QCloseEvent *event)
{
    emit needStopOperation(-1);
    QDialog::closeEvent(event);
}
