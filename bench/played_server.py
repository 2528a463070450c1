"""A zebcim-server that plays a recording, in a process of its own."""

import json
import os
import time

import machine
import processes
from engines import fetched, started


class Server:
    """`folder`: its own, which it makes."""

    def __init__(self, options, folder, name, alertmanager):
        folder.mkdir()
        self.name, self.recording = name, folder / "recording.json"
        self.play(machine.running())
        settings = folder / "zebcim.toml"
        settings.write_text(f'[state]\ndirectory = "{folder}/state"\n[alertmanager]\nurls = ["{alertmanager.url}"]\n'
                            f'labels = ["instance={name}"]\n')
        environment = {**os.environ, "ZEB_CONFIG": "/nonexistent", "ZEB_RUN_DIR": f"{folder}/run",
                       "ZEB_STORE_DIR": f"{folder}/store", "ZEB_LOG_LEVEL": "error"}
        self.process = started([options.zebcim, "--plugin", options.plugin, "--source", self.recording, "serve",
                                "--config", settings, "--http", "127.0.0.1:0", "--https", "none"],
                               stdout=-1, env=environment, text=True)

    def await_address(self):
        self.address = self.process.stdout.readline().split()[1]

    def play(self, recording):
        """Returns when it was there."""
        fresh = self.recording.with_suffix(".new")
        fresh.write_text(json.dumps(recording))
        fresh.rename(self.recording)
        return time.time()

    def scraped(self, **headers):
        return fetched(f"http://{self.address}/metrics", **headers)

    def memory(self):
        return sum(map(processes.kib, processes.family(self.process.pid))) / 1024
