import os
import pathlib

import pytest

import zrt4xml

EXAMPLES = sorted(pathlib.Path("examples").glob("*/*.xml"))
TOOL = os.environ["ZRT4_TOOL"]


@pytest.fixture
def channels():
    return zrt4xml.read_channels("examples/channels/channels.xml")


@pytest.fixture
def events():
    return zrt4xml.read_events("examples/event_lists/orbit_feedback.xml")


@pytest.fixture(autouse=True)
def nothing_is_printed(capfd):
    """The library's messages are for exceptions: no test of Python may print."""
    yield
    assert capfd.readouterr() == ("", "")
