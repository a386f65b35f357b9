// The network subsystem: readers, comparison, inventory, reports and buttons, bring-up stages.

#include "testmachine.h"
#include "testmain.h"
#include "testshell.h"

#include "desktop/dektopwidget.h"
#include "launcher/my_pushbutton.h"
#include "launcher/mymenu.h"
#include "network/static_ip_dlg.h"
#include "network/netcondition.h"

#include <QToolButton>

Q_DECLARE_METATYPE(NetworkCondition)

namespace {

NetworkCondition condition(int network, int firewall, int dhcp, const QString &ip = {},
                           const QString &mask = {}, const QString &dns = {}, const QString &gateway = {})
{
    return {network, firewall, dhcp, ip, mask, dns, gateway, {}};
}

QString describe(const NetworkCondition &c)
{
    return QStringLiteral("network=%1 firewall=%2 dhcp=%3 ").arg(c.network).arg(c.firewall).arg(c.dhcp)
        + QStringList{c.ipAdd, c.ipMask, c.ipDNS, c.ipGateway, c.bootLetter}.join('|');
}

const char staticStart[] = "start\topen\tx:/program files/kelpie/start_ip.cmd\t\t1";
const char mapStart[] = "start\topen\tx:/map_network.cmd\t\t1";
const char toolStart[] = "start\topen\tx:\\program files\\kelpie\\tool.exe\t-q\t1";
const QByteArray mapOk = "1.write=x:/map_network.log\n1.text=The command completed successfully.";

// A medium with both scripts (no static one for leaves "-"), what they leave, a program to start.
struct Medium : TestMachine {
    explicit Medium(const QByteArray &staticLeaves, const QByteArray &mapLeaves = mapOk)
    {
        config("toRun=tool|-q\n").file("X:/map_network.cmd", "@echo off\r\n");
        facts("start.map_network.cmd", mapLeaves);
        if (staticLeaves != "-")
            file("X:/Program Files/kelpie/start_ip.cmd", "x").facts("start.start_ip.cmd", staticLeaves);
    }
    int count(const char *line) const { return journal().count(QLatin1String(line)); }
};

// The stages as their timers run them, one call a second, traced "<stage>:<attempt>/<seconds>".
QStringList runStages(my_shell1 &shell)
{
    QStringList trace;   // ends at once should both timers run
    while (trace.size() < 100 && shell.staticIpTimer->isActive() != shell.mapNetworkTimer->isActive()) {
        const int stage = shell.bringUpStage;
        if (shell.staticIpTimer->isActive())
            shell.checkStaticIP();
        else
            shell.checkMapNetwork();
        trace << QStringLiteral("%1:%2/%3").arg(stage).arg(shell.desktop->label_3()->text(),
                                                              shell.desktop->label_4()->text());
    }
    return trace;
}

} // namespace

class NetworkTest : public QObject {
    Q_OBJECT

private slots:
    void init() { resetGlobals(); }

    // Every field starts stale; "-": no log at all.
    void startLog_data()
    {
        QTest::addColumn<QByteArray>("log");
        QTest::addColumn<NetworkCondition>("expected");
        const NetworkCondition full{1, 1, 0, "10.0.0.5", "255.0.0.0", "10.0.0.1", "10.0.0.254", "E"};
        const QByteArray head(int(netread::maxLineBytes) - 7, '7');   // 1 MiB less "ipAdd=" and one
        QTest::newRow("missing: dhcp set, the rest off") << QByteArray("-") << condition(0, 0, 1);
        QTest::newRow("every key, CRLF")
            << QByteArray("bootLetter=E\r\nnetwork=1\r\nfirewall=1\r\nipAdd=10.0.0.5\r\nipMask=255.0.0.0\r\n"
                          "ipDNS=10.0.0.1\r\nipGateway=10.0.0.254\r\n") << full;
        QTest::newRow("non-numbers give 0, ipMask alone keeps dhcp")
            << QByteArray("network=yes\nfirewall=1x\nipMask=1.0.0.0\n") << condition(0, 0, 1, "", "1.0.0.0");
        QTest::newRow("later line wins, last line without line end")
            << QByteArray("network=1\nnetwork=0\nipAdd=1.1.1.1\nipAdd=2.2") << condition(0, 0, 0, "2.2");
        QTest::newRow("keys only at column 0, case counting")
            << QByteArray(" network=1\nNetwork=1\nIPADD=1.2.3.4\n# ipAdd=5.6.7.8\n") << condition(0, 0, 1);
        QTest::newRow("binary and stray CRs")
            << QByteArray("\x00\xff\xfe\x01garbage\n\rnetwork=\r1\r\n", 24) << condition(1, 0, 1);
        QTest::newRow("an overlong line keeps its head; the next line is read")
            << "ipAdd=" + head + head + "\nnetwork=1" << condition(1, 0, 0, head);
    }

