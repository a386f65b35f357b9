#include "ip_settings.h"

#include "platform/platform.h"
#include "platform/win32values.h"

#include <QStringList>

namespace {

const int maxShownAdapters = 5;
const int valueBufferBytes = 520;

const QString classRoot = QStringLiteral("system\\CurrentControlSet\\Control\\Class\\");
const QString tcpipAdapters =
    QStringLiteral("system\\CurrentControlSet\\Services\\Tcpip\\Parameters\\Adapters");
const QString tcpipInterfaces =
    QStringLiteral("system\\CurrentControlSet\\Services\\Tcpip\\Parameters\\Interfaces\\");
const QString networkRoot = QStringLiteral("system\\CurrentControlSet\\Control\\Network\\");

// Names of the subkeys that enumerate cleanly; a name too long for the buffer is skipped.
QStringList subkeysOf(const QString &path, bool *opened)
{
    QList<RegSubkey> answers;
    *opened = sys().machineSubkeys(path, &answers);
    QStringList names;
    for (const RegSubkey &a : answers) {
        if (a.result == 0)
            names.append(a.name);
        else if (a.result != win32::errorMoreData)
            break;
    }
    return names;
}

// A string value read into its fixed buffer: read up to the first terminator, and only from a
// string type; a value of another type or too long for the buffer is a failed read.
bool readString(const QString &path, const QString &name, QString *out)
{
    const RegStringRead r = sys().machineString(path, name, valueBufferBytes);
    if (!r.opened || r.result != 0)
        return false;
    if (r.type != win32::regSz && r.type != win32::regExpandSz && r.type != win32::regMultiSz)
        return false;
    const int units = qMin(r.data.size(), valueBufferBytes) / 2;
    QString text = QString::fromUtf16(reinterpret_cast<const char16_t *>(r.data.constData()), units);
    const int end = text.indexOf(QChar(0));
    if (end >= 0)
        text.truncate(end);
    *out = text;
    return true;
}

QString stringOrEmpty(const QString &path, const QString &name)
{
    QString s;
    readString(path, name, &s);
    return s;
}

QString twoDigits(uint byte)
{
    return QStringLiteral("%1").arg(byte, 2, 16, QLatin1Char('0'));
}

} // namespace

int ip_settings::getAdapterCount() const
{
    return qMin(adapters.size(), maxShownAdapters);
}

void ip_settings::refreshAdapters()
{
    computerName.clear();
    workgroup.clear();
    ipInfo.clear();
    enumNetDevices();
    readConnectionNames();
}

QString ip_settings::classGuidText(const NetDeviceRecord &d)
{
    QString text = QStringLiteral("{%1-%2-%3-")
                       .arg(d.guidData1, 0, 16)
                       .arg(d.guidData2, 0, 16)
                       .arg(d.guidData3, 0, 16);
    for (int i = 0; i < 8; ++i) {
        if (i == 2)
            text += QLatin1Char('-');
        text += twoDigits(d.guidData4[i]);
    }
    return text.toUpper() + QLatin1Char('}');
}

void ip_settings::enumNetDevices()
{
    adapters.clear();
    const DeviceWalk walk = sys().deviceWalk();
    if (!walk.ok)
        return;
    // Only the last NET device's class GUID goes on: all are taken to be the same.
    QString classText;
    int count = 0;
    for (const NetDeviceRecord &d : walk.devices) {
        if (d.className.toUpper() != QLatin1String("NET"))
            continue;
        classText = classGuidText(d);
        adapterInfo a;
        a.index = count++;
        a.classGuid = d.classGuid;
        a.description = d.description;
        a.hardwareId = d.hardwareId;
        adapters.append(a);
    }
    readClassKeys(classText);
}

