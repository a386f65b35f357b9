# The probe program that stands in for a medium's programs: its log line and its settings.
kelpie_test(probe Qt5::Widgets)
add_dependencies(tst_probe kelpie_probe)
