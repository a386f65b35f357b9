#include "simplatform.h"
#include "simshared.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

using namespace sim;

// --- what a started program leaves behind ---

void SimPlatform::leaveBehind(const QString &file)
{
    QString name = file;
    name.replace(QLatin1Char('\\'), QLatin1Char('/'));
    name = name.section(QLatin1Char('/'), -1).toLower();
    if (name.endsWith(QLatin1Char('"')))
        name.chop(1);
    const int n = ++m_startCounts[name];

    const SimMachineFacts &f = currentFacts();
    const auto section = f.raw.constFind(QStringLiteral("start.") + name);
    if (section == f.raw.constEnd())
        return;
    // The keys of this start's number, or else those of "*", every other start.
    QString prefix = QString::number(n) + QLatin1Char('.');
    bool own = false;
    for (auto it = section->constBegin(); it != section->constEnd() && !own; ++it)
        own = it.key().startsWith(prefix);
    if (!own)
        prefix = QStringLiteral("*.");
    const QString text = section->value(prefix + QStringLiteral("text"));
    QByteArray content;
    if (!text.isEmpty()) {
        for (const QString &line : text.split(QStringLiteral("\\n")))
            content += line.toUtf8() + "\r\n";
    }
    auto journal = [&](const char *what, const QString &target) {
        appendJournal({QStringLiteral("leave"), name, QString::number(n), QLatin1String(what), target});
    };

    const QString del = section->value(prefix + QStringLiteral("delete"));
    if (!del.isEmpty()) {
        QFile::remove(hostPath(del));
        journal("delete", del);
    }
    for (const char *mode : {"write", "append"}) {
        const QString target = section->value(prefix + QLatin1String(mode));
        if (target.isEmpty())
            continue;
        const QString host = hostPath(target);
        QDir().mkpath(QFileInfo(host).absolutePath());
        QFile out(host);
        const bool append = qstrcmp(mode, "append") == 0;
        if (out.open(append ? QIODevice::WriteOnly | QIODevice::Append
                            : QIODevice::WriteOnly | QIODevice::Truncate))
            out.write(content);
        journal(mode, target);
    }
}
