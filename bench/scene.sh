# Sourced by soak, kills, valgrind and starts: the folder, the display and the camera of a run.

# make_scene: a scratch folder, $TMPDIR, where all lies that the programs leave, a display, and
# an environment without a desktop. They go when the script ends.
make_scene() {
    TMPDIR=$(mktemp -d)
    XDG_RUNTIME_DIR=$TMPDIR/runtime
    HOME=$TMPDIR/home
    mkdir -m 700 "$XDG_RUNTIME_DIR" "$HOME"
    export TMPDIR XDG_RUNTIME_DIR HOME
    camera_pid=
    trap 'end_scene' EXIT
    trap 'exit 130' INT TERM
    start_display || exit 1
    unset DBUS_SESSION_BUS_ADDRESS XDG_CURRENT_DESKTOP DESKTOP_SESSION XDG_SESSION_DESKTOP
    export QT_SCALE_FACTOR= QT_STYLE_OVERRIDE= LC_ALL=C.UTF-8
}

end_scene() {
    [ -n "$camera_pid" ] && kill "$camera_pid" && wait "$camera_pid" 2>/dev/null
    stop_display
    rm -rf "$TMPDIR"
}

# start_camera SIZE: the demo camera with pictures of that size; its address without the scheme is
# in $camera.
start_camera() {
    build/tools/demo-camera/demo-camera --port 0 --size "$1" >"$TMPDIR/camera.log" &
    camera_pid=$!
    camera=
    until [ -n "$camera" ]; do
        kill -0 "$camera_pid" 2>/dev/null || { echo "The demo camera did not start." >&2; exit 1; }
        sleep 0.05
        camera=$(sed -n 's|^Demo camera: http://||p' "$TMPDIR/camera.log")
    done
}

# portable PROGRAM: copies it into a folder of its own, where it keeps its files: $program.
portable() {
    mkdir "$TMPDIR/program" "$TMPDIR/saved"
    cp "$1" "$TMPDIR/program/pevora"
    program=$TMPDIR/program/pevora
}
