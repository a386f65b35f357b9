#include "simplatform.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QTimer>

#ifndef Q_OS_WIN
#include <sys/stat.h>
#endif

namespace {

// On Windows the toolkit takes a .lnk for a link and calls it absent when its target is; the
// simulated drives hold shortcuts whose targets live on other simulated drives, so the file
// itself is what counts.
bool present(const QFileInfo &fi)
{
    if (fi.exists())
        return true;
    // isSymLink() goes by the name alone there; opening the file tells whether it is there.
    QFile file(fi.filePath());
    return fi.isSymLink() && file.open(QIODevice::ReadOnly);
}

} // namespace

namespace {

const QString kMachineIni = QStringLiteral("/machine.ini");
const QString kRegistry = QStringLiteral("/registry.reg");
const QString kJournal = QStringLiteral("/journal.log");
const QString kInbox = QStringLiteral("/inbox.txt");
const QString kUserHive = QStringLiteral("HKEY_CURRENT_USER\\");

#ifdef Q_OS_WIN
const Qt::CaseSensitivity kHostCase = Qt::CaseInsensitive;
#else
const Qt::CaseSensitivity kHostCase = Qt::CaseSensitive;
#endif

// Programs that Windows PE itself carries; a bare name of one of these always starts.
const QSet<QString> &systemPrograms()
{
    static const QSet<QString> names = {
        QStringLiteral("wpeutil.exe"),  QStringLiteral("wpeinit.exe"),  QStringLiteral("taskmgr.exe"),
        QStringLiteral("osk.exe"),      QStringLiteral("cmd.exe"),      QStringLiteral("notepad.exe"),
        QStringLiteral("regedit.exe"),  QStringLiteral("reg.exe"),      QStringLiteral("explorer.exe"),
        QStringLiteral("mspaint.exe"),  QStringLiteral("drvload.exe"),  QStringLiteral("diskpart.exe"),
        QStringLiteral("net.exe"),      QStringLiteral("netsh.exe"),    QStringLiteral("ipconfig.exe"),
        QStringLiteral("ping.exe"),     QStringLiteral("wpeutil"),      QStringLiteral("control.exe"),
        QStringLiteral("rundll32.exe"), QStringLiteral("calc.exe"),     QStringLiteral("wscript.exe"),
    };
    return names;
}

bool associated(const QString &suffix)
{
    static const QSet<QString> known = {
        QStringLiteral("exe"), QStringLiteral("com"), QStringLiteral("bat"), QStringLiteral("cmd"),
        QStringLiteral("lnk"), QStringLiteral("txt"), QStringLiteral("log"), QStringLiteral("ini"),
        QStringLiteral("cfg"), QStringLiteral("reg"), QStringLiteral("htm"), QStringLiteral("html"),
        QStringLiteral("url"), QStringLiteral("msc"), QStringLiteral("png"), QStringLiteral("jpg"),
        QStringLiteral("bmp"),
    };
    return known.contains(suffix.toLower());
}

QString journalField(QString s)
{
    for (QChar &c : s) {
        if (c == QLatin1Char('\t') || c == QLatin1Char('\n') || c == QLatin1Char('\r'))
            c = QLatin1Char(' ');
    }
    return s;
}

bool isDrivePath(const QString &p)
{
    return p.size() >= 2 && p[1] == QLatin1Char(':') && p[0].isLetter() && p[0].unicode() < 128;
}

enum : int { VkShift = 16, VkControl = 17, VkMenu = 18, VkLShift = 160, VkLControl = 162, VkLMenu = 164 };

} // namespace

bool SimPlatform::FileStamp::operator==(const FileStamp &o) const
{
    return exists == o.exists && size == o.size && mtimeNs == o.mtimeNs && inode == o.inode;
}

