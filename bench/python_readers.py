"""Reading channels in Python: a list, a structured array and a DataFrame of this library's package,
beside the C++ reader, lxml that fills dicts, and pandas.read_xml. Each in a process of its own:
processor time of the work, least of several, and the most memory that the process had beyond what it
had before. Then two threads beside one.

    python_readers.py PROGRAM_read_channels [CHANNELS [TURNS]]
"""

import os
import subprocess
import sys
import tempfile
import threading
import time

FIELDS = ["STREAM", "EVTYPE", "DTYPE", "DB_KEY", "COUNT", "SB_NAME", "PROP", "NAME", "SETPOINT",
          "SUBSYSTEM", "UNITS", "DESC", "SIZE"]


def read_list(path):
    import zrt4xml
    return lambda: zrt4xml.read_channels(path)


def read_array(path):
    import zrt4xml
    return lambda: zrt4xml.read_channels(path).to_numpy()


def read_frame(path):
    import pandas  # noqa: F401: loaded before the clock runs
    import zrt4xml
    return lambda: zrt4xml.read_channels(path).to_dataframe()


def read_lxml(path):
    from lxml import etree

    def read():
        channels = []
        for _, element in etree.iterparse(path, tag="CHANNEL"):
            channels.append({child.tag: child.text for child in element if child.tag in FIELDS})
            element.clear()
            while element.getprevious() is not None:
                del element.getparent()[0]
        return channels
    return read


def read_pandas(path):
    import pandas
    return lambda: pandas.read_xml(path, xpath=".//CHANNEL")


WAYS = {"list": read_list, "to_numpy": read_array, "to_dataframe": read_frame,
        "lxml, dicts": read_lxml, "pandas.read_xml": read_pandas}


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
    import zrt4xml
    zrt4xml.ChannelList(
        zrt4xml.Channel(prop_name=f"LINAC.DIAG/BPM/{i}.L1/X.TRAIN", daq_name=f"BPM.{i}.L1.X",
                        ev_type=i % 20, dtype=38, stream=1, subsystem=f"SUB{i % 12}",
                        sb_name=f"LINAC.DAQ/SERVER.{i % 40}", units="mm", max_size=2048, db_key=i,
                        prop_desc=f"horizontal beam position at monitor {i}",
                        dims=[zrt4xml.Dimension(dim=0, dim_name="bunch", units="us")])
        for i in range(count)).write(path)


def threads(path, number):
    """Wall-clock seconds for `number` documents, each read by a thread of its own."""
    import zrt4xml
    workers = [threading.Thread(target=zrt4xml.read_channels, args=(path,)) for _ in range(number)]
    begin = time.perf_counter()
    for each in workers:
        each.start()
    for each in workers:
        each.join()
    return time.perf_counter() - begin


def main():
    if sys.argv[1] == "--measure":
        return measured(*sys.argv[2:])
    program = sys.argv[1]
    count, turns = (int(each) for each in (sys.argv[2:] + ["100000", "3"])[:2])
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
        print("| what | seconds | of C++ | lxml / it | pandas / it | memory, MB |")
        print("|---|---|---|---|---|---|")
        print(f"| C++ reader | {min(baseline):.3f} | 1.00 | | | |")
        for way, (seconds, memory, _) in best.items():
            print(f"| {way} | {seconds:.3f} | {seconds / min(baseline):.2f} | "
                  f"{best['lxml, dicts'][0] / seconds:.1f} | "
                  f"{best['pandas.read_xml'][0] / seconds:.1f} | {memory:.0f} |")
        one = min(threads(path, 1) for _ in range(turns))
        two = min(threads(path, 2) for _ in range(turns))
        print(f"two threads read {2 * one / two:.2f} times as fast as one")
    return None


if __name__ == "__main__":
    main()
