# shellcheck shell=bash disable=SC2034
# The packages that ./dev's commands need, on Debian and on a Mac with Homebrew, and how they are installed.

host=$(uname)
if [[ $host == Darwin ]]; then
  build_packages=(cmake ninja googletest)
  macos_packages=(cmake ninja)
else
  rehearse_packages=(cmake ninja-build g++ pkg-config libplist-dev bubblewrap zsh)
  build_packages=("${rehearse_packages[@]}" libgtest-dev nlohmann-json3-dev clang-14 gobjc++ libblocksruntime-dev libgnustep-base-dev)
  check_packages=(clang-14 clang-format-14 clang-tidy-14 libclang-rt-14-dev shellcheck mandoc)
  macos_packages=(ca-certificates cmake ninja-build lld-16 llvm-14)
fi

is_installed() {
  if [[ $host == Darwin ]]; then
    command -v "$1" >/dev/null || brew list --versions "$1" >/dev/null 2>&1
  else
    [[ $(dpkg-query -W -f='${Status}' "$1" 2>/dev/null) == 'install ok installed' ]]
  fi
}

# Dies when nothing here can install the given packages.
expect_installer() {
  if [[ $host == Darwin ]]; then
    command -v brew >/dev/null || die "these packages are missing, and there is no Homebrew to install them: $*"
    return
  fi
  command -v apt-get >/dev/null || die "these Debian packages are missing, and there is no apt-get: $*"
  ((EUID == 0)) || command -v sudo >/dev/null || die "these Debian packages are missing; install them as root: $*"
}

install_packages() {
  local as_root=env
  ((EUID == 0)) || as_root=sudo
  case $host in
    Darwin) brew install "$@" ;;
    *)
      "$as_root" apt-get update &&
        "$as_root" env DEBIAN_FRONTEND=noninteractive apt-get install -y --no-install-recommends "$@"
      ;;
  esac
}

# Installs those of the given packages that are missing; says nothing when none is.
need() {
  local missing=() package log
  for package in "$@"; do
    is_installed "$package" || missing+=("$package")
  done
  ((${#missing[@]})) || return 0
  expect_installer "${missing[@]}"
  echo "dev: installing ${missing[*]}" >&2
  log=$(mktemp)
  if ! install_packages "${missing[@]}" >"$log" 2>&1; then
    tail -n 5 "$log" >&2
    rm -f "$log"
    die "could not install: ${missing[*]}"
  fi
  rm -f "$log"
}
