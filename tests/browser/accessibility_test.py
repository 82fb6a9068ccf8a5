"""Rules for pages that everybody can use, by axe-core, on every state of a page."""

import unittest

from browser import NARROW, BrowserTest, rules_broken


class Accessibility(BrowserTest):
    def check(self, page):
        serious, kept = rules_broken(self.driver)
        self.assertGreater(kept, 10, page)
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
