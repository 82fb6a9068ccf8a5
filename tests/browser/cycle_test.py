"""A form from the list of forms to its receipt, as people go through it."""

import re
import signal
import sqlite3
import subprocess
import unittest

from browser import EXAMPLE, SOURCE, BrowserTest, answers_of
from selenium.webdriver.common.action_chains import ActionChains
from selenium.webdriver.common.by import By

MISTAKES = {
    "casenumber": "2025/412",
    "reporttitle": "Roof",
    "town": "",
    "inspectiondate": "31.02.2026",
    "floorarea": "about 900",
    "areas___remark_5": "x" * 200,
    "meters___reading_1": "much",
}


class Cycle(BrowserTest):
    def test_leads_from_the_list_of_forms_to_the_receipt(self):
        self.open("/")
        self.go(self.driver.find_element(By.LINK_TEXT, "Building inspection report"))
        self.assertEqual(self.path(), "/forms/inspection")
        self.assertEqual(self.state(), "New, not saved yet")
        self.picture(f"empty-{self.size[0]}")

        draft = answers_of("draft.form")
        self.fill(draft)
        self.press("park")
        self.assertRegex(self.path(), "^/parked/[0-9a-f]{32}$")
        self.assertEqual(self.state(), "Saved, not sent yet")
        parked = self.path()

        # On another day.
        self.open("/")
        self.open(parked)
        for name in ("buildingname", "inspectionkind", "owneraddress", "basement"):
            kept = self.value(name)
            told = draft.get(name, "")
            self.assertEqual(kept, bool(told) if isinstance(kept, bool) else
                             told.replace("\r\n", "\n"), name)

        complete = answers_of("complete.form")
        self.fill({**complete, **MISTAKES})
        self.press("submit")
        self.assertEqual(self.path(), parked)
        self.assertEqual(self.state(), "Saved, not sent: it has errors")
        self.picture(f"errors-{self.size[0]}")
        self.check_errors()
        for name, value in MISTAKES.items():
            self.assertEqual(self.value(name), value, name)

        self.fill(complete)
        self.press("submit")
        self.assertEqual(self.path(), "/messages/" + parked.rsplit("/", 1)[1])
        self.assertIn("checked and accepted", self.find("main").text)
        self.picture(f"receipt-{self.size[0]}")
        self.check_message(parked.rsplit("/", 1)[1])

        self.open(parked)
        self.assertEqual(self.state(), "Sent and accepted")
        self.assertFalse(self.inputs("casenumber")[0].is_enabled())
        self.assertEqual(self.all("button[value=submit]"), [])

    def check_errors(self):
        """Each mistake has its error, tied to its input, and a link in the summary that leads to
        it."""
        for name in MISTAKES:
            found = self.inputs(name)[0]
            self.assertEqual(found.get_attribute("aria-invalid"), "true", name)
            described = found.get_attribute("aria-describedby").split()
            error = self.find("#" + described[0])
            self.assertTrue(described[0].endswith("-error"), name)
            self.assertGreater(len(error.text), 10, name)
        wrong = self.all("input[aria-invalid=true], select[aria-invalid=true],"
                         "textarea[aria-invalid=true], fieldset[aria-invalid=true]")
        self.assertEqual(len(wrong), len(MISTAKES))
        links = self.all("#summary a")
        self.assertEqual(len(links), len(MISTAKES))
        if self.scripts:
            self.assertEqual(self.focused().get_attribute("id"), "summary")
        for link, target in zip(links, wrong):
            anchor = link.get_attribute("href").split("#")[1]
            self.assertEqual(anchor, target.get_attribute("id"))
            link.click()
            self.wait(lambda: self.focused() == target)  # pylint: disable=cell-var-from-loop

    def check_message(self, number):
        self.wait(lambda: (self.host.inbox / f"{number}.xml").exists())
        link = self.driver.find_element(By.LINK_TEXT, "Download the message")
        self.assertEqual(link.get_attribute("href"), f"{self.host.url}/messages/{number}.xml")
        subprocess.run(
            ["xmllint", "--nonet", "--noout", "--schema", EXAMPLE / "schema" / "inspection.xsd",
             self.host.inbox / f"{number}.xml"],
            check=True, capture_output=True)


class CycleInANarrowWindow(Cycle):
    size = (390, 844)

    def test_needs_no_scrolling_sideways(self):
        for path in ("/", "/forms/inspection"):
            self.open(path)
            widths = self.driver.execute_script(
                "return [document.documentElement.scrollWidth, window.innerWidth]")
            self.assertLessEqual(widths[0], widths[1], path)


class CycleWithoutScripts(Cycle):
    scripts = False


