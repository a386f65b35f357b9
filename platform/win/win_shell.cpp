// Shell objects, the extended shell execution, the time zone and the local clock on Win32.

#include "winplatform.h"

#include <QImage>

#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>
#include <shellapi.h>
#include <shlobj.h>

static_assert(win32::swHide == SW_HIDE && win32::swShowNormal == SW_SHOWNORMAL
                  && win32::seeMaskInvokeIdList == SEE_MASK_INVOKEIDLIST
                  && win32::timeZoneIdInvalid == TIME_ZONE_ID_INVALID,
              "shell room numbers");

namespace {

// The colour bitmap of an icon as 32-bit rows, top row first, taken as premultiplied ARGB.
QImage imageOfBitmap(HBITMAP bitmap)
{
    BITMAP info;
    ZeroMemory(&info, sizeof info);
    if (!bitmap || !GetObjectW(bitmap, sizeof info, &info) || info.bmWidth <= 0 || info.bmHeight <= 0)
        return QImage();
    const int width = info.bmWidth;
    const int height = info.bmHeight;

    BITMAPINFO header;
    ZeroMemory(&header, sizeof header);
    header.bmiHeader.biSize = sizeof(BITMAPINFOHEADER);
    header.bmiHeader.biWidth = width;
    header.bmiHeader.biHeight = -height;   // top-down
    header.bmiHeader.biPlanes = 1;
    header.bmiHeader.biBitCount = 32;
    header.bmiHeader.biCompression = BI_RGB;

    QImage image(width, height, QImage::Format_ARGB32_Premultiplied);
    if (image.isNull())
        return QImage();
    HDC screen = GetDC(nullptr);
    // 32-bit rows need no padding, so the image's rows take the bits as they come.
    const int lines = GetDIBits(screen, bitmap, 0, UINT(height), image.bits(), &header, DIB_RGB_COLORS);
    ReleaseDC(nullptr, screen);
    return lines == height ? image : QImage();
}

void toSystemTime(const SystemTime &in, SYSTEMTIME *out)
{
    out->wYear = in.year;
    out->wMonth = in.month;
    out->wDayOfWeek = in.dayOfWeek;
    out->wDay = in.day;
    out->wHour = in.hour;
    out->wMinute = in.minute;
    out->wSecond = in.second;
    out->wMilliseconds = in.milliseconds;
}

SystemTime fromSystemTime(const SYSTEMTIME &in)
{
    SystemTime out;
    out.year = in.wYear;
    out.month = in.wMonth;
    out.dayOfWeek = in.wDayOfWeek;
    out.day = in.wDay;
    out.hour = in.wHour;
    out.minute = in.wMinute;
    out.second = in.wSecond;
    out.milliseconds = in.wMilliseconds;
    return out;
}

void copyName(const QString &name, WCHAR (&out)[32])
{
    const QString cut = name.left(31);
    ZeroMemory(out, sizeof out);
    cut.toWCharArray(out);
}

// The clock and the zone may only be set while the privilege for it is enabled; it is enabled
// for the one call and put back as it was.
template <typename Call>
bool withPrivilege(const wchar_t *privilege, Call call)
{
    HANDLE token = nullptr;
    TOKEN_PRIVILEGES previous;
    DWORD previousSize = 0;
    bool adjusted = false;
    if (OpenProcessToken(GetCurrentProcess(), TOKEN_ADJUST_PRIVILEGES | TOKEN_QUERY, &token)) {
        TOKEN_PRIVILEGES wanted;
        ZeroMemory(&wanted, sizeof wanted);
        ZeroMemory(&previous, sizeof previous);
        wanted.PrivilegeCount = 1;
        wanted.Privileges[0].Attributes = SE_PRIVILEGE_ENABLED;
        if (LookupPrivilegeValueW(nullptr, privilege, &wanted.Privileges[0].Luid))
            adjusted = AdjustTokenPrivileges(token, FALSE, &wanted, sizeof previous, &previous,
                                             &previousSize);
    }
    const bool ok = call();
    const DWORD error = GetLastError();
    if (adjusted)
        AdjustTokenPrivileges(token, FALSE, &previous, 0, nullptr, nullptr);
    if (token)
        CloseHandle(token);
    SetLastError(error);
    return ok;
}

} // namespace

