"""Texts are characters, and numbers have decimal points, in whatever locale the process runs."""

import os
import subprocess
import sys

import pytest

SCRIPT = """
import locale, sys
if sys.argv[1:]: locale.setlocale(locale.LC_ALL, sys.argv[1])
import zrt4xml
channels = "<CHANDESCRIPTIONS><CHANNEL><PROP>Gr\\u00f6\\u00dfe \\u03a9 \\U0001f52c</PROP></CHANNEL></CHANDESCRIPTIONS>"
assert zrt4xml.read(channels)[0].prop_name == "Gr\\u00f6\\u00dfe \\u03a9 \\U0001f52c"
assert zrt4xml.read(channels)["Gr\\u00f6\\u00dfe \\u03a9 \\U0001f52c"] is not None
entry = zrt4xml.read("<ENVINDEXDICT><CHANNEL><INDEX>1</INDEX><PROP>\\u00e4</PROP><DABS>0.5</DABS></CHANNEL></ENVINDEXDICT>")[0]
assert (entry.env_prop, entry.env_ch_abs_delta) == ("\\u00e4", 0.5)
camera = zrt4xml.read('<C><Integer Name="\\u00e4\\u03a9"><ToolTip>\\u00b5</ToolTip></Integer></C>')[0]
assert (camera.name, camera.tooltip) == ("\\u00e4\\u03a9", "\\u00b5")
try:
    zrt4xml.read("<BMR><\\u00e4></BMR>")
except zrt4xml.DocumentError as error:
    assert "\\u00e4" in str(error), ascii(str(error))
cut = zrt4xml.read("<CHANDESCRIPTIONS><CHANNEL><PROP>" + 254 * "x" + "\\u00e4</PROP></CHANNEL></CHANDESCRIPTIONS>")[0]
assert cut.prop_name == 254 * "x" + "\\ufffd"
"""


@pytest.mark.parametrize("name", ["C", "C.UTF-8", "de_DE.UTF-8", "de_DE.ISO-8859-1"])
def test_in_every_locale(name, tmp_path_factory):
    environment = dict(os.environ, LC_ALL=name, PYTHONCOERCECLOCALE="0", PYTHONUTF8="0")
    if name.startswith("de_DE"):
        places = tmp_path_factory.getbasetemp() / "locales"
        places.mkdir(exist_ok=True)
        environment["LOCPATH"] = str(places)
        subprocess.run(["localedef", "-i", "de_DE", "-f", name.partition(".")[2], places / name],
                       check=True, capture_output=True)
    subprocess.run([sys.executable, "-c", SCRIPT, name], env=environment, check=True)
