#pragma once
// How the shell learns whether a bring-up script did its work: from the log the script leaves,
// since it is never waited for.

#include <QString>

namespace bringup {

inline const char *const staticIpScript = "x:/program files/kelpie/start_ip.cmd";
inline const char *const staticIpLog = "x:/static_ip.log";
inline const char *const mapNetworkScript = "x:/map_network.cmd";
inline const char *const mapNetworkLog = "x:/map_network.log";
inline const char *const mapSuccessText = "The command completed successfully.";

// The static address log: fewer than 2 non-empty lines is success (the script complains on a
// second line). A log that is missing or does not open is no success.
bool staticIpSucceeded(const QString &logDrivePath);
// The mapping log: at least one line holding the success text, case counting.
bool mapNetworkSucceeded(const QString &logDrivePath);

} // namespace bringup
