// The update history in settings.ini, group "Updates", read entry by entry from an arbitrary file.

#include "fuzzing.h"
#include "update/qmorvanesettings.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

namespace {
QTemporaryDir *folder;
int round;
}

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    folder = new QTemporaryDir;
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    // A new name each time: the toolkit keeps a read file and may not see a rewrite of the same
    // size within the same second.
    settingsFileName = folder->filePath(QStringLiteral("settings%1.ini").arg(round++));
    {
        QFile file(settingsFileName);
        if (!file.open(QIODevice::WriteOnly) || file.write(fuzzing::bytes(data, size)) != qint64(size))
            __builtin_trap();
    }
    // The list is dense and a file is finite: the walk ends.
    for (int entry = 0; entry < 10000; ++entry) {
        if (getUpdateField(entry, VersionField).isEmpty())
            break;
        for (int field = TitleField; field <= SetupField; ++field)
            getUpdateField(entry, field);
    }
    updateEntryFor(QStringLiteral("1.0.0.1"));
    QFile::remove(settingsFileName);
    return 0;
}
