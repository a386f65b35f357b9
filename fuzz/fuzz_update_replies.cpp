// The update server's replies: the latest-version text and the download-info body, with the
// setup's file name taken from its URL.

#include "fuzzing.h"
#include "update/downloadinfo.h"
#include "update/updateversion.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString body = QString::fromUtf8(fuzzing::bytes(data, size));
    const int build = versionToBuild(body);
    buildToVersion(build);
    DownloadInfoFields fields;
    if (readDownloadInfo(body, &fields)) {
        // Whatever the server sends, the setup lands inside its version folder.
        const QString name = setupFileName(fields.url);
        if (name.contains(QLatin1Char('/')) || name.contains(QLatin1Char('\\'))
            || name.contains(QLatin1Char(':')) || name == QLatin1String(".")
            || name == QLatin1String(".."))
            __builtin_trap();
    }
    return 0;
}
