// The network room of the Win32 machine: the device walk, the machine hive, the IP Helper
// tables, the workstation and the firewall manager. Each routine hands back what the calls
// answered; buffers grow as the calls tell and every handle and interface is released here.

#include "winplatform.h"

#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <winsock2.h>
#include <windows.h>
#include <iphlpapi.h>
#include <lm.h>
#include <netfw.h>
#include <objbase.h>
#include <setupapi.h>

#include <cstdlib>
#include <cstring>
#include <cwchar>

#include "platform/win32values.h"

static_assert(win32::errorFileNotFound == ERROR_FILE_NOT_FOUND
                  && win32::errorInvalidParameter == ERROR_INVALID_PARAMETER
                  && win32::errorNoData == ERROR_NO_DATA && win32::errorMoreData == ERROR_MORE_DATA
                  && win32::errorNoMoreItems == ERROR_NO_MORE_ITEMS,
              "result codes");
static_assert(win32::ifOperStatusOperational == IF_OPER_STATUS_OPERATIONAL
                  && win32::ifOperStatusDisconnected == IF_OPER_STATUS_DISCONNECTED
                  && win32::variantTrue == quint16(VARIANT_TRUE)
                  && win32::regdbClassNotRegistered == qint32(REGDB_E_CLASSNOTREG),
              "network states");

namespace {

// A wide text of at most `capacity` characters, read up to its first terminator.
QString wideText(const wchar_t *text, size_t capacity)
{
    return QString::fromWCharArray(text, int(wcsnlen(text, capacity)));
}

QString ansiText(const char *text, size_t capacity)
{
    return QString::fromLocal8Bit(text, int(strnlen(text, capacity)));
}

// A string property with the two-call pattern: the size first, then the value. From a
// multi-string the first string only. Empty when it cannot be read.
QString deviceProperty(HDEVINFO set, SP_DEVINFO_DATA *device, DWORD property)
{
    DWORD size = 0;
    if (SetupDiGetDeviceRegistryPropertyW(set, device, property, nullptr, nullptr, 0, &size)
        || GetLastError() != ERROR_INSUFFICIENT_BUFFER || size == 0)
        return QString();
    // One character more than told, zeroed, so that a value without terminator still ends.
    auto *buffer = static_cast<BYTE *>(calloc(size + sizeof(wchar_t), 1));
    if (!buffer)
        return QString();
    QString text;
    if (SetupDiGetDeviceRegistryPropertyW(set, device, property, nullptr, buffer, size, nullptr))
        text = wideText(reinterpret_cast<const wchar_t *>(buffer), size / sizeof(wchar_t));
    free(buffer);
    return text;
}

QString addrText(const IP_ADDR_STRING &a, bool mask)
{
    const char *s = mask ? a.IpMask.String : a.IpAddress.String;
    return ansiText(s, sizeof a.IpAddress.String);
}

} // namespace

DeviceWalk WinPlatform::deviceWalk()
{
    DeviceWalk walk;
    HDEVINFO set = SetupDiCreateDeviceInfoList(nullptr, nullptr);
    if (set == INVALID_HANDLE_VALUE) {
        walk.lastError = GetLastError();
        return walk;
    }
    HDEVINFO all = SetupDiGetClassDevsExW(nullptr, nullptr, nullptr, DIGCF_PRESENT | DIGCF_ALLCLASSES,
                                          set, nullptr, nullptr);
    if (all == INVALID_HANDLE_VALUE) {
        walk.lastError = GetLastError();
        SetupDiDestroyDeviceInfoList(set);
        return walk;
    }
    walk.ok = true;
    SP_DEVINFO_DATA device;
    ZeroMemory(&device, sizeof device);
    device.cbSize = sizeof device;
    for (DWORD i = 0; SetupDiEnumDeviceInfo(all, i, &device); ++i) {
        NetDeviceRecord r;
        r.className = deviceProperty(all, &device, SPDRP_CLASS);
        r.guidData1 = device.ClassGuid.Data1;
        r.guidData2 = device.ClassGuid.Data2;
        r.guidData3 = device.ClassGuid.Data3;
        memcpy(r.guidData4, device.ClassGuid.Data4, 8);
        r.classGuid = deviceProperty(all, &device, SPDRP_CLASSGUID);
        r.description = deviceProperty(all, &device, SPDRP_DEVICEDESC);
        r.hardwareId = deviceProperty(all, &device, SPDRP_HARDWAREID);
        walk.devices.append(r);
    }
    // Given a set, the call fills that set and hands it back: one handle to destroy then.
    if (all != set)
        SetupDiDestroyDeviceInfoList(all);
    SetupDiDestroyDeviceInfoList(set);
    return walk;
}

