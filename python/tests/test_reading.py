import io
import mmap
import os
import pathlib
import subprocess

import pytest
from conftest import TOOL

import zrt4xml

EVENT = "<BMR><EVENT><TYPE>1</TYPE></EVENT></BMR>"
BROKEN = "<BMR><EVENT><TYPE>1</TYPE></EVENT>\n<EVENT><TYPE>4</TYPE>"


@pytest.mark.parametrize("file, read, kind, count", [
    ("channels/channels.xml", zrt4xml.read_channels, zrt4xml.ChannelList, 8),
    ("channels/variables.xml", zrt4xml.read_channels, zrt4xml.ChannelList, 8),
    ("event_lists/orbit_feedback.xml", zrt4xml.read_events, zrt4xml.EventList, 2),
    ("dictionaries/small.xml", zrt4xml.read_dictionary, zrt4xml.Dictionary, 3),
    ("cameras/minimal.xml", zrt4xml.read_camera, zrt4xml.FeatureList, 4),
])
def test_the_kind_is_recognised(file, read, kind, count):
    records = zrt4xml.read(f"examples/{file}")
    assert type(records) is kind
    assert len(records) == count
    assert read(f"examples/{file}") == records


def test_json_of_the_tool():
    text = subprocess.run([TOOL, "show", "--json", "examples/channels/channels.xml"], check=True,
                          capture_output=True).stdout
    channels = zrt4xml.read("examples/channels/channels.xml")
    assert zrt4xml.read(text) == channels
    assert zrt4xml.read(text.decode()) == channels
    assert zrt4xml.read_channels(text) == channels
    for damaged in (text[:-10], text.replace(b'"size": ', b'"size": "x"'), b"{}"):
        with pytest.raises(zrt4xml.DocumentError) as raised:
            zrt4xml.read(damaged)
        assert raised.value.messages[0].text


def test_from_everywhere(tmp_path):
    path = tmp_path / "events.xml"
    path.write_text(EVENT)
    expected = zrt4xml.EventList([zrt4xml.Event(evtype=1)])
    assert zrt4xml.read(str(path)) == expected
    assert zrt4xml.read(path) == expected
    assert zrt4xml.read(EVENT) == expected
    assert zrt4xml.read("\n " + EVENT) == expected
    assert zrt4xml.read(EVENT.encode()) == expected
    assert zrt4xml.read(bytearray(EVENT.encode())) == expected
    assert zrt4xml.read(memoryview(EVENT.encode())) == expected
    assert zrt4xml.read(io.StringIO(EVENT)) == expected
    assert zrt4xml.read(io.BytesIO(EVENT.encode())) == expected
    with open(path) as text, open(path, "rb") as binary:
        assert zrt4xml.read(text) == expected
        assert zrt4xml.read(binary) == expected
        with mmap.mmap(binary.fileno(), 0, access=mmap.ACCESS_READ) as mapped:
            assert zrt4xml.read(mapped) == expected


def test_a_file_is_read_from_where_it_stands(tmp_path):
    path = tmp_path / "events.xml"
    path.write_text("first line\n" + EVENT)
    with open(path, "rb") as file:
        file.readline()
        assert len(zrt4xml.read(file)) == 1


def test_a_pipe_is_read(tmp_path):
    os.mkfifo(tmp_path / "pipe")
    if os.fork() == 0:
        (tmp_path / "pipe").write_text(EVENT)
        os._exit(0)
    assert len(zrt4xml.read(tmp_path / "pipe")) == 1
    os.wait()


def test_a_str_has_no_encoding_of_its_own():
    text = ('<?xml version="1.0" encoding="ISO-8859-1"?><BMR><EVENT><TYPE>1</TYPE>'
            "<SBLOCK>Größe µ Ω</SBLOCK></EVENT></BMR>")
    assert zrt4xml.read(text)[0].server_blocks[0].name == "Größe µ Ω"
    latin1 = text.replace("Ω", "").encode("latin-1")
    assert zrt4xml.read(latin1)[0].server_blocks[0].name == "Größe µ "
    utf16 = text.replace("ISO-8859-1", "UTF-16").encode("utf-16")
    assert zrt4xml.read(utf16)[0].server_blocks[0].name == "Größe µ Ω"


