"""What Python reads is what the tool shows."""

import json
import math
import random
import subprocess

import pytest
from conftest import EXAMPLES, TOOL

import zrt4xml


def shown_by_tool(document):
    run = subprocess.run([TOOL, "show", "--json", "-q", "-"], input=document, capture_output=True)
    [shown] = json.loads(run.stdout)["documents"]
    return shown


def as_shown(record):
    """A record as the tool's JSON has it."""
    shown = {}
    for name, name_in_json, value_type, _ in record._fields:
        value = getattr(record, name)
        shown[name_in_json] = value
        if value_type == "float" and not math.isfinite(value):
            shown[name_in_json] = None
            sign = "-" if math.copysign(1, value) < 0 else ""
            shown[name_in_json + "_name"] = sign + str(abs(value))
        if value_type in ("EventType", "DataType", "FeatureType"):
            enumeration = getattr(zrt4xml, value_type)
            named = [key for key, each in enumeration.__members__.items() if each == value]
            shown[name_in_json + "_name"] = named[-1] if named else "UNKNOWN"
    for group, name_in_json in (("bits", "bits"), ("dims", "dimensions"), ("stats", "statistics"),
                                ("server_blocks", "server_blocks")):
        if hasattr(record, group):
            shown[name_in_json] = [as_shown(each) for each in getattr(record, group)]
    if isinstance(record, zrt4xml.ServerBlock):
        shown["channels"] = list(record.channels)
    return shown


def assert_as_the_tool(document):
    shown = shown_by_tool(document)
    if "unusable" in shown:
        with pytest.raises(zrt4xml.DocumentError):
            zrt4xml.read(document)
        return None
    records, messages = zrt4xml.read(document, on_error="keep")
    expected = [as_shown(each) for each in records]
    for record, told in zip(expected, shown["records"]):
        # A record does not know whether its document tells the event type 0 or none.
        if "property" in told and told.get("event_type") == 0 and told["event_type_name"] != "HB":
            assert told["event_type_name"] == "UNKNOWN"
            record["event_type_name"] = "UNKNOWN"
    assert expected == shown["records"]
    assert bool(messages) == bool(shown["errors"])
    return records


@pytest.mark.parametrize("path", EXAMPLES, ids=lambda each: each.name)
def test_examples(path):
    assert len(assert_as_the_tool(path.read_bytes())) > 0


TEXTS = ["", "x", "LINAC/BPM/1/X", "Größe", "µm²", "Ω" * 90, "x" * 300, "a&amp;b", "&#937;", " ",
         "<![CDATA[<&>]]>", "\n", "5", "\U0001f52c"]
NUMBERS = ["0", "1", "-1", "38", "4294967295", "4294967296", "2147483648", "99999999999", "x",
           "1.5", "1e300", "nan", "inf", "", " 7", "0x1f"]


def random_document(chosen):
    """Elements of every kind in any order, also where they do not belong."""
    root, elements = chosen.choice([
        ("CHANDESCRIPTIONS", "CHANNEL EVTYPE STREAM PROP NAME DESC UNITS SIZE BIT BIT_NAME BIT_DESCR "
         "DIM DIM_NAME DIM_UNITS STAT STAT_NAME STAT_DESCR SB_NAME DTYPE COUNT SETPOINT SUBSYSTEM "
         "DB_KEY"),
        ("DAQvariables", "DaqFloat DaqBits DaqFloatMatrix vindo daqName evType units lastIndex "
         "bitTitle dimension name description subSystem setPoint"),
        ("BMR", "EVENT TYPE TMASK MINTIMESEC MINTIMEUSEC PRIORITY SBLOCK CHLIST CHAN"),
        ("ENVINDEXDICT", "CHANNEL INDEX PROP DABS DREL"),
        ("Camera", "Integer Float Enumeration PvRename ToolTip Description"),
    ])
    elements = elements.split()
    parts = [f'<?xml version="1.0" encoding="{chosen.choice(["UTF-8", "ISO-8859-1"])}"?>',
             f"<{root}>"]
    is_open = []
    for _ in range(chosen.randrange(60)):
        if is_open and chosen.random() < 0.2:
            parts.append(f"</{is_open.pop()}>")
        element = chosen.choice(elements)
        attribute = chosen.choice(["", "", ' bit="3"', ' id="1"', ' Name="N"'])
        if element.isupper() and element in ("CHANNEL", "EVENT", "CHLIST") or element in (
                "DaqFloat", "DaqBits", "DaqFloatMatrix", "dimension", "Integer", "Float",
                "Enumeration"):
            parts.append(f"<{element}{attribute}>")
            is_open.append(element)
        else:
            text = chosen.choice(TEXTS if chosen.random() < 0.6 else NUMBERS)
            parts.append(f"<{element}{attribute}>{text}</{element}>")
    parts += [f"</{each}>" for each in reversed(is_open)] + [f"</{root}>"]
    document = "".join(parts)
    if chosen.random() < 0.1:
        document = document[:chosen.randrange(len(document))]
    return document.encode()


@pytest.mark.parametrize("seed", range(200))
def test_random_documents(seed):
    assert_as_the_tool(random_document(random.Random(seed)))
