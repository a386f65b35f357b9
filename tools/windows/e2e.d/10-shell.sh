# shellcheck shell=bash
# The shell's own part of the boot: start menu and start-up queue, trace, image language, desktop
# and panel, launcher, the copy-data message and the hot keys. Sourced by e2e.sh.

desktop_blue=1273AA
panel_top=704   # 768 - 64: the panel up
panel_down=765  # 768 - 3: the panel down, its edge line showing

# The start menu opens by itself (no mapping script on this medium), and the start-up queue waits
# for it to close.
booted_shell() {
    if [ ! -e "$X/map_network.cmd" ]; then
        check menu-opens-by-itself wait_for 30 menu_open
        shot start-menu
        check torun-waits-for-menu [ "$(started_count 'NetProbe\.exe')" -eq 0 ]
    fi
    close_start_menu

    # toRun=NetProbe|-quiet from data_shell.cfg, and appRun=Zembra.exe with arg= -a from e:'s
    # _kelpie.ini (remDev=1): the disk number that the system gives for e: goes before the
    # arguments, their leading blank dropped.
    check torun-started wait_for 20 started '^x:\\program files\\kelpie\\netprobe\.exe$' '-quiet'
    check apprun-started wait_for 20 started '^x:\\program files\\kelpie\\zembra\.exe$' '-xd=[0-9]+ -a'
    check init-log wait_for 10 init_log_has_runs

    # imageLang=1033 of e:\_kelpie.ini, the first drive from C: up that holds the file.
    check image-language language_is 0x409

    check desktop-covers-screen wait_for 5 desktop_covers
    check panel-at-foot panel_at_foot

    check launcher-click launcher_starts 0 'tools\\filebrowser\.exe$' ''
    check launcher-click-arguments launcher_starts 2 'kelpie\\zembra\.exe$' '-menu'
    check tool-buttons-click tool_buttons_start
    pointer 600 420

    check refresh-message refresh_shows_new_shortcut

    check hotkey-display-low key_starts ctrl+shift+d 'kelpie\\displayres\.exe$' 'low'
    check hotkey-task-manager key_starts ctrl+alt+d 'system32\\taskmgr\.exe$' ''
    check ctrl-alt-del key_starts ctrl+alt+delete 'system32\\taskmgr\.exe$' ''
    check hotkey-start-menu left_windows_key_opens_menu

    check panel-drops-and-rises panel_drops_and_rises
}

init_log_has_runs() {
    [ -f "$X/init.log" ] || return 1
    grep -qaP '^run x:\\program files\\kelpie\\NetProbe\.exe=\d+\r$' "$X/init.log" &&
        grep -qaP '^run x:\\program files\\kelpie\\Zembra\.exe=\d+\r$' "$X/init.log"
}

language_is() {
    wine reg query 'HKCU\Software\Morvane Works\Tessel Imager' /v Language 2>/dev/null \
        | tr -d '\r' | grep -Eq "Language[[:space:]]+REG_DWORD[[:space:]]+$1\$"
}

# The desktop's window spans the screen and its blue shows at the corners and the middle, away
# from icons, title and panel.
desktop_covers() {
    [ "$(window_rect dektopWidget)" = "0 0 1024 768" ] || return 1
    shot desktop
    local xy
    for xy in "5 5" "1018 5" "5 690" "1018 690" "512 384" "300 600" "1018 300"; do
        # shellcheck disable=SC2086
        [ "$(pixel desktop $xy)" = "$desktop_blue" ] || return 1
    done
}

# panel_at <top>: the panel's window spans the screen's width, 64 high, from <top>.
panel_at() {
    [ "$(window_rect 'Tessel Shell')" = "0 $1 1024 $(($1 + 64))" ]
}

panel_at_foot() {
    panel_at "$panel_top" && wait_for 5 panel_drawn
}

# The panel's picture stands in its strip and the desktop's blue just above it.
panel_drawn() {
    shot panel
    [ "$(pixel panel 512 740)" != "$desktop_blue" ] && [ "$(pixel panel 512 700)" = "$desktop_blue" ]
}

# launcher_starts <index> <program regex> <args regex>: a click on the launcher button of that
# place (38 pixels apart from x 110, 24 x 24 at y 35 of the panel) starts its program once more.
launcher_starts() {
    local program=$2 args=$3 before
    before=$(started_count "$program" "$args")
    click $((110 + 38 * $1 + 12)) $((panel_top + 35 + 12))
    wait_for 10 started_beyond "$before" "$program" "$args"
}

# The five tool buttons of fixedB1= to fixedB5=, 30 pixels apart on the first row of the status
# block, where the layout puts them on a screen 1024 wide.
tool_buttons_start() {
    local i=0 program before
    for program in 'tools\\timeeditor\.exe$' 'kelpie\\displayres\.exe$' 'system32\\taskmgr\.exe$' \
        'tools\\filebrowser\.exe$' 'tools\\screenshot\.exe$'; do
        before=$(started_count "$program" '')
        click $((789 + 30 * i)) $((panel_top + 11))
        wait_for 10 started_beyond "$before" "$program" '' \
            || { say "  fixedB$((i + 1)) did not start $program"; return 1; }
        i=$((i + 1))
    done
}

key_starts() {
    local program=$2 args=$3 before
    before=$(started_count "$program" "$args")
    send keys "$1" || return 1
    wait_for 10 started_beyond "$before" "$program" "$args"
}

left_windows_key_opens_menu() {
    send keys lwin || return 1
    wait_for 10 menu_open || return 1
    shot hotkey-menu
    click 600 420
    wait_for 10 menu_closed
}

# A shortcut put into the desktop folder shows only after "Refresh" with wParam 1; the message
# with wParam 0 or another text leaves the desktop as it was.
refresh_shows_new_shortcut() {
    local folder=$X/Users/Default/Desktop
    cp "$folder/Task Manager.lnk" "$folder/zz Added.lnk"
    # It sorts last: its place in the grid of 11 a column (a screen 768 high).
    local n column row area
    n=$(find "$folder" -mindepth 1 -maxdepth 1 ! -iname desktop.ini | wc -l)
    column=$(((n - 1) / 11))
    row=$(((n - 1) % 11))
    area="110x60+$((column * 120 + 20))+$((row * 60 + 20))"
    send copydata 0 Refresh || return 1
    send copydata 1 refresh || return 1
    # The message is handled before the send returns; a second lets a rebuild show.
    sleep 1
    shot refresh-ignored
    [ "$(colours refresh-ignored "$area")" = 1 ] || { say "  the desktop changed without Refresh"; return 1; }
    send copydata 1 Refresh || return 1
    wait_for 10 shows_entry "$area"
}

shows_entry() {
    shot refresh && [ "$(colours refresh "$1")" -gt 1 ]
}

# Unlocked, the panel drops once the pointer leaves it and rises when the pointer touches the
# 3 pixels left at the foot; locked again it stays.
panel_drops_and_rises() {
    local lock="79 $((panel_top + 13))"
    # shellcheck disable=SC2086
    click $lock
    pointer 600 420
    wait_for 5 panel_at "$panel_down" || { say "  the unlocked panel did not drop"; return 1; }
    shot panel-down
    pointer 600 767
    wait_for 5 panel_at "$panel_top" || { say "  the panel did not rise"; return 1; }
    wait_for 5 panel_drawn || { say "  the risen panel is not drawn"; return 1; }
    # shellcheck disable=SC2086
    click $lock
    pointer 600 420
    sleep 1.5
    panel_at "$panel_top" || { say "  the locked panel dropped"; return 1; }
}
