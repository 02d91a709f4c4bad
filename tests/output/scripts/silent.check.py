#!/usr/bin/python3
"""The silent server's timeout is in the log, with libcurl's number 28
(a server that does not answer in time, or sends nothing for that long)."""
import os
import sys

mails, home = sys.argv[1], sys.argv[2]
log = open(os.path.join(home, "ErrorLog.Log"), encoding="utf-8").read().splitlines()
assert len(log) == 1 and "-28-The message" in log[0] and log[0].endswith("-Outbox"), log
