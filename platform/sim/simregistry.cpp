#include "simregistry.h"

#include <QSet>

namespace {

const QString kHeader5 = QStringLiteral("Windows Registry Editor Version 5.00");
const QString kHeader4 = QStringLiteral("REGEDIT4");

QByteArray utf16le(const QString &s, bool terminator)
{
    QByteArray out;
    out.reserve((s.size() + 1) * 2);
    for (QChar c : s) {
        out.append(char(c.unicode() & 0xff));
        out.append(char(c.unicode() >> 8));
    }
    if (terminator)
        out.append(2, '\0');
    return out;
}

QString fromUtf16le(const QByteArray &b, int from = 0)
{
    QString s;
    s.reserve((b.size() - from) / 2);
    for (int i = from; i + 1 < b.size(); i += 2)
        s.append(QChar(ushort(uchar(b[i]) | (uchar(b[i + 1]) << 8))));
    return s;
}

QString fromUtf16be(const QByteArray &b, int from)
{
    QString s;
    for (int i = from; i + 1 < b.size(); i += 2)
        s.append(QChar(ushort((uchar(b[i]) << 8) | uchar(b[i + 1]))));
    return s;
}

QString escaped(const QString &s)
{
    QString out;
    out.reserve(s.size() + 2);
    for (QChar c : s) {
        if (c == QLatin1Char('\\') || c == QLatin1Char('"'))
            out.append(QLatin1Char('\\'));
        out.append(c);
    }
    return out;
}

// Reads a quoted string starting at line[pos] == '"'; pos ends behind the closing quote.
bool readQuoted(const QString &line, int &pos, QString *out)
{
    if (pos >= line.size() || line[pos] != QLatin1Char('"'))
        return false;
    ++pos;
    out->clear();
    while (pos < line.size()) {
        const QChar c = line[pos];
        if (c == QLatin1Char('"')) {
            ++pos;
            return true;
        }
        if (c == QLatin1Char('\\') && pos + 1 < line.size()) {
            const QChar n = line[pos + 1];
            if (n == QLatin1Char('\\') || n == QLatin1Char('"')) {
                out->append(n);
                pos += 2;
                continue;
            }
        }
        out->append(c);
        ++pos;
    }
    return false;
}

bool parseHexBytes(const QString &text, QByteArray *out)
{
    out->clear();
    const QString compact = QString(text).remove(QLatin1Char(' ')).remove(QLatin1Char('\t'));
    if (compact.isEmpty())
        return true;
    const QStringList parts = compact.split(QLatin1Char(','));
    for (int i = 0; i < parts.size(); ++i) {
        const QString &p = parts[i];
        if (p.isEmpty() && i == parts.size() - 1)
            break;   // a trailing comma
        bool ok = false;
        const uint v = p.toUInt(&ok, 16);
        if (!ok || p.size() > 2 || v > 0xff)
            return false;
        out->append(char(v));
    }
    return true;
}

quint32 firstDword(const QByteArray &b)
{
    quint32 v = 0;
    for (int i = 0; i < 4 && i < b.size(); ++i)
        v |= quint32(uchar(b[i])) << (8 * i);
    return v;
}

QString hexText(const QByteArray &b)
{
    QStringList parts;
    parts.reserve(b.size());
    for (char c : b)
        parts.append(QStringLiteral("%1").arg(uint(uchar(c)), 2, 16, QLatin1Char('0')));
    return parts.join(QLatin1Char(','));
}

} // namespace

