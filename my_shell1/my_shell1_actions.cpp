// The panel's system actions that hand work to the medium's programs: the locale file, the
// driver installer, the Run box, the PXE scripts and the file associations script.

#include "my_shell1.h"
#include "ui_my_shell1.h"

#include "actions/envinit.h"
#include "actions/taskrun.h"
#include "launcher/appstart.h"
#include "platform/platform.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace {

using win32::swHide;
using win32::swShowNormal;
const int pxePauseMs = 2000;

// Driver folders deeper than this are a loop of junctions, not a medium's tree.
const int deepestDriverFolder = 256;

void installDrivers(const QString &path, QStringList *chain)
{
    const QDir dir(sys().hostPath(path));
    if (!dir.exists())
        return;
    const QString key = dir.canonicalPath().isEmpty() ? dir.absolutePath() : dir.canonicalPath();
    if (chain->contains(key) || chain->size() >= deepestDriverFolder)
        return;
    chain->append(key);
    const QFileInfoList entries = dir.entryInfoList(
        QStringList{QStringLiteral("*")},
        QDir::Dirs | QDir::Files | QDir::Hidden | QDir::System | QDir::NoSymLinks | QDir::NoDotAndDotDot,
        QDir::Name | QDir::IgnoreCase);
    for (const QFileInfo &entry : entries) {
        const QString full = path + entry.fileName();
        if (entry.isFile()) {
            // Not waited for: several installers may run side by side.
            if (taskrun::isDriverFile(entry.fileName()))
                appstart::open(QStringLiteral("InstallDriver.exe"), taskrun::driverParameters(full));
        } else {
            installDrivers(full + QLatin1Char('\\'), chain);
        }
    }
    chain->removeLast();
}

} // namespace

void my_shell1::setupLocale()
{
    const QString path = QStringLiteral("x:/Program Files/kelpie/envInit.ini");
    QFile file(sys().hostPath(path));
    if (!file.open(QIODevice::ReadOnly))
        return;
    const QList<envinit::Step> steps = envinit::read(&file);
    file.close();

    for (const envinit::Step &step : steps) {
        if (step.kind == envinit::Step::TimeZone) {
            // Only the zone changes: the clock is written back as it read before.
            SystemTime now;
            sys().localTime(&now);
            TimeZoneInfo zone;
            sys().timeZoneInformation(&zone);
            zone.bias = step.bias;
            sys().setTimeZoneInformation(zone);
            sys().setLocalTime(now);
        } else {
            // Not waited for: the three may run together, and still run when the panel shows.
            appstart::open(QStringLiteral("wpeutil.exe"), step.arguments, swHide);
        }
    }
    QFile::remove(sys().hostPath(path));
}

void my_shell1::loadDriver()
{
    appstart::open(QStringLiteral("InstallDriver.exe"));
}

void my_shell1::loadDriver_new(QString path)
{
    QStringList chain;
    installDrivers(path, &chain);
}

void my_shell1::runTaskDlg()
{
    appstart::open(QStringLiteral("RunTask.exe"), QString(), swShowNormal);
}

void my_shell1::runPXEscripts()
{
    const QDir dir(sys().hostPath(taskrun::pxeScriptFolder()));
    if (!dir.exists()) {
        addLogInfo(QStringLiteral("PXE Kelpie_Scripts not exist"));
        return;
    }
    addLogInfo(QStringLiteral("PXE Kelpie_Scripts exist"));
    const QFileInfoList scripts = dir.entryInfoList(
        QStringList{QStringLiteral("*.cmd")},
        QDir::Files | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name | QDir::IgnoreCase);
    if (scripts.isEmpty()) {
        addLogInfo(QStringLiteral("PXE script not exist"));
        return;
    }
    sys().sleepMs(pxePauseMs);
    addLogInfo(QStringLiteral("PXE script exist"));

    for (const QFileInfo &script : scripts) {
        QString path = sys().drivePath(script.absoluteFilePath());
        path.replace(QLatin1Char('/'), QLatin1Char('\\'));
        // The day's label shows it until the next tick writes the day back.
        ui.label->setText(QStringLiteral("Starting script: ") + path);
        ShellExecuteRequest request;
        request.mask = win32::seeMaskInvokeIdList;
        request.verb = QStringLiteral("Open");
        request.file = path;
        request.show = swShowNormal;
        sys().shellExecuteEx(request);
    }
}

void my_shell1::startRegScript()
{
    QSaveFile reg(sys().hostPath(QStringLiteral("regApp.reg")));
    if (!reg.open(QIODevice::WriteOnly))
        return;
    reg.write(taskrun::fileAssociationsText());
    if (!reg.commit())
        return;

    QSaveFile script(sys().hostPath(QStringLiteral("stregapp.cmd")));
    if (!script.open(QIODevice::WriteOnly))
        return;
    script.write(taskrun::fileAssociationsScript());
    if (!script.commit())
        return;
    appstart::open(QStringLiteral("stregapp.cmd"), QString(), swShowNormal);
}
