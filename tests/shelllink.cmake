kelpie_test(shelllink kelpie_platform Qt5::Widgets)
