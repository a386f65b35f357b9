#include "platform/platform.h"
#include "startup.h"

int main(int argc, char *argv[])
{
    setPlatform(createDefaultPlatform());
    return runShell(argc, argv);
}
