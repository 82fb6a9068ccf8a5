"""The files of deploy/, and what a store says that is not this version's."""

import os
import shutil
import sqlite3
import subprocess
import unittest

from machines import SOURCE, Host, becomes, temporary_folder


class Files(unittest.TestCase):
    def test_configure_haproxy(self):
        program = shutil.which("haproxy") or "/usr/sbin/haproxy"
        places = {f"VARNEL_HOST{number}": f"127.0.0.1:{number}" for number in (1, 2, 3)}
        checked = subprocess.run(
            [program, "-c", "-f", SOURCE / "deploy" / "haproxy.cfg"], check=False,
            capture_output=True, text=True,
            env={**os.environ, **places, "VARNEL_BIND": "127.0.0.1:80"})
        self.assertEqual(checked.returncode, 0, checked.stderr)
        self.assertNotIn("WARNING", checked.stderr)

    def test_describe_a_unit_that_systemd_knows(self):
        program = shutil.which("systemd-analyze")
        if not program:
            self.skipTest("systemd is not installed here")
        checked = subprocess.run(
            [program, "verify", SOURCE / "deploy" / "varnel-xml-host.service"], check=False,
            capture_output=True, text=True)
        unknown = [line for line in checked.stderr.splitlines()
                   if "varnel-xml-host" in line and "is not executable" not in line
                   and "man varnel-xml-host" not in line]
        self.assertEqual(unknown, [])


class Store(unittest.TestCase):
    def test_of_a_newer_version_is_refused(self):
        folder = temporary_folder()
        self.addCleanup(shutil.rmtree, folder)
        words = ["--store", f"sqlite:{folder / 'store.sqlite'}"]
        host = Host(folder, "host", words)
        self.assertTrue(becomes(host.is_ready))
        host.close()
        with sqlite3.connect(folder / "store.sqlite") as tables:
            tables.execute("INSERT INTO migration VALUES (9999, '2100-01-01T00:00:00Z')")
        tables.close()
        newer = Host(folder, "newer", words)
        self.assertEqual(newer.process.wait(60), 2)
        self.assertIn("newer version", (folder / "newer.log").read_text())


if __name__ == "__main__":
    unittest.main()
