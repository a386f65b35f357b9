#include "replacefile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QUuid>

#ifdef Q_OS_WIN
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>
#else
#include <cstdio>
#endif

bool replaceFileContent(const QString &path, const QByteArray &content)
{
    const QString target = QDir::fromNativeSeparators(path);
    if (QFileInfo(target).isDir())
        return false;
    const QString temporary = target + QStringLiteral(".")
                              + QUuid::createUuid().toString(QUuid::Id128).left(8) + QStringLiteral(".tmp");
    QFile file(temporary);
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly))
        return false;
    const bool written = file.write(content) == content.size() && file.flush();
    file.close();
    bool renamed = false;
    if (written && file.error() == QFileDevice::NoError) {
#ifdef Q_OS_WIN
        const QString from = QDir::toNativeSeparators(temporary);
        const QString to = QDir::toNativeSeparators(target);
        renamed = MoveFileExW(reinterpret_cast<const wchar_t *>(from.utf16()),
                              reinterpret_cast<const wchar_t *>(to.utf16()),
                              MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != FALSE;
#else
        renamed = std::rename(QFile::encodeName(temporary).constData(),
                              QFile::encodeName(target).constData()) == 0;
#endif
    }
    if (!renamed)
        QFile::remove(temporary);
    return renamed;
}
