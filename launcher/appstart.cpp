#include "appstart.h"

namespace appstart {

ShellResult open(const QString &file, const QString &parameters, int show)
{
    return sys().shellExecute(QStringLiteral("open"), file, parameters, show);
}

bool mediumStartEntry(const QString &program, const QString &args, bool removable, int diskNumber,
                      RunEntry *out)
{
    if (program.isEmpty())
        return false;
    QString a = args;
    if (program.toLower().contains(QLatin1String("zembra")) && removable && diskNumber >= 0) {
        if (a.startsWith(QLatin1Char(' ')))
            a.remove(0, 1);
        a = QStringLiteral("-xd=%1 %2").arg(QString::number(diskNumber), a);
    }
    out->program = program;
    out->arguments = a;
    return true;
}

QString taskListPath(const QString &program)
{
    QString path = QStringLiteral("x:\\program files\\kelpie\\") + program;
    if (!path.contains(QLatin1String(".exe")))
        path += QLatin1String(".exe");
    return path;
}

QString menuIconPath(const QString &iconField)
{
    return QString(iconField).replace(QLatin1String("24"), QLatin1String("32"));
}

} // namespace appstart
