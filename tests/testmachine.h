#pragma once
// A simulated machine in a temporary folder, installed as the process's platform for one test.

#include "platform/sim/simplatform.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

class TestMachine {
public:
    TestMachine()
    {
        QDir(dir.path()).mkpath(QStringLiteral("drives/X"));
        sim = new SimPlatform(dir.path());
        setPlatform(sim);
    }
    ~TestMachine() { setPlatform(nullptr); }

    QString folder() const { return dir.path(); }
    // Writes a file of the machine folder ("machine.ini", "registry.reg", "drives/X/a.txt").
    void write(const QString &relative, const QByteArray &content)
    {
        const QString path = dir.path() + QLatin1Char('/') + relative;
        QDir().mkpath(QFileInfo(path).absolutePath());
        QFile f(path);
        if (f.open(QIODevice::WriteOnly | QIODevice::Truncate))
            f.write(content);
    }
    QByteArray read(const QString &relative) const
    {
        QFile f(dir.path() + QLatin1Char('/') + relative);
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
    }
    void addDrive(QChar letter) { QDir(dir.path()).mkpath(QStringLiteral("drives/") + letter.toUpper()); }
    // Journal lines of this run, each tab-separated, operation first (docs/machine.md).
    QStringList journal() const { return sim->journal(); }
    // Appends one line to inbox.txt and delivers what is new at once, without the timer.
    void send(const QByteArray &line)
    {
        QFile f(dir.path() + QStringLiteral("/inbox.txt"));
        if (f.open(QIODevice::WriteOnly | QIODevice::Append))
            f.write(line + '\n');
        f.close();
        sim->pollInbox();
    }

    QTemporaryDir dir;
    SimPlatform *sim = nullptr;
};
