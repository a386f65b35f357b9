// The Win32 network room against the real system (under Wine in CI). Where Wine has no answer to
// give, the test says so with QSKIP rather than passing.

#include "network/ip_settings.h"
#include "platform/win/winplatform.h"
#include "testmain.h"

#include <QSettings>
#include <QUuid>

#include <windows.h>

class TestWinNetwork : public QObject {
    Q_OBJECT

private:
    WinPlatform win;
    QSettings software{QStringLiteral("HKEY_LOCAL_MACHINE\\Software"), QSettings::NativeFormat};

private slots:
    void cleanupTestCase() { software.remove(QStringLiteral("KelpieNetworkTest")); }

    // A record's class GUID fields are its class property, which the inventory's text spells.
    void deviceWalk()
    {
        const DeviceWalk walk = win.deviceWalk();
        QVERIFY2(walk.ok, qPrintable(QString::number(walk.lastError)));
        int compared = 0;
        for (const NetDeviceRecord &d : walk.devices) {
            if (d.classGuid.isEmpty())
                continue;
            const uchar *g = d.guidData4;
            const QUuid record(d.guidData1, d.guidData2, d.guidData3, g[0], g[1], g[2], g[3], g[4], g[5], g[6],
                               g[7]);
            QCOMPARE(record, QUuid(d.classGuid));
            if (ip_settings::classGuidText(d).size() == 38)
                QCOMPARE(ip_settings::classGuidText(d), d.classGuid.toUpper());
            ++compared;
        }
        if (!compared)
            QSKIP("The system lists no present device with a class GUID (Wine without devices).");
    }

    // Subkeys end with ERROR_NO_MORE_ITEMS; a 520-byte buffer takes 259 characters and the
    // terminator, one more is ERROR_MORE_DATA; a missing value is 2, a missing key does not open.
    void machineHive()
    {
        QList<RegSubkey> answers;
        QVERIFY(!win.machineSubkeys(QStringLiteral("system\\CurrentControlSet\\NoSuchKeyHere"), &answers));
        QVERIFY(win.machineSubkeys(QStringLiteral("system\\CurrentControlSet\\Control\\Class"), &answers));
        QVERIFY(answers.size() >= 2 && answers.first().name.startsWith(QLatin1Char('{')));
        QCOMPARE((QList<quint32>{answers.first().result, answers.last().result}), (QList<quint32>{0, 259}));

        const QString fits(259, QLatin1Char('1')), key = QStringLiteral("Software\\KelpieNetworkTest");
        software.setValue(QStringLiteral("KelpieNetworkTest/Fits"), fits);
        software.setValue(QStringLiteral("KelpieNetworkTest/Long"), fits + '1');
        software.sync();
        if (software.status() != QSettings::NoError)
            QSKIP("HKEY_LOCAL_MACHINE cannot be written by this user.");
        RegStringRead r = win.machineString(key, QStringLiteral("Fits"), 520);
        QVERIFY(r.opened);
        QCOMPARE((QList<quint32>{r.result, r.type, quint32(r.data.size())}), (QList<quint32>{0, 1, 520}));
        r = win.machineString(key, QStringLiteral("Long"), 520);
        QVERIFY(r.result == 234 && r.data.isEmpty());
        QCOMPARE(win.machineString(key, QStringLiteral("Missing"), 520).result, 2u);
        QVERIFY(!win.machineString(key + QStringLiteral("\\No"), QStringLiteral("Fits"), 520).opened);
    }

    void ipHelper()
    {
        QStringList dns;
        QCOMPARE(win.networkParams(&dns), 0u);
        QVERIFY(!dns.isEmpty());   // the embedded first entry is always there
        QVERIFY(win.interfaceEntry("\\DEVICE\\TCPIP_{00000000-0000-0000-0000-000000000000}").indexResult != 0);
        QList<IpAdapterEntry> entries;
        const quint32 result = win.adaptersInfo(&entries);
        if (result == 232)
            QSKIP("GetAdaptersInfo has no IPv4 adapter to tell of on this host.");
        QCOMPARE(result, 0u);
        for (const IpAdapterEntry &e : entries)   // each list holds at least its embedded first element
            QVERIFY(e.adapterName.startsWith('{') && !e.ipAddresses.isEmpty() && !e.gateways.isEmpty()
                    && !e.dhcpServers.isEmpty());
        QList<InterfaceRow> rows;
        QCOMPARE(win.interfaceInfo(&rows), 0u);
        if (rows.isEmpty())
            QSKIP("GetInterfaceInfo lists no interface on this host.");
        for (const InterfaceRow &row : rows) {
            QVERIFY(row.name.startsWith(QLatin1String("\\DEVICE\\TCPIP_")));
            const IfEntryFacts f = win.interfaceEntry(row.name);
            if (f.indexResult != 0)
                QSKIP(qPrintable(QString("GetAdapterIndex does not know %1 (%2).").arg(row.name)
                                     .arg(f.indexResult)));
            QVERIFY(f.entryResult == 0 && f.physAddr.size() == 8 && f.operStatus <= 6);
        }
    }

    void workstationAndFirewall()
    {
        const WorkstationFacts w = win.workstationFacts();
        QVERIFY(w.result != 0 || !w.computerName.isEmpty());
        const FirewallFacts f = win.firewallFacts();
        if (f.failedStep != 0)
            QSKIP(qPrintable(QString("The firewall manager does not answer (step %1, 0x%2).").arg(f.failedStep)
                                 .arg(quint32(f.hresult), 8, 16, QLatin1Char('0'))));
        QVERIFY(f.enabled == 0 || f.enabled == 0xFFFF);
        // COM was released: the thread may initialise it afresh in another mode.
        QVERIFY(SUCCEEDED(CoInitializeEx(nullptr, COINIT_MULTITHREADED)));
        CoUninitialize();
        if (w.result != 0)
            QSKIP(qPrintable(QStringLiteral("NetWkstaGetInfo level 102 answers %1 here.").arg(w.result)));
    }

    void inventoryOnTheSystem()
    {
        setPlatform(new WinPlatform);
        ip_settings net;
        net.refreshAdapters();
        const QString report = net.adapters.isEmpty() ? QString() : net.getAdapterStatus(0);
        setPlatform(nullptr);
        if (report.isEmpty())
            QSKIP("No adapter joins on this system: Wine has no device of class Net.");
        QVERIFY(report.contains(QLatin1String("\nMAC Address: ")));
        QVERIFY(report.endsWith("Firewall: On") || report.endsWith("Firewall: Off"));
    }
};

KELPIE_TEST_MAIN(TestWinNetwork)
#include "tst_win_network.moc"
