# The Win32 platform's own suite calls the real system; it exists only in the Windows build.
if(WIN32)
    kelpie_test(platform_win kelpie_platform Qt5::Widgets)
endif()
