kelpie_test(settings kelpie_settings Qt5::Widgets)
