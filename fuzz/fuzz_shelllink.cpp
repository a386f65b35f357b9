// Shortcut files (.lnk) as the desktop, the menus and the simulated machine read them; a read
// shortcut written back reads again.

#include "fuzzing.h"
#include "platform/shelllink/shelllink.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size > size_t(shelllink::maxFileSize))
        return 0;
    shelllink::Link link;
    if (!shelllink::read(fuzzing::bytes(data, size), &link))
        return 0;
    shelllink::Link again;
    if (!shelllink::read(shelllink::write(link), &again))
        __builtin_trap();
    shelllink::setTarget(&link, QStringLiteral("C:\\Tools\\tool.exe"));
    shelllink::write(link);
    return 0;
}
