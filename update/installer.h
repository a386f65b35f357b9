#pragma once
// What the two working pages share: their labels, and the silent run of a setup file polled
// once a second.

#include <QString>
#include <QStringList>

class QLabel;
class QProcess;
class QProgressBar;
class QWidget;

// A page's bar: 1 to 100 at 33, hidden until a phase shows it.
QProgressBar *newPageProgress(QWidget *page);
// A page's label: word wrap, external links, hidden while it has no text.
QLabel *newPageLabel(QWidget *page);
// A page's label shows exactly when its text is not empty.
void setPageLabel(QLabel *label, const QString &text);
// The status line, with a red "Error:" in front of an error.
void showStatus(QLabel *statusLabel, const QString &text, bool isError);

// "/SP-", "/SILENT", "/NOCANCEL", "/CLOSEAPPLICATIONS", "/RESTARTAPPLICATIONS".
const QStringList &silentSwitches();
// Starts the setup with the silent switches, read and write.
void startSetup(QProcess *process, const QString &path);
// One poll: the bar grows by 3 (past its maximum it stands). False once the setup has ended;
// the bar then reads full.
bool setupRunning(QProgressBar *progress, QProcess *process);
