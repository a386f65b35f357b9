#pragma once
// The dialog that offers, on the way out, to store what the user changed on a USB volume, and
// does the storing. askToSaveChanges fills its fields, calls fillSummary() and runs it.

#include "network/netcondition.h"

#include <QDialog>
#include <QString>
#include <QStringList>

class QToolButton;
class QTreeWidgetItem;
namespace Ui {
class saveChangingDialog;
}

class saveChangingDialog : public QDialog {
    Q_OBJECT
public:
    explicit saveChangingDialog(QWidget *parent = nullptr);
    ~saveChangingDialog() override;

    // Sets the four groups live or dead and their detail texts, then lists the volumes.
    void fillSummary();

    // Set by askToSaveChanges before the dialog runs. The pointers are not owned and are valid
    // only while the dialog runs.
    QString resolutionText;
    bool networkDiffers = false;
    bool startMenuChanged = false;
    bool desktopChanged = false;
    QStringList *startMenuAdded = nullptr;
    QStringList *desktopAdded = nullptr;
    NetworkCondition *networkNow = nullptr;
    QString bootLetter;

    // What the four help buttons show.
    QString networkText;
    QString displayText;
    QString startMenuText;
    QString desktopText;

    QToolButton *refreshButton = nullptr;

public slots:
    void on_pushButton_clicked();
    void on_pushButton_2_clicked();
    void on_toolButton_clicked();
    void on_toolButton_2_clicked();
    void on_toolButton_3_clicked();
    void on_toolButton_4_clicked();
    void checkBoxStatus(int state);
    void checkStatus();
    void on_treeWidget_currentItemChanged(QTreeWidgetItem *current, QTreeWidgetItem *previous);
    void refreshUsbDevices();

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    Ui::saveChangingDialog *ui;
};

// The network text of the dialog's Network group.
QString networkSummary(const NetworkCondition &now);
