"""What the classes of records say of themselves; their fields are those of the library's tables."""

from . import _core
from ._core import (Bit, Channel, DictionaryEntry, Dimension, Event, Feature, Record, ServerBlock,
                    Statistic)

Record.__doc__ = """What all records have in common. A record has attributes named after its fields,
which the constructor takes by name. A text that is too long for its field, or a number that is out of
its range, raises ValueError, which names the field; a value of another type raises TypeError. Records
are compared by their values."""

Channel.__doc__ = """The description of a channel, with its bits and dimensions.

>>> channel = zrt4xml.Channel(prop_name="LINAC.RF/RF/A1/STATUS", bits=[{"bit": 0, "bit_name": "ON"}])
>>> channel.bits[0].bit_name
'ON'
>>> channel.units = "a unit of many characters"
Traceback (most recent call last):
ValueError: units: the text has 25 bytes in UTF-8, the field holds 15
"""

Bit.__doc__ = """One bit of a channel that is a bit field.

>>> zrt4xml.Bit(bit=3, bit_name="RAMPING")
Bit(bit=3, bit_name='RAMPING')
"""

Dimension.__doc__ = """One dimension of a channel that is an array, with its statistics.

>>> zrt4xml.Dimension(dim=0, dim_name="bunch", units="us", stats=[zrt4xml.Statistic(stat_name="rms")])
Dimension(dim=0, dim_name='bunch', units='us', stats=<1 Statistic>)
"""

Statistic.__doc__ = """One statistic of a dimension.

>>> zrt4xml.Statistic(stat=1, stat_name="rms", units="mm").units
'mm'
"""

Event.__doc__ = """An event that a consumer wants, with its server blocks. The minimum time between two
of them is in seconds and microseconds.

>>> zrt4xml.Event(evtype=zrt4xml.EventType.NORMAL, min_ev_time_usec=100000)
Event(evtype=EventType.NORMAL, min_ev_time_usec=100000)
"""

ServerBlock.__doc__ = """A server block of an event, with the names of the channels wanted of it.

>>> zrt4xml.ServerBlock(name="LINAC.DAQ/TOROID.SERVER").channels
()
"""

DictionaryEntry.__doc__ = """An entry of an environment index dictionary: an index, a property, and the
absolute and relative change that is worth telling.

>>> zrt4xml.DictionaryEntry(index=3, env_prop="GUN.VACUUM/PRESSURE", env_ch_rel_delta=0.1)
DictionaryEntry(index=3, env_prop='GUN.VACUUM/PRESSURE', env_ch_rel_delta=0.1)
"""

Feature.__doc__ = """A feature of a camera.

>>> zrt4xml.Feature(name="Width", type=zrt4xml.FeatureType.Integer)
Feature(name='Width', type=FeatureType.Integer)
"""

__all__ = ["Bit", "Channel", "DictionaryEntry", "Dimension", "Event", "Feature", "Record",
           "ServerBlock", "Statistic"]
