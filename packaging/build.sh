# What ./run, ./test and .ci/run share; sourced by them. Says nothing while all goes well.

project=$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")/.." && pwd)

# Runs a command; shows what it wrote only if it fails.
quietly() {
  local log status=0
  log=$(mktemp)
  "$@" >"$log" 2>&1 </dev/null || status=$?
  if [ "$status" -ne 0 ]; then
    cat -- "$log" >&2
    echo "failed ($status): $*" >&2
  fi
  rm -f -- "$log"
  return "$status"
}

# A word for whoever waits at a terminal.
tell() {
  if [ -t 2 ]; then echo "$*" >&2; fi
}

# Installs the Debian packages of a list that are not there.
install_packages() {
  local packages missing as_root=()
  command -v dpkg-query >/dev/null || return 0
  mapfile -t packages <"$project/packaging/$1"
  mapfile -t missing < <(comm -23 <(printf '%s\n' "${packages[@]}" | sort) \
    <(dpkg-query -W -f='${db:Status-Status} ${Package}\n' "${packages[@]}" 2>/dev/null | sed -n 's/^installed //p' | sort))
  [ "${#missing[@]}" -gt 0 ] || return 0
  if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null || { echo "to be installed first, as root: apt-get install ${missing[*]}" >&2; return 1; }
    as_root=(sudo)
    sudo -v || return  # asks for a password while its prompt can be seen
  fi
  tell "installing ${missing[*]} ..."
  quietly "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get update || return
  quietly "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y --no-install-recommends "${missing[@]}"
}

# Configures a preset where that is needed, and builds it.
build() {
  local preset=$1
  local ninja_file=$project/build/$preset/build.ninja
  install_packages debian-packages.txt || return
  if [ ! -e "$ninja_file" ] || [ "$project/CMakePresets.json" -nt "$ninja_file" ]; then
    tell "building $preset; the first time takes a minute or two ..."
    (cd -- "$project" && quietly cmake --preset "$preset") || return
  fi
  (cd -- "$project" && quietly cmake --build --preset "$preset")
}

# Builds a preset and runs its tests; ends with ctest's summary. Further words go to ctest.
run_tests() {
  local preset=$1 log status=0 as_is=()
  shift
  build "$preset" || return
  # the thread sanitizer does not get along with every kernel's address randomisation
  if [ "$preset" = tsan ] && setarch -R true 2>/dev/null; then as_is=(setarch -R); fi
  log=$(mktemp)
  (cd -- "$project" && "${as_is[@]}" ctest --preset "$preset" --no-tests=error -j "$(nproc)" "$@") \
    >"$log" 2>&1 </dev/null || status=$?
  if [ "$status" -eq 0 ]; then grep 'tests passed' -- "$log" || status=1; fi
  if [ "$status" -ne 0 ]; then cat -- "$log" >&2; fi
  rm -f -- "$log"
  return "$status"
}
