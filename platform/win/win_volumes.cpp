// Volumes, the disks under them, the shell's writes on them and shortcut files, through Win32 and
// the shell link object. Every handle and interface is released before the routine returns.

#include "winplatform.h"

#include "platform/shelllink/replacefile.h"

#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>
#include <objbase.h>
#include <objidl.h>
#include <shlobj.h>
#include <shobjidl.h>
#include <winioctl.h>

#include <QDir>
#include <QFile>
#include <QStorageInfo>
#include <vector>

namespace {

HANDLE openDevice(const QString &name, DWORD access, DWORD share)
{
    return CreateFileW(wide(name), access, share, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL,
                       nullptr);
}

// The shell link object's paths fit MAX_PATH by its own rule; a larger buffer keeps a longer
// answer whole, so the caller decides what a long path means.
const int linkBuffer = 32768;

} // namespace

bool WinPlatform::volumeOpens(const QString &volumeName)
{
    HANDLE volume = openDevice(volumeName, FILE_READ_ATTRIBUTES,
                               FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE);
    if (volume == INVALID_HANDLE_VALUE)
        return false;
    CloseHandle(volume);
    return true;
}

DeviceNumberAnswer WinPlatform::volumeDeviceNumber(const QString &volumeName)
{
    return askDeviceNumber(openDevice(volumeName, GENERIC_READ | GENERIC_WRITE,
                                      FILE_SHARE_READ | FILE_SHARE_WRITE));
}

PhysicalDriveAnswer WinPlatform::physicalDrive(quint32 number)
{
    PhysicalDriveAnswer answer;
    const QString name = QStringLiteral("\\\\.\\PhysicalDrive%1").arg(number);
    HANDLE drive = openDevice(name, GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE);
    if (drive == INVALID_HANDLE_VALUE)
        return answer;
    answer.opened = true;
    DWORD bytes = 0;
    DISK_GEOMETRY geometry;
    ZeroMemory(&geometry, sizeof geometry);
    answer.geometryOk = DeviceIoControl(drive, IOCTL_DISK_GET_DRIVE_GEOMETRY, nullptr, 0, &geometry,
                                        sizeof geometry, &bytes, nullptr) != FALSE;
    if (answer.geometryOk) {
        answer.mediaType = quint32(geometry.MediaType);
        PARTITION_INFORMATION partition;
        ZeroMemory(&partition, sizeof partition);
        answer.partitionOk = DeviceIoControl(drive, IOCTL_DISK_GET_PARTITION_INFO, nullptr, 0,
                                             &partition, sizeof partition, &bytes, nullptr) != FALSE;
    }
    if (answer.partitionOk) {
        STORAGE_DEVICE_NUMBER device;
        ZeroMemory(&device, sizeof device);
        answer.numberOk = DeviceIoControl(drive, IOCTL_STORAGE_GET_DEVICE_NUMBER, nullptr, 0, &device,
                                          sizeof device, &bytes, nullptr) != FALSE;
    }
    CloseHandle(drive);
    return answer;
}

StorageDescriptorAnswer WinPlatform::storageDescriptor(const QString &volumeName)
{
    StorageDescriptorAnswer answer;
    HANDLE volume = openDevice(volumeName, FILE_READ_ATTRIBUTES,
                               FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE);
    if (volume == INVALID_HANDLE_VALUE)
        return answer;
    answer.opened = true;
    // One buffer serves as the query going in and the descriptor coming out.
    std::vector<char> buffer(4096, 0);
    auto *query = reinterpret_cast<STORAGE_PROPERTY_QUERY *>(buffer.data());
    query->PropertyId = StorageDeviceProperty;
    query->QueryType = PropertyStandardQuery;
    DWORD bytes = 0;
    answer.ok = DeviceIoControl(volume, IOCTL_STORAGE_QUERY_PROPERTY, buffer.data(),
                                DWORD(buffer.size()), buffer.data(), DWORD(buffer.size()), &bytes,
                                nullptr) != FALSE;
    CloseHandle(volume);
    if (answer.ok)
        answer.bytes = QByteArray(buffer.data(), int(qMin<DWORD>(bytes, DWORD(buffer.size()))));
    return answer;
}

VolumeSpace WinPlatform::volumeSpace(QChar letter)
{
    VolumeSpace space;
    // An empty card reader must not put up the system's "insert a disk" box.
    DWORD oldMode = 0;
    SetThreadErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX, &oldMode);
    const QStorageInfo info(QDir(QString(letter.toUpper()) + QStringLiteral(":/")));
    space.ready = info.isReady();
    space.displayName = info.displayName();
    space.bytesFree = info.bytesFree();
    SetThreadErrorMode(oldMode, nullptr);
    return space;
}

bool WinPlatform::saveFile(const QString &path, const QByteArray &content)
{
    return replaceFileContent(path, content);
}

bool WinPlatform::makeFolder(const QString &path)
{
    return QDir().mkdir(path);
}

bool WinPlatform::removeFile(const QString &path)
{
    return QFile::remove(path);
}

void WinPlatform::prepareShellLinks()
{
    // Single-threaded apartment, as the shell's objects expect on the graphical thread. When the
    // toolkit has already set the thread up, the call changes nothing.
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED | COINIT_DISABLE_OLE1DDE);
}

ShortcutAnswer WinPlatform::readShortcut(const QString &path)
{
    ShortcutAnswer answer;
    QString native = path;
    native.replace(QLatin1Char('/'), QLatin1Char('\\'));
    IShellLinkW *link = nullptr;
    if (FAILED(CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkW,
                                reinterpret_cast<void **>(&link))))
        return answer;
    IPersistFile *file = nullptr;
    if (SUCCEEDED(link->QueryInterface(IID_IPersistFile, reinterpret_cast<void **>(&file)))) {
        if (SUCCEEDED(file->Load(wide(native), STGM_READ))) {
            std::vector<wchar_t> buffer(linkBuffer, 0);
            if (SUCCEEDED(link->GetPath(buffer.data(), linkBuffer, nullptr, SLGP_SHORTPATH))) {
                answer.target = QString::fromWCharArray(buffer.data());
                buffer.assign(linkBuffer, 0);
                if (SUCCEEDED(link->GetWorkingDirectory(buffer.data(), linkBuffer))) {
                    answer.workingDirectory = QString::fromWCharArray(buffer.data());
                    answer.loaded = true;
                }
            }
        }
        file->Release();
    }
    link->Release();
    return answer;
}

bool WinPlatform::writeShortcut(const QString &path, const QString &target,
                                const QString &workingDirectory)
{
    QString native = path;
    native.replace(QLatin1Char('/'), QLatin1Char('\\'));
    IShellLinkW *link = nullptr;
    if (FAILED(CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkW,
                                reinterpret_cast<void **>(&link))))
        return false;
    bool saved = false;
    IPersistFile *file = nullptr;
    if (SUCCEEDED(link->QueryInterface(IID_IPersistFile, reinterpret_cast<void **>(&file)))) {
        if (SUCCEEDED(file->Load(wide(native), STGM_READ))
            && SUCCEEDED(link->SetPath(wide(target)))
            && SUCCEEDED(link->SetWorkingDirectory(wide(workingDirectory))))
            saved = SUCCEEDED(file->Save(wide(native), TRUE));
        file->Release();
    }
    link->Release();
    return saved;
}
