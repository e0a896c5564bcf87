#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""terminal-reader.py PIPE: runs in a terminal, reads it key by key and reports what came."""
import codecs
import os
import sys
import tty

from report import Report

report = Report(sys.argv[1])
tty.setcbreak(0)
os.write(1, b"\x1b[?1004h")  # the terminal tells of its focus with ESC [ I and ESC [ O
decoder = codecs.getincrementaldecoder("utf-8")("replace")
report.tell(ready=True)
while read := os.read(0, 65536):
    added = decoder.decode(read).replace("\x1b[I", "").replace("\x1b[O", "")
    if added:
        os.write(1, added.encode())
        report.tell(added=added)
