"""The DAQ's numbers with the names that the library has for them."""

from enum import IntEnum, IntFlag

from . import _core


def _members(prefix, numbers):
    """Names and numbers of an enumeration; a name that is no word of Python follows the prefix."""
    members = []
    for name, number in numbers:
        word = name if name.isidentifier() else prefix + name
        members.append((word, number))
        if word != name:
            members.append((name, number))  # for EventType["28"]
    return members


def _enumeration(name, prefix, numbers, doc):
    made = IntEnum(name, _members(prefix, numbers), module="zrt4xml")
    made.__doc__ = doc
    return made


EventType = _enumeration(
    "EventType", "EV_", _core.event_types,
    """Event types, by number.

    >>> zrt4xml.EventType.NORMAL
    <EventType.NORMAL: 1>
    >>> zrt4xml.EventType["28"] == 28
    True
    """)

DataType = _enumeration(
    "DataType", "BLOCK_", _core.data_types,
    """Data types of the sub-blocks of an event, by number.

    >>> zrt4xml.DataType.BPM_2010
    <DataType.BPM_2010: 38>
    """)

FeatureType = _enumeration(
    "FeatureType", "TYPE_", _core.feature_types,
    """Kinds of features of a camera.

    >>> zrt4xml.FeatureType.Enumeration
    <FeatureType.Enumeration: 3>
    """)

EventMask = IntFlag(
    "EventMask",
    _members("EV_", [(name, 1 << number) for name, number in _core.event_types
                     if number < _core.events_end]),
    module="zrt4xml")
EventMask.__doc__ = """Sets of event types: bit n stands for event type n.

    >>> zrt4xml.EventMask.NORMAL | zrt4xml.EventMask.ENV == 0x12
    True
    """


class Severity(IntEnum):
    """How bad a message is, as the XML scanner or a reader judges it."""

    REMARK = 0
    WARNING = 1
    ERROR = 2
    FATAL_ERROR = 3


_core.set_enumerations(*({int(member): member for member in each}
                         for each in (EventType, DataType, FeatureType)))