    void startLog()
    {
        QFETCH(QByteArray, log);
        QFETCH(NetworkCondition, expected);
        TestMachine m;
        if (log != "-")
            m.write("drives/X/tmpReg/startNetwork.log", log);
        NetworkCondition got{7, 7, 7, "stale", "stale", "stale", "stale", "Q"};
        readStartNetwork(got);
        QCOMPARE(describe(got), describe(expected));
    }

    void changed_data()
    {
        QTest::addColumn<NetworkCondition>("a");
        QTest::addColumn<NetworkCondition>("b");
        QTest::addColumn<bool>("expected");
        const NetworkCondition dhcp = condition(1, 0, 1);
        const NetworkCondition fixed = condition(1, 0, 0, "10.0.0.5", "255.0.0.0", "10.0.0.1", "10.0.0.254");
        QTest::newRow("dhcp differs") << dhcp << condition(1, 0, 0) << true;
        QTest::newRow("dhcp: firewall counts") << dhcp << condition(1, 1, 1) << true;
        QTest::newRow("dhcp: addresses do not count") << dhcp << condition(1, 0, 1, "1.1", "2.2") << false;
        QTest::newRow("static: firewall does not count")
            << fixed << condition(1, 1, 0, "10.0.0.5", "255.0.0.0", "10.0.0.1", "10.0.0.254") << false;
        QTest::newRow("static: gateway counts")
            << fixed << condition(1, 0, 0, "10.0.0.5", "255.0.0.0", "10.0.0.1") << true;
    }

    void changed()
    {
        QFETCH(NetworkCondition, a);
        QFETCH(NetworkCondition, b);
        QFETCH(bool, expected);
        QCOMPARE(networkChanged(a, b), expected);
        QCOMPARE(networkChanged(b, a), expected);
    }

    void inventory_data()
    {
        using Bytes = QByteArrayList;
        QTest::addColumn<Bytes>("descriptions");     // device n is adapter n, from 1
        QTest::addColumn<Bytes>("edit");             // text replaced in machine.ini and registry.reg
        QTest::addColumn<QStringList>("expected");   // "index description adapter-number"
        const QByteArray guid1 = TestMachine::adapterGuid(1), guid2 = TestMachine::adapterGuid(2);
        const Bytes one{"A"};
        const QStringList onlyA{"0 A 1"};
        QTest::newRow("debug in any case is hidden, indexes keep their gaps")
            << Bytes{"A", "Kernel DeBuG Adapter", "C"} << Bytes{} << QStringList{"0 A 1", "2 C 3"};
        QTest::newRow("two identical cards: both entries land on the first, the later winning")
            << Bytes{"A", "B"} << Bytes{"DEV_2", "DEV_1"} << QStringList{"0 A 2"};
        QTest::newRow("a missing Interfaces key still counts")
            << one << Bytes{"Interfaces\\" + guid1, "Elsewhere"} << onlyA;
        QTest::newRow("no key under Adapters: dropped")
            << Bytes{"A", "B"} << Bytes{"Adapters\\" + guid2, "Elsewhere"} << onlyA;
        QTest::newRow("six adapters: five counted, six listed") << Bytes{"A", "B", "C", "D", "E", "F"}
            << Bytes{} << QStringList{"0 A 1", "1 B 2", "2 C 3", "3 D 4", "4 E 5", "5 F 6"};
        QTest::newRow("no NET device") << one << Bytes{"class=Net", "class=System"} << QStringList{};
        QTest::newRow("class compared in upper case") << one << Bytes{"class=Net", "class=net"} << onlyA;
        QTest::newRow("no class key: the walk's adapters stay unjoined and unfiltered") << Bytes{"A", "debug"}
            << Bytes{"Control\\Class", "Control\\Gone"} << QStringList{"0 A 0", "1 debug 0"};
        QTest::newRow("a class subkey name of 2047 characters is read")
            << one << Bytes{"\\0001]", "\\" + QByteArray(2047, 'k') + "]"} << onlyA;
        QTest::newRow("a class subkey name of 2048 characters is skipped")
            << one << Bytes{"\\0001]", "\\" + QByteArray(2048, 'k') + "]"} << QStringList{};
        QTest::newRow("NetCfgInstanceId of the wrong type")
            << one << Bytes{'"' + guid1 + '"', "dword:00000001"} << QStringList{};
    }

