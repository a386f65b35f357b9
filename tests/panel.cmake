kelpie_test(panel kelpie_core kelpie_resources)
