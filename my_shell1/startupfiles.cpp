#include "startupfiles.h"

#include "launcher/shellconfig.h"

#include <QIODevice>

namespace {

// One line of a line-oriented file: UTF-8, with every "\n" and "\r" taken out.
QString cleanLine(const QByteArray &raw)
{
    QString line = QString::fromUtf8(raw);
    line.remove(QLatin1Char('\n'));
    line.remove(QLatin1Char('\r'));
    return line;
}

} // namespace

namespace startupfiles {

SettingsFileFacts readSettingsFile(QIODevice *device)
{
    SettingsFileFacts facts;
    while (!device->atEnd()) {
        const QString line = cleanLine(device->readLine());
        if (line.startsWith(QLatin1String("appRun="))) {
            facts.appRun = line.mid(7);
            facts.hasAppRun = true;
        } else if (line.startsWith(QLatin1String("arg="))) {
            facts.arg = line.mid(4);
            facts.hasArg = true;
        } else if (line.startsWith(QLatin1String("imageLang="))) {
            facts.imageLanguage = shellconfig::number(line.mid(10));
        } else if (line.startsWith(QLatin1String("remDev="))) {
            if (line.mid(7) == QLatin1String("1"))
                facts.removable = true;
        }
    }
    return facts;
}

bool readBootLetter(QIODevice *device, QString *letter)
{
    bool found = false;
    while (!device->atEnd()) {
        const QString line = cleanLine(device->readLine());
        if (line.startsWith(QLatin1String("bootLetter="))) {
            *letter = line.mid(11);
            found = true;
        }
    }
    return found;
}

} // namespace startupfiles
