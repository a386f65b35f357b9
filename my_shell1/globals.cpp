#include "globals.h"

bool secondInstance;
int screenWidth;
int screenHeight;
double pixelRatio;
bool winPeMode;
QString appRun;
QString appArg;
bool removableBoot;
int mediumDiskNumber = -1;
QString bootLetter;
QString savedVolumeLetter;
QString desktopPath = QStringLiteral("X:/Users/Default/Desktop/");
QString startMenuPath =
    QStringLiteral("X:/Users/Default/AppData/Roaming/Microsoft/Windows/Start Menu/Programs/");
QString menuStyle;
my_userAction *selectedUserAction;
int productNumber;
QString productVersion;
int productCode;

int displayWidth;
int displayHeight;
bool modalOpen;
bool shuttingDown;
bool tooltipStale = true;
quint16 lastLayoutLanguage;
WorkArea savedWorkArea;
QPoint dragOffset;

QString shellTitle;
QString shellVersion;
QString webDefault;
QList<RunEntry> toRunList;

QString savedTwin(const QString &savedFolder, const QString &path)
{
    if (savedVolumeLetter.isEmpty())
        return QString();
    return savedVolumeLetter + QStringLiteral(":/") + savedFolder + path.mid(2);
}

void removeSavedTwin(const QString &savedFolder, const QString &path)
{
    const QString twin = savedTwin(savedFolder, path);
    if (!twin.isEmpty())
        sys().removeFile(twin);
}

QList<QChar> driveLetters(quint32 mask)
{
    QList<QChar> letters;
    for (int index = 0; index < 26; ++index) {
        if (mask & (1u << index))
            letters.append(QChar(char('A' + index)));
    }
    return letters;
}

bool isDesktopIni(const QString &fileName)
{
    return fileName.toLower() == QLatin1String("desktop.ini");
}

void storeProductFacts()
{
    productNumber = 14;
    productVersion = QStringLiteral("14.0.1");
    productCode = 0;
}

QFont &menuFont()
{
    static QFont font(QStringLiteral("Tahoma"), 11);
    return font;
}

void resetGlobals()
{
    secondInstance = false;
    screenWidth = screenHeight = 0;
    pixelRatio = 0;
    winPeMode = false;
    appRun.clear();
    appArg.clear();
    removableBoot = false;
    mediumDiskNumber = -1;
    bootLetter.clear();
    savedVolumeLetter.clear();
    desktopPath = QStringLiteral("X:/Users/Default/Desktop/");
    startMenuPath =
        QStringLiteral("X:/Users/Default/AppData/Roaming/Microsoft/Windows/Start Menu/Programs/");
    productNumber = productCode = 0;
    productVersion.clear();
    displayWidth = displayHeight = 0;
    modalOpen = shuttingDown = false;
    tooltipStale = true;
    lastLayoutLanguage = 0;
    savedWorkArea = WorkArea();
    dragOffset = QPoint();
    shellTitle.clear();
    shellVersion.clear();
    webDefault.clear();
    toRunList.clear();
    selectedUserAction = nullptr;
}
