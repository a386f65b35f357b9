# The network subsystem: readers, adapter inventory and report, the bring-up stages of the hub.
kelpie_test(network kelpie_core kelpie_resources)
