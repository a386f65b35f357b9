#include "simplatform.h"
#include "simshared.h"

#include "platform/win32values.h"

#include <QUuid>
#include <algorithm>

using namespace sim;

namespace {

const int subkeyBufferChars = 2048;
const QString machineHive = QStringLiteral("HKEY_LOCAL_MACHINE\\");

// The sections "<kind>.<n>" of machine.ini in the order of their numbers, with the number.
QList<QPair<int, QMap<QString, QString>>> numbered(const SimMachineFacts &f, const QString &kind)
{
    QList<QPair<int, QMap<QString, QString>>> out;
    const QString prefix = kind + QLatin1Char('.');
    for (auto it = f.raw.constBegin(); it != f.raw.constEnd(); ++it) {
        if (!it.key().startsWith(prefix))
            continue;
        bool ok = false;
        const int n = it.key().mid(prefix.size()).toInt(&ok);
        if (ok)
            out.append({n, it.value()});
    }
    std::stable_sort(out.begin(), out.end(),
                     [](const auto &a, const auto &b) { return a.first < b.first; });
    return out;
}

quint32 numberOf(const QString &text, quint32 fallback)
{
    bool ok = false;
    const quint32 v = text.trimmed().toUInt(&ok, 0);
    return ok ? v : fallback;
}

quint32 networkError(const SimMachineFacts &f, const char *key)
{
    return numberOf(f.value(QStringLiteral("network"), QLatin1String(key)), 0);
}

// "connected" and "disconnected" stand for the operational states 5 and 2; a number is taken as
// it is.
quint32 operStatusOf(const QString &text)
{
    const QString t = text.trimmed().toLower();
    if (t.isEmpty() || t == QLatin1String("connected") || t == QLatin1String("up"))
        return win32::ifOperStatusOperational;
    if (t == QLatin1String("disconnected") || t == QLatin1String("down"))
        return win32::ifOperStatusDisconnected;
    return numberOf(t, 0);
}

QByteArray macBytes(const QString &text)
{
    QByteArray bytes(8, '\0');
    QString hex = text;
    hex.remove(QLatin1Char('-')).remove(QLatin1Char(':')).remove(QLatin1Char(' '));
    for (int i = 0; i < 6 && 2 * i + 1 < hex.size(); ++i)
        bytes[i] = char(hex.mid(2 * i, 2).toUInt(nullptr, 16));
    return bytes;
}

} // namespace

// --- network: devices, the machine hive, IP Helper, workstation, firewall ---

DeviceWalk SimPlatform::deviceWalk()
{
    const SimMachineFacts &f = currentFacts();
    DeviceWalk walk;
    walk.lastError = networkError(f, "deviceWalkError");
    walk.ok = walk.lastError == 0;
    if (!walk.ok)
        return walk;
    for (const auto &section : numbered(f, QStringLiteral("device"))) {
        const QMap<QString, QString> &d = section.second;
        NetDeviceRecord r;
        r.className = d.value(QStringLiteral("class"));
        r.classGuid = d.value(QStringLiteral("classguid"));
        r.description = d.value(QStringLiteral("description"));
        r.hardwareId = d.value(QStringLiteral("hardwareid"));
        // The record's own class GUID is the property's, unless the section says otherwise.
        const QUuid guid(d.value(QStringLiteral("recordguid"), r.classGuid));
        r.guidData1 = guid.data1;
        r.guidData2 = guid.data2;
        r.guidData3 = guid.data3;
        std::copy(guid.data4, guid.data4 + 8, r.guidData4);
        walk.devices.append(r);
    }
    return walk;
}

bool SimPlatform::machineSubkeys(const QString &path, QList<RegSubkey> *answers)
{
    const QString key = machineHive + path;
    if (!registry().keyExists(key))
        return false;
    for (const QString &name : registry().enumKeys(key)) {
        RegSubkey a;
        if (name.size() >= subkeyBufferChars) {
            a.result = win32::errorMoreData;
        } else {
            a.name = name;
        }
        answers->append(a);
    }
    RegSubkey end;
    end.result = win32::errorNoMoreItems;
    answers->append(end);
    return true;
}

RegStringRead SimPlatform::machineString(const QString &path, const QString &name, int bufferBytes)
{
    RegStringRead r;
    const QString key = machineHive + path;
    r.opened = registry().keyExists(key);
    if (!r.opened)
        return r;
    const RegData d = registry().readValue(key, name);
    if (!d.found) {
        r.result = win32::errorFileNotFound;
        return r;
    }
    r.type = d.type;
    if (d.bytes.size() > bufferBytes) {
        r.result = win32::errorMoreData;
        return r;
    }
    r.result = 0;
    r.data = d.bytes;
    return r;
}

