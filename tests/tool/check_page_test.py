"""What docs/check.md shows of each rule is what `check` says.

check_page_test.py PAGE TOOL: each rule has a section with its severity and a document, in which the
tool finds it, and nothing else, as the page shows it; and no section is of a rule that is none.

A document stands in a block "xml wrong", a word behind which says how it is checked: "bytes" (\\xNN is
a byte), or "--strict".
"""

import os
import pathlib
import re
import subprocess
import sys
import tempfile

PAGE, TOOL = pathlib.Path(sys.argv[1]), os.path.abspath(sys.argv[2])
SECTION = re.compile(r"^### `(\w+)`\n(.*?)(?=^##|\Z)", re.MULTILINE | re.DOTALL)
BLOCKS = re.compile(r"\A\n(\w+)\. .*?^```xml wrong ?(\S*)\n(.*?)^```\n\n```text\n(.*?)^```\n\n\S",
                    re.MULTILINE | re.DOTALL)


def bytes_of(document, how):
    written = document.encode()
    if how != "bytes":
        return written
    return re.sub(rb"\\x([0-9A-F]{2})", lambda code: bytes([int(code[1], 16)]), written)


def checked(document, how, folder):
    (folder / "document.xml").write_bytes(bytes_of(document, how))
    options = [how] if how.startswith("--") else []
    result = subprocess.run([TOOL, "check", "--only-findings", *options, "document.xml"],
                            cwd=folder, capture_output=True, check=False)
    return (result.stdout + result.stderr).decode(errors="replace")


def main():
    listed = subprocess.run([TOOL, "check", "--rules"], capture_output=True, text=True, check=True)
    rules = {line.split()[0]: line.split()[1] for line in listed.stdout.splitlines()}
    sections = SECTION.findall(PAGE.read_text(encoding="utf-8"))
    names = [name for name, _ in sections]
    wrong = [f"{name}: a rule without a section" for name in rules if name not in names]
    wrong += [f"{name}: a section of no rule" for name in names if name not in rules]
    wrong += [f"{name}: several sections" for name in set(names) if names.count(name) > 1]
    for name, section in sections:
        blocks = BLOCKS.match(section)
        if not blocks:
            wrong.append(f"{name}: lacks severity, document, what is found, or how to mend it")
            continue
        severity, how, document, shown = blocks.groups()
        if severity.lower() != rules.get(name):
            wrong.append(f"{name}: is of severity {rules.get(name)}")
        place = r"document\.xml(:\d+:\d+)?: "
        if not re.fullmatch(place + rf"{rules.get(name)}: [^\n]* \[{name}\]\n", shown):
            wrong.append(f"{name}: shows another rule")
        with tempfile.TemporaryDirectory() as folder:
            found = checked(document, how, pathlib.Path(folder))
        if found != shown:
            wrong.append(f"{name}: finds\n{found}")
    print("\n".join(wrong) if wrong else f"{len(sections)} rules are described")
    return 1 if wrong or not sections else 0


sys.exit(main())