class DoubleClick(BrowserTest):
    def test_on_a_form_with_mistakes_shows_them(self):
        self.open("/forms/inspection")
        self.fill({**answers_of("complete.form"), **MISTAKES})
        self.press("park")
        page = self.find("html")
        submit = self.find(".actions button[value=submit]")
        ActionChains(self.driver).double_click(submit).perform()
        self.wait(lambda: self.is_gone(page) and self.all("#summary"))
        self.assertEqual(self.state(), "Saved, not sent: it has errors")
        self.assertEqual(len(self.all("#summary a")), len(MISTAKES))


class SavingByItself(BrowserTest):
    """The page's clock and what comes back to it are held by the test."""

    HELD = """
        window.setInterval = function (save) { window.saveByItself = save; };
        window.setTimeout = function (end, most) {
          window.endWaiting = end;
          window.mostWaiting = most;
        };
        window.savings = 0;
        const fetched = window.fetch;
        window.fetch = (...words) => {
          window.savings += 1;
          return fetched(...words).then(answer => new Promise(done => {
            window.letAnswerCome = () => done(answer);
          }));
        };"""
    UNANSWERED = "The server does not respond: please save again"

    def setUp(self):
        super().setUp()
        self.driver.execute_cdp_cmd("Page.addScriptToEvaluateOnNewDocument", {"source": self.HELD})

    def is_warned(self):
        """Whether somebody who leaves the page now is warned."""
        return self.driver.execute_script(
            "const leaving = new Event('beforeunload', {cancelable: true});"
            "window.dispatchEvent(leaving);"
            "return leaving.defaultPrevented;")

    def forms(self):
        """How many are in the store."""
        with sqlite3.connect(self.host.folder / "store.sqlite") as store:
            return store.execute("SELECT COUNT(*) FROM form").fetchone()[0]

    def savings(self):
        """How often this page began to save by itself."""
        return self.driver.execute_script("return window.savings")

    def save_by_itself(self):
        """Until the host has answered, which the page does not know yet."""
        self.driver.execute_script("window.saveByItself()")
        self.wait(lambda: self.driver.execute_script("return !!window.letAnswerCome"))

    def press_while_saving(self, action, answer):
        """Answers, and presses a button before the answer to the saving has come."""
        self.answer("town", "Somewhere")
        self.save_by_itself()
        self.answer("town", answer)
        page = self.find("html")
        self.all(f".actions button[value='{action}']")[0].click()
        self.assertFalse(self.is_gone(page))
        self.assertTrue(self.is_warned())  # what was typed since is in no store yet
        self.driver.execute_script("window.letAnswerCome()")
        self.wait(lambda: self.is_gone(page) and self.all("main"))

    def test_makes_no_second_form_when_a_button_is_pressed_meanwhile(self):
        self.open("/forms/inspection")
        self.press_while_saving("park", "Sandvik")
        self.assertEqual(self.state(), "Saved, not sent yet")
        self.assertEqual(self.value("town"), "Sandvik")
        self.assertEqual(self.forms(), 1)

    def test_is_no_conflict_with_a_button_that_is_pressed_meanwhile(self):
        self.open("/forms/inspection")
        self.fill(answers_of("complete.form"))
        self.press("park")
        parked = self.path()
        self.press_while_saving("submit", "Sandvik")
        self.assertEqual(self.path(), "/messages/" + parked.rsplit("/", 1)[1])

    def test_gives_the_button_back_when_no_answer_comes(self):
        self.open("/forms/inspection")
        self.press("park")
        self.answer("town", "Sandvik")
        self.host.process.send_signal(signal.SIGSTOP)
        self.addCleanup(self.host.process.send_signal, signal.SIGCONT)
        self.driver.execute_script("window.saveByItself()")
        self.all(".actions button[value=park]")[0].click()
        self.driver.execute_script("window.endWaiting()")
        self.wait(lambda: self.state() == self.UNANSWERED)
        self.assertEqual(self.value("town"), "Sandvik")
        self.assertTrue(self.is_warned())  # so the button was not pressed by itself
        self.picture(f"unanswered-{self.size[0]}")

        self.host.process.send_signal(signal.SIGCONT)
        self.press("park")
        self.assertEqual(self.state(), "Saved, not sent yet")
        self.assertEqual(self.value("town"), "Sandvik")
        self.assertFalse(self.is_warned())


    def test_makes_one_form_at_most_of_one_without_an_address(self):
        self.open("/forms/inspection")
        self.answer("town", "Sandvik")
        self.save_by_itself()
        self.driver.execute_script("window.endWaiting(); window.letAnswerCome();")
        self.wait(lambda: self.state() == self.UNANSWERED)
        self.assertEqual(self.forms(), 1)  # of which the page does not know
        self.driver.execute_script("window.saveByItself()")
        self.assertEqual(self.savings(), 1)
        self.assertTrue(self.is_warned())

        self.press("park")
        self.assertEqual(self.value("town"), "Sandvik")
        self.assertEqual(self.forms(), 2)
        self.answer("town", "Kråkhavn")
        self.save_by_itself()
        self.driver.execute_script("window.endWaiting(); window.letAnswerCome();")
        self.wait(lambda: self.state() == self.UNANSWERED)
        self.driver.execute_script("window.saveByItself()")
        self.assertEqual(self.savings(), 2)
        self.assertEqual(self.forms(), 2)

    def test_waits_longer_than_a_balancer(self):
        self.open("/forms/inspection")
        self.answer("town", "Sandvik")
        self.save_by_itself()
        balancer = (SOURCE / "deploy" / "haproxy.cfg").read_text(encoding="utf-8")
        limits = [int(each) for each in re.findall(r"timeout (?:client|server) (\d+)s", balancer)]
        self.assertEqual(len(limits), 2)
        most = self.driver.execute_script("return window.mostWaiting")
        self.assertGreater(most, 1000 * max(limits))

    def press_before(self, answer):
        """Presses a button while the form is saved by itself, which then ends with `answer`."""
        self.open("/forms/inspection")
        self.answer("town", "Sandvik")
        self.driver.execute_script(
            "window.fetch = () => new Promise((done, fail) => {"
            "  window.savings += 1;"
            f"  window.letAnswerCome = () => {answer}; }});"
            "window.saveByItself();")
        self.all(".actions button[value=park]")[0].click()
        self.page = self.find("html")
        self.driver.execute_script("window.letAnswerCome()")

    def test_keeps_the_page_when_the_host_itself_does_not_answer(self):
        for answer in (
            "fail(new TypeError('Failed to fetch'))",
            "done(new Response('<h1>No server is available</h1>', {status: 503}))",
            "done(new Response('<h1>The server did not respond</h1>', {status: 504}))",
            "done(new Response('<h1>Please log in</h1>'))",
        ):
            with self.subTest(answer):
                self.press_before(answer)
                self.wait(lambda: self.state() == self.UNANSWERED)
                self.assertFalse(self.is_gone(self.page))
                self.assertEqual(self.value("town"), "Sandvik")
                self.assertTrue(self.is_warned())
                self.driver.execute_script("window.saveByItself()")
                self.assertEqual(self.savings(), 1)
                self.press("park")
                self.assertEqual(self.value("town"), "Sandvik")

    def test_leaves_the_page_for_the_button_when_the_host_refused_it(self):
        self.press_before("done(new Response('{\"error\": \"store\"}', {status: 503}))")
        self.wait(lambda: self.is_gone(self.page) and self.all("main"))
        self.assertEqual(self.state(), "Saved, not sent yet")

    def test_ends_where_a_page_has_no_place_to_tell_it(self):
        self.open("/forms/inspection")
        self.driver.execute_script(
            "document.querySelector('#state strong').remove();"
            "document.getElementById('first-save').removeAttribute('id');")
        self.press_while_saving("park", "Sandvik")
        self.assertEqual(self.value("town"), "Sandvik")
        self.assertEqual(self.forms(), 1)


