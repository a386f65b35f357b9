// kelpie_send: stands in for the programs of a medium that talk to the running shell.
//   kelpie_send copydata <wParam> <text>   WM_COPYDATA to the panel (the window "Tessel Shell"),
//                                          lpData the text as UTF-16 with its terminating zero
//   kelpie_send keys <key>[+<key>...]      presses the keys in order and releases them backwards,
//                                          through SendInput (ctrl shift alt lwin delete escape
//                                          return tab, a-z, 0-9)
//   kelpie_send windows                    visible top-level windows, one a line:
//                                          left top right bottom TAB class TAB title
// Exit codes: 0 done, 1 bad usage, 2 no panel window, 3 the message or input was not taken.
#include <windows.h>

#include <cstdio>
#include <cwchar>
#include <string>
#include <vector>

namespace {

const wchar_t panelTitle[] = L"Tessel Shell";

std::string utf8(const std::wstring &text)
{
    if (text.empty())
        return std::string();
    const int size = WideCharToMultiByte(CP_UTF8, 0, text.data(), int(text.size()), nullptr, 0,
                                         nullptr, nullptr);
    std::string out(size_t(size), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.data(), int(text.size()), &out[0], size, nullptr,
                        nullptr);
    return out;
}

int copyData(const wchar_t *wParamText, const wchar_t *text)
{
    const HWND panel = FindWindowW(nullptr, panelTitle);
    if (!panel) {
        std::fprintf(stderr, "kelpie_send: no window titled \"Tessel Shell\"\n");
        return 2;
    }
    std::wstring data(text);
    COPYDATASTRUCT cds;
    cds.dwData = 0;
    cds.cbData = DWORD((data.size() + 1) * sizeof(wchar_t));
    cds.lpData = &data[0];
    DWORD_PTR answer = 0;
    const WPARAM wParam = WPARAM(std::wcstoull(wParamText, nullptr, 10));
    if (!SendMessageTimeoutW(panel, WM_COPYDATA, wParam, reinterpret_cast<LPARAM>(&cds),
                             SMTO_ABORTIFHUNG, 10000, &answer)) {
        std::fprintf(stderr, "kelpie_send: WM_COPYDATA not delivered (error %lu)\n",
                     GetLastError());
        return 3;
    }
    return 0;
}

bool keyCode(const std::wstring &name, WORD *vk, bool *extended)
{
    struct Named {
        const wchar_t *name;
        WORD vk;
        bool extended;
    };
    static const Named keys[] = {
        {L"ctrl", VK_CONTROL, false}, {L"shift", VK_SHIFT, false},   {L"alt", VK_MENU, false},
        {L"lwin", VK_LWIN, true},     {L"delete", VK_DELETE, true},  {L"escape", VK_ESCAPE, false},
        {L"return", VK_RETURN, false}, {L"tab", VK_TAB, false},
    };
    for (const Named &k : keys) {
        if (name == k.name) {
            *vk = k.vk;
            *extended = k.extended;
            return true;
        }
    }
    if (name.size() == 1 && ((name[0] >= L'a' && name[0] <= L'z') || (name[0] >= L'0' && name[0] <= L'9'))) {
        *vk = WORD(towupper(name[0]));
        *extended = false;
        return true;
    }
    return false;
}

INPUT keyInput(WORD vk, bool extended, bool up)
{
    INPUT input;
    ZeroMemory(&input, sizeof input);
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = vk;
    input.ki.wScan = WORD(MapVirtualKeyW(vk, MAPVK_VK_TO_VSC));
    input.ki.dwFlags = (extended ? KEYEVENTF_EXTENDEDKEY : 0) | (up ? KEYEVENTF_KEYUP : 0);
    return input;
}

int keys(const std::wstring &chord)
{
    std::vector<INPUT> down;
    std::vector<INPUT> up;
    size_t start = 0;
    while (start <= chord.size()) {
        size_t end = chord.find(L'+', start);
        if (end == std::wstring::npos)
            end = chord.size();
        WORD vk = 0;
        bool extended = false;
        if (!keyCode(chord.substr(start, end - start), &vk, &extended)) {
            std::fprintf(stderr, "kelpie_send: unknown key in \"%s\"\n", utf8(chord).c_str());
            return 1;
        }
        down.push_back(keyInput(vk, extended, false));
        up.insert(up.begin(), keyInput(vk, extended, true));
        start = end + 1;
    }
    std::vector<INPUT> all(down);
    all.insert(all.end(), up.begin(), up.end());
    const UINT sent = SendInput(UINT(all.size()), all.data(), sizeof(INPUT));
    return sent == all.size() ? 0 : 3;
}

BOOL CALLBACK printWindow(HWND window, LPARAM)
{
    if (!IsWindowVisible(window))
        return TRUE;
    RECT rect = {0, 0, 0, 0};
    GetWindowRect(window, &rect);
    wchar_t className[256] = {};
    wchar_t title[512] = {};
    GetClassNameW(window, className, 256);
    GetWindowTextW(window, title, 512);
    std::printf("%ld %ld %ld %ld\t%s\t%s\n", rect.left, rect.top, rect.right, rect.bottom,
                utf8(className).c_str(), utf8(title).c_str());
    return TRUE;
}

int usage()
{
    std::fprintf(stderr, "usage: kelpie_send copydata <wParam> <text> | keys <key>[+<key>...] | windows\n");
    return 1;
}

} // namespace

int wmain(int argc, wchar_t **argv)
{
    if (argc < 2)
        return usage();
    const std::wstring command = argv[1];
    if (command == L"copydata" && argc == 4)
        return copyData(argv[2], argv[3]);
    if (command == L"keys" && argc == 3)
        return keys(argv[2]);
    if (command == L"windows" && argc == 2) {
        EnumWindows(printWindow, 0);
        std::fflush(stdout);
        return 0;
    }
    return usage();
}
