#!/usr/bin/env bash
# How much faster the tool reads many files with several threads than with one. The files are in the
# memory of the system already, and the answers are compared.
#   jobs.sh TOOL [FILES [JOBS]]
set -euo pipefail
tool=$1 files=${2:-200} jobs=${3:-$(nproc)}
rounds=5
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

# Channel descriptions of 1 MB, every property another one, in each file others.
document() { # NUMBER
  awk -v file="$1" 'BEGIN {
    print "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\n<CHANDESCRIPTIONS>"
    for (n = 0; n < 3100; ++n) {
      printf "<CHANNEL>\n<STREAM>2</STREAM>\n<EVTYPE>1</EVTYPE>\n<DTYPE>41</DTYPE>\n"
      printf "<DB_KEY>-1</DB_KEY>\n<COUNT>0</COUNT>\n<SB_NAME>LINAC.DAQ/BPM.SERVER</SB_NAME>\n"
      printf "<PROP>LINAC.DIAG/BPM/BPM%d.%d/X.POSITION</PROP>\n<NAME>BPM%d.%d.X</NAME>\n", file, n, file, n
      printf "<SETPOINT>0</SETPOINT>\n<SUBSYSTEM>DIAG</SUBSYSTEM>\n<UNITS>mm</UNITS>\n"
      printf "<DESC>horizontal position</DESC>\n<SIZE>1</SIZE>\n</CHANNEL>\n"
    }
    print "</CHANDESCRIPTIONS>"
  }'
}

for ((i = 0; i < files; ++i)); do document "$i" >"$scratch/$(printf '%05d' "$i").xml"; done

# The shortest of several times: a machine that does other things only makes them longer.
seconds() { # ARGUMENT...
  local TIMEFORMAT='%R %U %S' best=""
  for ((round = 0; round < rounds; ++round)); do
    { time "$tool" "$@" "$scratch"/*.xml >"$scratch/answer"; } 2>"$scratch/times"
    best=$(sort -n "$scratch/times" <(echo "$best") | grep . | head -n 1)
  done
  echo "$best"
}

echo "$files files of $(stat -c %s "$scratch/00000.xml") bytes, shortest of $rounds times; load: $(cut -d ' ' -f 1-3 /proc/loadavg)"
for subcommand in check stat show; do
  one=$(seconds "$subcommand" -j 1)
  cp "$scratch/answer" "$scratch/answer_of_one"
  several=$(seconds "$subcommand" -j "$jobs")
  cmp "$scratch/answer_of_one" "$scratch/answer"
  awk -v what="$subcommand" -v jobs="$jobs" -v one="$one" -v several="$several" 'BEGIN {
    split(one, a); split(several, b)
    printf "%-5s  -j 1: %.2f s (processor %.2f s)   -j %d: %.2f s (processor %.2f s)   %.2f times as fast\n",
           what, a[1], a[2] + a[3], jobs, b[1], b[2] + b[3], a[1] / b[1]
  }'
done
