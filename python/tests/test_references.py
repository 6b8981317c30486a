"""No call keeps a reference that it should have given back, nor gives back one that it does not have.

Each operation is done many times. What that leaks shows in one of two numbers: of the blocks of
memory that objects have, where new objects stay; or of the references to all objects that there were
before, where one of these is kept, or given back once too often.
"""

import contextlib
import copy
import ctypes
import gc
import io
import pathlib
import pickle
import sys

import numpy
import pandas  # noqa: F401: its objects are there before the counting begins
import pytest

import zrt4xml
from zrt4xml import (Bit, Channel, ChannelList, Dictionary, DictionaryEntry, Dimension, Event,
                     EventList, Feature, FeatureList, ServerBlock, Statistic, _core)

LONG = "x" * 5000


@contextlib.contextmanager
def refused(*errors):
    try:
        yield
    except errors:
        return
    raise AssertionError("not refused")


def new_records():
    return [
        Channel(prop_name="P/1", daq_name="Ä", ev_type=1, dtype=99, units="mm",
                bits=[Bit(bit=1, bit_name="ON"), {"bit": 2}],
                dims=[Dimension(dim=0, dim_name="d", stats=[Statistic(stat=1, stat_name="s")])]),
        Event(evtype=1, tmask=3, server_blocks=[ServerBlock(name="S", channels=["A", "Ä"])]),
        DictionaryEntry(index=3, env_prop="P", env_ch_abs_delta=0.5),
        Feature(name="Width", type=1, tooltip="long " * 100),
    ]


def inside(record):
    yield record
    for group in ("bits", "dims", "stats", "server_blocks"):
        for each in getattr(record, group, ()):
            yield from inside(each)


RECORDS = new_records()
EVERY_RECORD = [each for record in RECORDS for each in inside(record)]
LISTS = [kind([record, record.copy()])
         for kind, record in zip((ChannelList, EventList, Dictionary, FeatureList), RECORDS)]
CHANNELS = zrt4xml.read_channels("examples/channels/channels.xml")
VARIABLES = zrt4xml.read_channels("examples/channels/variables.xml")
DOCUMENTS = [pathlib.Path("examples", each).read_bytes() for each in (
    "channels/channels.xml", "channels/variables.xml", "event_lists/orbit_feedback.xml",
    "dictionaries/small.xml", "cameras/minimal.xml")]


def fields_of(record):
    for name, _, kind, _ in record._fields:
        value = getattr(record, name)
        setattr(record, name, value)
        for wrong in (None, [1]):
            with refused(TypeError):
                setattr(record, name, wrong)
        if kind == "str":
            for wrong in ("a\0b", "\ud800"):
                with refused(ValueError):
                    setattr(record, name, wrong)
            with contextlib.suppress(ValueError):  # not too long for each
                setattr(record, name, LONG)
            setattr(record, name, value)
        elif kind != "float":
            with refused(ValueError):
                setattr(record, name, 10 ** 30)


def making(record):
    kind = type(record)
    kind()
    kind(**record.to_dict())
    with refused(TypeError):
        kind(nonsense=1)
    with refused(TypeError):
        kind(1)
    with refused(AttributeError):
        record.nonsense = 1


def copies(record):
    copy.copy(record)
    copy.deepcopy(record)
    record.copy()
    pickle.loads(pickle.dumps(record))


def comparing(record):
    other = record.copy()
    assert record == other
    assert record != 5
    assert record != Bit(bit=77)
    with refused(TypeError):
        hash(record)


def showing(record):
    repr(record)
    record._repr_html_()
    record.to_dict()


def records_inside(record):
    for group in ("bits", "dims", "stats", "server_blocks"):
        if not hasattr(record, group):
            continue
        sequence(getattr(record, group))
        setattr(record, group, getattr(record, group))
        with refused(TypeError):
            setattr(record, group, [5])
        with refused(TypeError):
            setattr(record, group, [RECORDS[3]])
        repr(getattr(record, group))
        assert getattr(record, group) == list(getattr(record, group))
        assert getattr(record, group) != [1]
    if hasattr(record, "channels"):
        record.channels = [*record.channels]
        with refused(TypeError):
            record.channels = "ABC"
        with refused(TypeError):
            record.channels = [1]


