#include "updatefacts.h"
#include "updateversion.h"

#include "my_shell1/globals.h"

#include <QCoreApplication>

const QString productName = QStringLiteral("Tessel Kelpie");
const QString editionText = QStringLiteral(KELPIE_UPDATE_EDITION);

namespace {
QString endpointOfRun;
QString programFolderOfRun;
}

int productId()
{
    return productNumber;
}

int currentBuild()
{
    return versionToBuild(productVersion);
}

int osCode()
{
    return productCode;
}

QString updateEndpoint()
{
    if (!endpointOfRun.isEmpty())
        return endpointOfRun;
    const QString fromEnvironment = qEnvironmentVariable("KELPIE_UPDATE_ENDPOINT");
    return fromEnvironment.isEmpty() ? QStringLiteral(KELPIE_UPDATE_ENDPOINT) : fromEnvironment;
}

void setUpdateEndpoint(const QString &address)
{
    endpointOfRun = address;
}

QString updateRequestUrl(int pid, const QString &ver, int os)
{
    QString base = updateEndpoint();
    while (base.endsWith(QLatin1Char('/')))
        base.chop(1);
    return base + QStringLiteral("/act/update.aspx?pid=%1&ver=%2&os=%3")
                      .arg(QString::number(pid), ver, QString::number(os));
}

QString latestVersionUrl()
{
    return updateRequestUrl(productId(), QString::number(currentBuild()), osCode());
}

QString downloadInfoUrl()
{
    return updateRequestUrl(productId(), editionText, osCode());
}

QString programFolder()
{
    return programFolderOfRun.isEmpty() ? QCoreApplication::applicationDirPath() : programFolderOfRun;
}

void setProgramFolder(const QString &folder)
{
    programFolderOfRun = folder;
}
