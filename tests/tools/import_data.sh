#!/bin/sh
# Imports drive logs, compares each recording with its log, and plays it: the samples of the tests,
# and every log of the data folder, which is QUORIN_DATA or, without it, ../shared/data beside the
# sources.  usage: import_data.sh METRICCTL
set -u
metricctl=${1:?usage: import_data.sh METRICCTL}
here=$(cd "$(dirname "$0")" && pwd)
data=${QUORIN_DATA:-$here/../../../shared/data}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
failed=0
found=0

for log in "$here"/../data/import_sample_* "$data"/gnettrack/*_log*.txt \
  "$data"/mobileinsight/*.jsonl; do
  [ -f "$log" ] || continue
  found=$((found + 1))
  recording=$work/$(basename "$log").rec
  printf '%s: ' "$(basename "$log")"
  "$metricctl" import "$log" -o "$recording" &&
    python3 "$here/check_import.py" "$log" "$recording" "$metricctl" || failed=$((failed + 1))
done

# The check must notice a changed value, a missing event and one too many.
sed '2s/"kKeyPayload":"08../"kKeyPayload":"0881/' "$recording" >"$work/changed"
sed 2d "$recording" >"$work/short"
sed 2p "$recording" >"$work/long"
for wrong in changed short long; do
  if python3 "$here/check_import.py" "$log" "$work/$wrong" "$metricctl" >"$work/said" 2>&1; then
    echo "the check takes a wrong recording ($wrong)"
    failed=$((failed + 1))
  fi
done

[ -d "$data" ] || echo "skipped: no drive data at $data"
echo "$found logs, $failed failed"
[ "$failed" -eq 0 ]
