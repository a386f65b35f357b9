# Volumes, disks, the shell's writes and shortcut files through Win32; Windows build only.
if(WIN32)
    kelpie_test(win_volumes kelpie_platform Qt5::Widgets)
endif()
