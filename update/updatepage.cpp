#include "updatepage.h"
#include "downloadinfo.h"
#include "installer.h"
#include "morvaneupdatemanager.h"
#include "qmorvanesettings.h"
#include "updatefacts.h"
#include "updateversion.h"
#include "wait_widget.h"

#include <QAbstractButton>
#include <QDate>
#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QGridLayout>
#include <QMessageBox>
#include <QTimer>
#include <QWizard>

UpdatePage::UpdatePage(const QString &productName, QWidget *parent)
    : QWizardPage(parent), productName(productName)
{
    setTitle(tr("Update <i>%1</i>%2 ").arg(productName, QStringLiteral("&trade;")));
    setSubTitle(tr("Current version components will be replaced with a new version"));

    progress = newPageProgress(this);
    statusLabel = newPageLabel(this);
    infoLabel = newPageLabel(this);
    spinner = new wait_widget(parent);
    spinner->setGeometry(7, 23, 32, 32);

    auto *layout = new QGridLayout(this);
    layout->addWidget(infoLabel, 0, 0);
    layout->addWidget(progress, 1, 0);
    layout->addWidget(statusLabel, 2, 0);

    connect(this, &UpdatePage::DownloadExists, this, &UpdatePage::ManageDownload);
}

void UpdatePage::showStatus(const QString &text, bool isError)
{
    ::showStatus(statusLabel, text, isError);
}

void UpdatePage::initializePage()
{
    setPageLabel(infoLabel, tr("Checking download info..."));
    auto *manager = new MorvaneUpdateManager(this);
    const QString url = downloadInfoUrl();
    qDebug() << url;
    connect(manager, &MorvaneUpdateManager::DownloadInfo, this, &UpdatePage::DownloadInfo);
    manager->requestDownloadInfo(url);
}

bool UpdatePage::validatePage()
{
    return progress->isHidden() || progress->value() >= progress->maximum();
}

int UpdatePage::nextId() const
{
    return 3;
}

void UpdatePage::downloadUpdate()
{
}

void UpdatePage::DownloadInfo(QString info)
{
    if (info.isEmpty()) {
        showStatus(tr("Information about update has not been retrieved, communication error occured"), true);
        return;
    }
    // Fewer than four fields would have the page read past the reply; it is no answer either.
    DownloadInfoFields fields;
    if (!readDownloadInfo(info, &fields)) {
        showStatus(tr("Information about update has not been retrieved, communication error occured"), true);
        return;
    }

    const QString folder = buildToVersion(updateTo);
    QDir dir(programFolder());
    // A file of the folder's name counts as a folder that cannot be made.
    if ((!dir.exists(folder) && !dir.mkdir(folder)) || !dir.cd(folder)) {
        showStatus(tr("Unable to create subfolder <b>%1</b> in application's home directory:<br> <b>%2</b>")
                       .arg(folder, dir.absolutePath()),
                   true);
        return;
    }
    const QString fileName = setupFileName(fields.url);
    filePath = dir.absolutePath() + QLatin1Char('/') + fileName;
    title = fields.title;
    notes = fields.notes;

    if (QFileInfo(filePath).isFile()) {
        emit DownloadExists(info, filePath);
        return;
    }

    auto *file = new QFile(filePath);
    setPageLabel(infoLabel, tr("Allocating space for %1...").arg(filePath));
    if (fileName.isEmpty() || !file->open(QIODevice::WriteOnly | QIODevice::Truncate)) {
        delete file;
        showStatus(tr("Unable to create file <b>%1</b> in <br><b>%2</b>").arg(fileName, dir.absolutePath()), true);
        return;
    }
    // The whole size is taken before the first byte comes, so that a full disk shows at once.
    const qint64 size = fields.size.toLongLong();
    if (!file->resize(size)) {
        // Left empty, it would later pass for a setup kept from before.
        file->remove();
        delete file;
        showStatus(tr("Unable to allocate space for file <b>%1</b> in <br><b>%2</b>").arg(fileName, dir.absolutePath()),
                   true);
        return;
    }

    if (wizard())
        wizard()->button(QWizard::BackButton)->setEnabled(false);
    auto *manager = new MorvaneUpdateManager;
    manager->file = file;
    setPageLabel(infoLabel, tr("Downloading %1...").arg(fields.url));
    connect(manager, &MorvaneUpdateManager::UpdateProgress, this, &UpdatePage::UpdateProgress);
    connect(manager, &MorvaneUpdateManager::UpdateDownloaded, this, &UpdatePage::UpdateDownloaded);
    manager->requestDownload(fields.url);
    progress->show();
    progress->setRange(1, int(qBound<qint64>(1, size, std::numeric_limits<int>::max())));
}

void UpdatePage::UpdateProgress(int pos)
{
    progress->setValue(pos);
}

void UpdatePage::ManageDownload(QString info, QString file)
{
    const int answer = QMessageBox::warning(
        this, tr("Detected local setup"),
        tr("Installation file being downloaded previously detected locally:<br><br><b>%1</b><br><br>"
           "Do you want to execute it <b>[Yes]</b> or download it again <b>[No]</b>?")
            .arg(file),
        QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel, QMessageBox::Yes);
    if (answer == QMessageBox::Yes) {
        UpdateDownloaded(file);
    } else if (answer == QMessageBox::No) {
        QFile::remove(file);
        DownloadInfo(info);
    } else if (wizard()) {
        wizard()->close();
    }
}

void UpdatePage::UpdateDownloaded(QString path)
{
    setPageLabel(infoLabel, tr("Downloaded to %1").arg(path));
    progress->setRange(1, 100);
    progress->setValue(1);
    showStatus(tr("Installing..."), false);

    const QString version = buildToVersion(updateTo);
    const int n = updateEntryFor(version);
    setUpdateField(n, VersionField, version);
    setUpdateField(n, DateField, QDate::currentDate().toString(QStringLiteral("dd-MMM-yyyy")));
    setUpdateField(n, SetupField, path);
    setUpdateField(n, TitleField, title);
    setUpdateField(n, NotesField, notes);

    startSetup(&process, path);
    QTimer::singleShot(1000, this, &UpdatePage::InstallProgress);
}

void UpdatePage::InstallProgress()
{
    if (setupRunning(progress, &process)) {
        QTimer::singleShot(1000, this, &UpdatePage::InstallProgress);
        return;
    }
    const int code = process.exitCode();
    showStatus(tr("Complete"), false);

    const QString version = buildToVersion(updateTo);
    QString text;
    if (code == 0) {
        text = tr("<b><i>%1&trade;</i></b> has been successfully updated!<br><br>Installed the latest version <b>%2</b>")
                   .arg(productName, version);
    } else {
        text = tr("<br><br><b>%1</b> ver. <b>%2</b> has been successfully downloaded:<br> <i>%3</i>")
                   .arg(productName, version, filePath);
        if (code == 5)
            text.prepend(tr("<font color=red><b>Installation has been cancelled.</b></font>"));
        else
            text.prepend(tr("<font color=red><b>Installation was interrupted with exit code %1.</b></font>").arg(code));
        text.append(tr("<br><br>You can still try executing software update manually."));
        setUpdateField(updateEntryFor(version), TitleField,
                       code == 5 ? tr("Update Cancelled") : tr("Install Error #%1").arg(code));
    }
    emit UpdateComplete(text);
    if (wizard())
        wizard()->next();
}

void UpdatePage::setUpdateTo(int new_build)
{
    updateTo = new_build;
}
