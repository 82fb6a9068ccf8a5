"""What the documents show is tried: commands are run, fragments of files are checked as parts of a
deployment, and what is named has to be there.

Needs the program and the shared library: the variables VARNEL_SOURCE_DIR, VARNEL_PROGRAM and
VARNEL_XML_LIBRARY name the tree and both of them.
"""

import functools
import json
import os
import pathlib
import re
import shlex
import shutil
import subprocess
import sys
import tempfile
import unittest
from typing import NamedTuple
from xml.etree import ElementTree

TREE = pathlib.Path(os.environ["VARNEL_SOURCE_DIR"])
PROGRAM = os.environ["VARNEL_PROGRAM"]
DOCUMENTS = ["README.md", "CONTRIBUTING.md", "docs/*.md", "examples/*/README.md"]

# Blocks that no test can run, by their document and how they begin, and why.
NOT_RUN = {
    ("CONTRIBUTING.md", "git clone"): "the address of the project is the reader's",
    ("docs/architecture.md", "form + object list"): "a picture",
    ("docs/architecture.md", "apps/ "): "a picture; the layer check holds it",
    ("docs/embedding.md", "embedding "): "project/Embedding.TellsVerdictsAndShowsErrors",
    ("docs/test.md", "ok    tests/concert"): "what the program prints: apps/TestCommand",
    ("docs/operations.md", "install -D"): "writes into the system",
    ("docs/operations.md", "createuser"): "needs PostgreSQL: scripts/test --deploy",
    ("docs/check.md", ""): "check/CodeTable holds its examples",
    ("examples/archive/README.md", ""): "apps/Archive runs its scripts",
}

# Where a fragment of a file belongs: the option that names the file, and what stands around it.
MESSAGE = ' xmlns:m="urn:example:message" xmlns:pbr="urn:example:record"'
FRAGMENTS = {
    "Object list and park XML": ("object-list", "{}"),
    "Object mapper": ("object-mapper", "<message>{}</message>"),
    "addinfotonode": ("object-mapper", '<message><messageitem id="q">{}</messageitem></message>'),
    "Complex types": ("object-mapper", '<message><messageitem id="q">{}</messageitem></message>'),
    "rowinfotovalue": ("object-mapper", "<message>{}</message>"),
    "Document data": (
        "object-mapper",
        "<message><docdata><docnodes>{}</docnodes></docdata></message>",
    ),
    "Protocol information": ("protocol-info", "{}"),
    "Protocol information/docinfo": ("object-mapper", "<message><docdata>{}</docdata></message>"),
    "Schema types": ("schema-types", "{}"),
    "Reference XML": ("reference", "{}"),
    "Questions XML": ("questions", "{}"),
    "catalog.xml": (None, "{}"),
}
# Of a fragment only the vocabulary can be right or wrong.
WRONG_WORDS = re.compile(
    r"\[(not-well-formed|wrong-root|(misspelt|unknown)-(element|attribute)|stray-text)\]"
)


class Block(NamedTuple):
    document: str
    line: int
    heading: str
    language: str
    before: str  # the line before it
    text: str


def blocks_of(name, text):
    """The fenced and the indented blocks of a document."""
    lines = text.split("\n")
    heading = ""
    at = 0
    while at < len(lines):
        begin = at
        at += 1
        if lines[begin].startswith("#"):
            heading = lines[begin].lstrip("# ")
        elif lines[begin].startswith("```"):
            while lines[at] != "```":
                at += 1
            text = "\n".join(lines[begin + 1 : at])
            yield Block(name, begin + 1, heading, lines[begin][3:], lines[begin - 1], text)
            at += 1
        elif lines[begin].startswith("    ") and not lines[begin - 1].strip():
            while at < len(lines) and lines[at].startswith("    "):
                at += 1
            text = "\n".join(line[4:] for line in lines[begin:at])
            yield Block(name, begin + 1, heading, "", "", text)


def run(words, folder, **streams):
    return subprocess.run(
        words, cwd=folder, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, **streams
    )


@functools.lru_cache(maxsize=None)
def help_of(command):
    return run([PROGRAM, command, "--help"], TREE).stdout


def options_unknown(words):
    """The options of a command of the program that its help does not have."""
    known = re.findall(r"--[a-z][a-z-]*", help_of(words[0]))
    return [each for each in words if re.match(r"--[a-z]", each) and each not in known]


def try_program(words, folder):
    """A command of the program: one with words to fill in has options that exist, another runs."""
    unknown = options_unknown([word.strip("[]") for word in words])
    if unknown:
        return f"varnel-xml {words[0]} has no {unknown[0]}"
    if re.search(r"\b[A-Z]{2,}\b|\[|<", " ".join(words)):
        return None
    ended = run([PROGRAM, *words], folder)
    expected = 1 if any("faulty" in word for word in words) else 0
    return None if ended.returncode == expected else f"ended with {ended.returncode}: {ended.stdout}"


