#!/usr/bin/env bash
# The check of the order of rooms notices wrong includes, in a tree of its own, and finds none in the project's.
# Usage: rooms_test.sh SCRATCH
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
source "$here/expect.sh"
root=$here/../..
check=$root/scripts/lib/check_rooms.sh
scratch=$1

expect_status 0 "$check" "$root"

# new_tree: rooms of each kind, with a file in some.
new_tree() {
  rm -rf "$scratch"
  mkdir -p "$scratch"/include/orvandel/classic "$scratch"/src/{base,platform/imgutil,contours,edges,search,shape}
  cat >"$scratch/src/rooms.txt" <<'ROOMS'
# Two engines beside each other, a library by itself, and a room whose files lie in the folder of another.
modern_face:
  modern_face    include/orvandel
classic_face:
  classic_face   include/orvandel/classic
common:
  base           src/base
imgutil sees classic_face common:
  imgutil        src/platform/imgutil

segment_engine sees classic_face common:
  edge_record    src/contours/edge_record src/contours/point_arrays
  edges          src/edges
  contours       src/contours
  search         src/search
shape_engine sees common:
  shape          src/shape
ROOMS
  (
    cd "$scratch"
    touch include/orvandel/orvandel.h include/orvandel/classic/ctd.h src/base/rounding.h src/platform/imgutil/bmp.h \
      src/contours/{edge_record,point_arrays,resampling}.h src/edges/sweep.h src/shape/model.h
    # Every kind of include that is in order: of a lower room, the own one, a public header, the standard library.
    printf '#include <vector>\n#include "base/rounding.h"\n#include "edges/sweep.h"\n#include <orvandel/classic/ctd.h>\n' \
      >src/search/search.cpp
    printf '#include "contours/point_arrays.h"\n' >src/edges/sweep.cpp
    printf '#include "edges/sweep.h"\n' >src/contours/resampling.cpp
  )
}
add() { printf '%s\n' "$2" >>"$scratch/src/$1"; }  # add FILE LINE

new_tree
expect_status 0 "$check" "$scratch"

# expect_complaint FILE LINE SENTENCE: of a tree in which the line is the only thing wrong
expect_complaint() {
  new_tree
  add "$1" "$2"
  expect_status 1 "$check" "$scratch"
  expect_equal "the sentence for $1 with $2" "$3" "$output"
}
expect_complaint edges/sweep.cpp '#include "contours/resampling.h"' \
  "src/edges/sweep.cpp:2: room edges includes contours/resampling.h of room contours, which stands above it (src/rooms.txt)"
expect_complaint contours/edge_record.cpp '#include "resampling.h"' \
  "src/contours/edge_record.cpp:1: room edge_record includes resampling.h of room contours, which stands above it (src/rooms.txt)"
expect_complaint shape/model.cpp '  #  include "edges/sweep.h"' \
  "src/shape/model.cpp:1: room shape includes edges/sweep.h of room edges, but shape_engine does not see segment_engine (src/rooms.txt)"
expect_complaint search/search.cpp '#include "shape/model.h"' \
  "src/search/search.cpp:5: room search includes shape/model.h of room shape, but segment_engine does not see shape_engine (src/rooms.txt)"
expect_complaint shape/model.cpp '#include <orvandel/classic/ctd.h>' \
  "src/shape/model.cpp:1: room shape includes orvandel/classic/ctd.h of room classic_face, but shape_engine does not see classic_face (src/rooms.txt)"
expect_complaint base/rounding.h '#include "orvandel/orvandel.h"' \
  "src/base/rounding.h:1: room base includes orvandel/orvandel.h of room modern_face, but common does not see modern_face (src/rooms.txt)"
expect_complaint contours/resampling.cpp '#include "platform/imgutil/bmp.h"' \
  "src/contours/resampling.cpp:2: room contours includes platform/imgutil/bmp.h of room imgutil, but segment_engine does not see imgutil (src/rooms.txt)"
expect_complaint edges/sweep.cpp '#include "tests/support/images.h"' \
  "src/edges/sweep.cpp:2: room edges includes tests/support/images.h, which is no file of the library"

new_tree
mkdir "$scratch/src/attic"
touch "$scratch/src/attic/old.cpp"
expect_status 1 "$check" "$scratch"
expect_equal "a file without a room" "src/attic/old.cpp: belongs to no room; src/rooms.txt lists them" "$output"

new_tree
add rooms.txt 'attic sees cellar:'
expect_status 1 "$check" "$scratch"
expect_line "src/rooms.txt:$(wc -l <"$scratch/src/rooms.txt"): attic sees cellar, which is no group above it"

finish_expectations
