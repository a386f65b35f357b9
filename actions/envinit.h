#pragma once
// The medium's locale file, envInit.ini: which time zone, display language, user locale and
// keyboard layout to apply. Read here without widgets, so tools and fuzz targets link it alone.

#include <QList>
#include <QString>

class QIODevice;

namespace envinit {

struct Step {
    enum Kind { TimeZone, Wpeutil };
    Kind kind = TimeZone;
    qint32 bias = 0;     // TimeZone: the zone's bias in minutes
    QString arguments;   // Wpeutil: "SetMuiLanguage <value>", ...
};


// What the file asks, line by line and within a line in the order TimeZone, SetMuiLanguage,
// SetUserLocale, SetKeyboardLayout. A key counts wherever it stands; its value is what is left
// of the line once every occurrence of it is removed, and the next key sees that rest.
QList<Step> read(QIODevice *device);

// The bias for a "TimeZone=" value v, hours counted from the date line: (12 - v) * 60 minutes,
// v 0 when the text is no number; wrapped to 32 bits as the system's field would hold it.
qint32 biasOf(const QString &value);

} // namespace envinit
