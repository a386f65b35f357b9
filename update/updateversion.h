#pragma once
// Version texts and build numbers: "14.0.1" is build 14001. The version folders of the downloads
// carry the short text that buildToVersion gives back.

#include <QString>

// First part times 1000, second times 100, plus the third; later parts are ignored, a missing or
// non-numeric part counts 0. A third part of 100 or more carries into the minor number.
int versionToBuild(const QString &text);
// Major (build / 1000) % 100, minor (build / 100) % 10, revision build % 100; trailing zero parts
// are left out ("14.1", "14").
QString buildToVersion(int build);
