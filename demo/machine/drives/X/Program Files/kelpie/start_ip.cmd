@echo off
rem Written by the medium builder: the static address of this machine.
netsh interface ip set address "Ethernet" static 192.168.1.50 255.255.255.0 192.168.1.1 > x:\static_ip.log 2>&1
netsh interface ip set dns "Ethernet" static 192.168.1.1 >> x:\static_ip.log 2>&1
