#include "platform.h"

#include "platform/sim/simplatform.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <cstdio>

#ifdef Q_OS_WIN
#include "platform/win/winplatform.h"
#endif

namespace {

#ifndef Q_OS_WIN
// Copies the tree below from into to, which exists. Failures of single files are passed over:
// a partial demo still gives a machine.
void copyTree(const QString &from, const QString &to)
{
    QDirIterator it(from, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                    QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString source = it.next();
        const QString target = to + source.mid(from.size());
        if (it.fileInfo().isDir())
            QDir().mkpath(target);
        else
            QFile::copy(source, target);
    }
}
#endif

} // namespace

Platform *createDefaultPlatform()
{
    const QString machine = qEnvironmentVariable("KELPIE_MACHINE");
#ifdef Q_OS_WIN
    if (machine.isEmpty())
        return new WinPlatform;
    return new SimPlatform(machine);
#else
    if (!machine.isEmpty())
        return new SimPlatform(machine);

    // A fresh copy of the demo, so that the shell's writes never reach the source tree.
    QTemporaryDir dir(QDir::tempPath() + QStringLiteral("/kelpie-machine-XXXXXX"));
    dir.setAutoRemove(false);
    const QString folder = dir.isValid() ? dir.path()
                                         : QDir::tempPath() + QStringLiteral("/kelpie-machine");
    const QString demo = QDir::cleanPath(QStringLiteral(KELPIE_DEMO_MACHINE));
    if (QFileInfo(demo).isDir())
        copyTree(demo, folder);
    QDir(folder).mkpath(QStringLiteral("drives/X"));
    fprintf(stderr, "kelpie: machine folder %s\n", qPrintable(QDir::toNativeSeparators(folder)));
    return new SimPlatform(folder);
#endif
}
