# shellcheck shell=bash
# What the scripts beside this one have in common. To be sourced.

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
logs=$root/out/logs
# Not whichever python3 comes first: only Debian's own sees the modules that Debian packages bring.
# shellcheck disable=SC2034 # used by the scripts that source this
python=/usr/bin/python3

say() { printf '%s\n' "$*"; }

# quietly NAME COMMAND...: runs COMMAND with its output in out/logs/NAME.log, and shows the end of that only when
# it fails.
quietly() {
  local log=$logs/$1.log status=0
  shift
  mkdir -p "$logs"
  "$@" >"$log" 2>&1 || status=$?
  if [ "$status" -ne 0 ]; then
    grep -vE '^\[[0-9]+/[0-9]+\] (Building|Linking|Automatic)' "$log" | tail -n 60 >&2
    say "Failed with status $status: $*" "(everything it wrote: $log)" >&2
  fi
  return "$status"
}

# installPackages USE...: installs what packaging/packages.txt lists for these uses and this machine lacks.
# Touches neither apt nor the network when nothing is lacking.
installPackages() {
  local uses=" $* " wanted missing asRoot=()
  wanted=$(while read -r use package; do
    if [[ $uses == *" $use "* ]]; then printf '%s\n' "$package"; fi
  done <"$root/packaging/packages.txt")
  missing=$(comm -23 <(sort -u <<<"$wanted") <(installedAmong "$wanted"))
  [ -n "$missing" ] || return 0
  # shellcheck disable=SC2086 # one word per package
  set -- $missing
  say "Installing $# Debian packages: $*"
  [ "$(id -u)" -eq 0 ] || asRoot=(sudo)
  quietly apt-update "${asRoot[@]}" apt-get -qq -o DPkg::Lock::Timeout=300 update || return
  quietly apt-install "${asRoot[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -qq -o DPkg::Lock::Timeout=300 \
    -o Dpkg::Use-Pty=0 install --no-install-recommends "$@"
}

# installedAmong PACKAGES: those that are installed, sorted.
installedAmong() {
  # shellcheck disable=SC2016,SC2086 # dpkg-query's own variables; one word per package
  dpkg-query --show --showformat '${db:Status-Status} ${Package}\n' $1 2>/dev/null |
    sed -n 's/^installed //p' | sort -u
}

# buildPreset PRESET [TARGET...]: configures and builds, everything when no target is named.
buildPreset() {
  local preset=$1 target targets=()
  shift
  for target; do targets+=(--target "$target"); done
  say "Building $preset."
  (
    cd "$root" &&
      quietly "configure-$preset" cmake --preset "$preset" &&
      quietly "build-$preset" cmake --build --preset "$preset" "${targets[@]}"
  )
}

# buildProgram: what is installed: the program, the indexer that it starts, and the look that it loads.
buildProgram() { buildPreset release hosts/desktop/all hosts/medialibrary/all; }

# ours PATTERN...: the files of ours that match, whether committed yet or not. To be called in the root.
ours() {
  git -c core.quotePath=off ls-files --cached --others --exclude-standard -- "$@" | sort -u | while read -r file; do
    if [ -f "$file" ]; then printf '%s\n' "$file"; fi
  done
}

# desktopFilesAreValid ENTRY METAINFO: whether those who read them would take them.
desktopFilesAreValid() { desktop-file-validate "$1" && appstreamcli validate --no-net "$2"; }
