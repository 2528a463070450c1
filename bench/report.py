"""report.py FIGURES [DOCS]: the table of what things cost, to standard output or with pictures into a folder."""

import json
import pathlib
import platform
import re
import statistics
import subprocess
import sys
import tempfile
import time

import parts

TOOLS = {"ip": "`ip -j -s -d link`", "ethtool": "`ethtool`, once a port", "lshw": "`lshw -class network -json`",
         "snmp": "SNMP walk of the interface tables", "exporter": "node exporter: netclass, ethtool, netdev, bonding",
         "zebcim": "`zebcim --json instances ZEB_EthernetPort`, started anew",
         "zebcim_service": "the same with a service that is asked",
         "zebcim_get": "`zebcim get` of one port with a service",
         "metrics": "`zebcim metrics`, started anew", "scrape": "`GET /metrics` of a service"}
PACKAGES = ["iproute2", "ethtool", "lshw", "snmpd", "prometheus-node-exporter", "libsqlite3-0", "g++"]


def percentile(values, share):
    ordered = sorted(values)
    return ordered[min(len(ordered) - 1, int(share * len(ordered)))]


def number(value):
    return f"{value:.3g}" if value < 100 else f"{value:,.0f}"


class Results:
    def __init__(self, file):
        self.data = json.loads(pathlib.Path(file).read_text())
        self.figures = self.data["figures"]
        self.sizes = self.data["sizes"]

    def of(self, name, ports):
        return self.figures.get(name, {}).get(str(ports), [])

    def ratios(self, name, ports, other, other_ports):
        """Of figures that were taken in the same run."""
        pairs = zip(self.of(name, ports), self.of(other, other_ports))
        return [a / b for a, b in pairs if b]


def spread(values, unit, of=statistics.median):
    if not values:
        return "not measured"
    middle = number(of(values)) + unit
    return middle if len(values) < 2 else f"{middle} ({number(min(values))} to {number(max(values))})"


def verdict(values, limit, of=statistics.median):
    return "" if not values else "yes" if of(values) <= limit else "**no**"


def rows(r):
    """What is measured, its figures, their unit, the limit, and what of them is held against it."""
    p99 = lambda values: percentile(values, 0.99)
    largest = max(r.sizes)
    for ports, limit in ((1000, 50), (4000, 300)):
        if ports in r.sizes:
            yield f"cold start to a full model, {ports:,} ports", r.of("cold", ports), " ms", limit, None
    yield "enumerate 1,000 ports, warm", r.of("enumerate", 1000), " ms", 20, None
    yield ("enumerate 1,000 ports, warm, against `ip -j -s -d link`", r.ratios("enumerate", 1000, "tool_ip", 1000),
           " times", 1.2, None)
    yield (f"getInstance of one port among {largest:,}", [1e3 * v for v in r.of("get", largest)], " µs", 1000, None)
    yield (f"associators of one port, {largest:,} ports against 100",
           r.ratios("associators", largest, "associators", 100), " times", 1.5, None)
    yield "build of 10,000 ports against 1,000", r.of("build_ratio", 10000), " times", 12, None
    yield "memory a managed instance, 10,000 ports", r.of("bytes", 10000), " bytes", 600, None
    yield "one idle worker pass, 1,000 ports", r.of("pass", 1000), " ms", 10, None
    yield "dumps of one idle worker pass (links, addresses, routes of two families, link modes)", \
        r.of("pass_dumps", 1000), "", 5, None
    yield ("one idle worker pass, 1,000 teams against 100", r.ratios("team_pass", 1000, "team_pass", 100),
           " times", 12, None)
    for name, what, limit in (("zebcim", "`zebcim --json instances ZEB_EthernetPort`, 1,000 ports, by itself", 40),
                              ("zebcim_service", "the same with a service", 30),
                              ("zebcim_get", "`zebcim get` of one of 1,000 ports, with a service", 10)):
        yield what, r.of("tool_" + name, 1000), " ms", limit, None
    for ports in r.sizes:
        yield (f"metrics as text, {ports:,} ports, processor, against `ip -j -s -d link` between them",
               r.of("scrape_text_ratio", ports), " times", 1, None)
        yield ("the same when something has changed", [a / b for a, b in zip(r.of("scrape_text_anew", ports),
                                                                        r.of("scrape_text_ip", ports))], " times", None, None)
        yield (f"`GET /metrics` of {ports:,} ports, processor, against node exporter",
               r.ratios("tool_scrape_processor", ports, "tool_exporter_processor", ports), " times", 0.1, None)
    yield "dumps of a scrape while nothing is announced", r.of("scrape_text_dumps", largest), "", 1, max
    yield ("enumerate 1,000 recorded ports over HTTP against the C interface",
           r.ratios("wire_whole", 1000, "recorded_enumerate", 1000), " times", 2, None)
    yield ("the same of 4,000 ports, a port, against 1,000",
           [v / 4 for v in r.ratios("wire_whole", 4000, "wire_whole", 1000)], " times", 1.1, None)
    yield ("memory for 10,000 ports, 100 at a time, against one answer",
           [100 * v for v in r.ratios("wire_pull_kib", 10000, "wire_whole_kib", 10000)], " %", 10, None)
    yield ("the first 100 of 10,000 ports against one answer",
           [100 * v for v in r.ratios("wire_pull_first", 10000, "wire_whole", 10000)], " %", None, None)
    yield ("10,000 ports 100 at a time against one answer", r.ratios("wire_pull", 10000, "wire_whole", 10000),
           " times", None, None)
    yield ("bytes of 1,000 ports, compressed",
           [100 * v for v in r.ratios("wire_gzip_bytes", 1000, "wire_bytes", 1000)], " %", None, None)
    for ports, limit in ((1, 150), (1000, 400)):
        name = "1 port" if ports == 1 else f"{ports:,} ports"
        delays = r.of("alert_delays", ports)
        yield f"link message to indication, {name}, median", delays, " ms", None, None
        yield f"link message to indication, {name}, p99", delays, " ms", limit, p99
    yield "1,000 ports down (or up) at once: until the last is reported", r.of("storm_delays", 1000), " ms", 2000, max
    yield "of them reported", r.of("storm_reported", 1000), "", None, None
    yield f"idle processor time, {largest:,} ports, mean", r.of("idle_percent", largest), " % of a core", 0.1, \
        statistics.mean
    yield "64 open pages at rest, 1,000 ports, mean", r.of("pages_percent", 1000), " % of a core", 2, statistics.mean
    yield "4,000 ports in a browser, first sight", r.of("page_sight", 4000), " ms", 1000, None
    yield "4,000 ports in a browser, a frame of scrolling, median", r.of("page_frames", 4000), " ms", 50, None
    yield "4,000 ports in a browser, a frame of scrolling, p99", r.of("page_frames", 4000), " ms", None, p99
    yield "transactions of the first build of 10,000 ports", r.of("store_transactions", 10000), "", 1, None


