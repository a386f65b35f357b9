#pragma once
// A simulated machine in a temporary folder, installed as the process's platform for one test.
// Facts are added through named helpers; a file that cannot be written stops the suite.

#include "platform/sim/simplatform.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMap>
#include <QSaveFile>
#include <QTemporaryDir>

class TestMachine {
public:
    TestMachine()
    {
        if (!dir.isValid())
            qFatal("TestMachine: no temporary folder");
        addDrive('X');
        sim = new SimPlatform(dir.path());
        setPlatform(sim);
    }
    ~TestMachine() { setPlatform(nullptr); }

    // A simulated machine of the test's own kind in place of the plain one.
    template <typename P>
    P *use()
    {
        P *p = new P(folder());
        setPlatform(p);
        sim = p;
        return p;
    }

    QString folder() const { return dir.path(); }

    // Writes a file of the machine folder ("machine.ini", "registry.reg", "drives/X/a.txt").
    void write(const QString &relative, const QByteArray &content)
    {
        const QString path = dir.path() + QLatin1Char('/') + relative;
        QSaveFile f(path);
        if (!QDir().mkpath(QFileInfo(path).absolutePath()) || !f.open(QIODevice::WriteOnly)
            || f.write(content) != content.size() || !f.commit())
            qFatal("TestMachine: cannot write %s", qPrintable(path));
    }
    QByteArray read(const QString &relative) const
    {
        QFile f(dir.path() + QLatin1Char('/') + relative);
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
    }

    // --- drives ---
    void addDrive(QChar letter)
    {
        if (!QDir(dir.path()).mkpath(QStringLiteral("drives/") + letter.toUpper()))
            qFatal("TestMachine: cannot make drive %c", letter.toLatin1());
    }
    // A drive with these files, named by their paths on the drive ("Desktop/a.lnk").
    TestMachine &drive(QChar letter, const QMap<QString, QByteArray> &files = {})
    {
        addDrive(letter);
        for (auto f = files.begin(); f != files.end(); ++f)
            write(QStringLiteral("drives/%1/%2").arg(QString(letter.toUpper()), f.key()), f.value());
        return *this;
    }
    // One file by its drive path ("x:/init.log", "X:\\Program Files\\kelpie\\data_shell.cfg").
    TestMachine &file(const QString &drivePath, const QByteArray &content)
    {
        QString rest = drivePath.mid(2);
        rest.replace(QLatin1Char('\\'), QLatin1Char('/'));
        write(QStringLiteral("drives/") + drivePath.at(0).toUpper() + rest, content);
        return *this;
    }
    // data_shell.cfg in the working directory.
    TestMachine &config(const QByteArray &content)
    {
        return file(QStringLiteral("X:/Program Files/kelpie/data_shell.cfg"), content);
    }

    // --- registry.reg: REG_DWORD values under HKEY_CURRENT_USER ---
    TestMachine &registryDword(const QString &key, const QString &name, quint32 value)
    {
        m_registry[key].append(QStringLiteral("\"%1\"=dword:%2")
                                   .arg(name, QStringLiteral("%1").arg(value, 8, 16, QLatin1Char('0'))));
        QByteArray text = "Windows Registry Editor Version 5.00\r\n";
        for (auto k = m_registry.begin(); k != m_registry.end(); ++k)
            text += "\r\n[HKEY_CURRENT_USER\\" + k.key().toUtf8() + "]\r\n"
                + k.value().join(QStringLiteral("\r\n")).toUtf8() + "\r\n";
        write(QStringLiteral("registry.reg"), text);
        return *this;
    }

    // --- machine.ini: a section's facts, one "key=value" a line; a later call replaces it ---
    TestMachine &facts(const QString &section, const QByteArray &lines)
    {
        m_sections[section] = lines;
        QByteArray text;
        for (auto s = m_sections.begin(); s != m_sections.end(); ++s)
            text += '[' + s.key().toUtf8() + "]\n" + s.value() + '\n';
        write(QStringLiteral("machine.ini"), text);
        return *this;
    }
    // A volume: its drive folder and its [volume.L] facts ("label=STICK\nmediaType=removable").
    TestMachine &volume(QChar letter, const QByteArray &lines = {})
    {
        addDrive(letter);
        return facts(QStringLiteral("volume.") + letter.toUpper(), lines);
    }

    // --- what the machine saw ---
    // Journal lines of this run, each tab-separated, operation first (docs/machine.md).
    QStringList journal() const { return sim->journal(); }
    // The journal lines of one operation.
    QStringList journalOf(const QString &operation) const
    {
        QStringList lines;
        for (const QString &line : sim->journal())
            if (line == operation || line.startsWith(operation + QLatin1Char('\t')))
                lines << line;
        return lines;
    }
    // Appends one line to inbox.txt and delivers what is new at once, without the timer.
    void send(const QByteArray &line)
    {
        QFile f(dir.path() + QStringLiteral("/inbox.txt"));
        if (!f.open(QIODevice::WriteOnly | QIODevice::Append) || f.write(line + '\n') != line.size() + 1)
            qFatal("TestMachine: cannot write inbox.txt");
        f.close();
        sim->pollInbox();
    }

    QTemporaryDir dir;
    SimPlatform *sim = nullptr;

private:
    QMap<QString, QStringList> m_registry;
    QMap<QString, QByteArray> m_sections;
};
