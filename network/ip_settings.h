#pragma once
// The program's own view of the network adapters. Facts come by three roads that share no key:
// the device walk, three registry trees under system\CurrentControlSet and the IP Helper
// tables; the roads run in a fixed order and are joined here by GUID, by the device instance id
// prefix and by name. The set of adapters is gathered once, when first found non-empty; their
// dynamic facts anew for each report.

#include <QHostAddress>
#include <QList>
#include <QObject>
#include <QString>

struct NetDeviceRecord;

struct adapterInfo {
    qint32 index = 0;           // among the devices of class NET, before any filtering
    QString classGuid;          // SPDRP_CLASSGUID
    QString hardwareId;
    QString netCfgInstanceId;   // the interface GUID, with braces
    QString classSubKey;        // "0001"
    QString description;
    QList<QHostAddress> dnsServers;
    QList<QHostAddress> ipAddresses;
    QList<QHostAddress> subnetMasks;
    QList<QHostAddress> gateways;   // only ever appended to
    QList<QHostAddress> dhcpServers;
    bool dhcpEnabled = false;
    bool staticDns = false;
    QString nameServer;         // the interface's NameServer, comma-separated, may be empty
    QString connectionName;
    QString macAddress;         // AA-BB-CC-DD-EE-FF
    quint32 operStatus = 0;     // 5 is operational
};

struct ipHelperInfo {
    QString description;
    QList<QHostAddress> ipAddresses;
    QList<QHostAddress> subnetMasks;
    QList<QHostAddress> gateways;
    QList<QHostAddress> dhcpServers;
    QString adapterName;
    bool dhcpEnabled = false;
};

struct classKeyEntry {
    QString classGuid;
    QString deviceInstanceId;
    QString netCfgInstanceId;
    QString subKey;
};

struct nameServerEntry {
    QString interfaceGuid;
    QString nameServer;
};

class ip_settings : public QObject {
    Q_OBJECT
public:
    ip_settings() = default;

    // Adapters shown: at most five; a sixth and any beyond exist in the list only.
    int getAdapterCount() const;
    // The enumeration: the device walk with the class keys and name servers, then the names.
    void refreshAdapters();
    // The report of the adapter at a position below the count; runs every dynamic road first.
    QString getAdapterStatus(int position);

    void enumNetDevices();
    void readClassKeys(const QString &classGuidText);
    void readNameServers();
    void readConnectionNames();
    void readDnsServers();
    void applyStaticDns();
    quint32 readIpInfo();
    void mergeIpInfo();
    void readInterfaceStatus();
    // The current profile's firewall state; a chain that fails on the way reads as off.
    bool readFirewallState();

    // "{4D36E972-E325-11CE-BFC1-08002BE10318}" from the record's GUID fields.
    static QString classGuidText(const NetDeviceRecord &device);
    // The report's lines for an adapter's facts and the firewall state.
    static QString reportText(const adapterInfo &adapter, bool firewallOn);

    qint32 adapterStatus = 0;   // operStatus of the adapter of the last report
    QString computerName;
    QString workgroup;

    // There is one instance, so the lists live in it.
    QList<adapterInfo> adapters;
    QList<ipHelperInfo> ipInfo;
    QList<classKeyEntry> classEntries;
    QList<nameServerEntry> nameServers;
    QList<adapterInfo> filteredAdapters;
    qint32 firewallState = 0;   // overwritten by each report
};
