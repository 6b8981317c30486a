import json
import os
import random
import re
import stat
import subprocess

import pytest
from conftest import EXAMPLES, TOOL

import zrt4xml
from zrt4xml import Bit, Channel, ChannelList, Dictionary, DictionaryEntry

CHANNELS = [each for each in EXAMPLES if each.parent.name == "channels"]


def tool(*arguments, document=None):
    return subprocess.run([TOOL, *map(str, arguments)], input=document, capture_output=True)


def dateless(document):
    return re.sub(rb"<isodate>[^<]*</isodate>", b"", document)


@pytest.mark.parametrize("path", CHANNELS, ids=lambda each: each.name)
@pytest.mark.parametrize("dialect, form", [("element", "xml"), ("variables", "variables")])
def test_channels_are_written_as_by_the_tool(path, dialect, form):
    expected = tool("convert", path, "--to", form).stdout
    found = zrt4xml.read_channels(path).to_xml(dialect, lossy=True)
    assert dateless(found) == dateless(expected)


def test_dictionaries_are_written_as_by_the_tool():
    for path in EXAMPLES:
        if path.parent.name == "dictionaries":
            expected = tool("convert", path, "--to", "xml", "--wide").stdout
            assert dateless(zrt4xml.read(path).to_xml()) == dateless(expected)


def test_the_dialect_of_a_document_is_kept():
    for path in CHANNELS:
        channels = zrt4xml.read(path)
        root = b"<DAQvariables" if channels.dialect == "variables" else b"<CHANDESCRIPTIONS"
        assert root in channels.to_xml(lossy=True)
    with pytest.raises(ValueError, match="dialect is 'element' or 'variables', not 'xml'"):
        ChannelList().to_xml("xml")


def test_a_document_reads_back(tmp_path, channels):
    path = tmp_path / "out.xml"
    channels[0].prop_desc = "Größe in µm"
    channels.write(path)
    assert zrt4xml.read(path) == channels
    assert b"Gr\xf6\xdfe in \xb5m" in path.read_bytes()
    entries = Dictionary([DictionaryEntry(index=1, env_prop="P" * 200, env_ch_abs_delta=0.5)])
    entries.write(str(path))
    assert zrt4xml.read(path) == entries


def test_what_cannot_be_written_is_told(tmp_path):
    path = tmp_path / "out.xml"
    path.write_text("before")
    channels = ChannelList([Channel(prop_name="P", units="\x01")])
    with pytest.raises(zrt4xml.LossError, match="P.*UNITS|units") as raised:
        channels.write(path)
    assert len(raised.value.losses) == 1
    assert path.read_text() == "before"


def test_a_file_is_replaced_as_a_whole(tmp_path, channels, monkeypatch):
    path = tmp_path / "out.xml"
    path.write_text("before")
    path.chmod(0o640)
    channels.write(path)
    assert stat.S_IMODE(path.stat().st_mode) == 0o640
    assert os.listdir(tmp_path) == ["out.xml"]
    monkeypatch.chdir(tmp_path)
    channels.write("-")
    assert sorted(os.listdir(tmp_path)) == ["-", "out.xml"]


@pytest.mark.parametrize("name, error", [
    ("no/such/out.xml", FileNotFoundError), ("", FileNotFoundError), ("examples", IsADirectoryError),
    ("README.md/out.xml", NotADirectoryError), ("/dev/full", OSError)])
def test_what_cannot_be_opened_to_write(channels, name, error):
    with pytest.raises(error) as raised:
        channels.write(name)
    assert raised.value.filename == name


