import subprocess
import sys

import numpy
import pandas
import pytest
from conftest import EXAMPLES

import zrt4xml
from zrt4xml import Bit, Channel, ChannelList, Dimension, DictionaryEntry, Dictionary, Statistic

FIELDS = [name for name, *_ in Channel._fields]


def test_a_structured_array(channels):
    table = channels.to_numpy()
    assert table.dtype.names == tuple(FIELDS)
    assert len(table) == 8
    for row, channel in zip(table, channels):
        assert row.item() == tuple(getattr(channel, name) for name in FIELDS)
    assert table["prop_name"].dtype.kind == "U"
    assert not table.dtype.hasobject


def test_chosen_columns(channels):
    table = channels.to_numpy(["units", "max_size"])
    assert table.dtype == numpy.dtype([("units", "<U6"), ("max_size", "<i4")])
    assert table[0].item() == ("mm", 2048)
    with pytest.raises(KeyError, match="no field 'unit'"):
        channels.to_numpy(["unit"])
    with pytest.raises(TypeError):
        channels.to_numpy("units")
    with pytest.raises(ValueError):
        channels.to_numpy(texts="other")


def test_texts_of_arrays():
    texts = ["", "x", "µm", "Ω" * 85, "\U0001f52c!", "x" * 255]
    channels = ChannelList(Channel(prop_name=text) for text in texts)
    assert channels.to_numpy()["prop_name"].tolist() == texts
    assert channels.to_numpy()["prop_name"].dtype == "<U255"
    in_bytes = channels.to_numpy(texts="bytes")["prop_name"]
    assert in_bytes.tolist() == [text.encode() for text in texts]
    assert channels[2:3].to_numpy()["prop_name"].dtype == "<U2"
    cut = zrt4xml.read("<CHANDESCRIPTIONS><CHANNEL><PROP>" + 254 * "x" + "Ω</PROP></CHANNEL>"
                       "</CHANDESCRIPTIONS>")
    assert cut.to_numpy()["prop_name"].tolist() == [cut[0].prop_name]


def test_numbers_of_arrays():
    channels = ChannelList([Channel(ev_type=2 ** 32 - 1, max_size=-2 ** 31, db_key=7)])
    assert channels.to_numpy(["ev_type", "max_size", "db_key"]).tolist() == [
        (2 ** 32 - 1, -2 ** 31, 7)]
    entries = Dictionary([DictionaryEntry(index=-1, env_ch_abs_delta=0.5)])
    assert entries.to_numpy().tolist() == [(-1, "", 0.5, 0.0)]


@pytest.mark.parametrize("file", ["channels/channels.xml", "event_lists/orbit_feedback.xml",
                                  "dictionaries/small.xml", "cameras/minimal.xml"])
def test_every_kind_there_and_back(file):
    records = zrt4xml.read(f"examples/{file}")
    plain = type(records)(each.copy() for each in records)
    for each in plain:
        for inside in ("bits", "dims", "server_blocks"):
            if hasattr(each, inside):
                setattr(each, inside, [])
    for table in (records.to_numpy(), records.to_dataframe()):
        assert type(records).from_records(table) == plain


def test_integers_of_a_column_in_which_one_is_missing():
    frame = pandas.DataFrame({"prop_name": ["A", "B"], "max_size": [5, None], "ev_type": [1.0, 4.0]})
    assert frame.max_size.dtype == float
    made = ChannelList.from_records(frame)
    assert [(each.max_size, each.ev_type) for each in made] == [(5, 1), (1, 4)]
    with pytest.raises(TypeError, match="^max_size: an integer is needed, not 'float'"):
        ChannelList.from_records([{"max_size": 5.5}])


def test_rows_of_any_table(channels):
    frame, plain = channels.to_dataframe(), channels.to_numpy()
    expected = [each.to_dict() | {"bits": [], "dims": []} for each in channels]
    for rows in (plain, list(plain), channels.to_numpy(texts="bytes"), plain.view(numpy.recarray),
                 frame, (row for _, row in frame.iterrows()), frame.itertuples(index=False),
                 frame.set_index("prop_name"), frame.set_index(["prop_name", "daq_name"])):
        assert [each.to_dict() for each in ChannelList.from_records(rows)] == expected
    for wrong in ({"prop_name": "x"}, ["x"], [5]):
        with pytest.raises(TypeError, match="a mapping of fields is needed"):
            ChannelList.from_records(wrong)


