# Sourced by run, test and .ci/run: installs the Debian packages that a task needs.

packages_build="g++ cmake ninja-build ccache qt6-base-dev qt6-svg-dev libjpeg62-turbo-dev libgif-dev \
    qt6-image-formats-plugins fonts-dejavu-core ca-certificates"
packages_display="xvfb openbox xdotool x11-utils imagemagick"
packages_test="curl dbus lighttpd lighttpd-mod-openssl openssl libjpeg-turbo-progs giflib-tools trayer \
    util-linux mount"
packages_bench="xvfb openbox x11-utils dbus-daemon feh libjpeg-turbo-progs"
packages_endurance="valgrind dbus-daemon libxcb-res0-dev"
packages_coverage="gcovr"
packages_fuzz="clang libclang-rt-dev"
packages_checks="git clang-format clang-tidy libxcb-res0-dev"

# ensure_packages NAME...: returns at once, silently, where all are there; else says which
# are missing and installs them (through sudo where the caller is not root).
ensure_packages() {
    local missing="" package
    for package in "$@"; do
        # A package of several architectures has a line for each.
        dpkg-query -W -f='${db:Status-Status}\n' "$package" 2>/dev/null | grep -qx installed ||
            missing="$missing $package"
    done
    [ -z "$missing" ] && return 0
    local as_root=""
    if [ "$(id -u)" != 0 ]; then
        command -v sudo >/dev/null || {
            echo "These packages are missing:$missing" >&2
            echo "Please install them as root:" >&2
            echo "    apt-get install --no-install-recommends$missing" >&2
            return 1
        }
        as_root=sudo
    fi
    echo "Installing the missing packages (this may take some minutes):$missing"
    local log
    log=$(mktemp)
    # A source that does not answer is no obstacle where the others have them all; another
    # installation is waited for.
    $as_root apt-get update >"$log" 2>&1
    # shellcheck disable=SC2086
    if $as_root env DEBIAN_FRONTEND=noninteractive apt-get -o DPkg::Lock::Timeout=300 \
        install -y --no-install-recommends $missing >>"$log" 2>&1; then
        rm -f "$log"
    else
        cat "$log" >&2
        rm -f "$log"
        return 1
    fi
}

# build PRESET [TARGET...]: configures and builds with all cores. Prints what it built only
# where something failed.
build() {
    local preset=$1 folder log
    shift
    folder=build
    [ "$preset" = release ] || folder=build-$preset
    mkdir -p "$folder"
    log=$folder/build.log
    if [ ! -f "$folder/build.ninja" ]; then
        echo "Configuring ($preset) ..."
        cmake --preset "$preset" >"$log" 2>&1 || { cat "$log" >&2; return 1; }
    fi
    echo "Building ($preset) ..."
    if ! cmake --build "$folder" ${1:+--target "$@"} >"$log" 2>&1; then
        cat "$log" >&2
        return 1
    fi
}
