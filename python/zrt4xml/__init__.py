"""The XML documents through which a DAQ describes itself: channel descriptions, event lists,
environment index dictionaries and features of cameras.

>>> channels = zrt4xml.read("examples/channels/channels.xml")
>>> channels["BPM.3.L1.X"].units
'mm'
"""

from . import _core
from ._answers import (CheckResult, Difference, Differences, Finding, SelectedChannel, Selector,
                       check, diff, merge)
from ._documents import (read, read_camera, read_channels, read_dataframe, read_dictionary,
                         read_events, read_numpy)
from ._enumerations import DataType, EventMask, EventType, FeatureType, Severity
from ._errors import DocumentError, LossError, Message
from ._lists import ChannelList, Dictionary, EventList, FeatureList, RecordList
from ._records import (Bit, Channel, DictionaryEntry, Dimension, Event, Feature, Record, ServerBlock,
                       Statistic)

__version__ = _core.version
__all__ = [
    "Bit", "Channel", "ChannelList", "CheckResult", "DataType", "Dictionary", "DictionaryEntry",
    "Difference", "Differences", "Dimension", "DocumentError", "Event", "EventList", "EventMask",
    "EventType", "Feature", "FeatureList", "FeatureType", "Finding", "LossError", "Message", "Record",
    "RecordList", "SelectedChannel", "Selector", "ServerBlock", "Severity", "Statistic", "check",
    "diff", "merge", "read", "read_camera", "read_channels", "read_dataframe", "read_dictionary",
    "read_events", "read_numpy",
]
for _name in __all__:
    globals()[_name].__module__ = __name__
