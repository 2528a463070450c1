"""tools.py RUNS LIMIT ZEBCIM: times the tools beside which the plug-in is measured, in the namespace that it is run in.

Prints JSON: for each tool the milliseconds of each run, of the clock and of the processor. A run that takes longer
than LIMIT seconds is ended and counts as that long; there is no other of that tool then.
"""

import json
import os
import resource
import signal
import socket
import subprocess
import sys
import tempfile
import threading
import time
import urllib.request

import processes

SNMP_PORT, EXPORTER_PORT, SERVICE_PORT = 16161, 19100, 15988
COMMUNITY = "bench"


def children_seconds():
    usage = resource.getrusage(resource.RUSAGE_CHILDREN)
    return usage.ru_utime + usage.ru_stime


def run(command, limit, environment=None):
    """Waits for a command as the kernel tells of its end; a wait with a time limit would look only every now and then."""
    with subprocess.Popen(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, env=environment) as process:
        watch = threading.Timer(limit, process.kill)
        watch.start()
        status = process.wait()
        watch.cancel()
    if status == -signal.SIGKILL:
        raise TimeoutError(command[0])
    return status


class Command:
    """A tool that is started anew each time."""

    def __init__(self, *command, environment=None):
        self.command = command
        self.environment = environment

    def __enter__(self):
        return self

    def __exit__(self, *_):
        pass

    def once(self, limit):
        run(self.command, limit, self.environment)

    def seconds(self):
        return children_seconds()


class Daemon:
    """A tool that stays and is asked."""

    def __init__(self, command, ready):
        self.command, self.ready = command, ready

    def __enter__(self):
        self.process = subprocess.Popen(self.command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        deadline = time.monotonic() + 20
        while not self.ready():
            if time.monotonic() > deadline or self.process.poll() is not None:
                self.__exit__()
                raise RuntimeError(f"{self.command[0]} does not answer")
            time.sleep(0.1)
        return self

    def __exit__(self, *_):
        self.process.kill()
        self.process.wait()

    def seconds(self):
        return processes.seconds(self.process.pid) + children_seconds()


def scrape(port, limit):
    with urllib.request.urlopen(f"http://127.0.0.1:{port}/metrics", timeout=limit) as answer:
        answer.read()


class Exporter(Daemon):
    def __init__(self):
        super().__init__(["prometheus-node-exporter", "--collector.disable-defaults", "--collector.netclass",
                          "--collector.ethtool", "--collector.netdev", "--collector.bonding", "--log.level=error",
                          f"--web.listen-address=127.0.0.1:{EXPORTER_PORT}"], self.listening)

    @staticmethod
    def listening():
        with socket.socket() as connection:
            return connection.connect_ex(("127.0.0.1", EXPORTER_PORT)) == 0

    def once(self, limit):
        scrape(EXPORTER_PORT, limit)


class Service(Daemon):
    """A command of zebcim's with a service that answers it."""

    def __init__(self, zebcim, folder, *words):
        state, run = os.path.join(folder, "state"), os.path.join(folder, "run")
        self.environment = {**os.environ, "ZEB_RUN_DIR": run, "ZEB_AUTOSTART": "1"}
        self.words = [zebcim, *words]
        self.socket = os.path.join(run, "zebcim", "socket")
        super().__init__(["env", f"ZEB_RUN_DIR={run}", zebcim, "serve", "--state", state, "--http",
                          f"127.0.0.1:{SERVICE_PORT}", "--https", "none"], lambda: os.path.exists(self.socket) and self.answers())

    def answers(self):
        return run(self.words, 20, self.environment) == 0

    def once(self, limit):
        if run(self.words, limit, self.environment) != 0:
            raise RuntimeError(f"{self.words} failed")

    def __exit__(self, *_):
        self.process.terminate()
        self.process.wait()


class Scrape(Service):
    """The metrics of that service, over HTTP."""

    def __init__(self, zebcim, folder):
        super().__init__(zebcim, folder, "get", "e0")

    def once(self, limit):
        scrape(SERVICE_PORT, limit)


class Snmp(Daemon):
    def __init__(self, folder):
        configuration = os.path.join(folder, "snmpd.conf")
        with open(configuration, "w") as file:
            file.write(f"rocommunity {COMMUNITY} 127.0.0.1\nagentaddress udp:127.0.0.1:{SNMP_PORT}\n")
        super().__init__(["snmpd", "-f", "-Lo", "-C", "-c", configuration, "-p",
                          os.path.join(folder, "snmpd.pid")], self.answers)

    @staticmethod
    def walk(table, patience, limit):
        return run(["snmpbulkwalk", "-v2c", "-c", COMMUNITY, "-Cr50", "-On", "-r0", f"-t{patience}",
                    f"127.0.0.1:{SNMP_PORT}", table], limit) == 0

    def answers(self):
        return self.walk(".1.3.6.1.2.1.1.3", 1, 20)

    def once(self, limit):
        # The interface table and its extension.
        for table in (".1.3.6.1.2.1.2.2", ".1.3.6.1.2.1.31.1.1"):
            if not self.walk(table, limit, limit):
                raise TimeoutError("no answer")


def measure(tool, runs, limit):
    clock, processor = [], []
    with tool:
        for _ in range(runs):
            # What an agent keeps of the last answer is not what is measured.
            time.sleep(0.2)
            begin, begin_seconds = time.monotonic(), tool.seconds()
            try:
                tool.once(limit)
            except OSError:
                return {"clock": [limit * 1e3], "processor": [], "ended": True}
            clock.append((time.monotonic() - begin) * 1e3)
            processor.append((tool.seconds() - begin_seconds) * 1e3)
            if sum(clock) > limit * 1e3:
                break
    return {"clock": clock, "processor": processor, "ended": False}


def main():
    runs, limit, zebcim = int(sys.argv[1]), float(sys.argv[2]), sys.argv[3]
    subprocess.run(["ip", "link", "set", "lo", "up"], check=True)
    each = 'for port in /sys/class/net/e*; do ethtool "${port##*/}"; done'
    with tempfile.TemporaryDirectory() as folder:
        makers = {
            "ip": lambda: Command("ip", "-j", "-s", "-d", "link"),
            "zebcim": lambda: Command(zebcim, "--include-virtual", "--json", "instances", "ZEB_EthernetPort"),
            "zebcim_service": lambda: Service(zebcim, folder, "--json", "instances", "ZEB_EthernetPort"),
            "zebcim_get": lambda: Service(zebcim, folder, "get", "e0"),
            "metrics": lambda: Command(zebcim, "--include-virtual", "metrics"),
            "scrape": lambda: Scrape(zebcim, folder),
            "ethtool": lambda: Command("bash", "-c", each),
            "lshw": lambda: Command("lshw", "-class", "network", "-json"),
            "exporter": Exporter,
            "snmp": lambda: Snmp(folder),
        }
        print(json.dumps({name: measure(maker(), runs, limit) for name, maker in makers.items()}))


if __name__ == "__main__":
    main()
