#pragma once
// What cfgcheck says of each line of a data_shell.cfg, worked out from the lines alone.

#include <QStringList>

// One text per non-empty line, "<line number>: <what it gives>", in file order.
QStringList cfgReport(const QStringList &lines);