SimPlatform::FileStamp SimPlatform::stampOf(const QString &path)
{
    FileStamp s;
    s.takenNs = QDateTime::currentMSecsSinceEpoch() * 1000000;
#ifdef Q_OS_WIN
    const QFileInfo fi(path);
    if (!present(fi))
        return s;
    s.exists = true;
    s.size = fi.size();
    s.mtimeNs = fi.lastModified().toMSecsSinceEpoch() * 1000000;
#else
    struct stat st;
    if (::stat(QFile::encodeName(path).constData(), &st) != 0)
        return s;
    s.exists = true;
    s.size = st.st_size;
    s.mtimeNs = qint64(st.st_mtim.tv_sec) * 1000000000 + st.st_mtim.tv_nsec;
    s.inode = st.st_ino;
#endif
    return s;
}

SimPlatform::SimPlatform(const QString &machineFolder)
    : m_root(QDir::cleanPath(QFileInfo(machineFolder).absoluteFilePath()))
{
    m_drivesPrefix = m_root + QStringLiteral("/drives/");
    const QString canonical = QFileInfo(m_root).canonicalFilePath();
    m_canonicalDrivesPrefix = canonical.isEmpty() ? m_drivesPrefix : canonical + QStringLiteral("/drives/");
    // Messages sent before this machine came up are not delivered.
    m_inboxOffset = QFileInfo(m_root + kInbox).size();
}

SimPlatform::~SimPlatform() = default;

QString SimPlatform::machineFolder() const
{
    return m_root;
}

QStringList SimPlatform::journal() const
{
    return m_journal;
}

void SimPlatform::appendJournal(const QStringList &fields)
{
    QStringList clean;
    clean.reserve(fields.size());
    for (const QString &f : fields)
        clean.append(journalField(f));
    const QString line = clean.join(QLatin1Char('\t'));
    m_journal.append(line);
    QFile f(m_root + kJournal);
    if (f.open(QIODevice::WriteOnly | QIODevice::Append))
        f.write(line.toUtf8() + '\n');
}

// --- machine.ini ---

const SimMachineFacts &SimPlatform::currentFacts() const
{
    const QString path = m_root + kMachineIni;
    const FileStamp stamp = stampOf(path);
    if (!m_factsLoaded || stamp != m_factsStamp || !m_factsStamp.settled()) {
        QFile f(path);
        const QByteArray content = f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
        const DisplayMode before = m_facts.currentMode;
        m_facts = SimMachineFacts::fromIni(content);
        m_factsStamp = stamp;
        // A new resolution gives a new work area, as on Windows.
        if (m_factsLoaded && (before.width != m_facts.currentMode.width
                              || before.height != m_facts.currentMode.height))
            m_workAreaSet = false;
        m_factsLoaded = true;
    }
    return m_facts;
}

SimMachineFacts SimPlatform::facts() const
{
    return currentFacts();
}

SimVolume SimPlatform::volume(QChar letter) const
{
    return currentFacts().volume(letter);
}

QString SimPlatform::firewallState() const
{
    return currentFacts().firewall;
}

// --- paths ---

