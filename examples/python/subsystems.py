"""What is recorded, by subsystem: counts, units, bit fields, and what a second file changes.

    python3 subsystems.py CHANNELS.xml [OTHER.xml]
"""

import sys
from collections import Counter

import zrt4xml


def describe(channels: zrt4xml.ChannelList) -> None:
    subsystems = Counter(channel.subsystem for channel in channels)
    for subsystem, count in sorted(subsystems.items()):
        units = sorted({each.units for each in channels if each.subsystem == subsystem and each.units})
        print(f"{subsystem or '(none)'}: {count} channels, in {', '.join(units) or 'no units'}")
    for channel in channels:
        if channel.bits:
            names = ", ".join(f"{bit.bit} {bit.bit_name}" for bit in channel.bits)
            print(f"{channel.daq_name} has bits: {names}")


def compare(before: zrt4xml.ChannelList, after: zrt4xml.ChannelList) -> None:
    for difference in zrt4xml.diff(before, after):
        print(f"{difference.change}: {difference.key}")
        for field, (old, new) in difference.fields.items():
            print(f"    {field}: {old!r} -> {new!r}")


def main() -> int:
    try:
        lists = [zrt4xml.read_channels(name) for name in sys.argv[1:]]
    except (zrt4xml.DocumentError, OSError) as error:
        print(error, file=sys.stderr)
        return 1
    describe(lists[0])
    if len(lists) > 1:
        compare(lists[0], lists[1])
    return 0


if __name__ == "__main__":
    sys.exit(main())
