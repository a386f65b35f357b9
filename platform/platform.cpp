#include "platform.h"

#include <memory>

static std::unique_ptr<Platform> current;

Platform &sys()
{
    Q_ASSERT(current);
    return *current;
}

void setPlatform(Platform *platform)
{
    current.reset(platform);
}
