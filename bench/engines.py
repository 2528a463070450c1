"""The real Prometheus and Alertmanager, as processes of a measurement's own on ports of the loopback interface."""

import datetime
import json
import re
import socket
import subprocess
import time
import urllib.parse
import urllib.request

READY = 30  # seconds


def free_port():
    with socket.socket() as one:
        one.bind(("127.0.0.1", 0))
        return one.getsockname()[1]


def started(command, **options):
    """It ends when this process ends, however that does."""
    return subprocess.Popen(["setpriv", "--pdeathsig", "TERM", *map(str, command)], **options)


def ended(processes, patience=30):
    for process in processes:
        process.terminate()
    deadline = time.monotonic() + patience
    for process in processes:
        try:
            process.wait(max(deadline - time.monotonic(), 0))
        except subprocess.TimeoutExpired:
            process.kill()
            process.wait()


def fetched(url, **headers):
    with urllib.request.urlopen(urllib.request.Request(url, headers=headers), timeout=20) as answer:
        return answer.read()


class Engine:
    def __init__(self, program, folder, settings, *options):
        folder.mkdir()
        self.url = f"http://127.0.0.1:{free_port()}"
        (folder / "settings.yml").write_text(json.dumps(settings))  # which is YAML
        self.process = started([program, f"--config.file={folder}/settings.yml", *options, "--log.level=error",
                                f"--web.listen-address={self.url[7:]}"])
        self.await_ready()

    def await_ready(self):
        deadline = time.monotonic() + READY
        while True:
            try:
                return fetched(self.url + "/-/ready")
            except OSError:
                if time.monotonic() > deadline or self.process.poll() is not None:
                    self.close()
                    raise
            time.sleep(0.1)

    def own(self, name):
        """The sum of a metric of its own."""
        text = fetched(self.url + "/metrics").decode()
        return sum(map(float, re.findall(rf"^{name}(?:{{.*}})? (\S+)$", text, re.MULTILINE)))

    def close(self):
        ended([self.process])


class Alertmanager(Engine):
    def __init__(self, folder):
        super().__init__("prometheus-alertmanager", folder,
                         {"route": {"receiver": "nobody"}, "receivers": [{"name": "nobody"}]},
                         f"--storage.path={folder}/data", "--cluster.listen-address=")

    def active(self, names):
        """Labels, when it began, and when it was last told."""
        query = urllib.parse.urlencode({"active": "true", "filter": f'alertname=~"{"|".join(names)}"'})
        for alert in json.loads(fetched(f"{self.url}/api/v2/alerts?{query}")):
            yield alert["labels"], moment(alert["startsAt"]), moment(alert["updatedAt"])


def moment(text):
    return datetime.datetime.fromisoformat(text.replace("Z", "+00:00")).timestamp()


class Prometheus(Engine):
    def __init__(self, folder, targets, interval, rules, alertmanager):
        """`targets`: addresses by name."""
        settings = {
            "global": {"scrape_interval": f"{interval}s", "evaluation_interval": f"{interval}s",
                       "scrape_timeout": f"{interval}s"},
            "rule_files": [str(rules)],
            "alerting": {"alertmanagers": [{"static_configs": [{"targets": [alertmanager.url[7:]]}]}]},
            "scrape_configs": [{"job_name": "zeb", "static_configs": [
                {"targets": [address], "labels": {"instance": name}} for name, address in targets.items()]}],
        }
        super().__init__("prometheus", folder, settings, f"--storage.tsdb.path={folder}/data")

    def values(self, query):
        """One a series; of a range, all of it."""
        answer = json.loads(fetched(f"{self.url}/api/v1/query?{urllib.parse.urlencode({'query': query})}"))
        return [float(text) for series in answer["data"]["result"]
                for _, text in series.get("values") or [series["value"]]]
