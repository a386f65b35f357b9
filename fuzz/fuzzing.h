#pragma once
// Shared by the fuzz targets: the toolkit's warnings about bad input are expected here and only
// slow the run down, so they are dropped.

#include <QByteArray>
#include <QtGlobal>
#include <cstddef>
#include <cstdint>

namespace fuzzing {

inline void quiet()
{
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
}

inline QByteArray bytes(const uint8_t *data, size_t size)
{
    return QByteArray(reinterpret_cast<const char *>(data), int(size));
}

} // namespace fuzzing
