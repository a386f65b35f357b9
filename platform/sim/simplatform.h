#pragma once
// A Windows PE machine played by a folder: drives/<LETTER>/ are the drives, registry.reg the
// registry (regedit export format), machine.ini the rest, journal.log one line per effect.

#include "platform/platform.h"

class SimPlatform : public Platform {
public:
    explicit SimPlatform(const QString &machineFolder);
    ~SimPlatform() override;

    QString machineFolder() const;
    // Journal lines written so far (tests read them); each is tab-separated, operation first.
    QStringList journal() const;
};
