"""The types say what there is, and what is written with them is checked."""

import ast
import pathlib
import subprocess
import sys

import zrt4xml

TYPES = pathlib.Path(zrt4xml.__file__).with_suffix(".pyi")


def test_mypy_accepts_the_examples():
    run = subprocess.run(
        [sys.executable, "-m", "mypy", "--strict", "--cache-dir=/dev/null",
         "--ignore-missing-imports", "python/tests/typed_use.py",
         *map(str, pathlib.Path("examples/python").glob("*.py"))],
        capture_output=True, text=True)
    assert run.returncode == 0, run.stdout + run.stderr


def test_mypy_finds_mistakes(tmp_path):
    wrong = tmp_path / "wrong.py"
    wrong.write_text("import zrt4xml\n"
                     "zrt4xml.Channel(prop_name=1)\n"
                     "zrt4xml.read_channels('x').to_xml('other')\n"
                     "zrt4xml.read_events('x')[0].units\n")
    run = subprocess.run([sys.executable, "-m", "mypy", "--strict", "--cache-dir=/dev/null",
                          "--ignore-missing-imports", wrong], capture_output=True, text=True)
    assert [line.split(":")[1] for line in run.stdout.splitlines() if ": error: " in line] == [
        "2", "3", "4"], run.stdout


def test_the_types_have_everything_that_is_public():
    defined = {each.name: each for each in ast.parse(TYPES.read_text()).body
               if isinstance(each, (ast.ClassDef, ast.FunctionDef))}
    assert set(zrt4xml.__all__) <= set(defined)
    for record in (zrt4xml.Channel, zrt4xml.Bit, zrt4xml.Event, zrt4xml.DictionaryEntry):
        names = {each.target.id for each in defined[record.__name__].body
                 if isinstance(each, ast.AnnAssign)}
        assert {name for name, *_ in record._fields} <= names
