"""What docs/formats.md says of files and forms is so, on the examples.

Needs the program: the variables as for Documents_test.py.
"""

import json
import pathlib
import re
import shutil
import tempfile
import unittest
from xml.etree import ElementTree

from Documents_test import PROGRAM, TREE, help_of, run


def table_below(document, head):
    """The cells of the rows of the table in a document that has this head."""
    text = (TREE / "docs" / document).read_text(encoding="utf-8")
    rows = text[text.index(head) + len(head) :].split("\n\n")[0].strip().split("\n")[1:]
    return [[cell.strip() for cell in row.strip("|").split(" | ")] for row in rows]


class DeploymentJson(unittest.TestCase):
    """What docs/formats.md says of the keys of deployment.json."""

    HEAD = "| key | value | without it |"

    def build(self, folder, form="complete.form", *words):
        ended = run(
            [PROGRAM, "build", "--deployment", ".", "--report", "--form", form, *words], folder
        )
        return json.loads(ended.stdout)

    def without(self, key, *words, form="complete.form"):
        with tempfile.TemporaryDirectory() as name:
            folder = pathlib.Path(name) / "a" / "inspection"
            shutil.copytree(TREE / "examples" / "inspection", folder)
            options = json.loads((folder / "deployment.json").read_text(encoding="utf-8"))
            del options[key]
            (folder / "deployment.json").write_text(json.dumps(options), encoding="utf-8")
            return self.build(folder, form, *words)

    def test_is_told_with_all_keys_that_it_may_have(self):
        told = [row[0].strip("`") for row in table_below("formats.md", self.HEAD)]
        help_text = help_of("build").split("What is written:")[0]
        options = re.findall(r"^  --([a-z-]+)", help_text, re.MULTILINE)
        self.assertEqual(sorted(told), sorted(set(options) - {"deployment", "version"}))

    def test_fails_and_lacks_a_verdict_without_the_keys_that_are_told_so(self):
        asked = {"every run fails": 0, "every run that submits fails": 0, "no message has a verdict": 0}
        for key, _, missing in table_below("formats.md", self.HEAD):
            if missing not in asked:
                continue
            asked[missing] += 1
            with self.subTest(key):
                key = key.strip("`")
                parked = self.without(key)
                sent = self.without(key, "--submit", "--validate")
                self.assertEqual(parked["success"], missing != "every run fails")
                self.assertEqual(sent["success"], missing == "no message has a verdict")
                self.assertEqual(sent["report"]["verdict"], "not-checked")
        self.assertEqual(list(asked.values()), [3, 4, 2])

    def test_may_lack_the_questions_only_while_messages_are_right(self):
        words = ["--submit", "--validate"]
        self.assertEqual(self.without("questions", *words)["report"]["verdict"], "valid")
        faulty = self.without("questions", *words, form="faulty.form")
        self.assertEqual(faulty["report"]["verdict"], "not-checked")

    def test_gives_no_name_without_the_protocol_information(self):
        report = self.without("protocol-info", "--submit", "--validate")["report"]
        self.assertEqual([each["value"] for each in report["violations"]], [""])

    def test_looks_for_the_schema_above_the_working_directory_without_a_page(self):
        reason = self.without("page-dir", "--submit", "--validate")["report"]["reason"]
        self.assertIn("/a/schema/inspection.xsd", reason)


class OrderOfElements(unittest.TestCase):
    """What docs/formats.md says of the order in which elements of the message stand."""

    def children(self, posted="", **changes):
        """The names below the message's root, after replacements in files, with more posted."""
        with tempfile.TemporaryDirectory() as name:
            folder = pathlib.Path(name) / "readme"
            shutil.copytree(TREE / "examples" / "readme", folder)
            for file, replacements in changes.items():
                path = folder / (file.replace("_", "-") + ".xml")
                text = path.read_text(encoding="utf-8")
                for old, new in replacements:
                    self.assertIn(old, text)
                    text = text.replace(old, new, 1)
                path.write_text(text, encoding="utf-8")
            with (folder / "complete.form").open("a", encoding="utf-8") as form:
                form.write(posted)
            words = ["--form", "complete.form", "--submit", "--send-out", "out.xml"]
            ended = run([PROGRAM, "build", "--deployment", ".", *words], folder)
            self.assertTrue(json.loads(ended.stdout)["success"], ended.stdout)
            root = ElementTree.parse(folder / "out.xml").getroot()
            return [element.tag.split("}")[1] for element in root]

    def test_is_the_template_s_then_the_objects(self):
        self.assertEqual(self.children(), ["sentAt", "reading", "readOn"])

    def test_is_that_of_the_object_list_and_not_of_the_entries(self):
        first = '<prtobjct id="reading" objecttype="field" type="text" dynamic="false"/>'
        moved = [(first, ""), ("<hdnflds/>", first + "<hdnflds/>")]
        self.assertEqual(self.children(object_list=moved), ["sentAt", "readOn", "reading"])

    def test_has_hidden_fields_behind_all_objects(self):
        field = '<hiddenfield id="office" output="office" toschema="true"/>'
        entry = (
            '<messageitem id="office" toschema="true"><parentxpath>/m:meterReading</parentxpath>'
            "<node>m:office</node></messageitem>"
        )
        names = self.children(
            "&office=N",
            hidden_fields=[("<hiddenfields/>", f"<hiddenfields>{field}</hiddenfields>")],
            object_mapper=[("<message>", "<message>" + entry)],
        )
        self.assertEqual(names, ["sentAt", "reading", "readOn", "office"])

    def test_cannot_be_changed_by_an_empty_element_of_the_template(self):
        names = self.children(template=[("<m:sentAt/>", "<m:readOn/><m:sentAt/>")])
        self.assertEqual(names, ["readOn", "sentAt", "reading", "readOn"])


class FormBody(unittest.TestCase):
    """What docs/formats.md says of forms that end a run while it parks."""

    def parked(self, body):
        with tempfile.TemporaryDirectory() as name:
            folder = pathlib.Path(name)
            (folder / "a.form").write_text(body, encoding="utf-8")
            words = [PROGRAM, "build", "--deployment", str(TREE / "examples" / "inspection")]
            ended = run([*words, "--form", "a.form", "--park-out", "park.xml"], folder)
            return json.loads(ended.stdout), (folder / "park.xml").read_text(encoding="utf-8")

    def test_is_parked_up_to_a_table_without_a_row_count(self):
        result, park = self.parked("casenumber=before&remarks=behind")
        self.assertEqual(
            result["errorName"], "SVC_RET_XML_CREATION_PROT_TBL_ROWCOUNT_INVALID"
        )
        self.assertEqual(result["errorDetail"], "The object list is missing")
        self.assertIn("before", park)
        self.assertNotIn("behind", park)

    def test_is_parked_up_to_a_character_that_no_document_can_hold(self):
        counts = "areas_rowCount=0&defects_rowCount=0&meters_rowCount=0"
        result, park = self.parked(f"{counts}&casenumber=before&reporttitle=a%0Bb&remarks=behind")
        self.assertFalse(result["success"])
        self.assertIn("before", park)
        self.assertNotIn("behind", park)
        result, park = self.parked(f"{counts}&casenumber=before&reporttitle=a%FFb&remarks=behind")
        self.assertTrue(result["success"])
        self.assertIn("behind", park)


if __name__ == "__main__":
    unittest.main()