def test_merging(tmp_path):
    first = ChannelList([Channel(prop_name="A", daq_name="a", units="mm"), Channel(prop_name="B", daq_name="b")])
    second = ChannelList([Channel(prop_name="A", daq_name="a", units="m", prop_desc="about", bits=[Bit(bit=1)]),
                          Channel(prop_name="C", daq_name="c")])
    merged = zrt4xml.merge(first, second)
    assert [each.prop_name for each in merged] == ["A", "B", "C"]
    assert (merged[0].units, merged[0].prop_desc, merged[0].bits[0].bit) == ("mm", "about", 1)
    assert zrt4xml.merge(first, second, force=True)[0].units == "m"
    assert (first[0].prop_desc, len(first[0].bits), len(second)) == ("", 0, 2)
    assert merged[1] is not first[1]
    for name, each in (("first.xml", first), ("second.xml", second)):
        each.write(tmp_path / name, lossy=True)
    expected = tool("merge", tmp_path / "first.xml", tmp_path / "second.xml").stdout
    assert zrt4xml.read(expected) == merged
    with pytest.raises(TypeError, match="a ChannelList is needed"):
        zrt4xml.merge(first, Dictionary())


def test_differences():
    before = ChannelList([Channel(prop_name="A", units="mm", bits=[Bit(bit=1, bit_name="ON")]),
                          Channel(prop_name="B", max_size=3)])
    after = ChannelList([Channel(prop_name="A", units="m", bits=[Bit(bit=1, bit_name="OFF")]),
                         Channel(prop_name="C")])
    changed, removed, added = sorted(zrt4xml.diff(before, after), key=lambda each: each.key)
    assert (changed.change, changed.type, changed.key) == ("changed", "channel", "A")
    assert changed.fields == {"units": ("mm", "m")}
    assert changed.inside[0].fields == {"bit_name": ("ON", "OFF")}
    assert (removed.change, removed.key, removed.record["max_size"]) == ("removed", "B", 3)
    assert (added.change, added.key) == ("added", "C")
    assert zrt4xml.diff(before, before) == []
    assert Channel(**added.record) == after[1]
    with pytest.raises(TypeError, match="lists of one kind"):
        zrt4xml.diff(before, Dictionary())


def plain(difference):
    """A difference as the tool's JSON has it, but for the names of fields."""
    made = {"change": difference.change, "type": difference.type, "key": difference.key}
    if difference.change == "changed":
        made["fields"] = list(difference.fields.values())
        made["inside"] = [plain(each) for each in difference.inside]
    return made


def plain_of_tool(shown):
    made = {name: shown[name] for name in ("change", "type", "key")}
    if shown["change"] == "changed":
        made["fields"] = [(each["before"], each["after"]) for each in shown["fields"]]
        made["inside"] = [plain_of_tool(each) for each in shown["inside"]]
    return made


@pytest.mark.parametrize("first, second", [(a, b) for a in EXAMPLES for b in EXAMPLES
                                           if a.parent == b.parent and a < b],
                         ids=lambda each: each.stem)
def test_differences_are_those_of_the_tool(first, second):
    shown = json.loads(tool("diff", "--json", first, second).stdout)
    found = zrt4xml.diff(zrt4xml.read(first), zrt4xml.read(second))
    assert [plain(each) for each in found] == [plain_of_tool(each) for each in shown["differences"]]
    assert len(found.not_compared) == len(shown["not_compared"])


def test_of_two_dialects_what_both_have_is_compared(tmp_path):
    before = ChannelList([Channel(prop_name="A", units="mm", stream=3,
                                  bits=[Bit(bit=1, bit_name="ON", bit_desc="is on")])])
    path = tmp_path / "variables.xml"
    before.write(path, "variables", lossy=True)
    after = zrt4xml.read(path)
    assert (after[0].stream, after.dialect) == (0, "variables")
    same = zrt4xml.diff(before, after)
    assert same == []
    assert "stream" in same.not_compared
    assert {"bits.bit_desc", "dims.stats", "db_key"} <= set(same.not_compared)
    after[0].units = "m"
    after[0].stream = 5
    assert [each.fields for each in zrt4xml.diff(before, after)] == [{"units": ("mm", "m")}]
    assert zrt4xml.diff(after, after[:0])[0].record["stream"] == 5
    assert "stream" not in zrt4xml.diff(before, after[:0])[0].record
    assert zrt4xml.diff(before, before).not_compared == ()


