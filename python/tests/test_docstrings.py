import doctest
import pathlib
import re

import pytest

import zrt4xml


def test_examples_in_docstrings(monkeypatch):
    result = doctest.testmod(zrt4xml, extraglobs={"zrt4xml": zrt4xml},
                             optionflags=doctest.NORMALIZE_WHITESPACE | doctest.ELLIPSIS)
    assert result.failed == 0
    assert result.attempted > 20


def test_everything_public_has_a_docstring():
    for name in zrt4xml.__all__:
        assert getattr(zrt4xml, name).__doc__, name


@pytest.mark.parametrize("page, least", [("README.md", 4), ("docs/python.md", 30)])
def test_examples_of_pages(page, least, tmp_path, monkeypatch):
    """In a folder that looks like the tree, where they may write."""
    page = pathlib.Path(page).read_text()
    blocks = re.findall(r"(?ms)^```python\n(.*?)^```$", page)
    (tmp_path / "examples").symlink_to(pathlib.Path("examples").resolve())
    monkeypatch.chdir(tmp_path)
    test = doctest.DocTestParser().get_doctest("\n".join(blocks), {}, "page", None, None)
    result = doctest.DocTestRunner().run(test)
    assert result.failed == 0
    assert result.attempted >= least
