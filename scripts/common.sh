# SPDX-License-Identifier: BSD-2-Clause
# Sourced by the scripts: changes to the project's folder and builds presets.
set -euo pipefail
# Lets ccache cache sources that use a precompiled header.
export CCACHE_SLOPPINESS=pch_defines,time_macros
cd "$(dirname "${BASH_SOURCE[0]}")/.."

build_preset() {
  local launcher=()
  command -v ccache >/dev/null && launcher=(-DCMAKE_C_COMPILER_LAUNCHER=ccache
                                            -DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
  cmake --preset "$1" "${launcher[@]}" >"/tmp/nkdraw-configure.$$" || {
    cat "/tmp/nkdraw-configure.$$"
    rm -f "/tmp/nkdraw-configure.$$"
    return 1
  }
  rm -f "/tmp/nkdraw-configure.$$"
  cmake --build --preset "$1" "${@:2}"
}
