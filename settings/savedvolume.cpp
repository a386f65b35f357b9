#include "savedvolume.h"

#include "my_shell1/globals.h"
#include "platform/platform.h"
#include "settings/settingsfiles.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

const QString startMenuConditionLog = QStringLiteral("x:/tmpReg/startMenuCondition1.log");
const QString desktopConditionLog = QStringLiteral("x:/tmpReg/desktopCondition1.log");

namespace {

const QDir::Filters everyEntry =
    QDir::Dirs | QDir::Files | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot;

// The shell link object's path buffers hold 260 characters with the terminator; a longer path
// would come back cut, and a cut path must not be written into a shortcut.
const int maxLinkPath = 259;

// Whether a file is there. On Windows the toolkit takes a shortcut for a link and calls it absent
// when its target is; the shortcut itself is what counts here.
bool exists(const QString &path)
{
    const QFileInfo info(sys().hostPath(path));
    if (info.exists())
        return true;
    QFile file(info.filePath());
    return info.isSymLink() && file.open(QIODevice::ReadOnly);
}

// Copies a file without overwriting, through the platform's safe write.
bool copyFile(const QString &source, const QString &target)
{
    if (exists(target))
        return false;
    QFile in(sys().hostPath(source));
    if (!in.open(QIODevice::ReadOnly))
        return false;
    return sys().saveFile(target, in.readAll());
}

QByteArray logText(const QStringList &files)
{
    QString text;
    for (const QString &file : files)
        text += file + QStringLiteral("\r\n");
    return text.toLocal8Bit();
}

} // namespace

QString findSavedVolume(const QStringList &names)
{
    QStringList wanted;
    for (const QString &name : names)
        wanted << name.toUpper();
    for (const QChar letter : driveLetters(sys().logicalDrives())) {
        if (!sys().volumeReady(letter))
            continue;
        const QString root = QString(letter) + QStringLiteral(":/");
        const QStringList entries =
            QDir(sys().hostPath(root)).entryList(QStringList() << QStringLiteral("*"), everyEntry);
        for (const QString &entry : entries) {
            if (wanted.contains(entry.toUpper()))
                return root;
        }
    }
    return QString();
}

void listFiles(QStringList &list, const QString &folder)
{
    const QDir dir(sys().hostPath(folder), QStringLiteral("*"), QDir::Name | QDir::IgnoreCase,
                   everyEntry);
    if (!dir.exists())
        return;
    for (const QFileInfo &entry : dir.entryInfoList()) {
        if (entry.fileName().toLower() == QLatin1String("desktop.ini"))
            continue;
        const QString path = folder + entry.fileName();
        if (entry.isFile() || entry.isSymLink())
            list.append(path);
        else if (entry.isDir())
            listFiles(list, path + QLatin1Char('/'));
    }
}

void restoreSavedFiles(const QString &letter)
{
    if (letter.isEmpty())
        return;
    QStringList startMenu, desktop;
    listFiles(startMenu, letter + QStringLiteral(":/Start Menu.1/"));
    listFiles(desktop, letter + QStringLiteral(":/Desktop.1/"));
    for (const QString &file : startMenu)
        restoreFile(file);
    for (const QString &file : desktop)
        restoreFile(file);
}

void restoreFile(const QString &source)
{
    QString target = source;
    target[0] = QLatin1Char('x');
    QStringList parts = target.split(QLatin1Char('/'));
    // A file lying straight in the saved folder has no place to go back to.
    if (parts.size() < 4)
        return;
    parts.removeAt(1);
    target = parts.join(QLatin1Char('/'));
    if (!makeParentFolders(target))
        return;
    if (copyFile(source, target))
        retargetShortcut(target);
}

bool makeParentFolders(const QString &path)
{
    const QStringList parts = path.split(QLatin1Char('/'));
    if (parts.size() < 3)
        return true;
    QString folder = parts[0] + QLatin1Char('/');
    for (int i = 1; i < parts.size() - 1; ++i) {
        folder += parts[i];
        if (!QFileInfo(sys().hostPath(folder)).isDir() && !sys().makeFolder(folder))
            return false;
        folder += QLatin1Char('/');
    }
    return true;
}

void retargetShortcut(QString path)
{
    path.replace(QLatin1Char('/'), QLatin1Char('\\'));
    const ShortcutAnswer link = sys().readShortcut(path);
    if (!link.loaded || link.target.size() > maxLinkPath || link.workingDirectory.size() > maxLinkPath)
        return;
    QString target = link.target;
    target.replace(QLatin1Char('\\'), QLatin1Char('/'));
    QString found = findOnDrives(target);
    if (found.isEmpty())
        return;
    if (target[0].toUpper() == found[0].toUpper())
        return;
    found.replace(QLatin1Char('/'), QLatin1Char('\\'));
    QString workingDirectory = link.workingDirectory;
    if (!workingDirectory.isEmpty())
        workingDirectory[0] = found[0];
    sys().writeShortcut(path, found, workingDirectory);
}

QString findOnDrives(const QString &path)
{
    if (path.isEmpty())
        return QString();
    if (exists(path))
        return path;
    for (const QChar letter : driveLetters(sys().logicalDrives())) {
        if (!sys().volumeReady(letter))
            continue;
        QString candidate = path;
        candidate[0] = letter;
        if (exists(candidate))
            return candidate;
    }
    return QString();
}

void writeConditionLogs()
{
    if (!winPeMode)
        return;
    sys().makeFolder(QStringLiteral("x:/tmpReg"));
    QStringList startMenu, desktop;
    listFiles(startMenu, startMenuPath);
    listFiles(desktop, desktopPath);
    sys().saveFile(startMenuConditionLog, logText(startMenu));
    sys().saveFile(desktopConditionLog, logText(desktop));
}

bool findAddedFiles(QStringList &added, const QString &logPath, const QString &folder)
{
    QStringList logged;
    QFile log(sys().hostPath(logPath));
    if (log.open(QIODevice::ReadOnly))
        logged = readLogLines(log);
    QStringList upper;
    upper.reserve(logged.size());
    for (const QString &line : logged)
        upper.append(line.toUpper());

    QStringList files;
    listFiles(files, folder);
    for (const QString &file : files) {
        if (!upper.contains(file.toUpper()))
            added.append(file);
    }
    return !added.isEmpty();
}

bool copyToVolume(QString source, QString target)
{
    source.replace(QLatin1Char('/'), QLatin1Char('\\'));
    target.replace(QLatin1Char('/'), QLatin1Char('\\'));
    if (!target.contains(QLatin1Char('\\')) || target.size() < 3)
        return false;
    const QString letter = target.left(1);
    const QString rest = target.mid(3);
    QString folder = letter + QLatin1Char(':');
    for (const QString &part : rest.split(QLatin1Char('\\'))) {
        folder += QLatin1Char('\\') + part;
        sys().makeFolder(folder);
    }
    target = QStringLiteral("%1:\\%2").arg(letter, rest);
    const QStringList parts = source.mid(3).split(QLatin1Char('\\'));
    QString path = target;
    for (int i = 0; i < parts.size() - 1; ++i) {
        path += QLatin1Char('\\') + parts[i];
        sys().makeFolder(path);
    }
    copyFile(source, path + QLatin1Char('\\') + parts.last());
    return true;
}

