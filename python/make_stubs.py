"""Writes the types of the package, for mypy and editors: a template, in which a line "# fields of X"
stands for the constructor and the attributes of a record, which the library's tables tell.

make_stubs.py TEMPLATE OUTPUT, with the package in the path
"""

import pathlib
import re
import sys

import zrt4xml

INSIDE = {
    "Channel": [("bits", "Bit"), ("dims", "Dimension")],
    "Dimension": [("stats", "Statistic")],
    "Event": [("server_blocks", "ServerBlock")],
}
NAMES = {"ServerBlock": ["channels"]}


def fields_of(match):
    indent, record = match[1], match[2]
    takes, has = [], []
    for name, _, kind, _ in getattr(zrt4xml, record)._fields:
        plain = kind if kind in ("str", "float") else "int"  # also a number without a name
        takes.append(f"{name}: {plain} = ...")
        has.append(f"{name}: {plain}")
    for name in NAMES.get(record, []):
        takes.append(f"{name}: Iterable[str] = ...")
        has.append(f"{name}: _Names")
    for name, inner in INSIDE.get(record, []):
        takes.append(f"{name}: Iterable[{inner} | Mapping[str, Any]] = ...")
        has.append(f"{name}: _Inside[{inner}]")
    lines = [f"def __init__(self, *, {', '.join(takes)}) -> None: ...", *has]
    return "\n".join(indent + line for line in lines)


def members_of(match):
    indent, enumeration = match[1], getattr(zrt4xml, match[2])
    return "\n".join(f"{indent}{member.name} = {int(member)}" for member in enumeration)


template, output = map(pathlib.Path, sys.argv[1:])
text = template.read_text()
text = re.sub(r"(?m)^( +)# fields of (\w+)$", fields_of, text)
text = re.sub(r"(?m)^( +)# members of (\w+)$", members_of, text)
output.write_text(text)
