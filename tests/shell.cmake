kelpie_test(shell kelpie_core kelpie_resources)
