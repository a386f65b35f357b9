#pragma once
// A simulated machine in a temporary folder, installed as the process's platform for one test.

#include "platform/shelllink/shelllink.h"
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

    // --- saved settings: volumes and shortcuts ---
    // A section [volume.<letter>] of machine.ini from "key=value" lines, and the drive's folder.
    void addVolume(QChar letter, const QStringList &keys)
    {
        addDrive(letter);
        volumeSections += QStringLiteral("[volume.%1]\n").arg(letter) + keys.join(QLatin1Char('\n')) + QLatin1Char('\n');
        writeOrDie(QStringLiteral("machine.ini"), netIni + volumeSections.toUtf8());
    }
    // A USB stick: removable media on its own disk, with a vendor and a product.
    void addStick(QChar letter, int disk, const QStringList &more = QStringList())
    {
        addVolume(letter, QStringList{QStringLiteral("label=KELPIE"), QStringLiteral("mediaType=removable"),
                                      QStringLiteral("vendor=ACME"), QStringLiteral("product=FLASH"),
                                      QStringLiteral("disk=%1").arg(disk)}
                              + more);
    }
    // A real shortcut file at a path of the machine folder ("drives/X/.../a.lnk").
    void addShortcut(const QString &relative, const QString &target, const QString &workingDirectory = QString())
    {
        writeOrDie(relative, shelllink::write(shelllink::make(target, workingDirectory)));
    }
    void writeOrDie(const QString &relative, const QByteArray &content)
    {
        write(relative, content);
        if (read(relative) != content)
            qFatal("TestMachine: cannot write %s", qPrintable(relative));
    }
    QString volumeSections;
    // --- network (docs/machine.md, Network) ---
    // One NET adapter seen by all three roads: device <n> of the walk, its class subkey, its
    // Tcpip Adapters and Interfaces keys, its connection name and an [adapter.<n>] section
    // holding ipHelper; the hardware id is "PCI\VEN_FFFE&DEV_<n>" unless given. Returns its
    // interface GUID. Both files are written again at once.
    QString addAdapter(int n, const QByteArray &description, const QByteArray &ipHelper = {},
                       QByteArray hw = {})
    {
        const QByteArray guid = adapterGuid(n);
        if (hw.isEmpty())
            hw = "PCI\\VEN_FFFE&DEV_" + QByteArray::number(n);
        const QByteArray cls = "HKEY_LOCAL_MACHINE\\system\\CurrentControlSet\\";
        const QByteArray netClass = "{4D36E972-E325-11CE-BFC1-08002BE10318}";
        netIni += "[device." + QByteArray::number(n) + "]\nclass=Net\nclassGuid=" + netClass
            + "\ndescription=" + description + "\nhardwareId=" + hw + "\n"
            + "[adapter." + QByteArray::number(n) + "]\nname=" + guid + "\n" + ipHelper + "\n";
        netReg += "[" + cls + "Control\\Class\\" + netClass + "\\" + QByteArray::number(n).rightJustified(4, '0')
            + "]\n\"DeviceInstanceID\"=\"" + QByteArray(hw).replace("\\", "\\\\") + "\\\\4&1&0&" + QByteArray::number(n)
            + "\"\n\"NetCfgInstanceId\"=\"" + guid + "\"\n\n"
            + "[" + cls + "Services\\Tcpip\\Parameters\\Adapters\\" + guid + "]\n\n"
            + "[" + cls + "Services\\Tcpip\\Parameters\\Interfaces\\" + guid + "]\n\n"
            + "[" + cls + "Control\\Network\\" + netClass + "\\" + guid + "\\Connection]\n\"Name\"=\"Net "
            + QByteArray::number(n) + "\"\n\n";
        writeNetwork();
        return QString::fromLatin1(guid);
    }
    static QByteArray adapterGuid(int n)
    {
        return "{6B1F0C2A-3D4E-4F51-9A7B-" + QByteArray::number(n).rightJustified(12, '0') + "}";
    }
    // machine.ini and registry.reg: what addAdapter gathered, then the extra text.
    void writeNetwork(const QByteArray &extraIni = {}, const QByteArray &extraReg = {})
    {
        write(QStringLiteral("machine.ini"), netIni + extraIni + volumeSections.toUtf8());
        write(QStringLiteral("registry.reg"), "Windows Registry Editor Version 5.00\n\n" + netReg + extraReg);
    }
    QByteArray netIni;
    QByteArray netReg;

    QTemporaryDir dir;
    SimPlatform *sim = nullptr;
};
