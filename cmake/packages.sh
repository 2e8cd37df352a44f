# Installs what a command of ./dev needs and this machine lacks. To be sourced.
#
#     need ninja-build wine           Debian or Ubuntu packages; "a|b" means the first that there is

# As root directly, else through sudo.
as_root() {
    if [ "$(id -u)" -eq 0 ]; then
        "$@"
    elif command -v sudo >/dev/null; then
        sudo "$@"
    else
        printf 'This needs the rights of root: %s\n' "$*" >&2
        return 1
    fi
}

is_installed() {
    dpkg-query -W -f='${Status}' "$1" 2>/dev/null | grep -q '^install ok installed'
}

is_offered() {
    apt-cache show "$1" >/dev/null 2>&1
}

# Prints the package names, of the arguments, that are not installed.
missing_packages() {
    for wanted in "$@"; do
        found=
        for name in $(printf '%s' "$wanted" | tr '|' ' '); do
            if is_installed "$name"; then found=yes; fi
        done
        [ -n "$found" ] || printf '%s\n' "$wanted"
    done
}

# Of "a|b" the first that the machine's package lists offer.
choose_package() {
    for name in $(printf '%s' "$1" | tr '|' ' '); do
        if is_offered "$name"; then printf '%s\n' "$name"; return; fi
    done
    printf '%s\n' "$name"
}

need() {
    if ! command -v apt-get >/dev/null; then
        printf 'This system has no apt-get; the packages needed are, under Debian'"'"'s names: %s\n' "$*" >&2
        return 0
    fi
    lacking=$(missing_packages "$@")
    [ -n "$lacking" ] || return 0
    say "Installing" $lacking
    mkdir -p build
    as_root apt-get -q update >build/apt.log 2>&1 || { cat build/apt.log >&2; return 1; }
    chosen=
    for wanted in $lacking; do chosen="$chosen $(choose_package "$wanted")"; done
    as_root env DEBIAN_FRONTEND=noninteractive apt-get -q install -y --no-install-recommends $chosen \
        >build/apt.log 2>&1 || { cat build/apt.log >&2; return 1; }
}
