"""The pages that sub-commands of varnel-xml write, opened as files: nothing outside the file is asked for,
and nothing is wider than the window, whatever its width. Everybody can use them, by axe-core."""

import json
import os
import subprocess
import tempfile
import unittest
from pathlib import Path

from browser import EXAMPLE, NARROW, WIDE, rules_broken, start_chromium
from selenium.webdriver.common.by import By

PROGRAM = os.environ["VARNEL_PROGRAM"]


class Reports(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="varnel-reports-")
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)

    def page_of(self, command, *words):
        """The page that a sub-command makes of the example."""
        done = subprocess.run(
            [PROGRAM, command, "--deployment", str(EXAMPLE), *words, "--format", "html"],
            capture_output=True)
        self.assertIn(done.returncode, (0, 1), done.stderr)
        page = self.folder / f"{command}.html"
        page.write_bytes(done.stdout)
        return page

    def explain(self):
        """The page of the example's faulty form with one answer that no question asks for."""
        form = self.folder / "faulty.form"
        body = (EXAMPLE / "faulty.form").read_text(encoding="utf-8").rstrip("\r\n")
        form.write_text(body + "&shoesize=42", encoding="utf-8")
        return self.page_of("explain", "--form", str(form))

    def prove(self):
        return self.page_of("prove", "--form", str(EXAMPLE / "complete.form"))

    def document(self):
        return self.page_of("document")

    def open(self, page, size):
        driver = start_chromium(True, size)
        self.addCleanup(driver.quit)
        driver.get(page.as_uri())
        folder = os.environ.get("VARNEL_SCREENSHOTS")
        if folder:
            driver.save_screenshot(str(Path(folder) / f"{page.stem}-{size[0]}.png"))
        self.assertEqual([entry["message"] for entry in driver.get_log("browser")], [])
        asked = set()
        for entry in driver.get_log("performance"):
            message = json.loads(entry["message"])["message"]
            if message["method"] == "Network.requestWillBeSent":
                asked.add(message["params"]["request"]["url"])
        self.assertEqual([url for url in asked if not url.startswith(("data:", page.as_uri()))], [])
        return driver

    def assert_fits(self, driver):
        overflow = driver.execute_script(
            "return document.documentElement.scrollWidth - window.innerWidth;")
        self.assertLessEqual(overflow, 0)

    def pages(self):
        """Each page, with what its heading says."""
        return {
            self.explain(): "Where every answer went",
            self.prove(): "Whether errors lead back to the answers",
            self.document(): "Data dictionary of inspection",
        }

    def test_fit_wide_and_narrow_windows(self):
        for page, heading in self.pages().items():
            for size in (WIDE, NARROW):
                with self.subTest(page=page.stem, width=size[0]):
                    driver = self.open(page, size)
                    self.assertIn(heading, driver.find_element(By.TAG_NAME, "h1").text)
                    self.assert_fits(driver)

    @unittest.skipUnless(Path(os.environ.get("VARNEL_AXE", "")).is_file(), "no axe-core")
    def test_keep_to_the_rules_for_pages_that_everybody_can_use(self):
        for page in self.pages():
            for size in (WIDE, NARROW):
                with self.subTest(page=page.stem, width=size[0]):
                    serious, kept = rules_broken(self.open(page, size))
                    self.assertGreater(kept, 5)
                    self.assertEqual(serious, [])

    def test_show_every_answer_in_a_wide_and_in_a_narrow_window(self):
        page = self.explain()
        for size in (WIDE, NARROW):
            with self.subTest(width=size[0]):
                driver = self.open(page, size)
                lost = driver.find_element(By.CSS_SELECTOR, "table.list").text
                self.assertIn("shoesize", lost)
                self.assertIn("no object of the form asks for it", lost)
                rows = driver.find_elements(By.CSS_SELECTOR, "table.list tbody tr")
                self.assertGreater(len(rows), 50)
                shown = rows[0].find_elements(By.TAG_NAME, "td")[0].value_of_css_property("display")
                self.assertEqual(shown, "table-cell" if size == WIDE else "block")

    def test_are_complete_on_paper(self):
        driver = self.open(self.explain(), WIDE)
        paper = driver.execute_cdp_cmd("Page.printToPDF", {"preferCSSPageSize": True})
        self.assertGreater(len(paper["data"]), 10000)


if __name__ == "__main__":
    unittest.main()
