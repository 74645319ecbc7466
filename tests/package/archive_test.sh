#!/usr/bin/env bash
# The release archive holds headers, libraries, tool and docs, and nothing else. From the environment, as
# tests/package/CMakeLists.txt sets it:
#   CONFIG SYSTEM VERSION LIBDIR  what is packed: CPack's configuration; windows or posix
#   SOURCE                        the source tree, for its docs
#   SCRATCH CMAKE CPACK
# shellcheck disable=SC2153
set -euo pipefail
export LC_ALL=C
rm -rf "$SCRATCH"
mkdir -p "$SCRATCH"

headers() {
  printf 'include/orvandel/%s\n' orvandel.h orvandel.hpp
  printf 'include/orvandel/classic/%s.h\n' checked_contour_file crawler ctd edge_record export imgutil_i line_extracter \
    line_segment mvtools_i patt_verify qrsis sub_canny
}

libraries() {
  local name
  for name in orvandel imgutil_i mvtools_i; do
    if [[ $SYSTEM == windows ]]; then
      printf '%s\n' "bin/$name.dll" "$LIBDIR/lib$name.dll.a"
    else
      printf '%s\n' "$LIBDIR/lib$name.so" "$LIBDIR/lib$name.so."{"${VERSION%%.*}","$VERSION"}
    fi
  done
}

tool() { if [[ $SYSTEM == windows ]]; then echo bin/orvandel.exe; else echo bin/orvandel; fi; }

# For find_package and pkg-config.
package_files() {
  printf "$LIBDIR/%s\n" cmake/Orvandel/Orvandel{Config,ConfigVersion,Targets,Targets-CONFIGURATION}.cmake \
    pkgconfig/orvandel.pc
}

docs() {
  printf 'share/doc/orvandel/%s\n' README.md LICENSE NOTICES CHANGELOG.md BENCHMARK.md SECURITY.md
  (cd "$SOURCE" && find docs -type f) | sed 's|^|share/doc/orvandel/|'
}

generator() { if [[ $SYSTEM == windows ]]; then echo ZIP; else echo TGZ; fi; }

if ! "$CPACK" --config "$CONFIG" -G "$(generator)" -B "$SCRATCH" >"$SCRATCH/log" 2>&1; then
  cat "$SCRATCH/log"
  exit 1
fi
archives=("$SCRATCH"/orvandel-"$VERSION"-*)
if ((${#archives[@]} != 1)); then
  echo "more than one archive: ${archives[*]}"
  exit 1
fi

# Everything lies in one folder, which is named as the archive. Folders end with a slash.
folder=$(basename "${archives[0]}" | sed -E 's/\.(zip|tar\.gz)$//')
packed=$("$CMAKE" -E tar tf "${archives[0]}" | grep -v '/$' |
  sed -E "s|^$folder/||; s|(OrvandelTargets)-[a-z]+|\\1-CONFIGURATION|" | sort)
expected=$({ headers; libraries; tool; package_files; docs; } | sort)
if [[ $packed != "$expected" ]]; then
  echo "$(basename "${archives[0]}") holds not what it should; < is missing, > is too much:"
  diff <(echo "$expected") <(echo "$packed")
  exit 1
fi
echo "$(basename "${archives[0]}") holds $(wc -l <<<"$packed") files"