def sequence(records):
    """All that sequences can do; it is afterwards as before."""
    count = len(records)
    first = records[0]
    key = next(iter(first.to_dict().values()))
    records[-1], records[0:1], records[::-1]
    for wrong in (count, -count - 1):
        with refused(IndexError):
            records[wrong]
    with refused(KeyError):
        records["no such key"]
    with refused(TypeError):
        records[1.5]
    records.get("no such key"), records.get("no such key", 5), records.get("ON")
    if isinstance(key, str) and key:
        assert records[key] == first
    assert first in records
    assert "no such key" not in records
    assert 5 not in records
    assert records == records[:] and records != 5
    for _ in records:
        pass
    next(iter(iter(records)))
    list(reversed(records)), records.index(first), records.count(first)
    extra = first.copy()
    records.append(extra)
    records.insert(0, first.copy())
    records.extend([first.copy(), first.copy()])
    for wrong in (5, None, Channel if not isinstance(first, Channel) else Bit):
        with refused(TypeError):
            records.append(wrong)
        with refused(TypeError):
            records[0] = wrong
        with refused(TypeError):
            records.extend([wrong])
    records[1] = first.copy()
    records[1] = first
    records[1:2] = [records[1]]
    with refused(ValueError):
        records[::2] = [first.copy()]
    del records[0]
    del records[-2:]
    records.remove(extra)
    assert len(records) == count
    kept = list(records)
    records.reverse()
    records.clear()
    records += kept


def lists(records):
    records + records
    records.sort()
    records.sort(key=lambda each: 0, reverse=True)
    records.copy(), copy.deepcopy(records), pickle.loads(pickle.dumps(records))
    repr(records), records._repr_html_()
    type(records).from_records([each.to_dict() for each in records])
    with refused(TypeError):
        type(records)([5])


def tables(records):
    table = records.to_numpy()
    records.to_numpy(texts="bytes")
    records.to_numpy([table.dtype.names[0]])
    with refused(KeyError):
        records.to_numpy(["nonsense"])
    with refused(KeyError):
        records.to_dataframe(["nonsense"])
    type(records).from_records(table)


def frames(records):
    frame = records.to_dataframe()
    type(records).from_records(frame)
    if isinstance(records, ChannelList):
        records.bits_to_dataframe()
        records.dims_to_dataframe()
        records.stats_to_dataframe()


def writing(records):
    for form in ("element", "variables"):
        records.to_xml(form, lossy=True)
    with refused(zrt4xml.LossError):
        ChannelList([Channel(prop_name="P", units="\x01")]).to_xml()
    Dictionary([DictionaryEntry(env_prop="P")]).to_xml()
    with refused(IsADirectoryError):
        records.write("examples", lossy=True)
    with refused(FileNotFoundError):
        records.write("no/such/folder", lossy=True)


def reading(document):
    zrt4xml.read(document)
    zrt4xml.read(document.decode())
    zrt4xml.read(bytearray(document), on_error="keep")
    zrt4xml.read(io.BytesIO(document))
    zrt4xml.check(document)
    zrt4xml.read_numpy(document)
    zrt4xml.read_dataframe(document)
    with refused(KeyError):
        zrt4xml.read_numpy(document, ["nonsense"])
    broken = document[:-10]
    zrt4xml.read_numpy(broken, on_error="keep")
    zrt4xml.read(broken, on_error="keep")
    zrt4xml.check(broken)
    with refused(zrt4xml.DocumentError):
        zrt4xml.read(broken)


def files(path):
    zrt4xml.read(path)
    zrt4xml.read(pathlib.Path(path))
    with open(path, encoding="utf-8") as file:
        zrt4xml.read(file)
    for read in (zrt4xml.read, zrt4xml.check, zrt4xml.Selector):
        with refused(FileNotFoundError):
            read("no/such.xml")


def what_is_no_document(_):
    for read in (zrt4xml.read, zrt4xml.read_events, zrt4xml.check, zrt4xml.Selector):
        for wrong in (b"", b"<html/>", "<a"):
            with refused(zrt4xml.DocumentError):
                read(wrong)
        with refused(TypeError):
            read(5)
    with refused(zrt4xml.DocumentError):
        zrt4xml.read_events(DOCUMENTS[0])
    with refused(zrt4xml.DocumentError):
        zrt4xml.read("{")


