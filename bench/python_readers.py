"""Reading channels in Python: a list, a structured array and a DataFrame of this library's package,
beside the C++ reader, lxml that fills dicts, and pandas.read_xml. Each in a process of its own, with
what it imports imported before: processor time of the work, least of several, and the most memory
that the process had beyond what it had before.

    python_readers.py PROGRAM_read_channels [CHANNELS [TURNS]]
"""

import os
import subprocess
import sys
import tempfile
import time

NUMBERS = {"STREAM", "EVTYPE", "DTYPE", "DB_KEY", "COUNT", "SETPOINT", "SIZE"}
BEGINS = {"BIT": "bits", "DIM": "dims", "STAT": "stats"}


def read_list(path):
    import zrt4xml
    return lambda: zrt4xml.read_channels(path)


def read_array(path):
    import numpy  # noqa: F401
    import zrt4xml
    return lambda: zrt4xml.read_channels(path).to_numpy()


def read_frame(path):
    import pandas  # noqa: F401
    import zrt4xml
    return lambda: zrt4xml.read_channels(path).to_dataframe()


def read_array_at_once(path):
    import numpy  # noqa: F401
    import zrt4xml
    return lambda: zrt4xml.read_numpy(path)


def read_frame_at_once(path):
    import pandas  # noqa: F401
    import zrt4xml
    return lambda: zrt4xml.read_dataframe(path)


def elements(path):
    """The elements of the channels, each gone before the next comes."""
    from lxml import etree
    for _, element in etree.iterparse(path, tag="CHANNEL"):
        yield element
        element.clear()
        while element.getprevious() is not None:
            del element.getparent()[0]


def read_texts(path):
    """The least that lxml can do: texts as they stand, of bits and dimensions the last ones."""
    from lxml import etree  # noqa: F401
    return lambda: [{child.tag: child.text for child in element} for element in elements(path)]


def channel_of(element):
    """What the library's records hold: numbers are numbers, bits and dimensions stand inside."""
    channel = into = {}
    for child in element:
        name, text = child.tag, child.text
        if name in NUMBERS:
            into[name] = int(text)
        elif name in BEGINS:
            holder = channel["dims"][-1] if name == "STAT" else channel
            into = {name: int(text)}
            holder.setdefault(BEGINS[name], []).append(into)
        else:
            into[name] = text
    return channel


def read_values(path):
    from lxml import etree  # noqa: F401
    return lambda: [channel_of(element) for element in elements(path)]


def read_pandas(path):
    import pandas
    return lambda: pandas.read_xml(path, xpath=".//CHANNEL")


VALUES, TEXTS, PANDAS = "lxml, dicts of values", "lxml, dicts of texts", "pandas.read_xml"
WAYS = {"list": read_list, "list, to_numpy": read_array, "list, to_dataframe": read_frame,
        "read_numpy": read_array_at_once, "read_dataframe": read_frame_at_once,
        VALUES: read_values, TEXTS: read_texts, PANDAS: read_pandas}


def peak():
    """The most megabytes that this program had; getrusage counts those of its parent, too."""
    with open("/proc/self/status") as status:
        return next(int(line.split()[1]) for line in status if line.startswith("VmHWM")) / 1024


def measured(way, path):
    """In this process: processor seconds, and megabytes."""
    read = WAYS[way](path)
    before, begin = peak(), time.process_time()
    kept = read()
    seconds = time.process_time() - begin
    print(seconds, peak() - before, len(kept))


def write_document(path, count):
    """Channels of which each has a dimension, and each eighth four bits."""
    import zrt4xml
    bits = [zrt4xml.Bit(bit=i, bit_name=f"BIT{i}", bit_desc=f"what bit {i} says") for i in range(4)]
    zrt4xml.ChannelList(
        zrt4xml.Channel(prop_name=f"LINAC.DIAG/BPM/{i}.L1/X.TRAIN", daq_name=f"BPM.{i}.L1.X",
                        ev_type=i % 20, dtype=38, stream=1, subsystem=f"SUB{i % 12}",
                        sb_name=f"LINAC.DAQ/SERVER.{i % 40}", units="mm", max_size=2048, db_key=i,
                        prop_desc=f"horizontal beam position at monitor {i}",
                        dims=[zrt4xml.Dimension(dim=0, dim_name="bunch", units="us")],
                        bits=[each.copy() for each in bits] if i % 8 == 0 else [])
        for i in range(count)).write(path)


def main():
    if sys.argv[1] == "--measure":
        return measured(*sys.argv[2:])
    program = sys.argv[1]
    count, turns = map(int, sys.argv[2:4] + ["100000", "3"][len(sys.argv) - 2:])
    with tempfile.TemporaryDirectory() as folder:
        path = os.path.join(folder, "channels.xml")
        write_document(path, count)
        print(f"{count} channels, {os.path.getsize(path) / 1e6:.0f} MB, least of {turns}; "
              f"load {os.getloadavg()[0]:.1f}")
        found = {way: [] for way in WAYS}
        baseline = []
        for _ in range(turns):
            baseline.append(float(subprocess.check_output([program, path])))
            for way in WAYS:
                out = subprocess.check_output([sys.executable, __file__, "--measure", way, path])
                found[way].append([float(each) for each in out.split()])
        best = {way: min(each) for way, each in found.items()}
        print("| what | seconds | of C++ | lxml values / it | lxml texts / it | pandas / it | "
              "memory, MB |")
        print("|---|---|---|---|---|---|---|")
        print(f"| C++ reader | {min(baseline):.3f} | 1.00 | | | | |")
        for way, (seconds, memory, _) in best.items():
            ratios = " | ".join(f"{best[other][0] / seconds:.1f}"
                                for other in (VALUES, TEXTS, PANDAS))
            print(f"| {way} | {seconds:.3f} | {seconds / min(baseline):.2f} | {ratios} | "
                  f"{memory:.0f} |")
    return None


if __name__ == "__main__":
    main()
