"""A browser, and the web host on a copy of the example, for the tests of this folder.

What the tests need comes in the environment: VARNEL_HOST_PROGRAM, VARNEL_SOURCE_DIR and, for the
accessibility rules, VARNEL_AXE (the file axe.min.js). With VARNEL_SCREENSHOTS each page that a test
looks at is written to that folder as a picture too.
"""

import json
import os
import shutil
import subprocess
import tempfile
import unittest
import urllib.parse
from pathlib import Path

from selenium import webdriver
from selenium.webdriver.common.by import By
from selenium.webdriver.support.ui import Select, WebDriverWait

SOURCE = Path(os.environ["VARNEL_SOURCE_DIR"])
EXAMPLE = SOURCE / "examples" / "inspection"
WIDE = (1280, 900)
NARROW = (390, 844)
PATIENCE = 60  # seconds until something is taken to have failed; nothing waits so long otherwise


def answers_of(form):
    """The answers of one of the example's forms, labels and row counts left out, by name."""
    body = (EXAMPLE / form).read_text(encoding="utf-8").rstrip("\r\n")
    pairs = urllib.parse.parse_qsl(body, keep_blank_values=True)
    return {
        name: value
        for name, value in pairs
        if not name.endswith("_hiddenName") and not name.endswith("_rowCount")
    }


class Host:
    """The web host in a folder of its own, with a directory to which it delivers. The language is
    that of its page."""

    def __init__(self, language):
        self.folder = Path(tempfile.mkdtemp(prefix="varnel-browser-"))
        self.inbox = self.folder / "inbox"
        self.inbox.mkdir()
        shutil.copytree(EXAMPLE, self.folder / "inspection")
        page = self.folder / "inspection" / "page.xml"
        text = page.read_text(encoding="utf-8")
        page.write_text(text.replace(' lang="en"', f' lang="{language}"', 1), encoding="utf-8")
        self.log = open(self.folder / "log", "wb")
        self.process = subprocess.Popen(
            [
                os.environ["VARNEL_HOST_PROGRAM"],
                "--deployment", str(self.folder / "inspection"),
                "--listen", "127.0.0.1:0",
                "--store", f"sqlite:{self.folder / 'store.sqlite'}",
                "--deliver", f"directory:{self.inbox}",
            ],
            stdout=subprocess.PIPE,
            stderr=self.log,
            text=True,
        )
        self.url = self.process.stdout.readline().strip().rstrip("/")
        if not self.url:
            raise RuntimeError((self.folder / "log").read_text())

    def close(self):
        self.process.terminate()
        self.process.wait(PATIENCE)
        self.process.stdout.close()
        self.log.close()
        shutil.rmtree(self.folder)


def rules_broken(driver):
    """What axe-core finds serious in the page that is open, and how many of its rules the page keeps to."""
    # Put in by the driver, past the pages' own policy for scripts.
    driver.execute_script(Path(os.environ["VARNEL_AXE"]).read_text(encoding="utf-8"))
    result = driver.execute_async_script(
        "const done = arguments[arguments.length - 1];"
        "axe.run({resultTypes: ['violations']}).then(done, e => done({error: String(e)}));")
    if "error" in result:
        raise RuntimeError(result["error"])
    serious = [
        (each["id"], each["help"], [node["target"] for node in each["nodes"]][:3])
        for each in result["violations"]
        if each["impact"] in ("serious", "critical")
    ]
    return serious, len(result["passes"])


def start_chromium(scripts, size):
    options = webdriver.ChromeOptions()
    for argument in (
        "--headless=new",
        "--no-sandbox",
        "--disable-dev-shm-usage",
        "--disable-gpu",
        "--disable-background-networking",
        "--no-first-run",
        f"--window-size={size[0]},{size[1]}",
    ):
        options.add_argument(argument)
    if not scripts:
        options.add_experimental_option(
            "prefs", {"profile.managed_default_content_settings.javascript": 2}
        )
    options.set_capability("goog:loggingPrefs", {"browser": "ALL", "performance": "ALL"})
    driver = webdriver.Chrome(options=options)
    driver.set_window_size(*size)
    return driver