bool WinPlatform::machineSubkeys(const QString &path, QList<RegSubkey> *answers)
{
    HKEY key = nullptr;
    if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, wide(path), 0, KEY_ALL_ACCESS, &key) != ERROR_SUCCESS)
        return false;
    wchar_t name[2048];
    // A bound on the indexes, so that a registry that keeps answering cannot hold the shell.
    for (DWORD i = 0; i < 100000; ++i) {
        name[0] = 0;
        const LONG result = RegEnumKeyW(key, i, name, 2048);
        RegSubkey a;
        a.result = quint32(result);
        if (result == ERROR_SUCCESS)
            a.name = wideText(name, 2048);
        answers->append(a);
        if (result != ERROR_SUCCESS && result != ERROR_MORE_DATA)
            break;
    }
    RegCloseKey(key);
    return true;
}

RegStringRead WinPlatform::machineString(const QString &path, const QString &name, int bufferBytes)
{
    RegStringRead r;
    HKEY key = nullptr;
    if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, wide(path), 0, KEY_ALL_ACCESS, &key) != ERROR_SUCCESS)
        return r;
    r.opened = true;
    QByteArray buffer(qMax(bufferBytes, 0), '\0');
    DWORD type = 0;
    DWORD size = DWORD(buffer.size());
    const LONG result = RegQueryValueExW(key, wide(name), nullptr, &type,
                                         reinterpret_cast<BYTE *>(buffer.data()), &size);
    r.result = quint32(result);
    r.type = type;
    if (result == ERROR_SUCCESS)
        r.data = buffer.left(int(qMin<DWORD>(size, DWORD(buffer.size()))));
    RegCloseKey(key);
    return r;
}

quint32 WinPlatform::networkParams(QStringList *dnsServers)
{
    ULONG size = 600;
    auto *info = static_cast<FIXED_INFO *>(calloc(size, 1));
    if (!info)
        return ERROR_NOT_ENOUGH_MEMORY;
    DWORD result = GetNetworkParams(info, &size);
    if (result == ERROR_BUFFER_OVERFLOW) {
        free(info);
        info = static_cast<FIXED_INFO *>(calloc(size, 1));
        if (!info)
            return ERROR_NOT_ENOUGH_MEMORY;
    }
    result = GetNetworkParams(info, &size);
    if (result == ERROR_SUCCESS) {
        for (const IP_ADDR_STRING *s = &info->DnsServerList; s; s = s->Next)
            dnsServers->append(addrText(*s, false));
    }
    free(info);
    return result;
}

quint32 WinPlatform::adaptersInfo(QList<IpAdapterEntry> *entries)
{
    ULONG size = 704;
    auto *info = static_cast<IP_ADAPTER_INFO *>(calloc(size, 1));
    if (!info)
        return ERROR_NOT_ENOUGH_MEMORY;
    DWORD result = GetAdaptersInfo(info, &size);
    if (result == ERROR_BUFFER_OVERFLOW) {
        free(info);
        info = static_cast<IP_ADAPTER_INFO *>(calloc(size, 1));
        if (!info)
            return ERROR_NOT_ENOUGH_MEMORY;
        result = GetAdaptersInfo(info, &size);
    }
    if (result == ERROR_SUCCESS) {
        for (const IP_ADAPTER_INFO *a = info; a; a = a->Next) {
            IpAdapterEntry e;
            e.adapterName = ansiText(a->AdapterName, sizeof a->AdapterName);
            e.description = ansiText(a->Description, sizeof a->Description);
            for (const IP_ADDR_STRING *s = &a->IpAddressList; s; s = s->Next)
                e.ipAddresses.append({addrText(*s, false), addrText(*s, true)});
            for (const IP_ADDR_STRING *s = &a->GatewayList; s; s = s->Next)
                e.gateways.append(addrText(*s, false));
            e.dhcpEnabled = a->DhcpEnabled;
            for (const IP_ADDR_STRING *s = &a->DhcpServer; s; s = s->Next)
                e.dhcpServers.append(addrText(*s, false));
            entries->append(e);
        }
    }
    free(info);
    return result;
}

