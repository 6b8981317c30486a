"""What is wrong with a document."""

from typing import NamedTuple

from ._enumerations import Severity


class Message(NamedTuple):
    """What a reader says of a place in a document; line and column are 0 where they are not known.

    >>> zrt4xml.Message(3, 14, "expected end of tag 'CHANNEL'", zrt4xml.Severity.FATAL_ERROR).line
    3
    """

    line: int
    column: int
    text: str
    severity: Severity


class DocumentError(ValueError):
    """A document that was not read without an error.

    `messages` tells what is wrong, `partial` is the list of what was read until then: None where it
    is not even known what kind of document it is.

    >>> try:
    ...     zrt4xml.read_events(b"<BMR><EVENT><TYPE>1</TYPE></EVENT>")
    ... except zrt4xml.DocumentError as error:
    ...     print(error)
    ...     print(error.messages[0].line, len(error.partial))
    document in memory:1:35: input ended before all started tags were ended; last tag started is 'BMR'
    1 1
    """

    def __init__(self, name, messages, partial=None):
        self.name = name
        self.messages = tuple(messages)
        self.partial = partial
        super().__init__(name, self.messages, partial)

    def __str__(self):
        if not self.messages:
            return f"{self.name}: not read without an error"
        first = self.messages[0]
        place = f":{first.line}:{first.column}" if first.line else ""
        more = len(self.messages) - 1
        rest = f" (and {more} more)" if more else ""
        return f"{self.name}{place}: {first.text}{rest}"


class LossError(ValueError):
    """Records that a document cannot carry: it would not read back to the same. `losses` tells what
    is lost, with channel and field.

    >>> try:
    ...     zrt4xml.ChannelList([zrt4xml.Channel(prop_name="P", units="\\x01")]).to_xml()
    ... except zrt4xml.LossError as error:
    ...     print(len(error.losses))
    1
    """

    def __init__(self, losses):
        self.losses = tuple(losses)
        super().__init__(self.losses)

    def __str__(self):
        more = len(self.losses) - 1
        return self.losses[0] + (f" (and {more} more)" if more else "")
