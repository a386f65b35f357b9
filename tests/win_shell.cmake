# The Win32 shell room against the real system; only in the Windows build.
if(WIN32)
    kelpie_test(win_shell kelpie_platform Qt5::Widgets)
endif()