QImage WinPlatform::shellIcon(const QString &path)
{
    SHFILEINFOW info;
    ZeroMemory(&info, sizeof info);
    const DWORD_PTR found = SHGetFileInfoW(wide(path), 0, &info, sizeof info,
                                           SHGFI_ICON | SHGFI_SYSICONINDEX | SHGFI_USEFILEATTRIBUTES);
    if (!found)
        return QImage();
    QImage image;
    ICONINFO parts;
    ZeroMemory(&parts, sizeof parts);
    if (info.hIcon && GetIconInfo(info.hIcon, &parts)) {
        image = imageOfBitmap(parts.hbmColor);
        if (parts.hbmColor)
            DeleteObject(parts.hbmColor);
        if (parts.hbmMask)
            DeleteObject(parts.hbmMask);
    }
    if (info.hIcon)
        DestroyIcon(info.hIcon);
    return image;
}

ShellExecuteExResult WinPlatform::shellExecuteEx(const ShellExecuteRequest &request)
{
    SHELLEXECUTEINFOW info;
    ZeroMemory(&info, sizeof info);
    info.cbSize = sizeof info;
    info.fMask = request.mask;
    info.hwnd = nullptr;
    info.lpVerb = request.verb.isEmpty() ? nullptr : wide(request.verb);
    info.lpFile = wide(request.file);
    info.lpParameters = wide(request.parameters);
    info.lpDirectory = request.directory.isEmpty() ? nullptr : wide(request.directory);
    info.nShow = request.show;
    // With SEE_MASK_IDLIST and no list Windows makes the item's ID list from lpFile; made here,
    // as not every shell does it (Wine takes the missing list for an error).
    PIDLIST_ABSOLUTE idList = nullptr;
    if ((request.mask & SEE_MASK_IDLIST) && !request.file.isEmpty()) {
        idList = ILCreateFromPathW(wide(request.file));
        info.lpIDList = idList;
    }
    ShellExecuteExResult answer;
    answer.ok = ShellExecuteExW(&info);
    answer.lastError = answer.ok ? 0 : GetLastError();
    answer.instApp = reinterpret_cast<qintptr>(info.hInstApp);
    if (idList)
        ILFree(idList);
    // SEE_MASK_NOCLOSEPROCESS hands back a process handle; the shell keeps none.
    if (info.hProcess)
        CloseHandle(info.hProcess);
    return answer;
}

bool WinPlatform::localTime(SystemTime *time)
{
    SYSTEMTIME now;
    ZeroMemory(&now, sizeof now);
    GetLocalTime(&now);
    if (time)
        *time = fromSystemTime(now);
    return true;
}

bool WinPlatform::setLocalTime(const SystemTime &time)
{
    SYSTEMTIME t;
    toSystemTime(time, &t);
    return withPrivilege(L"SeSystemtimePrivilege", [&t] { return SetLocalTime(&t) != FALSE; });
}

quint32 WinPlatform::timeZoneInformation(TimeZoneInfo *zone)
{
    TIME_ZONE_INFORMATION info;
    ZeroMemory(&info, sizeof info);
    const DWORD answer = GetTimeZoneInformation(&info);
    if (answer != TIME_ZONE_ID_INVALID && zone) {
        zone->bias = info.Bias;
        zone->standardName = QString::fromWCharArray(info.StandardName,
                                                     int(wcsnlen(info.StandardName, 32)));
        zone->standardDate = fromSystemTime(info.StandardDate);
        zone->standardBias = info.StandardBias;
        zone->daylightName = QString::fromWCharArray(info.DaylightName,
                                                     int(wcsnlen(info.DaylightName, 32)));
        zone->daylightDate = fromSystemTime(info.DaylightDate);
        zone->daylightBias = info.DaylightBias;
    }
    return answer;
}

bool WinPlatform::setTimeZoneInformation(const TimeZoneInfo &zone)
{
    TIME_ZONE_INFORMATION info;
    ZeroMemory(&info, sizeof info);
    info.Bias = zone.bias;
    copyName(zone.standardName, info.StandardName);
    toSystemTime(zone.standardDate, &info.StandardDate);
    info.StandardBias = zone.standardBias;
    copyName(zone.daylightName, info.DaylightName);
    toSystemTime(zone.daylightDate, &info.DaylightDate);
    info.DaylightBias = zone.daylightBias;
    return withPrivilege(L"SeTimeZonePrivilege", [&info] { return SetTimeZoneInformation(&info) != FALSE; });
}
