"""Only checked by mypy: what a user writes has these types."""

import pathlib

import zrt4xml

channels: zrt4xml.ChannelList = zrt4xml.read_channels(pathlib.Path("channels.xml"))
partial, messages = zrt4xml.read_channels(b"<CHANDESCRIPTIONS/>", on_error="keep")
name: str = channels[0].prop_name
bits: list[str] = [bit.bit_name for bit in channels["P"].bits]
unit: str = channels[0].dims[0].stats[0].units
line: int = messages[0].line
some: zrt4xml.ChannelList = channels[1:3]
document: bytes = some.to_xml(dialect="variables")
normal: zrt4xml.ChannelList = zrt4xml.ChannelList(
    channel for channel in channels if channel.ev_type == zrt4xml.EventType.NORMAL)
channels[0].ev_type = zrt4xml.EventType.NORMAL
channels[0].bits = [zrt4xml.Bit(bit=1), {"bit": 2}]
maybe: zrt4xml.Channel | None = channels.get("P")
block: tuple[str, ...] = zrt4xml.read_events("events.xml")[0].server_blocks[0].channels
