#pragma once
// An icon made when it is first asked for (painted, measured, or tested for null) rather than
// when it is set: a menu's pictures are decoded, and a folder's theme icon looked up, when the
// menu first shows them, not while the shell starts. It answers as the icon made would.

#include <QIcon>

#include <functional>

QIcon lazyIcon(std::function<QIcon()> make);
// QIcon(path), made on first use.
QIcon lazyFileIcon(const QString &path);
