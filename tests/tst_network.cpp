// The network subsystem: the start-up log and the report parser, the comparison, the bring-up
// logs, the adapter inventory and its report, and the two bring-up stages of the panel.

#include "testmachine.h"
#include "testmain.h"

#include "network/bringuplog.h"
#include "network/netcondition.h"

Q_DECLARE_METATYPE(NetworkCondition)

namespace {

NetworkCondition condition(int network, int firewall, int dhcp, const char *ip = "",
                           const char *mask = "", const char *dns = "", const char *gateway = "")
{
    NetworkCondition c;
    c.network = network;
    c.firewall = firewall;
    c.dhcp = dhcp;
    c.ipAdd = QLatin1String(ip);
    c.ipMask = QLatin1String(mask);
    c.ipDNS = QLatin1String(dns);
    c.ipGateway = QLatin1String(gateway);
    return c;
}

QString describe(const NetworkCondition &c)
{
    return QStringLiteral("network=%1 firewall=%2 dhcp=%3 ip=%4 mask=%5 dns=%6 gw=%7 boot=%8")
        .arg(c.network).arg(c.firewall).arg(c.dhcp).arg(c.ipAdd, c.ipMask, c.ipDNS, c.ipGateway,
                                                          c.bootLetter);
}

} // namespace

class NetworkTest : public QObject {
    Q_OBJECT

private slots:
    void startLog_data();
    void startLog();
    void startLogHugeLine();
    void reportParser_data();
    void reportParser();
    void changed_data();
    void changed();
    void bringUpLogs_data();
    void bringUpLogs();
};

void NetworkTest::startLog_data()
{
    QTest::addColumn<QByteArray>("log");   // "-" : no log at all
    QTest::addColumn<NetworkCondition>("expected");

    NetworkCondition full = condition(1, 1, 0, "10.0.0.5", "255.0.0.0", "10.0.0.1", "10.0.0.254");
    full.bootLetter = QStringLiteral("E");
    QTest::newRow("missing log: dhcp set, the rest off") << QByteArray("-") << condition(0, 0, 1);
    QTest::newRow("every key, CRLF")
        << QByteArray("bootLetter=E\r\nnetwork=1\r\nfirewall=1\r\nipAdd=10.0.0.5\r\n"
                      "ipMask=255.0.0.0\r\nipDNS=10.0.0.1\r\nipGateway=10.0.0.254\r\n")
        << full;
    QTest::newRow("ipMask alone keeps dhcp")
        << QByteArray("network=1\nipMask=255.0.0.0\n") << condition(1, 0, 1, "", "255.0.0.0");
    QTest::newRow("an empty ipAdd still clears dhcp")
        << QByteArray("ipAdd=\n") << condition(0, 0, 0);
    QTest::newRow("later line wins, last line without line end")
        << QByteArray("network=1\nnetwork=0\nipAdd=1.1.1.1\nipAdd=2.2.2.2")
        << condition(0, 0, 0, "2.2.2.2");
    QTest::newRow("non-numbers give 0")
        << QByteArray("network=yes\nfirewall=1x\n") << condition(0, 0, 1);
    QTest::newRow("keys only at column 0, case counting")
        << QByteArray(" network=1\nNetwork=1\nIPADD=1.2.3.4\n# ipAdd=5.6.7.8\n")
        << condition(0, 0, 1);
    QTest::newRow("binary and stray CRs")
        << QByteArray("\x00\xff\xfe\x01garbage\n\rnetwork=\r1\r\n", 24) << condition(1, 0, 1);
}

void NetworkTest::startLog()
{
    QFETCH(QByteArray, log);
    QFETCH(NetworkCondition, expected);
    TestMachine m;
    if (log != "-")
        m.write("drives/X/tmpReg/startNetwork.log", log);
    NetworkCondition got = condition(7, 7, 7, "stale", "stale", "stale", "stale");
    got.bootLetter = QStringLiteral("Q");
    readStartNetwork(got);
    QCOMPARE(describe(got), describe(expected));
}

void NetworkTest::startLogHugeLine()
{
    // One line past the reader's limit, with no line end: the head is kept and nothing hangs; a
    // key on the line after an overlong one is still read.
    TestMachine m;
    QByteArray log = "ipAdd=" + QByteArray(int(netread::maxLineBytes) * 3, '7') + "\nnetwork=1";
    m.write("drives/X/tmpReg/startNetwork.log", log);
    NetworkCondition got;
    readStartNetwork(got);
    QCOMPARE(got.network, 1);
    QCOMPARE(got.dhcp, 0);
    QVERIFY(got.ipAdd.size() > 1000 && got.ipAdd.size() < netread::maxLineBytes);
}

