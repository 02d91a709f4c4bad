#!/usr/bin/python3
"""Checks what the SMTP server received from dispatch.tss: one message, the
exact bytes of the one in the home's Sent folder, its headers and text as
Python's e-mail package reads them, and an attachment Drawings.zip that
unzip lists and extracts to the plan's files byte for byte."""
import email
import glob
import os
import subprocess
import sys
import tempfile
from email import policy

mails, home = sys.argv[1], sys.argv[2]
received = sorted(glob.glob(os.path.join(mails, "*.eml")))
assert len(received) == 1, received
data = open(received[0], "rb").read()
sent = glob.glob(os.path.join(home, "Sent", "*.eml"))
assert len(sent) == 1, sent
assert open(sent[0], "rb").read() == data, "the server received other bytes than the outbox held"
assert not glob.glob(os.path.join(home, "Outbox", "*.eml"))

msg = email.message_from_bytes(data, policy=policy.default)
raw = email.message_from_bytes(data, policy=policy.compat32)
assert msg["Date"] is not None
assert msg["Message-ID"].startswith("<") and msg["Message-ID"].endswith(">"), msg["Message-ID"]
assert str(msg["MIME-Version"]) == "1.0"
assert str(msg["Subject"]) == "Site Plans For: 12 Mill Lane, FAO: Zoë Müller", str(msg["Subject"])
assert "=?utf-8?" in raw["Subject"].lower(), raw["Subject"]
assert str(msg["From"]) == "office@tessaly.test"
assert str(msg["To"]) == "zoe@hartley.test"
assert all(b < 128 for b in data)
body = msg.get_body(preferencelist=("plain",)).get_content().replace("\r\n", "\n")
assert body == "Dear Zoë, the first floor plan is attached.", repr(body)

attachments = [p for p in msg.iter_attachments()]
assert len(attachments) == 1
zip_part = attachments[0]
assert zip_part.get_filename() == "Drawings.zip"
assert zip_part.get_content_type() == "application/zip"
with tempfile.TemporaryDirectory() as out:
    archive = os.path.join(out, "Drawings.zip")
    open(archive, "wb").write(zip_part.get_payload(decode=True))
    listing = subprocess.run(["unzip", "-Z1", archive], capture_output=True, check=True).stdout.decode()
    names = sorted(listing.split("\n")[:-1])
    assert names == ["Première Étage.emf", "Première Étage.pdf", "Première Étage.wmf"], names
    subprocess.run(["unzip", "-q", archive, "-d", os.path.join(out, "x")], check=True)
    for name in names:
        got = open(os.path.join(out, "x", name), "rb").read()
        want = open(os.path.join(home, "FileStore", "12 Mill Lane", name), "rb").read()
        assert got == want, name
print("dispatch received: %d bytes, %s" % (len(data), ", ".join(names)))
