#include "simplatform.h"
#include "simshared.h"

#include <QLocale>

using namespace sim;

// --- display, work area, memory ---

MemoryStatus SimPlatform::memoryStatus()
{
    const MemoryStatus &m = currentFacts().memory;
    if (!m.ok)
        return MemoryStatus();
    return m;
}

bool SimPlatform::currentDisplayMode(DisplayMode *mode)
{
    if (mode)
        *mode = currentFacts().currentMode;
    return true;
}

bool SimPlatform::displayMode(int index, DisplayMode *mode)
{
    const SimMachineFacts &f = currentFacts();
    if (index < 0 || index >= f.modes.size())
        return false;
    if (mode)
        *mode = f.modes.at(index);
    return true;
}

bool SimPlatform::workArea(WorkArea *area)
{
    const SimMachineFacts &f = currentFacts();
    if (!area)
        return true;
    if (m_workAreaSet) {
        *area = m_workArea;
    } else {
        *area = WorkArea();
        area->right = f.currentMode.width;
        area->bottom = f.currentMode.height;
    }
    return true;
}

bool SimPlatform::setWorkArea(const WorkArea &area)
{
    currentFacts();   // a pending change of mode must not undo this write later
    m_workArea = area;
    m_workAreaSet = true;
    appendJournal({QStringLiteral("workarea"), QString::number(area.left), QString::number(area.top),
                   QString::number(area.right), QString::number(area.bottom)});
    return true;
}

bool SimPlatform::screenSize(int *width, int *height)
{
    const SimMachineFacts &f = currentFacts();
    if (!f.screenKnown)
        return false;
    if (width)
        *width = f.screenWidth;
    if (height)
        *height = f.screenHeight;
    return true;
}

void SimPlatform::reloadWallpaper()
{
    appendJournal({QStringLiteral("wallpaper")});
}

// --- keyboard ---

quint64 SimPlatform::foregroundKeyboardLayout()
{
    return currentFacts().foregroundLayout;
}

QList<quint64> SimPlatform::keyboardLayouts()
{
    return currentFacts().layouts;
}

int SimPlatform::keyboardLayoutCount()
{
    return currentFacts().layouts.size();
}

QString SimPlatform::localeLanguageName(quint32 lcid)
{
    static const QHash<quint32, QString> names = {
        {1025, QStringLiteral("Arabic (Saudi Arabia)")},
        {1026, QStringLiteral("Bulgarian")},
        {1028, QStringLiteral("Chinese (Taiwan)")},
        {1029, QStringLiteral("Czech")},
        {1030, QStringLiteral("Danish")},
        {1031, QStringLiteral("German (Germany)")},
        {1032, QStringLiteral("Greek")},
        {1033, QStringLiteral("English (United States)")},
        {1034, QStringLiteral("Spanish (Spain)")},
        {1035, QStringLiteral("Finnish")},
        {1036, QStringLiteral("French (France)")},
        {1037, QStringLiteral("Hebrew")},
        {1038, QStringLiteral("Hungarian")},
        {1040, QStringLiteral("Italian (Italy)")},
        {1041, QStringLiteral("Japanese")},
        {1042, QStringLiteral("Korean")},
        {1043, QStringLiteral("Dutch (Netherlands)")},
        {1044, QStringLiteral("Norwegian (Bokmal)")},
        {1045, QStringLiteral("Polish")},
        {1046, QStringLiteral("Portuguese (Brazil)")},
        {1049, QStringLiteral("Russian")},
        {1050, QStringLiteral("Croatian")},
        {1053, QStringLiteral("Swedish")},
        {1055, QStringLiteral("Turkish")},
        {1058, QStringLiteral("Ukrainian")},
        {2052, QStringLiteral("Chinese (PRC)")},
        {2055, QStringLiteral("German (Switzerland)")},
        {2057, QStringLiteral("English (United Kingdom)")},
        {2070, QStringLiteral("Portuguese (Portugal)")},
        {3076, QStringLiteral("Chinese (Hong Kong S.A.R.)")},
        {3082, QStringLiteral("Spanish (Spain)")},
    };
    return names.value(lcid);
}

short SimPlatform::asyncKeyState(int vk)
{
    return m_heldKeys.contains(vk) ? short(0x8000) : short(0);
}