void NetworkTest::reportParser_data()
{
    QTest::addColumn<QString>("report");
    QTest::addColumn<NetworkCondition>("expected");

    QTest::newRow("static, connected, firewall on")
        << QStringLiteral("Card\nMAC Address: 00-11-22-33-44-55\nOperation status: Connected\n"
                          "Network Connection: Ethernet\nDHCP Enabled: No\n"
                          "IP Address: 192.168.1.50\nSubnet Mask: 255.255.255.0\n"
                          "Default Gateway: 192.168.1.1\nDNS Server: 192.168.1.1\nFirewall: On")
        << condition(1, 1, 0, "192.168.1.50", "255.255.255.0", "192.168.1.1", "192.168.1.1");
    QTest::newRow("dhcp server line is not read")
        << QStringLiteral("Operation status: Disconnected\nDHCP Enabled: Yes\n"
                          "DHCP Server: 10.0.0.1\nFirewall: Off")
        << condition(0, 0, 1);
    QTest::newRow("missing lines leave the cleared fields")
        << QStringLiteral("No Adapter") << condition(0, 0, 0);
    QTest::newRow("empty gateway, status other than the two words")
        << QStringLiteral("Operation status: Whatever\nDefault Gateway: \nFirewall: on")
        << condition(1, 0, 0);
    QTest::newRow("prefix away from column 0 or in another case")
        << QStringLiteral(" IP Address: 1.2.3.4\nip address: 1.2.3.4\nFirewall: On\n")
        << condition(0, 1, 0);
    QTest::newRow("the character after the colon goes whatever it is")
        << QStringLiteral("IP Address:x1.2.3.4\nSubnet Mask:") << condition(0, 0, 0, "1.2.3.4");
}

void NetworkTest::reportParser()
{
    QFETCH(QString, report);
    QFETCH(NetworkCondition, expected);
    NetworkCondition got;
    parseAdapterReport(report, got);
    QCOMPARE(describe(got), describe(expected));
}

void NetworkTest::changed_data()
{
    QTest::addColumn<NetworkCondition>("a");
    QTest::addColumn<NetworkCondition>("b");
    QTest::addColumn<bool>("expected");

    const NetworkCondition dhcp = condition(1, 0, 1);
    const NetworkCondition fixed = condition(1, 0, 0, "10.0.0.5", "255.0.0.0", "10.0.0.1", "10.0.0.254");
    QTest::newRow("same") << fixed << fixed << false;
    QTest::newRow("connection differs") << dhcp << condition(0, 0, 1) << true;
    QTest::newRow("dhcp differs") << dhcp << condition(1, 0, 0) << true;
    QTest::newRow("dhcp: firewall counts") << dhcp << condition(1, 1, 1) << true;
    QTest::newRow("dhcp: addresses do not count")
        << dhcp << condition(1, 0, 1, "1.1.1.1", "2.2.2.2", "3.3.3.3", "4.4.4.4") << false;
    QTest::newRow("static: firewall does not count")
        << fixed << condition(1, 1, 0, "10.0.0.5", "255.0.0.0", "10.0.0.1", "10.0.0.254") << false;
    QTest::newRow("static: gateway counts")
        << fixed << condition(1, 0, 0, "10.0.0.5", "255.0.0.0", "10.0.0.1", "") << true;
    QTest::newRow("static: mask counts")
        << fixed << condition(1, 0, 0, "10.0.0.5", "255.255.0.0", "10.0.0.1", "10.0.0.254") << true;
    QTest::newRow("missing log against a connected adapter")
        << condition(0, 0, 1) << condition(1, 0, 1) << true;
}

void NetworkTest::changed()
{
    QFETCH(NetworkCondition, a);
    QFETCH(NetworkCondition, b);
    QFETCH(bool, expected);
    QCOMPARE(networkChanged(a, b), expected);
    QCOMPARE(networkChanged(b, a), expected);
}

void NetworkTest::bringUpLogs_data()
{
    QTest::addColumn<QByteArray>("log");   // "-" : no log
    QTest::addColumn<bool>("staticOk");
    QTest::addColumn<bool>("mapOk");

    const QByteArray done = "The command completed successfully.";
    QTest::newRow("missing") << QByteArray("-") << false << false;
    QTest::newRow("empty") << QByteArray("") << true << false;
    QTest::newRow("one line among empty ones") << QByteArray("\r\n\r\nIP set\r\n\r\n\n") << true << false;
    QTest::newRow("only line ends and CRs") << QByteArray("\r\r\n\n\r") << true << false;
    QTest::newRow("two lines: the script complained") << QByteArray("a\nb") << false << false;
    QTest::newRow("success line among errors")
        << QByteArray("System error 53 has occurred.\r\n" + done + "\r\nSystem error 5\r\n")
        << false << true;
    QTest::newRow("success text inside a longer line") << QByteArray("> " + done + " <") << true << true;
    QTest::newRow("lower-case success text does not count")
        << done.toLower() << true << false;
    QTest::newRow("binary") << QByteArray("\x00\x01\x02", 3) << true << false;
}

void NetworkTest::bringUpLogs()
{
    QFETCH(QByteArray, log);
    QFETCH(bool, staticOk);
    QFETCH(bool, mapOk);
    TestMachine m;
    if (log != "-")
        m.write("drives/X/the.log", log);
    QCOMPARE(bringup::staticIpSucceeded(QStringLiteral("x:/THE.log")), staticOk);
    QCOMPARE(bringup::mapNetworkSucceeded(QStringLiteral("x:/the.LOG")), mapOk);
}

KELPIE_TEST_MAIN(NetworkTest)
#include "tst_network.moc"
