# Common functions of the scripts in this folder, which source this file.  It changes to the root of the source tree.
# Each script runs on a minimal Debian 12 and installs the packages it needs if they are missing, as root or through
# sudo.
# shellcheck shell=bash

set -euo pipefail
this_script=$(realpath "$0")
cd "$(dirname "${BASH_SOURCE[0]}")/.."
export LC_ALL=C.UTF-8

# Packages of Debian 12, by purpose.
build_packages=(g++ cmake ninja-build libboost-dev libpugixml-dev uuid-dev)
tool_packages=(libboost-program-options-dev nlohmann-json3-dev)
test_packages=(googletest librapidcheck-dev libxml2-utils tzdata)
bench_packages=(libbenchmark-dev liblmdb-dev)
sanitizer_packages=(clang libclang-rt-14-dev llvm)
format_packages=(clang-format)
lint_packages=(clang clang-tidy)
picture_packages=(graphviz fonts-dejavu-core)
i386_packages=(g++-multilib)
# Only the libraries in these packages are used; the headers are the same as on amd64.
i386_libraries=(libpugixml-dev libpugixml1v5 librapidcheck-dev libuuid1)

jobs=${QEL_JOBS:-$(nproc)}

# Exits with status 1 and a one-line reason.
fail() {
    echo "${0##*/}: $*" >&2
    exit 1
}

heading() {
    echo "== $*"
}

# Prints the comment at the top of the script, which is its help text.
print_help() {
    sed -n '1d; /^#/!q; s/^# \{0,1\}//p' "$this_script"
}

for argument in "$@"; do
    if [[ $argument == --help || $argument == -h ]]; then
        print_help
        exit 0
    fi
done
unset argument

# Formats a number of seconds: "1:05" for 65.
elapsed() {
    printf '%d:%02d' $(($1 / 60)) $(($1 % 60))
}

# Prints the lines of a log that look like errors; its last lines if there are none.
lines_that_matter() {
    local lines
    lines=$(sed 's/\x1b\[[0-9;]*m//g' "$1" |
        grep -E '(^|[^[:alnum:]])([Ee]rror|ERROR|fatal|Failure|FAILED|undefined reference|No such file)([^[:alnum:]]|$)|^E:|differs' |
        grep -vE '^ninja: |FAILED: .*\.o *$|0 failed|-fno-sanitize|FAILED TESTS?$' | head -n 10) || true
    [[ -n $lines ]] || lines=$(tail -n 10 "$1")
    printf '%s\n' "$lines"
}

# Reports the progress of a step: on a terminal in one line that is overwritten, otherwise in one line every 30 seconds.
report_interval=30
show_progress() {
    local title=$1 count=$2 start=$3
    local line="   $title${count:+ $count} $(elapsed $((SECONDS - start)))"
    if [[ -t 1 ]]; then
        printf '\r\e[K%.*s' "$((${COLUMNS:-80} - 1))" "$line"
    elif ((SECONDS - reported_at >= report_interval)); then
        reported_at=$SECONDS
        echo "$line"
    fi
}

# Updates `count` from a line of output: "12/483" from ninja, the number of steps from apt-get.  Fails for any other
# line.
count_in_line() {
    if [[ $1 =~ ^\[([0-9]+/[0-9]+)\] ]]; then
        count=${BASH_REMATCH[1]}
    elif [[ $1 =~ ^(Unpacking|Setting\ up)\  ]]; then
        count=$((${count:-0} + 1))
        [[ -z ${step_total-} ]] || count="${count%%/*}/$step_total"
    elif [[ $1 =~ ([0-9]+)\ newly\ installed ]]; then
        step_total=$((BASH_REMATCH[1] * 2))
        return 1
    else
        return 1
    fi
}

# Runs a command, writes its output to a log, and reports progress: run_logged TITLE LOG COMMAND...  Returns its status.
run_logged() {
    local title=$1 log=$2 start=$SECONDS status=0 line='' count='' step_total='' reported_at=$SECONDS output pid
    shift 2
    exec {output}< <("$@" 2>&1 </dev/null | tee "$log"; exit "${PIPESTATUS[0]}")
    pid=$!
    while true; do
        if IFS= read -r -t 1 -u "$output" line; then
            count_in_line "$line" || continue
        elif (($? <= 128)); then
            break
        fi
        show_progress "$title" "$count" "$start"
    done
    exec {output}<&-
    wait "$pid" || status=$?
    [[ ! -t 1 ]] || printf '\r\e[K'
    if ((status)); then
        echo "   $title: failed after $(elapsed $((SECONDS - start))); its output is in $log"
    else
        echo "   $title: $(elapsed $((SECONDS - start)))"
    fi
    return "$status"
}

