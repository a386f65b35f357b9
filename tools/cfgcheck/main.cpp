// For whoever builds a medium: reads a data_shell.cfg by the shell's own rules and prints, line
// by line, what each line gives to the menu, the launcher buttons and the fixed buttons, and
// which lines give nothing and why.
//
//   cfgcheck path/to/data_shell.cfg

#include "cfgreport.h"
#include "launcher/shellconfig.h"
#include "my_shell1/linefile.h"

#include <QCoreApplication>
#include <QTextStream>
#include <cstdio>

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    if (argc != 2) {
        std::fprintf(stderr, "usage: cfgcheck <data_shell.cfg>\n");
        return 2;
    }
    QStringList lines;
    if (!linefile::readLines(QString::fromLocal8Bit(argv[1]), &lines)) {
        std::fprintf(stderr, "cannot open %s: the shell would show no entries, buttons or texts\n", argv[1]);
        return 1;
    }
    QTextStream out(stdout);
    out.setCodec("UTF-8");
    for (const QString &line : cfgReport(lines))
        out << line << '\n';
    return 0;
}
