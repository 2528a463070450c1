"""fleet_report.py FIGURES [DOCS]: what a fleet costs, to standard output or with its picture into docs/performance.md."""

import json
import pathlib
import statistics
import subprocess
import sys
import tempfile
import time

import parts
from report import busy, machine, number, percentile, spread, versions

FLEET_SIZE = 10000
BYTES_OF_SAMPLE = 1.5  # on a disk, compressed
DAY = 86400
WAYS = {"straight_port": "straight, `ZebConnectivityLost` of a port", "straight_team": "straight, `ZebTeamFailed`",
        "rule_team": "scrape and rule, `ZebTeamDown` (`for: 0s`)",
        "rule_port": "scrape and rule, `ZebPortDown` (`for: 30s`)"}
PICTURE = "From a pulled cable to a firing alert"


def one_server(f):
    interval = f["interval"]
    scrape = [10 * interval * (b - a) for a, b in zip(f["rest_percent"], f["scraped_percent"])]
    yield "processor at rest", spread(f["rest_percent"], " % of a core")
    yield f"processor, scraped every {interval} s", spread(f["scraped_percent"], " % of a core")
    yield "processor time of a scrape", spread(scrape, " ms")
    yield "memory at rest, the server and the plug-in's process", spread(f["rest_mib"], " MiB")
    yield "memory, scraped", spread(f["scraped_mib"], " MiB")
    yield "time of a scrape, median", number(1e3 * statistics.median(f["scrape_seconds"])) + " ms"
    yield "time of a scrape, p99", number(1e3 * percentile(f["scrape_seconds"], 0.99)) + " ms"
    yield "samples of a scrape", number(f["scrape_series"])
    yield "bytes of a scrape", number(f["scrape_bytes"]) + f", compressed {number(f['scrape_gzip_bytes'])}"


def delays(f):
    for name, what in WAYS.items():
        found = f["delays"][name]
        shown = [number(of) + " s" for of in (statistics.median(found), percentile(found, 0.99), max(found))] if found \
            else ["not measured"] * 3
        yield what, *shown, f"{len(found)} of {f['changes']}"


def on_paper(f):
    """By interval of scrapes: what 10,000 such servers ask for."""
    of_sample = f["prometheus_percent"] / 100 / f["samples_a_second"]
    series = FLEET_SIZE * f["series"] / f["servers"]
    for interval in (5, 15, 30, 60):
        samples = series / interval
        scrapes = FLEET_SIZE / interval
        yield (f"{interval} s", number(scrapes), number(samples),
               number(scrapes * f["scrape_gzip_bytes"] * 8 / 1e6) + " Mbit/s", number(samples * of_sample),
               number(samples * BYTES_OF_SAMPLE * DAY / 2**30) + " GiB")


def table(head, rows):
    line = lambda cells: "| " + " | ".join(cells) + " |"
    return [line(head), "|" + "---|" * len(head), *map(line, rows)]


def text(f):
    began = time.strftime("%Y-%m-%d %H:%M", time.gmtime(f["began"]))
    series = FLEET_SIZE * f["series"] / f["servers"]
    of_series = (f["prometheus_mib"] - f["prometheus_idle_mib"]) * 1024 / f["series"]
    return "\n".join([
        "", f"Written by `bench/fleet`, begun {began} UTC: {machine()}; {f['servers']} servers, "
        f"{f['seconds'] / 60:.0f} minutes. {busy(f['load'])}", "",
        f"Versions: {versions(['prometheus', 'prometheus-alertmanager'])}.", "",
        "Each server is a `zebcim-server` on a recording of its own: eight ports, a team of two and two VLANs. One",
        f"Prometheus scrapes them all every {f['interval']} s and evaluates the installed rules as often; one Alertmanager is told",
        "by it and straight by the servers. All of them share the machine.", "",
        *table(("one server", "median (smallest to largest)"), one_server(f)), "",
        "Each server loses the cables of a team and of a port at moments of its own; what counts is when Alertmanager was",
        "told. A recording is looked at ten times a second, so up to 0.1 s of each time is not in it where the kernel tells.",
        "A rule waits for the next scrape, for the next evaluation, and then for as long as its `for` says.", "",
        *table(("from a pulled cable to a firing alert", "p50", "p99", "longest", "seen"), delays(f)), "",
        f"![{PICTURE}](performance/fleet.svg)", "",
        f"Prometheus took {number(f['prometheus_percent'])} % of a core for {number(f['samples_a_second'])} samples a second, "
        f"rules included, and {number(f['prometheus_mib'])} MiB",
        f"with {number(f['series'])} series, {of_series:.1f} KiB for each of them; Alertmanager {number(f['alertmanager_mib'])} MiB.", "",
        f"### {FLEET_SIZE:,} servers, on paper", "",
        f"What was measured times {FLEET_SIZE / f['servers']:.0f}: {series:,.0f} series, some {series * of_series / 2**20:.0f} GiB of Prometheus's memory for them, "
        "as much again for queries", "and restarts. A sample takes 1 to 2 bytes on its disk.", "",
        *table(("scraped every", "scrapes a second", "samples a second", "network", "cores of Prometheus", "disk a day"),
               on_paper(f)), ""])


def draw(f, file):
    """Which part of all changes had an alert after so many seconds."""
    with tempfile.TemporaryDirectory() as scratch:
        plots = []
        for name, what in WAYS.items():
            found = f["delays"][name]
            data = pathlib.Path(scratch) / name
            if found:
                data.write_text("".join(f"{percentile(found, part / 100)} {part}\n" for part in range(101)))
                plots.append(f"'{data}' using 1:2 with lines linewidth 2 title '{what.replace('`', '')}'")
        script = (f"set terminal svg size 720,440 background 'white' font 'sans,12'\nset output '{file}'\n"
                  f"set title '{PICTURE}, {f['servers']} servers'\nset xlabel 's'\nset ylabel '% of all'\n"
                  f"set logscale x\nset xrange [0.05:60]\nset grid\nset key below maxcols 2\nset yrange [0:100]\nplot {', '.join(plots)}\n")
        subprocess.run(["gnuplot"], input=script, text=True, check=True)


def main():
    figures = json.loads(pathlib.Path(sys.argv[1]).read_text())
    written = text(figures)
    if len(sys.argv) > 2:
        docs = pathlib.Path(sys.argv[2])
        (docs / "performance").mkdir(parents=True, exist_ok=True)
        draw(figures, docs / "performance" / "fleet.svg")
        parts.write_fleet(docs / "performance.md", written)
    print(written)


if __name__ == "__main__":
    main()
