#!/usr/bin/python3
"""The refused message was never taken and the error log says why."""
import glob
import os
import re
import sys

mails, home = sys.argv[1], sys.argv[2]
assert not glob.glob(os.path.join(mails, "*.eml"))
log = open(os.path.join(home, "ErrorLog.Log"), encoding="utf-8").read().splitlines()
assert len(log) == 1, log
assert re.match(r'^\d\d/\d\d/\d{4} \d\d:\d\d:\d\d-\d+-The message "Site Plans For: 12 Mill Lane, FAO: Ann Hartley" '
                r'\(\S+\.eml\) stays in the outbox: .*550.*-Outbox$', log[0]), log[0]
