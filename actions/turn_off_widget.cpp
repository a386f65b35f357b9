#include "turn_off_widget.h"

#include "look/chook_style.h"
#include "look/resources.h"
#include "look/stylesheets.h"
#include "my_shell1/globals.h"
#include "ui_turn_off_widget.h"

#include <QPainter>

turn_off_widget::turn_off_widget(QWidget *parent)
    : QDialog(parent, Qt::Dialog | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint)
    , ui(new Ui::turn_off_widgetClass)
    , background(shellResource(QStringLiteral("turnOff.png")))
{
    ui->setupUi(this);
    resize(314, 140);
    move((screenWidth - width()) / 2, (screenHeight - height()) / 2);
    setAutoFillBackground(true);
    // The two picture styles are made as the dialog always made them, but installed nowhere: the
    // buttons' style sheets paint the same pictures. They live to the end of the process.
    new chook_style;
    new chook_style_off;
    ui->pushButton_2->setStyleSheet(restartButtonStyleSheet());
    ui->pushButton_3->setStyleSheet(turnOffButtonStyleSheet());
}

turn_off_widget::~turn_off_widget()
{
    delete ui;
}

void turn_off_widget::on_pushButton_3_clicked()
{
    action = 2;
    accept();
}

void turn_off_widget::on_pushButton_2_clicked()
{
    action = 1;
    accept();
}

void turn_off_widget::on_pushButton_clicked()
{
    reject();
}

void turn_off_widget::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.drawPixmap(0, 0, background);
}