QString SimRegistry::normalizeKey(const QString &key)
{
    QStringList parts = key.split(QLatin1Char('\\'), Qt::SkipEmptyParts);
    if (parts.isEmpty())
        return QString();
    const QString hive = parts.first().toUpper();
    static const QHash<QString, QString> hives = {
        {QStringLiteral("HKEY_CURRENT_USER"), QStringLiteral("HKEY_CURRENT_USER")},
        {QStringLiteral("HKCU"), QStringLiteral("HKEY_CURRENT_USER")},
        {QStringLiteral("HKEY_LOCAL_MACHINE"), QStringLiteral("HKEY_LOCAL_MACHINE")},
        {QStringLiteral("HKLM"), QStringLiteral("HKEY_LOCAL_MACHINE")},
        {QStringLiteral("HKEY_CLASSES_ROOT"), QStringLiteral("HKEY_CLASSES_ROOT")},
        {QStringLiteral("HKCR"), QStringLiteral("HKEY_CLASSES_ROOT")},
        {QStringLiteral("HKEY_USERS"), QStringLiteral("HKEY_USERS")},
        {QStringLiteral("HKU"), QStringLiteral("HKEY_USERS")},
        {QStringLiteral("HKEY_CURRENT_CONFIG"), QStringLiteral("HKEY_CURRENT_CONFIG")},
        {QStringLiteral("HKCC"), QStringLiteral("HKEY_CURRENT_CONFIG")},
    };
    const auto it = hives.constFind(hive);
    if (it == hives.constEnd())
        return QString();
    parts[0] = it.value();
    return parts.join(QLatin1Char('\\'));
}

void SimRegistry::clear()
{
    m_keys.clear();
    m_index.clear();
}

bool SimRegistry::parse(const QByteArray &content)
{
    clear();
    QString text;
    if (content.startsWith("\xff\xfe")) {
        m_encoding = Encoding::Utf16Le;
        text = fromUtf16le(content, 2);
    } else if (content.startsWith("\xfe\xff")) {
        // Written back as UTF-16LE, which is what regedit reads and writes.
        m_encoding = Encoding::Utf16Le;
        text = fromUtf16be(content, 2);
    } else if (content.startsWith("\xef\xbb\xbf")) {
        m_encoding = Encoding::Utf8Bom;
        text = QString::fromUtf8(content.mid(3));
    } else {
        m_encoding = Encoding::Utf8;
        text = QString::fromUtf8(content);
    }

    const QStringList raw = text.split(QLatin1Char('\n'));
    bool headerSeen = false;
    bool firstLine = true;
    Key *current = nullptr;
    bool skipSection = true;   // values before any good section go nowhere

    for (int i = 0; i < raw.size(); ++i) {
        QString line = raw[i];
        line.remove(QLatin1Char('\r'));
        // hex data runs on over lines that end in a backslash
        while (line.trimmed().endsWith(QLatin1Char('\\')) && line.contains(QLatin1String("=hex"))
               && i + 1 < raw.size()) {
            line = line.trimmed();
            line.chop(1);
            line += QString(raw[++i]).remove(QLatin1Char('\r')).trimmed();
        }
        const QString t = line.trimmed();
        if (t.isEmpty() || t.startsWith(QLatin1Char(';')))
            continue;
        if (firstLine) {
            firstLine = false;
            if (t == kHeader5 || t == kHeader4) {
                m_header = t;
                headerSeen = true;
                continue;
            }
        }
        if (t.startsWith(QLatin1Char('[')) && t.endsWith(QLatin1Char(']'))) {
            const QString path = t.mid(1, t.size() - 2);
            const QString norm = path.startsWith(QLatin1Char('-')) ? QString() : normalizeKey(path);
            skipSection = norm.isEmpty();
            current = skipSection ? nullptr : &ensureKey(norm);
            continue;
        }
        if (skipSection || !current)
            continue;

        int pos = 0;
        QString name;
        if (t.startsWith(QLatin1Char('@'))) {
            pos = 1;
        } else if (!readQuoted(t, pos, &name)) {
            continue;
        }
        while (pos < t.size() && t[pos].isSpace())
            ++pos;
        if (pos >= t.size() || t[pos] != QLatin1Char('='))
            continue;
        ++pos;
        while (pos < t.size() && t[pos].isSpace())
            ++pos;
        const QString data = t.mid(pos);

        Value v;
        v.name = name;
        if (data.startsWith(QLatin1Char('"'))) {
            int p = 0;
            if (!readQuoted(data, p, &v.text) || !data.mid(p).trimmed().isEmpty())
                continue;
            v.type = win32::regSz;
        } else if (data.startsWith(QLatin1String("dword:"), Qt::CaseInsensitive)) {
            const QString digits = data.mid(6).trimmed();
            bool ok = false;
            v.dword = digits.toUInt(&ok, 16);
            if (!ok || digits.isEmpty() || digits.size() > 8)
                continue;
            v.type = win32::regDword;
        } else if (data.startsWith(QLatin1String("hex"), Qt::CaseInsensitive)) {
            const int colon = data.indexOf(QLatin1Char(':'));
            if (colon < 0)
                continue;
            const QString head = data.left(colon).toLower();
            if (head == QLatin1String("hex")) {
                v.type = win32::regBinary;
            } else if (head.startsWith(QLatin1String("hex(")) && head.endsWith(QLatin1Char(')'))) {
                bool ok = false;
                v.type = head.mid(4, head.size() - 5).toUInt(&ok, 16);
                if (!ok)
                    continue;
            } else {
                continue;
            }
            QByteArray bytes;
            if (!parseHexBytes(data.mid(colon + 1), &bytes))
                continue;
            // hex(1): and hex(4): are a string and a number written out as bytes
            setBytes(v, v.type, bytes);
        } else {
            continue;   // deletions ("=-") and anything unknown
        }
        Value &slot = ensureValue(current->path, name);
        slot = v;
    }
    return headerSeen;
}

