# shellcheck shell=bash
# Saved settings and turn off: shortcuts restored from the stick and pointed through the shell
# link object at the drive where their program now lies, the Save dialog at "Turn Off Computer",
# wpeutil.exe started with "Shutdown", the shell's end, and a second boot from a fresh x: with the
# same stick that turns off without a Save dialog. Sourced by e2e.sh.

saved_desktop='X:\Users\Default\Desktop'
saved_lnk_tool=$build/tools/mklnk/kelpie_mklnk.exe

# mklnk <args...>: the shortcut tool of this build, run beside the shell's DLLs.
mklnk() { (cd "$kelpie" && wine ./kelpie_mklnk.exe "$@" 2>/dev/null | tr -d '\r'); }

# link_target <Windows path>: the target a shortcut names, read by the portable reader.
link_target() { mklnk --print "$1" | awk -F': ' '/^  target: /{ print $2 }'; }

# The program of the saved shortcut now lies on f:, while the shortcut saved on the stick names
# d:; a stick that an earlier run filled.
prepare_saved() {
    F=$work/F
    mkdir -p "$F/Tools"
    cp "$probe_exe" "$F/Tools/Tool.exe"
    ln -s "$F" "$WINEPREFIX/dosdevices/f:"
    cp "$saved_lnk_tool" "$kelpie/"
    mkdir -p "$E/Desktop.1/Users/Default/Desktop"
    mklnk "$(winpath "$E/Desktop.1/Users/Default/Desktop/Old Tool.lnk")" 'D:\Tools\Tool.exe' 'D:\Tools'
    wineserver -w
}

booted_saved() {
    check restore-saved-shortcut [ -f "$X/Users/Default/Desktop/Old Tool.lnk" ]
    check restore-retargets-through-shell-link \
        [ "$(link_target "$saved_desktop\\Old Tool.lnk")" = 'F:\Tools\Tool.exe' ]
    check restore-keeps-right-shortcut \
        [ "$(link_target "$saved_desktop\\Saved Notes.lnk")" = 'X:\Windows\System32\notepad.exe' ]
    # A change after start-up: a new shortcut, and a resolution the display tool left behind.
    mklnk "$saved_desktop\\New Tool.lnk" 'F:\Tools\Tool.exe' 'F:\Tools'
    printf '1024x768\r\n1280x1024\r\n' > "$X/tmpReg/resolution.log"
}

# window_named <title regex>: "left top right bottom" of a visible top-level window.
window_named() { send windows | tr -d '\r' | awk -F'\t' -v t="$1" '$3 ~ t { print $1; exit }'; }

# Opens the start menu with the left Windows key and clicks its last entry, "Turn Off Computer".
choose_turn_off() {
    send keys lwin || return 1
    wait_for 10 menu_open || return 1
    local rect
    rect=$(send windows | tr -d '\r' | awk -F'\t' '$2 ~ /QWindowPopup/ { print $1; exit }')
    [ -n "$rect" ] || return 1
    # shellcheck disable=SC2086
    set -- $rect
    shot turn-off-menu
    click $(($1 + 60)) $(($4 - 14))
}

# click_in <window rect> <x> <y>: a click at a point of a window.
click_in() {
    # shellcheck disable=SC2086
    set -- $1 "$2" "$3"
    click $(($1 + $5)) $(($2 + $6))
}

save_dialog_up() { [ -n "$(window_named '^Save .+hanges$')" ]; }
turn_off_dialog_up() { [ -n "$(window_named '^Select Action$')" ]; }

finish_saved() {
    check turn-off-from-menu choose_turn_off
    check save-dialog-first wait_for 15 save_dialog_up
    shot save-dialog
    # Save is the default button. Under Wine the folder behind e: reports a fixed disk, so the
    # list of removable volumes stays empty and Save cannot be pressed: the save to the stick is
    # shown by the simulated machine's round trip, not here.
    send keys return
    sleep 1
    if [ -f "$E/Desktop.1/Users/Default/Desktop/New Tool.lnk" ]; then
        check saved-shortcut-on-stick true
        check saved-kelpie-ini grep -q '^screenRes=1280x1024' "$E/_kelpie.ini"
    else
        say "skip  save-to-stick: Wine's folder-backed e: answers as a fixed disk, not removable media"
        send keys escape
    fi
    check turn-off-dialog-after-save wait_for 15 turn_off_dialog_up
    local rect
    rect=$(window_named '^Select Action$')
    shot turn-off-dialog
    click_in "$rect" 119 69
    check wpeutil-shutdown wait_for 10 started 'wpeutil\.exe$' 'Shutdown'
    check shell-ends wait_for 30 eval '! shell_up'
    stop_shell

    # The next boot: a fresh x: from the medium, the same stick, nothing changed since.
    rm -rf "$X"
    cp -r "$repo/demo/machine/drives/X" "$X"
    cp -r "$deploy/." "$kelpie/"
    cp "$saved_lnk_tool" "$kelpie/"
    while IFS= read -r -d '' exe; do
        [ "$(basename "$exe")" = autorun.exe ] || [ "$(basename "$exe")" = kelpie_mklnk.exe ] \
            || cp "$probe_exe" "$exe"
    done < <(find "$X" -iname '*.exe' -print0)
    check second-boot boot
    close_start_menu
    check second-boot-restores [ "$(link_target "$saved_desktop\\Old Tool.lnk")" = 'F:\Tools\Tool.exe' ]
    check second-turn-off-from-menu choose_turn_off
    check no-save-dialog-without-changes wait_for 15 turn_off_dialog_up
    check no-save-dialog [ -z "$(window_named '^Save .+hanges$')" ]
    rect=$(window_named '^Select Action$')
    click_in "$rect" 267 121
    check cancel-keeps-shell wait_for 10 eval '! turn_off_dialog_up'
    check shell-runs-on shell_up
}
