"""From documents to lists of records."""

import os
import re

from . import _core, _tables
from ._enumerations import Severity
from ._errors import DocumentError, Message
from ._lists import ChannelList, Dictionary, EventList, FeatureList

_LISTS = {
    "events": EventList,
    "channels": ChannelList,
    "variables": ChannelList,
    "dictionary": Dictionary,
    "camera": FeatureList,
}
_IN_MEMORY = "document in memory"
_BEGINNINGS = ("<", "{")  # of XML, and of the tool's JSON
_DECLARED_ENCODING = re.compile(
    r"""(\ufeff?<\?xml\s[^>]*?)(\sencoding\s*=\s*(?:"[^">]*"|'[^'>]*'))""")


def _bytes_of(text):
    """A text as a document in UTF-8. Blanks take the place of an encoding that it declares, which
    was that of its bytes, so that columns stay."""
    declared = _DECLARED_ENCODING.match(text)
    if declared:
        text = declared[1] + " " * len(declared[2]) + text[declared.end():]
    return text.encode()


def _shown(name):
    """A file's name for messages: its bytes may be no characters."""
    return os.fsencode(name).decode(errors="replace")


def _open(source, for_one_pass=False):
    """The document in a path, in memory, or in an open file."""
    if isinstance(source, str) and source.lstrip("\ufeff \t\r\n")[:1] in _BEGINNINGS:
        return _IN_MEMORY, _core.Document(_IN_MEMORY, _bytes_of(source))
    if isinstance(source, (str, os.PathLike)):
        with open(source, "rb", buffering=0) as file:
            return _shown(source), _core.Document(_shown(source), file.fileno(), for_one_pass)
    if hasattr(source, "read"):
        content = source.read()
        name = getattr(source, "name", None)
        name = _shown(name) if isinstance(name, str) else _IN_MEMORY
        if isinstance(content, str):
            content = _bytes_of(content)
        return name, _core.Document(name, content)
    try:
        document = memoryview(source)
    except TypeError:
        raise TypeError("a path, a document (bytes or str) or an open file is needed, not "
                        f"'{type(source).__name__}'") from None
    return _IN_MEMORY, _core.Document(_IN_MEMORY, document)


def _place(text):
    """Line and column of ":LINE:COLUMN", or 0."""
    numbers = text.split(":")[1:]
    return tuple(int(number) for number in numbers) if len(numbers) == 2 else (0, 0)


def _messages(told):
    return tuple(Message(line, column, text, Severity(severity))
                 for line, column, text, severity in told)


def _read(source, expected, on_error, make):
    """What `make` makes of the kind, the name and the document: a result, the number of errors, and
    messages."""
    if on_error not in ("raise", "keep"):
        raise ValueError(f"on_error is 'raise' or 'keep', not {on_error!r}")
    name, document = _open(source, for_one_pass=True)
    kind, reason, place = document.kind(expected)
    if kind is None:
        messages = (Message(*_place(place), reason, Severity.FATAL_ERROR),)
        nothing = make(expected, name, None)[0] if expected else None
        if on_error == "keep" and nothing is not None:
            return nothing, messages
        raise DocumentError(name, messages, nothing)
    result, errors, told = make(kind, name, document)
    messages = _messages(told)
    if on_error == "keep":
        return result, messages
    if errors:
        raise DocumentError(name, messages, result)
    return result


def _list_from(kind, name, document):
    records = _LISTS[kind]()
    if document is None:
        return records, 0, ()
    records.source = name
    if kind == "variables":
        records.dialect = "variables"
    return records, *document.read(kind, records)


def _table_from(fields, finish):
    def make(kind, _, document):
        table = _tables.table_for(_LISTS[kind]._record, fields)
        errors, told = (0, ()) if document is None else document.read_table(kind, table)
        return finish(table), errors, told
    return make


def read(source, *, on_error="raise"):
    """Reads a document of any kind, which its root element tells.

    `source` is a path, a document (bytes, or a str that begins with "<" or, as the
    tool's JSON, with "{"), or an open file. Raises
    `DocumentError` when the document is not read without an error, and `OSError` as `open` does;
    with `on_error="keep"`, returns what could be read, and the messages.

    >>> len(zrt4xml.read("examples/channels/channels.xml"))
    8
    >>> events, messages = zrt4xml.read("<BMR><EVENT><TYPE>1</TYPE>", on_error="keep")
    >>> len(events), messages[0].line
    (1, 1)
    """
    return _read(source, None, on_error, _list_from)


def read_channels(source, *, on_error="raise"):
    """Reads channel descriptions in either dialect; everything else as `read`.

    >>> channels = zrt4xml.read_channels("examples/channels/channels.xml")
    >>> channels[0].ev_type
    <EventType.NORMAL: 1>
    """
    return _read(source, "channels", on_error, _list_from)


def read_events(source, *, on_error="raise"):
    """Reads an event list; everything else as `read`.

    >>> events = zrt4xml.read_events("examples/event_lists/orbit_feedback.xml")
    >>> events[0].server_blocks[0].channels[0]
    'LINAC.BPM/L1.03/X'
    """
    return _read(source, "events", on_error, _list_from)


def read_dictionary(source, *, on_error="raise"):
    """Reads an environment index dictionary; everything else as `read`.

    >>> zrt4xml.read_dictionary("examples/dictionaries/small.xml")[1].index
    1
    """
    return _read(source, "dictionary", on_error, _list_from)


def read_camera(source, *, on_error="raise"):
    """Reads the features of a camera; everything else as `read`.

    >>> len(zrt4xml.read_camera("examples/cameras/minimal.xml"))
    4
    """
    return _read(source, "camera", on_error, _list_from)


def read_numpy(source, fields=None, *, texts="str", on_error="raise"):
    """Reads a document of any kind into a structured array: what `read(source).to_numpy(fields)`
    returns, but channels of the element dialect need neither the time nor the memory of a list.
    Everything else as `read`.

    >>> table = zrt4xml.read_numpy("examples/channels/channels.xml", ["daq_name", "max_size"])
    >>> table[table["max_size"] > 2048]["daq_name"].tolist()
    ['OTR1.L1.IMAGE']
    """
    return _read(source, None, on_error, _table_from(fields, _tables.structured(texts)))


def read_dataframe(source, fields=None, *, on_error="raise"):
    """Reads a document of any kind into a DataFrame of pandas: what
    `read(source).to_dataframe(fields)` returns, as `read_numpy`.

    >>> frame = zrt4xml.read_dataframe("examples/channels/channels.xml")
    >>> frame.groupby("subsystem").size().to_dict()
    {'DIAG': 4, 'MAGNETS': 1, 'RF': 3}
    """
    return _read(source, None, on_error, _table_from(fields, _tables.frame()))