QString SimPlatform::entryIgnoringCase(const QString &folder, const QString &name) const
{
    // Listings are kept while the folder's own stamp stays the same and settled: a folder changes
    // its modification time whenever an entry is added, removed or renamed.
    const FileStamp stamp = stampOf(folder);
    auto it = m_listings.find(folder);
    if (it == m_listings.end() || it->stamp != stamp || !it->stamp.settled()) {
        if (m_listings.size() > 4096)
            m_listings.clear();
        Listing l;
        l.stamp = stamp;
        const QStringList entries = QDir(folder).entryList(
            QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
        for (const QString &e : entries) {
            l.names.insert(e);
            const QString key = e.toLower();
            if (!l.byFoldedName.contains(key))   // the first in name order wins
                l.byFoldedName.insert(key, e);
        }
        it = m_listings.insert(folder, l);
    }
    if (it->names.contains(name))
        return name;
    return it->byFoldedName.value(name.toLower());
}

QString SimPlatform::driveFolder(QChar letter) const
{
    const QString name = entryIgnoringCase(m_root + QStringLiteral("/drives"), QString(letter.toUpper()));
    return m_drivesPrefix + (name.isEmpty() ? QString(letter.toUpper()) : name);
}

QString SimPlatform::hostPath(const QString &path) const
{
    if (path.isEmpty())
        return QString();
    if (path.startsWith(m_drivesPrefix, kHostCase) || path == m_root
        || path.startsWith(m_root + QLatin1Char('/'), kHostCase))
        return path;   // already a host path of this machine

    QString p = path;
    p.replace(QLatin1Char('\\'), QLatin1Char('/'));
    if (p.startsWith(QLatin1String("//?/")))
        p = p.mid(4);

    QChar letter;
    QString rest;
    if (isDrivePath(p)) {
        letter = p[0].toUpper();
        rest = p.mid(2);
        // "X:name" is relative to the working directory when that lies on X:
        if (!rest.startsWith(QLatin1Char('/'))) {
            const QString wd = currentFacts().workingDirectory;
            rest = (wd[0].toUpper() == letter ? wd.mid(2) : QString()) + QLatin1Char('/') + rest;
        }
    } else {
        const QString wd = currentFacts().workingDirectory;
        letter = wd[0].toUpper();
        rest = p.startsWith(QLatin1Char('/')) ? p : wd.mid(2) + QLatin1Char('/') + p;
    }

    const bool trailing = rest.endsWith(QLatin1Char('/'));
    QStringList parts;
    for (const QString &c : rest.split(QLatin1Char('/'), Qt::SkipEmptyParts)) {
        if (c == QLatin1String("."))
            continue;
        if (c == QLatin1String("..")) {
            if (!parts.isEmpty())
                parts.removeLast();
            continue;
        }
        parts.append(c);
    }

    // Usually the path is written as it stands on disk: one stat answers. A host that ignores
    // case itself would take any spelling, so there the walk below finds the one on disk.
    if (kHostCase == Qt::CaseSensitive) {
        QString direct = m_drivesPrefix + letter;
        for (const QString &c : parts)
            direct += QLatin1Char('/') + c;
        if (QFileInfo::exists(direct))
            return trailing ? direct + QLatin1Char('/') : direct;
    }

    QString host = driveFolder(letter);

    bool exists = QFileInfo::exists(host);
    for (const QString &c : parts) {
        if (exists) {
            const QString match = entryIgnoringCase(host, c);
            if (!match.isEmpty()) {
                host += QLatin1Char('/') + match;
                continue;
            }
            exists = false;
        }
        host += QLatin1Char('/') + c;
    }
    if (trailing)
        host += QLatin1Char('/');
    return host;
}

QString SimPlatform::drivePath(const QString &host) const
{
    for (const QString *prefix : {&m_drivesPrefix, &m_canonicalDrivesPrefix}) {
        if (host.size() <= prefix->size() || !host.startsWith(*prefix, kHostCase))
            continue;
        const QChar letter = host[prefix->size()];
        if (!letter.isLetter())
            continue;
        const int after = prefix->size() + 1;
        if (after == host.size())
            return letter.toUpper() + QStringLiteral(":/");
        if (host[after] == QLatin1Char('/'))
            return letter.toUpper() + QLatin1Char(':') + host.mid(after);
    }
    return host;
}

// --- processes ---

bool SimPlatform::processNames(QStringList *names)
{
    const SimMachineFacts &f = currentFacts();
    if (!f.snapshotOk)
        return false;
    if (names)
        *names = f.processes;
    return true;
}

void SimPlatform::raisePriority()
{
    appendJournal({QStringLiteral("priority"), QStringLiteral("high")});
}

void SimPlatform::sleepMs(int ms)
{
    appendJournal({QStringLiteral("sleep"), QString::number(ms)});
}

// --- registry ---

SimRegistry &SimPlatform::registry()
{
    const QString path = m_root + kRegistry;
    const FileStamp stamp = stampOf(path);
    if (!m_registryLoaded || stamp != m_registryStamp || !m_registryStamp.settled()) {
        QFile f(path);
        m_registry.parse(f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray());
        m_registryStamp = stamp;
        m_registryLoaded = true;
    }
    return m_registry;
}

bool SimPlatform::saveRegistry()
{
    QSaveFile f(m_root + kRegistry);
    if (!f.open(QIODevice::WriteOnly))
        return false;
    f.write(m_registry.serialize());
    if (!f.commit())
        return false;
    m_registryStamp = stampOf(m_root + kRegistry);
    return true;
}

RegData SimPlatform::readValue(const QString &key, const QString &name)
{
    return registry().readValue(key, name);
}

QStringList SimPlatform::enumKeys(const QString &key)
{
    return registry().enumKeys(key);
}

bool SimPlatform::keyExists(const QString &key)
{
    return registry().keyExists(key);
}

bool SimPlatform::writeString(const QString &key, const QString &name, const QString &value)
{
    const QString norm = SimRegistry::normalizeKey(key);
    if (norm.isEmpty())
        return false;
    registry().writeString(norm, name, value);
    appendJournal({QStringLiteral("regwrite"), norm, name, QLatin1Char('"') + value + QLatin1Char('"')});
    return saveRegistry();
}

bool SimPlatform::writeDword(const QString &key, const QString &name, quint32 value)
{
    const QString norm = SimRegistry::normalizeKey(key);
    if (norm.isEmpty())
        return false;
    registry().writeDword(norm, name, value);
    appendJournal({QStringLiteral("regwrite"), norm, name,
                   QStringLiteral("dword:%1").arg(value, 8, 16, QLatin1Char('0'))});
    return saveRegistry();
}

RegValue SimPlatform::readUserDword(const QString &key, const QString &name)
{
    const RegData d = readValue(kUserHive + key, name);
    RegValue v;
    v.found = d.found;
    v.type = d.type;
    v.data = d.dword;
    return v;
}

bool SimPlatform::writeUserDword(const QString &key, const QString &name, quint32 value)
{
    return writeDword(kUserHive + key, name, value);
}

// --- drives ---

quint32 SimPlatform::logicalDrives()
{
    quint32 mask = 0;
    const QStringList entries = QDir(m_root + QStringLiteral("/drives")).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString &e : entries) {
        if (e.size() != 1)
            continue;
        const ushort c = e[0].toUpper().unicode();
        if (c >= 'A' && c <= 'Z')
            mask |= 1u << (c - 'A');
    }
    return mask;
}

