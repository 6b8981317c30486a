#!/usr/bin/python3
"""Prints what a page on standard input holds, unpacked: its data, or the XML of the records of its
document NUMBER, with a line "--" between two.

  page_data.py [NUMBER]
"""

import base64
import re
import sys
import zlib


def unpacked(text):
    return zlib.decompress(base64.b64decode(text, validate=True)).decode("utf-8")


page = sys.stdin.read()
name = f"source-{sys.argv[1]}" if len(sys.argv) > 1 else "data"
block = re.search(f'<script type="application/octet-stream" id="{name}">([^<]*)</script>', page).group(1)
if name == "data":
    print(unpacked(block))
else:
    print("\0".join(unpacked(piece) for piece in block.split("\n")).replace("\0", "\n--\n"))
