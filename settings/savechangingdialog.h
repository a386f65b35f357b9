#pragma once
// The dialog that offers to save what the user changed to a USB volume at turn off.

#include <QDialog>

class saveChangingDialog : public QDialog {
    Q_OBJECT
public:
    explicit saveChangingDialog(QWidget *parent = nullptr);
};