bool SimPlatform::volumeReady(QChar letter)
{
    if (!QFileInfo(driveFolder(letter)).isDir())
        return false;
    return volume(letter).ready;
}

DeviceNumberAnswer SimPlatform::deviceNumber(QChar letter)
{
    DeviceNumberAnswer a;
    if (!QFileInfo(driveFolder(letter)).isDir())
        return a;   // no such volume: the open fails
    const SimVolume v = volume(letter);
    if (!v.described) {
        a.opened = true;   // a folder-backed drive opens but has no device behind it
        return a;
    }
    a.opened = v.opens;
    if (!v.opens || !v.answersDeviceNumber)
        return a;
    a.ok = true;
    a.bytesReturned = 12;
    a.deviceType = v.deviceType;
    a.deviceNumber = v.diskNumber;
    a.partitionNumber = v.partitionNumber;
    return a;
}

// --- shell execution ---

ShellResult SimPlatform::startAnswer(const QString &file) const
{
    ShellResult r;
    QString f = file.trimmed();
    if (f.size() >= 2 && f.startsWith(QLatin1Char('"')) && f.endsWith(QLatin1Char('"')))
        f = f.mid(1, f.size() - 2);
    f.replace(QLatin1Char('\\'), QLatin1Char('/'));

    auto fail = [&r](int code) {
        r.code = code;
        r.lastError = quint32(code);
        return r;
    };
    if (f.isEmpty())
        return fail(2);

    const bool bare = !f.contains(QLatin1Char('/')) && !isDrivePath(f);
    QStringList candidates;
    if (bare) {
        candidates << f << QStringLiteral("X:/Windows/System32/") + f << QStringLiteral("X:/Windows/") + f;
    } else {
        candidates << f;
    }
    const QString name = f.section(QLatin1Char('/'), -1);
    const bool hasSuffix = name.contains(QLatin1Char('.'));
    static const QStringList runnable = {QStringLiteral(".exe"), QStringLiteral(".com"),
                                         QStringLiteral(".bat"), QStringLiteral(".cmd")};
    for (const QString &c : candidates) {
        QStringList variants{c};
        if (!hasSuffix) {
            for (const QString &ext : runnable)
                variants << c + ext;
        }
        for (const QString &v : variants) {
            const QFileInfo fi(hostPath(v));
            if (!present(fi))
                continue;
            if (fi.isDir() || associated(fi.suffix())) {
                r.code = 42;
                r.lastError = 0;
                return r;
            }
            return fail(31);
        }
    }

    const QString lowerName = name.toLower();
    const bool known = systemPrograms().contains(lowerName)
                       || (!hasSuffix && systemPrograms().contains(lowerName + QStringLiteral(".exe")));
    QString folder = bare ? QString() : f.left(f.size() - name.size());
    while (folder.endsWith(QLatin1Char('/')))
        folder.chop(1);
    const QString lowerFolder = folder.toLower();
    if (known && (bare || lowerFolder == QLatin1String("x:/windows/system32")
                  || lowerFolder == QLatin1String("x:/windows"))) {
        r.code = 42;
        r.lastError = 0;
        return r;
    }
    if (!bare && !folder.isEmpty() && !QFileInfo(hostPath(folder)).isDir())
        return fail(3);
    return fail(2);
}

