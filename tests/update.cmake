# The update wizard against the real test server (tests/updateserver/), with the probe program
# as the installer it downloads and runs.
kelpie_test(update kelpie_update kelpie_resources)
add_dependencies(tst_update kelpie_probe)
target_compile_definitions(tst_update PRIVATE KELPIE_PROBE_PATH="$<TARGET_FILE:kelpie_probe>")
