// Opens the shell's update wizard, the way a host of it would, against the update server given
// on the command line (else KELPIE_UPDATE_ENDPOINT, else the server the build names).
// Downloads land in version folders beside this program; the history is settings.ini in the
// working directory.
//
//   update-wizard [http://server[:port][/path]]

#include "my_shell1/globals.h"
#include "update/updatefacts.h"
#include "update/updatewizard.h"

#include <QApplication>
#include <cstdio>

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    const QStringList args = QCoreApplication::arguments();
    if (args.size() > 2 || (args.size() == 2 && args.at(1).startsWith(QLatin1Char('-')))) {
        std::fprintf(stderr, "usage: update-wizard [endpoint]\n");
        return 2;
    }
    if (args.size() == 2)
        setUpdateEndpoint(args.at(1));
    storeProductFacts();
    return runUpdateWizard() ? 0 : 1;
}
