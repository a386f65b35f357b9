#pragma once
// What the rooms of the simulated machine share: the machine folder's file names, the host's
// case rule and the small path and journal rules.

#include <QFileInfo>
#include <QString>
#include <QStringList>

namespace sim {

inline const QString kMachineIni = QStringLiteral("/machine.ini");
inline const QString kRegistry = QStringLiteral("/registry.reg");
inline const QString kJournal = QStringLiteral("/journal.log");
inline const QString kInbox = QStringLiteral("/inbox.txt");
inline const QString kUserHive = QStringLiteral("HKEY_CURRENT_USER\\");

#ifdef Q_OS_WIN
inline constexpr Qt::CaseSensitivity kHostCase = Qt::CaseInsensitive;
#else
inline constexpr Qt::CaseSensitivity kHostCase = Qt::CaseSensitive;
#endif

// On Windows the toolkit takes a .lnk for a link and calls it absent when its target is; the
// simulated drives hold shortcuts whose targets live on other simulated drives, so the file
// itself is what counts.
bool present(const QFileInfo &fi);

// "X:..." with an ASCII letter.
bool isDrivePath(const QString &p);

// A comma-separated list of machine.ini, each part trimmed, empty parts left out.
QStringList listOf(const QString &text);
// 1/true/yes/on and 0/false/no/off, ignoring case; anything else gives the fallback.
bool boolOf(const QString &text, bool fallback);

// A journal field: tabs and line breaks become blanks.
QString journalField(QString s);

} // namespace sim
