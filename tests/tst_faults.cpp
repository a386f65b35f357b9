// The shell comes up on the demo machine with one of its inputs broken: missing, empty, garbage,
// unreadable, a folder where a file belongs (or a file where a folder belongs), or on a drive
// that is not ready. Every time the panel, the clock and the main menu stand, and nothing the
// shell does not write by design has changed in the machine folder.

#include "look/analog_clock.h"
#include "launcher/mainbutton.h"
#include "launcher/mymenu.h"
#include "menucloser.h"
#include "my_shell1/globals.h"
#include "my_shell1/my_shell1.h"
#include "my_shell1/startup.h"
#include "testmachine.h"
#include "testmain.h"

#include <QCryptographicHash>
#include <QDirIterator>
#include <QRandomGenerator>

namespace {

// What the shell writes by design: compared by other means or not at all.
const QStringList writtenByDesign = {QStringLiteral("journal.log"), QStringLiteral("registry.reg"),
                                     QStringLiteral("drives/X/init.log"),
                                     QStringLiteral("drives/X/tmpReg/desktopCondition1.log"),
                                     QStringLiteral("drives/X/tmpReg/startMenuCondition1.log")};
// What the restore brings back from a volume's saved folders onto X:, by design.
bool restoredByDesign(const QString &rel, const QMap<QString, QByteArray> &before)
{
    if (!rel.startsWith(QLatin1String("drives/X/")))
        return false;
    const QString rest = rel.mid(9);
    for (auto it = before.constBegin(); it != before.constEnd(); ++it) {
        const QStringList parts = it.key().split(QLatin1Char('/'));
        if (parts.size() > 3 && (parts[2] == QLatin1String("Desktop.1") || parts[2] == QLatin1String("Start Menu.1"))
            && parts.mid(3).join(QLatin1Char('/')).compare(rest, Qt::CaseInsensitive) == 0)
            return true;
    }
    return false;
}

// machine.ini without its [time] section, which setting the zone or the clock writes back.
QByteArray withoutTime(const QByteArray &ini)
{
    QByteArray out;
    bool time = false;
    for (const QByteArray &line : ini.split('\n')) {
        const QByteArray t = line.trimmed().toLower();
        if (t.startsWith('['))
            time = t == "[time]";
        if (!time && !t.isEmpty())
            out += line + '\n';
    }
    return out;
}

// The medium's locale file is deleted once applied.
const QStringList removedByDesign = {QStringLiteral("drives/X/Program Files/kelpie/envInit.ini")};

enum Fault { Missing, Empty, Garbage, Unreadable, Folder, NotReady };

// Relative path -> hash of the content ("<folder>" for folders, "<unreadable>" when it won't open).
QMap<QString, QByteArray> snapshot(const QString &root)
{
    QMap<QString, QByteArray> out;
    QDirIterator it(root, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                    QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString path = it.next();
        const QString rel = path.mid(root.size() + 1);
        if (it.fileInfo().isDir()) {
            out.insert(rel, "<folder>");
            continue;
        }
        QFile f(path);
        out.insert(rel, f.open(QIODevice::ReadOnly)
                            ? QCryptographicHash::hash(f.readAll(), QCryptographicHash::Sha1)
                            : QByteArray("<unreadable>"));
    }
    return out;
}

void copyTree(const QString &from, const QString &to)
{
    QDirIterator it(from, QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString source = it.next();
        const QString target = to + source.mid(from.size());
        if (it.fileInfo().isDir())
            QVERIFY2(QDir().mkpath(target), qPrintable(target));
        else
            QVERIFY2(QFile::copy(source, target), qPrintable(target));
    }
}

// Every value of every key of a registry text: "key\name" -> type and data.
QMap<QString, QString> registryValues(const QByteArray &text)
{
    SimRegistry reg;
    reg.parse(text);
    QMap<QString, QString> out;
    QStringList keys = {QStringLiteral("HKEY_CURRENT_USER"), QStringLiteral("HKEY_LOCAL_MACHINE")};
    for (int i = 0; i < keys.size(); ++i) {
        for (const QString &child : reg.enumKeys(keys[i]))
            keys.append(keys[i] + QLatin1Char('\\') + child);
        for (const QString &name : reg.valueNames(keys[i])) {
            const RegData v = reg.readValue(keys[i], name.isEmpty() ? QStringLiteral("@") : name);
            out.insert((keys[i] + QLatin1Char('\\') + name).toLower(),
                       QString::number(v.type) + QLatin1Char(':') + QString::fromLatin1(v.bytes.toHex()));
        }
    }
    return out;
}

} // namespace

