#!/bin/sh
# Writes the demo machine's shortcuts (demo/machine/drives/...) as real shortcut files pointing at
# the medium's programs. Run after changing the list; the files are kept in the repository.
#   tools/demo-shortcuts.sh <kelpie_mklnk>
set -e
mklnk=${1:?usage: tools/demo-shortcuts.sh path/to/kelpie_mklnk}
here=$(cd "$(dirname "$0")/.." && pwd)
drives=$here/demo/machine/drives
menu='Users/Default/AppData/Roaming/Microsoft/Windows/Start Menu/Programs'
desk='Users/Default/Desktop'
kelpie='X:\Program Files\kelpie'
sys32='X:\Windows\System32'

link() {   # <file below drives/> <target> <working directory>
    mkdir -p "$(dirname "$drives/$1")"
    "$mklnk" "$drives/$1" "$2" "$3"
}

link "X/$desk/Disk Editor.lnk"        "$kelpie\Tools\DiskEditor.exe"  "$kelpie\Tools"
link "X/$desk/File Browser.lnk"       "$kelpie\Tools\FileBrowser.exe" "$kelpie\Tools"
link "X/$desk/Network Setup.lnk"      "$kelpie\IPcfg.exe"             "$kelpie"
link "X/$desk/Task Manager.lnk"       "$sys32\taskmgr.exe"            "$sys32"
link "X/$desk/Command Prompt.lnk"     "$sys32\cmd.exe"                "$sys32"
link "X/$menu/Memory Test.lnk"        "$kelpie\Tools\MemoryTest.exe"  "$kelpie\Tools"
link "X/$menu/Accessories/Notepad.lnk"        "$sys32\notepad.exe"    "$sys32"
link "X/$menu/Accessories/Command Prompt.lnk" "$sys32\cmd.exe"        "$sys32"
link "X/$menu/System Tools/Registry Editor.lnk" 'X:\Windows\regedit.exe' 'X:\Windows'
link "X/$menu/System Tools/Task Manager.lnk"    "$sys32\taskmgr.exe"  "$sys32"
# Saved on the stick by an earlier run: restored at start-up.
link "E/Start Menu.1/$menu/My Tools/Web Browser.lnk" "$kelpie\Tools\WebBrowser.exe" "$kelpie\Tools"
link "E/Desktop.1/$desk/Saved Notes.lnk"  "$sys32\notepad.exe"        "$sys32"
