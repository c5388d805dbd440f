#!/usr/bin/env bash
# Plays a few nights in chunks, as an array of tasks would, and holds what is gathered against one run over all of them.
#
#   cluster_test.sh STANDBY SCRIPTS WORK    the program, the folder with the cluster's scripts, a folder to work in
set -euo pipefail
standby=$1 scripts=$2 work=$3
rm -rf -- "$work"
mkdir -p -- "$work"/{bin,tmp}
cd -- "$work"
ln -s -- "$standby" bin/standby
export PATH=$work/bin:$PATH TMPDIR=$work/tmp

fail() {
  echo "$*" >&2
  exit 1
}

task() {
  SLURM_ARRAY_TASK_ID=$1 bash "$scripts/nights.sbatch" "${@:2}"
}

# answers STATUS PATTERN command...: the exit status, and one line on standard error
answers() {
  local status=0
  "${@:3}" >out 2>err || status=$?
  [ "$status" -eq "$1" ] || fail "status $status, not $1: ${*:3}: $(cat err)"
  [[ $(cat err) =~ ^$2$ && $(wc -l <err) -le 1 ]] || fail "not $2: ${*:3}: $(cat err)"
}

made=(--seed 7 --nights 5 --chunk 2)
standby generate --seed 7 --nights 5 --folder nights
standby replay --format csv nights >whole.csv

# in any order, with a task that is killed, and one that is told to end, while it writes: they leave nothing of their chunk,
# and what is missing is told
task 3 "${made[@]}"
rm bin/standby
cat >bin/standby <<END
#!/bin/sh
[ "\$1" = replay ] || exec '$standby' "\$@"
'$standby' "\$@" | head -n 2
kill -"\$SIGNAL" \$PPID
[ "\$SIGNAL" = KILL ] || exec sleep 60
END
chmod +x bin/standby
SIGNAL=TERM answers 143 '' task 2 "${made[@]}"
[ -z "$(ls -A tmp)" ] || fail "left on the node: $(ls -A tmp)"
SIGNAL=KILL answers 137 '.*' task 2 "${made[@]}"
answers 1 'gather: results: 2 of 3 chunks are missing: 1-2; .*--array=1-2 .*' "$scripts/gather"
[ ! -s out ] || fail "half a table: $(cat out)"
ln -sf -- "$standby" bin/standby
task 1 "${made[@]}"
answers 1 'gather: results: 1 of 3 chunks are missing: 2; .*' "$scripts/gather"
task 2 "${made[@]}"
answers 0 '' "$scripts/gather" results
cmp out whole.csv

# one plan for all chunks of a folder, and no chunk beyond it
answers 2 'nights.sbatch: .*/results: holds chunks of another plan.*' task 1 --seed 8 --nights 5 --chunk 2
answers 2 'nights.sbatch: there is no chunk 4: .*' task 4 "${made[@]}"
answers 2 'nights.sbatch: a chunk is a task of an array.*' env -u SLURM_ARRAY_TASK_ID bash "$scripts/nights.sbatch"
answers 2 'nights.sbatch: nothing follows --seed' task 1 --seed
answers 2 'gather: tmp: expected one folder.*' "$scripts/gather" tmp
"$scripts/gather" >again.csv
cmp again.csv whole.csv

# another command, which finds its files beside the made-up nights
cat >try.json <<<'{"policy": {"phase_every_s": 900}}'
summary=(replay --config try.json --format summary)
task 1 --seed 7 --nights 2 --results summaries -- "${summary[@]}"
"$scripts/gather" summaries | cmp - <(standby "${summary[@]}" nights/night-0000[12].jsonl)

# traces of a list, and a trace that is wrong: the others count, and in the end it is told
echo '{"trace": 1' >nights/bad.jsonl
printf 'nights/%s.jsonl\n' night-00003 bad night-00001 >list
compared=(compare --config try.json --format csv)
answers 2 'standby: nights/bad.jsonl:.*' standby "${compared[@]}" --files-from list
mv out whole.csv
mv err whole.err
listed=(--files-from list --chunk 1 --results other -- "${compared[@]}")
task 1 "${listed[@]}"
answers 2 'standby: nights/bad.jsonl:.*' task 2 "${listed[@]}"
task 3 "${listed[@]}"
answers 2 'standby: nights/bad.jsonl:.*' "$scripts/gather" other
cmp out whole.csv
cmp err whole.err

# a run that failed leaves no chunk; what a task needed on the node is gone, but for what was killed above
answers 1 'standby: .*' task 1 --nights 1 --results failed -- replay --plugin "$work/list"
answers 1 'gather: failed: 1 of 1 chunks are missing: 1; .*' "$scripts/gather" failed
[ "$(find tmp -mindepth 1 -maxdepth 1 | wc -l)" -eq 1 ] || fail "left on the node: $(ls tmp)"
[ -z "$(find results other failed -name '.*')" ] || fail "left behind: $(find results other failed -name '.*')"
