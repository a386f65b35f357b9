#pragma once
// Writes a file whole through a temporary file beside it, renamed over the old one, so a failure
// leaves the old file as it was. Unlike QSaveFile it takes shortcut files on Windows too, whose
// names the toolkit there reads as links to follow.

#include <QByteArray>
#include <QString>

bool replaceFileContent(const QString &path, const QByteArray &content);
