"""What the web host adds to the library's run, in instructions counted by callgrind: for a submission that is
accepted and for one that is refused with its page, from the bytes of the request to those of the answer; and
what an empty form takes.

    instructions.py

Two hosts save and open as many forms; one sends more of them, or opens more empty ones. The difference is what
that takes.
The environment tells VARNEL_HOST_PROGRAM and VARNEL_SOURCE_DIR; scripts/load sets it.
"""

import os
import re
import shutil
import subprocess
import sys
import urllib.parse
from pathlib import Path

SOURCE = Path(os.environ["VARNEL_SOURCE_DIR"])
sys.path.insert(0, str(SOURCE / "tests" / "deploy"))
from kill_test import form_of, hidden_of  # noqa: E402
from machines import becomes, free_port, request, temporary_folder  # noqa: E402

FEW, MANY = 4, 24
PARTS = {
    "all": r"PROGRAM TOTALS",
    "the library's run": r"BuildXML::buildXML\(",
    "the result as JSON": r"resultJson",
    "the page": r"Application::page\(",
    "the answers, decoded": r"decodeBody",
    "the store": r"Store::(?:accept|replace|find)\(",
}


def post(port, path, page, answers, action):
    body = urllib.parse.urlencode({**hidden_of(page), **answers, "_action": action})
    answer = request(port, "POST", path, body, {"Content-Type": "application/x-www-form-urlencoded"})
    if answer is None or answer[0] not in (303, 422):
        raise RuntimeError(f"{action}: {answer and answer[0]}")
    return answer


def counted(folder, form, times):
    """The instructions, by their part, of a host that is sent a form so many times; without a form: that is asked
    for an empty one."""
    port = free_port()
    out = folder / "callgrind.out"
    with open(folder / "host.log", "wb") as log:
        host = subprocess.Popen(
            ["valgrind", "--tool=callgrind", f"--callgrind-out-file={out}",
             os.environ["VARNEL_HOST_PROGRAM"], "--deployment", folder / "inspection", "--listen",
             f"127.0.0.1:{port}", "--store", f"sqlite:{folder / 'store.sqlite'}", "--workers", "1"],
            stdout=log, stderr=log)
    try:
        if not becomes(lambda: (request(port, "GET", "/healthz") or [0])[0] == 200):
            raise RuntimeError((folder / "host.log").read_text(encoding="utf-8"))
        answers = form_of(form or "complete.form")
        page = request(port, "GET", "/forms/inspection")[2]
        for number in range(MANY):
            place = post(port, "/forms/inspection", page, answers, "park")[1]["Location"]
            form_page = request(port, "GET", place)[2]
            if number >= times:
                continue
            if form:
                post(port, place, form_page, answers, "submit")
            else:
                request(port, "GET", "/forms/inspection")
    finally:
        host.terminate()
        host.wait()
    told = subprocess.run(["callgrind_annotate", "--inclusive=yes", "--threshold=100", out],
                          check=True, stdout=subprocess.PIPE, text=True).stdout
    counts = {}
    for part, pattern in PARTS.items():
        # A function and the one within it have one name: the greater number is of the outer one. The
        # store's are several.
        found = {name: int(count.replace(",", "")) for count, name in reversed(
            re.findall(rf"^ *([0-9,]+) \([^)]*\) +.*?({pattern})", told, re.M))}
        counts[part] = sum(found.values())
    return counts


def main():
    for form, words in (("complete.form", "accepted"), ("faulty.form", "refused, with its page"),
                        (None, "an empty form")):
        counts = []
        for times in (FEW, MANY):
            folder = temporary_folder()
            try:
                counts.append(counted(folder, form, times))
            finally:
                shutil.rmtree(folder)
        each = {part: (counts[1][part] - counts[0][part]) / (MANY - FEW) / 1e6 for part in PARTS}
        rest = 2 * each["all"] - sum(each.values())
        print(f"{words}, million instructions: " +
              ", ".join(f"{part} {million:.2f}" for part, million in each.items()) +
              f", the rest {rest:.2f}", flush=True)


if __name__ == "__main__":
    main()