def try_command(line, folder):
    words = shlex.split(line, comments=True)
    while words and re.match(r"[A-Z_]+=", words[0]):
        words.pop(0)
    if not words:
        return None
    name, *rest = words
    if name == "varnel-xml":
        return try_program(rest, folder)
    if name == "varnel-xml-host":
        text = (TREE / "docs" / "host.md").read_text(encoding="utf-8")
        return next((f"no {each}" for each in rest if each[:2] == "--" and each not in text), None)
    if name.startswith("scripts/") or name == "cd":
        return None  # whether they and their options are there is asked of every mention
    if name == "cmake":
        return None  # so are presets
    if name.startswith("tests/"):
        return None if (TREE / name).is_file() else f"there is no {name}"
    if name.startswith("build/"):
        target = pathlib.Path(name).name.removesuffix("_tests")
        found = any(
            re.search(rf"\b{target}(_tests)?\b", each.read_text(encoding="utf-8"))
            for folder in ("apps", "bench", "tests")
            for each in (TREE / folder).rglob("CMakeLists.txt")
        )
        return None if found else f"nothing builds {name}"
    return f"nobody knows how to try {name}"


def try_commands(block, folder):
    text = re.sub(r"\\\n\s*", "", block.text)
    for line in text.split("\n"):
        trouble = try_command(line, folder)
        if trouble:
            return trouble
    return None


def try_fragment(block, folder):
    root = re.match(r"<([A-Za-z]+)", block.text)
    part = FRAGMENTS.get(f"{block.heading}/{root and root[1]}") or FRAGMENTS.get(block.heading)
    if part is None:
        return "nobody knows of which file this is a part"
    option, around = part
    text = re.sub(r"<\?xml[^>]*\?>\s*", "", block.text)
    text = around.format(text)
    root = re.sub(r"<([A-Za-z]+)", rf"<\1{MESSAGE}", text, count=1) if "xmlns" not in text else text
    try:
        ElementTree.fromstring(root)
    except ElementTree.ParseError as error:
        return f"not well-formed: {error}"
    if option is None:
        return None
    (folder / "fragment.xml").write_text(text, encoding="utf-8")
    deployment = "examples/inspection"
    words = [PROGRAM, "check", "--deployment", deployment, f"--{option}", "fragment.xml"]
    found = [each for each in run(words, folder).stdout.split("\n") if WRONG_WORDS.search(each)]
    return found[0] if found else None


def without_ellipses(text):
    return re.sub(r",?\s*\.\.\.", "", text)


def try_json(block, folder):
    text = without_ellipses(block.text)
    try:
        values = [json.loads(text)]
    except ValueError:
        try:
            values = [json.loads(line) for line in text.split("\n")]
        except ValueError as error:
            return f"no JSON: {error}"
    if block.heading == "deployment.json":
        deployment = folder / "examples" / "inspection"
        shutil.copy(deployment / "deployment.json", folder / "kept.json")
        (deployment / "deployment.json").write_text(block.text, encoding="utf-8")
        ended = run([PROGRAM, "build", "--deployment", "examples/inspection"], folder)
        shutil.copy(folder / "kept.json", deployment / "deployment.json")
        return None if '"success"' in ended.stdout else ended.stdout
    if block.document == "docs/prove.md":
        return try_proof(values[0], folder)
    return None


def try_proof(shown, folder):
    words = ["prove", "--deployment", "examples/inspection", "--format", "json"]
    form = ["--form", "examples/inspection/complete.form"]
    told = json.loads(run([PROGRAM, *words, *form], folder).stdout)
    for key, value in shown.items():
        if key == "spoiled":
            if any(each not in told[key] for each in value):
                return "no such spoiled answer is told"
        elif told[key] != value:
            return f'"{key}" is {told[key]}'
    return None


def try_python(block, folder):
    text = block.text if "import varnel_xml" in block.text else "import varnel_xml\n" + block.text
    variables = {**os.environ, "PYTHONPATH": str(TREE / "python"), "PYTHONDONTWRITEBYTECODE": "1"}
    ended = run([sys.executable, "-c", text], folder, env=variables)
    works = ended.returncode == 0 and ended.stdout.startswith("valid")  # the verdict comes first
    return None if works else ended.stdout or "prints nothing"


def try_shown_example(block, _folder):
    marked = block.before.startswith("<!-- examples/")  # compared by ShownExample_test.cmake
    return None if marked else "no example of the tree is named before it"


def try_cmake(block, _folder):
    outsiders = (TREE / "tests" / "install" / "CMakeLists.txt").read_text(encoding="utf-8")
    package = block.text.split(")")[0]
    return None if package in outsiders else f"no outside project says {package}"


KINDS = {
    "": try_commands,
    "cmake": try_cmake,
    "cpp": try_shown_example,
    "json": try_json,
    "python": try_python,
    "xml": try_fragment,
}


def anchor_of(heading):
    return re.sub(r"[^\w\- ]", "", heading.replace("`", "").lower()).replace(" ", "-")


