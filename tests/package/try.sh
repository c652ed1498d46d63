# shellcheck shell=bash disable=SC2154  # its variables are those of dev
# Read by ./dev, whose helpers it uses: ./dev package --try
# Installs a package in a clean root, starts the program there, upgrades and removes it. The root is a minimal
# system of this machine's distribution, fetched as apt is told to on this machine; nothing of it stays. The
# display is this machine's, so that nothing is installed there but what the package asks for.

clean_user=corvel-user

apt_sources() {
    # shellcheck disable=SC2016  # the dollars are apt's
    apt-get indextargets --format 'deb $(REPO_URI) $(CODENAME) $(COMPONENT)' "Created-By: Packages" "Origin: Debian" |
        sort -u
}

make_clean_root() {
    local target=$1 line options=()
    # What apt is told here about proxies and dates holds there, too.
    while read -r line; do options+=(--aptopt="$line"); done < <(
        apt-config dump Acquire::http::Proxy Acquire::https::Proxy Acquire::Check-Valid-Until Acquire::Check-Date |
            grep -v '""'
    )
    if [[ -n ${CORVEL_CLEAN_ROOT:-} ]]; then  # a tar made earlier, to try again without fetching all
        mkdir "$target"
        tar -C "$target" --exclude='./dev/*' -xf "$CORVEL_CLEAN_ROOT"
        useradd --root "$target" --create-home "$clean_user"
        return
    fi
    apt_sources | mmdebstrap --quiet --mode=root --variant=minbase --skip=cleanup/apt/lists --format=directory \
        "${options[@]}" "$(. /etc/os-release && echo "$VERSION_CODENAME")" "$target" -
    useradd --root "$target" --create-home "$clean_user"
}

# The root as a machine of its own: with processes, /proc, /run and /tmp of its own, all gone when the command
# ends. It becomes the root for good (chroot would not do): WebKit's own sandbox needs a whole /proc and namespaces.
# shellcheck disable=SC2016  # for the shell there
enter_root='mount --bind "$0" "$0" && cd "$0" && mount -t proc proc proc && mount --rbind /dev dev &&
    mount --rbind /sys sys && mount -t tmpfs tmpfs run && mount -t tmpfs -o mode=1777 tmpfs tmp &&
    mkdir tmp/.X11-unix && mount --bind /tmp/.X11-unix tmp/.X11-unix &&
    mount --bind /etc/resolv.conf etc/resolv.conf && pivot_root . mnt && umount -l /mnt && exec "$@"'

within() {
    local target=$1
    shift
    unshare --mount --pid --ipc --uts --fork --kill-child sh -c "$enter_root" "$target" \
        env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin DEBIAN_FRONTEND=noninteractive LANG=C.UTF-8 HOME=/root \
        DISPLAY="${DISPLAY:-}" "$@"
}

within_as_user() {
    local target=$1
    shift
    within "$target" HOME="/home/$clean_user" XDG_RUNTIME_DIR="/home/$clean_user/.run" LIBGL_ALWAYS_SOFTWARE=1 \
        setpriv --reuid "$clean_user" --regid "$clean_user" --clear-groups --inh-caps=-all --bounding-set=-all -- "$@"
}

apt_within() {
    local target=$1
    shift
    within "$target" apt-get -q -y --no-install-recommends -o Dpkg::Options::=--force-unsafe-io "$@" >"$scratch/apt.log" 2>&1 || {
        cat "$scratch/apt.log" >&2
        fail "apt-get $* failed in the clean root"
    }
}

# Ended as the end of a session ends it, when the file "stop" is there.
# shellcheck disable=SC2016  # for the shell there
until_stopped='qno-corvel & program=$!
    until [ -e ~/.run/stop ]; do sleep 0.1; kill -0 $program || exit 1; done
    kill $program; wait $program; echo $? >~/.run/ended'

# The preview of a note is the first to need WebKit.
write_note() {
    xdotool windowfocus --sync "$(main_window)" key --clearmodifiers ctrl+n
    take_picture "${children[-1]}" "$1"
    xdotool type '# Raven'
    take_picture "${children[-1]}" "$1"
}

# Opens the program's window, writes a note, keeps its picture, asks for a quiet log and a clean end.
start_there() {
    local target=$1 picture=$2 runtime=$1/home/$clean_user/.run
    rm -f "$runtime/stop" "$runtime/ended"
    show_program "$picture" within_as_user "$target" dbus-run-session -- sh -c "$until_stopped"
    write_note "$picture"
    touch "$runtime/stop"
    wait "${children[-1]}" || true
    if grep -iE 'warning|critical|error|cannot' "$scratch/program.log" >&2; then
        fail "the program complains in the clean root"
    fi
    [[ $(cat "$runtime/ended") == 0 ]] || fail "the program ended with $(cat "$runtime/ended")"
}

# The bus knows how to start the program, and it stays to be asked.
start_by_bus() {
    within_as_user "$1" dbus-run-session -- sh -c '
        dbus-send --session --print-reply --dest=org.freedesktop.DBus /org/freedesktop/DBus \
            org.freedesktop.DBus.StartServiceByName string:com.qno.corvel uint32:0 &&
        dbus-send --session --print-reply --dest=com.qno.corvel /com/qno/corvel \
            org.freedesktop.DBus.Peer.Ping' >"$scratch/bus.log" 2>&1 || {
        cat "$scratch/bus.log" >&2
        fail "the bus cannot start the program"
    }
}

leftovers() { within "$1" find / -xdev \( -path /proc -o -path /home \) -prune -o -iname '*corvel*' -print; }

try_package() {
    local first=$1 second=$2 target left
    ((EUID == 0)) || fail "--try needs root"
    command -v mmdebstrap >/dev/null || fail "--try needs mmdebstrap"
    open_virtual_display 1440x900x24
    target=$scratch/root
    say "making a clean root"
    make_clean_root "$target"
    cp "$first" "$second" "$target/root/"

    say "installing $(basename "$first")"
    apt_within "$target" install "/root/$(basename "$first")"
    mkdir -m 700 "$target/home/$clean_user/.run"
    chown "$(stat -c %u:%g "$target/home/$clean_user")" "$target/home/$clean_user/.run"
    start_there "$target" "$root/build/package-installed.png"
    start_by_bus "$target"

    say "upgrading to $(basename "$second")"
    apt_within "$target" install "/root/$(basename "$second")"
    start_there "$target" "$root/build/package-upgraded.png"

    say "removing"
    apt_within "$target" purge qno-corvel
    rm "$target/root/"*.deb
    left=$(leftovers "$target")
    [[ -z $left ]] || fail "left behind: $left"
    [[ -s $target/home/$clean_user/.local/share/"qno Corvel"/qnoCorvel.sqlite ]] || fail "the library is gone"
    say "installed, started, upgraded and removed; pictures: build/package-*.png"
}
