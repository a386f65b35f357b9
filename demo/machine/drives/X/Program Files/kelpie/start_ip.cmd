@echo off
rem Gives the first adapter the address this medium was prepared with.
netsh interface ip set address "Ethernet" static 192.168.1.50 255.255.255.0 192.168.1.1 > x:\static_ip.log 2>&1
netsh interface ip set dns "Ethernet" static 192.168.1.1 >> x:\static_ip.log 2>&1
