"""From documents to lists of records."""

import os
import re

from . import _core
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


def _open(source):
    """The document in a path, in memory, or in an open file."""
    if isinstance(source, str) and source.lstrip("\ufeff \t\r\n")[:1] in _BEGINNINGS:
        return _IN_MEMORY, _core.Document(_IN_MEMORY, _bytes_of(source))
    if isinstance(source, (str, os.PathLike)):
        with open(source, "rb", buffering=0) as file:
            return _shown(source), _core.Document(_shown(source), file.fileno())
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


def _read(source, expected, on_error):
    if on_error not in ("raise", "keep"):
        raise ValueError(f"on_error is 'raise' or 'keep', not {on_error!r}")
    name, document = _open(source)
    kind, reason, place = document.kind(expected)
    if kind is None:
        messages = (Message(*_place(place), reason, Severity.FATAL_ERROR),)
        records = _LISTS[expected]() if expected else None
        if on_error == "keep" and records is not None:
            return records, messages
        raise DocumentError(name, messages, records)
    records = _LISTS[kind]()
    records.source = name
    if kind == "variables":
        records.dialect = "variables"
    errors, told = document.read(kind, records)
    messages = _messages(told)
    if on_error == "keep":
        return records, messages
    if errors:
        raise DocumentError(name, messages, records)
    return records


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
    return _read(source, None, on_error)


def read_channels(source, *, on_error="raise"):
    """Reads channel descriptions in either dialect; everything else as `read`.

    >>> channels = zrt4xml.read_channels("examples/channels/channels.xml")
    >>> channels[0].ev_type
    <EventType.NORMAL: 1>
    """
    return _read(source, "channels", on_error)


def read_events(source, *, on_error="raise"):
    """Reads an event list; everything else as `read`.

    >>> events = zrt4xml.read_events("examples/event_lists/orbit_feedback.xml")
    >>> events[0].server_blocks[0].channels[0]
    'LINAC.BPM/L1.03/X'
    """
    return _read(source, "events", on_error)


def read_dictionary(source, *, on_error="raise"):
    """Reads an environment index dictionary; everything else as `read`.

    >>> zrt4xml.read_dictionary("examples/dictionaries/small.xml")[1].index
    1
    """
    return _read(source, "dictionary", on_error)


def read_camera(source, *, on_error="raise"):
    """Reads the features of a camera; everything else as `read`.

    >>> len(zrt4xml.read_camera("examples/cameras/minimal.xml"))
    4
    """
    return _read(source, "camera", on_error)
