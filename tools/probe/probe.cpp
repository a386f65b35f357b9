// A stand-in for any program of a medium. Started under any name it appends one line to its log:
//     <own path> TAB <command line> TAB <working directory>
// The log is $KELPIE_PROBE_LOG, else probe.log beside the executable. probe.ini beside the
// executable may hold exit=<code> and delayMs=<n> (wait before exiting); the variables
// KELPIE_PROBE_EXIT and KELPIE_PROBE_DELAY_MS win over the file. Text is written as UTF-8.
// On Windows the command line is the one the system holds for the process, as it was given.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#ifdef _WIN32
#include <windows.h>
#else
#include <fcntl.h>
#include <time.h>
#include <unistd.h>
#endif

namespace {

#ifdef _WIN32
std::string utf8(const wchar_t *text)
{
    const int size = WideCharToMultiByte(CP_UTF8, 0, text, -1, nullptr, 0, nullptr, nullptr);
    if (size <= 1)
        return std::string();
    std::string out(size_t(size), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text, -1, &out[0], size, nullptr, nullptr);
    out.resize(size_t(size - 1));
    return out;
}

std::wstring wide(const std::string &text)
{
    const int size = MultiByteToWideChar(CP_UTF8, 0, text.c_str(), -1, nullptr, 0);
    if (size <= 1)
        return std::wstring();
    std::wstring out(size_t(size), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, text.c_str(), -1, &out[0], size);
    out.resize(size_t(size - 1));
    return out;
}

std::string ownPath()
{
    wchar_t buffer[32768];
    const DWORD n = GetModuleFileNameW(nullptr, buffer, DWORD(sizeof buffer / sizeof buffer[0]));
    return n ? utf8(buffer) : std::string();
}

std::string commandLine(int, char **)
{
    return utf8(GetCommandLineW());
}

std::string workingDirectory()
{
    wchar_t buffer[32768];
    const DWORD n = GetCurrentDirectoryW(DWORD(sizeof buffer / sizeof buffer[0]), buffer);
    return n ? utf8(buffer) : std::string();
}

std::string variable(const char *name)
{
    wchar_t buffer[32768];
    const DWORD n = GetEnvironmentVariableW(wide(name).c_str(), buffer,
                                            DWORD(sizeof buffer / sizeof buffer[0]));
    return n && n < sizeof buffer / sizeof buffer[0] ? utf8(buffer) : std::string();
}

FILE *openFile(const std::string &path, const wchar_t *mode)
{
    return _wfopen(wide(path).c_str(), mode);
}

// FILE_APPEND_DATA makes each write land at the end even when several probes run at once; a
// probe that finds the log locked by another one tries again for a while.
void appendLine(const std::string &path, const std::string &line)
{
    for (int attempt = 0; attempt < 100; ++attempt) {
        HANDLE file = CreateFileW(wide(path).c_str(), FILE_APPEND_DATA,
                                  FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_ALWAYS,
                                  FILE_ATTRIBUTE_NORMAL, nullptr);
        if (file != INVALID_HANDLE_VALUE) {
            DWORD written = 0;
            WriteFile(file, line.data(), DWORD(line.size()), &written, nullptr);
            CloseHandle(file);
            return;
        }
        if (GetLastError() != ERROR_SHARING_VIOLATION)
            return;
        Sleep(20);
    }
}

void pause(long ms)
{
    Sleep(DWORD(ms));
}

const char separator = '\\';
#else
std::string ownPath()
{
    char buffer[4096];
    const ssize_t n = readlink("/proc/self/exe", buffer, sizeof buffer - 1);
    return n > 0 ? std::string(buffer, size_t(n)) : std::string();
}

std::string commandLine(int argc, char **argv)
{
    std::string line;
    for (int i = 0; i < argc; ++i) {
        if (i)
            line += ' ';
        line += argv[i];
    }
    return line;
}

std::string workingDirectory()
{
    char buffer[4096];
    return getcwd(buffer, sizeof buffer) ? std::string(buffer) : std::string();
}

std::string variable(const char *name)
{
    const char *value = std::getenv(name);
    return value ? std::string(value) : std::string();
}

FILE *openFile(const std::string &path, const char *mode)
{
    return std::fopen(path.c_str(), mode);
}

// O_APPEND with one write keeps lines of probes running at once whole.
void appendLine(const std::string &path, const std::string &line)
{
    const int fd = open(path.c_str(), O_WRONLY | O_APPEND | O_CREAT, 0644);
    if (fd < 0)
        return;
    const ssize_t written = write(fd, line.data(), line.size());
    (void)written;
    close(fd);
}

void pause(long ms)
{
    timespec wait{ms / 1000, (ms % 1000) * 1000000L};
    while (nanosleep(&wait, &wait) != 0) {
    }
}

const char separator = '/';
#endif

std::string folderOf(const std::string &path)
{
    const size_t cut = path.find_last_of(separator == '\\' ? "\\/" : "/");
    return cut == std::string::npos ? std::string(".") : path.substr(0, cut);
}

bool number(const std::string &text, long *value)
{
    if (text.empty())
        return false;
    char *end = nullptr;
    const long parsed = std::strtol(text.c_str(), &end, 10);
    if (*end != '\0')
        return false;
    *value = parsed;
    return true;
}

void readIni(const std::string &path, long *exitCode, long *delayMs)
{
#ifdef _WIN32
    FILE *file = openFile(path, L"rb");
#else
    FILE *file = openFile(path, "rb");
#endif
    if (!file)
        return;
    char buffer[1024];
    while (std::fgets(buffer, sizeof buffer, file)) {
        std::string line(buffer);
        while (!line.empty() && (line.back() == '\n' || line.back() == '\r'))
            line.pop_back();
        const size_t eq = line.find('=');
        if (eq == std::string::npos)
            continue;
        const std::string key = line.substr(0, eq);
        if (key == "exit")
            number(line.substr(eq + 1), exitCode);
        else if (key == "delayMs")
            number(line.substr(eq + 1), delayMs);
    }
    std::fclose(file);
}

} // namespace

int main(int argc, char **argv)
{
    const std::string self = ownPath();
    const std::string folder = folderOf(self);

    std::string log = variable("KELPIE_PROBE_LOG");
    if (log.empty())
        log = folder + separator + "probe.log";
    appendLine(log, self + '\t' + commandLine(argc, argv) + '\t' + workingDirectory() + '\n');

    long exitCode = 0;
    long delayMs = 0;
    readIni(folder + separator + "probe.ini", &exitCode, &delayMs);
    number(variable("KELPIE_PROBE_EXIT"), &exitCode);
    number(variable("KELPIE_PROBE_DELAY_MS"), &delayMs);
    if (delayMs > 0)
        pause(delayMs);
    return int(exitCode);
}
