#pragma once
// All exchange with the update server, over plain HTTP GET. A manager serves exactly one request:
// when the reply has finished it deletes itself, so callers make one with new for each request
// and do not keep the pointer. It reports nothing by itself; an empty DownloadInfo is how a
// failed exchange shows.

#include <QNetworkAccessManager>
#include <QString>

class QFile;
class QNetworkReply;

class MorvaneUpdateManager : public QNetworkAccessManager {
    Q_OBJECT
public:
    explicit MorvaneUpdateManager(QObject *parent = nullptr);
    ~MorvaneUpdateManager() override;

    bool requestLatestVersion(const QString &url);
    bool requestDownloadInfo(const QString &url);
    bool requestDownload(const QString &url);   // streams the body into file

    void (*callback)(bool newer, int latestBuild) = nullptr;   // one shot of checkLatestVersion
    QNetworkReply *reply = nullptr;
    qint64 bytesReceived = 0;   // reported as a 32-bit count, which is what the bar takes
    QFile *file = nullptr;      // owned; set by the caller before requestDownload
    QString info;
    int ownBuild = 0;

signals:
    void LatestVersion(QString version);
    void DownloadInfo(QString info);
    void UpdateProgress(int bytes);
    void UpdateDownloaded(QString path);

private slots:
    void replyFinished(QNetworkReply *finished);
    void slotReadyReadLatestVersion();
    void slotReadyReadDownloadInfo();
    void slotReadyReadDownloadUpdate();

public slots:
    void GotLatestVersion(QString ver);

private:
    void send(const QString &url, void (MorvaneUpdateManager::*onReadyRead)());
};

// Asks the server for the latest version with a manager of its own and calls back once with
// whether it is newer than currentBuild, and its build.
bool checkLatestVersion(void (*callback)(bool newer, int latestBuild));
