#pragma once
// Numbers of the Win32 interface that the shell and the simulated machine both speak in. The
// Win32 side checks each against the system's own headers.

#include <QtGlobal>

namespace win32 {

// RegisterHotKey modifiers.
constexpr quint32 modAlt = 0x0001;
constexpr quint32 modControl = 0x0002;
constexpr quint32 modShift = 0x0004;
constexpr quint32 modWin = 0x0008;

// Virtual keys.
constexpr int vkShift = 0x10;
constexpr int vkControl = 0x11;
constexpr int vkMenu = 0x12;
constexpr int vkDelete = 0x2E;
constexpr int vkD = 0x44;
constexpr int vkLeftWin = 0x5B;
constexpr int vkLShift = 0xA0;
constexpr int vkLControl = 0xA2;
constexpr int vkLMenu = 0xA4;

// The low-level keyboard hook: nCode of a key event, and the key-up flag of KBDLLHOOKSTRUCT.
constexpr int hcAction = 0;
constexpr quint32 llkhfUp = 0x80;

// Registry value types.
constexpr quint32 regNone = 0;
constexpr quint32 regSz = 1;
constexpr quint32 regExpandSz = 2;
constexpr quint32 regBinary = 3;
constexpr quint32 regDword = 4;
constexpr quint32 regMultiSz = 7;
constexpr quint32 regQword = 11;

constexpr quint32 fileDeviceDisk = 7;            // FILE_DEVICE_DISK
constexpr quint32 storageDeviceNumberSize = 12;  // sizeof(STORAGE_DEVICE_NUMBER)

// ShellExecuteW results at or below 32 are errors; these two the simulated machine gives.
constexpr int seErrFileNotFound = 2;   // SE_ERR_FNF
constexpr int seErrPathNotFound = 3;   // SE_ERR_PNF

// ShowWindow commands, the fMask that asks the shell for the item's context menu verbs, and the
// answer of GetTimeZoneInformation when it fails.
constexpr int swHide = 0;                        // SW_HIDE
constexpr int swShowNormal = 1;                  // SW_SHOWNORMAL
constexpr quint32 seeMaskInvokeIdList = 12;      // SEE_MASK_INVOKEIDLIST
constexpr quint32 timeZoneIdInvalid = 0xFFFFFFFF;   // TIME_ZONE_ID_INVALID

// The network roads: result codes, the operational states and the firewall manager's true.
constexpr quint32 errorFileNotFound = 2;       // ERROR_FILE_NOT_FOUND
constexpr quint32 errorInvalidParameter = 87;  // ERROR_INVALID_PARAMETER
constexpr quint32 errorNoData = 232;           // ERROR_NO_DATA
constexpr quint32 errorMoreData = 234;         // ERROR_MORE_DATA
constexpr quint32 errorNoMoreItems = 259;      // ERROR_NO_MORE_ITEMS
constexpr quint32 ifOperStatusDisconnected = 2;   // IF_OPER_STATUS_DISCONNECTED
constexpr quint32 ifOperStatusOperational = 5;    // IF_OPER_STATUS_OPERATIONAL
constexpr quint16 variantTrue = 0xFFFF;        // VARIANT_TRUE
constexpr qint32 regdbClassNotRegistered = qint32(0x80040154);   // REGDB_E_CLASSNOTREG

} // namespace win32
