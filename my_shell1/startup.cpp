#include "startup.h"

#include "globals.h"
#include "my_shell1.h"
#include "platform/platform.h"
#include "startupfiles.h"
#include "look/fontwarmup.h"
#include "look/stylesheets.h"
#include "network/netcondition.h"
#include "settings/savedvolume.h"

#include <QApplication>
#include <QFile>
#include <QScreen>

namespace {

using namespace win32;

} // namespace

bool probeSecondInstance()
{
    QStringList names;
    if (!sys().processNames(&names))
        return false;
    const QString self = QStringLiteral("AUTORUN.EXE");
    int count = 0;
    for (const QString &name : names) {
        if (name.toUpper() == self && ++count > 1)
            return true;
    }
    return false;
}

void readScreen()
{
    const QScreen *screen = QGuiApplication::primaryScreen();
    if (screen) {
        screenWidth = screen->size().width();
        screenHeight = screen->size().height();
        pixelRatio = screen->devicePixelRatio();
    }
    int width = 0, height = 0;
    if (sys().screenSize(&width, &height)) {
        screenWidth = width;
        screenHeight = height;
    }
}

void applyApplicationLook(QApplication &app)
{
    app.setStyleSheet(toolTipStyleSheet());
    menuStyle = menuStyleSheet();
    storeProductFacts();
}

bool readWinPeMode()
{
    const RegValue value = sys().readUserDword(QStringLiteral("Software\\Morvane Works"),
                                               QStringLiteral("WinPE"));
    return value.found && value.type == regDword && value.data != 0;
}

int mediumDiskNumberOf(QChar letter)
{
    const DeviceNumberAnswer answer = sys().deviceNumber(letter);
    if (answer.opened && answer.ok && answer.bytesReturned == storageDeviceNumberSize
        && answer.deviceType == fileDeviceDisk)
        return int(answer.deviceNumber);
    return -1;
}

int scanSettingsFile()
{
    int language = 0;
    for (const QChar letter : driveLetters(sys().logicalDrives())) {
        if (letter < QLatin1Char('C'))
            continue;   // the floppy letters are never asked
        const QString path = sys().hostPath(QString(letter) + QStringLiteral(":\\_kelpie.ini"));
        if (!QFile::exists(path))
            continue;
        // The first drive that holds the file ends the scan, whatever the file holds.
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly))
            return language;
        const SettingsFileFacts facts = startupfiles::readSettingsFile(&file);
        if (facts.hasAppRun)
            appRun = facts.appRun;
        if (facts.hasArg)
            appArg = facts.arg;
        if (facts.removable) {
            removableBoot = true;
            mediumDiskNumber = mediumDiskNumberOf(letter);
        }
        return facts.imageLanguage;
    }
    return language;
}

void passImageLanguage(int language)
{
    sys().writeUserDword(QStringLiteral("Software\\Morvane Works\\Tessel Imager"),
                         QStringLiteral("Language"), quint32(language));
    sys().sleepMs(100);
}

void readBootLetter()
{
    NetworkCondition start;
    readStartNetwork(start);
    bootLetter = start.bootLetter;
}

void restoreSavedFolders()
{
    const QString root = findSavedVolume(QStringList() << QStringLiteral("Start Menu.1")
                                                       << QStringLiteral("Desktop.1"));
    if (root.length() > 1) {
        savedVolumeLetter = root.left(1);
        restoreSavedFiles(savedVolumeLetter);
    }
}

void prepareShell(QApplication &app)
{
    readScreen();
    applyApplicationLook(app);
    winPeMode = readWinPeMode();
    sys().raisePriority();
    passImageLanguage(scanSettingsFile());
    readBootLetter();
    // The restore retargets shortcuts through the shell link object, which needs COM here.
    sys().prepareShellLinks();
    restoreSavedFolders();
    if (winPeMode)
        writeConditionLogs();
}

int runShell(int argc, char *argv[])
{
    secondInstance = probeSecondInstance();
    // The shell draws nothing with OpenGL, yet under X the toolkit loads its whole GL stack for
    // the first native window (some 50 MiB and 20 ms). Left on where the variable asks for it;
    // other platforms do not read it.
    if (qEnvironmentVariableIsEmpty("QT_XCB_GL_INTEGRATION"))
        qputenv("QT_XCB_GL_INTEGRATION", "none");
    QApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QApplication app(argc, argv);
    // The font set-up runs on a second core while the machine is read and the windows are made.
    FontWarmUp fonts({QApplication::font(), menuFont()});
    prepareShell(app);

    int result = 0;
    {
        my_shell1 shell;
        fonts.wait();
        shell.show();
        QObject::connect(&app, &QGuiApplication::lastWindowClosed, &app, &QCoreApplication::quit);
        QObject::connect(&shell, &my_shell1::closeApp, &app, &QCoreApplication::quit);
        result = app.exec();
        // The turn-off command runs now, while the shell's process and windows still stand.
        for (int i = 0; i < 10; ++i)
            sys().sleepMs(1000);
    }
    return result;
}
