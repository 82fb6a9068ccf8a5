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
