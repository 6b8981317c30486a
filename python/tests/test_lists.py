import collections.abc
import copy
import gc
import pickle
import random

import pytest

import zrt4xml
from zrt4xml import Bit, Channel, ChannelList, Event


def numbered(count):
    return ChannelList(Channel(prop_name=f"P{i}", daq_name=f"D{i}") for i in range(count))


def names(channels):
    return [each.prop_name for each in channels]


def test_a_list_is_a_sequence():
    channels = numbered(3)
    assert isinstance(channels, collections.abc.MutableSequence)
    assert isinstance(channels[0].bits, collections.abc.MutableSequence)
    assert (len(channels), bool(channels), bool(ChannelList())) == (3, True, False)
    assert names(channels) == ["P0", "P1", "P2"]
    assert channels[-1].prop_name == "P2"
    assert channels[0] is channels[0]
    for wrong in (3, -4, 10 ** 12, 10 ** 20):
        with pytest.raises(IndexError):
            channels[wrong]
    assert names(reversed(channels)) == ["P2", "P1", "P0"]
    assert channels.index(channels[1]) == 1
    assert channels.count(channels[1]) == 1
    assert channels[1] in channels
    assert Channel() not in channels
    assert 5 not in channels


def test_slices_share_their_records():
    channels = numbered(5)
    assert names(channels[1:4]) == ["P1", "P2", "P3"]
    assert names(channels[::-2]) == ["P4", "P2", "P0"]
    assert type(channels[1:]) is ChannelList
    assert channels[1:][0] is channels[1]
    channels.dialect = "variables"
    assert channels[:0].dialect == "variables"


def test_changes():
    channels = numbered(2)
    channels.append(Channel(prop_name="Z"))
    channels.insert(0, Channel(prop_name="A"))
    channels.insert(-100, Channel(prop_name="B"))
    channels.insert(100, Channel(prop_name="C"))
    assert names(channels) == ["B", "A", "P0", "P1", "Z", "C"]
    assert channels.pop().prop_name == "C"
    assert channels.pop(0).prop_name == "B"
    channels.remove(Channel(prop_name="A"))
    channels[0] = Channel(prop_name="first")
    del channels[-1]
    assert names(channels) == ["first", "P1"]
    channels += numbered(1)
    assert names(channels + channels) == ["first", "P1", "P0"] * 2
    channels.sort()
    assert names(channels) == ["P0", "P1", "first"]
    channels.sort(key=lambda each: each.daq_name, reverse=True)
    assert names(channels) == ["P1", "P0", "first"]
    channels.clear()
    assert len(channels) == 0
    with pytest.raises(IndexError):
        channels.pop()
    for wrong in (Bit(), "P1", None):
        with pytest.raises(TypeError, match="a Channel is needed"):
            channels.append(wrong)
    with pytest.raises(TypeError):
        channels.extend([Channel(), Event()])
    assert len(channels) == 0


@pytest.mark.parametrize("seed", range(40))
def test_slices_are_assigned_as_those_of_lists(seed):
    chosen = random.Random(seed)
    channels, model = numbered(10), [f"P{i}" for i in range(10)]
    inner = Channel(bits=[Bit(bit_name=name) for name in model])
    for _ in range(20):
        limits = [chosen.choice([None, *range(-12, 12)]) for _ in range(2)]
        where = slice(*limits, chosen.choice([None, 1, 1, 2, -1, -3]))
        new = [f"N{chosen.random()}" for _ in range(chosen.randrange(4))]
        if chosen.random() < 0.3:
            del model[where], channels[where], inner.bits[where]
        else:
            try:
                model[where] = new
            except ValueError:
                with pytest.raises(ValueError):
                    channels[where] = [Channel(prop_name=each) for each in new]
                continue
            channels[where] = [Channel(prop_name=each) for each in new]
            inner.bits[where] = [Bit(bit_name=each) for each in new]
        assert names(channels) == model
        assert [each.bit_name for each in inner.bits] == model


def test_lookup(channels):
    assert channels["LINAC.DIAG/BPM/3.L1/X.TRAIN"] is channels[0]
    assert channels["BPM.3.L1.X"] is channels[0]
    assert "BPM.3.L1.X" in channels
    assert "nothing" not in channels
    with pytest.raises(KeyError, match="nothing"):
        channels["nothing"]
    assert channels.get("nothing") is None
    assert channels.get("BPM.3.L1.X") is channels[0]


def test_lookup_after_changes():
    channels = numbered(3)
    assert channels["D1"] is channels[1]
    channels[0].daq_name = "D1"
    assert channels["D1"] is channels[0]
    channels[1].prop_name = "D1"  # a property counts first
    assert channels["D1"] is channels[1]
    del channels[1]
    assert channels["D1"] is channels[0]
    assert "P1" not in channels


def test_lookup_of_other_kinds(events):
    assert events["ENV"].min_ev_time_sec == 10
    assert events[0].server_blocks["LINAC.DAQ/TOROID.SERVER"].channels == ()
    camera = zrt4xml.read("examples/cameras/minimal.xml")
    assert camera[camera[1].name] is camera[1]


