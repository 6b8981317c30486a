"""What the tool answers about documents, for lists of records and for documents."""

from typing import NamedTuple

from . import _core
from ._documents import _messages, _open
from ._enumerations import EventMask, EventType, Severity
from ._errors import DocumentError, Message
from ._lists import ChannelList, RecordList

_IN_PYTHON = {  # by what a person calls a record: the fields' names in Python, by those in JSON
    one: {in_json: name for name, in_json, *_ in record._fields}
    for one, record in [("channel", _core.Channel), ("bit", _core.Bit),
                        ("dimension", _core.Dimension), ("statistic", _core.Statistic),
                        ("event", _core.Event), ("server block", _core.ServerBlock),
                        ("entry", _core.DictionaryEntry), ("feature", _core.Feature)]
}
_GROUPS = {"bits": ("bits", "bit"), "dimensions": ("dims", "dimension"),
           "statistics": ("stats", "statistic"),
           "server_blocks": ("server_blocks", "server block")}


def _record_in_python(one, record):
    """The names of Python for the values of a record as the tool's JSON has it."""
    made = {}
    for name, value in record.items():
        if name in _GROUPS:
            group, one_inside = _GROUPS[name]
            made[group] = [_record_in_python(one_inside, each) for each in value]
        elif isinstance(value, list):
            made[name] = [each["name"] for each in value]
        else:
            made[_IN_PYTHON.get(one, {}).get(name, name)] = value
    return made


class Difference(NamedTuple):
    """What two lists have not in common: a record that is "added", "removed" or "changed", found by
    its key. Of one that changed, `fields` has (before, after) for each field that did, and `inside`
    what differs inside; of the others, `record` has all values.

    >>> before = zrt4xml.read("examples/channels/channels.xml")
    >>> after = zrt4xml.read("examples/channels/channels.xml")
    >>> after[0].units = "um"
    >>> zrt4xml.diff(before, after)[0].fields
    {'units': ('mm', 'um')}
    """

    change: str
    type: str
    key: object
    record: object
    fields: dict
    inside: tuple


def _difference(of):
    change, one, key, record, fields, inside = of
    names = _IN_PYTHON.get(one, {})
    return Difference(change, one, key,
                      None if record is None else _record_in_python(one, record),
                      {names.get(name, name): (before, after) for name, before, after in fields},
                      tuple(_difference(each) for each in inside))


class Differences(list):
    """The differences of two lists. `not_compared` names the fields that are left out, because only
    one of two dialects has them: "stream", "bits.bit_desc"."""

    def __init__(self, differences=(), not_compared=()):
        super().__init__(differences)
        self.not_compared = tuple(not_compared)


def _field_in_python(name):
    """The name of Python for "stream" or "bits.description" in the tool's JSON."""
    group, _, field = name.rpartition(".")
    group, one = _GROUPS.get(group, ("", "channel"))
    field = _GROUPS[field][0] if field in _GROUPS else _IN_PYTHON[one][field]
    return f"{group}.{field}" if group else field


def diff(before, after):
    """Compares two lists record by record, whatever their order, as `zrt4xml diff` does: channels by
    property, events by type, entries by index, features by name. Of channels whose lists have two
    dialects, what both dialects have; `not_compared` of the result tells the rest.

    >>> channels = zrt4xml.read("examples/channels/channels.xml")
    >>> [each.key for each in zrt4xml.diff(channels, channels[1:])]
    ['LINAC.DIAG/BPM/3.L1/X.TRAIN']
    """
    for each in (before, after):
        if not isinstance(each, RecordList):
            raise TypeError(f"a list of records is needed, not '{type(each).__name__}'")
    of_two_dialects = getattr(before, "dialect", None) != getattr(after, "dialect", None)
    differences, not_compared = _core.differences(before, after, of_two_dialects)
    return Differences(map(_difference, differences), map(_field_in_python, not_compared))


def merge(base, *others, force=False):
    """The channels of `base`, completed with what the others know of them, and those that it lacks,
    as `zrt4xml merge` does: where both have a value, `base` keeps its own unless `force`. The lists
    themselves stay as they are.

    >>> channels = zrt4xml.read("examples/channels/channels.xml")
    >>> len(zrt4xml.merge(channels[:3], channels[2:]))
    8
    """
    for each in (base, *others):
        if not isinstance(each, ChannelList):
            raise TypeError(f"a ChannelList is needed, not '{type(each).__name__}'")
    made = base._empty_like()
    made.extend(each.copy() for each in base)
    for other in others:
        merged = base._empty_like()
        _core.merge(made, other, force, merged)
        made = merged
    return made


