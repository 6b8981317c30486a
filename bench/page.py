#!/usr/bin/python3
"""What a page costs: to make, to keep, to open and to search in. The document is a made-up accelerator;
the browser runs without a screen. Times are the least of several: a busy machine only makes them longer; processor time and that of the
page's thread less so.

  page.py TOOL [CHANNELS]
"""

import gzip
import os
import pathlib
import resource
import subprocess
import sys
import tempfile

sys.dont_write_bytecode = True
here = pathlib.Path(__file__).resolve().parent
sys.path.insert(0, str(here.parent / "tests/page"))

import browser as browsers  # noqa: E402

browsers.LONGEST_WAIT = 120
ROUNDS = 3
QUERY = "probe l12"


def seconds(*command):
    """Wall-clock and processor time."""
    best = None
    for _ in range(ROUNDS):
        before = resource.getrusage(resource.RUSAGE_CHILDREN)
        begin = os.times().elapsed
        subprocess.run(command, stdout=subprocess.DEVNULL, check=True)
        wall = os.times().elapsed - begin
        after = resource.getrusage(resource.RUSAGE_CHILDREN)
        processor = after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime
        best = min(best or (wall, processor), (wall, processor), key=lambda each: each[1])
    return best


def metric(browser, name):
    return next(each["value"] for each in browser.command("Performance.getMetrics")["metrics"] if each["name"] == name)


def thread_time(browser, act):
    """Processor time of the page's thread until what `act` does is drawn."""
    before = metric(browser, "TaskDuration")
    act()
    browser.script("return new Promise((done) => requestAnimationFrame(() => setTimeout(done)))")
    return metric(browser, "TaskDuration") - before


def main():
    tool = sys.argv[1]
    channels = int(sys.argv[2]) if len(sys.argv) > 2 else 200_000
    with tempfile.TemporaryDirectory() as folder, browsers.Browser() as browser:
        document, page = pathlib.Path(folder, "machine.xml"), pathlib.Path(folder, "machine.html")
        with open(document, "wb") as file:
            subprocess.run([sys.executable, here / "accelerator.py", str(channels)], stdout=file, check=True)
        xml = document.read_bytes()
        packed = len(gzip.compress(xml, 6))
        print(f"load of the machine: {os.getloadavg()[0]:.1f}")
        print(f"document: {channels} channels, {len(xml) / 1e6:.1f} MB, gzip {packed / channels:.1f} bytes a channel")
        for what, arguments in (("stat", ["stat"]), ("check", ["check"]), ("page", ["page", "-o", str(page)])):
            wall, processor = seconds(tool, *arguments, str(document))
            print(f"{what}: {wall:.2f} s, processor {processor:.2f} s")
        size = page.stat().st_size
        print(f"page: {size / 1e6:.2f} MB, {size / channels:.1f} bytes a channel")
        browser.command("Performance.enable", timeDomain="threadTicks")
        ready = []
        for _ in range(ROUNDS):
            browser.open(page, "#channels")
            ready.append((browser.script("return performance.getEntriesByName('zrt4-ready')[0].startTime / 1000"),
                          metric(browser, "ThreadTime")))
        print(f"the table can be used after {min(ready)[0]:.2f} s, thread {min(each[1] for each in ready):.2f} s")
        browser.until(lambda: browser.script("return zrt4.page.viewOf('channels').index !== undefined"), "index")
        rounds = []
        for _ in range(ROUNDS):
            browser.type("/", browsers.Keys.DELETE)
            rounds.append([thread_time(browser, lambda: browser.type(letter)) for letter in QUERY])
        times = ", ".join(f"{1000 * min(each):.0f}" for each in zip(*rounds))
        print(f"a keystroke of '{QUERY}': thread {times} ms; found: {browser.text('.count')}")
        for name in ("name", "event_type"):
            sort = thread_time(browser, lambda: browser.script("zrt4.page.go({sort: arguments[0], query: ''})", name))
            print(f"sorted by {name} the first time: thread {1000 * sort:.0f} ms")


main()