def test_a_list_may_change_while_it_is_walked():
    channels = numbered(10)
    seen = []
    for channel in channels:
        seen.append(channel.prop_name)
        if len(seen) == 3:
            channels.clear()
    assert seen == ["P0", "P1", "P2"]
    channels = numbered(3)
    for channel in channels:
        if len(channels) < 10:
            channels.append(channel)
    assert len(channels) == 10
    walk = iter(numbered(2))
    assert [next(walk).prop_name, next(walk).prop_name] == ["P0", "P1"]
    assert list(walk) == []


def test_records_outlive_their_list(channels):
    channel, dimension = channels[0], channels[0].dims[0]
    del channels
    gc.collect()
    assert channel.daq_name == "BPM.3.L1.X"
    assert dimension.dim_name == "bunch"


def test_copies_of_lists(channels):
    shallow, deep = copy.copy(channels), copy.deepcopy(channels)
    assert shallow == deep == channels
    assert shallow[0] is channels[0]
    assert deep[0] is not channels[0]
    loaded = pickle.loads(pickle.dumps(channels))
    assert loaded == channels
    assert (loaded.source, loaded.dialect) == (channels.source, channels.dialect)
    deep[0].units = "km"
    assert deep != channels
    assert channels != list(channels)
    with pytest.raises(TypeError):
        hash(channels)


def test_from_records():
    made = ChannelList.from_records([
        {"prop_name": "A", "bits": [{"bit": 1}]}, Channel(prop_name="B"),
        {"prop_name": "C", "units": None, "max_size": float("nan")}])
    assert names(made) == ["A", "B", "C"]
    assert (made[0].bits[0].bit, made[2].max_size) == (1, 1)
    assert ChannelList.from_records(each.to_dict() for each in made) == made
    with pytest.raises(TypeError, match="Channel has no field 'unit'"):
        ChannelList.from_records([{"unit": "mm"}])
    with pytest.raises(TypeError, match="a mapping of fields is needed, not 'int'"):
        ChannelList.from_records([5])


def test_representation():
    assert repr(ChannelList()) == "<ChannelList of 0 channels>"
    assert repr(numbered(1)) == (
        "<ChannelList of 1 channel:\n  Channel(prop_name='P0', daq_name='D0')>")
    assert repr(numbered(9)).endswith("  ... 3 more>")


def test_a_record_that_stands_twice():
    document = ("<ENVINDEXDICT><CHANNEL><INDEX>1</INDEX><PROP>A</PROP><PROP>B</PROP></CHANNEL>"
                "</ENVINDEXDICT>")
    entries = zrt4xml.read(document)
    assert len(entries) == 2
    assert entries[0] is entries[1]
    del entries[0]
    assert entries[0].env_prop == "B"


def test_records_inside_are_sorted_copied_and_pickled():
    channel = zrt4xml.Channel(bits=[{"bit": 2}, {"bit": 3, "bit_name": "A"}, {"bit": 1}])
    third = channel.bits[1]
    channel.bits.sort()
    assert [each.bit for each in channel.bits] == [1, 2, 3]
    assert channel.bits[2] is third
    channel.bits.sort(key=lambda each: each.bit_name, reverse=True)
    assert channel.bits[0] is third
    for made in (copy.copy(channel.bits), channel.bits.copy()):
        assert made == channel.bits
        assert made[0] is third
    for made in (copy.deepcopy(channel.bits), pickle.loads(pickle.dumps(channel.bits))):
        assert made == channel.bits
        assert made[0] is not third
    zrt4xml.Channel().bits.sort()


def test_a_record_is_taken_out_by_its_key(channels):
    del channels["BPM.3.L1.X"]
    assert len(channels) == 7
    assert "BPM.3.L1.X" not in channels
    with pytest.raises(KeyError, match="BPM.3.L1.X"):
        del channels["BPM.3.L1.X"]
    bits = channels["RF.A1.STATUS"].bits
    del bits["QUENCH"]
    assert [each.bit_name for each in bits] == [
        "RF_ON", "FEEDBACK", "FEEDFORWARD", "VACUUM", "MODULATOR"]


def test_an_event_is_found_by_its_type(events):
    # The number of the type is no position.
    assert events[zrt4xml.EventType.NORMAL].evtype is zrt4xml.EventType.NORMAL
    assert events[zrt4xml.EventType.NORMAL] is events["NORMAL"] is events[0]
    assert events.get(zrt4xml.EventType.ENV) is events[1]
    assert zrt4xml.EventType.ENV in events
    assert zrt4xml.EventType.IMAGE not in events
    assert events.get(zrt4xml.EventType.IMAGE) is None
    del events[zrt4xml.EventType.NORMAL]
    assert [each.evtype for each in events] == [zrt4xml.EventType.ENV]
    with pytest.raises(KeyError):
        events[zrt4xml.EventType.NORMAL]
    by_number = zrt4xml.EventList([Event(evtype=28)])
    assert by_number[zrt4xml.EventType["28"]] is by_number["28"] is by_number[0]


@pytest.mark.parametrize("wrong", [1.0, None, (1, 2), [0]])
def test_what_is_no_index(channels, wrong):
    for records in (channels, channels[0].dims):
        with pytest.raises(TypeError, match=f"is needed, not '{type(wrong).__name__}'$"):
            records[wrong]
        with pytest.raises(TypeError, match=f"is needed, not '{type(wrong).__name__}'$"):
            del records[wrong]