class FaultsTest : public QObject {
    Q_OBJECT
private slots:
    void init() { resetGlobals(); }
    void comesUpAndLeavesTheMachine_data();
    void comesUpAndLeavesTheMachine();
};

void FaultsTest::comesUpAndLeavesTheMachine_data()
{
    QTest::addColumn<QString>("input");
    QTest::addColumn<int>("fault");

    const QStringList files = {
        QStringLiteral("registry.reg"), QStringLiteral("machine.ini"), QStringLiteral("inbox.txt"),
        QStringLiteral("drives/E/_kelpie.ini"), QStringLiteral("drives/X/tmpReg/startNetwork.log"),
        QStringLiteral("drives/X/Program Files/kelpie/data_shell.cfg"),
        QStringLiteral("drives/X/init.log"), QStringLiteral("journal.log")};
    const QStringList folders = {
        QStringLiteral("drives/X/Users/Default/Desktop"),
        QStringLiteral("drives/X/Users/Default/AppData/Roaming/Microsoft/Windows/Start Menu/Programs"),
        QStringLiteral("drives/E/Desktop.1"), QStringLiteral("drives/X/tmpReg"),
        QStringLiteral("drives/X/Program Files/kelpie")};
    const QList<QPair<Fault, const char *>> fileFaults = {
        {Missing, "missing"}, {Empty, "empty"}, {Garbage, "garbage"}, {Unreadable, "unreadable"},
        {Folder, "a folder"}};
    for (const QString &f : files) {
        for (const auto &k : fileFaults)
            QTest::newRow(qPrintable(f + QStringLiteral(": ") + QLatin1String(k.second))) << f << int(k.first);
    }
    const QList<QPair<Fault, const char *>> folderFaults = {
        {Missing, "missing"}, {Empty, "empty"}, {Unreadable, "unreadable"}, {Folder, "a file"}};
    for (const QString &f : folders) {
        for (const auto &k : folderFaults)
            QTest::newRow(qPrintable(f + QStringLiteral(": ") + QLatin1String(k.second))) << f << int(k.first);
    }
    for (const char *drive : {"C", "E", "X"}) {
        QTest::newRow(qPrintable(QStringLiteral("drive %1: not ready").arg(drive))) << QString(drive) << int(NotReady);
        QTest::newRow(qPrintable(QStringLiteral("drive %1: missing").arg(drive)))
            << QStringLiteral("drives/%1").arg(drive) << int(Missing);
    }
}

