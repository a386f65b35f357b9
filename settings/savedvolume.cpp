#include "savedvolume.h"

#include "platform/platform.h"

#include <QDir>

QString findSavedVolume(const QStringList &names)
{
    QStringList wanted;
    for (const QString &name : names)
        wanted << name.toUpper();
    const quint32 mask = sys().logicalDrives();
    for (int index = 0; index < 26; ++index) {
        if (!(mask & (1u << index)))
            continue;
        const QChar letter(char('A' + index));
        if (!sys().volumeReady(letter))
            continue;
        const QString root = QString(letter) + QStringLiteral(":/");
        const QStringList entries = QDir(sys().hostPath(root))
            .entryList(QStringList() << QStringLiteral("*"),
                       QDir::Dirs | QDir::Files | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
        for (const QString &entry : entries) {
            if (wanted.contains(entry.toUpper()))
                return root;
        }
    }
    return QString();
}

// The restore and the condition logs come with the saved-settings work; until then a boot
// restores nothing and writes no log, which askToSaveChanges reads as "nothing recorded".
void restoreSavedFiles(const QString &)
{
}

void writeConditionLogs()
{
}
