#include "updatewizard.h"
#include "finishpage.h"
#include "rollbackpage.h"
#include "updatefacts.h"
#include "updatepage.h"
#include "welcomepage.h"

#include <QMessageBox>

UpdateWizard::UpdateWizard(int startId, const QString &productName, QWidget *parent) : QWizard(parent)
{
    welcomePage = new WelcomePage(productName, this);
    updatePage = new UpdatePage(productName, this);
    rollbackPage = new RollbackPage(productName, this);
    finishPage = new FinishPage(productName, this);
    connect(welcomePage, &WelcomePage::NewVersionExists, updatePage, &UpdatePage::setUpdateTo);
    connect(welcomePage, &WelcomePage::Rollback, rollbackPage, &RollbackPage::RollbackTo);
    connect(updatePage, &UpdatePage::UpdateComplete, finishPage, &FinishPage::UpdateComplete);
    connect(rollbackPage, &RollbackPage::RollbackComplete, finishPage, &FinishPage::UpdateComplete);
    connect(this, &QWizard::helpRequested, this, &UpdateWizard::showHelp);

    setPage(WelcomePageId, welcomePage);
    setPage(UpdatePageId, updatePage);
    setPage(RollbackPageId, rollbackPage);
    setPage(FinishPageId, finishPage);
    setStartId(startId);

    setOption(QWizard::NoCancelButton, true);
    setOption(QWizard::HaveHelpButton, true);
    setOption(QWizard::HelpButtonOnRight, false);
    setOption(QWizard::NoBackButtonOnLastPage, true);
    setOption(QWizard::NoBackButtonOnStartPage, true);
    setWindowIcon(QIcon(QStringLiteral(":images/logo.png")));
    setWizardStyle(QWizard::ModernStyle);
    setPixmap(QWizard::LogoPixmap, QPixmap(QStringLiteral(":/images/logo.png")));
    setWindowTitle(productName + QLatin1Char(' ') + tr("Updates"));
}

void UpdateWizard::showHelp()
{
    QString text;
    switch (currentId()) {
    case WelcomePageId:
        text = tr("This step provides options of downloading and installing the latest software, or rolling back "
                  "recently installed update back to the previously installed version. <br><br>If a new release "
                  "has been detected, you'll be notified and a new version displayed. Agree to the license terms "
                  "and click Next to proceed with an update.<br><br>If you want to rollback to the previously "
                  "installed version, select it in the listbox, click related checkbox below and click Next.<br><br>"
                  "To read release notes, double click the version in the listbox.");
        break;
    case UpdatePageId:
    case RollbackPageId:
        text = tr("This step provides download and installation of the latest software update, as well as rollback "
                  "to the previously installed version.<br><br> The latest version download and installation starts "
                  "automatically.<br><br>Rollback to the previously installed version must be confirmed by clicking "
                  "the related button.<br><br>After updating or rolling back application is being closed and needs "
                  "to be re-started. In case if unsuccessful action, error code and error messages will be "
                  "displayed.<br>");
        break;
    case FinishPageId:
        text = tr("This is a confirmation of successfull or unsuccessfull update.<br><br>In case if the software has "
                  "been updated successfully, the latest version will be started after you close the application "
                  "and launch it again.<br><br>In case if any errors occured while downloading and installing "
                  "update, error codes and messsages will be displayed here.<br>");
        break;
    default:
        text = tr("This help is likely not to be of any help.");
        break;
    }
    QMessageBox::information(this, tr("Update Help"), text, QMessageBox::Ok);
}

bool runUpdateWizard()
{
    UpdateWizard wizard(UpdateWizard::WelcomePageId, productName);
    return wizard.exec() != 0;
}