void FaultsTest::comesUpAndLeavesTheMachine()
{
    QFETCH(QString, input);
    QFETCH(int, fault);

    TestMachine m;
    copyTree(QStringLiteral(KELPIE_SOURCE_DIR "/demo/machine"), m.folder());
    const QString path = m.folder() + QLatin1Char('/') + input;
    const bool isFolder = QFileInfo(path).isDir();
    QMap<QString, QByteArray> before;
    // An unreadable registry still holds its values: the shell must not write over them.
    QByteArray registryText = m.read(QStringLiteral("registry.reg"));
    switch (Fault(fault)) {
    case Missing:
        QVERIFY(isFolder ? QDir(path).removeRecursively() : (!QFile::exists(path) || QFile::remove(path)));
        break;
    case Empty:
        if (isFolder) {
            QVERIFY(QDir(path).removeRecursively() && QDir().mkpath(path));
        } else {
            m.write(input, QByteArray());
        }
        break;
    case Garbage: {
        QByteArray junk(4096, '\0');
        QRandomGenerator rng(12);
        for (char &c : junk)
            c = char(rng.bounded(256));
        m.write(input, junk);
        break;
    }
    case Unreadable:
        if (!QFileInfo::exists(path))
            m.write(input, "present\n");
        before = snapshot(m.folder());   // while it can still be read
        if (!QFile::setPermissions(path, QFileDevice::Permissions()))
            QSKIP("this file system keeps no such permissions (Windows): the unreadable case cannot be played");
        if (QFile(path).open(QIODevice::ReadOnly) || (isFolder && QDir(path).entryList().size() > 0)) {
            QFile::setPermissions(path, QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
            QSKIP("permissions do not keep this user out (root): the unreadable case cannot be played");
        }
        break;
    case Folder:
        if (isFolder) {
            QVERIFY(QDir(path).removeRecursively());
            m.write(input, "a file where a folder belongs\n");
        } else {
            QVERIFY(!QFile::exists(path) || QFile::remove(path));
            QVERIFY(QDir().mkpath(path + QStringLiteral("/inside")));
        }
        break;
    case NotReady:
        m.write(QStringLiteral("machine.ini"), m.read(QStringLiteral("machine.ini"))
                    + "\n[volume." + input.toLatin1() + "]\nready=0\n");
        break;
    }

    if (Fault(fault) != Unreadable)
        before = snapshot(m.folder());
    const QByteArray machineIni = m.read(QStringLiteral("machine.ini"));
    if (Fault(fault) != Unreadable)
        registryText = m.read(QStringLiteral("registry.reg"));
    const QMap<QString, QString> registryBefore = registryValues(registryText);

    {
        prepareShell(*qApp);
        my_shell1 shell;
        shell.show();
        closeMenuWhenShown(shell.mainMenu);
        shell.initTimer->stop();   // its one shot, taken here rather than inside the menu's loop
        shell.init();
        shell.hideWindow();
        shell.getSystemCondition();
        m.sim->pollInbox();
        QVERIFY(shell.isVisible());
        QCOMPARE(shell.mask(), QRegion(0, 0, screenWidth, 64));
        QVERIFY(shell.startButton && shell.startButton->isVisible());
        QVERIFY(shell.clock && shell.clock->isVisible());
        QVERIFY(shell.mainMenu && shell.mainMenu->actions().size() >= 6);
    }
    // Give the folders back to the owner, so that the comparison and the clean-up can read them.
    if (Fault(fault) == Unreadable)
        QFile::setPermissions(path, QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);

    const QMap<QString, QByteArray> after = snapshot(m.folder());
    for (auto it = before.constBegin(); it != before.constEnd(); ++it) {
        if (writtenByDesign.contains(it.key()) || (Fault(fault) == Unreadable && it.key() == input))
            continue;
        if (removedByDesign.contains(it.key()))
            continue;
        QVERIFY2(after.contains(it.key()), qPrintable(it.key() + QStringLiteral(" is gone")));
        if (it.key() == QLatin1String("machine.ini") && after.value(it.key()) != it.value())
            continue;   // compared below without [time]
        QVERIFY2(after.value(it.key()) == it.value() || restoredByDesign(it.key(), before),
                 qPrintable(it.key() + QStringLiteral(" changed")));
    }
    for (auto it = after.constBegin(); it != after.constEnd(); ++it) {
        QVERIFY2(before.contains(it.key()) || writtenByDesign.contains(it.key())
                     || restoredByDesign(it.key(), before) || it.key() == QLatin1String("machine.ini")
                     || it.key() == QLatin1String("drives/X/tmpReg"),
                 qPrintable(it.key() + QStringLiteral(" was added")));
    }
    if (before.contains(QStringLiteral("machine.ini")) && Fault(fault) != Unreadable)
        QCOMPARE(withoutTime(m.read(QStringLiteral("machine.ini"))), withoutTime(machineIni));
    // The registry keeps every value it had; the shell adds the image language only.
    const QMap<QString, QString> registryAfter = registryValues(m.read(QStringLiteral("registry.reg")));
    for (auto it = registryBefore.constBegin(); it != registryBefore.constEnd(); ++it)
        QVERIFY2(registryAfter.value(it.key()) == it.value(), qPrintable(it.key() + QStringLiteral(" lost or changed")));
}

KELPIE_TEST_MAIN(FaultsTest)
#include "tst_faults.moc"