ShellResult SimPlatform::shellExecute(const QString &verb, const QString &file,
                                      const QString &parameters, int show)
{
    appendJournal({QStringLiteral("start"), verb, file, parameters, QString::number(show)});
    return startAnswer(file);
}

// --- display, work area, memory ---

MemoryStatus SimPlatform::memoryStatus()
{
    const MemoryStatus &m = currentFacts().memory;
    if (!m.ok)
        return MemoryStatus();
    return m;
}

bool SimPlatform::currentDisplayMode(DisplayMode *mode)
{
    if (mode)
        *mode = currentFacts().currentMode;
    return true;
}

bool SimPlatform::displayMode(int index, DisplayMode *mode)
{
    const SimMachineFacts &f = currentFacts();
    if (index < 0 || index >= f.modes.size())
        return false;
    if (mode)
        *mode = f.modes.at(index);
    return true;
}

bool SimPlatform::workArea(WorkArea *area)
{
    const SimMachineFacts &f = currentFacts();
    if (!area)
        return true;
    if (m_workAreaSet) {
        *area = m_workArea;
    } else {
        *area = WorkArea();
        area->right = f.currentMode.width;
        area->bottom = f.currentMode.height;
    }
    return true;
}

bool SimPlatform::setWorkArea(const WorkArea &area)
{
    currentFacts();   // a pending change of mode must not undo this write later
    m_workArea = area;
    m_workAreaSet = true;
    appendJournal({QStringLiteral("workarea"), QString::number(area.left), QString::number(area.top),
                   QString::number(area.right), QString::number(area.bottom)});
    return true;
}

bool SimPlatform::screenSize(int *width, int *height)
{
    const SimMachineFacts &f = currentFacts();
    if (!f.screenKnown)
        return false;
    if (width)
        *width = f.screenWidth;
    if (height)
        *height = f.screenHeight;
    return true;
}

void SimPlatform::reloadWallpaper()
{
    appendJournal({QStringLiteral("wallpaper")});
}

// --- keyboard ---

quint64 SimPlatform::foregroundKeyboardLayout()
{
    return currentFacts().foregroundLayout;
}

