"""docs/performance.md has two writers: down to the heading of the fleet it is report.py's, from there on fleet_report.py's."""

FLEET = "## A fleet\n"


def split(file):
    text = file.read_text() if file.exists() else ""
    first, heading, rest = text.partition(FLEET)
    return first, heading + rest


def write_first(file, text):
    fleet = split(file)[1]
    file.write_text(text.rstrip("\n") + "\n" + ("\n" + fleet if fleet else ""))


def write_fleet(file, text):
    first = split(file)[0]
    file.write_text((first.rstrip("\n") + "\n\n" if first else "") + FLEET + text.rstrip("\n") + "\n")
