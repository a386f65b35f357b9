// kelpie_mklnk: writes a shortcut file, or prints what one holds. For whoever puts shortcuts on a
// medium or into a simulated machine folder.
//
//   kelpie_mklnk <file.lnk> <target> [working directory] [arguments]
//   kelpie_mklnk --print <file.lnk>...

#include "platform/shelllink/shelllink.h"

#include <QCoreApplication>
#include <QStringList>
#include <cstdio>

namespace {

int usage()
{
    fprintf(stderr, "usage: kelpie_mklnk <file.lnk> <target> [working directory] [arguments]\n"
                    "       kelpie_mklnk --print <file.lnk>...\n");
    return 2;
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    const QStringList args = app.arguments().mid(1);
    if (args.size() >= 2 && args[0] == QLatin1String("--print")) {
        int result = 0;
        for (const QString &path : args.mid(1)) {
            shelllink::Link link;
            if (!shelllink::readFile(path, &link)) {
                fprintf(stderr, "%s: not a readable shortcut\n", qPrintable(path));
                result = 1;
                continue;
            }
            printf("%s\n  target: %s\n  working directory: %s\n  arguments: %s\n", qPrintable(path),
                   qPrintable(link.target), qPrintable(link.workingDirectory),
                   qPrintable(link.arguments));
        }
        return result;
    }
    if (args.size() < 2 || args.size() > 4)
        return usage();
    const shelllink::Link link = shelllink::make(args[1], args.value(2), args.value(3));
    if (!shelllink::writeFile(args[0], link)) {
        fprintf(stderr, "%s: cannot write\n", qPrintable(args[0]));
        return 1;
    }
    return 0;
}