void ip_settings::readClassKeys(const QString &classText)
{
    classEntries.clear();
    const QString classKey = classRoot + classText;
    bool opened = false;
    const QStringList subkeys = subkeysOf(classKey, &opened);
    if (!opened)
        return;
    for (const QString &name : subkeys) {
        const QString path = classKey + QLatin1Char('\\') + name;
        const QString device = stringOrEmpty(path, QStringLiteral("DeviceInstanceID"));
        const QString interfaceGuid = stringOrEmpty(path, QStringLiteral("NetCfgInstanceId"));
        if (!device.isEmpty() && !interfaceGuid.isEmpty())
            classEntries.append({classText, device, interfaceGuid, name});
    }

    // The device instance id starts with the hardware id; the first adapter that fits takes the
    // entry, so of two identical cards the second gets none.
    for (const classKeyEntry &e : classEntries) {
        const QString device = e.deviceInstanceId.toUpper();
        for (adapterInfo &a : adapters) {
            if (device.indexOf(a.hardwareId.toUpper()) == 0) {
                a.netCfgInstanceId = e.netCfgInstanceId;
                a.classSubKey = e.subKey;
                break;
            }
        }
    }
    classEntries.clear();
    readNameServers();
    filteredAdapters.clear();

    // What has no key under the Tcpip Adapters tree or carries the word "debug" is no adapter.
    for (adapterInfo &a : adapters) {
        const QString id = a.netCfgInstanceId.toUpper();
        for (const nameServerEntry &ns : qAsConst(nameServers)) {
            if (ns.interfaceGuid.toUpper() != id)
                continue;
            a.nameServer = ns.nameServer;
            if (!a.description.contains(QLatin1String("debug"), Qt::CaseInsensitive))
                filteredAdapters.append(a);
            break;
        }
    }
    adapters = filteredAdapters;
    filteredAdapters.clear();
}

void ip_settings::readNameServers()
{
    nameServers.clear();
    bool opened = false;
    const QStringList subkeys = subkeysOf(tcpipAdapters, &opened);
    // The Interfaces key is optional: presence under Adapters is what counts.
    for (const QString &name : subkeys) {
        nameServerEntry e{name, QString()};
        readString(tcpipInterfaces + name, QStringLiteral("NameServer"), &e.nameServer);
        nameServers.append(e);
    }
}

void ip_settings::readConnectionNames()
{
    for (adapterInfo &a : adapters) {
        const QString path = networkRoot + a.classGuid + QLatin1Char('\\') + a.netCfgInstanceId
            + QStringLiteral("\\Connection");
        readString(path, QStringLiteral("Name"), &a.connectionName);
    }
}

void ip_settings::readDnsServers()
{
    QStringList servers;
    if (sys().networkParams(&servers) != 0)
        return;
    // The list is machine-wide: every adapter gets all of it.
    for (adapterInfo &a : adapters) {
        a.dnsServers.clear();
        for (const QString &s : qAsConst(servers))
            a.dnsServers.append(QHostAddress(s));
    }
}

void ip_settings::applyStaticDns()
{
    for (adapterInfo &a : adapters) {
        if (a.nameServer.isEmpty()) {
            a.staticDns = false;
            continue;
        }
        a.dnsServers.clear();
        a.staticDns = true;
        for (const QString &part : a.nameServer.split(QLatin1Char(',')))
            a.dnsServers.append(QHostAddress(part));
    }
}

quint32 ip_settings::readIpInfo()
{
    ipInfo.clear();
    QList<IpAdapterEntry> entries;
    const quint32 result = sys().adaptersInfo(&entries);
    if (result != 0)
        return result;
    for (const IpAdapterEntry &e : qAsConst(entries)) {
        ipHelperInfo info;
        info.description = e.description;
        info.adapterName = e.adapterName;
        for (const IpAddrText &ip : e.ipAddresses) {
            info.ipAddresses.append(QHostAddress(ip.address));
            info.subnetMasks.append(QHostAddress(ip.mask));
        }
        for (const QString &g : e.gateways)
            info.gateways.append(QHostAddress(g));
        info.dhcpEnabled = e.dhcpEnabled != 0;
        if (info.dhcpEnabled) {
            for (const QString &s : e.dhcpServers)
                info.dhcpServers.append(QHostAddress(s));
        }
        ipInfo.append(info);
    }
    return 0;
}

