#pragma once
// The wizard's download and install page: asks the server where the setup lies, allocates the
// whole file, downloads it into a folder named after the version in the program's directory,
// notes it in the history and runs it silently, polled once a second.

#include <QLabel>
#include <QProcess>
#include <QProgressBar>
#include <QWizardPage>

class wait_widget;

class UpdatePage : public QWizardPage {
    Q_OBJECT
public:
    UpdatePage(const QString &productName, QWidget *parent = nullptr);

    void initializePage() override;
    bool validatePage() override;
    int nextId() const override;

    QString productName;
    QString filePath;
    QString title;
    QString notes;
    QProgressBar *progress = nullptr;
    int updateTo = 0;
    QLabel *statusLabel = nullptr;
    QLabel *infoLabel = nullptr;
    wait_widget *spinner = nullptr;
    QProcess process;

signals:
    void DownloadExists(QString info, QString file);
    void downloadOK();   // declared; never emitted
    void UpdateComplete(QString text);

private slots:
    void downloadUpdate();   // declared; does nothing
    void DownloadInfo(QString info);
    void UpdateProgress(int pos);
    void InstallProgress();
    void UpdateDownloaded(QString path);
    void ManageDownload(QString info, QString file);

public slots:
    void setUpdateTo(int new_build);

private:
    void showStatus(const QString &text, bool isError);
};
