#include "aboutdlg.h"
#include "ui_aboutdlg.h"

#include "look/resources.h"
#include "look/stylesheets.h"
#include "my_shell1/globals.h"

#include <QBitmap>
#include <QPixmap>

aboutDlg::aboutDlg(QWidget *parent)
    : QDialog(parent)
    , ui(new Ui::aboutDlgClass)
{
    ui->setupUi(this);
    setWindowFlags(Qt::Dialog | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);

    // Cut the transparent parts of the background out of the window.
    const QPixmap background(shellResource("fonAbout.png"));
    setMask(background.mask());

    // The form's texts for these two are placeholders; the medium's own values replace them.
    ui->label_8->setText(whitePrefix() + shellVersion);
    ui->label_11->setText(whiteLargePrefix() + webDefault);
}

aboutDlg::~aboutDlg()
{
    delete ui;
}

void aboutDlg::on_pushButton_clicked()
{
    accept();
}