def table(r):
    lines = ["| what | median (smallest to largest) | at most | met |", "|---|---|---|---|"]
    for what, values, unit, limit, of in rows(r):
        shown = spread(values, unit, of or statistics.median)
        lines.append(f"| {what} | {shown} | {'' if limit is None else f'{limit:,}{unit}'} | "
                     f"{'' if limit is None else verdict(values, limit, of or statistics.median)} |")
    return lines


def beside(r):
    """The tools, and how many times the time of the plug-in's answer to the same question they take."""
    own = {"enumerate": "the plug-in: ports", "enumerate_facts": "the plug-in: ports and their counters"}
    head = "".join(f" {ports:,} ports |" for ports in r.sizes)
    lines = [f"| |{head} against ports and counters, 1,000 ports |", "|---|" + "---|" * len(r.sizes) + "---|"]
    reference = r.of("enumerate_facts", 1000)
    for name, what in own.items():
        cells = "".join(f" {spread(r.of(name, ports), ' ms')} |" for ports in r.sizes)
        lines.append(f"| {what} |{cells} |")
    for name, what in TOOLS.items():
        cells = ""
        for ports in r.sizes:
            ended = r.of(f"tool_{name}_ended", ports)
            cells += f" {'more than ' if ended else ''}{spread(r.of('tool_' + name, ports), ' ms')} |"
        times = r.of("tool_" + name, 1000)
        against = statistics.median(times) / statistics.median(reference) if times and reference else 0
        lines.append(f"| {what} |{cells} {number(against)} times |")
    return lines


# Picture, title, unit, and what it shows: name of the figures and label.
PICTURES = [
    ("cold", "Cold start to a full model", "ms", [("cold", "first answer to come")]),
    ("enumerate", "All ports, beside the tools", "ms",
     [("enumerate", "plug-in: ports"), ("enumerate_facts", "plug-in: ports and counters"), ("tool_ip", "ip"),
      ("tool_snmp", "snmpd"), ("tool_lshw", "lshw"), ("tool_exporter", "node exporter"), ("tool_scrape", "scrape"),
      ("tool_ethtool", "ethtool")]),
    ("requests", "Requests about one port", "ms",
     [("get", "getInstance"), ("associators", "associators"), ("references", "references")]),
    ("pass", "One idle pass of the worker", "ms", [("pass", "clock"), ("pass_processor", "processor")]),
    ("alerts", "Link message to indication", "ms",
     [("alert_delays", "one port"), ("storm_delays", "all ports at once, the last")]),
    ("idle", "Idle processor time", "% of a core", [("idle_percent", "plug-in")]),
    ("build", "Build of recorded ports", "ms", [("build", "build"), ("recorded_cold", "start, with reading the file")]),
]