void ip_settings::mergeIpInfo()
{
    for (adapterInfo &a : adapters) {
        a.dhcpServers.clear();
        a.ipAddresses.clear();
        a.subnetMasks.clear();
        a.dhcpEnabled = true;
        // gateways is kept on purpose: the report shows the gateway of the first report.
        for (const ipHelperInfo &info : qAsConst(ipInfo)) {
            if (info.adapterName != a.netCfgInstanceId)
                continue;
            a.ipAddresses = info.ipAddresses;
            a.subnetMasks = info.subnetMasks;
            a.dhcpServers = info.dhcpServers;
            a.gateways += info.gateways;
            a.dhcpEnabled = info.dhcpEnabled;
            break;
        }
    }
}

void ip_settings::readInterfaceStatus()
{
    QList<InterfaceRow> rows;
    if (sys().interfaceInfo(&rows) != 0 || rows.size() < 1)
        return;
    for (const InterfaceRow &row : qAsConst(rows)) {
        QString id = row.name;
        id.remove(QStringLiteral("\\DEVICE\\TCPIP_"));
        for (adapterInfo &a : adapters) {
            if (a.netCfgInstanceId != id)
                continue;
            const IfEntryFacts entry = sys().interfaceEntry(row.name);
            if (entry.indexResult == 0 && entry.entryResult == 0) {
                QStringList bytes;
                for (int i = 0; i < 6; ++i)
                    bytes << twoDigits(i < entry.physAddr.size() ? uchar(entry.physAddr[i]) : 0);
                a.macAddress = bytes.join(QLatin1Char('-')).toUpper();
                a.operStatus = entry.operStatus;
            }
            break;
        }
    }
}

bool ip_settings::readFirewallState()
{
    const FirewallFacts f = sys().firewallFacts();
    firewallState = f.failedStep == 0 && f.hresult >= 0 && f.enabled == win32::variantTrue ? 1 : 0;
    return firewallState != 0;
}

QString ip_settings::getAdapterStatus(int position)
{
    adapterStatus = 0;
    if (adapters.isEmpty())
        return QStringLiteral("No Adapter");
    readDnsServers();
    applyStaticDns();
    const WorkstationFacts station = sys().workstationFacts();
    if (station.result == 0) {
        workgroup = station.langroup;
        computerName = station.computerName;
    }
    readIpInfo();
    mergeIpInfo();
    readInterfaceStatus();
    readFirewallState();
    if (position < 0 || position >= adapters.size())
        return QString();
    const adapterInfo &a = adapters.at(position);
    adapterStatus = qint32(a.operStatus);
    return reportText(a, firewallState != 0);
}

QString ip_settings::reportText(const adapterInfo &a, bool firewallOn)
{
    QStringList lines;
    lines << a.description;
    lines << QStringLiteral("MAC Address: ") + a.macAddress;
    lines << (a.operStatus == win32::ifOperStatusOperational ? QStringLiteral("Operation status: Connected")
                                          : QStringLiteral("Operation status: Disconnected"));
    lines << QStringLiteral("Network Connection: ") + a.connectionName;
    // An enabled adapter whose server is not known yet reads as No.
    if (a.dhcpEnabled && !a.dhcpServers.isEmpty()) {
        lines << QStringLiteral("DHCP Enabled: Yes");
        lines << QStringLiteral("DHCP Server: ") + a.dhcpServers.first().toString();
    } else {
        lines << QStringLiteral("DHCP Enabled: No");
    }
    if (!a.ipAddresses.isEmpty())
        lines << QStringLiteral("IP Address: ") + a.ipAddresses.first().toString();
    if (!a.subnetMasks.isEmpty())
        lines << QStringLiteral("Subnet Mask: ") + a.subnetMasks.first().toString();
    if (!a.gateways.isEmpty()) {
        const QString gateway = a.gateways.first().toString();
        lines << QStringLiteral("Default Gateway: ")
                + (gateway == QLatin1String("0.0.0.0") ? QString() : gateway);
    }
    if (!a.dnsServers.isEmpty())
        lines << QStringLiteral("DNS Server: ") + a.dnsServers.first().toString();
    lines << (firewallOn ? QStringLiteral("Firewall: On") : QStringLiteral("Firewall: Off"));
    return lines.join(QLatin1Char('\n'));
}
