"""A database that is there and does not answer: everybody gets an answer all the same, nobody who needs no
store waits, and the host can be stopped.

The environment tells VARNEL_HOST_PROGRAM and VARNEL_SOURCE_DIR.
"""

import re
import shutil
import subprocess
import threading
import unittest
import urllib.parse

from kill_test import form_of, hidden_of
from machines import Host, Postgres, becomes, request, temporary_folder


class LockedDatabase(unittest.TestCase):
    def setUp(self):
        self.folder = temporary_folder()
        self.addCleanup(shutil.rmtree, self.folder, True)
        self.database = Postgres(self.folder)
        self.addCleanup(self.database.close)
        self.host = Host(self.folder, "host", ["--store", self.database.store])
        self.addCleanup(self.host.close)
        self.assertTrue(becomes(self.host.is_ready))

    def post(self, path, page, answers, action):
        body = urllib.parse.urlencode({**hidden_of(page), **answers, "_action": action})
        return request(self.host.port, "POST", path, body,
                       {"Content-Type": "application/x-www-form-urlencoded"})

    def lock(self):
        """Another session takes the table of forms for itself, until this one's input ends."""
        session = subprocess.Popen(
            [self.database.bin / "psql", "-q", "-h", "127.0.0.1", "-p", str(self.database.port),
             "-U", "varnel", "varnel"],
            stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
        self.addCleanup(session.wait)
        self.addCleanup(session.kill)
        session.stdin.write("BEGIN; LOCK TABLE form IN ACCESS EXCLUSIVE MODE;\n\\echo locked\n")
        session.stdin.flush()
        self.assertEqual(session.stdout.readline(), "locked\n")
        return session

    def others(self):
        """How many are being answered beside the one who asks."""
        metrics = request(self.host.port, "GET", "/metrics")[2]
        return int(re.search(r"^varnel_requests_in_flight (\d+)$", metrics, re.MULTILINE)[1]) - 1

    def test_holds_up_neither_those_who_need_it_nor_others_nor_the_end(self):
        answers = {**form_of("complete.form"), "town": "Typed"}
        page = request(self.host.port, "GET", "/forms/inspection")[2]
        place = self.post("/forms/inspection", page, answers, "park")[1]["Location"]
        form = request(self.host.port, "GET", place)[2]
        session = self.lock()
        told = []
        # More than there are workers.
        people = [threading.Thread(target=lambda: told.append(
            self.post("/forms/inspection", page, answers, "park"))) for _ in range(3)]
        for each in people:
            each.start()
        self.assertTrue(becomes(lambda: self.others() == len(people)))
        self.assertEqual(request(self.host.port, "GET", "/healthz")[0], 200)
        self.assertEqual(told, [], "it waited for those who need the store")
        for each in people:
            each.join()
        for status, headers, text in told:
            self.assertEqual(status, 503)
            self.assertEqual(headers["Retry-After"], "5")
            self.assertIn("value=\"Typed\"", text)
        self.assertEqual(request(self.host.port, "GET", place)[0], 503)
        self.assertEqual(request(self.host.port, "GET", "/forms/inspection")[0], 200)
        self.assertIn("store-problem", self.host.log.read_text(encoding="utf-8"))

        # A stop waits for what is being answered, and no longer.
        self.assertTrue(becomes(lambda: self.others() == 0))
        told.clear()
        last = threading.Thread(target=lambda: told.append(
            self.post(place, form, answers, "submit")))
        last.start()
        self.assertTrue(becomes(lambda: self.others() == 1))
        self.host.close()
        last.join()
        self.assertEqual([answer[0] for answer in told], [503])
        session.communicate("ROLLBACK;\n")

        self.host.start()
        self.assertTrue(becomes(self.host.is_ready))
        form = request(self.host.port, "GET", place)[2]
        self.assertEqual(self.post(place, form, answers, "submit")[0], 303)


if __name__ == "__main__":
    unittest.main()
