# shellcheck shell=bash
# The main menu's own entries and the system actions: the medium's locale file with its three
# wpeutil.exe starts, the PXE scripts after the start menu closes, "Run..." and "Load Driver"
# reached from the menu, and "User Programs" with the shell's icons. Sourced by e2e.sh.

menu_scripts='X:\Program Files\kelpie\Kelpie_Scripts'

prepare_menu() {
    printf 'TimeZone=13\r\nSetMuiLanguage=en-US\r\nSetUserLocale=en-GB\r\nSetKeyboardLayout=0809:00000809\r\n' \
        > "$kelpie/envInit.ini"
    local scripts
    scripts=$(host_path "$menu_scripts")
    mkdir -p "$scripts"
    printf '@echo off\r\necho pxe script ran> "x:\\pxe-ran.txt"\r\n' > "$scripts/02_mark.cmd"
    probe_as 'X:\Program Files\kelpie\InstallDriver.exe'
    probe_as 'X:\Program Files\kelpie\RunTask.exe'
}

booted_menu() {
    # Applied in the constructor, before the panel showed: three hidden starts, the file gone.
    check locale-mui wait_for 10 started 'wpeutil\.exe$' 'SetMuiLanguage en-US'
    check locale-user wait_for 10 started 'wpeutil\.exe$' 'SetUserLocale en-GB'
    check locale-keyboard wait_for 10 started 'wpeutil\.exe$' 'SetKeyboardLayout 0809:00000809'
    check locale-file-deleted [ ! -e "$kelpie/envInit.ini" ]

    # The scripts run once the start menu has closed, after the two-second pause.
    check pxe-script-ran wait_for 30 grep -q 'pxe script ran' "$X/pxe-ran.txt"
    check pxe-log wait_for 10 pxe_logged

    check user-programs-shown menu_entry_shows 4 user-programs
    check run-box-from-menu menu_entry_starts 3 'kelpie\\runtask\.exe$' ''
    check load-driver-from-menu menu_entry_starts 2 'kelpie\\installdriver\.exe$' ''
    check user-menu-remove removes_memory_test
}

# The pointer rests on "Memory Test" of User Programs: the remove button stands just right of
# it; a click there closes the menu and reaches the button, and "Yes" deletes the shortcut. The
# hover and the quick click race the 200 ms timer, so a loaded machine gets three tries.
removes_memory_test() {
    local file="$X/Users/Default/AppData/Roaming/Microsoft/Windows/Start Menu/Programs/Memory Test.lnk"
    [ -f "$file" ] || return 1
    local attempt
    for attempt in 1 2 3; do
        remove_attempt && break
        say "  no question on try $attempt"
        xdotool key Escape
        click 600 420
        wait_for 10 menu_closed || true
        [ "$attempt" = 3 ] && return 1
    done
    shot remove-question
    send keys return
    wait_for 10 [ ! -e "$file" ]
}

remove_attempt() {
    menu_walk_up 4 || return 1
    xdotool key Right
    sleep 1
    pointer 240 626
    sleep 0.5
    pointer 245 626
    sleep 1
    shot remove-button
    # A quick click, as a hand makes it: the press that closes the menu is passed on to the
    # button, and the release must come before the 200 ms timer hides it.
    xdotool mousemove 341 626 mousedown 1
    sleep 0.08
    xdotool mouseup 1
    wait_for 10 confirmation_up
}

confirmation_up() { [ -n "$(window_rect Confirmation)" ]; }

pxe_logged() {
    grep -qa $'^PXE Kelpie_Scripts exist\r$' "$X/init.log" && grep -qa $'^PXE script exist\r$' "$X/init.log"
}

# Opens the main menu with the start button and walks up from its last entry ("Turn Off
# Computer") by <n> entries; separators are passed over.
menu_walk_up() {
    pointer 600 420
    click 32 $((panel_top + 32))
    # A start button that still counts its menu as open takes the first click to close it.
    wait_for 5 menu_open || { click 32 $((panel_top + 32)); wait_for 10 menu_open; } || return 1
    local i
    for ((i = 0; i < $1; i++)); do
        xdotool key Up
    done
}

# menu_entry_starts <entries up> <program regex> <args regex>: that entry, taken with Return,
# starts its program once more.
menu_entry_starts() {
    local before
    before=$(started_count "$2" "$3")
    menu_walk_up "$1" || return 1
    xdotool key Return
    wait_for 10 menu_closed || return 1
    wait_for 10 started_beyond "$before" "$2" "$3"
}

# menu_entry_shows <entries up> <shot>: that entry opens a sub-menu of the start menu folder's
# entries, each with its icon.
menu_entry_shows() {
    menu_walk_up "$1" || return 1
    xdotool key Right
    sleep 1
    shot "$2"
    local popups
    popups=$(send windows | grep -c 'QWindowPopup')
    xdotool key Escape
    click 600 420
    wait_for 10 menu_closed
    [ "$popups" -ge 2 ]
}
