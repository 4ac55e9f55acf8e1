# Sourced by run and test: virtual displays with a window manager each, for the caller alone.

display_pids=""

# start_display [GEOMETRY]: starts Xvfb on a free number and openbox on it, and exports
# DISPLAY. The caller ends all that were started with stop_display (from a trap, so that they
# never stay).
start_display() {
    local geometry=${1:-1600x1200x24} number_file
    number_file=$(mktemp)
    Xvfb -displayfd 3 -screen 0 "$geometry" -dpi 96 -ac -nolisten tcp \
        3>"$number_file" >/dev/null 2>&1 &
    local server=$!
    display_pids="$display_pids $server"
    local waited=0
    while [ ! -s "$number_file" ]; do
        sleep 0.05
        waited=$((waited + 1))
        if [ $waited -gt 1200 ] || ! kill -0 "$server" 2>/dev/null; then
            echo "The virtual display did not start." >&2
            rm -f "$number_file"
            return 1
        fi
    done
    DISPLAY=:$(tr -d '[:space:]' <"$number_file")
    export DISPLAY
    unset WAYLAND_DISPLAY QT_QPA_PLATFORM
    rm -f "$number_file"
    openbox >/dev/null 2>&1 &
    display_pids="$display_pids $!"
    waited=0
    until xprop -root _NET_SUPPORTING_WM_CHECK 2>/dev/null | grep -q 'window id'; do
        sleep 0.05
        waited=$((waited + 1))
        if [ $waited -gt 1200 ]; then
            echo "The window manager did not start." >&2
            return 1
        fi
    done
}

stop_display() {
    local pid reversed=""
    for pid in $display_pids; do reversed="$pid $reversed"; done
    for pid in $reversed; do
        kill "$pid" 2>/dev/null
        wait "$pid" 2>/dev/null
    done
    display_pids=""
}
