#!/usr/bin/env bash
# Holds the order of rooms that src/rooms.txt of a source tree lays down: prints a sentence for each include that goes
# up or round, and fails when there is one.
#
# Usage: scripts/lib/check_rooms.sh TREE
set -euo pipefail
export LC_ALL=C
cd "$1"

declare -A sees=()      # of a group: the groups whose rooms its rooms may include, between blanks
declare -A group_of=()  # of a room
declare -A rank_of=()   # of a room: its place in the list
declare -A room_of=()   # of a path
num_wrong=0

complain() {
  printf '%s\n' "$*"
  num_wrong=$((num_wrong + 1))
}

read_rooms() {
  local words group="" word at=0
  while read -ra words; do
    at=$((at + 1))
    if ((${#words[@]} == 0)) || [[ ${words[0]} == '#'* ]]; then continue; fi
    if [[ ${words[-1]} == *: ]]; then
      words[-1]=${words[-1]%:}
      group=${words[0]}
      for word in "${words[@]:2}"; do
        [[ -v sees[$word] ]] || complain "src/rooms.txt:$at: $group sees $word, which is no group above it"
      done
      sees[$group]=" ${words[*]:2} "
    else
      group_of[${words[0]}]=$group
      rank_of[${words[0]}]=$at
      for word in "${words[@]:1}"; do room_of[$word]=${words[0]}; done
    fi
  done <src/rooms.txt
}

# find_room FILE: sets `room` to that of the longest path that fits; fails when none does.
find_room() {
  local path=$1
  if [[ -v room_of[${path%.*}] ]]; then
    room=${room_of[${path%.*}]}
    return
  fi
  while [[ $path == */* ]]; do
    path=${path%/*}
    if [[ -v room_of[$path] ]]; then
      room=${room_of[$path]}
      return
    fi
  done
  return 1
}

# find_file INCLUDED FOLDER: sets `file` to what an include of a file in the folder means; fails outside the library.
find_file() {
  for file in "include/$1" "src/$1" "$2/$1"; do
    [[ ! -e $file ]] || return 0
  done
  return 1
}

# check_include FILE LINE INCLUDED
check_include() {
  local room file from to
  find_room "$1" || return 0  # told already
  from=$room
  if ! find_file "$3" "${1%/*}"; then
    complain "$1:$2: room $from includes $3, which is no file of the library"
    return
  fi
  find_room "$file" || return 0
  to=$room
  if [[ $from == "$to" || ${sees[${group_of[$from]}]} == *" ${group_of[$to]} "* ]]; then return; fi
  if [[ ${group_of[$from]} != "${group_of[$to]}" ]]; then
    complain "$1:$2: room $from includes $3 of room $to, but ${group_of[$from]} does not see ${group_of[$to]} (src/rooms.txt)"
  elif ((rank_of[$from] < rank_of[$to])); then
    complain "$1:$2: room $from includes $3 of room $to, which stands above it (src/rooms.txt)"
  fi
}

read_rooms
mapfile -t files < <(find include src -name '*.h' -o -name '*.hpp' -o -name '*.cpp' -o -name '*.c' | sort)
for path in "${files[@]}"; do
  find_room "$path" || complain "$path: belongs to no room; src/rooms.txt lists them"
done

num_includes=0
while IFS=: read -r path line included; do
  num_includes=$((num_includes + 1))
  check_include "$path" "$line" "$included"
done < <(grep -HnoE '^[[:space:]]*#[[:space:]]*include[[:space:]]*("[^"]+|<orvandel/[^>]+)' "${files[@]}" /dev/null |
  sed -E 's/:[[:space:]]*#[[:space:]]*include[[:space:]]*["<]/:/')

((num_includes)) || complain "no include was found in include/ and src/"
((num_wrong)) || echo "$num_includes includes of ${#files[@]} files go downwards"
exit $((num_wrong > 0))
