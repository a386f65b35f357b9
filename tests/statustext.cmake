kelpie_test(statustext kelpie_statustext Qt5::Widgets)
