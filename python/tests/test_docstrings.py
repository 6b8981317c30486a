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


def blocks_of(page):
    return re.findall(r"(?ms)^```python\n(.*?)^```$", pathlib.Path(page).read_text())


@pytest.fixture
def a_folder_like_the_tree(tmp_path, monkeypatch):
    """Where examples may write."""
    (tmp_path / "examples").symlink_to(pathlib.Path("examples").resolve())
    pages = {page: blocks_of(page) for page in ("README.md", "docs/python.md")}
    monkeypatch.chdir(tmp_path)
    return pages


def run(blocks):
    test = doctest.DocTestParser().get_doctest("\n".join(blocks), {}, "page", None, None)
    return doctest.DocTestRunner().run(test)


@pytest.mark.parametrize("page, least", [("README.md", 4), ("docs/python.md", 30)])
def test_examples_of_pages(page, least, a_folder_like_the_tree):
    result = run(each for each in a_folder_like_the_tree[page] if "matplotlib" not in each)
    assert result.failed == 0
    assert result.attempted >= least


def test_the_plot_of_the_page(a_folder_like_the_tree):
    matplotlib = pytest.importorskip("matplotlib", reason="python3-matplotlib is not installed")
    matplotlib.use("Agg")
    result = run(a_folder_like_the_tree["docs/python.md"])
    assert result.failed == 0
    assert pathlib.Path("subsystems.png").read_bytes()[1:4] == b"PNG"
