# Sourced by run: uses Pevora as a person would, by mouse and keyboard, and takes its picture.

# Places in the window, in logical pixels; QT_SCALE_FACTOR stretches them.
scale=${QT_SCALE_FACTOR:-1}
camera_x=74            # the first camera in the list, below its category
camera_y=46
toolbar_y=40           # the middle of the toolbar, below the menu bar
timer_x=414            # the face of the timer button
timer_arrow_x=432      # its arrow
toggle_view_x=557

px() { awk -v a="$1" -v s="$scale" 'BEGIN { printf "%d", a * s }'; }

# on_screen: a digest of the middle of the picture, which only a new image changes.
on_screen() {
    import -silent -window "$window" -crop "$1" +repage rgb:- 2>/dev/null | md5sum
}

# wait_until_still CROP: waits until the screen has not changed for a second.
wait_until_still() {
    local last= now quiet=0 looks=0
    while [ $quiet -lt 10 ]; do
        looks=$((looks + 1))
        [ $looks -gt 300 ] && { echo "The window does not come to rest." >&2; return 1; }
        now=$(on_screen "$1")
        quiet=$((quiet + 1))
        [ "$now" = "$last" ] || quiet=0
        last=$now
        sleep 0.1
    done
}

# take_screenshot FILE VIEW: opens the first camera by a click in the list, presses the timer
# button with an interval of a second, waits until the third image is on screen and writes the
# picture. With VIEW "strip" it then releases the timer button and shows the thumbnails first.
take_screenshot() {
    local file=$1 view=$2 window
    window=$(timeout 60 xdotool search --sync --onlyvisible --name '^Pevora$' | head -n 1)
    [ -n "$window" ] || { echo "Pevora's window did not appear." >&2; return 1; }
    xdotool windowactivate --sync "$window"
    eval "$(xdotool getwindowgeometry --shell "$window" | sed -n 's/^\(WIDTH\|HEIGHT\)=/local &/p')"

    local crop
    crop=$((WIDTH / 4))x$((HEIGHT / 4))+$((WIDTH / 2))+$((HEIGHT / 2))
    local before last now seen=0
    before=$(on_screen "$crop")

    click_at() { xdotool mousemove --window "$window" "$1" "$2" click 1; }
    click_at "$(px $camera_x)" "$(px $camera_y)"
    click_at "$(px $timer_arrow_x)" "$(px $toolbar_y)"
    xdotool key Down Return # the first interval: one second
    click_at "$(px $timer_x)" "$(px $toolbar_y)"
    xdotool mousemove --window "$window" $((WIDTH * 2 / 3)) $((HEIGHT / 3))

    # An image counts when two looks in a row show the same new one.
    last=$before
    local candidate= looks=0
    while [ $seen -lt 3 ]; do
        looks=$((looks + 1))
        if [ $looks -gt 600 ]; then
            echo "The third image did not appear." >&2
            return 1
        fi
        now=$(on_screen "$crop")
        if [ "$now" != "$last" ] && [ "$now" = "$candidate" ]; then
            last=$now
            seen=$((seen + 1))
        fi
        candidate=$now
        sleep 0.05
    done
    if [ "$view" = strip ]; then
        click_at "$(px $timer_x)" "$(px $toolbar_y)"
        click_at "$(px $toggle_view_x)" "$(px $toolbar_y)"
        xdotool mousemove --window "$window" $((WIDTH * 2 / 3)) $((HEIGHT * 2 / 3))
        wait_until_still "${WIDTH}x$((HEIGHT - $(px 100)))+0+0" || return 1
    fi
    mkdir -p "$(dirname "$file")"
    import -silent -window "$window" "$file" || return 1
    echo "The picture of the window is in $file"
}
