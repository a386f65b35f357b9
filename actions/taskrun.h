#pragma once
// The rules by which the shell hands work to the medium's programs: the driver installer's
// files and parameters, the PXE scripts' folder, and the file associations script.

#include <QByteArray>
#include <QString>

namespace taskrun {

// The folder of the medium's start-up scripts, run at the end of the start-up chain.
QString pxeScriptFolder();

// A driver's INF file: its suffix, upper-cased, is "INF" ("b.INF" counts, "c.inf.bak" not).
bool isDriverFile(const QString &fileName);
// InstallDriver.exe's parameters for one INF file: the path quoted, then "/exit-if-ok".
QString driverParameters(const QString &fullPath);

// regApp.reg: the default handlers of the medium's viewers, in regedit's text format with
// "\r\n" line ends.
QByteArray fileAssociationsText();
// stregapp.cmd: imports regApp.reg, then removes it and itself.
QByteArray fileAssociationsScript();

} // namespace taskrun
