"""Rows that the script adds and takes away."""

import unittest

from browser import BrowserTest


class Rows(BrowserTest):
    def rows(self):
        return len(self.all("#q-meters tbody > tr"))

    def test_come_and_go_without_a_round_trip(self):
        self.open("/forms/inspection")
        page = self.find("html")
        self.answer("meters___reading_1", "17")
        before = self.rows()
        self.button("add-row:meters").click()
        self.assertEqual(self.rows(), before + 1)
        self.assertEqual(self.focused().get_attribute("name"), f"meters___meter_{before + 1}")
        self.assertEqual(self.value("meters_rowCount"), str(before + 1))
        self.answer(f"meters___reading_{before + 1}", "18")
        self.button("remove-row:meters:1").click()
        self.assertEqual(self.rows(), before)
        self.assertEqual(self.value("meters___reading_1"), "18" if before == 1 else "")
        self.assertFalse(self.is_gone(page))

    def test_keep_their_answers_when_they_are_saved(self):
        self.open("/forms/inspection")
        self.button("add-row:meters").click()
        self.answer("meters___reading_2", "18")
        self.press("park")
        self.assertEqual(self.value("meters___reading_2"), "18")


class ComputedCells(BrowserTest):
    def test_of_a_row_that_is_added_are_empty(self):
        self.open("/forms/inspection")
        self.answer("defects___found_1", "3.3.2026")
        self.answer("defects___repairby_1", "13.3.2026")
        self.press("park")
        self.assertEqual(self.find("#q-defects-1-duration").text, "10")
        self.button("add-row:defects").click()
        self.assertEqual(self.find("#q-defects-2-duration").text, "")
        self.assertEqual(self.find("#q-defects-2-timedimension").text, "days")  # as in every row


class CopiedRows(BrowserTest):
    """A row that is added begins anew, whatever stands in the one above it."""

    def test_offer_no_answer_that_is_no_choice(self):
        self.open("/forms/inspection")
        self.driver.execute_script(
            "document.querySelector('[name=defects___severity_1]').add(new Option('odd', 'odd'));")
        self.answer("defects___defect_1", "Crack")
        self.answer("defects___severity_1", "odd")
        self.press("park")
        self.assertEqual(self.value("defects___severity_1"), "odd")
        self.button("add-row:defects").click()
        offered = [[each.get_attribute("value") for each in self.all(f"#q-defects-{row}-severity option")]
                   for row in (1, 2)]
        self.assertEqual(offered, [["", "low", "medium", "high", "odd"], ["", "low", "medium", "high"]])
        self.assertIsNone(self.find("#q-defects-2-severity").get_dom_attribute("class"))

    def test_offer_no_button_for_an_answer_that_is_no_choice(self):
        page = self.host.folder / "inspection" / "page.xml"
        text = page.read_text(encoding="utf-8")
        page.write_text(
            text.replace('<column ref="severity">', '<column ref="severity" kind="radio">'),
            encoding="utf-8")
        self.open("/forms/inspection")
        self.driver.execute_script(
            "document.querySelector('[name=defects___severity_1]').value = 'odd';")
        self.answer("defects___defect_1", "Crack")
        self.answer("defects___severity_1", "odd")
        self.press("park")
        self.assertEqual(self.value("defects___severity_1"), "odd")
        self.button("add-row:defects").click()
        self.assertEqual(
            [each.get_attribute("value") for each in self.inputs("defects___severity_2")],
            ["low", "medium", "high"])

    def test_have_nothing_of_an_error_above(self):
        self.open("/forms/inspection")
        # As the host marks a computed cell with an error.
        self.driver.execute_script(
            "const cell = document.getElementById('q-defects-1-duration');"
            "cell.setAttribute('tabindex', '-1');"
            "cell.setAttribute('aria-describedby', 'q-defects-1-duration-error');")
        self.button("add-row:defects").click()
        copied = self.find("#q-defects-2-duration")
        self.assertIsNone(copied.get_dom_attribute("tabindex"))
        self.assertIsNone(copied.get_dom_attribute("aria-describedby"))

    def test_keep_their_own_error_when_they_move(self):
        self.open("/forms/inspection")
        self.button("add-row:meters").click()
        # As the host marks a row with an error.
        self.driver.execute_script(
            "const row = document.getElementById('q-meters-2');"
            "row.setAttribute('aria-describedby', 'q-meters-2-error');"
            "row.querySelector('th').insertAdjacentHTML('beforeend',"
            "  '<p class=\"error\" id=\"q-meters-2-error\">Wrong</p>');")
        self.button("remove-row:meters:1").click()
        self.assertEqual(self.find(".error").get_attribute("id"), "q-meters-1-error")
        self.assertEqual(
            self.find("#q-meters-1").get_attribute("aria-describedby"), "q-meters-1-error")

    def test_take_the_focus_where_all_is_computed(self):
        self.open("/forms/inspection")
        self.driver.execute_script(
            "document.querySelectorAll('#q-meters-1 td input').forEach(each => each.remove());")
        self.button("add-row:meters").click()
        self.assertEqual(self.focused().get_attribute("id"), "q-meters-2")
        self.button("remove-row:meters:2").click()
        self.assertEqual(self.focused().get_attribute("id"), "q-meters-1")


class RowsInGerman(BrowserTest):
    """A row that the script adds is the one that the host makes when the form is opened again."""

    language = "de"
    told = {
        "head": "Zeile 2",
        "label": "Reading, Zeile 2",
        "remove": "Entfernen Zeile 2 von Meter readings",
    }
    english = []

    def row(self, number):
        return self.find(f"#q-meters-{number}")

    def text(self, selector):
        """With what only those hear who do not see the page."""
        return self.find(selector).get_attribute("textContent")

    def html(self, number):
        return self.row(number).get_attribute("outerHTML")

    def test_have_their_number_in_all_that_is_said_of_them(self):
        self.open("/forms/inspection")
        self.button("add-row:meters").click()
        self.assertEqual(self.text("#q-meters-2 th"), self.told["head"])
        self.assertEqual(self.text("label[for=q-meters-2-reading]"), self.told["label"])
        self.assertEqual(self.text("button[value='remove-row:meters:2']"), self.told["remove"])
        self.assertEqual(
            [each.get_attribute("name") for each in self.all("#q-meters-2 input")],
            ["meters___meter_2", "meters___reading_2", "meters___readon_2"])
        self.assertEqual(self.find("#q-meters-2-reading"), self.inputs("meters___reading_2")[0])
        self.assertEqual(
            [each.get_attribute("textContent") for each in self.all("#q-meters-2 [lang=en]")],
            self.english)
        self.picture(f"rows-{self.language}-{self.size[0]}")

    def test_are_those_that_the_host_makes(self):
        self.open("/forms/inspection")
        first = self.html(1)
        self.button("add-row:meters").click()
        second = self.html(2)
        self.button("remove-row:meters:1").click()
        self.assertEqual(self.html(1), first)
        self.button("add-row:meters").click()
        self.assertEqual(self.html(2), second)
        self.press("park")
        self.assertEqual(self.html(1), first)
        self.assertEqual(self.html(2), second)


class RowsInFrench(RowsInGerman):
    """Of which the host has no texts: they are English, and marked so."""

    language = "fr"
    told = {
        "head": "Row 2",
        "label": "Reading, row 2",
        "remove": "Remove row 2 of Meter readings",
    }
    english = ["Row ", "row ", "at most 40 characters", "row ", "row ", "Remove", " row ", " of "]


if __name__ == "__main__":
    unittest.main()
