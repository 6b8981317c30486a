"""The XML documents through which a DAQ describes itself: channel descriptions, event lists,
environment index dictionaries and features of cameras.

>>> channels = zrt4xml.read("examples/channels/channels.xml")
>>> channels["BPM.3.L1.X"].units
'mm'
"""

from ._documents import read, read_camera, read_channels, read_dictionary, read_events
from ._enumerations import DataType, EventMask, EventType, FeatureType, Severity
from ._errors import DocumentError, Message
from ._lists import ChannelList, Dictionary, EventList, FeatureList
from ._records import (Bit, Channel, DictionaryEntry, Dimension, Event, Feature, Record, ServerBlock,
                       Statistic)

__all__ = [
    "Bit", "Channel", "ChannelList", "DataType", "Dictionary", "DictionaryEntry", "Dimension",
    "DocumentError", "Event", "EventList", "EventMask", "EventType", "Feature", "FeatureList",
    "FeatureType", "Message", "Record", "ServerBlock", "Severity", "Statistic", "read", "read_camera",
    "read_channels", "read_dictionary", "read_events",
]
for _name in __all__:
    globals()[_name].__module__ = __name__
