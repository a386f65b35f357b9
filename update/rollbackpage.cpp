#include "rollbackpage.h"
#include "installer.h"
#include "qmorvanesettings.h"
#include "updatefacts.h"
#include "updateversion.h"

#include <QFileInfo>
#include <QGridLayout>
#include <QTimer>
#include <QWizard>

RollbackPage::RollbackPage(const QString &productName, QWidget *parent)
    : QWizardPage(parent), productName(productName)
{
    setTitle(tr("Rollback <i>%1</i>%2").arg(productName, QStringLiteral("&trade;")));
    setSubTitle(tr("Current version will be replaced with a previously installed version"));

    button = new QPushButton(tr("Rollback current version"), this);
    connect(button, &QPushButton::released, this, &RollbackPage::rollbackUpdate);
    progress = newPageProgress(this);
    statusLabel = newPageLabel(this);
    infoLabel = newPageLabel(this);

    auto *layout = new QGridLayout(this);
    layout->addWidget(infoLabel, 0, 0);
    layout->addWidget(progress, 1, 0);
    layout->addWidget(button, 2, 0);
    layout->addWidget(statusLabel, 3, 0);
}

void RollbackPage::initializePage()
{
}

bool RollbackPage::validatePage()
{
    return true;
}

int RollbackPage::nextId() const
{
    return 3;
}

void RollbackPage::RollbackTo(int prev_build)
{
    rollbackTo = prev_build;
    setPageLabel(statusLabel, QString());
    setupPath.clear();
    for (int n = 0; n < 100; ++n) {
        if (versionToBuild(getUpdateField(n, VersionField)) != prev_build)
            continue;
        const QString path = getUpdateField(n, SetupField);
        if (QFileInfo::exists(path)) {
            setupPath = path;
            button->show();
            const QString current = buildToVersion(currentBuild());
            if (prev_build == currentBuild())
                button->setText(tr("I want to repair currently installed version %1").arg(current));
            else
                button->setText(tr("I want to rollback currently installed version %1 to version %2")
                                    .arg(current, buildToVersion(prev_build)));
        } else {
            showStatus(statusLabel,
                       tr("<font color=red><b>Rollback cancelled!</b></font><br><br>Previously downloaded "
                          "installation hasn't been detected, probably deleted:<br><br><b>%1</b>")
                           .arg(path),
                       true);
            button->hide();
        }
        return;
    }
}

void RollbackPage::rollbackUpdate()
{
    setPageLabel(infoLabel, tr("Source: %1").arg(setupPath));
    button->hide();
    progress->show();
    progress->setValue(1);
    showStatus(statusLabel, tr("Installing..."), false);
    startSetup(&process, setupPath);
    QTimer::singleShot(1000, this, &RollbackPage::InstallProgress);
}

void RollbackPage::InstallProgress()
{
    if (setupRunning(progress, &process)) {
        QTimer::singleShot(1000, this, &RollbackPage::InstallProgress);
        return;
    }
    const int code = process.exitCode();
    showStatus(statusLabel, tr("Complete"), false);
    QString text;
    if (code == 0) {
        text = tr("<b><i>%1&trade;</i></b> has been successfully rolled back to the version <b>%2</b>")
                   .arg(productName, buildToVersion(rollbackTo));
    } else {
        text = code == 5 ? tr("<font color=red><b>Rollback has been cancelled.</b></font>")
                         : tr("<font color=red><b>Rollback was interrupted with exit code %1.</b></font>").arg(code);
        text.append(tr("<br><br>You can still try to rollback software manually."));
    }
    emit RollbackComplete(text);
    if (wizard())
        wizard()->next();
}
