#include "savechangingdialog.h"

#include "look/resources.h"
#include "platform/platform.h"
#include "settings/savedvolume.h"
#include "settings/settingsfiles.h"
#include "settings/volumelist.h"
#include "ui_savechangingdialog.h"

#include <QApplication>
#include <QFile>
#include <QMessageBox>
#include <QResizeEvent>
#include <QToolButton>

namespace {

// The part of a path behind its last "/", one a line.
QString namesOf(const QStringList *paths)
{
    QString text;
    if (!paths)
        return text;
    for (const QString &path : *paths)
        text += path.mid(path.lastIndexOf(QLatin1Char('/')) + 1) + QLatin1Char('\n');
    return text;
}

} // namespace

QString networkSummary(const NetworkCondition &now)
{
    if (now.network == 0)
        return QStringLiteral("Network: Disconnected");
    QString text = QStringLiteral("Network: Connected\n");
    if (now.dhcp == 1) {
        text += QStringLiteral("DHCP: Enabled\n");
    } else {
        text += QStringLiteral("IP Address: ") + now.ipAdd + QLatin1Char('\n');
        text += QStringLiteral("Mask: ") + now.ipMask + QLatin1Char('\n');
        text += QStringLiteral("DNS: ") + now.ipDNS + QLatin1Char('\n');
        text += QStringLiteral("Gateway: ") + now.ipGateway + QLatin1Char('\n');
    }
    text += now.firewall == 1 ? QStringLiteral("Wirewall: On") : QStringLiteral("Wirewall: Off");
    return text;
}

saveChangingDialog::saveChangingDialog(QWidget *parent)
    : QDialog(parent, Qt::Dialog | Qt::WindowCloseButtonHint), ui(new Ui::saveChangingDialog)
{
    ui->setupUi(this);
    ui->treeWidget->setColumnWidth(0, 300);
    ui->treeWidget->setColumnHidden(2, true);

    refreshButton = new QToolButton(this);
    refreshButton->setGeometry(450, 150, 25, 25);
    refreshButton->setIcon(QIcon(shellResource(QStringLiteral("nav_refresh_blue.png"))));
    refreshButton->setAutoRaise(true);
    refreshButton->setToolTip(tr("Refresh"));
    connect(refreshButton, &QToolButton::clicked, this, &saveChangingDialog::refreshUsbDevices);
    for (QCheckBox *box : {ui->checkBox, ui->checkBox_2, ui->checkBox_3, ui->checkBox_4})
        connect(box, &QCheckBox::stateChanged, this, &saveChangingDialog::checkBoxStatus);
}

saveChangingDialog::~saveChangingDialog()
{
    delete ui;
}

void saveChangingDialog::fillSummary()
{
    auto setGroup = [](QCheckBox *box, QToolButton *help, bool live) {
        box->setEnabled(live);
        box->setChecked(live);
        help->setEnabled(live);
    };
    setGroup(ui->checkBox, ui->toolButton, networkDiffers);
    if (networkDiffers && networkNow)
        networkText = networkSummary(*networkNow);
    const bool resolution = !resolutionText.isEmpty();
    setGroup(ui->checkBox_2, ui->toolButton_2, resolution);
    if (resolution)
        displayText = QStringLiteral("Display Resolution: ") + resolutionText;
    setGroup(ui->checkBox_3, ui->toolButton_3, startMenuChanged);
    if (startMenuChanged)
        startMenuText = namesOf(startMenuAdded);
    setGroup(ui->checkBox_4, ui->toolButton_4, desktopChanged);
    if (desktopChanged)
        desktopText = namesOf(desktopAdded);
    refreshUsbDevices();
}

