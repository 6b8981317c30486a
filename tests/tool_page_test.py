"""Runs every command of the console blocks of a page, and compares what it prints.

usage: tool_page_test.py PAGE TOOL FOLDER
In a block, "$ " starts a command and what follows is its output, standard error last. "zrt4xml" is TOOL, and the
commands run in FOLDER.
"""

import os
import re
import subprocess
import sys
import tempfile

page, tool, folder = sys.argv[1:]
with open(page, encoding="utf-8") as file:
    blocks = re.findall(r"^```console\n(.*?)^```$", file.read(), re.DOTALL | re.MULTILINE)
commands = 0
wrong = 0
with tempfile.TemporaryDirectory() as place:
    os.symlink(os.path.abspath(tool), os.path.join(place, "zrt4xml"))
    environment = dict(os.environ, PATH=place + ":" + os.environ["PATH"], LC_ALL="C.UTF-8")
    for block in blocks:
        for command, expected in re.findall(r"^\$ (.*)\n((?:(?!\$ ).*\n)*)", block, re.MULTILINE):
            commands += 1
            done = subprocess.run(["sh", "-c", command], cwd=folder, env=environment, text=True, capture_output=True)
            printed = done.stdout + done.stderr
            if printed != expected:
                wrong += 1
                print(f"{page}: $ {command}\nprinted:\n{printed}expected:\n{expected}")
if commands == 0:
    print(f"{page}: no command found")
sys.exit(1 if wrong or commands == 0 else 0)
