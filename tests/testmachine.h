#pragma once
// A simulated machine in a temporary folder, installed as the process's platform for one test.
// Facts are added through named helpers; a file that cannot be written stops the suite.

#include "platform/shelllink/shelllink.h"
#include "platform/sim/simplatform.h"
#include "platform/sim/simshared.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMap>
#include <QRegularExpression>
#include <QTemporaryDir>

class TestMachine {
public:
    TestMachine()
    {
        if (!dir.isValid())
            qFatal("TestMachine: no temporary folder");
        addDrive('X');
        setPlatform(sim = new SimPlatform(dir.path()));
    }
    ~TestMachine() { setPlatform(nullptr); }

    // A simulated machine of the test's own kind in place of the plain one.
    template <typename P>
    P *use()
    {
        setPlatform(sim = new P(folder()));
        return static_cast<P *>(sim);
    }

    QString folder() const { return dir.path(); }

    // Writes a file of the machine folder ("machine.ini", "registry.reg", "drives/X/a.txt").
    void write(const QString &relative, const QByteArray &content)
    {
        // A plain file: on Windows the toolkit's save file takes a new ".lnk" for a link to follow.
        const QString path = dir.path() + QLatin1Char('/') + relative;
        QFile f(path);
        if (!QDir().mkpath(QFileInfo(path).absolutePath()) || !f.open(QIODevice::WriteOnly | QIODevice::Truncate)
            || f.write(content) != content.size() || !f.flush())
            qFatal("TestMachine: cannot write %s", qPrintable(path));
    }
    QByteArray read(const QString &relative) const
    {
        QFile f(dir.path() + QLatin1Char('/') + relative);
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
    }

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
        write(QStringLiteral("drives/") + drivePath.at(0).toUpper() + drivePath.mid(2).replace('\\', '/'), content);
        return *this;
    }
    TestMachine &config(const QByteArray &content)
    {
        return file(QStringLiteral("X:/Program Files/kelpie/data_shell.cfg"), content);
    }

    // A REG_DWORD value under HKEY_CURRENT_USER in registry.reg.
    TestMachine &registryDword(const QString &key, const QString &name, quint32 value)
    {
        m_registry[key] += QStringLiteral("\"%1\"=dword:%2\r\n")
                               .arg(name, QStringLiteral("%1").arg(value, 8, 16, QLatin1Char('0')));
        writeRegistry();
        return *this;
    }

    // A section of machine.ini, one "key=value" a line; a later call replaces it.
    TestMachine &facts(const QString &section, const QByteArray &lines)
    {
        m_sections[section] = lines;
        writeMachineIni();
        return *this;
    }
    // A volume: its drive folder and its [volume.L] facts ("label=STICK\nmediaType=removable").
    TestMachine &volume(QChar letter, const QByteArray &lines = {})
    {
        addDrive(letter);
        return facts(QStringLiteral("volume.") + letter.toUpper(), lines);
    }

    // Journal lines of this run, each tab-separated, operation first (docs/machine.md).
    QStringList journal() const { return sim->journal(); }
    // The journal lines of one operation, or of several ("timezone|start").
    QStringList journalOf(const QString &operations) const
    {
        return journal().filter(QRegularExpression("^(" + operations + ")(\t|$)"));
    }
    // Appends one line to inbox.txt and delivers what is new at once, without the timer.
    void send(const QByteArray &line)
    {
        write(QStringLiteral("inbox.txt"), read(QStringLiteral("inbox.txt")) + line + '\n');
        sim->pollInbox();
    }

    void addVolume(QChar letter, const QStringList &keys) { volume(letter, keys.join('\n').toUtf8()); }
    // A USB stick: removable media on its own disk, with a vendor and a product.
    void addStick(QChar letter, int disk, const QStringList &more = QStringList())
    {
        addVolume(letter, QStringList{"label=KELPIE", "mediaType=removable", "vendor=ACME", "product=FLASH",
                                      "disk=" + QString::number(disk)} + more);
    }
    // A real shortcut file at a path of the machine folder ("drives/X/.../a.lnk").
    void addShortcut(const QString &relative, const QString &target, const QString &workingDirectory = QString())
    {
        write(relative, shelllink::write(shelllink::make(target, workingDirectory)));
    }
    // One NET adapter seen by all three roads: device <n> of the walk, its class subkey, its
    // Tcpip Adapters and Interfaces keys, its connection name and an [adapter.<n>] section
    // holding ipHelper; the hardware id is "PCI\VEN_FFFE&DEV_<n>" unless given. Returns its
    // interface GUID. Both files are written again at once.
    QString addAdapter(int n, const QByteArray &description, const QByteArray &ipHelper = {}, QByteArray hw = {})
    {
        const QByteArray guid = adapterGuid(n), number = QByteArray::number(n);
        if (hw.isEmpty())
            hw = "PCI\\VEN_FFFE&DEV_" + number;
        const QByteArray cls = "[HKEY_LOCAL_MACHINE\\system\\CurrentControlSet\\";
        const QByteArray netClass = "{4D36E972-E325-11CE-BFC1-08002BE10318}";
        netIni += "[device." + number + "]\nclass=Net\nclassGuid=" + netClass + "\ndescription=" + description
            + "\nhardwareId=" + hw + "\n[adapter." + number + "]\nname=" + guid + "\n" + ipHelper + "\n";
        netReg += cls + "Control\\Class\\" + netClass + "\\" + number.rightJustified(4, '0')
            + "]\n\"DeviceInstanceID\"=\"" + QByteArray(hw).replace("\\", "\\\\") + "\\\\4&1&0&" + number
            + "\"\n\"NetCfgInstanceId\"=\"" + guid + "\"\n\n" + cls + "Services\\Tcpip\\Parameters\\Adapters\\"
            + guid + "]\n\n" + cls + "Services\\Tcpip\\Parameters\\Interfaces\\" + guid + "]\n\n" + cls
            + "Control\\Network\\" + netClass + "\\" + guid + "\\Connection]\n\"Name\"=\"Net " + number + "\"\n\n";
        writeNetwork();
        return QString::fromLatin1(guid);
    }
    static QByteArray adapterGuid(int n)
    {
        return "{6B1F0C2A-3D4E-4F51-9A7B-" + QByteArray::number(n).rightJustified(12, '0') + "}";
    }
    // machine.ini and registry.reg: the facts above, what addAdapter gathered, then the extra text.
    void writeNetwork(const QByteArray &extraIni = {}, const QByteArray &extraReg = {})
    {
        m_rawIni = netIni + extraIni;
        m_rawRegistry = netReg + extraReg;
        writeMachineIni();
        writeRegistry();
    }
    QByteArray netIni;
    QByteArray netReg;

    QTemporaryDir dir;
    SimPlatform *sim = nullptr;

private:
    void writeMachineIni()
    {
        QByteArray text;
        for (auto s = m_sections.begin(); s != m_sections.end(); ++s)
            text += '[' + s.key().toUtf8() + "]\n" + s.value() + '\n';
        write(QStringLiteral("machine.ini"), text + m_rawIni);
    }
    void writeRegistry()
    {
        QByteArray text = "Windows Registry Editor Version 5.00\r\n\r\n";
        for (auto k = m_registry.begin(); k != m_registry.end(); ++k)
            text += "[HKEY_CURRENT_USER\\" + (k.key() + "]\r\n" + k.value() + "\r\n").toUtf8();
        write(QStringLiteral("registry.reg"), text + m_rawRegistry);
    }

    QMap<QString, QString> m_registry;
    QMap<QString, QByteArray> m_sections;
    QByteArray m_rawIni, m_rawRegistry;   // the network block's own text
};

// The file itself: on Windows the toolkit calls a shortcut absent when its target is.
inline bool onDisk(const TestMachine &m, const QString &relative)
{
    return sim::present(QFileInfo(m.folder() + QLatin1Char('/') + relative));
}
