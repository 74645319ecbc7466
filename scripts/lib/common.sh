# shellcheck shell=bash
# What the scripts share. Sourced after `set -euo pipefail`.

project_root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)

# One line a step.
step() { printf -- '-- %s\n' "$*"; }

fail() {
  printf '%s: %s\n' "$(basename "$0")" "$*" >&2
  exit 1
}

# print_usage_if_asked ARGUMENT...: for --help, prints the comment that the script begins with, and ends the script.
print_usage_if_asked() {
  local argument
  for argument in "$@"; do
    if [[ $argument == --help || $argument == -h ]]; then
      sed -n '2,/^[^#]/s/^# \{0,1\}//p' "$0"
      exit 0
    fi
  done
}

num_jobs() { nproc 2>/dev/null || getconf _NPROCESSORS_ONLN; }

# Old thread and address sanitizers cannot start when the kernel spreads addresses widely (vm.mmap_rnd_bits above
# 28). Test programs run during the build already, where their tests are listed, so the build goes through this too.
# run_for_preset PRESET COMMAND...
run_for_preset() {
  local preset=$1
  shift
  case $preset in
    asan-ubsan | tsan)
      if setarch "$(uname -m)" -R true 2>/dev/null; then
        setarch "$(uname -m)" -R "$@"
        return
      fi
      ;;
  esac
  "$@"
}

# configure_preset PRESET: into the preset's folder, with ORVANDEL_CONFIGURE_OPTIONS of the environment beside its own.
configure_preset() {
  local options
  read -ra options <<<"${ORVANDEL_CONFIGURE_OPTIONS:-}"
  if command -v ccache >/dev/null; then options+=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache); fi
  step "Configuring preset $1"
  (cd "$project_root" && cmake --preset "$1" --log-level=WARNING "${options[@]}") >/dev/null
}

# build_preset PRESET [TARGET...]: configures and builds. The compiler's lines go to a terminal only.
build_preset() {
  local preset=$1 targets=() quiet=()
  shift
  if (($#)); then targets=(--target "$@"); fi
  if [[ ! -t 1 ]]; then quiet=(-- --quiet); fi
  configure_preset "$preset"
  step "Building preset $preset"
  (cd "$project_root" &&
    run_for_preset "$preset" cmake --build --preset "$preset" --parallel "$(num_jobs)" "${targets[@]}" "${quiet[@]}")
}

# pack_preset PRESET: packs what was built, into build/packages, and prints the packages' paths.
pack_preset() {
  step "Packing preset $1"
  local log=$project_root/build/$1/cpack.log
  if ! cpack --config "$project_root/build/$1/CPackConfig.cmake" -B "$project_root/build/packages" >"$log" 2>&1; then
    cat "$log" >&2
    fail "cpack failed"
  fi
  sed -n 's/^CPack: - package: \(.*\) generated\.$/\1/p' "$log"
}
