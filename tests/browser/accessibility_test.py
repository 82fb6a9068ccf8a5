"""Rules for pages that everybody can use, by axe-core, on every state of a page."""

import os
import unittest
from pathlib import Path

from browser import NARROW, BrowserTest


class Accessibility(BrowserTest):
    def setUp(self):
        super().setUp()
        self.axe = Path(os.environ["VARNEL_AXE"]).read_text(encoding="utf-8")

    def check(self, page):
        # Put in by the driver, past the pages' own policy for scripts.
        self.driver.execute_script(self.axe)
        result = self.driver.execute_async_script(
            "const done = arguments[arguments.length - 1];"
            "axe.run({resultTypes: ['violations']}).then(done, e => done({error: String(e)}));")
        self.assertNotIn("error", result)
        self.assertGreater(len(result["passes"]), 10, page)
        serious = [
            (each["id"], each["help"], [node["target"] for node in each["nodes"]][:3])
            for each in result["violations"]
            if each["impact"] in ("serious", "critical")
        ]
        self.assertEqual(serious, [], page)

    def test_holds_on_every_page(self):
        self.open("/")
        self.check("home")
        self.open("/forms/inspection")
        self.check("empty form")
        self.press("park")
        self.check("saved form")
        self.press("submit")
        self.check("form with errors")
        self.open("/nothing")
        self.check("no such page")
        self.driver.get_log("browser")  # which notes the status of that page

    def test_finds_what_is_wrong(self):
        self.open("/forms/inspection")
        self.driver.execute_script("document.querySelector('label[for=q-town]').remove()")
        with self.assertRaises(AssertionError):
            self.check("form without a label")


class AccessibilityInANarrowWindow(Accessibility):
    size = NARROW


if __name__ == "__main__":
    unittest.main()
