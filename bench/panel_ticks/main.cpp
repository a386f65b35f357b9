// Cost of the panel's two ticks on the demo machine: the one-second tick (hideWindow) and the
// slow tick (getSystemCondition) without adapters. Run on demand:
//   bench_panel_ticks [iterations]
// Idle CPU of the whole shell is measured by idle-cpu.sh beside this file.

#include "my_shell1/globals.h"
#include "my_shell1/my_shell1.h"
#include "my_shell1/startup.h"
#include "platform/platform.h"

#include <QApplication>
#include <QElapsedTimer>
#include <cstdio>

int main(int argc, char *argv[])
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    setPlatform(createDefaultPlatform());
    QApplication app(argc, argv);
    prepareShell(app);
    const int iterations = argc > 1 ? atoi(argv[1]) : 2000;

    my_shell1 shell;
    shell.show();
    shell.showWindow();
    shell.panelLocked = true;   // keeps the panel up, as it stands after start
    shell.getSystemCondition(); // first pass builds the tool tip, as at start

    QElapsedTimer timer;
    timer.start();
    for (int i = 0; i < iterations; ++i)
        shell.hideWindow();
    const double fast = double(timer.nsecsElapsed()) / iterations / 1e6;

    timer.restart();
    for (int i = 0; i < iterations; ++i)
        shell.getSystemCondition();
    const double slow = double(timer.nsecsElapsed()) / iterations / 1e6;

    std::printf("fast tick (hideWindow):         %.4f ms  (target < 0.2 ms)\n", fast);
    std::printf("slow tick (getSystemCondition): %.4f ms  (target < 2 ms)\n", slow);
    return 0;
}