void saveChangingDialog::on_pushButton_clicked()
{
    QTreeWidgetItem *current = ui->treeWidget->currentItem();
    const QString letter = current ? current->text(2) : QString();

    QFile file(sys().hostPath(QStringLiteral("%1:/_kelpie.ini").arg(bootLetter)));
    if (!file.open(QIODevice::ReadOnly)) {
        QMessageBox::critical(this, tr("Path not found"),
                              tr("Cannot find boot media %1:\\").arg(bootLetter), QMessageBox::Ok);
        accept();
        return;
    }
    KelpieSettings settings = readKelpieSettings(file);
    file.close();
    const QString kelpieIni = QStringLiteral("%1:/_kelpie.ini").arg(letter);

    QApplication::setOverrideCursor(Qt::WaitCursor);
    const bool network = ui->checkBox->isChecked();
    if (network || ui->checkBox_2->isChecked()) {
        if (ui->checkBox_2->isChecked())
            settings.screenRes = resolutionText;
        if (network && networkNow) {
            settings.network = QString::number(networkNow->network);
            settings.firewall = QString::number(networkNow->firewall);
        }
        sys().saveFile(kelpieIni, composeKelpieSettings(settings).toLocal8Bit());
    }
    if (network && networkNow) {
        const QString kelpieNet = QStringLiteral("%1:/_kelpieNet.ini").arg(letter);
        if (networkNow->network == 0 || networkNow->dhcp == 1) {
            sys().removeFile(kelpieNet);
        } else if (networkNow->network == 1 && networkNow->dhcp == 0 && !networkNow->ipAdd.isEmpty()) {
            sys().saveFile(kelpieNet, composeKelpieNet(networkNow->ipAdd, networkNow->ipMask,
                                                       networkNow->ipDNS, networkNow->ipGateway)
                                          .toLocal8Bit());
        }
    }
    if (ui->checkBox_3->isChecked() && startMenuAdded) {
        for (const QString &source : *startMenuAdded)
            copyToVolume(source, QStringLiteral("%1:/Start Menu.1").arg(letter));
    }
    if (ui->checkBox_4->isChecked() && desktopAdded) {
        for (const QString &source : *desktopAdded)
            copyToVolume(source, QStringLiteral("%1:/Desktop.1").arg(letter));
    }
    QApplication::restoreOverrideCursor();
    accept();
}

void saveChangingDialog::on_pushButton_2_clicked()
{
    reject();
}

void saveChangingDialog::on_toolButton_clicked()
{
    QMessageBox::information(this, tr("Network Settings"), networkText, QMessageBox::Ok);
}

void saveChangingDialog::on_toolButton_2_clicked()
{
    QMessageBox::information(this, tr("Display Resolution"), displayText, QMessageBox::Ok);
}

void saveChangingDialog::on_toolButton_3_clicked()
{
    QMessageBox::information(this, tr("Start Menu added Items"), startMenuText, QMessageBox::Ok);
}

void saveChangingDialog::on_toolButton_4_clicked()
{
    QMessageBox::information(this, tr("Desktop added Items"), desktopText, QMessageBox::Ok);
}

void saveChangingDialog::checkBoxStatus(int)
{
    checkStatus();
}

void saveChangingDialog::checkStatus()
{
    const bool anyBox = ui->checkBox->isChecked() || ui->checkBox_2->isChecked()
                        || ui->checkBox_3->isChecked() || ui->checkBox_4->isChecked();
    ui->pushButton->setEnabled(ui->treeWidget->currentItem() && anyBox);
}

void saveChangingDialog::on_treeWidget_currentItemChanged(QTreeWidgetItem *, QTreeWidgetItem *)
{
    checkStatus();
}

void saveChangingDialog::refreshUsbDevices()
{
    ui->treeWidget->clear();
    int select = 0;
    for (const RemovableVolume &volume : removableVolumes()) {
        if (volume.letter.toUpper() == bootLetter.toUpper())
            select = ui->treeWidget->topLevelItemCount();
        auto *item = new QTreeWidgetItem(ui->treeWidget);
        item->setText(0, volume.description);
        item->setText(1, volume.freeSpace);
        item->setText(2, volume.letter);
    }
    if (ui->treeWidget->topLevelItemCount() > 0)
        ui->treeWidget->setCurrentItem(ui->treeWidget->topLevelItem(select));
    checkStatus();
}

void saveChangingDialog::resizeEvent(QResizeEvent *event)
{
    refreshButton->move(width() - 50, ui->treeWidget->y() + 15);
    QDialog::resizeEvent(event);
}
