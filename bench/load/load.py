"""People as many as wrk plays on one web host with two workers: what it answers in a second, how long that
takes, what processor time and memory it needs.

    load.py STORE [SECONDS [PEOPLE]]        STORE: sqlite or postgresql

The environment tells VARNEL_HOST_PROGRAM and VARNEL_SOURCE_DIR; scripts/load sets it.
"""

import collections
import json
import os
import shutil
import subprocess
import sys
import threading
import time
from pathlib import Path

SOURCE = Path(os.environ["VARNEL_SOURCE_DIR"])
sys.path.insert(0, str(SOURCE / "tests" / "deploy"))
from machines import EXAMPLE, Host, Postgres, becomes, request, temporary_folder  # noqa: E402

KINDS = {
    "page": "empty form",
    "park": "save",
    "open": "open again",
    "refuse": "send with mistakes: the page with 34 errors",
    "accept": "send: accepted",
    "receipt": "receipt",
}
TICKS = os.sysconf("SC_CLK_TCK")


def processor_seconds(pid):
    fields = Path(f"/proc/{pid}/stat").read_text(encoding="utf-8").rsplit(")", 1)[1].split()
    return (int(fields[11]) + int(fields[12])) / TICKS


def resident(pid):
    for line in Path(f"/proc/{pid}/status").read_text(encoding="utf-8").splitlines():
        if line.startswith("VmRSS:"):
            return int(line.split()[1])
    return 0


class MemoryWatch(threading.Thread):
    """The resident memory, ten times over the run."""

    def __init__(self, pid, seconds):
        super().__init__(daemon=True)
        self.pid = pid
        self.pause = seconds / 10
        self.samples = []
        self.ended = threading.Event()

    def run(self):
        while not self.ended.wait(self.pause):
            self.samples.append(resident(self.pid))


def run_seconds(port):
    """How long the library's runs took, and how many there were, as the host counts them."""
    text = request(port, "GET", "/metrics")[2]
    values = dict(line.rsplit(" ", 1) for line in text.splitlines() if not line.startswith("#"))
    stage = 'varnel_stage_seconds_{}{{stage="run"}}'
    return float(values[stage.format("sum")]), int(values[stage.format("count")])


def main(store, seconds, people):
    folder = temporary_folder()
    database = Postgres(folder) if store == "postgresql" else None
    host = None
    try:
        word = database.store if database else f"sqlite:{folder / 'store.sqlite'}"
        host = Host(folder, "host", ["--store", word])
        if not becomes(host.is_ready):
            raise RuntimeError((folder / "host.log").read_text(encoding="utf-8"))
        pid = host.process.pid
        watch = MemoryWatch(pid, seconds)
        begun = processor_seconds(pid)
        watch.start()
        wrk = subprocess.run(
            ["wrk", "-t", str(people), "-c", str(people), "-d", str(seconds), "--timeout", "60",
             "-s", SOURCE / "bench" / "load" / "cycle.lua", f"http://127.0.0.1:{host.port}"],
            env={**os.environ, "VARNEL_EXAMPLE": str(EXAMPLE), "VARNEL_TIMES": str(folder)},
            stdout=subprocess.PIPE, text=True, check=True)
        watch.ended.set()
        used = processor_seconds(pid) - begun
        run_time, runs = run_seconds(host.port)
        print(f"{store}, {people} people, two workers, {seconds} s")
        report(times_in(folder), seconds, used, run_time / max(runs, 1), watch.samples)
        print("".join(line for line in wrk.stdout.splitlines(True) if "ocket errors" in line), end="")
        for trouble, count in troubles_in(folder / "host.log").items():
            print(f"in the log {count} times: {trouble}")
    finally:
        if host:
            host.close()
        if database:
            database.close()
        shutil.rmtree(folder)


def times_in(folder):
    """The milliseconds of the answers, sorted, by the kind of the request; and what went wrong."""
    times = {kind: [] for kind in KINDS}
    wrong = []
    for file in folder.glob("*.times"):
        for line in file.read_text(encoding="utf-8").splitlines():
            words = line.split()
            if words[0] == "wrong":
                wrong.append(line)
            else:
                times[words[0]].append(float(words[1]))
    return {kind: sorted(each) for kind, each in times.items()}, wrong


def troubles_in(log):
    """What the host's log tells of trouble with the store or the deployment, and how often."""
    events = (json.loads(line) for line in log.read_text(encoding="utf-8").splitlines()
              if line.startswith("{"))
    return collections.Counter(
        f"{event['event']}: {event['reason']}" for event in events
        if event["event"] in ("store-problem", "run-failed", "answer-lost", "error"))


def at(times, share):
    return times[min(int(len(times) * share), len(times) - 1)] if times else 0


def report(told, seconds, used, run_time, memory):
    times, wrong = told
    total = sum(len(each) for each in times.values())
    sent = sorted(times["refuse"] + times["accept"])
    print(f"{total / seconds:.1f} requests/s; {len(sent) / seconds:.1f} submissions/s, p50 "
          f"{at(sent, 0.5):.1f} ms, p99 {at(sent, 0.99):.1f} ms; {len(wrong)} unexpected answers "
          f"{wrong[:3]}")
    print("\n| request | each second | p50 ms | p99 ms |\n|---|---|---|---|")
    for kind, words in KINDS.items():
        each = times[kind]
        print(f"| {words} | {len(each) / seconds:.1f} | {at(each, 0.5):.1f} | {at(each, 0.99):.1f} |")
    cycles = max(len(times["receipt"]), 1)
    print(f"\nprocessor time of the host: {used / cycles * 1000:.2f} ms for each whole cycle "
          f"(six requests, three runs); a run took {run_time * 1000:.2f} ms by the clock")
    print("resident memory, KiB, over the run: " + " ".join(map(str, memory)), flush=True)


if __name__ == "__main__":
    if len(sys.argv) < 2 or sys.argv[1] not in ("sqlite", "postgresql"):
        sys.exit(__doc__)
    main(sys.argv[1], int(sys.argv[2]) if len(sys.argv) > 2 else 60,
         int(sys.argv[3]) if len(sys.argv) > 3 else 8)
