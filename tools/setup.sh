# Sourced by ./dev: installs what a command needs and the machine has not.

build_packages=(
  g++ cmake ninja-build ccache pkg-config python3 ca-certificates
  libicu-dev icu-devtools libfmt-dev nlohmann-json3-dev libcli11-dev
  libxlsxwriter-dev
  librapidcheck-dev libsnappy-dev libgtest-dev libgmock-dev libbenchmark-dev libvalijson-dev zlib1g-dev libzstd-dev
  librnp-dev libsodium-dev libsimdjson-dev libsqlite3-dev libpq-dev gnupg valgrind
)
test_packages=(libreoffice-calc-nogui locales iso-codes tzdata r-base-core postgresql)
check_packages=(clang-format-19 clang-tidy-19)
fuzz_packages=(clang-19 libclang-rt-19-dev)

install_build_packages() { install_apt_packages "${build_packages[@]}"; }
install_test_packages() { install_apt_packages "${test_packages[@]}"; }
install_browser() {
  install_apt_packages chromium fonts-noto-core
  install_npm_packages tests/browser browser
}
install_fuzz_packages() { install_apt_packages "${fuzz_packages[@]}"; }
install_check_packages() { install_apt_packages "${check_packages[@]}"; }

install_apt_packages() {
  local package missing=()
  for package in "$@"; do
    is_installed "$package" || missing+=("$package")
  done
  [ ${#missing[@]} -gt 0 ] || return 0
  if [ "$(id -u)" -ne 0 ]; then
    echo "Packages are missing. Install them as root: apt-get install ${missing[*]}" >&2
    exit 2
  fi
  export DEBIAN_FRONTEND=noninteractive
  ${apt_is_updated:-false} || step "apt-get update" apt-get update
  apt_is_updated=true
  step "apt-get install" apt-get install -y --no-install-recommends "${missing[@]}"
}

is_installed() { [ "$(dpkg-query -W -f='${db:Status-Status}' "$1" 2>/dev/null)" = installed ]; }

# install_npm_packages FOLDER NAME: what FOLDER/package-lock.json pins, under build/npm/NAME/node_modules. Every package is
# held against the lock's integrity hash; no script of a package is run.
install_npm_packages() {
  local pins=$1 target=build/npm/$2
  cmp -s "$pins/package-lock.json" "$target/installed-lock.json" && return 0
  # Whichever node and npm the machine has will do.
  command -v node >/dev/null && command -v npm >/dev/null || install_apt_packages nodejs npm
  mkdir -p "$target"
  cp "$pins/package.json" "$pins/package-lock.json" "$pins/.npmrc" "$target"
  step "npm ci $2" npm --prefix "$target" ci --ignore-scripts
  cp "$pins/package-lock.json" "$target/installed-lock.json"
}
