#include "netcondition.h"

#include "platform/platform.h"

#include <QFile>
#include <QStringList>

void readStartNetwork(NetworkCondition &record)
{
    record.bootLetter.clear();
    record.ipAdd.clear();
    record.ipMask.clear();
    record.ipDNS.clear();
    record.ipGateway.clear();
    record.network = 0;
    record.firewall = 0;
    record.dhcp = 1;

    QFile log(sys().hostPath(QStringLiteral("x:/tmpReg/startNetwork.log")));
    if (!log.open(QIODevice::ReadOnly))
        return;
    QString line;
    while (netread::nextLine(log, &line)) {
        if (line.startsWith(QLatin1String("bootLetter="))) {
            record.bootLetter = line.mid(11);
        } else if (line.startsWith(QLatin1String("network="))) {
            record.network = line.mid(8).toInt();
        } else if (line.startsWith(QLatin1String("firewall="))) {
            record.firewall = line.mid(9).toInt();
        } else if (line.startsWith(QLatin1String("ipAdd="))) {
            record.dhcp = 0;
            record.ipAdd = line.mid(6);
        } else if (line.startsWith(QLatin1String("ipMask="))) {
            record.ipMask = line.mid(7);
        } else if (line.startsWith(QLatin1String("ipDNS="))) {
            record.ipDNS = line.mid(6);
        } else if (line.startsWith(QLatin1String("ipGateway="))) {
            record.ipGateway = line.mid(10);
        }
    }
}

void parseAdapterReport(const QString &report, NetworkCondition &record)
{
    // Each prefix is cut with the blank after it, and the later tests look at what is left.
    auto take = [](QString &line, const char *prefix) {
        const QLatin1String p(prefix);
        if (!line.startsWith(p))
            return false;
        line.remove(0, p.size() + 1);
        return true;
    };
    for (QString line : report.split(QLatin1Char('\n'))) {
        if (take(line, "Operation status:"))
            record.network = line == QLatin1String("Disconnected") ? 0 : 1;
        if (take(line, "DHCP Enabled:"))
            record.dhcp = line == QLatin1String("Yes") ? 1 : 0;
        if (take(line, "IP Address:"))
            record.ipAdd = line;
        if (take(line, "Subnet Mask:"))
            record.ipMask = line;
        if (take(line, "Default Gateway:"))
            record.ipGateway = line;
        if (take(line, "DNS Server:"))
            record.ipDNS = line;
        if (take(line, "Firewall:"))
            record.firewall = line == QLatin1String("On") ? 1 : 0;
    }
}

bool networkChanged(const NetworkCondition &a, const NetworkCondition &b)
{
    if (a.network != b.network || a.dhcp != b.dhcp)
        return true;
    if (a.dhcp != 0)
        return a.firewall != b.firewall;
    return a.ipAdd != b.ipAdd || a.ipMask != b.ipMask || a.ipDNS != b.ipDNS
        || a.ipGateway != b.ipGateway;
}
