"""The records of a document, as sequences."""

import os
from collections.abc import Mapping, MutableSequence

from . import _core, _tables
from ._enumerations import EventType
from ._errors import LossError
from ._records import Channel, DictionaryEntry, Event, Feature


def record_from(name, state):
    """What pickled records are made with."""
    return _core.record_from(name, state)


def _is_missing(value):
    """None, and what tables put where nothing is: NaN, NaT, NA."""
    if value is None:
        return True
    try:
        return bool(value != value)
    except TypeError:  # pandas.NA
        return True


def _mapping_of(record):
    if isinstance(record, Mapping):
        return record
    if hasattr(record, "_asdict"):  # a named tuple
        return record._asdict()
    names = getattr(getattr(record, "dtype", None), "names", None)  # a row of a structured array
    if names is not None:
        return dict(zip(names, record.item() if hasattr(record, "item") else record))
    if hasattr(record, "keys") and hasattr(record, "items"):  # a row of a DataFrame
        return dict(record.items())
    raise TypeError(f"a mapping of fields is needed, not '{type(record).__name__}'")


def _plain(value, kind):
    """A value of a table for a field: texts of arrays may be bytes, and a column of integers in
    which one is missing has floats."""
    if kind == "str" and isinstance(value, bytes):
        return value.decode(errors="replace")
    if kind not in ("str", "float") and isinstance(value, float) and value.is_integer():
        return int(value)
    return value


def _in_order(records, key, reverse):
    if key is None:
        first = records[0]._fields[0][0] if records else None
        key = lambda record: getattr(record, first)
    return sorted(records, key=key, reverse=reverse)


def _replace(path, content):
    name = os.fsencode(path)
    if not name:
        raise FileNotFoundError(2, os.strerror(2), path)
    if name == b"-":
        name = b"./-"  # a file, and not standard output
    try:
        _core.replace_file(name, content)
    except OSError as error:
        error.filename = path
        raise


class RecordList(_core.RecordList):
    """What the lists of records have in common. They are sequences as lists of Python are: with
    index, slice, iteration, `in`, `append`, `sort` and so on. Slices and other lists share the
    records with this one; `copy.deepcopy` makes records of its own.
    """

    _record = None
    _kind = None

    def __init__(self, records=()):
        super().__init__(self._record.__name__)
        #: What was read: a path, or "document in memory".
        self.source = None
        self.extend(records)

    def _empty_like(self):
        made = type(self)()
        made.__dict__.update(self.__dict__)
        return made

    @classmethod
    def from_records(cls, records):
        """Makes a list of records from mappings of fields, rows of a structured array, a DataFrame,
        or records. What is missing in a table (None, NaN) is left as it is in a new record.

        >>> channels = zrt4xml.ChannelList.from_records(
        ...     [{"prop_name": "LINAC.DIAG/BPM/3.L1/X", "units": "mm", "bits": [{"bit": 0}]}])
        >>> channels[0]
        Channel(prop_name='LINAC.DIAG/BPM/3.L1/X', units='mm', bits=<1 Bit>)
        """
        kinds = {name: kind for name, _, kind, _ in cls._record._fields}
        if hasattr(records, "to_dict") and hasattr(records, "columns"):  # a DataFrame
            if any(name in kinds for name in records.index.names):
                records = records.reset_index()
            records = records.to_dict("records")
        made = cls()
        made.extend(
            each if isinstance(each, cls._record) else
            cls._record(**{name: _plain(value, kinds.get(name, "str"))
                           for name, value in _mapping_of(each).items() if not _is_missing(value)})
            for each in records)
        return made

    def copy(self):
        """A list of the same records."""
        return self[:]

    __copy__ = copy

    def __deepcopy__(self, memo):
        made = self._empty_like()
        made.extend(each.copy() for each in self)
        return made

    def __reduce__(self):
        return (type(self), (list(self),), self.__dict__)

    def sort(self, *, key=None, reverse=False):
        """Orders the records as `list.sort` does; without `key` by the first field."""
        self[:] = _in_order(self, key, reverse)

    def to_numpy(self, fields=None, *, texts="str"):
        """A structured array with one row for each record, and no object of Python for a value.
        `fields` chooses columns and their order. Texts are as wide as the longest of a column: of
        characters, four bytes each, or with `texts="bytes"` of the bytes of UTF-8.

        >>> table = zrt4xml.read("examples/channels/channels.xml").to_numpy(["daq_name", "db_key"])
        >>> table[table["daq_name"] == "BPM.3.L1.X"]["db_key"].tolist()
        [4101]
        >>> table.dtype.names
        ('daq_name', 'db_key')
        """
        return _tables.to_numpy(self, fields, texts)

    def to_dataframe(self, fields=None):
        """A DataFrame of pandas with one row for each record; `fields` chooses columns and their
        order. Texts are `str`, numbers as in the records.

        >>> frame = zrt4xml.read("examples/channels/channels.xml").to_dataframe()
        >>> frame[frame.ev_type == zrt4xml.EventType.ENV].daq_name.tolist()
        ['RF.A1.SP.AMPL', 'RF.A1.SP.PHASE', 'Q2.L1.SP']
        """
        return _tables.to_dataframe(self, fields)

    def _repr_html_(self):
        return _tables.as_html(self)

    def _written(self, form, lossy):
        losses, content = _core.written(self, form)
        if losses and not lossy:
            raise LossError(losses)
        return content

    def __add__(self, other):
        made = self[:]
        made.extend(other)
        return made

    def __repr__(self):
        shown = [repr(each) for each in self[:_SHOWN]]
        if len(self) > _SHOWN:
            shown.append(f"... {len(self) - _SHOWN} more")
        inside = "".join(f"\n  {line}," for line in shown)
        count = f"{len(self)} {self._noun if len(self) == 1 else self._nouns}"
        return f"<{type(self).__name__} of {count}{':' if shown else ''}{inside.rstrip(',')}>"