# Like run_logged, but if the command fails, also prints the relevant lines of the log.
step() {
    local status=0
    run_logged "$@" || status=$?
    ((!status)) || lines_that_matter "$2" | sed 's/^/   | /'
    return "$status"
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

# Prints the error message in a log of apt-get.
apt_error() {
    local line
    line=$(grep '^E:' "$1" | tail -n 1) || line=$(tail -n 1 "$1")
    echo "${line#E: }"
}

# Installs the missing ones of the given packages.  On failure `install_error` contains the reason.
try_install_packages() {
    local package missing=() log
    for package in "$@"; do
        [[ $(dpkg-query -W -f='${db:Status-Abbrev}' "$package" 2>/dev/null) == ii* ]] || missing+=("$package")
    done
    ((${#missing[@]})) || return 0

    install_error="${missing[*]} must be installed"
    command -v apt-get >/dev/null || { install_error+=", but apt-get was not found" && return 1; }
    ((EUID == 0)) || command -v sudo >/dev/null || { install_error+=": run this as root, or install sudo" && return 1; }

    log=$(mktemp)
    # Continue if the index cannot be updated: the existing one may suffice.
    $apt_is_updated || step "package index" "$log" as_root apt-get -q update || true
    apt_is_updated=true
    if ! step "installing ${#missing[@]} packages" "$log" as_root env DEBIAN_FRONTEND=noninteractive \
        apt-get -q -y --no-install-recommends install "${missing[@]}"; then
        install_error="apt-get cannot install ${missing[*]}: $(apt_error "$log")"
        rm -f "$log"
        return 1
    fi
    rm -f "$log"
}

# Like try_install_packages, but exits on failure.
install_packages() {
    try_install_packages "$@" || fail "$install_error"
}

# Prepares the 32-bit build: installs the 32-bit support of the compiler, and unpacks the libraries in
# build/i386-sysroot.  The libraries are downloaded with a separate package index and not installed: apt-get refuses to
# install i386 and amd64 packages of different versions side by side, and the amd64 packages of the system may have
# other versions than the i386 packages on offer.  On failure `install_error` contains the reason.
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

# Configures and builds a preset: build_preset PRESET [TARGET...].
build_preset() {
    local preset=$1 target targets=()
    shift
    for target in "$@"; do
        targets+=(--target "$target")
    done
    mkdir -p "build/$preset"
    step "configure $preset" "build/$preset/configure.log" cmake --preset "$preset" || return
    step "build $preset" "build/$preset/build.log" cmake --build "build/$preset" -j "$jobs" "${targets[@]}" -- -k 0
}

# Builds the libraries and the tool like a user and installs them: build_and_install BUILD PREFIX LOGS.  -O1 reduces the
# compile time by a quarter; these programs are demonstrated, not measured.
build_and_install() {
    step "configure" "$3/configure.log" cmake -S . -B "$1" -G Ninja -DCMAKE_BUILD_TYPE=Release -DQEL_BUILD_TESTS=OFF \
        -DCMAKE_CXX_FLAGS_RELEASE="-O1 -DNDEBUG" -DCMAKE_INSTALL_PREFIX="$2"
    step "build" "$3/build.log" cmake --build "$1" -j "$jobs"
    step "install" "$3/install.log" cmake --install "$1"
}

# Builds all example programs, or the given ones, against the installed libraries: build_examples BUILD PREFIX LOGS
# [TARGET...].
build_examples() {
    local target targets=()
    for target in "${@:4}"; do
        targets+=(--target "$target")
    done
    step "configure examples" "$3/configure-examples.log" cmake -S examples/embed -B "$1" -G Ninja -DCMAKE_PREFIX_PATH="$2"
    step "build examples" "$3/build-examples.log" cmake --build "$1" -j "$jobs" "${targets[@]}"
}
