"""measure.py [--quick] FILE: measures everything and writes the figures as JSON."""

import contextlib
import json
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import time

from lab import PEER_GROUP, Lab

BENCH = pathlib.Path(__file__).resolve().parent
BUILD = BENCH.parent / "build" / "optimized"
TOOL = str(BUILD / "bench" / "zeb_bench")
STORE_FILE_COUNTER = slice(24, 28)  # of a SQLite file: transactions that changed it


class Plan:
    def __init__(self, quick):
        self.sizes = [100, 1000] if quick else [100, 1000, 4000]
        self.runs = 2 if quick else 5
        self.alerts = 10 if quick else 40  # of a run
        # Windows longer than the worker's interval, and together longer than that of its polls, 200 s.
        self.idle_seconds, self.idle_windows = (5, 2) if quick else (32, 7)
        self.limit = 20 if quick else 30  # seconds for a run of a tool


def say(text):
    print(f"bench: {time.strftime('%H:%M:%S')} {text}", file=sys.stderr, flush=True)


class Figures:
    """Lists of figures by name and number of ports."""

    def __init__(self):
        self.all = {}

    def add(self, name, ports, value):
        values = value if isinstance(value, list) else [value]
        self.all.setdefault(name, {}).setdefault(str(ports), []).extend(values)

    def add_all(self, ports, answer):
        for name, value in answer.items():
            if name != "ports":
                self.add(name, ports, value)


