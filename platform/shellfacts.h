#pragma once
// Plain facts of the shell objects, the extended shell execution and the clock: what
// SHELLEXECUTEINFOW, SYSTEMTIME and TIME_ZONE_INFORMATION carry, in Qt value types.

#include <QString>
#include <QtGlobal>

// A SYSTEMTIME.
struct SystemTime {
    quint16 year = 0;
    quint16 month = 0;
    quint16 dayOfWeek = 0;
    quint16 day = 0;
    quint16 hour = 0;
    quint16 minute = 0;
    quint16 second = 0;
    quint16 milliseconds = 0;
};

// A TIME_ZONE_INFORMATION; the names hold at most 31 characters on Windows.
struct TimeZoneInfo {
    qint32 bias = 0;
    QString standardName;
    SystemTime standardDate;
    qint32 standardBias = 0;
    QString daylightName;
    SystemTime daylightDate;
    qint32 daylightBias = 0;
};

// The fields of SHELLEXECUTEINFOW that the shell fills; no window, no id list, no class.
struct ShellExecuteRequest {
    quint32 mask = 0;
    QString verb;
    QString file;
    QString parameters;
    QString directory;   // empty: none
    int show = 1;
};

struct ShellExecuteExResult {
    bool ok = false;        // the call's own answer
    qintptr instApp = 0;    // hInstApp: above 32 is success
    quint32 lastError = 0;
};
