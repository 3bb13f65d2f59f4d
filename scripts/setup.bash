# Shared by the scripts that people call; sourced from the top folder of the project.

fail() {
  echo "${0##*/}: $*" >&2
  exit 2
}

# True if a package is there: as "command:package" by its command, however that came here, otherwise as a Debian
# package. A system without Debian's packages has to bring its libraries itself; CMake then says what is missing.
is_installed() {
  case $1 in
    *:*) command -v "${1%%:*}" >/dev/null ;;
    *) ! command -v dpkg-query >/dev/null || dpkg-query -W -f='${db:Status-Status}' "$1" 2>/dev/null | grep -qx installed ;;
  esac
}

# Installs those of the packages that are missing, if there are any.
need_packages() {
  local entry root=() missing=()
  for entry in "$@"; do is_installed "$entry" || missing+=("${entry##*:}"); done
  [[ ${#missing[@]} -gt 0 ]] || return 0
  [[ $(id -u) == 0 ]] || root=(sudo)
  if ! command -v apt-get >/dev/null || { [[ ${#root[@]} -gt 0 ]] && ! command -v sudo >/dev/null; }; then
    fail "missing packages, please install: ${missing[*]}"
  fi
  echo "Installing ${missing[*]}"
  root+=(env DEBIAN_FRONTEND=noninteractive)
  "${root[@]}" apt-get update -qq &&
    "${root[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null ||
    fail "could not install: ${missing[*]}"
}

BuildTools=(cmake:cmake ninja:ninja-build g++:g++)

# Configures a preset, once: ninja sees to later changes of any CMakeLists.txt by itself.
configure() {
  [[ build/$1/build.ninja -nt CMakePresets.json ]] || cmake --preset "$1"
}
