#pragma once
// The saved settings' formats: the Save dialog's reader of _kelpie.ini (the start-up reader is a
// separate one, in my_shell1/startup.cpp, with other keys and typed values), the composer of a
// saved _kelpie.ini and _kelpieNet.ini, the condition logs' lines, the storage descriptor's names
// and the free-space text of the volume list. No widgets: tools and fuzz targets link it alone.

#include <QByteArray>
#include <QString>
#include <QStringList>

class QIODevice;

// The ten keys the Save dialog carries, all as text; a missing key stays empty.
struct KelpieSettings {
    QString imageLang;
    QString lang;
    QString tmz;
    QString network;
    QString firewall;
    QString timeout;
    QString screenRes;
    QString appRun;
    QString pwd;
    QString build;
};

// Reads the ten keys line by line: a key counts at the very start of a line, case-sensitively,
// and a later line wins. arg and remDev are not among them, so a saved file loses them.
KelpieSettings readKelpieSettings(QIODevice &file);
// The text of a saved _kelpie.ini: the template filled one marker at a time, so a value that
// holds a marker of its own is filled in its turn; the appRun line is left out when it is empty.
QString composeKelpieSettings(const KelpieSettings &settings);
// The four lines of _kelpieNet.ini.
QString composeKelpieNet(const QString &ipAdd, const QString &ipMask, const QString &ipDNS,
                         const QString &ipGateway);

// Every line of a log, read as UTF-8 with "\n" and "\r" taken out.
QStringList readLogLines(QIODevice &file);

// Vendor and product of a STORAGE_DEVICE_DESCRIPTOR, as the bytes returned.
struct DeviceStrings {
    QString vendor;
    QString product;
    QString revision;
};
DeviceStrings parseStorageDescriptor(const QByteArray &bytes);
// "E: (DATA) on " + "ACME FLASH": the device's name from its strings.
QString deviceNameOf(const DeviceStrings &strings);

// The free space of a volume for the list: GB, MB, bytes or KB, rounded, each boundary belonging
// to the lower unit.
QString freeSpaceText(qint64 bytes);