class Finding(NamedTuple):
    """What `check` says of a place in a document: line and column are 0 where they are not known,
    `rule` is the rule's name, as in the tool's JSON and in docs/check.md."""

    line: int
    column: int
    text: str
    rule: str
    severity: Severity


class CheckResult(tuple):
    """What `check` found, as a tuple of `Finding`. `kind` is the kind of the document,
    `record_count` and `errors` are what its reader counted; `is_clean` says that all is fine."""

    def __new__(cls, kind, record_count, errors, findings):
        made = super().__new__(cls, findings)
        made.kind, made.record_count, made.errors = kind, record_count, errors
        return made

    def __getnewargs__(self):
        return self.kind, self.record_count, self.errors, tuple(self)

    @property
    def is_clean(self):
        return not self and self.errors == 0


def check(source):
    """What is wrong or odd about a document, as `zrt4xml check` tells. `source` is as for `read`.

    >>> result = zrt4xml.check("<BMR><EVENT><TYPE>NORMAL</TYPE></EVENT></BMR>")
    >>> result.is_clean
    False
    >>> result[0].line, result[0].rule
    (1, 'not_a_number')
    >>> zrt4xml.check("examples/channels/channels.xml").is_clean
    True
    """
    name, document = _open(source)
    kind, reason, place = document.kind(None)
    if kind is None:
        raise DocumentError(name, _messages([(0, 0, reason + place, Severity.FATAL_ERROR)]))
    kind, count, errors, found = _core.check(document)
    return CheckResult(kind, count, errors, (
        Finding(line, column, text, rule, Severity.ERROR if is_error else Severity.WARNING)
        for line, column, text, rule, is_error in found))


class SelectedChannel(NamedTuple):
    """A channel as a selector knows it."""

    daq_name: str
    prop_name: str
    event_types: EventMask
    data_type: int
    is_slow: bool
    is_main_linac: bool
    sub_channels: int


class Selector:
    """Channel descriptions as a client of the DAQ asks for them: what is selected for an event type,
    and what it holds. `files` are sources as for `read`, one or several; they are loaded one after
    the other. Raises what `read` raises; with `on_error="keep"`, `messages` tells what is wrong.

    >>> selector = zrt4xml.Selector(["examples/channels/channels.xml"])
    >>> selector.find("LINAC.DIAG/BPM/3.L1/X.TRAIN", zrt4xml.EventType.NORMAL)
    True
    >>> selector.event_types("BPM.3.L1.X") == zrt4xml.EventMask.NORMAL
    True
    >>> [each.daq_name for each in selector if each.is_slow]
    ['RF.A1.SP.AMPL', 'RF.A1.SP.PHASE', 'Q2.L1.SP']
    """

    def __init__(self, files, *, on_error="raise"):
        if on_error not in ("raise", "keep"):
            raise ValueError(f"on_error is 'raise' or 'keep', not {on_error!r}")
        if isinstance(files, (str, bytes)) or hasattr(files, "__fspath__") or hasattr(files, "read"):
            files = [files]
        self._selector = _core.Selector()
        self.messages = ()
        for source in files:
            name, document = _open(source)
            kind, reason, place = document.kind(None)
            if kind is None:
                raise DocumentError(name, _messages([(0, 0, reason + place, Severity.FATAL_ERROR)]))
            errors, told = self._selector.load(document)
            messages = _messages(told)
            if errors and on_error == "raise":
                raise DocumentError(name, messages)
            self.messages += messages

    def __len__(self):
        return self._selector.size()

    def __getitem__(self, index):
        if isinstance(index, slice):
            return [self[position] for position in range(*index.indices(len(self)))]
        if not -len(self) <= index < len(self):
            raise IndexError("no channel at this index")
        daq_name, prop_name, slow, linac, inside = self._selector.at(index % len(self))
        return SelectedChannel(daq_name, prop_name, self.event_types(daq_name),
                               self.data_type(daq_name), slow, linac, inside)

    def __iter__(self):
        return (self[index] for index in range(len(self)))

    def find(self, name, event_type):
        """Whether the channel is selected for the event type, a number or a name: local and main-linac
        event types are asked by DAQ name, all others by property."""
        if isinstance(event_type, str):
            event_type = EventType[event_type]
        return self._selector.finds(name, int(event_type))

    def event_types(self, name):
        """The event types of the first channel that has one and bears the name; none when there is
        no such channel."""
        return EventMask(self._selector.event_types(name))

    def data_type(self, name):
        """The mask of the data type of the first channel with this DAQ name; 0 when there is none.
        Bit n stands for data type n, with bit 31 for data type n + 32."""
        return self._selector.data_type(name)

    def __repr__(self):
        return f"<Selector of {len(self)} channels>"