quint32 WinPlatform::interfaceInfo(QList<InterfaceRow> *rows)
{
    ULONG size = 264;
    auto *table = static_cast<IP_INTERFACE_INFO *>(calloc(size, 1));
    if (!table)
        return ERROR_NOT_ENOUGH_MEMORY;
    DWORD result = GetInterfaceInfo(table, &size);
    if (result == ERROR_INSUFFICIENT_BUFFER) {
        free(table);
        table = static_cast<IP_INTERFACE_INFO *>(calloc(size, 1));
        if (!table)
            return ERROR_NOT_ENOUGH_MEMORY;
    }
    result = GetInterfaceInfo(table, &size);
    if (result == ERROR_SUCCESS) {
        // No more rows than the buffer holds, whatever the count says.
        const size_t room = (size - offsetof(IP_INTERFACE_INFO, Adapter)) / sizeof(IP_ADAPTER_INDEX_MAP);
        const size_t count = qMin<size_t>(size_t(qMax<LONG>(table->NumAdapters, 0)), room);
        for (size_t i = 0; i < count; ++i) {
            InterfaceRow row;
            row.index = qint32(table->Adapter[i].Index);
            row.name = wideText(table->Adapter[i].Name, MAX_ADAPTER_NAME);
            rows->append(row);
        }
    }
    free(table);
    return result;
}

IfEntryFacts WinPlatform::interfaceEntry(const QString &adapterName)
{
    IfEntryFacts facts;
    wchar_t name[MAX_ADAPTER_NAME + 1] = {};
    adapterName.left(MAX_ADAPTER_NAME).toWCharArray(name);
    ULONG index = 0;
    facts.indexResult = GetAdapterIndex(name, &index);
    if (facts.indexResult != NO_ERROR)
        return facts;
    MIB_IFROW row;
    ZeroMemory(&row, sizeof row);
    row.dwIndex = index;
    facts.entryResult = GetIfEntry(&row);
    if (facts.entryResult != NO_ERROR)
        return facts;
    facts.physAddr = QByteArray(reinterpret_cast<const char *>(row.bPhysAddr), MAXLEN_PHYSADDR);
    facts.operStatus = quint32(row.dwOperStatus);
    return facts;
}

WorkstationFacts WinPlatform::workstationFacts()
{
    WorkstationFacts facts;
    LPBYTE buffer = nullptr;
    facts.result = NetWkstaGetInfo(nullptr, 102, &buffer);
    if (facts.result == NERR_Success && buffer) {
        const auto *info = reinterpret_cast<const WKSTA_INFO_102 *>(buffer);
        facts.computerName = QString::fromWCharArray(info->wki102_computername);
        facts.langroup = QString::fromWCharArray(info->wki102_langroup);
    }
    if (buffer)
        NetApiBufferFree(buffer);
    return facts;
}

FirewallFacts WinPlatform::firewallFacts()
{
    FirewallFacts facts;
    const HRESULT init = CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED | COINIT_DISABLE_OLE1DDE);
    if (FAILED(init) && init != RPC_E_CHANGED_MODE) {
        facts.failedStep = 1;
        facts.hresult = qint32(init);
        return facts;
    }
    static const CLSID clsidNetFwMgr = {0x304CE942, 0x6E39, 0x40D8,
                                        {0x94, 0x3A, 0xB9, 0x13, 0xC4, 0x0C, 0x9C, 0xD4}};
    static const IID iidNetFwMgr = {0xF7898AF5, 0xCAC4, 0x4632,
                                    {0xA2, 0xEC, 0xDA, 0x06, 0xE5, 0x11, 0x1A, 0xF2}};
    INetFwMgr *manager = nullptr;
    INetFwPolicy *policy = nullptr;
    INetFwProfile *profile = nullptr;
    HRESULT hr = CoCreateInstance(clsidNetFwMgr, nullptr, CLSCTX_INPROC_SERVER, iidNetFwMgr,
                                  reinterpret_cast<void **>(&manager));
    if (FAILED(hr)) {
        facts.failedStep = 2;
    } else {
        hr = manager->get_LocalPolicy(&policy);
        if (SUCCEEDED(hr))
            hr = policy->get_CurrentProfile(&profile);
        if (FAILED(hr))
            facts.failedStep = 3;
    }
    if (policy)
        policy->Release();
    if (manager)
        manager->Release();
    // A chain that failed on the way has no profile: nothing is released that was not obtained.
    if (profile) {
        VARIANT_BOOL enabled = VARIANT_FALSE;
        hr = profile->get_FirewallEnabled(&enabled);
        facts.enabled = quint16(enabled);
        profile->Release();
    }
    facts.hresult = qint32(hr);
    if (SUCCEEDED(init))
        CoUninitialize();
    return facts;
}
