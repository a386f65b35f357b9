#include "simplatform.h"
#include "simshared.h"

#include "platform/shelllink/shelllink.h"

#include <QFileInfo>
#include <QSet>

using namespace sim;

namespace {

// Programs that Windows PE itself carries; a bare name of one of these always starts.
const QSet<QString> &systemPrograms()
{
    static const QSet<QString> names = {
        QStringLiteral("wpeutil.exe"),  QStringLiteral("wpeinit.exe"),  QStringLiteral("taskmgr.exe"),
        QStringLiteral("osk.exe"),      QStringLiteral("cmd.exe"),      QStringLiteral("notepad.exe"),
        QStringLiteral("regedit.exe"),  QStringLiteral("reg.exe"),      QStringLiteral("explorer.exe"),
        QStringLiteral("mspaint.exe"),  QStringLiteral("drvload.exe"),  QStringLiteral("diskpart.exe"),
        QStringLiteral("net.exe"),      QStringLiteral("netsh.exe"),    QStringLiteral("ipconfig.exe"),
        QStringLiteral("ping.exe"),     QStringLiteral("wpeutil"),      QStringLiteral("control.exe"),
        QStringLiteral("rundll32.exe"), QStringLiteral("calc.exe"),     QStringLiteral("wscript.exe"),
    };
    return names;
}

bool associated(const QString &suffix)
{
    static const QSet<QString> known = {
        QStringLiteral("exe"), QStringLiteral("com"), QStringLiteral("bat"), QStringLiteral("cmd"),
        QStringLiteral("lnk"), QStringLiteral("txt"), QStringLiteral("log"), QStringLiteral("ini"),
        QStringLiteral("cfg"), QStringLiteral("reg"), QStringLiteral("htm"), QStringLiteral("html"),
        QStringLiteral("url"), QStringLiteral("msc"), QStringLiteral("png"), QStringLiteral("jpg"),
        QStringLiteral("bmp"),
    };
    return known.contains(suffix.toLower());
}

} // namespace

// --- processes ---

bool SimPlatform::processNames(QStringList *names)
{
    const SimMachineFacts &f = currentFacts();
    if (!f.snapshotOk)
        return false;
    if (names)
        *names = f.processes;
    return true;
}

void SimPlatform::raisePriority()
{
    appendJournal({QStringLiteral("priority"), QStringLiteral("high")});
}

void SimPlatform::sleepMs(int ms)
{
    appendJournal({QStringLiteral("sleep"), QString::number(ms)});
}

// --- shell execution ---

ShellResult SimPlatform::startAnswer(const QString &file) const
{
    ShellResult r;
    QString f = file.trimmed();
    if (f.size() >= 2 && f.startsWith(QLatin1Char('"')) && f.endsWith(QLatin1Char('"')))
        f = f.mid(1, f.size() - 2);
    f.replace(QLatin1Char('\\'), QLatin1Char('/'));

    auto fail = [&r](int code) {
        r.code = code;
        r.lastError = quint32(code);
        return r;
    };
    if (f.isEmpty())
        return fail(win32::seErrFileNotFound);

    const bool bare = !f.contains(QLatin1Char('/')) && !isDrivePath(f);
    QStringList candidates;
    if (bare) {
        candidates << f << QStringLiteral("X:/Windows/System32/") + f << QStringLiteral("X:/Windows/") + f;
    } else {
        candidates << f;
    }
    const QString name = f.section(QLatin1Char('/'), -1);
    const bool hasSuffix = name.contains(QLatin1Char('.'));
    static const QStringList runnable = {QStringLiteral(".exe"), QStringLiteral(".com"),
                                         QStringLiteral(".bat"), QStringLiteral(".cmd")};
    for (const QString &c : candidates) {
        QStringList variants{c};
        if (!hasSuffix) {
            for (const QString &ext : runnable)
                variants << c + ext;
        }
        for (const QString &v : variants) {
            const QFileInfo fi(hostPath(v));
            if (!present(fi))
                continue;
            shelllink::Link link;
            if (!fi.isDir() && fi.suffix().compare(QLatin1String("lnk"), Qt::CaseInsensitive) == 0
                && shelllink::readFile(fi.filePath(), &link) && !link.target.isEmpty()) {
                // A shortcut starts its target; one that points at another shortcut stops there.
                const QString target = link.target;
                if (target.endsWith(QLatin1String(".lnk"), Qt::CaseInsensitive))
                    return fail(2);
                return startAnswer(target);
            }
            if (fi.isDir() || associated(fi.suffix())) {
                r.code = 42;
                r.lastError = 0;
                return r;
            }
            return fail(31);
        }
    }

    const QString lowerName = name.toLower();
    const bool known = systemPrograms().contains(lowerName)
                       || (!hasSuffix && systemPrograms().contains(lowerName + QStringLiteral(".exe")));
    QString folder = bare ? QString() : f.left(f.size() - name.size());
    while (folder.endsWith(QLatin1Char('/')))
        folder.chop(1);
    const QString lowerFolder = folder.toLower();
    if (known && (bare || lowerFolder == QLatin1String("x:/windows/system32")
                  || lowerFolder == QLatin1String("x:/windows"))) {
        r.code = 42;
        r.lastError = 0;
        return r;
    }
    if (!bare && !folder.isEmpty() && !QFileInfo(hostPath(folder)).isDir())
        return fail(win32::seErrPathNotFound);
    return fail(win32::seErrFileNotFound);
}

ShellResult SimPlatform::shellExecute(const QString &verb, const QString &file,
                                      const QString &parameters, int show)
{
    appendJournal({QStringLiteral("start"), verb, file, parameters, QString::number(show)});
    QString f = file.trimmed();
    if (f.size() >= 2 && f.startsWith(QLatin1Char('"')) && f.endsWith(QLatin1Char('"')))
        f = f.mid(1, f.size() - 2);
    shelllink::Link link;
    if (f.endsWith(QLatin1String(".lnk"), Qt::CaseInsensitive)
        && shelllink::readFile(hostPath(f), &link) && !link.target.isEmpty())
        appendJournal({QStringLiteral("link"), f, link.target, link.arguments, link.workingDirectory});
    const ShellResult r = startAnswer(file);
    if (r.code > 32)
        leaveBehind(file);
    return r;
}