def draw(r, folder):
    folder.mkdir(parents=True, exist_ok=True)
    for name, title, unit, series in PICTURES:
        with tempfile.TemporaryDirectory() as scratch:
            of = statistics.mean if name == "idle" else statistics.median
            plots = []
            for key, label in series:
                points = sorted((int(ports), values) for ports, values in r.figures.get(key, {}).items() if values)
                if not points:
                    continue
                file = pathlib.Path(scratch) / key
                file.write_text("".join(f"{ports} {of(v)} {min(v)} {max(v)}\n" for ports, v in points))
                plots.append(f"'{file}' using 1:2 with lines notitle linestyle {len(plots) + 1}, "
                             f"'{file}' using 1:2:3:4 with yerrorbars title '{label}' linestyle {len(plots) + 1}")
            script = (f"set terminal svg size 720,440 background 'white' font 'sans,12'\n"
                      f"set output '{folder / (name + '.svg')}'\nset title '{title}'\nset xlabel 'ports'\n"
                      f"set ylabel '{unit}'\nset logscale xy\nset grid\nset key below maxcols 3\n"
                      f"set pointsize 0.6\nplot {', '.join(plots)}\n")
            if plots:
                subprocess.run(["gnuplot"], input=script, text=True, check=True)


def versions(packages):
    listed = subprocess.run(["dpkg-query", "-W", "-f", "${Package} ${Version}\n", *packages], text=True,
                            stdout=subprocess.PIPE, check=False).stdout
    return ", ".join(line.strip() for line in listed.splitlines())


def machine():
    cores = re.findall(r"^model name\s*: (.*)$", pathlib.Path("/proc/cpuinfo").read_text(), re.MULTILINE)
    memory = re.search(r"MemTotal:\s+(\d+)", pathlib.Path("/proc/meminfo").read_text()).group(1)
    return f"{len(cores)} cores of {cores[0]}, {int(memory) // 2**20} GiB, Linux {platform.release()}"


# What the processor times are of, by name of the figures.
PROCESSOR = {"enumerate_processor": "all ports", "pass_processor": "an idle pass", "tool_ip_processor": "`ip`",
             "tool_lshw_processor": "`lshw`", "tool_snmp_processor": "an SNMP walk, agent and client"}


def processor(r):
    """The work itself, whatever else the machine had to do."""
    times = ", ".join(f"{what} {spread(r.of(name, 1000), ' ms')}" for name, what in PROCESSOR.items() if
                      r.of(name, 1000))
    return ["A row of the clock is longer by the time that a process waits for a core while other programs run, which",
            "this one does not count. Processor time at 1,000 ports:", f"{times}."]


def busy(load):
    return (f"The machine was busy with other work when it began (load {load:.1f}), so times of the clock are longer than "
            "need be." if load > 0.5 else "Nothing else ran on the machine.")


def document(r):
    data = r.data
    began = time.strftime("%Y-%m-%d %H:%M", time.gmtime(data["began"]))
    return "\n".join([
        "# What things cost", "",
        f"Written by `bench/run`, begun {began} UTC: {machine()}; {data['runs']} runs, {data['alerts']} alerts for each "
        f"number of ports, {data['seconds'] / 60:.0f} minutes. {busy(data['load'])}", "",
        f"Versions: {versions(PACKAGES)}.", "",
        "Ports are veth interfaces in a network namespace that are up, with the other ends in another; the plug-in is",
        "loaded into the embedded object manager's broker as the file that is installed, and each run is a process of",
        "its own, which keeps the memory of an answer for the next one as the plug-in's process of a server does. A",
        "cold start finds the store of an earlier one. Builds are of recorded ports on cards of four, each with two",
        "addresses and counters.", "",
        *table(r), "",
        "Bytes are what stays allocated after a build, for each managed instance: its share of records, paths, loggers",
        "and indexes included. A pass is mostly the kernel's own work for the five dumps: about three quarters of its",
        "time at 1,000 ports.", "",
        *processor(r), "",
        "## Beside other tools", "",
        "On the same interfaces in the same minutes. The plug-in, snmpd and the exporter are processes that stay and are",
        "asked; the others are started for each answer.", "",
        *beside(r), "",
        "The same facts are what each port is and what it has counted. For the plug-in those are two requests, for all",
        "instances of `ZEB_EthernetPort` and of `ZEB_EthernetStatistics`; for SNMP they are two walks, over the interface",
        "table and its extension. Addresses are in none of them. The tools say more in places (`ip` and the exporter name",
        "every flag) and less in others (link modes are known to `ethtool` alone).", "",
        "Each request of the plug-in asks the kernel anew: that for ports for links and link modes, that for counters for",
        "the counters alone while nothing was announced since the last whole answer, and else for everything. A walk over",
        "SNMP gets what the agent keeps for some seconds. On the other side the plug-in is asked through the C interface,",
        "with no wire between, and the time of a walk holds the start of its client, twice.", "",
        "## Growth", "",
        *[f"![{title}](performance/{name}.svg)\n" for name, title, _, _ in PICTURES],
    ])


def main():
    r = Results(sys.argv[1])
    if len(sys.argv) < 3:
        print("\n".join([*table(r), "", *beside(r)]))
        return
    docs = pathlib.Path(sys.argv[2])
    draw(r, docs / "performance")
    parts.write_first(docs / "performance.md", document(r))
    print("\n".join(table(r)))


if __name__ == "__main__":
    main()
