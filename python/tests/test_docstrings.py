import doctest

import zrt4xml


def test_examples_in_docstrings(monkeypatch):
    result = doctest.testmod(zrt4xml, extraglobs={"zrt4xml": zrt4xml},
                             optionflags=doctest.NORMALIZE_WHITESPACE | doctest.ELLIPSIS)
    assert result.failed == 0
    assert result.attempted > 20


def test_everything_public_has_a_docstring():
    for name in zrt4xml.__all__:
        assert getattr(zrt4xml, name).__doc__, name
