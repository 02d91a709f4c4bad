#!/usr/bin/python3
"""A real SMTP server on loopback for Tessaly's mail tests (aiosmtpd).

Usage: smtp_server.py --dir DIR [--mode MODE]

It listens on a free port of 127.0.0.1 and writes "PORT <n>" as its first
line. Modes:
  accept   take every message: DIR/<n>.eml holds the exact bytes received,
           DIR/<n>.json the envelope (sender and recipients)
  refuse   refuse every recipient with 550
  drop     close the connection when the message's data arrives
  silent   take connections and never answer (a server that times out)
It runs until its standard input closes or it is terminated.
"""
import argparse
import asyncio
import json
import os
import signal
import sys

from aiosmtpd.smtp import SMTP


class Handler:
    def __init__(self, directory, mode):
        self.directory = directory
        self.mode = mode
        self.count = 0

    async def handle_RCPT(self, server, session, envelope, address, rcpt_options):
        if self.mode == "refuse":
            return "550 5.1.1 <%s>: Recipient address rejected" % address
        envelope.rcpt_tos.append(address)
        return "250 OK"

    async def handle_DATA(self, server, session, envelope):
        if self.mode == "drop":
            server.transport.close()
            return "421 closing"
        self.count += 1
        base = os.path.join(self.directory, "%d" % self.count)
        with open(base + ".eml", "wb") as f:
            f.write(envelope.original_content)
        with open(base + ".json", "w") as f:
            json.dump({"from": envelope.mail_from, "to": envelope.rcpt_tos}, f)
        return "250 Message accepted for delivery"


class Silent(asyncio.Protocol):
    """Takes a connection and says nothing."""

    def connection_made(self, transport):
        self.transport = transport


async def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--dir", required=True)
    parser.add_argument("--mode", default="accept", choices=["accept", "refuse", "drop", "silent"])
    args = parser.parse_args()
    os.makedirs(args.dir, exist_ok=True)
    loop = asyncio.get_running_loop()
    if args.mode == "silent":
        server = await loop.create_server(Silent, "127.0.0.1", 0)
    else:
        handler = Handler(args.dir, args.mode)
        server = await loop.create_server(
            lambda: SMTP(handler, hostname="tessaly.test", decode_data=False), "127.0.0.1", 0)
    port = server.sockets[0].getsockname()[1]
    sys.stdout.write("PORT %d\n" % port)
    sys.stdout.flush()
    done = loop.create_future()
    loop.add_signal_handler(signal.SIGTERM, lambda: done.done() or done.set_result(None))
    try:
        # The test that started the server holds its standard input: the
        # server ends when the test closes it, or when the test ends.
        loop.add_reader(sys.stdin.fileno(),
                        lambda: sys.stdin.buffer.read1(4096) or done.done() or done.set_result(None))
    except OSError:
        pass  # not a pipe: the server ends when it is terminated
    await done
    server.close()


if __name__ == "__main__":
    asyncio.run(main())
