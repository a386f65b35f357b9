kelpie_test(look kelpie_look kelpie_resources)
