import copy
import gc
import pickle
import sys

import pytest

import zrt4xml
from zrt4xml import Bit, Channel, Dimension, DictionaryEntry, Event, Feature, ServerBlock, Statistic

RECORDS = [
    Channel(prop_name="P", bits=[Bit(bit=3, bit_name="Ü")],
            dims=[Dimension(dim=1, stats=[Statistic(stat=2, units="mm")])]),
    Event(evtype=1, tmask=4294967295, server_blocks=[ServerBlock(name="S", channels=["A", "B"])]),
    DictionaryEntry(index=-1, env_prop="P", env_ch_abs_delta=0.1, env_ch_rel_delta=float("inf")),
    Feature(name="Width", type=1, tooltip="long " * 1000),
]


def test_a_new_channel_is_as_a_reader_begins_one():
    channel = Channel()
    assert channel.to_dict() == {
        "prop_name": "", "daq_name": "", "ev_type": 0, "dtype": 0, "stream": 0, "subsystem": "",
        "sb_name": "", "prop_desc": "", "units": "", "max_size": 1, "set_point": 0, "db_key": -1,
        "count": 0, "bits": [], "dims": []}


def test_fields_are_read_and_set():
    channel = Channel(prop_name="A/B/C/D", ev_type=zrt4xml.EventType.ENV, max_size=7)
    assert (channel.prop_name, channel.ev_type, channel.max_size) == ("A/B/C/D", 4, 7)
    assert type(channel.prop_name) is str
    assert type(channel.max_size) is int
    channel.units = "µm"
    channel.db_key = -2147483648
    assert (channel.units, channel.db_key) == ("µm", -2147483648)
    entry = DictionaryEntry(env_ch_abs_delta=0.1)
    assert entry.env_ch_abs_delta == 0.1
    assert type(entry.env_ch_rel_delta) is float


def test_numbers_with_names():
    assert Channel(ev_type=1).ev_type is zrt4xml.EventType.NORMAL
    assert Channel(dtype=38).dtype is zrt4xml.DataType.BPM_2010
    assert Channel(dtype=1000).dtype == 1000
    assert Feature(type=3).type is zrt4xml.FeatureType.Enumeration
    assert Event(evtype=32).evtype is zrt4xml.EventType.EVMAX


@pytest.mark.parametrize("field, size", [("units", 15), ("subsystem", 63), ("prop_name", 255),
                                         ("daq_name", 255), ("sb_name", 255), ("prop_desc", 255)])