QList<quint64> SimPlatform::keyboardLayouts()
{
    return currentFacts().layouts;
}

int SimPlatform::keyboardLayoutCount()
{
    return currentFacts().layouts.size();
}

QString SimPlatform::localeLanguageName(quint32 lcid)
{
    static const QHash<quint32, QString> names = {
        {1025, QStringLiteral("Arabic (Saudi Arabia)")},
        {1026, QStringLiteral("Bulgarian")},
        {1028, QStringLiteral("Chinese (Taiwan)")},
        {1029, QStringLiteral("Czech")},
        {1030, QStringLiteral("Danish")},
        {1031, QStringLiteral("German (Germany)")},
        {1032, QStringLiteral("Greek")},
        {1033, QStringLiteral("English (United States)")},
        {1034, QStringLiteral("Spanish (Spain)")},
        {1035, QStringLiteral("Finnish")},
        {1036, QStringLiteral("French (France)")},
        {1037, QStringLiteral("Hebrew")},
        {1038, QStringLiteral("Hungarian")},
        {1040, QStringLiteral("Italian (Italy)")},
        {1041, QStringLiteral("Japanese")},
        {1042, QStringLiteral("Korean")},
        {1043, QStringLiteral("Dutch (Netherlands)")},
        {1044, QStringLiteral("Norwegian (Bokmal)")},
        {1045, QStringLiteral("Polish")},
        {1046, QStringLiteral("Portuguese (Brazil)")},
        {1049, QStringLiteral("Russian")},
        {1050, QStringLiteral("Croatian")},
        {1053, QStringLiteral("Swedish")},
        {1055, QStringLiteral("Turkish")},
        {1058, QStringLiteral("Ukrainian")},
        {2052, QStringLiteral("Chinese (PRC)")},
        {2055, QStringLiteral("German (Switzerland)")},
        {2057, QStringLiteral("English (United Kingdom)")},
        {2070, QStringLiteral("Portuguese (Portugal)")},
        {3076, QStringLiteral("Chinese (Hong Kong S.A.R.)")},
        {3082, QStringLiteral("Spanish (Spain)")},
    };
    return names.value(lcid);
}

short SimPlatform::asyncKeyState(int vk)
{
    return m_heldKeys.contains(vk) ? short(0x8000) : short(0);
}

// --- hot keys, hook, messages ---

bool SimPlatform::registerHotKey(quintptr, int id, quint32 modifiers, quint32 vk)
{
    appendJournal({QStringLiteral("registerhotkey"), QString::number(id), QString::number(modifiers),
                   QString::number(vk)});
    m_hotKeys.insert(id, qMakePair(modifiers, vk));
    return true;
}

void SimPlatform::unregisterHotKey(quintptr, int id)
{
    appendJournal({QStringLiteral("unregisterhotkey"), QString::number(id)});
    m_hotKeys.remove(id);
}

bool SimPlatform::hotKeyRegistered(int id) const
{
    return m_hotKeys.contains(id);
}

bool SimPlatform::installKeyboardHook(std::function<bool(const KeyHookEvent &)> handler)
{
    appendJournal({QStringLiteral("installhook")});
    m_hook = std::move(handler);
    startInboxTimer();
    return true;
}

void SimPlatform::removeKeyboardHook()
{
    appendJournal({QStringLiteral("removehook")});
    m_hook = nullptr;
}

bool SimPlatform::keyboardHookInstalled() const
{
    return bool(m_hook);
}

NativeMessage SimPlatform::decodeNativeMessage(const QByteArray &, void *)
{
    return NativeMessage();
}

void SimPlatform::setMessageSink(std::function<void(const NativeMessage &)> sink)
{
    m_sink = std::move(sink);
    startInboxTimer();
}

void SimPlatform::startInboxTimer()
{
    if (m_inboxTimer)
        return;
    m_inboxTimer.reset(new QTimer);
    m_inboxTimer->setInterval(200);
    QObject::connect(m_inboxTimer.get(), &QTimer::timeout, [this] { pollInbox(); });
    m_inboxTimer->start();
}

