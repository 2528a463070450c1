"""pages.py ZEBCIM SECONDS [WINDOWS]: what 64 open pages cost, in percent of a core, one number a window, as JSON.

Serves this network namespace with all its interfaces as ports, and opens the stream of events 64 times. The time is
that of the server and of the plug-in's process; first sight, the state of the whole machine, is not in it."""

import json
import os
import re
import select
import socket
import subprocess
import sys
import tempfile
import time

import processes

PAGES = 64
SIGHT = 20  # seconds


def read_for(pages, duration):
    """Reads what comes; how many bytes came."""
    end, count = time.monotonic() + duration, 0
    while (left := end - time.monotonic()) > 0:
        for page in select.select(pages, [], [], left)[0]:
            got = page.recv(1 << 20)
            if not got:
                raise RuntimeError("the server has ended a stream")
            count += len(got)
    return count


def main():
    program, length, windows = sys.argv[1], float(sys.argv[2]), int((sys.argv[3:] or ["1"])[0])
    with tempfile.TemporaryDirectory() as folder:
        settings = os.path.join(folder, "zebcim.toml")
        with open(settings, "w") as file:
            file.write(f'[state]\ndirectory = "{folder}/state"\n')
        environment = {**os.environ, "ZEB_CONFIG": "/nonexistent", "ZEB_STORE_DIR": folder, "ZEB_RUN_DIR": folder}
        server = subprocess.Popen([program, "--include-virtual", "serve", "--config", settings, "--http", "127.0.0.1:0",
                                   "--https", "none"], stdout=subprocess.PIPE, env=environment, text=True)
        try:
            port = int(re.search(r":(\d+)$", server.stdout.readline().strip()).group(1))
            pages = [socket.create_connection(("127.0.0.1", port)) for _ in range(PAGES)]
            for page in pages:
                page.sendall(b"GET /events HTTP/1.1\r\nHost: localhost\r\n\r\n")
            first = read_for(pages, SIGHT)
            percents = []
            for _ in range(windows):
                before = processes.seconds(server.pid)
                read_for(pages, length)
                percents.append(100 * (processes.seconds(server.pid) - before) / length)
            print(json.dumps({"pages_percent": percents, "pages_first_bytes": first // PAGES}))
        finally:
            server.terminate()
            server.wait(20)


main()
