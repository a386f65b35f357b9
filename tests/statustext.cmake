# Built from the source itself so that the suite does not wait for the whole hub library.
kelpie_test(statustext kelpie_state kelpie_platform Qt5::Widgets)
target_sources(tst_statustext PRIVATE ${CMAKE_SOURCE_DIR}/my_shell1/statustext.cpp)
