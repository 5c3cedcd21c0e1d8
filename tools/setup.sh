# SPDX-FileCopyrightText: the Tavelo authors
# SPDX-License-Identifier: MIT
#
# Sourced by ./run and ./test: the Debian 12 packages they need, and how a missing one is installed.

build_packages=(
  g++ cmake ninja-build pkg-config
  qt6-base-dev qt6-base-private-dev qt6-declarative-dev qt6-declarative-dev-tools
  qt6-declarative-private-dev qt6-svg-dev libgl-dev
  qcoro-qt6-dev libglib2.0-dev libmpv-dev libssl-dev libcurl4-openssl-dev
)
start_packages=(
  qml6-module-qtquick qml6-module-qtquick-window qml6-module-qtquick-layouts
  qml6-module-qtquick-templates qml6-module-qtqml qml6-module-qtqml-models
  qml6-module-qtqml-workerscript qml6-module-qtquick-dialogs qml6-module-qt-labs-folderlistmodel
  qml6-module-qtquick-controls
  libgl1-mesa-dri fonts-inter
)
demo_packages=(ffmpeg)
hidden_display_packages=(xvfb xauth)
test_packages=("${demo_packages[@]}" "${hidden_display_packages[@]}" dbus-daemon
  desktop-file-utils openssl)

is_installed() {
  [ "$(dpkg-query -W -f='${db:Status-Status}' "$1" 2>/dev/null)" = installed ]
}

# install_missing PACKAGE… : says what is missing and installs just that; silent when nothing is.
install_missing() {
  local missing=() package
  for package in "$@"; do
    is_installed "$package" || missing+=("$package")
  done
  [ ${#missing[@]} -gt 0 ] || return 0
  echo "Installing from Debian: ${missing[*]}"
  local as_root=()
  if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null || {
      echo "Not root and no sudo: please install these packages and start again." >&2
      return 1
    }
    as_root=(sudo)
  fi
  "${as_root[@]}" apt-get update -qq
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
    apt-get install -y -qq --no-install-recommends "${missing[@]}"
}

# build PRESET TARGET… : configures and builds; says nothing but what it builds and what goes wrong.
build() {
  local preset=$1
  shift
  cmake --preset "$preset" >/dev/null
  echo "Building $*"
  cmake --build "build/$preset" --target "$@" -- --quiet
}