def wrong_links(name, text):
    """Links inside the tree that lead nowhere."""
    for target in re.findall(r"\]\(([^)\s]+)\)", text) + re.findall(r'src="([^"]+)"', text):
        path, _, anchor = target.partition("#")
        if re.match(r"[a-z]+:", target):
            continue
        file = (TREE / name).parent / path if path else TREE / name
        if not file.exists():
            yield f"there is no {target}"
        elif anchor:
            headings = re.findall(r"^#+ (.*)$", file.read_text(encoding="utf-8"), re.MULTILINE)
            if anchor not in map(anchor_of, headings):
                yield f"there is no heading {target}"


def wrong_mentions(text):
    """Scripts, their options, presets and files of the tree that are named and not there."""
    for script, words in re.findall(r"(?<![\w/])(scripts/[a-z-]+)([^\n`]*)", text):
        if not os.access(TREE / script, os.X_OK) and script != "scripts/prepare":
            yield f"there is no {script}"
            continue
        said = (TREE / script).read_text(encoding="utf-8")
        for option in re.findall(r"^(?: (--[a-z]+))", words):
            if option not in said:
                yield f"{script} has no {option}"
    presets = json.loads((TREE / "CMakePresets.json").read_text(encoding="utf-8"))
    names = {each["name"] for each in presets["configurePresets"]}
    for preset in re.findall(r"--preset ([a-z]+)", text):
        if preset not in names:
            yield f"there is no preset {preset}"
    folders = "apps|bench|cmake|completions|deploy|docs|examples|fuzz|python|src|tests"
    for path in re.findall(rf"`((?:{folders})/[\w./-]+)`", text):
        if not (TREE / path).exists():
            yield f"there is no {path}"
    for command, words in re.findall(r"`varnel-xml ([a-z]+)([^`]*)`", text):
        if "Usage: varnel-xml " + command not in help_of(command):
            yield f"there is no varnel-xml {command}"
        else:
            for unknown in options_unknown([command, *re.findall(r"--[a-z-]+", words)]):
                yield f"varnel-xml {command} has no {unknown}"


def reason_not_run(block):
    for (document, begin), reason in NOT_RUN.items():
        if block.document == document and block.text.startswith(begin):
            return reason
    return None


def complaints(documents):
    """What is wrong in documents, given by their names in the tree and their texts."""
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        shutil.copytree(TREE / "examples", folder / "examples")
        for document, text in documents.items():
            for trouble in [*wrong_links(document, text), *wrong_mentions(text)]:
                yield f"{document}: {trouble}"
            for block in blocks_of(document, text):
                if reason_not_run(block):
                    continue
                try_block = KINDS.get(block.language)
                trouble = try_block(block, folder) if try_block else "a block of an unknown kind"
                if trouble:
                    yield f"{document}:{block.line}: {trouble}"


class Documents(unittest.TestCase):
    maxDiff = None

    def test_show_what_works(self):
        files = [file for pattern in DOCUMENTS for file in sorted(TREE.glob(pattern))]
        texts = {
            str(file.relative_to(TREE)): file.read_text(encoding="utf-8") for file in files
        }
        self.assertGreater(len(texts), 20)
        self.assertEqual(list(complaints(texts)), [])

    def test_are_refused_when_they_show_what_does_not(self):
        cases = {
            "an option": "    varnel-xml build --deployments examples/permit\n",
            "an option of a synopsis": "    varnel-xml check --deployment DIR [--form text]\n",
            "an option in a line": "`varnel-xml build --noreport`\n",
            "a sub-command": "`varnel-xml make --deployment DIR`\n",
            "a run": "    varnel-xml build --deployment examples/none\n",
            "a tool": "    make install\n",
            "a script": "Run `scripts/none`.\n",
            "an option of a script": "    scripts/test --fast\n",
            "a preset": "`cmake --workflow --preset fast`\n",
            "a program": "    build/dev/tests/none\n",
            "a file": "See `src/none.cpp`.\n",
            "a link": "[here](none.md)\n",
            "an anchor": "[here](docs/errors.md#none)\n",
            "a markup": "## Questions XML\n\n```xml\n<questions><question></questions>\n```\n",
            "a word": "## Questions XML\n\n```xml\n<questions><querstion/></questions>\n```\n",
            "a part of nothing": "## Nothing\n\n```xml\n<a/>\n```\n",
            "a JSON": '```json\n{"a": }\n```\n',
            "a key": '## deployment.json\n\n```json\n{"templates": "a"}\n```\n',
            "a module": "```python\nprint(varnel_xml.none)\n```\n",
            "another verdict": "```python\nprint('not-checked')\n```\n",
            "a program in C++": "```cpp\nint main() {}\n```\n",
            "a package": "```cmake\nfind_package(None)\n```\n",
            "a language": "```cobol\n```\n",
        }
        for says, text in cases.items():
            with self.subTest(says):
                self.assertEqual(len(list(complaints({"NONE.md": "\n" + text}))), 1)


if __name__ == "__main__":
    unittest.main()