def test_fields_of_tables(channels):
    for fill in (channels.to_numpy, channels.to_dataframe):
        with pytest.raises(ValueError, match="'units' stands there twice"):
            fill(["units", "daq_name", "units"])
    assert channels.to_dataframe([]).shape == (8, 0)
    assert channels.to_numpy([]).shape == (8,)


def test_texts_that_come_again():
    texts = ["a", "", "b", "a", "Ä", "b", "Ä"] * 200 + [f"text {i}" for i in range(2000)]
    channels = ChannelList(Channel(prop_name=text, units=text[:1]) for text in texts)
    frame = channels.to_dataframe()
    assert frame.prop_name.tolist() == texts
    assert frame.units.tolist() == [text[:1] for text in texts]
    assert frame.prop_name[0] is frame.prop_name[3]


@pytest.mark.parametrize("path", EXAMPLES, ids=lambda each: each.name)
def test_a_document_is_read_into_a_table(path):
    records, messages = zrt4xml.read(path, on_error="keep")
    for document in (path, path.read_bytes()):
        assert_same(zrt4xml.read_numpy(document), records.to_numpy())
        assert_same(zrt4xml.read_numpy(document, texts="bytes"), records.to_numpy(texts="bytes"))
        assert zrt4xml.read_dataframe(document).equals(records.to_dataframe())
        table, told = zrt4xml.read_numpy(document, on_error="keep")
        assert_same(table, records.to_numpy())
        assert told == messages == ()


def assert_same(one, other):
    assert one.dtype == other.dtype
    assert one.tolist() == other.tolist()
    assert one.flags.writeable and one.flags.c_contiguous


@pytest.mark.parametrize("channels", [
    "", "<CHANNEL/>", "<CHANNEL><NAME>no property</NAME></CHANNEL>",
    "<CHANNEL><PROP>A</PROP><NAME>a</NAME><PROP>B</PROP></CHANNEL>",
    "<CHANNEL><PROP>A</PROP></CHANNEL><CHANNEL><PROP>A</PROP><UNITS>m</UNITS></CHANNEL>",
    "<CHANNEL><PROP>A</PROP><CHANNEL><PROP>B</PROP></CHANNEL><UNITS>m</UNITS></CHANNEL>",
    "<CHANNEL>text<PROP>A</PROP><BIT>1</BIT><BIT_NAME>b</BIT_NAME><DIM>1</DIM></CHANNEL>",
])
def test_tables_of_odd_channels(channels):
    document = f"<CHANDESCRIPTIONS>{channels}</CHANDESCRIPTIONS>"
    assert_same(zrt4xml.read_numpy(document), zrt4xml.read(document).to_numpy())


# As the library's records have it: the tool tells that from type 0, Python has no other number.
def test_an_event_type_that_is_not_told_is_0():
    json = '{"kind": "channels", "records": [{"property": "A"}]}'
    elements = "<CHANDESCRIPTIONS><CHANNEL><PROP>A</PROP></CHANNEL></CHANDESCRIPTIONS>"
    variables = "<DAQvariables><DaqFloat><vindo>A</vindo></DaqFloat></DAQvariables>"
    for document in (json, elements, variables):
        assert [each.ev_type for each in zrt4xml.read(document)] == [0]
        assert zrt4xml.read_numpy(document)["ev_type"].tolist() == [0]


def test_tables_of_broken_documents():
    broken = "<CHANDESCRIPTIONS><CHANNEL><PROP>A</PROP></CHANNEL><CHANNEL><PROP>B</PROP>"
    with pytest.raises(zrt4xml.DocumentError) as raised:
        zrt4xml.read_numpy(broken)
    assert raised.value.partial["prop_name"].tolist() == ["A", "B"]
    frame, messages = zrt4xml.read_dataframe(broken, on_error="keep")
    assert frame.prop_name.tolist() == ["A", "B"]
    assert messages == zrt4xml.read(broken, on_error="keep")[1]
    for wrong in ("<html/>", b""):
        with pytest.raises(zrt4xml.DocumentError):
            zrt4xml.read_numpy(wrong)
    with pytest.raises(FileNotFoundError):
        zrt4xml.read_dataframe("no/such.xml")
    with pytest.raises(KeyError, match="no field 'unit'"):
        zrt4xml.read_numpy("<CHANDESCRIPTIONS/>", ["unit"])
    assert zrt4xml.read_numpy("<CHANDESCRIPTIONS/>", ["units"]).dtype.names == ("units",)


