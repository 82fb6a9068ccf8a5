"""The form without a mouse."""

import unittest

from browser import BrowserTest
from selenium.webdriver.common.action_chains import ActionChains
from selenium.webdriver.common.keys import Keys


class Keyboard(BrowserTest):
    def keys(self, *keys):
        chain = ActionChains(self.driver)
        for key in keys:
            chain.send_keys(key)
        chain.perform()

    def outline(self):
        """Whether something shows which element has the focus."""
        return self.driver.execute_script(
            "const s = getComputedStyle(document.activeElement);"
            "return (s.outlineStyle !== 'none' && parseFloat(s.outlineWidth) > 0)"
            " || s.boxShadow !== 'none';")

    def test_reaches_every_input_in_the_order_of_the_page_and_shows_where_it_is(self):
        self.open("/forms/inspection")
        wanted = self.driver.execute_script(
            "const seen = new Set(), names = [];"
            "for (const e of document.querySelectorAll('#form input:not([type=hidden]), #form select,"
            " #form textarea')) { if (!seen.has(e.name)) { seen.add(e.name); names.push(e.name); } }"
            "return names;")
        reached = []
        for _ in range(3 * len(wanted) + 100):
            self.keys(Keys.TAB)
            name = self.focused().get_attribute("name")
            self.assertTrue(self.outline(), name)
            if name and name in wanted and name not in reached:
                reached.append(name)
            if self.focused().get_attribute("id") == "first-save":
                break
        self.assertEqual(reached, wanted)
        self.assertEqual(self.focused().get_attribute("id"), "first-save")

    def test_skips_to_the_content(self):
        self.open("/forms/inspection")
        self.keys(Keys.TAB)
        self.assertEqual(self.focused().text, "Skip to the content")
        self.keys(Keys.ENTER)
        self.wait(lambda: self.focused().get_attribute("id") == "content")

    def tab_to(self, name):
        for _ in range(400):
            if self.focused().get_attribute("name") == name:
                return
            self.keys(Keys.TAB)
        self.fail(name)

    def test_fills_in_saves_and_opens_the_first_error(self):
        self.open("/forms/inspection")
        self.tab_to("casenumber")
        self.keys("2025/412")
        self.tab_to("inspectionkind")
        self.keys(Keys.SPACE)
        self.tab_to("reporttitle")
        self.keys("Roof")
        page = self.find("html")
        self.keys(Keys.ENTER)
        self.wait(lambda: self.is_gone(page) and self.all("#state"))
        self.assertEqual(self.state(), "Saved, not sent yet")
        self.assertEqual(self.value("casenumber"), "2025/412")
        self.assertEqual(self.value("inspectionkind"), "routine")

        submit = self.find(".actions button[value=submit]")
        for _ in range(400):
            if self.focused() == submit:
                break
            self.keys(Keys.TAB)
        page = self.find("html")
        self.keys(Keys.ENTER)
        self.wait(lambda: self.is_gone(page) and self.all("#summary"))
        self.wait(lambda: self.focused().get_attribute("id") == "summary")
        self.keys(Keys.TAB, Keys.ENTER)
        self.wait(lambda: self.focused().get_attribute("name") == "casenumber")
        self.keys(Keys.END, Keys.BACKSPACE, "3")
        self.assertEqual(self.value("casenumber"), "2025/413")


if __name__ == "__main__":
    unittest.main()