class BrowserTest(unittest.TestCase):
    """One host and one browser for each test. Behind it stands what holds for every page: nothing
    is complained about on the console, and no other host is asked for anything."""

    scripts = True
    size = WIDE
    language = "en"

    def setUp(self):
        self.host = Host(self.language)
        self.addCleanup(self.host.close)
        self.driver = start_chromium(self.scripts, self.size)
        self.addCleanup(self.driver.quit)

    def tearDown(self):
        complaints = [
            entry["message"]
            for entry in self.driver.get_log("browser")
            # A form that is refused has a status that browsers note.
            if "status of 422" not in entry["message"] and "status of 409" not in entry["message"]
        ]
        self.assertEqual(complaints, [])
        asked = set()
        for entry in self.driver.get_log("performance"):
            message = json.loads(entry["message"])["message"]
            if message["method"] == "Network.requestWillBeSent":
                asked.add(message["params"]["request"]["url"])
        elsewhere = [
            url for url in asked
            if not url.startswith((self.host.url + "/", "data:", "about:", "chrome:"))
        ]
        self.assertEqual(elsewhere, [])
        self.assertTrue(any(url.startswith(self.host.url) for url in asked))

    # What a person does

    def open(self, path):
        self.driver.get(self.host.url + path)

    def find(self, selector):
        return self.driver.find_element(By.CSS_SELECTOR, selector)

    def all(self, selector):
        return self.driver.find_elements(By.CSS_SELECTOR, selector)

    def inputs(self, name):
        return self.driver.find_elements(By.NAME, name)

    def wait(self, condition):
        return WebDriverWait(self.driver, PATIENCE).until(lambda _: condition())

    def go(self, element):
        """Presses what leads to another page, and waits for that."""
        page = self.find("html")
        element.click()
        self.wait(lambda: self.is_gone(page) and self.all("main"))

    @staticmethod
    def is_gone(element):
        from selenium.common.exceptions import WebDriverException

        try:
            element.is_enabled()
            return False
        except WebDriverException:
            return True

    def button(self, action):
        return self.find(f"button[name=_action][value='{action}']")

    def press(self, action):
        """A button at the end of the form, not the one of the bar above."""
        self.go(self.all(f".actions button[name=_action][value='{action}']")[0])

    def answer(self, name, value):
        """Gives an input the answer `value`, whatever kind of input it is."""
        found = self.inputs(name)
        self.assertTrue(found, name)
        kind = found[0].get_attribute("type") or found[0].tag_name
        if found[0].tag_name == "select":
            Select(found[0]).select_by_value(value)
        elif kind == "radio":
            for each in found:
                if each.get_attribute("value") == value:
                    each.click()
        elif kind == "checkbox":
            if found[0].is_selected() != bool(value):
                found[0].click()
        elif found[0].get_attribute("value") != value:
            found[0].clear()
            if value:
                found[0].send_keys(value.replace("\r\n", "\n"))

    def fill(self, answers):
        """All of them; a check box that has none is left without its tick. Rows are added where
        the table has too few."""
        for name, value in answers.items():
            if not self.inputs(name) and "___" in name:
                table = name.split("___")[0]
                rows = len(self.all(f"#q-{table} tbody > tr"))
                add = self.button(f"add-row:{table}")
                if self.scripts:
                    add.click()
                else:
                    self.go(add)
                self.assertEqual(len(self.all(f"#q-{table} tbody > tr")), rows + 1)
            if self.inputs(name) and self.inputs(name)[0].get_attribute("type") != "hidden":
                self.answer(name, value)
        for box in self.all("input[type=checkbox]"):
            if box.get_attribute("name") not in answers and box.is_selected():
                box.click()

    # What a page says

    def value(self, name):
        found = self.inputs(name)
        self.assertTrue(found, name)
        if found[0].get_attribute("type") == "radio":
            chosen = [each for each in found if each.is_selected()]
            return chosen[0].get_attribute("value") if chosen else ""
        if found[0].get_attribute("type") == "checkbox":
            return found[0].is_selected()
        return found[0].get_attribute("value")

    def state(self):
        return self.find("#state strong").text

    def path(self):
        return self.driver.current_url.removeprefix(self.host.url)

    def focused(self):
        return self.driver.switch_to.active_element

    def picture(self, name):
        folder = os.environ.get("VARNEL_SCREENSHOTS")
        if not folder:
            return
        width = self.size[0]
        height = self.driver.execute_script("return document.documentElement.scrollHeight")
        self.driver.set_window_size(width, min(int(height) + 200, 6000))
        self.driver.save_screenshot(str(Path(folder) / f"{name}.png"))
        self.driver.set_window_size(*self.size)
