#!/usr/bin/env bash
# Keeps the layers honest: a source file includes headers of its own layer and of
# the layers below it, never of one above; engine libraries link neither Qt nor a
# higher layer.
#
#   check-layers.sh SRC_DIR LINK_FILE
#
# SRC_DIR is the source tree, one folder per layer. LINK_FILE is written when the
# build is configured: one "target<TAB>library" line for each library a target
# reaches through its link lines, and one "target<TAB>" line per target.
# Prints every violation and exits 1 when there is one.
set -uo pipefail

if [ $# -ne 2 ]; then
  echo "usage: check-layers.sh SRC_DIR LINK_FILE" >&2
  exit 2
fi
src=$(cd "$1" && pwd) || exit 2
links=$2

# The engine, lowest first. The batch tool (cli) shares the top with the Qt side
# (panels and every <layer>/gui folder): neither of the two may use the other.
engine=(common factors correlation sampling model postproc app plots cli)
declare -A rank=()
for i in "${!engine[@]}"; do rank[${engine[$i]}]=$i; done
top=${rank[cli]}

failures=0
fail() {
  echo "$1"
  failures=$((failures + 1))
}

# The layer of a path under SRC_DIR: an engine folder, or "gui" for the panels and
# the Qt code kept beside a subsystem; left in REPLY (no subshell: this runs for
# every include). Empty when the path belongs to no layer.
layer_of() {
  local first=${1%%/*} rest=${1#*/}
  REPLY=
  if [ "$first" = panels ] || { [ "$rest" != "$1" ] && [ "${rest%%/*}" = gui ] && [ "$rest" != gui ]; }; then
    REPLY=gui
  elif [ -n "${rank[$first]+x}" ]; then
    REPLY=$first
  fi
}

# Whether a file of layer $1 may include a header of layer $2.
may_include() {
  local from=$1 to=$2
  [ "$from" = "$to" ] && return 0
  if [ "$to" = gui ]; then
    return 1
  fi
  if [ "$from" = gui ]; then
    [ "${rank[$to]}" -lt "$top" ]
  else
    [ "${rank[$to]}" -lt "${rank[$from]}" ]
  fi
}

# Every folder of the source tree is a layer, so a new one cannot slip past.
for d in "$src"/*/; do
  d=${d%/}
  name=${d##*/}
  if [ "$name" != panels ] && [ -z "${rank[$name]+x}" ]; then
    fail "src/$name: not a layer (known: ${engine[*]} panels)"
  fi
done

while IFS= read -r hit; do
  file=${hit%%:*}
  rest=${hit#*:}
  line=${rest%%:*}
  text=${rest#*:}
  rel=${file#"$src"/}
  layer_of "$rel"
  from=$REPLY
  [ -z "$from" ] && continue
  where="src/$rel:$line"

  if [[ $text =~ \#[[:space:]]*include[[:space:]]*\<(Q[A-Za-z0-9_]*)[/\>] ]]; then
    [ "$from" != gui ] && fail "$where: $from includes the Qt header ${BASH_REMATCH[1]}; the engine stays free of Qt"
    continue
  fi
  if [[ $text =~ \#[[:space:]]*include[[:space:]]*\"([^\"]+)\" ]]; then
    inc=${BASH_REMATCH[1]}
    # A quoted name is found beside the including file first, as the compiler does.
    if [ -e "${file%/*}/$inc" ]; then
      target=$(realpath -m --relative-to="$src" "${file%/*}/$inc")
    else
      target=$inc
    fi
  elif [[ $text =~ \#[[:space:]]*include[[:space:]]*\<([^\>]+)\> ]]; then
    inc=${BASH_REMATCH[1]}
    target=$inc
  else
    continue
  fi
  layer_of "$target"
  to=$REPLY
  [ -z "$to" ] && continue
  if ! may_include "$from" "$to"; then
    fail "$where: $from includes $inc, from $to, which $from may not use"
  fi
done < <(find "$src" -type f \( -name '*.h' -o -name '*.hpp' -o -name '*.cpp' -o -name '*.cc' -o -name '*.inl' \) \
           -print0 | sort -z | xargs -0 -r grep -H -n -E '^[[:space:]]*#[[:space:]]*include[[:space:]]*[<"]')

# What the engine libraries link.
if [ ! -r "$links" ]; then
  fail "$links: cannot read the link list (configure the build first)"
else
  declare -A listed=()
  while IFS=$'\t' read -r tgt lib; do
    name=${tgt#tarvex_}
    [ "$name" = "$tgt" ] && continue
    [ -z "${rank[$name]+x}" ] && continue
    listed[$name]=1
    [ -z "$lib" ] && continue
    if [[ $lib =~ Qt[56]|(^|[^[:alnum:]_])Qt:: ]]; then
      fail "$tgt links $lib; the engine stays free of Qt"
    elif [[ $lib =~ ^tarvex_(.*)$ ]]; then
      dep=${BASH_REMATCH[1]}
      if [ -z "${rank[$dep]+x}" ] || [ "${rank[$dep]}" -ge "${rank[$name]}" ]; then
        fail "$tgt links $lib, which is not a lower layer"
      fi
    fi
  done < "$links"
  for name in "${engine[@]}"; do
    [ -z "${listed[$name]+x}" ] && fail "$links: tarvex_$name is missing"
  done
fi

if [ "$failures" -gt 0 ]; then
  echo "check-layers: $failures violation(s)"
  exit 1
fi
echo "check-layers: every include and link goes downwards"
