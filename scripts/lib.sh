# What the scripts in this folder share; they source it.  It changes to the root of the source tree.  Each script runs
# on a bare Debian 12: the packages that it needs are installed when they are missing, as root or through sudo.
# shellcheck shell=bash

set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
export LC_ALL=C.UTF-8

# The packages of Debian 12, by what needs them.
build_packages=(g++ cmake ninja-build libboost-dev libpugixml-dev uuid-dev)
tool_packages=(libboost-program-options-dev nlohmann-json3-dev)
test_packages=(googletest librapidcheck-dev libxml2-utils tzdata)
bench_packages=(libbenchmark-dev liblmdb-dev)
sanitizer_packages=(clang libclang-rt-14-dev llvm)
format_packages=(clang-format)
lint_packages=(clang clang-tidy)
i386_packages=(g++-multilib)
# Only their libraries, unpacked beside the build: the headers are the same as on amd64.
i386_libraries=(libpugixml-dev libpugixml1v5 librapidcheck-dev libuuid1)

jobs=${QEL_JOBS:-$(nproc)}

# Ends the script with one line that says why.
fail() {
    echo "${0##*/}: $*" >&2
    exit 1
}

heading() {
    echo "== $*"
}

# Runs a command as root.
as_root() {
    if ((EUID == 0)); then
        "$@"
    else
        sudo -- "$@"
    fi
}

apt_is_updated=false

# What apt-get said went wrong, from its log.
apt_error() {
    local line
    line=$(grep '^E:' "$1" | tail -n 1) || line=$(tail -n 1 "$1")
    echo "${line#E: }"
}

# Installs those of the packages named that are missing.  On failure `install_error` tells the reason.
try_install_packages() {
    local package missing=() log
    for package in "$@"; do
        [[ $(dpkg-query -W -f='${db:Status-Abbrev}' "$package" 2>/dev/null) == ii* ]] || missing+=("$package")
    done
    ((${#missing[@]})) || return 0

    install_error="${missing[*]} must be installed"
    command -v apt-get >/dev/null || { install_error+=", and there is no apt-get here" && return 1; }
    ((EUID == 0)) || command -v sudo >/dev/null || { install_error+=": run this as root, or install sudo" && return 1; }

    echo "Installing ${missing[*]}"
    log=$(mktemp)
    # An index that can't be had is not yet a reason to stop: the packages may stand in the others.
    $apt_is_updated || as_root apt-get -q update >"$log" 2>&1 || true
    apt_is_updated=true
    if ! as_root env DEBIAN_FRONTEND=noninteractive apt-get -qq -y --no-install-recommends install "${missing[@]}" \
        >>"$log" 2>&1 </dev/null; then
        install_error="apt-get cannot install ${missing[*]}: $(apt_error "$log")"
        rm -f "$log"
        return 1
    fi
    rm -f "$log"
}

# The same, and ends the script when it fails.
install_packages() {
    try_install_packages "$@" || fail "$install_error"
}

# Makes the 32-bit build possible: the compiler's 32-bit half from its package, and the libraries below
# build/i386-sysroot.  These are fetched with a package index of their own and unpacked, not installed, since the system's
# own packages may be at other versions than the i386 ones that are offered, and apt-get then refuses to have both.  On
# failure `install_error` tells the reason.
try_prepare_i386() {
    local sysroot=build/i386-sysroot apt=$PWD/build/i386-apt log
    try_install_packages "${i386_packages[@]}" || return 1
    [[ $(cat "$sysroot/complete" 2>/dev/null) == "${i386_libraries[*]}" ]] && return 0

    echo "Fetching ${i386_libraries[*]} for i386"
    rm -rf "$apt" "$sysroot"
    mkdir -p "$apt"/{lists,cache,packages} "$sysroot"
    cat >"$apt/apt.conf" <<CONF
APT::Architecture "i386";
APT::Architectures { "i386"; };
APT::Sandbox::User "";
Acquire::Languages "none";
Dir::State "$apt";
Dir::State::lists "$apt/lists";
Dir::State::status "/dev/null";
Dir::Cache "$apt/cache";
CONF
    log=$apt/log
    APT_CONFIG=$apt/apt.conf apt-get -q update >"$log" 2>&1 || true
    if ! (cd "$apt/packages" && APT_CONFIG=$apt/apt.conf apt-get -q download "${i386_libraries[@]}") >>"$log" 2>&1; then
        install_error="apt-get cannot fetch ${i386_libraries[*]} for i386: $(apt_error "$log")"
        return 1
    fi
    local package
    for package in "$apt"/packages/*.deb; do
        dpkg-deb -x "$package" "$sysroot"
    done
    rm -rf "$apt"

    echo 'int main() {}' | g++ -m32 -x c++ -o "$sysroot/probe" -
    if ! "$sysroot/probe"; then
        install_error="this kernel does not run 32-bit programs"
        return 1
    fi
    echo "${i386_libraries[*]}" >"$sysroot/complete"
}

# Configures and builds a preset; targets may follow.
build_preset() {
    local preset=$1 log=build/$1/configure.log target targets=()
    shift
    for target in "$@"; do
        targets+=(--target "$target")
    done
    mkdir -p "build/$preset"
    cmake --preset "$preset" >"$log" 2>&1 || { cat "$log" && return 1; }
    cmake --build "build/$preset" -j "$jobs" "${targets[@]}" -- --quiet -k 0
}
