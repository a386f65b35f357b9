# The Win32 network room against the real system (under Wine in CI); Windows build only.
if(WIN32)
    kelpie_test(win_network kelpie_network kelpie_platform Qt5::Widgets)
endif()