def test_a_text_is_never_cut(field, size):
    channel = Channel(**{field: "x" * size})
    assert getattr(channel, field) == "x" * size
    with pytest.raises(ValueError, match=f"^{field}: the text has {size + 1} bytes in UTF-8, "
                                         f"the field holds {size}$"):
        setattr(channel, field, "x" * (size + 1))
    with pytest.raises(ValueError):
        setattr(channel, field, "ä" * ((size + 2) // 2))
    assert getattr(channel, field) == "x" * size


def test_what_is_no_text():
    channel = Channel(units="mm")
    for wrong in (5, None, b"mm", ["m"]):
        with pytest.raises(TypeError, match="^units: a str is needed"):
            channel.units = wrong
    with pytest.raises(ValueError, match="^units: a text cannot hold a zero character"):
        channel.units = "m\0m"
    with pytest.raises(ValueError, match="^units: half a surrogate pair"):
        channel.units = "\ud800"
    assert channel.units == "mm"


def test_what_is_no_number():
    channel = Channel(max_size=3, ev_type=1)
    for wrong in ("5", None, 1.0, b"1"):
        with pytest.raises(TypeError, match="^max_size: an integer is needed"):
            channel.max_size = wrong
    for field, wrong in [("max_size", 2 ** 31), ("max_size", -2 ** 31 - 1), ("ev_type", -1),
                         ("ev_type", 2 ** 32), ("count", 10 ** 30)]:
        with pytest.raises(ValueError, match=f"^{field}: {wrong} is outside "):
            setattr(channel, field, wrong)
    assert (channel.max_size, channel.ev_type) == (3, 1)
    with pytest.raises(ValueError, match="^evtype: 33 is outside 0 to 32$"):
        Event(evtype=33)
    with pytest.raises(ValueError, match="32-bit"):
        DictionaryEntry(env_ch_abs_delta=1e300)
    with pytest.raises(ValueError, match="^env_ch_abs_delta: the number is more than a 32-bit"):
        DictionaryEntry(env_ch_abs_delta=10 ** 400)
    with pytest.raises(ValueError, match="^count: a number of 16610 bits is outside "):
        channel.count = 10 ** 5000
    with pytest.raises(TypeError, match="^env_ch_abs_delta: a number is needed"):
        DictionaryEntry(env_ch_abs_delta="1")


def test_fields_that_there_are_not():
    with pytest.raises(TypeError, match="^Channel has no field 'property'"):
        Channel(property="x")
    with pytest.raises(TypeError, match=r"^Channel takes fields by name: Channel\(prop_name=...\)$"):
        Channel("x")
    with pytest.raises(AttributeError):
        Channel().nonsense = 1
    with pytest.raises(AttributeError):
        Channel().nonsense


def test_inner_records():
    channel = Channel(bits=[Bit(bit=0), {"bit": 1, "bit_name": "RAMPING"}])
    assert channel.bits[1].bit_name == "RAMPING"
    assert channel.bits["RAMPING"].bit == 1
    channel.bits.append(Bit(bit=2))
    del channel.bits[0]
    assert [each.bit for each in channel.bits] == [1, 2]
    channel.bits.insert(0, Bit(bit=9))
    channel.bits.reverse()
    assert [each.bit for each in channel.bits] == [2, 1, 9]
    channel.bits = []
    assert len(channel.bits) == 0
    with pytest.raises(TypeError, match="a Bit is needed, not 'Dimension'"):
        channel.bits.append(Dimension())
    with pytest.raises(TypeError):
        channel.bits = [5]


def test_an_inner_record_lives_on():
    channel = Channel(dims=[Dimension(stats=[Statistic(stat_name="rms")])])
    dimension = channel.dims[0]
    statistic = dimension.stats[0]
    assert channel.dims[0] is dimension
    del channel
    gc.collect()
    assert statistic.stat_name == "rms"
    dimension.stats.clear()
    del dimension
    gc.collect()
    statistic.units = "mm"
    assert (statistic.stat_name, statistic.units) == ("rms", "mm")


def test_an_inner_record_belongs_to_one():
    first, second = Channel(), Channel()
    bit = Bit(bit=1)
    first.bits.append(bit)
    second.bits.append(bit)
    bit.bit = 5
    assert (first.bits[0].bit, second.bits[0].bit) == (5, 1)
    second.bits = first.bits
    assert second.bits == first.bits
    assert second.bits[0] is not first.bits[0]
    taken = first.bits.pop()
    assert taken is bit
    second.bits[0] = taken
    assert second.bits[0] is bit
    first.bits = first.bits


def test_names_inside():
    block = ServerBlock(name="S", channels=["A", "Ä"])
    assert block.channels == ("A", "Ä")
    block.channels += ("C",)
    assert block.channels == ("A", "Ä", "C")
    with pytest.raises(TypeError, match="^channels: a sequence of str is needed"):
        block.channels = "ABC"
    with pytest.raises(TypeError):
        block.channels = [1]
    assert len(block.channels) == 3
    with pytest.raises(ValueError, match="the field holds 254"):
        block.name = "x" * 255


@pytest.mark.parametrize("record", RECORDS, ids=lambda each: type(each).__name__)
def test_copies(record):
    for made in (copy.copy(record), copy.deepcopy(record), record.copy(),
                 pickle.loads(pickle.dumps(record)), type(record)(**record.to_dict())):
        assert made == record
        assert made is not record
        assert repr(made) == repr(record)
    assert record != "something else"
    assert record != type(record)()


def test_a_copy_is_independent():
    made = copy.copy(RECORDS[0])
    made.bits[0].bit_name = "other"
    made.dims[0].stats[0].units = "V"
    assert (RECORDS[0].bits[0].bit_name, RECORDS[0].dims[0].stats[0].units) == ("Ü", "mm")
    assert made != RECORDS[0]


def test_records_change_so_they_have_no_hash():
    for record in RECORDS:
        with pytest.raises(TypeError):
            hash(record)


def test_a_text_that_was_cut_within_a_character():
    name = "x" * 254 + "ä"
    [channel] = zrt4xml.read(f"<CHANDESCRIPTIONS><CHANNEL><PROP>{name}</PROP></CHANNEL>"
                             "</CHANDESCRIPTIONS>")
    assert channel.prop_name == "x" * 254 + "\ufffd"
    assert pickle.loads(pickle.dumps(channel)) == channel
    assert copy.copy(channel) == channel


def test_representation():
    assert repr(Channel(prop_name="P", ev_type=1, units="mm", bits=[{"bit": 0}, {"bit": 1}])) == (
        "Channel(prop_name='P', ev_type=EventType.NORMAL, units='mm', bits=<2 Bit>)")
    assert repr(Bit(bit=3, bit_name="A")) == "Bit(bit=3, bit_name='A')"


def test_reference_counts():
    name, channel = "x" * 100, Channel(bits=[Bit()])
    before = sys.getrefcount(name), sys.getrefcount(channel), sys.getrefcount(Channel)
    for _ in range(1000):
        channel.prop_name = name
        channel.prop_name
        channel.bits[0].bit_name
        Channel(prop_name=name)
        try:
            Channel(units=name)
        except ValueError:
            pass
    assert (sys.getrefcount(name), sys.getrefcount(channel), sys.getrefcount(Channel)) == before
