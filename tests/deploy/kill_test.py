"""People fill in and send forms while hosts and the database are killed.

    kill_test.py [PEOPLE [SECONDS]]

Three hosts on one PostgreSQL behind HAProxy. Afterwards every form that was acknowledged is there with
its answers, every accepted message was delivered (to a directory exactly once, over HTTP at least once
under one key), and no page held anything of somebody else.
"""

import html
import random
import re
import shutil
import sys
import threading
import time
import unittest
import urllib.parse

from machines import (EXAMPLE, Balancer, DirectoryReceiver, Host, HttpReceiver, Postgres, becomes,
                      request, temporary_folder)

PEOPLE = int(sys.argv.pop(1)) if len(sys.argv) > 1 and sys.argv[1].isdigit() else 20
SECONDS = int(sys.argv.pop(1)) if len(sys.argv) > 1 and sys.argv[1].isdigit() else 10
MARK = re.compile("House of person [0-9]+ of the test")


def form_of(name):
    body = (EXAMPLE / name).read_text(encoding="utf-8").rstrip("\r\n")
    return dict(urllib.parse.parse_qsl(body, keep_blank_values=True))


def hidden_of(page):
    found = {}
    for tag in re.findall("<input type=\"hidden\"[^>]*>", page):
        name = re.search(" name=\"([^\"]*)\"", tag)
        value = re.search(" value=\"([^\"]*)\"", tag)
        if name:
            found[html.unescape(name[1])] = html.unescape(value[1]) if value else ""
    return found


class Person:
    """One who does not give up: what gets no answer is looked at again and repeated."""

    def __init__(self, number, port, stopped):
        self.mark = f"House of person {number} of the test"
        self.port = port
        self.stopped = stopped
        self.parked = {}  # acknowledged forms: what their mark was
        self.accepted = []  # the numbers of acknowledged receipts
        self.faults = []
        self.retries = 0

    def ask(self, method, path, form=None):
        """An answer that is one: no 5xx, no broken connection. None when that takes too long."""
        body = urllib.parse.urlencode(form) if form else None
        headers = {"Content-Type": "application/x-www-form-urlencoded"} if form else {}
        answer = request(self.port, method, path, body, headers)
        if answer is None or answer[0] >= 500:
            self.retries += 1
            time.sleep(random.uniform(0.02, 0.2))
            return None
        others = set(MARK.findall(answer[2])) - {self.mark}
        if others:
            self.faults.append(f"{path} shows {others}")
        return answer

    def get(self, path):
        end = time.monotonic() + 120
        while time.monotonic() < end:
            answer = self.ask("GET", path)
            if answer:
                if answer[0] != 200:
                    self.faults.append(f"GET {path}: {answer[0]}")
                return answer[2]
        self.faults.append(f"GET {path}: no answer")
        return ""

    def post(self, path, page, answers, action):
        return self.ask("POST", path, {**hidden_of(page), **answers, "_action": action})

    def live(self):
        try:
            while not self.stopped.is_set():
                self.fill_in()
        except Exception as problem:  # pylint: disable=broad-except
            self.faults.append(repr(problem))

    def fill_in(self):
        answers = {**form_of("complete.form"), "buildingname": self.mark}
        path = None
        while path is None:
            answer = self.post("/forms/inspection", self.get("/forms/inspection"),
                               {**answers, "casenumber": "not yet known"}, "park")
            if answer and answer[0] == 303:
                path = answer[1]["Location"]
                self.parked[path] = self.mark
            elif answer:
                self.faults.append(f"parking: {answer[0]}")
                return
        for casenumber in ("not yet known", "NB-2025-00417"):
            if not self.send(path, {**answers, "casenumber": casenumber}):
                return

    def send(self, path, answers):
        """Presses the button until there is an answer to it. False when something is wrong."""
        while True:
            page = self.get(path)
            if self.mark not in page:
                self.faults.append(f"{path} lost its answers")
                return False
            if f"/messages/{path.rsplit('/', 1)[1]}\"" in page:
                return True  # an earlier press was accepted, whose answer was lost
            answer = self.post(path, page, answers, "submit")
            if answer is None or answer[0] in (403, 409):
                continue
            if answers["casenumber"] == "not yet known":
                if answer[0] != 422:
                    self.faults.append(f"mistakes: {answer[0]}")
                return answer[0] == 422
            if answer[0] != 303 or not answer[1]["Location"].startswith("/messages/"):
                self.faults.append(f"sending: {answer[0]}")
                return False
            self.accepted.append(answer[1]["Location"].rsplit("/", 1)[1])
            return True