def _sort_inside(self, *, key=None, reverse=False):
    """Orders the records as `list.sort` does; without `key` by the first field."""
    self[:] = _in_order(self, key, reverse)


# Copied and pickled, the records of a record are a plain list.
_core.InnerList.sort = _sort_inside
_core.InnerList.copy = _core.InnerList.__copy__ = lambda self: list(self)
_core.InnerList.__reduce__ = lambda self: (list, (list(self),))

_SHOWN = 6

# What the sequences of Python make of the rest.
for _list in (_core.RecordList, _core.InnerList):
    MutableSequence.register(_list)
    for _name in ("pop", "remove", "reverse", "index", "count", "__iadd__", "__reversed__"):
        setattr(_list, _name, getattr(MutableSequence, _name))


class ChannelList(RecordList):
    """Channel descriptions. A channel is found by its property, or else by its DAQ name.

    `dialect` is "element" or "variables": that of the document that was read.

    >>> channels = zrt4xml.read_channels("examples/channels/channels.xml")
    >>> channels["LINAC.DIAG/BPM/3.L1/X.TRAIN"].daq_name
    'BPM.3.L1.X'
    >>> "BPM.3.L1.X" in channels
    True
    """

    _record = Channel
    _noun, _nouns = "channel", "channels"

    def __init__(self, records=()):
        self.dialect = "element"
        super().__init__(records)

    def to_xml(self, dialect=None, *, lossy=False):
        """The document, in the bytes of the encoding that it declares. `dialect` is "element" or
        "variables", by default that of the list. Raises `LossError` when the document would not read
        back to the same; with `lossy=True`, what arrives is written.

        >>> channels = zrt4xml.read("examples/channels/channels.xml")
        >>> zrt4xml.read(channels.to_xml("element")) == channels
        True
        """
        if dialect is None:
            dialect = self.dialect
        if dialect not in ("element", "variables"):
            raise ValueError(f"dialect is 'element' or 'variables', not {dialect!r}")
        return self._written("xml" if dialect == "element" else dialect, lossy)

    def write(self, path, dialect=None, *, lossy=False):
        """Writes the document to a file, which is replaced as a whole or not at all. Raises what
        `to_xml` raises, and `OSError`."""
        _replace(path, self.to_xml(dialect, lossy=lossy))

    def bits_to_dataframe(self):
        """A DataFrame with one row for each bit: the position of its channel in the list, the
        channel's property, and the fields of the bit.

        >>> frame = zrt4xml.read("examples/channels/channels.xml").bits_to_dataframe()
        >>> list(frame.columns)
        ['channel', 'prop_name', 'bit', 'bit_name', 'bit_desc']
        """
        return _tables.inner_dataframe(self, ["bits"], ["channel"])

    def dims_to_dataframe(self):
        """The same for the dimensions."""
        return _tables.inner_dataframe(self, ["dims"], ["channel"])

    def stats_to_dataframe(self):
        """The same for the statistics; `dim` is the number of the dimension."""
        return _tables.inner_dataframe(self, ["dims", "stats"], ["channel", "position"])


def _name_of_type(key):
    """An event type is a key, and not the number that it is, too."""
    return _EVENT_NAMES[key] if isinstance(key, EventType) else key


_EVENT_NAMES = {number: name for name, number in _core.event_types}


class EventList(RecordList):
    """Events that a consumer of the DAQ wants. An event is found by its type, or the name of that.

    >>> events = zrt4xml.read_events("examples/event_lists/orbit_feedback.xml")
    >>> events["ENV"].priority, events[zrt4xml.EventType.ENV].priority
    (1, 1)
    """

    _record = Event
    _noun, _nouns = "event", "events"

    def __getitem__(self, index):
        return super().__getitem__(_name_of_type(index))

    def __delitem__(self, index):
        super().__delitem__(_name_of_type(index))

    def __contains__(self, key):
        return super().__contains__(_name_of_type(key))

    def get(self, key, default=None):
        """The first event of this type, or `default`."""
        return super().get(_name_of_type(key), default)


class Dictionary(RecordList):
    """Entries of an environment index dictionary. An entry is found by its property.

    >>> entries = zrt4xml.read_dictionary("examples/dictionaries/small.xml")
    >>> entries["GUN.COOLING/BODY/L0/TEMP.RETURN"].env_ch_abs_delta
    0.05
    """

    _record = DictionaryEntry
    _noun, _nouns = "entry", "entries"

    def to_xml(self, *, lossy=False):
        """The document, in the bytes of the encoding that it declares. Raises `LossError` when it
        would not read back to the same; with `lossy=True`, what arrives is written.

        >>> entries = zrt4xml.read("examples/dictionaries/small.xml")
        >>> zrt4xml.read(entries.to_xml()) == entries
        True
        """
        return self._written("xml", lossy)

    def write(self, path, *, lossy=False):
        """Writes the document to a file, which is replaced as a whole or not at all. Raises what
        `to_xml` raises, and `OSError`."""
        _replace(path, self.to_xml(lossy=lossy))


class FeatureList(RecordList):
    """Features of a camera. A feature is found by its name.

    >>> features = zrt4xml.read_camera("examples/cameras/minimal.xml")
    >>> features[0].type
    <FeatureType.Float: 2>
    """

    _record = Feature
    _noun, _nouns = "feature", "features"
