"""wire.py ZEBCIM PLUGIN SOURCE ROUNDS: what clients of the server wait for and what it takes, as JSON.

A recorded server is served; its ports are asked for over a connection that is kept, as one answer and piece by piece."""

import http.client
import json
import pathlib
import re
import statistics
import subprocess
import sys
import time

import processes

CALL = ('<?xml version="1.0" encoding="utf-8"?><CIM CIMVERSION="2.0" DTDVERSION="2.0"><MESSAGE ID="1" '
        'PROTOCOLVERSION="1.0"><SIMPLEREQ><IMETHODCALL NAME="{}"><LOCALNAMESPACEPATH><NAMESPACE NAME="root"/>'
        '<NAMESPACE NAME="jxv"/></LOCALNAMESPACEPATH>{}</IMETHODCALL></SIMPLEREQ></MESSAGE></CIM>')
PORTS = '<IPARAMVALUE NAME="ClassName"><CLASSNAME NAME="ZEB_EthernetPort"/></IPARAMVALUE>'
CONTEXT = re.compile(rb'NAME="EnumerationContext" PARAMTYPE="string"><VALUE>(\w+)</VALUE>')


def value(name, text):
    return f'<IPARAMVALUE NAME="{name}"><VALUE>{text}</VALUE></IPARAMVALUE>'


class Served:
    """A server of its own, ended with the block."""

    def __init__(self, zebcim, plugin, source):
        self.command = [zebcim, "--plugin", plugin, "--source", source, "serve", "--http", "127.0.0.1:0",
                        "--https", "none"]

    def __enter__(self):
        self.process = subprocess.Popen(self.command, stdout=subprocess.PIPE, text=True)
        host, port = self.process.stdout.readline().split()[1].rsplit(":", 1)
        self.connection = http.client.HTTPConnection(host, int(port), timeout=120)
        return self

    def __exit__(self, *_):
        self.process.terminate()
        self.process.wait(30)

    def ask(self, operation, parameters, **headers):
        self.connection.request("POST", "/cimom", CALL.format(operation, parameters), {
            "Content-Type": "application/xml", "CIMOperation": "MethodCall", "CIMMethod": operation,
            "CIMObject": "root/jxv", **headers})
        return self.connection.getresponse().read()

    def pulled(self, count):
        """The answers of an enumeration, so many instances at a time."""
        answer = self.ask("OpenEnumerateInstances", PORTS + value("MaxObjectCount", count))
        while True:
            yield answer
            context = CONTEXT.search(answer)
            if not context:
                return
            answer = self.ask("PullInstancesWithPath", value("EnumerationContext", context[1].decode()) +
                              value("MaxObjectCount", count))

    def processes(self):
        """The server and the plug-in's process."""
        return [process for process in processes.family(self.process.pid)
                if pathlib.Path(f"/proc/{process}/comm").read_text() != "zebcim-login\n"]

    def memory(self, line):
        """VmRSS or VmHWM of both, in KiB."""
        return sum(processes.kib(process, line) for process in self.processes())

    def growth(self, call):
        """How much memory more than before both took at their highest, in KiB."""
        for process in self.processes():
            pathlib.Path(f"/proc/{process}/clear_refs").write_text("5")  # the highest is what there is now
        before = self.memory("VmRSS")
        call()
        return self.memory("VmHWM") - before


def milliseconds(call):
    begin = time.perf_counter()
    call()
    return 1e3 * (time.perf_counter() - begin)


def measure(zebcim, plugin, source, rounds):
    """Each memory on a server that has answered nothing of the kind before."""
    figures = {}
    with Served(zebcim, plugin, source) as served:
        served.ask("EnumerateInstanceNames", PORTS)
        pieces = []
        figures["wire_pull_kib"] = served.growth(lambda: pieces.extend(
            answer.count(b"<INSTANCE ") for answer in served.pulled(100)))
        figures["wire_pull_first"] = statistics.median(
            milliseconds(lambda: next(served.pulled(100))) for _ in range(rounds))
        figures["wire_pull"] = statistics.median(
            milliseconds(lambda: list(served.pulled(100))) for _ in range(rounds))
    with Served(zebcim, plugin, source) as served:
        served.ask("EnumerateInstanceNames", PORTS)
        figures["wire_whole_kib"] = served.growth(lambda: served.ask("EnumerateInstances", PORTS))
        whole = served.ask("EnumerateInstances", PORTS)
        assert whole.count(b"<INSTANCE ") == sum(pieces), (whole.count(b"<INSTANCE "), sum(pieces))
        figures["wire_whole"] = statistics.median(
            milliseconds(lambda: served.ask("EnumerateInstances", PORTS)) for _ in range(rounds))
        figures["wire_bytes"] = len(whole)
        figures["wire_gzip_bytes"] = len(served.ask("EnumerateInstances", PORTS, **{"Accept-Encoding": "gzip"}))
    return figures


def main():
    zebcim, plugin, source, rounds = sys.argv[1:]
    print(json.dumps(measure(zebcim, plugin, source, int(rounds))))


if __name__ == "__main__":
    main()
