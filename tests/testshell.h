#pragma once
// The panel as main makes it, on the test's machine and screen, with the start-up chain held
// back: the tests call init() and the ticks themselves.

#include "my_shell1/globals.h"
#include "my_shell1/my_shell1.h"

#include <QTimer>
#include <memory>

inline std::unique_ptr<my_shell1> makeShell(int width = 1024, int height = 768)
{
    screenWidth = width;
    screenHeight = height;
    auto shell = std::make_unique<my_shell1>();
    shell->initTimer->stop();
    return shell;
}
