#!/usr/bin/env bash
# What check, show --json and diff take for one large document, beside reading it alone: processor
# time, and memory at its peak, of which the copy of the document is no part.
#   large.sh TOOL [CHANNELS]
set -euo pipefail
tool=$1 channels=${2:-800000}
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

# About 370 bytes for each channel, every property another one.
document() { # UNITS OF THE LAST CHANNEL
  awk -v channels="$channels" -v units="$1" 'BEGIN {
    print "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\n<CHANDESCRIPTIONS>"
    for (n = 0; n < channels; ++n) {
      printf "<CHANNEL>\n<STREAM>2</STREAM>\n<EVTYPE>1</EVTYPE>\n<DTYPE>41</DTYPE>\n"
      printf "<DB_KEY>-1</DB_KEY>\n<COUNT>0</COUNT>\n<SB_NAME>LINAC.DAQ/BPM.SERVER.L%d</SB_NAME>\n", n % 9
      printf "<PROP>LINAC.DIAG/BPM/BPM%d.L%d/X.POSITION.TRAIN</PROP>\n<NAME>BPM%d.L%d.X</NAME>\n", n, n % 9, n, n % 9
      printf "<SETPOINT>0</SETPOINT>\n<SUBSYSTEM>DIAG</SUBSYSTEM>\n<UNITS>%s</UNITS>\n", n == channels - 1 ? units : "mm"
      printf "<DESC>horizontal position of the beam at this monitor</DESC>\n<SIZE>1</SIZE>\n</CHANNEL>\n"
    }
    print "</CHANDESCRIPTIONS>"
  }'
}

document mm >"$scratch/a.xml"
document um >"$scratch/b.xml"

run() { # NAME ARGUMENT...: the exit code is the subcommand's own affair
  local name=$1
  shift
  /usr/bin/time -f '%U %S %M' -o "$scratch/time" "$tool" "$@" >/dev/null 2>&1 || true
  tail -n 1 "$scratch/time" | awk -v name="$name" '{ printf "%-12s %6.1f s  %6.0f MB\n", name, $1 + $2, $3 / 1000 }'
}

echo "$channels channels, $(stat -c %s "$scratch/a.xml") bytes; load: $(cut -d ' ' -f 1-3 /proc/loadavg)"
run "find" find --name NOTHING "$scratch/a.xml"  # reads, and looks through the list once
run "check" check "$scratch/a.xml"
run "show --json" show --json "$scratch/a.xml"
run "diff" diff "$scratch/a.xml" "$scratch/b.xml"
