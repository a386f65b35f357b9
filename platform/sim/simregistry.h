#pragma once
// The simulated registry: the text that regedit exports, held in memory in file order.
// Key paths start with the hive ("HKEY_CURRENT_USER\Software\..."; HKCU, HKLM, HKCR, HKU and
// HKCC are accepted as short forms). Key and value names compare ignoring case, as in Windows.

#include "platform/win32values.h"

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QStringList>
#include <QVector>

// One value as read: its type and its data in the forms a caller may want.
struct RegData {
    bool found = false;
    quint32 type = win32::regNone;
    QString text;      // REG_SZ; REG_EXPAND_SZ and REG_MULTI_SZ decoded (multi: "\n"-joined)
    quint32 dword = 0; // REG_DWORD; for other types the first four bytes, little-endian
    QByteArray bytes;  // the raw data as Windows holds it (strings in UTF-16LE with terminator)
};

class SimRegistry {
public:
    // Reads a .reg text (UTF-8, or UTF-16 with BOM), replacing what the store held. Malformed
    // lines are skipped; a missing header is forgiven. False when the header was missing.
    bool parse(const QByteArray &content);
    // The text to write back, in the encoding that parse() found (UTF-8 when it found none).
    QByteArray serialize() const;
    void clear();

    bool keyExists(const QString &key) const;
    RegData readValue(const QString &key, const QString &name) const;   // "" or "@": default
    QStringList valueNames(const QString &key) const;
    // Names of the direct sub-keys, in file order; keys implied by a deeper path count too.
    QStringList enumKeys(const QString &key) const;

    void createKey(const QString &key);
    void writeDword(const QString &key, const QString &name, quint32 value);
    void writeString(const QString &key, const QString &name, const QString &value);
    void writeBytes(const QString &key, const QString &name, quint32 type, const QByteArray &bytes);

    // "HKCU\\a\\\\b\\" -> "HKEY_CURRENT_USER\\a\\b"; empty when the hive is unknown.
    static QString normalizeKey(const QString &key);

private:
    struct Value {
        QString name;       // "" is the default value
        quint32 type = win32::regNone;
        QString text;       // REG_SZ
        quint32 dword = 0;  // REG_DWORD
        QByteArray bytes;   // every other type
    };
    struct Key {
        QString path;
        QVector<Value> values;
    };
    enum class Encoding { Utf8, Utf8Bom, Utf16Le };

    Key *findKey(const QString &normalized);
    const Key *findKey(const QString &normalized) const;
    Key &ensureKey(const QString &normalized);
    Value &ensureValue(const QString &key, const QString &name);
    // Raw bytes of a type, kept as text or number where the type has one, as a write does.
    static void setBytes(Value &v, quint32 type, const QByteArray &bytes);

    QVector<Key> m_keys;
    QHash<QString, int> m_index;   // lower-case path -> position in m_keys
    Encoding m_encoding = Encoding::Utf8;
    QString m_header = QStringLiteral("Windows Registry Editor Version 5.00");
};
