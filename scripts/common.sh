# What `dev` and the scripts behind it share; sourced, in the project's folder.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

readonly LLVM=14 # the version whose clang-format and clang-tidy settle what is clean

# --- small things -----------------------------------------------------------------------------------

step() { echo "== $*"; }

fail() {
  echo "dev: $*" >&2
  exit 1
}

# Runs a command and shows what it printed only when it fails.
quietly() {
  local log status=0
  log=$(mktemp)
  "$@" >"$log" 2>&1 || status=$?
  ((status == 0)) || cat "$log"
  rm -f "$log"
  return "$status"
}

cores() { getconf _NPROCESSORS_ONLN; }

cxx_files() { # DIRECTORY...
  local directory
  for directory; do
    [[ ! -d $directory ]] || find "$directory" \( -name '*.h' -o -name '*.cpp' \) -print0
  done
}

# The tool of the version that decides, where it stands beside another.
llvm() { # TOOL
  command -v "$1-$LLVM" || command -v "$1"
}

note_version() { # TOOL
  local version
  version=$("$(llvm "$1")" --version | grep -o 'version [0-9]*' | head -n 1)
  [[ $version == "version $LLVM" ]] || echo "note: $1 is of $version; version $LLVM decides, and others differ in details"
}

# --- building ---------------------------------------------------------------------------------------

# What was compiled before is not compiled again, where there is ccache.
if command -v ccache >/dev/null; then export CMAKE_CXX_COMPILER_LAUNCHER=${CMAKE_CXX_COMPILER_LAUNCHER-ccache}; fi

configure() { # PRESET
  step "configure ($1)"
  quietly cmake --preset "$1"
}

build() { # PRESET [OPTION]...
  step "build ($1)"
  if [[ -t 1 ]]; then cmake --build --preset "$@"; else quietly cmake --build --preset "$@"; fi
}

build_and_test() { # PRESET
  configure "$1"
  build "$1"
  run_tests "$1"
}

run_tests() { # PRESET
  step "test ($1)"
  ctest --preset "$1" --output-on-failure --progress --parallel "$(cores)"
}

# --- what is needed ---------------------------------------------------------------------------------

missing=() # Debian packages
reasons=() # why each is wanted

need() { # PACKAGE REASON
  missing+=("$1")
  reasons+=("$2")
}

need_command() { # COMMAND PACKAGE REASON
  command -v "$1" >/dev/null || command -v "$1-$LLVM" >/dev/null || need "$2" "$3"
}

need_header() { # HEADER PACKAGE REASON
  [[ -f /usr/include/$1 || -f /usr/local/include/$1 ]] || need "$2" "$3"
}

need_build_tools() {
  need_command cmake cmake "configuring"
  need_command ninja ninja-build "building"
  [[ -n ${CXX:-} ]] || command -v c++ >/dev/null || command -v g++ >/dev/null ||
    command -v clang++ >/dev/null || need g++ "compiling"
}

# Without these the programs around varpre are left out.
need_tool_libraries() {
  need_header CLI/CLI.hpp libcli11-dev "the arguments of the tools"
  need_header nlohmann/json.hpp nlohmann-json3-dev "the JSON of the tools"
  need_header yaml-cpp/yaml.h libyaml-cpp-dev "the mechanisms that varpre-import reads"
  [[ -f /usr/share/javascript/chart.js/chart.min.js ]] || need libjs-chart.js "the charts of varpre-report"
}

# The tests of the tools check them by other means.
need_tool_tests() {
  python3 -c "import yaml" 2>/dev/null || /usr/bin/python3 -c "import yaml" 2>/dev/null || need python3-yaml "the tests of varpre-import"
  need_command node nodejs "the tests of what the report's page computes"
}

# The tests of the elementary functions compare them with its numbers.
need_mpfr() { need_header mpfr.h libmpfr-dev "the tests of exp, log and pow"; }

need_googletest() {
  local place
  for place in /usr/include /usr/local/include "${GTEST_ROOT:-/usr}/include" /opt/homebrew/include; do
    [[ ! -f $place/gtest/gtest.h ]] || return 0
  done
  need libgtest-dev "GoogleTest, for the tests"
}

# The compiler and its sanitizer run-time library, which Debian keeps in a package of its own.
need_clang() {
  if ! command -v clang++ >/dev/null; then
    need clang "the clang++ build"
    need libclang-rt-dev "the sanitizers of clang++"
  elif ! echo 'int main() {}' | clang++ -fsanitize=address,undefined -x c++ - -o /dev/null 2>/dev/null; then
    need "libclang-rt-$(clang++ -dumpversion | cut -d. -f1)-dev" "the sanitizers of clang++"
  fi
}

need_browser() {
  need_command chromium chromium "the tests of the report's page"
  need_command chromedriver chromium-driver "the tests of the report's page"
  /usr/bin/python3 -c "import selenium" 2>/dev/null || need python3-selenium "the tests of the report's page"
}

need_sweep() {
  need_command snakemake snakemake "the sweep"
  need_command gnuplot gnuplot-nox "the picture of the sweep"
}

install_missing() {
  ((${#missing[@]})) || return 0
  step "install what is missing"
  local i as_root=()
  for i in "${!missing[@]}"; do echo "  ${missing[i]}: ${reasons[i]}"; done
  command -v apt-get >/dev/null || fail "no apt-get here: please install the above (Debian names) and try again"
  if ((EUID != 0)); then
    command -v sudo >/dev/null || fail "neither root nor sudo: please install the above and try again"
    as_root=(sudo)
  fi
  local apt_get=(${as_root[@]+"${as_root[@]}"} env DEBIAN_FRONTEND=noninteractive apt-get -q)
  local install=("${apt_get[@]}" install -y --no-install-recommends "${missing[@]}")
  # Package lists may be absent or too old to install from: then they are fetched anew.
  "${install[@]}" </dev/null >/dev/null 2>&1 || {
    quietly "${apt_get[@]}" update </dev/null
    quietly "${install[@]}" </dev/null
  }
}
