#include "simplatform.h"
#include "simshared.h"

#include "platform/win32values.h"

#include <QFile>
#include <QFileInfo>
#include <QFileSystemWatcher>
#include <QTimer>

using namespace sim;

using namespace win32;

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
    startInboxWatch();
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
    startInboxWatch();
}

void SimPlatform::startInboxWatch()
{
    if (m_inboxWatch || m_inboxTimer)
        return;
    // The file is watched rather than polled, so an idle shell is not woken five times a second.
    // The folder is watched too: the file may not exist yet, or be replaced by a new one.
    m_inboxWatch.reset(new QFileSystemWatcher);
    if (!m_inboxWatch->addPath(m_root)) {
        m_inboxWatch.reset();
        m_inboxTimer.reset(new QTimer);
        m_inboxTimer->setInterval(200);
        QObject::connect(m_inboxTimer.get(), &QTimer::timeout, [this] { pollInbox(); });
        m_inboxTimer->start();
        return;
    }
    const auto changed = [this] {
        const QString inbox = m_root + kInbox;
        if (QFileInfo::exists(inbox) && !m_inboxWatch->files().contains(inbox))
            m_inboxWatch->addPath(inbox);
        pollInbox();
    };
    QObject::connect(m_inboxWatch.get(), &QFileSystemWatcher::directoryChanged, changed);
    QObject::connect(m_inboxWatch.get(), &QFileSystemWatcher::fileChanged, changed);
    // What came after the machine came up and before this watch began, once the caller is done.
    QTimer::singleShot(0, m_inboxWatch.get(), changed);
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
                held << vkControl << vkLControl;
            else if (w == QLatin1String("alt"))
                held << vkMenu << vkLMenu;
            else if (w == QLatin1String("shift"))
                held << vkShift << vkLShift;
            else if (w != QLatin1String("repeat"))   // an auto-repeat is one more key-down
                return;
        }
        if (!m_hook)
            return;
        KeyHookEvent e;
        e.code = hcAction;
        e.vkCode = vk;
        e.flags = dir == QLatin1String("up") ? llkhfUp : 0;
        const QSet<int> before = m_heldKeys;
        m_heldKeys = held;
        m_hook(e);
        m_heldKeys = before;
    }
}
