#!/usr/bin/python3
"""Neither message reached the server; the log names both reasons."""
import glob
import os
import sys

mails, home = sys.argv[1], sys.argv[2]
assert not glob.glob(os.path.join(mails, "*.eml"))
log = open(os.path.join(home, "ErrorLog.Log"), encoding="utf-8").read()
assert "The recipient 'ann at hartley' is no e-mail address-Outbox" in log, log
assert "The message has no recipient-Outbox" in log, log
