// Cost of the network on the simulated machine: the slow tick with five adapters (five reports,
// each running every dynamic road), and one enumeration of the three roads. Run on demand:
//   bench_network [iterations]

#include "my_shell1/globals.h"
#include "launcher/my_pushbutton.h"
#include "my_shell1/my_shell1.h"
#include "tests/testmachine.h"

#include <QApplication>
#include <QDateTime>
#include <QElapsedTimer>
#include <QTimer>
#include <cstdio>

int main(int argc, char *argv[])
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    const int iterations = argc > 1 ? atoi(argv[1]) : 1000;

    TestMachine machine;
    for (int n = 1; n <= 5; ++n)
        machine.addAdapter(n, "Generic Ethernet " + QByteArray::number(n),
                           "address=192.168.1." + QByteArray::number(50 + n)
                               + "/255.255.255.0\ngateway=192.168.1.1\nmac=00-15-5D-4A-01-0"
                               + QByteArray::number(n) + "\n");
    machine.writeNetwork("[network]\ndnsServers=192.168.1.1\n[firewall]\nstate=on\n");
    // Files changed within the last two seconds are read again on every question; a machine
    // that has settled is what the shell sees in the steady state.
    const QDateTime past = QDateTime::currentDateTime().addSecs(-60);
    for (const char *name : {"machine.ini", "registry.reg"}) {
        QFile f(machine.folder() + QLatin1Char('/') + QLatin1String(name));
        f.open(QIODevice::ReadWrite);
        f.setFileTime(past, QFileDevice::FileModificationTime);
    }

    resetGlobals();
    screenWidth = 1024;
    screenHeight = 768;
    my_shell1 shell;
    shell.initTimer->stop();
    for (int tick = 0; tick < 5; ++tick)   // three counting ticks, the enumeration, one report
        shell.getSystemCondition();
    if (shell.netButtons.size() != 5 || shell.netButtons[4]->toolTip().isEmpty()) {
        std::fprintf(stderr, "bench_network: the five adapters did not come up\n");
        return 1;
    }

    QElapsedTimer timer;
    timer.start();
    for (int i = 0; i < iterations; ++i)
        shell.getSystemCondition();
    const double tick = double(timer.nsecsElapsed()) / iterations / 1e6;

    ip_settings net;
    timer.restart();
    for (int i = 0; i < iterations; ++i)
        net.refreshAdapters();
    const double enumeration = double(timer.nsecsElapsed()) / iterations / 1e6;

    std::printf("slow tick, five adapter reports: %.4f ms  (target < 2 ms)\n", tick);
    std::printf("one enumeration (three roads):   %.4f ms\n", enumeration);
    return net.getAdapterCount() == 5 ? 0 : 1;
}
