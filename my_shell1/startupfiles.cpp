#include "startupfiles.h"

#include "launcher/shellconfig.h"
#include "linefile.h"

namespace startupfiles {

SettingsFileFacts readSettingsFile(QIODevice *device)
{
    SettingsFileFacts facts;
    QString line;
    while (linefile::nextLine(*device, &line)) {
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

} // namespace startupfiles
