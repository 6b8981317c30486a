"""What comes goes: memory stays flat, however many records are made and dropped."""

import gc
import os
import subprocess
import sys
import threading

import zrt4xml

MANY = int(os.environ.get("ZRT4_MANY_RECORDS", "100000"))
DOCUMENT = ("<CHANDESCRIPTIONS>" + "".join(
    f"<CHANNEL><EVTYPE>1</EVTYPE><PROP>P{i}</PROP><BIT>1</BIT><BIT_NAME>Ä</BIT_NAME><DIM>0</DIM>"
    "<STAT>1</STAT></CHANNEL>" for i in range(500)) + "</CHANDESCRIPTIONS>").encode()


def resident():
    gc.collect()
    with open("/proc/self/statm") as file:
        return int(file.read().split()[1]) * os.sysconf("SC_PAGE_SIZE")


def grown_by(work):
    """Bytes that the second half of the work adds to what the first has."""
    work(MANY // 2)
    before = resident()
    work(MANY // 2)
    return resident() - before


def make_records(count):
    for i in range(count):
        channel = zrt4xml.Channel(prop_name=f"P{i}", bits=[{"bit": 1}])
        bit = channel.bits[0]
        del channel.bits[0]
        bit.bit_name = "taken out"


def read_documents(count):
    for _ in range(count // 500):
        channels = zrt4xml.read(DOCUMENT)
        channels.to_numpy()
        kept = channels[7].dims[0].stats[0]
        del channels
        assert kept.stat == 1


def break_documents(count):
    for _ in range(count // 1000):
        try:
            zrt4xml.read(DOCUMENT[:-5])
        except zrt4xml.DocumentError as error:
            assert len(error.partial) == 500


def test_memory_stays_flat():
    for work in (make_records, read_documents, break_documents):
        assert grown_by(work) < 4_000_000, work.__name__


def test_descriptors_are_closed():
    before = len(os.listdir("/proc/self/fd"))
    break_documents(10_000)
    read_documents(10_000)
    assert len(os.listdir("/proc/self/fd")) == before


def test_threads_read_write_and_change():
    shared = zrt4xml.read(DOCUMENT)
    failures = []

    def work(which):
        try:
            for i in range(20):
                assert len(zrt4xml.read(DOCUMENT)) == 500
                assert b"<PROP>P499</PROP>" in shared.to_xml(lossy=True)
                for channel in shared[which::4]:
                    channel.units = "mm" * (i % 7)
                    channel.bits.append(zrt4xml.Bit(bit=i))
                    del channel.bits[0]
                shared.to_numpy()
        except BaseException as error:
            failures.append(error)

    workers = [threading.Thread(target=work, args=(each,)) for each in range(4)]
    for each in workers:
        each.start()
    for each in workers:
        each.join()
    assert failures == []


def test_the_interpreter_ends_while_others_read():
    """A daemon may be stopped wherever it is, but mostly where it waits for the library."""
    script = ("import threading, time, zrt4xml\n"
              "def read():\n"
              "    while True: zrt4xml.read('examples/channels/channels.xml')\n"
              "threading.Thread(target=read, daemon=True).start()\n"
              "time.sleep(0.1)\n")
    ends = [subprocess.run([sys.executable, "-c", script], capture_output=True).returncode
            for _ in range(4)]
    assert 0 in ends
