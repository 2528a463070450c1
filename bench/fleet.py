"""fleet.py [OPTIONS] FILE: recorded servers with one Prometheus and one Alertmanager; writes what they cost, and how
long it takes from a cable to an alert, as JSON."""

import argparse
import contextlib
import json
import os
import pathlib
import random
import re
import shutil
import sys
import tempfile
import time

import machine
import processes
from engines import Alertmanager, Prometheus, ended
from played_server import Server

TOP = pathlib.Path(__file__).resolve().parent.parent
LOOK = 0.5  # seconds between two looks at the alerts
# By which way and of what: the alert, and the label that names it.
ALERTS = {"straight_port": ("ZebConnectivityLost", "interface", machine.ALONE),
          "straight_team": ("ZebTeamFailed", "team", machine.TEAM),
          "rule_port": ("ZebPortDown", "device", machine.ALONE),
          "rule_team": ("ZebTeamDown", "device", machine.TEAM)}


def bearable():
    """Servers for which half of the memory that is free is enough, 32 MiB each."""
    free = int(re.search(r"MemAvailable:\s*(\d+)", pathlib.Path("/proc/meminfo").read_text())[1])
    return max(100, min(400, free // 2 // (32 * 1024)))


def say(text):
    print(f"fleet: {time.strftime('%H:%M:%S')} {text}", file=sys.stderr, flush=True)


class Fleet:
    def __init__(self, options, folder):
        self.options, self.figures = options, {}
        self.folder = pathlib.Path(folder)
        self.stack = contextlib.ExitStack()
        self.servers = []

    def __enter__(self):
        try:
            self.start()
        except BaseException:
            self.stack.close()
            raise
        return self

    def __exit__(self, *_):
        self.stack.close()

    def start(self):
        self.alertmanager = Alertmanager(self.folder / "alertmanager")
        self.stack.callback(self.alertmanager.close)
        self.stack.callback(lambda: ended([server.process for server in self.servers]))
        for i in range(self.options.servers):
            self.servers.append(Server(self.options, self.folder / str(i), f"server{i}", self.alertmanager))
        for server in self.servers:
            server.await_address()
        for server in self.servers:
            server.scraped()  # answered when the plug-in has started
        one = self.servers[0]
        self.figures["scrape_bytes"] = len(one.scraped())
        self.figures["scrape_gzip_bytes"] = len(one.scraped(**{"Accept-Encoding": "gzip"}))

    def prometheus_of(self, name, servers):
        prometheus = Prometheus(self.folder / name, {one.name: one.address for one in servers}, self.options.interval,
                                self.options.rules, self.alertmanager)
        self.stack.callback(prometheus.close)
        return prometheus

    def scrape(self):
        idle = self.prometheus_of("idle", [])
        self.figures["prometheus_idle_mib"] = processes.kib(idle.process.pid) / 1024
        idle.close()
        self.prometheus = self.prometheus_of("prometheus", self.servers)
        deadline = time.monotonic() + 60
        while sum(self.prometheus.values("up")) < len(self.servers):
            if time.monotonic() > deadline:
                raise RuntimeError("not every server is scraped")
            time.sleep(0.5)

    def window(self, name, *others):
        """Processor time of each server, and of others, over a while, in percent of a core."""
        pids = [one.process.pid for one in (*self.servers, *others)]
        begin, before = time.monotonic(), list(map(processes.seconds, pids))
        time.sleep(self.options.window)
        after, end = list(map(processes.seconds, pids)), time.monotonic()
        percents = [100 * (b - a) / (end - begin) for a, b in zip(before, after)]
        count = len(self.servers)
        self.figures[name + "_percent"] = percents[:count]
        return percents[count:]

    def rest(self):
        self.window("rest")
        self.figures["rest_mib"] = [server.memory() for server in self.servers]

    def scraped(self):
        appended = "prometheus_tsdb_head_samples_appended_total"
        begin, before = time.monotonic(), self.prometheus.own(appended)
        own, = self.window("scraped", self.prometheus)
        self.figures["samples_a_second"] = (self.prometheus.own(appended) - before) / (time.monotonic() - begin)
        self.figures["prometheus_percent"] = own
        self.figures["prometheus_mib"] = processes.kib(self.prometheus.process.pid) / 1024
        self.figures["series"] = self.prometheus.own("prometheus_tsdb_head_series")
        self.figures["scrape_series"] = max(self.prometheus.values("scrape_samples_scraped"))
        self.figures["scrape_seconds"] = self.prometheus.values(f"scrape_duration_seconds[{self.options.window}s]")
        self.figures["scraped_mib"] = [server.memory() for server in self.servers]

    def alerts(self):
        """In each round every server loses its cables once, each at a moment of its own, and gets them back."""
        length = self.options.hold + 3 * self.options.interval
        chance = random.Random(1)
        due = sorted((at + length * i, one) for one, at in enumerate(chance.uniform(0, length) for _ in self.servers)
                     for i in range(self.options.rounds))
        pulled, delays = {}, {name: {} for name in ALERTS}
        begin = time.monotonic()
        end = begin + length * self.options.rounds + self.options.hold
        while (now := time.monotonic()) < end:
            while due and begin + due[0][0] <= now:
                server = self.servers[due.pop(0)[1]]
                pulled.setdefault(server.name, []).append(server.play(machine.cables_pulled(self.options.hold)))
            self.look(pulled, delays)
            time.sleep(max(0, min(now + LOOK, begin + due[0][0] if due else end) - time.monotonic()))
        self.figures["changes"] = self.options.rounds * len(self.servers)
        self.figures["delays"] = {name: sorted(found.values()) for name, found in delays.items()}
        self.figures["alertmanager_mib"] = processes.kib(self.alertmanager.process.pid) / 1024

    def look(self, pulled, delays):
        """The first time that Alertmanager was told of each."""
        names = {alert: (name, label, value) for name, (alert, label, value) in ALERTS.items()}
        for labels, starts, updated in self.alertmanager.active(names):
            name, label, value = names[labels["alertname"]]
            moments = pulled.get(labels["instance"])
            # A clock of milliseconds may be a little behind.
            if moments and labels.get(label) == value and starts > moments[-1] - 0.01:
                delays[name].setdefault((labels["instance"], len(moments)), updated - moments[-1])


def measure(options, folder):
    began, load = time.time(), os.getloadavg()[0]
    with Fleet(options, folder) as fleet:
        say(f"{options.servers} servers at rest")
        fleet.rest()
        fleet.scrape()
        say(f"scraped every {options.interval} s")
        fleet.scraped()
        say("cables")
        fleet.alerts()
    return {**fleet.figures, "servers": options.servers, "interval": options.interval, "window": options.window,
            "began": began, "seconds": time.time() - began, "load": load}


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--servers", type=int, default=bearable())
    parser.add_argument("--interval", type=int, default=5, help="of scrapes and rules, in seconds")
    parser.add_argument("--window", type=int, default=50, help="seconds at rest, and as many scraped")
    parser.add_argument("--hold", type=int, default=45, help="seconds that a cable is out")
    parser.add_argument("--rounds", type=int, default=2, help="times that each server loses its cables")
    build = TOP / "build" / "optimized"
    parser.add_argument("--zebcim", default=build / "manager" / "zebcim")
    parser.add_argument("--plugin", default=build / "provider" / "libZEBEthernetPortProvider.so")
    parser.add_argument("--rules", default=TOP / "packaging" / "prometheus" / "zeb.rules.yml")
    parser.add_argument("file")
    options = parser.parse_args()
    for program in ("prometheus", "prometheus-alertmanager"):
        if not shutil.which(program):
            sys.exit(f"{program} is not installed")
    with tempfile.TemporaryDirectory(prefix="zeb-fleet-") as folder:
        figures = measure(options, folder)
    pathlib.Path(options.file).write_text(json.dumps(figures))


if __name__ == "__main__":
    main()
