"""Reading channels in Python by one thread and by two: wall-clock time, least of several, for many
documents of 1 MB and for large ones. Of use on a machine that does nothing else: two cores are all
that it needs.

    python_threads.py [TURNS]
"""

import os
import sys
import tempfile
import threading
import time

import python_readers
import zrt4xml


def seconds(path, documents, number):
    """Until `number` threads have read the document so many times."""
    rest = iter(range(documents))

    def work():
        for _ in rest:  # each number goes to one thread
            zrt4xml.read_channels(path)

    threads = [threading.Thread(target=work) for _ in range(number)]
    begin = time.perf_counter()
    for each in threads:
        each.start()
    for each in threads:
        each.join()
    return time.perf_counter() - begin


def main():
    turns = int(sys.argv[1]) if len(sys.argv) > 1 else 5
    print(f"least of {turns}; load {os.getloadavg()[0]:.1f}, {len(os.sched_getaffinity(0))} cores")
    print("| documents | channels of each | one thread | two threads | times as fast |")
    print("|---|---|---|---|---|")
    for documents, channels in ((100, 1500), (4, 100000)):
        with tempfile.TemporaryDirectory() as folder:
            path = os.path.join(folder, "channels.xml")
            python_readers.write_document(path, channels)
            found = {1: [], 2: []}
            for _ in range(turns):
                for number, each in found.items():
                    each.append(seconds(path, documents, number))
        one, two = (min(each) for each in found.values())
        print(f"| {documents} | {channels} | {one:.2f} s | {two:.2f} s | {one / two:.2f} |")


if __name__ == "__main__":
    main()
