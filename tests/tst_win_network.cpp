// The Win32 network room against the real system (under Wine in CI): the device walk, the machine
// hive with its buffers, the IP Helper tables, the workstation and the firewall manager. Where
// Wine has no answer to give, the test says so with QSKIP rather than passing.

#include "network/ip_settings.h"
#include "platform/win/winplatform.h"
#include "testmain.h"

#include <QUuid>

#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

namespace {

const QString testKey = QStringLiteral("Software\\KelpieNetworkTest");

bool setString(const QString &name, const QString &value)
{
    HKEY key = nullptr;
    if (RegCreateKeyExW(HKEY_LOCAL_MACHINE, reinterpret_cast<const wchar_t *>(testKey.utf16()), 0,
                        nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, nullptr) != ERROR_SUCCESS)
        return false;
    const LONG r = RegSetValueExW(key, reinterpret_cast<const wchar_t *>(name.utf16()), 0, REG_SZ,
                                  reinterpret_cast<const BYTE *>(value.utf16()),
                                  DWORD((value.size() + 1) * 2));
    RegCloseKey(key);
    return r == ERROR_SUCCESS;
}

} // namespace

class TestWinNetwork : public QObject {
    Q_OBJECT

private:
    WinPlatform win;

private slots:
    void cleanupTestCase()
    {
        RegDeleteKeyW(HKEY_LOCAL_MACHINE, reinterpret_cast<const wchar_t *>(testKey.utf16()));
    }

    void deviceWalk()
    {
        const DeviceWalk walk = win.deviceWalk();
        QVERIFY2(walk.ok, qPrintable(QString::number(walk.lastError)));
        // Every record's own class GUID, formatted as the inventory does, is its class property.
        int compared = 0;
        for (const NetDeviceRecord &d : walk.devices) {
            if (d.classGuid.isEmpty())
                continue;
            const QUuid record(d.guidData1, d.guidData2, d.guidData3, d.guidData4[0], d.guidData4[1],
                               d.guidData4[2], d.guidData4[3], d.guidData4[4], d.guidData4[5],
                               d.guidData4[6], d.guidData4[7]);
            QCOMPARE(record, QUuid(d.classGuid));
            // Without leading zeros in the first fields the unpadded text is the property's.
            const QString text = ip_settings::classGuidText(d);
            if (text.size() == 38)
                QCOMPARE(text, d.classGuid.toUpper());
            ++compared;
        }
        if (!compared)
            QSKIP("The system lists no present device with a class GUID (Wine without devices).");
    }

    void machineSubkeys()
    {
        QList<RegSubkey> answers;
        QVERIFY(!win.machineSubkeys(QStringLiteral("system\\CurrentControlSet\\NoSuchKeyHere"), &answers));
        QVERIFY(win.machineSubkeys(QStringLiteral("system\\CurrentControlSet\\Control\\Class"), &answers));
        QVERIFY(answers.size() >= 2);
        QCOMPARE(answers.last().result, 259u);   // ERROR_NO_MORE_ITEMS ends the walk
        QCOMPARE(answers.first().result, 0u);
        QVERIFY(answers.first().name.startsWith(QLatin1Char('{')));
    }

    void machineStringBuffer()
    {
        const QString fits(259, QLatin1Char('1'));   // 518 bytes and the terminator
        if (!setString(QStringLiteral("Fits"), fits) || !setString(QStringLiteral("Long"), fits + '1'))
            QSKIP("HKEY_LOCAL_MACHINE cannot be written by this user.");
        RegStringRead r = win.machineString(testKey, QStringLiteral("Fits"), 520);
        QVERIFY(r.opened);
        QCOMPARE((QList<quint32>{r.result, r.type, quint32(r.data.size())}), (QList<quint32>{0, 1, 520}));
        r = win.machineString(testKey, QStringLiteral("Long"), 520);
        QCOMPARE(r.result, 234u);   // ERROR_MORE_DATA
        QVERIFY(r.data.isEmpty());
        QCOMPARE(win.machineString(testKey, QStringLiteral("Missing"), 520).result, 2u);
        QVERIFY(!win.machineString(testKey + QStringLiteral("\\No"), QStringLiteral("Fits"), 520).opened);
    }

    void ipHelper()
    {
        QStringList dns;
        QCOMPARE(win.networkParams(&dns), 0u);
        QVERIFY(!dns.isEmpty());   // the embedded first entry is always there

        QList<IpAdapterEntry> entries;
        const quint32 result = win.adaptersInfo(&entries);
        if (result == 232)
            QSKIP("GetAdaptersInfo has no IPv4 adapter to tell of on this host.");
        QCOMPARE(result, 0u);
        for (const IpAdapterEntry &e : entries) {
            QVERIFY(e.adapterName.startsWith(QLatin1Char('{')));
            QVERIFY(!e.ipAddresses.isEmpty() && !e.gateways.isEmpty() && !e.dhcpServers.isEmpty());
        }

        QList<InterfaceRow> rows;
        QCOMPARE(win.interfaceInfo(&rows), 0u);
        if (rows.isEmpty())
            QSKIP("GetInterfaceInfo lists no interface on this host.");
        for (const InterfaceRow &row : rows) {
            QVERIFY(row.name.startsWith(QLatin1String("\\DEVICE\\TCPIP_")));
            const IfEntryFacts f = win.interfaceEntry(row.name);
            if (f.indexResult != 0)
                QSKIP(qPrintable(QStringLiteral("GetAdapterIndex does not know %1 (%2).").arg(row.name).arg(f.indexResult)));
            QCOMPARE(f.entryResult, 0u);
            QCOMPARE(f.physAddr.size(), 8);
            QVERIFY(f.operStatus <= 6);
        }
        QVERIFY(win.interfaceEntry(QStringLiteral("\\DEVICE\\TCPIP_{00000000-0000-0000-0000-000000000000}")).indexResult != 0);
    }

    void workstation()
    {
        const WorkstationFacts w = win.workstationFacts();
        if (w.result != 0)
            QSKIP(qPrintable(QStringLiteral("NetWkstaGetInfo level 102 answers %1 here.").arg(w.result)));
        QVERIFY(!w.computerName.isEmpty());
    }

    void firewall()
    {
        const FirewallFacts f = win.firewallFacts();
        if (f.failedStep != 0)
            QSKIP(qPrintable(QStringLiteral("The firewall manager does not answer (step %1, 0x%2).")
                                 .arg(f.failedStep).arg(quint32(f.hresult), 8, 16, QLatin1Char('0'))));
        QVERIFY(f.enabled == 0 || f.enabled == 0xFFFF);
        // COM was released: the thread may initialise it afresh in another mode.
        const HRESULT again = CoInitializeEx(nullptr, COINIT_MULTITHREADED);
        QVERIFY(SUCCEEDED(again));
        CoUninitialize();
    }

    void inventoryOnTheSystem()
    {
        setPlatform(new WinPlatform);
        ip_settings net;
        net.refreshAdapters();
        if (net.adapters.isEmpty()) {
            setPlatform(nullptr);
            QSKIP("No adapter joins on this system: Wine has no device of class Net.");
        }
        const QString report = net.getAdapterStatus(0);
        setPlatform(nullptr);
        QVERIFY(report.contains(QLatin1String("\nMAC Address: ")));
        QVERIFY(report.endsWith(QLatin1String("Firewall: On")) || report.endsWith(QLatin1String("Firewall: Off")));
    }
};

KELPIE_TEST_MAIN(TestWinNetwork)
#include "tst_win_network.moc"
