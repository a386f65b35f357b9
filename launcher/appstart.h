#pragma once
// The rules that shape what a start hands to the shell's open verb.

#include "my_shell1/globals.h"
#include "platform/platform.h"

#include <QString>

namespace appstart {

// Every start of the shell: the shell execution service's "open" verb, no owner window, no
// working directory, shown normally unless told otherwise.
ShellResult open(const QString &file, const QString &parameters = QString(), int show = 1);

// The medium's own start entry from _kelpie.ini; false when there is none (empty program).
// The disk tool is always told the number of the disk the shell runs from.
bool mediumStartEntry(const QString &program, const QString &args, bool removable, int diskNumber,
                      RunEntry *out);

// Where a queued start-up program is taken from: always the medium's folder.
QString taskListPath(const QString &program);

// A menu entry's icon: the 24-pixel names of the file stand for the 32-pixel pictures.
QString menuIconPath(const QString &iconField);

} // namespace appstart