    void inventory()
    {
        QFETCH(QByteArrayList, descriptions);
        QFETCH(QByteArrayList, edit);
        QFETCH(QStringList, expected);
        TestMachine m;
        for (int n = 1; n <= descriptions.size(); ++n)
            m.addAdapter(n, descriptions[n - 1]);
        if (!edit.isEmpty()) {
            m.netIni.replace(edit[0], edit[1]);
            m.netReg.replace(edit[0], edit[1]);
        }
        m.writeNetwork();
        ip_settings net;
        net.refreshAdapters();
        QStringList got;
        for (const adapterInfo &a : net.adapters) {
            const int number = a.netCfgInstanceId.right(3).left(2).toInt();
            got << QStringLiteral("%1 %2 %3").arg(a.index).arg(a.description).arg(number);
            QCOMPARE(a.connectionName, number ? QStringLiteral("Net %1").arg(number) : QString());
        }
        QCOMPARE(got, expected);
        QCOMPARE(net.getAdapterCount(), qMin(expected.size(), 5));
    }

    // Each report is read back by the parser: what it takes must be the facts (missing lines leave
    // cleared fields), never the DHCP server.
    void reportLines_data()
    {
        QTest::addColumn<QByteArray>("ipHelper");
        QTest::addColumn<QByteArray>("machine");   // facts, then registry keys from "[HKEY_" on
        QTest::addColumn<QString>("report");
        QTest::addColumn<NetworkCondition>("readBack");
        const QString head = "Card\nMAC Address: 00-15-5D-4A-01-0B\nOperation status: Connected\n"
                             "Network Connection: Net 1\n";
        const QString tail = "DNS Server: 10.0.0.1\nFirewall: Off";
        const QByteArray mac = "mac=00-15-5D-4A-01-0B\n";
        QTest::newRow("static address")
            << QByteArray("address=192.168.1.50/255.255.255.0,10.0.0.9/255.0.0.0\ngateway=192.168.1.1\n"
                          "mac=00:15:5d:4a:01:0b\n")
            << QByteArray("[firewall]\nstate=on\n")
            << head + "DHCP Enabled: No\nIP Address: 192.168.1.50\nSubnet Mask: 255.255.255.0\n"
                      "Default Gateway: 192.168.1.1\nDNS Server: 10.0.0.1\nFirewall: On"
            << condition(1, 1, 0, "192.168.1.50", "255.255.255.0", "10.0.0.1", "192.168.1.1");
        QTest::newRow("DHCP server") << "address=10.1.1.5/255.255.0.0\ndhcp=1\ndhcpServer=10.1.1.1\n" + mac
            << QByteArray() << head + "DHCP Enabled: Yes\nDHCP Server: 10.1.1.1\nIP Address: 10.1.1.5\n"
                                      "Subnet Mask: 255.255.0.0\nDefault Gateway: \n" + tail
            << condition(1, 0, 1, "10.1.1.5", "255.255.0.0", "10.0.0.1");
        const QByteArray unlisted = "listed=0\n" + mac;
        QTest::newRow("DHCP enabled with no entry: No, and no address lines") << unlisted << QByteArray()
            << head + "DHCP Enabled: No\n" + tail << condition(1, 0, 0, "", "", "10.0.0.1");
        QTest::newRow("GetIfEntry fails: no MAC, disconnected")
            << QByteArray("ifEntryError=31\naddress=10.1.1.5/255.0.0.0\n") << QByteArray()
            << "Card\nMAC Address: \nOperation status: Disconnected\nNetwork Connection: Net 1\n"
               "DHCP Enabled: No\nIP Address: 10.1.1.5\nSubnet Mask: 255.0.0.0\nDefault Gateway: \n" + tail
            << condition(0, 0, 0, "10.1.1.5", "255.0.0.0", "10.0.0.1");
        QTest::newRow("addresses that do not parse print as nothing")
            << "address=300.1.1.1/mask\ngateway=gw\n" + mac << QByteArray()
            << head + "DHCP Enabled: No\nIP Address: \nSubnet Mask: \nDefault Gateway: \n" + tail
            << condition(1, 0, 0, "", "", "10.0.0.1");
        QTest::newRow("firewall manager unavailable reads Off; IP Helper failing") << mac
            << QByteArray("[firewall]\nstate=unavailable\n"
                          "[network]\nadaptersInfoError=122\nnetworkParamsError=8")
            << head + "DHCP Enabled: No\nFirewall: Off" << condition(1, 0, 0);
        const QByteArray guid = TestMachine::adapterGuid(1);
        const QByteArray nameServer = "[HKEY_LOCAL_MACHINE\\system\\CurrentControlSet\\Services\\Tcpip\\"
                                      "Parameters\\Interfaces\\" + guid + "]\n\"NameServer\"=";
        const QString nullDns = head + "DHCP Enabled: No\nDNS Server: \nFirewall: Off";
        const QByteArray fits(259, '1');   // 518 bytes and the terminator: the whole 520-byte buffer
        QTest::newRow("a name server replaces the machine's; an empty part stays as a null address")
            << unlisted << nameServer + "\",1.1.1.1\"" << nullDns << condition(1, 0, 0);
        QTest::newRow("a name server filling the 520-byte buffer exactly is read") << unlisted
            << nameServer + '"' + fits + '"' << nullDns << condition(1, 0, 0);
        QTest::newRow("one character more does not fit: the machine's servers") << unlisted
            << nameServer + '"' + fits + "1\"" << head + "DHCP Enabled: No\n" + tail
            << condition(1, 0, 0, "", "", "10.0.0.1");
    }

