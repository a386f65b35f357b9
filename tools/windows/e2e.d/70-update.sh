# shellcheck shell=bash
# The update wizard's part: its host, update-wizard.exe, opened from the medium's kelpie folder
# against the tests' update server (run on this side, as Wine starts no Linux python3), a whole
# update with the probe as the downloaded setup, then a rollback to the setup kept from an earlier
# update. Sourced by e2e.sh.

update_port=
update_server=
update_title='Tessel Kelpie Updates'
# The system's command line puts two blanks between the program and its first argument.
update_switches=' */SP- /SILENT /NOCANCEL /CLOSEAPPLICATIONS /RESTARTAPPLICATIONS'
update_watermark=126A9F   # the watermark's blue at 40, 60 of the window

prepare_update() {
    cp "$build/tools/update-wizard/update-wizard.exe" "$kelpie/"
    python3 "$repo/tests/updateserver/server.py" --fixtures "$repo/tests/updateserver/fixtures" \
        --probe "$probe_exe" --port-file "$work/update.port" --watch-pid $$ >"$work/update-server.log" 2>&1 &
    update_server=$!
    wait_for 20 test -s "$work/update.port" && update_port=$(cat "$work/update.port")
    # One earlier update in the history, its setup kept beside the program.
    mkdir -p "$kelpie/13.5"
    cp "$probe_exe" "$kelpie/13.5/setup.exe"
    printf '%s\r\n' '[Updates]' 'Update0_Version=13.5' 'Update0_Title=Tessel Kelpie 13.5' \
        'Update0_Date=02-Mar-2026' 'Update0_Notes=Shares come back after a restart.' \
        'Update0_Setup=X:/Program Files/kelpie/13.5/setup.exe' > "$kelpie/settings.ini"
}

booted_update() {
    check update-server-up [ -n "$update_port" ]
    [ -n "$update_port" ] || return 0

    # The check finds 14.0.10; Next downloads it, held by the server in three parts.
    open_update_wizard newer || { check update-wizard-opens false; return 0; }
    check update-wizard-opens true
    shot update-welcome
    send keys alt+n
    check update-allocates-whole-file wait_for 20 allocated "$kelpie/14.0.10/kelpie_probe.exe"
    release_update newer
    sleep 1
    shot update-download
    release_update newer
    check update-runs-setup-silently wait_for 30 \
        started '\\kelpie\\14\.0\.10\\kelpie_probe\.exe$' "$update_switches"
    check update-in-history wait_for 10 grep -qa '^Update1_Version=14.0.10' "$kelpie/settings.ini"
    check update-finishes wait_for 20 finish_page_shown
    shot update-finish
    send keys alt+f
    check update-wizard-closes wait_for 20 update_wizard_gone

    # The same version again: the history row of 13.5 picked, the rollback ticked, its button.
    local before
    before=$(started_count '\\kelpie\\13\.5\\setup\.exe$')
    open_update_wizard same || { check rollback-wizard-opens false; return 0; }
    wizard_click 1   # the second row from the top: 13.5 under 14.0.10
    wizard_click rollback
    send keys return
    sleep 1
    shot update-rollback
    wizard_click button
    check rollback-runs-kept-setup wait_for 30 \
        started_beyond "$before" '\\kelpie\\13\.5\\setup\.exe$' "$update_switches"
    check rollback-finishes wait_for 20 finish_page_shown
    shot update-rollback-finish
    send keys alt+f
    check rollback-wizard-closes wait_for 20 update_wizard_gone
}

finish_update() {
    [ -z "$update_server" ] || kill "$update_server" 2>/dev/null || true
}

# open_update_wizard <fixture>: starts the host in the kelpie folder against that fixture folder
# of the server and waits for its window.
open_update_wizard() {
    (cd "$kelpie" && exec wine update-wizard.exe "http://127.0.0.1:$update_port/$1") \
        >>"$work/update-wizard.log" 2>&1 &
    wait_for 60 update_wizard_up
}

update_wizard_up() { [ -n "$(window_rect "$update_title")" ]; }
update_wizard_gone() { ! update_wizard_up; }

release_update() { curl -s "http://127.0.0.1:$update_port/release/$1" >/dev/null; }

# The setup's file holds its whole size before the last part has come.
allocated() { [ -f "$1" ] && [ "$(stat -c %s "$1")" -eq "$(stat -c %s "$probe_exe")" ]; }

# The last page shows the watermark at the left, where the working pages are plain.
finish_page_shown() {
    local rect
    rect=$(window_rect "$update_title")
    [ -n "$rect" ] || return 1
    shot update-poll
    # shellcheck disable=SC2086
    set -- $rect
    [ "$(pixel update-poll $(($1 + 40)) $(($2 + 60)))" = "$update_watermark" ]
}

# wizard_click <row number | rollback | button>: a click inside the wizard, by its window's place
# (a history row and the rollback box of the first page while no update is offered, the button
# of the rollback page).
wizard_click() {
    local rect
    rect=$(window_rect "$update_title")
    [ -n "$rect" ] || return 1
    # shellcheck disable=SC2086
    set -- $rect "$1"
    case "$5" in
        rollback) click $(($1 + 185)) $(($2 + 284)) ;;
        button) click $(($1 + 259)) $(($2 + 119)) ;;
        *) click $(($1 + 214)) $(($2 + 174 + 17 * $5)) ;;
    esac
    sleep 1
}