class StoreThatIsLocked(BrowserTest):
    def refused(self, action):
        """Presses a button while nothing can be written."""
        store = sqlite3.connect(self.host.folder / "store.sqlite", isolation_level=None)
        store.execute("BEGIN EXCLUSIVE")
        self.press(action)
        store.execute("ROLLBACK")
        store.close()
        self.assertIn("cannot be reached", self.find("[role=alert]").text)
        complaints = [entry["message"] for entry in self.driver.get_log("browser")]
        self.assertEqual([each for each in complaints if "status of 503" not in each], [])

    def test_costs_nobody_what_was_typed(self):
        self.open("/forms/inspection")
        self.answer("town", "Brønnsund")
        self.refused("park")
        self.assertEqual(self.value("town"), "Brønnsund")
        self.press("park")
        self.assertEqual(self.state(), "Saved, not sent yet")
        self.assertEqual(self.value("town"), "Brønnsund")
        self.answer("town", "Sandvik")
        self.refused("submit")
        self.assertEqual(self.value("town"), "Sandvik")
        self.press("park")
        self.assertEqual(self.value("town"), "Sandvik")


class StoreThatIsLockedWithoutScripts(StoreThatIsLocked):
    scripts = False


class Conflict(BrowserTest):
    def test_shows_both_answers_and_overwrites_nothing(self):
        self.open("/forms/inspection")
        self.answer("town", "Brønnsund")
        self.press("park")
        parked = self.path()
        first = self.driver.current_window_handle
        self.driver.switch_to.new_window("tab")
        self.open(parked)
        self.answer("town", "Kråkhavn")
        self.press("park")
        self.driver.switch_to.window(first)
        self.answer("town", "Sandvik")
        self.press("park")
        self.assertIn("saved elsewhere", self.find("[role=alert]").text)
        self.assertEqual(self.value("town"), "Sandvik")
        self.assertIn("Kråkhavn", self.find("#q-town-stored").text)
        self.picture("conflict-1280")


if __name__ == "__main__":
    unittest.main()
