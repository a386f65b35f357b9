#include "morvaneupdatemanager.h"
#include "updatefacts.h"
#include "updateversion.h"

#include <QFile>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QUrl>

MorvaneUpdateManager::MorvaneUpdateManager(QObject *parent) : QNetworkAccessManager(parent)
{
    // The exchange is plain GET: no redirect is followed, whatever the toolkit's default.
    setRedirectPolicy(QNetworkRequest::ManualRedirectPolicy);
}

MorvaneUpdateManager::~MorvaneUpdateManager()
{
    delete file;
}

void MorvaneUpdateManager::send(const QString &url, void (MorvaneUpdateManager::*onReadyRead)())
{
    connect(this, &QNetworkAccessManager::finished, this, &MorvaneUpdateManager::replyFinished);
    reply = get(QNetworkRequest(QUrl(url, QUrl::TolerantMode)));
    connect(reply, &QIODevice::readyRead, this, onReadyRead);
}

bool MorvaneUpdateManager::requestLatestVersion(const QString &url)
{
    send(url, &MorvaneUpdateManager::slotReadyReadLatestVersion);
    return true;
}

bool MorvaneUpdateManager::requestDownloadInfo(const QString &url)
{
    send(url, &MorvaneUpdateManager::slotReadyReadDownloadInfo);
    return true;
}

bool MorvaneUpdateManager::requestDownload(const QString &url)
{
    bytesReceived = 0;
    send(url, &MorvaneUpdateManager::slotReadyReadDownloadUpdate);
    return true;
}

void MorvaneUpdateManager::slotReadyReadLatestVersion()
{
    const QString text = QString::fromUtf8(reply->readAll());
    if (!text.isEmpty())
        emit LatestVersion(text);
}

void MorvaneUpdateManager::slotReadyReadDownloadInfo()
{
    // Assigned, not appended: a body in two chunks leaves its last.
    info = QString::fromUtf8(reply->readAll());
}

void MorvaneUpdateManager::slotReadyReadDownloadUpdate()
{
    const QByteArray chunk = reply->readAll();
    if (chunk.isEmpty())
        return;
    if (file)
        file->write(chunk);
    bytesReceived += chunk.size();
    emit UpdateProgress(int(qMin<qint64>(bytesReceived, std::numeric_limits<int>::max())));
}

void MorvaneUpdateManager::replyFinished(QNetworkReply *finished)
{
    if (file) {
        file->flush();
        file->close();
        emit UpdateDownloaded(file->fileName());
        delete file;
        file = nullptr;
    }
    emit DownloadInfo(info);
    info.clear();
    finished->deleteLater();
    deleteLater();
}

void MorvaneUpdateManager::GotLatestVersion(QString ver)
{
    if (!callback)
        return;
    const int latest = versionToBuild(ver);
    auto call = callback;
    callback = nullptr;
    call(latest > ownBuild, latest);
}

bool checkLatestVersion(void (*callback)(bool newer, int latestBuild))
{
    auto *manager = new MorvaneUpdateManager;
    manager->ownBuild = currentBuild();
    manager->callback = callback;
    QObject::connect(manager, &MorvaneUpdateManager::LatestVersion, manager,
                     &MorvaneUpdateManager::GotLatestVersion);
    return manager->requestLatestVersion(latestVersionUrl());
}