def test_columns_stay_behind_a_declared_encoding():
    text = '<?xml version="1.0" encoding="ISO-8859-1"?><BMR><x></BMR>'
    places = set()
    for document in (text, text.encode()):
        with pytest.raises(zrt4xml.DocumentError) as error:
            zrt4xml.read(document)
        places.add((error.value.messages[0].line, error.value.messages[0].column))
    assert len(places) == 1


@pytest.mark.parametrize("name, error", [
    ("no/such.xml", FileNotFoundError),
    ("examples", IsADirectoryError),
    ("README.md/events.xml", NotADirectoryError),
    ("", FileNotFoundError),
])
def test_what_cannot_be_opened(name, error):
    with pytest.raises(error) as raised:
        zrt4xml.read(name)
    assert raised.value.filename == name


def test_a_file_that_may_not_be_read(tmp_path):
    path = tmp_path / "secret.xml"
    path.write_text(EVENT)
    path.chmod(0)
    if os.access(path, os.R_OK):
        pytest.skip("root reads everything")
    with pytest.raises(PermissionError):
        zrt4xml.read(path)


def test_what_is_no_document():
    for wrong in (5, None, 1.5, object()):
        with pytest.raises(TypeError):
            zrt4xml.read(wrong)
    with pytest.raises(ValueError, match="on_error is 'raise' or 'keep', not 'ignore'"):
        zrt4xml.read(EVENT, on_error="ignore")


def test_a_broken_document_tells_where_and_what_was_read():
    with pytest.raises(zrt4xml.DocumentError) as raised:
        zrt4xml.read(BROKEN)
    error = raised.value
    assert [each.evtype for each in error.partial] == [1, 4]
    [message] = error.messages
    assert (message.line, message.column) == (2, 22)
    assert message.text.startswith("input ended before all started tags were ended")
    assert message.severity is zrt4xml.Severity.FATAL_ERROR
    assert str(error).startswith("document in memory:2:22: input ended before")


def test_a_broken_document_is_kept():
    events, messages = zrt4xml.read(BROKEN, on_error="keep")
    assert len(events) == 2
    assert messages[0].line == 2
    assert zrt4xml.read(EVENT, on_error="keep") == (zrt4xml.read(EVENT), ())


def test_documents_of_another_kind():
    with pytest.raises(zrt4xml.DocumentError, match="'BMR' .*not 'CHANDESCRIPTIONS'"):
        zrt4xml.read_channels(EVENT)
    with pytest.raises(zrt4xml.DocumentError, match="unknown kind of document") as raised:
        zrt4xml.read("<html/>")
    assert raised.value.partial is None
    with pytest.raises(zrt4xml.DocumentError, match="is empty"):
        zrt4xml.read(b"")
    records, messages = zrt4xml.read_channels(EVENT, on_error="keep")
    assert (len(records), len(messages)) == (0, 1)


def test_a_damaged_camera_file():
    document = b'<Camera><Integer Name="Width"><ToolTip>x</ToolTip></Integer><'
    with pytest.raises(zrt4xml.DocumentError) as raised:
        zrt4xml.read_camera(document)
    assert raised.value.partial["Width"].tooltip == "x"


def test_where_records_come_from(tmp_path):
    path = pathlib.Path("examples/channels/variables.xml")
    channels = zrt4xml.read(path)
    assert (channels.source, channels.dialect) == (str(path), "variables")
    assert zrt4xml.read_channels(path).dialect == "variables"
    assert zrt4xml.read(EVENT).source == "document in memory"
    odd = os.fsdecode(os.fsencode(tmp_path) + b"/\xff.xml")
    with open(odd, "w") as file:
        file.write(EVENT)
    assert len(zrt4xml.read(odd)) == 1
    with open(odd, "rb") as file:
        assert len(zrt4xml.read(file)) == 1