class Kill(unittest.TestCase):
    def setUp(self):
        self.folder = temporary_folder()
        self.addCleanup(shutil.rmtree, self.folder, True)
        self.database = Postgres(self.folder)
        self.addCleanup(self.database.close)

    def begin(self, receiver):
        self.addCleanup(receiver.close)
        self.receiver = receiver
        self.hosts = []
        for number in range(3):
            host = Host(self.folder, f"host{number}",
                        ["--store", self.database.store, "--deliver", receiver.word])
            self.addCleanup(host.close)
            self.hosts.append(host)
        for host in self.hosts:
            self.assertTrue(becomes(host.is_ready))
        self.balancer = Balancer(self.folder, self.hosts)
        self.addCleanup(self.balancer.close)
        self.assertTrue(becomes(self.balancer.is_ready))

    def live_through_it(self):
        stopped = threading.Event()
        people = [Person(number, self.balancer.port, stopped) for number in range(PEOPLE)]
        threads = [threading.Thread(target=person.live) for person in people]
        for thread in threads:
            thread.start()
        kills = 0
        half = time.monotonic() + SECONDS / 2
        end = time.monotonic() + SECONDS
        while time.monotonic() < end:
            time.sleep(random.uniform(0.3, 1.2))
            if half and time.monotonic() > half:
                half = None
                self.database.kill()
                time.sleep(0.5)
                self.database.start()
                continue
            host = random.choice(self.hosts)
            host.kill()
            kills += 1
            time.sleep(random.uniform(0, 0.3))
            host.start()
        stopped.set()
        for thread in threads:
            thread.join()
        return people, kills

    def check(self, people, kills):
        self.assertTrue(becomes(self.balancer.is_ready))
        parked = {path: mark for person in people for path, mark in person.parked.items()}
        accepted = [number for person in people for number in person.accepted]
        marks = {path.rsplit("/", 1)[1]: mark for path, mark in parked.items()}
        self.assertEqual([fault for person in people for fault in person.faults], [])
        self.assertGreater(kills, SECONDS / 4)
        self.assertGreater(len(accepted), 0)
        for path, mark in parked.items():
            answer = request(self.balancer.port, "GET", path + ".xml")
            self.assertIsNotNone(answer, path)
            self.assertEqual(answer[0], 200, path)
            self.assertIn(mark, answer[2])
        delivered = self.receiver.arrivals
        self.assertTrue(becomes(lambda: {number for number, _ in list(delivered)} >= set(accepted)))
        for number, text in list(delivered):
            self.assertIn(marks.get(number, "House of person"), text)
        print(f"{len(people)} people, {kills} hosts killed and the database once: {len(parked)} "
              f"forms and {len(accepted)} receipts acknowledged, {len(delivered)} deliveries, "
              f"{sum(person.retries for person in people)} requests repeated", flush=True)

    def test_loses_nothing_and_delivers_to_a_directory_exactly_once(self):
        self.begin(DirectoryReceiver(self.folder))
        self.check(*self.live_through_it())
        time.sleep(1)
        numbers = [number for number, _ in self.receiver.arrivals]
        self.assertEqual(len(numbers), len(set(numbers)))

    def test_loses_nothing_and_posts_each_message_under_one_key(self):
        self.begin(HttpReceiver(self.folder))
        self.check(*self.live_through_it())
        texts = {}
        for number, text in self.receiver.arrivals:
            self.assertEqual(texts.setdefault(number, text), text)


if __name__ == "__main__":
    unittest.main()
