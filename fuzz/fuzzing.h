#pragma once
// Shared by the fuzz targets: the toolkit's warnings about bad input are expected here and only
// slow the run down, so they are dropped.

#include "platform/sim/simplatform.h"

#include <QBuffer>
#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QtGlobal>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace fuzzing {

inline void quiet()
{
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
}

// Set before the first run of every target, whether or not it has an initializer of its own.
inline const bool quietFromStart = (quiet(), true);

inline QByteArray bytes(const uint8_t *data, size_t size)
{
    return QByteArray(reinterpret_cast<const char *>(data), int(size));
}

// The input as an open read-only device, for the readers that take one.
class Input {
public:
    Input(const uint8_t *data, size_t size) : m_content(bytes(data, size)), m_buffer(&m_content)
    {
        m_buffer.open(QIODevice::ReadOnly);
    }
    const QByteArray &content() const { return m_content; }
    QBuffer &device() { return m_buffer; }

private:
    QByteArray m_content;
    QBuffer m_buffer;
};

// One file of a simulated machine that each run rewrites with its input, for the readers that
// take a drive path ("x:/tmpReg/startNetwork.log") through the platform as the shell does.
class MachineFile {
public:
    // relative: the file below drives/X/ ("tmpReg/startNetwork.log").
    explicit MachineFile(const QString &relative)
    {
        static QTemporaryDir dir;
        m_host = dir.path() + QStringLiteral("/drives/X/") + relative;
        QDir().mkpath(QFileInfo(m_host).absolutePath());
        setPlatform(new SimPlatform(dir.path()));
    }
    const QString &host() const { return m_host; }
    void write(const QByteArray &content) const
    {
        QFile f(m_host);
        if (!f.open(QIODevice::WriteOnly | QIODevice::Truncate) || f.write(content) != content.size())
            abort();   // the run is worthless if the file does not hold the input
    }

private:
    QString m_host;
};

} // namespace fuzzing