QByteArray SimRegistry::serialize() const
{
    QString out = m_header + QLatin1String("\r\n\r\n");
    for (const Key &k : m_keys) {
        out += QLatin1Char('[') + k.path + QLatin1String("]\r\n");
        for (const Value &v : k.values) {
            out += v.name.isEmpty() ? QStringLiteral("@")
                                    : QLatin1Char('"') + escaped(v.name) + QLatin1Char('"');
            out += QLatin1Char('=');
            if (v.type == win32::regSz)
                out += QLatin1Char('"') + escaped(v.text) + QLatin1Char('"');
            else if (v.type == win32::regDword && v.bytes.isEmpty())
                out += QStringLiteral("dword:%1").arg(v.dword, 8, 16, QLatin1Char('0'));
            else if (v.type == win32::regBinary)
                out += QLatin1String("hex:") + hexText(v.bytes);
            else
                out += QStringLiteral("hex(%1):").arg(v.type, 0, 16) + hexText(v.bytes);
            out += QLatin1String("\r\n");
        }
        out += QLatin1String("\r\n");
    }
    switch (m_encoding) {
    case Encoding::Utf16Le:
        return QByteArray("\xff\xfe") + utf16le(out, false);
    case Encoding::Utf8Bom:
        return QByteArray("\xef\xbb\xbf") + out.toUtf8();
    case Encoding::Utf8:
        break;
    }
    return out.toUtf8();
}

SimRegistry::Key *SimRegistry::findKey(const QString &normalized)
{
    const auto it = m_index.constFind(normalized.toLower());
    return it == m_index.constEnd() ? nullptr : &m_keys[it.value()];
}

const SimRegistry::Key *SimRegistry::findKey(const QString &normalized) const
{
    const auto it = m_index.constFind(normalized.toLower());
    return it == m_index.constEnd() ? nullptr : &m_keys[it.value()];
}

SimRegistry::Key &SimRegistry::ensureKey(const QString &normalized)
{
    if (Key *k = findKey(normalized))
        return *k;
    Key k;
    k.path = normalized;
    m_keys.append(k);
    m_index.insert(normalized.toLower(), m_keys.size() - 1);
    return m_keys.last();
}

SimRegistry::Value &SimRegistry::ensureValue(const QString &key, const QString &name)
{
    Key &k = ensureKey(key);
    for (Value &v : k.values) {
        if (v.name.compare(name, Qt::CaseInsensitive) == 0)
            return v;
    }
    Value v;
    v.name = name;
    k.values.append(v);
    return k.values.last();
}

bool SimRegistry::keyExists(const QString &key) const
{
    const QString norm = normalizeKey(key);
    if (norm.isEmpty())
        return false;
    if (findKey(norm) || !norm.contains(QLatin1Char('\\')))
        return true;   // a hive always exists
    const QString prefix = norm.toLower() + QLatin1Char('\\');
    for (auto it = m_index.constBegin(); it != m_index.constEnd(); ++it) {
        if (it.key().startsWith(prefix))
            return true;
    }
    return false;
}

