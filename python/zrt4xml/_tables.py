"""Records as tables, for NumPy, pandas and notebooks."""

import html
import threading

from . import _core

_ROWS_SHOWN = 20
_first_use_of_numpy = threading.Lock()


def _use_numpy():
    """Looks NumPy up for the module. Of two threads that begin at once, one would wait for the other
    with the interpreter's lock, which the other needs to import NumPy."""
    with _first_use_of_numpy:
        _core.use_numpy()


def _pandas():
    try:
        import pandas
    except ImportError:
        raise ImportError("a DataFrame needs pandas, which is not installed; "
                          "to_numpy() does without") from None
    _use_numpy()
    return pandas


def _names(record, fields):
    if fields is None:
        return [name for name, *_ in record._fields]
    if isinstance(fields, str):
        raise TypeError("fields: a sequence of names is needed, not 'str'")
    names = list(fields)
    for name in names:
        if names.count(name) > 1:
            raise ValueError(f"fields: {name!r} stands there twice")
    return names


def table_for(record, fields):
    """An empty table of records of that class."""
    return _core.Table(record.__name__, _names(record, fields))


def structured(texts):
    """Makes structured arrays of tables."""
    if texts not in ("str", "bytes"):
        raise ValueError(f"texts is 'str' or 'bytes', not {texts!r}")
    _use_numpy()
    return lambda table: table.structured(texts == "bytes")


def frame():
    """Makes DataFrames of tables."""
    pandas = _pandas()

    def made(table):
        columns = table.columns()
        return pandas.DataFrame(columns, columns=list(columns), index=range(len(table)), copy=False)
    return made


def to_numpy(records, fields, texts):
    return structured(texts)(_core.table_of(records, _names(records._record, fields)))


def to_dataframe(records, fields):
    return frame()(_core.table_of(records, _names(records._record, fields)))


def inner_dataframe(records, path, positions):
    """One row for each record inside, behind where it is and the property of the channel."""
    pandas = _pandas()
    places, columns = _core.inner_columns(records, path)
    made = dict(zip(positions, places))
    properties = _core.table_of(records, ["prop_name"]).columns()["prop_name"]
    made["prop_name"] = properties[places[0]]
    if len(path) > 1:
        # The number of the dimension, which may be another than its position.
        numbers = [dimension.dim for record in records for dimension in record.dims
                   for _ in dimension.stats]
        del made[positions[1]]
        made["dim"] = numbers
    made.update(columns)
    return pandas.DataFrame(made, copy=False)


def as_html(records):
    """A table of the first records; of the fields, those that any of them has."""
    first = records[:_ROWS_SHOWN]
    blank = records._record()
    names = [name for name, *_ in records._record._fields]
    names = [name for name in names
             if name == names[0] or any(getattr(each, name) != getattr(blank, name)
                                        for each in first)]
    inside = [name for name in ("bits", "dims", "server_blocks") if hasattr(blank, name)]
    head = "".join(f"<th>{html.escape(name)}</th>" for name in ["", *names, *inside])
    rows = "".join(
        "<tr><th>%d</th>%s%s</tr>" % (
            index,
            "".join(f"<td>{html.escape(_shown(getattr(each, name)))}</td>" for name in names),
            "".join(f"<td>{len(getattr(each, name))}</td>" for name in inside))
        for index, each in enumerate(first))
    more = len(records) - len(first)
    rest = f"<p>... {more} more</p>" if more else ""
    return f"<table><thead><tr>{head}</tr></thead><tbody>{rows}</tbody></table>{rest}"


def record_as_html(record):
    rows = "".join(
        f"<tr><th>{html.escape(name)}</th><td>{html.escape(_shown(value))}</td></tr>"
        for name, value in ((name, getattr(record, name)) for name in record.to_dict()))
    return f"<table><tbody>{rows}</tbody></table>"


def _shown(value):
    name = getattr(value, "name", None)
    return f"{int(value)} {name}" if isinstance(value, int) and name else str(value)


_core.Record._repr_html_ = record_as_html
