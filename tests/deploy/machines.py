"""What the tests of several machines are made of: PostgreSQL, hosts and HAProxy on loopback.

The environment tells VARNEL_HOST_PROGRAM and VARNEL_SOURCE_DIR.
"""

import glob
import http.client
import os
import pwd
import shutil
import signal
import socket
import subprocess
import tempfile
import threading
import time
from http.server import BaseHTTPRequestHandler, ThreadingHTTPServer
from pathlib import Path

SOURCE = Path(os.environ["VARNEL_SOURCE_DIR"])
EXAMPLE = SOURCE / "examples" / "inspection"
PATIENCE = 120  # seconds until something is taken to have failed


def free_port():
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        return probe.getsockname()[1]


def becomes(condition):
    end = time.monotonic() + PATIENCE
    while not condition():
        if time.monotonic() > end:
            return False
        time.sleep(0.05)
    return True


def request(port, method, path, body=None, headers=None):
    """Status, headers and text of an answer; None when there was none."""
    connection = http.client.HTTPConnection("127.0.0.1", port, timeout=60)
    try:
        connection.request(method, path, body, headers or {})
        answer = connection.getresponse()
        return answer.status, answer.headers, answer.read().decode("utf-8")
    except (OSError, http.client.HTTPException):
        return None
    finally:
        connection.close()


def started(words, log, environment=None):
    """A process that writes into a file."""
    with open(log, "ab") as out:
        return subprocess.Popen(words, cwd="/", env=environment, stdout=out, stderr=out)


class Postgres:
    """A database server of its own, which can be killed and comes back on the same files."""

    def __init__(self, folder):
        self.bin = Path(sorted(glob.glob("/usr/lib/postgresql/*/bin"))[-1])
        self.folder = folder / "postgres"
        self.folder.mkdir()
        self.port = free_port()
        self.as_user = []
        if os.geteuid() == 0:  # which the server refuses to run as
            user = pwd.getpwnam("postgres")
            os.chown(self.folder, user.pw_uid, user.pw_gid)
            for parent in (folder, folder.parent):
                os.chmod(parent, os.stat(parent).st_mode | 0o011)
            self.as_user = ["setpriv", "--reuid", "postgres", "--regid", "postgres", "--clear-groups"]
        self.call("initdb", "-D", self.folder / "data", "-U", "varnel", "--auth=trust",
                  "--no-sync", "-E", "UTF8", "--locale=C")
        self.process = None
        self.start()
        self.call("createdb", "-h", "127.0.0.1", "-p", str(self.port), "-U", "varnel", "varnel")
        self.store = f"postgresql://varnel@127.0.0.1:{self.port}/varnel"

    def call(self, program, *words):
        subprocess.run([*self.as_user, self.bin / program, *words], check=True, cwd="/",
                       stdout=subprocess.DEVNULL, stderr=subprocess.PIPE)

    def start(self):
        self.process = started(
            [*self.as_user, self.bin / "postgres", "-D", self.folder / "data", "-p", str(self.port),
             "-c", "listen_addresses=127.0.0.1", "-c", f"unix_socket_directories={self.folder}",
             "-c", "max_connections=60"],
            self.folder.parent / "postgres.log")
        if not becomes(self.is_ready):
            raise RuntimeError("PostgreSQL does not start")

    def is_ready(self):
        return subprocess.run([self.bin / "pg_isready", "-q", "-h", "127.0.0.1", "-p",
                               str(self.port)], check=False).returncode == 0

    def kill(self):
        """The whole server at once, as when the machine stops; its files stay as they are."""
        self.process.kill()
        self.process.wait()
        time.sleep(0.2)  # its children notice

    def close(self):
        self.process.send_signal(signal.SIGQUIT)
        self.process.wait(PATIENCE)


class Host:
    def __init__(self, folder, name, words):
        self.port = free_port()
        self.words = [os.environ["VARNEL_HOST_PROGRAM"], "--deployment",
                      str(folder / "inspection"), "--listen", f"127.0.0.1:{self.port}",
                      "--workers", "2", *words]
        self.log = folder / f"{name}.log"
        self.process = None
        self.start()

    def start(self):
        self.process = started(self.words, self.log)

    def kill(self):
        self.process.kill()
        self.process.wait()

    def is_ready(self):
        answer = request(self.port, "GET", "/readyz")
        return answer is not None and answer[0] == 200

    def close(self):
        self.process.terminate()
        self.process.wait(PATIENCE)


class Balancer:
    def __init__(self, folder, hosts):
        self.port = free_port()
        places = {f"VARNEL_HOST{number}": f"127.0.0.1:{host.port}"
                  for number, host in enumerate(hosts, 1)}
        self.process = started(
            [shutil.which("haproxy") or "/usr/sbin/haproxy", "-db", "-f",
             SOURCE / "deploy" / "haproxy.cfg"],
            folder / "haproxy.log",
            {**os.environ, **places, "VARNEL_BIND": f"127.0.0.1:{self.port}"})

    def is_ready(self):
        answer = request(self.port, "GET", "/readyz")
        return answer is not None and answer[0] == 200

    def close(self):
        self.process.kill()
        self.process.wait()


class DirectoryReceiver:
    """Takes messages out of their directory as they come, so that a second delivery is seen."""

    def __init__(self, folder):
        self.folder = folder / "inbox"
        self.folder.mkdir()
        self.word = f"directory:{self.folder}"
        self.arrivals = []  # of (number, text)
        self.stopped = threading.Event()
        self.thread = threading.Thread(target=self.collect)
        self.thread.start()

    def collect(self):
        while not self.stopped.is_set():
            self.take()
            time.sleep(0.01)
        self.take()

    def take(self):
        for file in self.folder.glob("*.xml"):
            self.arrivals.append((file.stem, file.read_text(encoding="utf-8")))
            file.unlink()

    def close(self):
        self.stopped.set()
        self.thread.join()


class HttpReceiver:
    """Refuses one message in five at first, as a receiver does that has trouble of its own."""

    def __init__(self, _folder):
        arrivals = self.arrivals = []
        lock = threading.Lock()
        seen = [0]

        class Handler(BaseHTTPRequestHandler):
            def do_POST(self):  # pylint: disable=invalid-name
                text = self.rfile.read(int(self.headers["Content-Length"])).decode("utf-8")
                with lock:
                    seen[0] += 1
                    refused = seen[0] % 5 == 0
                    if not refused:
                        arrivals.append((self.headers["Idempotency-Key"], text))
                self.send_response(500 if refused else 204)
                self.end_headers()

            def log_message(self, *_):  # pylint: disable=arguments-differ
                pass

        self.server = ThreadingHTTPServer(("127.0.0.1", 0), Handler)
        self.word = f"http://127.0.0.1:{self.server.server_address[1]}/messages"
        self.thread = threading.Thread(target=self.server.serve_forever)
        self.thread.start()

    def close(self):
        self.server.shutdown()
        self.thread.join()
        self.server.server_close()


def temporary_folder():
    folder = Path(tempfile.mkdtemp(prefix="varnel-deploy-"))
    shutil.copytree(EXAMPLE, folder / "inspection")
    return folder
