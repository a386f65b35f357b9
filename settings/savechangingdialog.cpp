#include "savechangingdialog.h"

saveChangingDialog::saveChangingDialog(QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("saveChangingDialog"));
}