    void reportLines()
    {
        QFETCH(QByteArray, ipHelper);
        QFETCH(QByteArray, machine);
        QFETCH(QString, report);
        QFETCH(NetworkCondition, readBack);
        TestMachine m;
        m.addAdapter(1, "Card", ipHelper);
        const int keys = machine.indexOf("[HKEY_");
        m.writeNetwork("[network]\ndnsServers=10.0.0.1\n" + (keys < 0 ? machine : machine.left(keys)),
                       keys < 0 ? "" : machine.mid(keys));
        ip_settings net;
        QCOMPARE(net.getAdapterStatus(0), QStringLiteral("No Adapter"));
        net.refreshAdapters();
        QCOMPARE(net.getAdapterStatus(0), report);
        QCOMPARE(net.adapterStatus, readBack.network ? 5 : 0);
        QCOMPARE(net.computerName, QStringLiteral("MINWINPC"));
        NetworkCondition got;
        parseAdapterReport(report, got);
        QCOMPARE(describe(got), describe(readBack));
    }

    // Three ticks only count; the fourth enumerates and makes the buttons, the fifth gives reports.
    // Each report reads the facts afresh (a pulled cable), but the gateway stays the first report's.
    void adapterButtons()
    {
        TestMachine m;
        for (int n = 1; n <= 6; ++n)
            m.addAdapter(n, "Card " + QByteArray::number(n), n == 1 ? "gateway=0.0.0.0" : "");
        auto shell = makeShell();
        for (int tick = 1; tick <= 3; ++tick) {
            shell->getSystemCondition();
            QVERIFY(shell->netButtons.isEmpty() && !shell->noAdapterButton->isHidden());
        }
        shell->getSystemCondition();
        QVERIFY(shell->netButtons.size() == 5 && shell->noAdapterButton->isHidden());
        QCOMPARE(shell->netButtons[0]->toolTip(), QString());
        shell->getSystemCondition();
        QVERIFY(shell->netButtons[0]->toolTip().startsWith("Card 1\nMAC Address: "));
        QVERIFY(shell->netButtons[4]->toolTip().startsWith("Card 5\n"));
        m.netIni.replace("gateway=0.0.0.0", "gateway=10.1.1.1\nstatus=disconnected");
        m.writeNetwork();
        shell->getSystemCondition();
        QCOMPARE(shell->netButtons.size(), 5);
        QVERIFY(shell->netButtons[0]->toolTip().contains("Operation status: Disconnected\n"));
        QVERIFY(shell->netButtons[0]->toolTip().contains("\nDefault Gateway: \n"));
        shell->netButtons[3]->click();
        QVERIFY(m.journal().contains("start\topen\tIPcfg.exe\t\t1"));
    }