@pytest.mark.parametrize("path", EXAMPLES, ids=lambda each: each.name)
def test_findings_are_those_of_the_tool(path):
    for document in (path.read_bytes(), path.read_bytes().replace(b"<CHANNEL>", b"<CHANEL>", 1),
                     path.read_bytes().replace(b">1<", b">one<"), path.read_bytes()[:-20]):
        [shown] = json.loads(tool("check", "--json", "-", document=document).stdout)["documents"]
        found = zrt4xml.check(document)
        assert [(each.line or None, each.column or None, each.text, each.rule) for each in found] == [
            (each["line"], each["column"], each["text"], each["rule"])
            for each in shown["findings"]]
        assert (found.errors, found.record_count) == (shown["errors"], shown["record_count"])


def test_what_cannot_be_checked():
    with pytest.raises(zrt4xml.DocumentError):
        zrt4xml.check("<html/>")
    with pytest.raises(FileNotFoundError):
        zrt4xml.check("no/such.xml")


def test_a_selector(channels):
    selector = zrt4xml.Selector("examples/channels/channels.xml")
    assert len(selector) == len(channels)
    assert [(each.daq_name, each.prop_name) for each in selector] == [
        (each.daq_name, each.prop_name) for each in channels]
    for channel, selected in zip(channels, selector):
        assert selected.event_types == 1 << channel.ev_type
        by_daq_name = channel.ev_type == zrt4xml.EventType.IMAGE  # a local one
        name = channel.daq_name if by_daq_name else channel.prop_name
        assert selector.find(name, channel.ev_type)
        shown = json.loads(tool("find", "--json", "--name", channel.daq_name,
                                "examples/channels/channels.xml").stdout)["channel"]
        if shown:
            assert (selected.data_type, selected.is_slow, selected.is_main_linac) == (
                shown["data_type_mask"], shown["slow"], shown["main_linac"])
    assert not selector.find("nothing", 1)
    assert selector.event_types("nothing") == 0
    assert selector.data_type("nothing") == 0
    assert selector[-1] == selector[len(selector) - 1]
    assert selector[1:3] == [selector[1], selector[2]]
    assert selector.find("LINAC.DIAG/BPM/3.L1/X.TRAIN", "NORMAL")
    with pytest.raises(KeyError):
        selector.find("LINAC.DIAG/BPM/3.L1/X.TRAIN", "normally")
    with pytest.raises(IndexError):
        selector[len(selector)]


def test_a_selector_answers_as_the_tool_finds(tmp_path):
    chosen = random.Random(1)
    names, types = ["a", "b", "c.ML"], [0, 1, 2, 4, 6, 20, 28]
    answers = set()
    for _ in range(40):
        path = tmp_path / "channels.xml"
        ChannelList(Channel(prop_name=chosen.choice(names), daq_name=chosen.choice(names),
                            ev_type=chosen.choice(types), dtype=chosen.choice([1, 38]))
                    for _ in range(3)).write(path, lossy=True)
        name, event = chosen.choice(names), chosen.choice(types)
        shown = json.loads(tool("find", "--json", "--name", name, "--event", event, path).stdout)
        selector = zrt4xml.Selector(path)
        assert selector.find(name, event) == shown["event"]["selected"]
        found = shown["channel"]
        assert selector.event_types(name) == (found["event_type_mask"] if found else 0)
        answers.add((selector.find(name, event), found is None))
    assert len(answers) >= 3


def test_a_selector_of_variables():
    selector = zrt4xml.Selector("examples/channels/variables.xml")
    assert all(each.event_types for each in selector)


def test_a_selector_of_what_is_broken():
    with pytest.raises(zrt4xml.DocumentError):
        zrt4xml.Selector(["<BMR/>"])
    broken = "<CHANDESCRIPTIONS><CHANNEL><EVTYPE>1</EVTYPE><PROP>P</PROP>"
    with pytest.raises(zrt4xml.DocumentError):
        zrt4xml.Selector([broken])
    selector = zrt4xml.Selector([broken], on_error="keep")
    assert (len(selector), selector.messages[0].line) == (1, 1)
    with pytest.raises(FileNotFoundError):
        zrt4xml.Selector("no/such.xml")
