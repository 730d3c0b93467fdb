#!/usr/bin/env bash
# The layer check on a small tree that breaks every rule once, beside includes and
# links that are allowed: exactly the broken ones must be reported.
#   check-layers-test.sh CHECK_SCRIPT
set -uo pipefail
check=$1
dir=$(mktemp -d)
trap 'rm -rf "$dir"' EXIT
src=$dir/src

put() { mkdir -p "$(dirname "$src/$1")"; printf '%s\n' "${@:2}" > "$src/$1"; }
put common/Env.h        '#include <vector>'
put common/Env.cpp      '#include "Env.h"' '#include <QString>'
put factors/Factor.h    '#include "common/Env.h"' '  #  include "sampling/Sampler.h"'
put sampling/Sampler.h  '#include "factors/Factor.h"' '#include "../model/Model.h"'
put model/Model.h       '#include "sampling/Sampler.h"'
put app/Run.cpp         '#include "model/Model.h"' '#include "sampling/gui/SamplerPanel.h"'
put cli/Main.cpp        '#include "app/Run.h"' '#include "panels/Panel.h"'
put sampling/gui/SamplerPanel.h '#include <QWidget>' '#include "panels/Panel.h"' '#include "sampling/Sampler.h"' '#include "cli/Batch.h"'
put panels/Panel.h      '#include <QDialog>' '#include "sampling/gui/SamplerPanel.h"' '#include "plots/Figure.h"'
put extras/Thing.h      '#include "common/Env.h"'

t=$'\t'
links=(common "common${t}Threads::Threads" factors correlation "correlation${t}tarvex_factors"
       sampling model "model${t}tarvex_sampling" "model${t}/usr/lib/libQt6Core.so"
       postproc app "app${t}tarvex_plots" plots "plots${t}tarvex_app" cli "cli${t}Qt6::Widgets"
       panels "panels${t}Qt6::Widgets")
for l in "${links[@]}"; do
  case $l in *"$t"*) echo "tarvex_$l" ;; *) echo "tarvex_$l$t" ;; esac
done > "$dir/links.txt"

expected="src/extras: not a layer (known: common factors correlation sampling model postproc app plots cli panels)
src/app/Run.cpp:2: app includes sampling/gui/SamplerPanel.h, from gui, which app may not use
src/cli/Main.cpp:2: cli includes panels/Panel.h, from gui, which cli may not use
src/common/Env.cpp:2: common includes the Qt header QString; the engine stays free of Qt
src/factors/Factor.h:2: factors includes sampling/Sampler.h, from sampling, which factors may not use
src/sampling/Sampler.h:2: sampling includes ../model/Model.h, from model, which sampling may not use
src/sampling/gui/SamplerPanel.h:4: gui includes cli/Batch.h, from cli, which gui may not use
tarvex_model links /usr/lib/libQt6Core.so; the engine stays free of Qt
tarvex_app links tarvex_plots, which is not a lower layer
tarvex_cli links Qt6::Widgets; the engine stays free of Qt
check-layers: 10 violation(s)"

out=$(bash "$check" "$src" "$dir/links.txt")
status=$?
if [ "$status" -ne 1 ] || [ "$out" != "$expected" ]; then
  echo "exit status $status (expected 1); report differs:"
  diff <(echo "$expected") <(echo "$out")
  exit 1
fi

# Without the broken lines the same tree passes.
rm -r "$src/extras"
sed -i '2d' "$src/common/Env.cpp" "$src/factors/Factor.h" "$src/sampling/Sampler.h" "$src/app/Run.cpp" "$src/cli/Main.cpp"
sed -i '4d' "$src/sampling/gui/SamplerPanel.h"
grep -v -e Qt6 -e "app${t}tarvex_plots" "$dir/links.txt" > "$dir/clean.txt"
if ! out=$(bash "$check" "$src" "$dir/clean.txt"); then
  echo "a clean tree fails:"
  echo "$out"
  exit 1
fi
echo "ok"