def comparing_lists(_):
    other = copy.deepcopy(CHANNELS)
    other[0].units = "other"
    other["RF.A1.STATUS"].bits[0].bit_name = "other"
    del other[1]
    zrt4xml.diff(CHANNELS, other)
    zrt4xml.diff(other, CHANNELS)
    zrt4xml.diff(CHANNELS, VARIABLES)
    for each in LISTS:
        zrt4xml.diff(each, each[:0])
    with refused(TypeError):
        zrt4xml.diff(CHANNELS, LISTS[1])


def merging(_):
    zrt4xml.merge(CHANNELS[:5], CHANNELS[3:], VARIABLES)
    zrt4xml.merge(CHANNELS, VARIABLES, force=True)


def selecting(_):
    selector = zrt4xml.Selector(["examples/channels/channels.xml", DOCUMENTS[1]])
    selector.find("nothing", 1), selector.find("BPM.3.L1.X", 1)
    selector.event_types("nothing"), selector.data_type("BPM.3.L1.X")
    list(selector)
    with refused(zrt4xml.DocumentError):
        zrt4xml.Selector(DOCUMENTS[0][:-10])
    zrt4xml.Selector(DOCUMENTS[0][:-10], on_error="keep")


OPERATIONS = [(operation, of) for operations, all_of in (
    ((fields_of, making, copies, comparing, showing, records_inside), EVERY_RECORD),
    ((sequence, lists, tables), LISTS),
    ((frames,), [CHANNELS, LISTS[1]]),
    ((writing,), [CHANNELS]),
    ((reading,), DOCUMENTS),
    ((files,), ["examples/channels/channels.xml"]),
    ((what_is_no_document, comparing_lists, merging, selecting), [None]),
) for operation in operations for of in all_of]


@pytest.fixture(scope="module")
def all_objects():
    """Those that the collector knows, and those that these refer to, as texts and numbers."""
    for operation, of in OPERATIONS:
        operation(of)
    gc.collect()
    tracked = gc.get_objects()
    found = {id(each): each for each in tracked}
    found.update((id(each), each) for each in gc.get_referents(*tracked))
    gc.freeze()  # the collector need not look at them again
    yield list(found.values())
    gc.unfreeze()


def counted(all_objects):
    gc.collect()
    return sys.getallocatedblocks(), sum(map(sys.getrefcount, all_objects))


def is_kept(operation, of, all_objects, times):
    """Whether each time adds to the number of blocks, or changes that of references to what there
    was. The interpreter keeps some things, too, but less and less: then it is done more often."""
    for _ in range(5):
        before = counted(all_objects)
        for _ in range(times):
            operation(of)
        after = counted(all_objects)
        if all(abs(now - then) < times / 2 for then, now in zip(before, after)):
            return False
        times *= 2
    return True


@pytest.mark.parametrize("operation, of", OPERATIONS,
                         ids=lambda each: getattr(each, "__name__", type(each).__name__))
def test_nothing_is_kept(operation, of, all_objects):
    is_slow = operation in (frames, reading, lists, comparing_lists)
    assert not is_kept(operation, of, all_objects, 10 if is_slow else 40)


def keep(what):
    ctypes.pythonapi.Py_IncRef(ctypes.py_object(what))


@pytest.mark.parametrize("leak", [
    lambda of: keep(None), lambda of: keep(of), lambda of: keep(object()), lambda of: keep(Channel),
    lambda of: keep("text" * len(of)), lambda of: keep(zrt4xml.EventType.NORMAL)])
def test_what_is_kept_is_found(leak, all_objects):
    assert is_kept(leak, LONG, all_objects, 10)


def test_every_function_of_the_module_is_counted(monkeypatch):
    called, known = set(), set()

    def note_calls(holder, name, function):
        def noting(*arguments, **options):
            called.add((holder.__name__, name))
            return function(*arguments, **options)

        known.add((holder.__name__, name))
        monkeypatch.setattr(holder, name, noting)

    for name, each in list(vars(_core).items()):
        if not isinstance(each, type):
            if callable(each):
                note_calls(_core, name, each)
            continue
        for method, function in list(vars(each).items()):
            if type(function).__name__ == "instancemethod":
                note_calls(each, method, function)
    for operation, of in OPERATIONS:
        operation(of)
    assert len(known) > 60
    at_import = {(_core.__name__, "set_enumerations")}
    assert known - called - at_import == set()
