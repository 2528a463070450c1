"""Network namespaces with many ports, made for a measurement and taken away after it."""

import json
import os
import select
import subprocess
import tempfile
import time

PEER_GROUP = 7
QUIET, PATIENCE = 4, 150  # seconds


def run(*command, **options):
    return subprocess.run(command, check=True, **options)


def batch(namespace, lines):
    with tempfile.NamedTemporaryFile("w", suffix=".batch") as file:
        file.write("\n".join(lines) + "\n")
        file.flush()
        run("ip", "-n", namespace, "-batch", file.name)


class Lab:
    """A namespace with `ports` veth ports, e0 and on, whose peers p0 and on are in a namespace of their own."""

    def __init__(self, ports):
        self.ports = ports
        self.name = f"zeb-bench-{os.getpid()}-{ports}"
        self.peers = self.name + "-peers"

    def __enter__(self):
        try:
            for namespace in (self.name, self.peers):
                run("ip", "netns", "add", namespace)
                # Without duplicate address detection nothing happens by itself once the ports are up.
                run("ip", "netns", "exec", namespace, "sysctl", "-q", "-w",
                    "net.ipv6.conf.default.accept_dad=0")
            # The kernel takes its time with a link that has the number of its peer.
            run("ip", "-n", self.peers, "link", "add", "offset", "type", "veth", "peer", "name", "offset2")
            batch(self.name, (f"link add e{i} type veth peer name p{i} netns {self.peers}"
                              for i in range(self.ports)))
            batch(self.peers, (f"link set p{i} group {PEER_GROUP}" for i in range(self.ports)))
            run("ip", "-n", self.peers, "link", "set", "group", str(PEER_GROUP), "up")
            run("ip", "-n", self.name, "link", "set", "group", "0", "up")
            self.settle()
        except BaseException:
            self.__exit__()
            raise
        return self

    def settle(self):
        """Waits until nothing is announced any more: the kernel takes up a hundred links a second."""
        monitor = subprocess.Popen(["ip", "-n", self.name, "monitor"], stdout=subprocess.PIPE)
        try:
            deadline = time.monotonic() + PATIENCE
            while select.select([monitor.stdout], [], [], QUIET)[0]:
                os.read(monitor.stdout.fileno(), 1 << 20)
                if time.monotonic() > deadline:
                    raise RuntimeError("the interfaces do not come to rest")
        finally:
            monitor.kill()
            monitor.wait()

    def __exit__(self, *_):
        for namespace in (self.name, self.peers):
            subprocess.run(["ip", "netns", "del", namespace], stderr=subprocess.DEVNULL, check=False)

    def call(self, command, timeout, environment=None):
        """What a command prints as JSON, run in the namespace."""
        done = run("ip", "netns", "exec", self.name, *command, timeout=timeout, stdout=subprocess.PIPE,
                   env=environment)
        return json.loads(done.stdout)