RegData SimRegistry::readValue(const QString &key, const QString &name) const
{
    RegData out;
    const Key *k = findKey(normalizeKey(key));
    if (!k)
        return out;
    const QString wanted = name == QLatin1String("@") ? QString() : name;
    for (const Value &v : k->values) {
        if (v.name.compare(wanted, Qt::CaseInsensitive) != 0)
            continue;
        out.found = true;
        out.type = v.type;
        if (v.type == win32::regSz) {
            out.text = v.text;
            out.bytes = utf16le(v.text, true);
        } else if (v.type == win32::regDword && v.bytes.isEmpty()) {
            out.bytes.resize(4);
            for (int i = 0; i < 4; ++i)
                out.bytes[i] = char((v.dword >> (8 * i)) & 0xff);
        } else {
            out.bytes = v.bytes;
            if (v.type == win32::regExpandSz || v.type == win32::regMultiSz) {
                QString s = fromUtf16le(v.bytes);
                while (s.endsWith(QChar(0)))
                    s.chop(1);
                out.text = v.type == win32::regMultiSz ? s.replace(QChar(0), QLatin1Char('\n'))
                                                : s.section(QChar(0), 0, 0);
            }
        }
        out.dword = firstDword(out.bytes);
        return out;
    }
    return out;
}

QStringList SimRegistry::valueNames(const QString &key) const
{
    QStringList names;
    if (const Key *k = findKey(normalizeKey(key))) {
        for (const Value &v : k->values)
            names.append(v.name);
    }
    return names;
}

QStringList SimRegistry::enumKeys(const QString &key) const
{
    QStringList names;
    const QString norm = normalizeKey(key);
    if (norm.isEmpty())
        return names;
    const QString prefix = norm.toLower() + QLatin1Char('\\');
    QSet<QString> seen;
    for (const Key &k : m_keys) {
        if (!k.path.toLower().startsWith(prefix))
            continue;
        const QString child = k.path.mid(prefix.size()).section(QLatin1Char('\\'), 0, 0);
        if (!seen.contains(child.toLower())) {
            seen.insert(child.toLower());
            names.append(child);
        }
    }
    return names;
}

void SimRegistry::createKey(const QString &key)
{
    const QString norm = normalizeKey(key);
    if (!norm.isEmpty())
        ensureKey(norm);
}

void SimRegistry::writeDword(const QString &key, const QString &name, quint32 value)
{
    const QString norm = normalizeKey(key);
    if (norm.isEmpty())
        return;
    Value &v = ensureValue(norm, name == QLatin1String("@") ? QString() : name);
    v.type = win32::regDword;
    v.dword = value;
    v.text.clear();
    v.bytes.clear();
}

void SimRegistry::writeString(const QString &key, const QString &name, const QString &value)
{
    const QString norm = normalizeKey(key);
    if (norm.isEmpty())
        return;
    Value &v = ensureValue(norm, name == QLatin1String("@") ? QString() : name);
    v.type = win32::regSz;
    v.text = value;
    v.dword = 0;
    v.bytes.clear();
}

void SimRegistry::writeBytes(const QString &key, const QString &name, quint32 type,
                             const QByteArray &bytes)
{
    const QString norm = normalizeKey(key);
    if (norm.isEmpty())
        return;
    setBytes(ensureValue(norm, name == QLatin1String("@") ? QString() : name), type, bytes);
}

void SimRegistry::setBytes(Value &v, quint32 type, const QByteArray &bytes)
{
    if (type == win32::regSz) {
        QString s = fromUtf16le(bytes);
        v.text = s.section(QChar(0), 0, 0);
        v.type = win32::regSz;
        v.dword = 0;
        v.bytes.clear();
        return;
    }
    if (type == win32::regDword && bytes.size() == 4) {
        v.type = win32::regDword;
        v.dword = firstDword(bytes);
        v.text.clear();
        v.bytes.clear();
        return;
    }
    v.type = type;
    v.bytes = bytes;
    v.dword = 0;
    v.text.clear();
}
