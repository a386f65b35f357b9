#pragma once
// The network state as one record: read from the start-up log, parsed back from an adapter's
// report, compared, saved. The report's line forms are a format: the writer (ip_settings) and
// the parser here agree character by character.

#include "my_shell1/linefile.h"

#include <QString>

class QIODevice;

struct NetworkCondition {
    qint32 network = 0;    // adapter connected
    qint32 firewall = 0;   // firewall on
    qint32 dhcp = 0;       // address by DHCP
    QString ipAdd;
    QString ipMask;
    QString ipDNS;
    QString ipGateway;
    QString bootLetter;    // the start-up log only
};

// Fills the record from x:/tmpReg/startNetwork.log. Without the log: dhcp 1, network and
// firewall 0, the texts empty.
void readStartNetwork(NetworkCondition &record);
// Reads a report back into a record whose fields the caller has cleared; a missing line leaves
// its field alone.
void parseAdapterReport(const QString &report, NetworkCondition &record);
// Whether the network settings differ in a way that counts: with DHCP the firewall decides,
// with a static address the four addresses do.
bool networkChanged(const NetworkCondition &a, const NetworkCondition &b);

// The logs are read by the shell's one line rule.
namespace netread {
using linefile::maxLineBytes;
using linefile::nextLine;
} // namespace netread
