#pragma once
// What the shell knows of the machine's network adapters. The adapter walk fills it; until that
// lands the panel holds an empty inventory and shows the no-adapter button.

class ip_settings {
public:
    ip_settings() = default;
};