def test_empty_lists():
    assert len(ChannelList().to_numpy()) == 0
    assert list(ChannelList().to_dataframe().columns) == FIELDS
    assert len(ChannelList().bits_to_dataframe()) == 0


def test_a_dataframe(channels):
    frame = channels.to_dataframe()
    assert list(frame.columns) == FIELDS
    assert frame.prop_name.tolist() == [each.prop_name for each in channels]
    assert frame.max_size.dtype == "int32"
    assert frame.ev_type.dtype == "uint32"
    assert type(frame.units[0]) is str
    assert list(channels.to_dataframe(["units", "daq_name"]).columns) == ["units", "daq_name"]


def test_a_table_has_values_of_its_own(channels):
    table, frame = channels.to_numpy(), channels.to_dataframe()
    channels[0].units = "km"
    assert (table["units"][0], frame.units[0]) == ("mm", "mm")
    del channels
    assert table["units"][0] == "mm"


def test_bits_and_dimensions():
    channels = ChannelList([
        Channel(prop_name="A"),
        Channel(prop_name="B", bits=[Bit(bit=3, bit_name="ON"), Bit(bit=4)],
                dims=[Dimension(dim=7, units="us", stats=[Statistic(stat=1, stat_name="rms")])])])
    bits = channels.bits_to_dataframe()
    assert bits.values.tolist() == [[1, "B", 3, "ON", ""], [1, "B", 4, "", ""]]
    assert channels.dims_to_dataframe().values.tolist() == [[1, "B", 7, "", "", "us"]]
    stats = channels.stats_to_dataframe()
    assert list(stats.columns[:3]) == ["channel", "prop_name", "dim"]
    assert stats.values.tolist() == [[1, "B", 7, 1, "rms", "", ""]]


def test_without_pandas():
    script = ("import sys; sys.modules['pandas'] = None\n"
              "import zrt4xml\n"
              "channels = zrt4xml.read('examples/channels/channels.xml')\n"
              "channels.to_numpy()\n"
              "try: channels.to_dataframe()\n"
              "except ImportError as error: assert 'pandas' in str(error)\n"
              "else: assert False\n")
    subprocess.run([sys.executable, "-c", script], check=True)


def test_a_table_of_a_notebook():
    channels = ChannelList([Channel(prop_name="<script>&", units='"', bits=[Bit()])] * 25)
    shown = channels._repr_html_()
    assert "<script>" not in shown
    assert "&lt;script&gt;&amp;" in shown
    assert "5 more" in shown
    assert shown.count("<tr>") == 21
    assert "prop_desc" not in shown
    assert "&lt;script&gt;" in channels[0]._repr_html_()
    assert ChannelList()._repr_html_().startswith("<table>")


def test_reference_counts_of_tables(channels):
    frame = channels.to_dataframe()
    before = sys.getrefcount(frame.units[0])
    for _ in range(10):
        channels.to_dataframe()
    after = sys.getrefcount(frame.units[0])
    assert after == before


@pytest.mark.parametrize("fill", ["read_numpy(path)", "read(path).to_numpy()",
                                  "read_dataframe(path)", "read(path).bits_to_dataframe()"])
def test_threads_that_are_the_first_to_use_numpy(fill):
    script = ("import threading, zrt4xml\n"
              "path = 'examples/channels/channels.xml'\n"
              "made, begin = [], threading.Barrier(4)\n"
              f"work = lambda: (begin.wait(), made.append(len(zrt4xml.{fill})))\n"
              "threads = [threading.Thread(target=work) for _ in range(4)]\n"
              "for each in threads: each.start()\n"
              "for each in threads: each.join()\n"
              "assert len(made) == 4 and made.count(made[0]) == 4\n")
    subprocess.run([sys.executable, "-c", script], check=True, timeout=60)
