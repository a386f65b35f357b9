#pragma once
// Raw network facts as the system hands them over: the device walk, registry answers with their
// result codes, the IP Helper tables, the workstation and the firewall. Addresses stay dotted
// text; what they mean, how they join and how they print is the network subsystem's business.

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>
#include <QtGlobal>

// One present device of the walk over all classes.
struct NetDeviceRecord {
    QString className;     // SPDRP_CLASS
    // ClassGuid of the device information record.
    quint32 guidData1 = 0;
    quint16 guidData2 = 0;
    quint16 guidData3 = 0;
    quint8 guidData4[8] = {};
    QString classGuid;     // SPDRP_CLASSGUID, as delivered
    QString description;   // SPDRP_DEVICEDESC
    QString hardwareId;    // the first string of SPDRP_HARDWAREID
};

struct DeviceWalk {
    bool ok = false;          // the device info set was made and filled
    quint32 lastError = 0;    // GetLastError when it was not
    QList<NetDeviceRecord> devices;
};

// RegEnumKeyW of one index, into a buffer of 2048 characters.
struct RegSubkey {
    quint32 result = 0;   // 0, 234 ERROR_MORE_DATA (name too long), 259 ERROR_NO_MORE_ITEMS, ...
    QString name;         // when result is 0
};

// RegQueryValueExW into a buffer of the size asked for.
struct RegStringRead {
    bool opened = false;   // RegOpenKeyExW succeeded
    quint32 result = 2;    // of the query: 0, 2 not found, 234 the buffer is too small
    quint32 type = 0;      // REG_SZ 1, REG_EXPAND_SZ 2, REG_DWORD 4, ...
    QByteArray data;       // the bytes written into the buffer when result is 0
};

// One IP_ADDR_STRING pair.
struct IpAddrText {
    QString address;
    QString mask;
};

// One entry of the GetAdaptersInfo chain; lists hold the embedded first element and its chain.
struct IpAdapterEntry {
    QString adapterName;              // AdapterName, the interface GUID with braces
    QString description;              // Description
    QList<IpAddrText> ipAddresses;    // IpAddressList
    QStringList gateways;             // GatewayList
    quint32 dhcpEnabled = 0;          // DhcpEnabled
    QStringList dhcpServers;          // DhcpServer
};

// One row of GetInterfaceInfo.
struct InterfaceRow {
    qint32 index = 0;
    QString name;   // up to 128 wide characters, "\DEVICE\TCPIP_{...}"
};

// GetAdapterIndex on a name, then GetIfEntry on the index.
struct IfEntryFacts {
    quint32 indexResult = 0;
    quint32 entryResult = 0;
    QByteArray physAddr;      // bPhysAddr, its 8 bytes
    quint32 operStatus = 0;   // dwOperStatus
};

// NetWkstaGetInfo level 102.
struct WorkstationFacts {
    quint32 result = 0;   // NERR_Success 0
    QString computerName;
    QString langroup;
};

// The firewall manager's chain: the step that failed, or 0 when get_FirewallEnabled was reached.
struct FirewallFacts {
    int failedStep = 0;       // 1 CoInitializeEx, 2 CoCreateInstance, 3 policy or profile
    qint32 hresult = 0;       // of get_FirewallEnabled, or of the failed step
    quint16 enabled = 0;      // the VARIANT_BOOL read
};
