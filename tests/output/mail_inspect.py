#!/usr/bin/python3
"""Reads a stored or received message with Python's own e-mail package, an
independent reader of what Tessaly wrote, and prints what a mail program
shows as JSON: the headers decoded and as written, the text, and each
attachment, saved into OUTDIR under its decoded file name.

Usage: mail_inspect.py MESSAGE OUTDIR
"""
import email
import json
import os
import sys
from email import policy


def main():
    path, outdir = sys.argv[1], sys.argv[2]
    with open(path, "rb") as f:
        data = f.read()
    modern = email.message_from_bytes(data, policy=policy.default)
    raw = email.message_from_bytes(data, policy=policy.compat32)
    os.makedirs(outdir, exist_ok=True)
    out = {
        "date": str(modern["Date"]) if modern["Date"] else None,
        "message_id": str(modern["Message-ID"]) if modern["Message-ID"] else None,
        "mime_version": str(modern["MIME-Version"]) if modern["MIME-Version"] else None,
        "from": str(modern["From"]) if modern["From"] else None,
        "to": str(modern["To"]) if modern["To"] else None,
        "subject": str(modern["Subject"]) if modern["Subject"] is not None else None,
        "raw_subject": raw["Subject"],
        "crlf": b"\r\n" in data and b"\n" not in data.replace(b"\r\n", b""),
        "seven_bit": all(b < 128 for b in data),
        "body": None,
        "attachments": [],
    }
    for part in modern.walk():
        if part.is_multipart():
            continue
        if part.get_content_disposition() == "attachment":
            name = part.get_filename()
            target = os.path.join(outdir, name)
            with open(target, "wb") as f:
                f.write(part.get_payload(decode=True))
            raw_part = None
            for p in raw.walk():
                if not p.is_multipart() and p.get("Content-Disposition", "").startswith("attachment"):
                    raw_part = p
                    break
            out["attachments"].append({
                "filename": name,
                "content_type": part.get_content_type(),
                "raw_disposition": raw_part["Content-Disposition"] if raw_part else None,
                "saved": target,
            })
        elif part.get_content_type() == "text/plain" and out["body"] is None:
            out["body"] = part.get_content()
    json.dump(out, sys.stdout)


if __name__ == "__main__":
    main()
