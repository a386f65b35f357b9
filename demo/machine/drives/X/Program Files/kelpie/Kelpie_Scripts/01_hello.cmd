@echo off
rem Start-up script of this medium: runs once the network is up.
echo Kelpie rescue medium ready >> x:\pxe.log
