#include "installer.h"

#include <QFile>
#include <QLabel>
#include <QProcess>
#include <QProgressBar>

QProgressBar *newPageProgress(QWidget *page)
{
    auto *progress = new QProgressBar(page);
    progress->setRange(1, 100);
    progress->setValue(33);
    progress->hide();
    return progress;
}

QLabel *newPageLabel(QWidget *page)
{
    auto *label = new QLabel(page);
    label->setWordWrap(true);
    label->setOpenExternalLinks(true);
    label->hide();
    return label;
}

void setPageLabel(QLabel *label, const QString &text)
{
    label->setText(text);
    label->setVisible(!text.isEmpty());
}

void showStatus(QLabel *statusLabel, const QString &text, bool isError)
{
    const QString prefix = isError ? QStringLiteral("<font color=red><b>Error:</b></font> ") : QString();
    setPageLabel(statusLabel, prefix + text);
}

const QStringList &silentSwitches()
{
    static const QStringList switches = {QStringLiteral("/SP-"), QStringLiteral("/SILENT"),
                                         QStringLiteral("/NOCANCEL"), QStringLiteral("/CLOSEAPPLICATIONS"),
                                         QStringLiteral("/RESTARTAPPLICATIONS")};
    return switches;
}

void startSetup(QProcess *process, const QString &path)
{
    // A downloaded file carries no execute permission where the file system keeps one.
    QFile::setPermissions(path, QFile::permissions(path) | QFile::ExeOwner | QFile::ExeUser);
    process->start(path, silentSwitches(), QIODevice::ReadWrite);
}

bool setupRunning(QProgressBar *progress, QProcess *process)
{
    progress->setValue(progress->value() + 3);
    if (process->state() != QProcess::NotRunning)
        return true;
    progress->setValue(100);
    return false;
}