void SimPlatform::pollInbox()
{
    QFile f(m_root + kInbox);
    if (!f.open(QIODevice::ReadOnly)) {
        m_inboxOffset = 0;   // a new file is read from its start
        return;
    }
    if (f.size() < m_inboxOffset)
        m_inboxOffset = 0;   // emptied or replaced
    if (!f.seek(m_inboxOffset))
        return;
    const QByteArray data = f.readAll();
    const int end = data.lastIndexOf('\n');
    if (end < 0)
        return;   // a line still being written waits for its end
    // Move on before delivering: a handler may spin an event loop that polls again.
    m_inboxOffset += end + 1;
    const QList<QByteArray> lines = data.left(end).split('\n');
    for (const QByteArray &line : lines)
        deliverInboxLine(QString::fromUtf8(line).remove(QLatin1Char('\r')));
}

void SimPlatform::deliverInboxLine(const QString &line)
{
    const QString t = line.trimmed();
    const QString word = t.section(QLatin1Char(' '), 0, 0, QString::SectionSkipEmpty).toLower();

    if (word == QLatin1String("hotkey")) {
        const QStringList parts = t.split(QLatin1Char(' '), Qt::SkipEmptyParts);
        bool ok = false;
        const int id = parts.size() == 2 ? parts[1].toInt(&ok) : 0;
        if (!ok || !m_hotKeys.contains(id) || !m_sink)
            return;
        NativeMessage m;
        m.kind = NativeMessage::HotKey;
        m.hotKeyId = id;
        m_sink(m);
        return;
    }

    if (word == QLatin1String("copydata")) {
        // copydata <wParam> <text...>: the text is the rest of the line after one blank
        QString rest = line.mid(line.indexOf(QLatin1String("copydata"), 0, Qt::CaseInsensitive) + 8);
        if (!rest.startsWith(QLatin1Char(' ')))
            return;
        rest = rest.mid(1);
        const int blank = rest.indexOf(QLatin1Char(' '));
        bool ok = false;
        const quintptr wParam = rest.left(blank < 0 ? rest.size() : blank).toULongLong(&ok);
        if (!ok || !m_sink)
            return;
        NativeMessage m;
        m.kind = NativeMessage::CopyData;
        m.wParam = wParam;
        m.text = blank < 0 ? QString() : rest.mid(blank + 1);
        m_sink(m);
        return;
    }

    if (word == QLatin1String("key")) {
        const QStringList parts = t.split(QLatin1Char(' '), Qt::SkipEmptyParts);
        if (parts.size() < 3)
            return;
        const QString dir = parts[1].toLower();
        if (dir != QLatin1String("down") && dir != QLatin1String("up"))
            return;
        bool ok = false;
        const QString vkText = parts[2];
        const quint32 vk = vkText.startsWith(QLatin1String("0x"), Qt::CaseInsensitive)
                               ? vkText.mid(2).toUInt(&ok, 16)
                               : vkText.toUInt(&ok);
        if (!ok || vk == 0 || vk > 255)
            return;
        QSet<int> held;
        for (int i = 3; i < parts.size(); ++i) {
            const QString w = parts[i].toLower();
            if (w == QLatin1String("ctrl"))
                held << VkControl << VkLControl;
            else if (w == QLatin1String("alt"))
                held << VkMenu << VkLMenu;
            else if (w == QLatin1String("shift"))
                held << VkShift << VkLShift;
            else if (w != QLatin1String("repeat"))   // an auto-repeat is one more key-down
                return;
        }
        if (!m_hook)
            return;
        KeyHookEvent e;
        e.code = 0;
        e.vkCode = vk;
        e.flags = dir == QLatin1String("up") ? 128 : 0;
        const QSet<int> before = m_heldKeys;
        m_heldKeys = held;
        m_hook(e);
        m_heldKeys = before;
    }
}
