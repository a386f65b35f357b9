kelpie_test(platform_sim kelpie_platform Qt5::Widgets)