    // The static address (five attempts of five seconds), the mapping (three), then the programs.
    void stages_data()
    {
        QTest::addColumn<QByteArray>("staticLeaves");   // [start.start_ip.cmd]; "-": no script
        QTest::addColumn<QByteArray>("stale");          // static_ip.log before the first start; "-": none
        QTest::addColumn<QByteArray>("mapLeaves");      // [start.map_network.cmd]
        QTest::addColumn<bool>("second");               // a second instance of the shell
        QTest::addColumn<QList<int>>("expected");       // static starts, ticks; map starts, ticks
        const QByteArray ok = "1.write=x:/static_ip.log\n1.text=Ok.";
        const QByteArray bad = "*.write=x:/static_ip.log\n*.text=Setting the address\\nNo adapter\n";
        const QByteArray none = "-";
        QTest::newRow("static at once, mapping at once, then the programs")
            << ok << none << mapOk << false << QList<int>{1, 5, 1, 5};
        QTest::newRow("every static attempt complains: 26 seconds")
            << bad << none << mapOk << false << QList<int>{5, 26, 1, 5};
        QTest::newRow("a stale log of one line among empty ones counts at once")
            << QByteArray() << QByteArray("\r\nOk.\r\r\n\n") << mapOk << false << QList<int>{1, 5, 1, 5};
        QTest::newRow("log removed by the first run, written by the second")
            << QByteArray("1.delete=x:/static_ip.log\n2.write=x:/static_ip.log\n2.text=Ok.")
            << QByteArray("a\nb\n") << mapOk << false << QList<int>{2, 10, 1, 5};
        QTest::newRow("a map success text inside a line among errors, on attempt 2") << none << none
            << QByteArray("1.write=x:/map_network.log\n1.text=System error 53.\n2.append=x:/map_network.log\n"
                          "2.text=net use: The command completed successfully.\\nSystem error 5")
            << false << QList<int>{0, 0, 2, 10};
        QTest::newRow("lower-case map success text never counts: 16 seconds") << none << none
            << QByteArray("*.write=x:/map_network.log\n*.text=the command completed successfully.")
            << false << QList<int>{0, 0, 3, 16};
        QTest::newRow("an empty log counts; a second instance runs both stages and no programs")
            << QByteArray("1.write=x:/static_ip.log") << none << mapOk << true << QList<int>{1, 5, 1, 5};
    }

    void stages()
    {
        QFETCH(QByteArray, staticLeaves);
        QFETCH(QByteArray, stale);
        QFETCH(QByteArray, mapLeaves);
        QFETCH(bool, second);
        QFETCH(QList<int>, expected);
        const int starts = expected[0], ticks = expected[1];
        Medium m(staticLeaves, mapLeaves);
        if (stale != "-")
            m.write("drives/X/static_ip.log", stale);
        secondInstance = second;
        auto shell = makeShell();
        shell->init();
        QCOMPARE(shell->bringUpStage, starts ? 1 : 2);
        QVERIFY(shell->desktop->waitPanel->isVisibleTo(shell->desktop));
        const QStringList trace = runStages(*shell);
        const int staticTicks = trace.filter(QRegularExpression("^1:")).size();
        const int mapTicks = trace.filter(QRegularExpression("^2:")).size();
        QCOMPARE((QList<int>{m.count(staticStart), staticTicks, m.count(mapStart), mapTicks}), expected);
        if (starts)
            QCOMPARE(trace.mid(0, 5).join(' '), QString("1:1/4 1:1/3 1:1/2 1:1/1 1:%1/5").arg(qMin(starts, 2)));
        if (starts == 5)
            QCOMPARE(trace[ticks - 2], QStringLiteral("1:6/5"));   // "6" shows for one second
        if (expected[2] == 3)
            QCOMPARE(trace[ticks + expected[3] - 2], QStringLiteral("2:4/5"));
        QCOMPARE(m.read("drives/X/init.log").count("startIp="), starts);
        QCOMPARE(m.count(toolStart), second ? 0 : 1);
        QVERIFY(second || m.journal().indexOf(mapStart) < m.journal().indexOf(toolStart));
        QVERIFY(!shell->desktop->waitPanel->isVisibleTo(shell->desktop));
    }

    // The stop button in attempt 3 ends the static stage, the mapping stage begins at once and a
    // second press ends it too; the address dialog's own stop never reaches the panel.
    void stopButtonInAttemptThree()
    {
        Medium m("");
        auto shell = makeShell();
        shell->init();
        QSignalSpy dialogStop(shell->staticIpDialog, &static_ip_dlg::needStopOperation);
        shell->staticIpDialog->findChild<QPushButton *>("pushButton")->click();
        QCOMPARE(dialogStop.value(0).value(0).toInt(), -1);
        while (shell->staticIpTimer->isActive()
               && (shell->desktop->label_3()->text() != "3" || shell->desktop->label_4()->text() != "3"))
            shell->checkStaticIP();
        shell->desktop->toolButton()->click();
        QCOMPARE(m.count(staticStart), 2);
        QVERIFY(!shell->staticIpTimer->isActive() && shell->mapNetworkTimer->isActive());
        QVERIFY(shell->bringUpStage == 2 && shell->desktop->label_3()->text() == "1");
        QVERIFY(shell->desktop->waitPanel->isVisibleTo(shell->desktop));
        shell->desktop->toolButton()->click();
        QCOMPARE(m.count(mapStart), 0);
        QCOMPARE(m.count(toolStart), 1);
    }

};

KELPIE_TEST_MAIN(NetworkTest)
#include "tst_network.moc"