class Bench:
    def __init__(self, plan, folder, figures):
        self.plan, self.figures = plan, figures
        self.folder = pathlib.Path(folder)
        # As in an installation: the status is posted to memory, the store is on a disk.
        self.status = tempfile.mkdtemp(dir="/dev/shm")

    def environment(self, **more):
        settings = {"ZEB_CONFIG": "/nonexistent", "ZEB_LOG_LEVEL": "error", "ZEB_INCLUDE_VIRTUAL": "1",
                    "ZEB_RUN_DIR": self.status, "ZEB_STORE_DIR": str(self.folder / "store"), "ZEB_AUTOSTART": "0"}
        return {**os.environ, **settings, **more}

    def fresh_store(self):
        shutil.rmtree(self.folder / "store", ignore_errors=True)

    def kernel(self, lab):
        """The plug-in on the kernel's ports, in a process of its own for each figure."""
        call = lambda *command: lab.call([TOOL, *command], 120, self.environment())
        self.fresh_store()
        first = call("cold")
        assert first["ports"] == lab.ports, first
        self.figures.add("cold_first", lab.ports, first["cold"])
        for _ in range(self.plan.runs):
            self.figures.add_all(lab.ports, call("cold"))
            self.figures.add_all(lab.ports, call("requests", "7"))
            self.figures.add_all(lab.ports, call("passes", "9"))
            self.figures.add_all(lab.ports, call("scrapes", "9"))

    def tools(self, lab):
        """In the same minute and on the same interfaces as the plug-in."""
        answer = lab.call([sys.executable, str(BENCH / "tools.py"), str(self.plan.runs), str(self.plan.limit),
                           str(BUILD / "manager" / "zebcim")], 1800, self.environment())
        for name, times in answer.items():
            self.figures.add("tool_" + name, lab.ports, times["clock"])
            self.figures.add("tool_" + name + "_processor", lab.ports, times["processor"])
            if times["ended"]:
                self.figures.add("tool_" + name + "_ended", lab.ports, 1)

    def alerts(self, lab):
        self.fresh_store()
        environment = self.environment(ZEB_AUTOSTART="1")
        for _ in range(self.plan.runs):
            self.figures.add_all(lab.ports, lab.call([TOOL, "alerts", lab.peers, str(self.plan.alerts)], 300,
                                                     environment))
        if lab.ports > 1:
            rounds = str(2 * ((self.plan.runs + 1) // 2))
            self.figures.add_all(lab.ports, lab.call([TOOL, "storm", lab.peers, rounds, str(PEER_GROUP)], 300,
                                                     environment))

    def idle(self, labs):
        """All sizes side by side: what is measured is each process's own time."""
        self.fresh_store()
        processes = []
        for lab in labs:
            environment = self.environment(ZEB_AUTOSTART="1",
                                           ZEB_STORE_DIR=str(self.folder / f"store{lab.ports}"))
            command = ["ip", "netns", "exec", lab.name, TOOL, "idle", str(self.plan.idle_seconds),
                       str(self.plan.idle_windows)]
            processes.append((lab, subprocess.Popen(command, stdout=subprocess.PIPE, env=environment)))
        for lab, process in processes:
            out, _ = process.communicate(timeout=60 + 2 * self.plan.idle_seconds * self.plan.idle_windows)
            self.figures.add_all(lab.ports, json.loads(out))

    def pages(self, lab):
        """64 pages in browsers, open at the server."""
        command = [sys.executable, str(BENCH / "pages.py"), str(BUILD / "manager" / "zebcim"), str(self.plan.idle_seconds),
                   str(self.plan.idle_windows)]
        answer = lab.call(command, 60 + 2 * self.plan.idle_seconds * self.plan.idle_windows)
        self.figures.add("pages_percent", lab.ports, answer["pages_percent"])

    def browser(self, ports):
        """The page of a recorded server, where a browser could be installed."""
        tests = BENCH.parent / "tests" / "browser"
        if not (tests / "node_modules").exists():
            return
        out = subprocess.run(["node", str(tests / "smoothness.mjs"), str(ports), str(self.plan.runs)], check=True,
                             stdout=subprocess.PIPE, timeout=300).stdout
        answer = json.loads(out)
        self.figures.add("page_sight", ports, answer["sights"])
        self.figures.add("page_frames", ports, answer["frames"])

    def recorded(self, ports):
        file = self.folder / f"server{ports}.json"
        subprocess.run([str(BUILD / "bench" / "zeb_bench_server"), str(ports), str(file)], check=True)
        environment = self.environment(ZEB_SOURCE_FILE=str(file))
        call = lambda *command: json.loads(subprocess.run([TOOL, *command], check=True, env=environment,
                                                          stdout=subprocess.PIPE, timeout=300).stdout)
        for _ in range(self.plan.runs):
            answer = {**call("cold"), **call("requests", "5")}
            for name in ("cold", "enumerate", "get", "associators", "references"):
                self.figures.add("recorded_" + name, ports, answer[name])

    def wire(self, ports):
        """The server with the same recorded ports, in the same minute as the plug-in through its interface."""
        file = self.folder / f"server{ports}.json"
        for _ in range(self.plan.runs):
            out = subprocess.run([sys.executable, str(BENCH / "wire.py"), str(BUILD / "manager" / "zebcim"),
                                  str(BUILD / "provider" / "libZEBEthernetPortProvider.so"), str(file), "5"],
                                 check=True, env=self.environment(), stdout=subprocess.PIPE, timeout=600).stdout
            self.figures.add_all(ports, json.loads(out))

    def teams(self):
        """Passes over recorded teams: the kernels that this runs on need not know bonding."""
        files = {teams: self.folder / f"teams{teams}.json" for teams in (100, 1000)}
        for teams, file in files.items():
            subprocess.run([str(BUILD / "bench" / "zeb_bench_server"), "--teams", str(teams), str(file)], check=True)
        for _ in range(self.plan.runs):
            for teams, file in files.items():
                out = subprocess.run([TOOL, "passes", "9"], check=True, stdout=subprocess.PIPE, timeout=300,
                                     env=self.environment(ZEB_SOURCE_FILE=str(file))).stdout
                self.figures.add("team_pass", teams, json.loads(out)["pass"])

    def store(self):
        """Transactions of the first build of 10,000 ports, in a store that knows none of them."""
        counter = lambda: sum(int.from_bytes(file.read_bytes()[STORE_FILE_COUNTER], "big")
                              for file in (self.folder / "store").glob("ZEBEthernetPort*"))
        self.fresh_store()
        for name, ports in (("none", 0), ("many", 10000)):
            file = self.folder / f"store-{name}.json"
            subprocess.run([str(BUILD / "bench" / "zeb_bench_server"), str(ports), str(file)], check=True)
            before = counter() if ports else 0
            subprocess.run([TOOL, "cold"], check=True, stdout=subprocess.DEVNULL, timeout=300,
                           env=self.environment(ZEB_SOURCE_FILE=str(file)))
        self.figures.add("store_transactions", 10000, counter() - before)

    def builds(self):
        test = BUILD / "tests" / "provider" / "classes" / "zeb_build_cost_test"
        for _ in range(self.plan.runs):
            text = subprocess.run([str(test), "--gtest_filter=CostTest.ABuild*"], stdout=subprocess.PIPE,
                                  timeout=600, text=True, check=False).stdout
            few, many, ratio = re.search(r"10,000 ports: ([\d.e+]+) us and ([\d.e+]+) us, ([\d.]+) times",
                                         text).groups()
            self.figures.add("build", 1000, float(few) / 1e3)
            self.figures.add("build", 10000, float(many) / 1e3)
            self.figures.add("build_ratio", 10000, float(ratio))
            self.figures.add("bytes", 10000, float(re.search(r"instances of ([\d.]+) bytes", text).group(1)))

    def close(self):
        shutil.rmtree(self.status, ignore_errors=True)


def measure(plan, folder, figures):
    bench = Bench(plan, folder, figures)
    try:
        say("recorded servers")
        bench.builds()
        bench.store()
        bench.teams()
        for ports in (1000, 4000, 10000):
            bench.recorded(ports)
            bench.wire(ports)
        say("a browser")
        bench.browser(4000)
        say("1 port")
        with Lab(1) as lab:
            bench.alerts(lab)
        with contextlib.ExitStack() as stack:
            labs = []
            for ports in plan.sizes:
                say(f"{ports} ports")
                lab = stack.enter_context(Lab(ports))
                labs.append(lab)
                bench.kernel(lab)
                say(f"{ports} ports: the tools")
                bench.tools(lab)
                say(f"{ports} ports: alerts")
                bench.alerts(lab)
            say("idle")
            for lab in labs:
                lab.settle()
            bench.idle(labs)
            say("pages")
            bench.pages(labs[1])
    finally:
        bench.close()


def main():
    arguments = sys.argv[1:]
    plan = Plan("--quick" in arguments)
    figures = Figures()
    begin = time.time()
    load = os.getloadavg()[0]
    with tempfile.TemporaryDirectory() as folder:
        measure(plan, folder, figures)
    pathlib.Path(arguments[-1]).write_text(json.dumps(
        {"figures": figures.all, "sizes": plan.sizes, "runs": plan.runs, "alerts": plan.alerts * plan.runs,
         "began": begin, "seconds": time.time() - begin, "load": load}))


if __name__ == "__main__":
    main()