quint32 SimPlatform::networkParams(QStringList *dnsServers)
{
    const SimMachineFacts &f = currentFacts();
    const quint32 error = networkError(f, "networkParamsError");
    if (error)
        return error;
    *dnsServers = listOf(f.value(QStringLiteral("network"), QStringLiteral("dnsServers")));
    // The chain always has its embedded first element.
    if (dnsServers->isEmpty())
        dnsServers->append(QString());
    return 0;
}

quint32 SimPlatform::adaptersInfo(QList<IpAdapterEntry> *entries)
{
    const SimMachineFacts &f = currentFacts();
    const quint32 error = networkError(f, "adaptersInfoError");
    if (error)
        return error;
    const auto adapters = numbered(f, QStringLiteral("adapter"));
    if (adapters.isEmpty())
        return win32::errorNoData;
    for (const auto &section : adapters) {
        const QMap<QString, QString> &a = section.second;
        if (!boolOf(a.value(QStringLiteral("listed")), true))
            continue;
        IpAdapterEntry e;
        e.adapterName = a.value(QStringLiteral("name"));
        e.description = a.value(QStringLiteral("description"));
        for (const QString &pair : listOf(a.value(QStringLiteral("address"))))
            e.ipAddresses.append({pair.section(QLatin1Char('/'), 0, 0),
                                  pair.section(QLatin1Char('/'), 1, 1)});
        e.gateways = listOf(a.value(QStringLiteral("gateway")));
        e.dhcpEnabled = numberOf(a.value(QStringLiteral("dhcp")), 0);
        e.dhcpServers = listOf(a.value(QStringLiteral("dhcpserver")));
        // The embedded first elements are there even when empty.
        if (e.ipAddresses.isEmpty())
            e.ipAddresses.append({QStringLiteral("0.0.0.0"), QStringLiteral("0.0.0.0")});
        if (e.gateways.isEmpty())
            e.gateways.append(QStringLiteral("0.0.0.0"));
        if (e.dhcpServers.isEmpty())
            e.dhcpServers.append(QString());
        entries->append(e);
    }
    return 0;
}

quint32 SimPlatform::interfaceInfo(QList<InterfaceRow> *rows)
{
    const SimMachineFacts &f = currentFacts();
    const quint32 error = networkError(f, "interfaceInfoError");
    if (error)
        return error;
    for (const auto &section : numbered(f, QStringLiteral("adapter"))) {
        const QMap<QString, QString> &a = section.second;
        if (!boolOf(a.value(QStringLiteral("interface")), true))
            continue;
        InterfaceRow row;
        row.index = qint32(numberOf(a.value(QStringLiteral("index")), quint32(section.first)));
        row.name = (QStringLiteral("\\DEVICE\\TCPIP_") + a.value(QStringLiteral("name"))).left(127);
        rows->append(row);
    }
    return 0;
}

IfEntryFacts SimPlatform::interfaceEntry(const QString &adapterName)
{
    const SimMachineFacts &f = currentFacts();
    IfEntryFacts e;
    e.indexResult = win32::errorInvalidParameter;   // no interface of that name
    for (const auto &section : numbered(f, QStringLiteral("adapter"))) {
        const QMap<QString, QString> &a = section.second;
        if (QStringLiteral("\\DEVICE\\TCPIP_") + a.value(QStringLiteral("name")) != adapterName
            || !boolOf(a.value(QStringLiteral("interface")), true))
            continue;
        e.indexResult = 0;
        e.entryResult = numberOf(a.value(QStringLiteral("ifentryerror")), 0);
        if (e.entryResult == 0) {
            e.physAddr = macBytes(a.value(QStringLiteral("mac")));
            e.operStatus = operStatusOf(a.value(QStringLiteral("status")));
        }
        break;
    }
    return e;
}

WorkstationFacts SimPlatform::workstationFacts()
{
    const SimMachineFacts &f = currentFacts();
    WorkstationFacts w;
    w.result = networkError(f, "workstationError");
    if (w.result == 0) {
        w.computerName = f.value(QStringLiteral("network"), QStringLiteral("computerName"),
                                 QStringLiteral("MINWINPC"));
        w.langroup = f.value(QStringLiteral("network"), QStringLiteral("workgroup"),
                             QStringLiteral("WORKGROUP"));
    }
    return w;
}

FirewallFacts SimPlatform::firewallFacts()
{
    FirewallFacts fw;
    const QString state = firewallState();
    if (state == QLatin1String("unavailable")) {
        // The manager's class is not registered: CoCreateInstance fails.
        fw.failedStep = 2;
        fw.hresult = win32::regdbClassNotRegistered;
        return fw;
    }
    fw.enabled = state == QLatin1String("on") ? win32::variantTrue : 0;
    return fw;
}
