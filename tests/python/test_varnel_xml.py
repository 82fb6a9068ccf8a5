"""The module as a program in Python uses it, on the example."""

import os
import pathlib
import sys
import threading
import time
import urllib.parse

import pytest
import varnel_xml
from varnel_xml import Deployment, DeploymentError

EXAMPLE = pathlib.Path(os.environ["VARNEL_SOURCE_DIR"]) / "examples" / "inspection"
NOW = {"now": "2025-10-14T12:05:00"}


def form(name):
    return (EXAMPLE / name).read_bytes().rstrip(b"\r\n")


@pytest.fixture
def deployment():
    with Deployment(EXAMPLE, options=NOW) as opened:
        yield opened


def test_a_complete_form_gives_a_valid_message(deployment):
    outcome = deployment.run(form("complete.form"))
    assert outcome.success
    assert outcome.verdict == "valid"
    assert outcome.violations == []
    assert outcome.park.startswith(b"<?xml")
    assert outcome.message.startswith(b"<?xml")
    assert outcome.result["errorCode"] == 0


def test_a_faulty_form_gives_violations_at_their_questions(deployment):
    outcome = deployment.run(form("faulty.form"))
    assert not outcome.success
    assert outcome.verdict == "invalid"
    assert outcome.result["errorName"] == "SVC_RET_XML_CREATION_SCHEMA_VALIDATION_FAILED"
    assert outcome.message is not None
    cells = {(each["questionId"], each["columnId"]) for each in outcome.violations if each["rowIndex"]}
    assert {question for question, column in cells if column} == {"areas", "defects", "meters"}
    declared = set(varnel_xml.Violation.__annotations__)
    assert all(declared == set(violation) for violation in outcome.violations)


def test_a_form_that_is_not_submitted_is_parked(deployment):
    outcome = deployment.run(form("draft.form"), submit=False, validate=False)
    assert outcome.success
    assert outcome.verdict == "not-asked"
    assert outcome.park is not None
    assert outcome.message is None


def test_a_form_is_bytes_or_text_or_answers_by_name(deployment):
    body = form("complete.form")
    answers = dict(urllib.parse.parse_qsl(body.decode(), keep_blank_values=True))
    messages = {deployment.run(each).message for each in (body, body.decode(), answers)}
    assert len(messages) == 1


def test_several_values_of_a_field_are_posted_one_after_the_other(deployment):
    body = form("complete.form").decode()
    lists = urllib.parse.parse_qs(body, keep_blank_values=True)
    assert deployment.run(lists).message == deployment.run(body).message
    several = {**lists, "reporttitle": ("Garden", "Shed")}
    assert "Garden, Shed" in deployment.run(several).message.decode()
    assert deployment.run({**lists, "samples": [3], "areas_rowCount": 6}).verdict == "valid"
    assert deployment.run({**lists, "remarks": []}).park == deployment.run({**lists, "remarks": ""}).park


@pytest.mark.parametrize("answer", [None, True, b"Garden", {"a": "b"}, ["Garden", None], [["Garden"]]])
def test_an_answer_that_is_neither_text_nor_number_is_refused_by_name(deployment, answer):
    with pytest.raises(TypeError, match="'reporttitle': "):
        deployment.run({"reporttitle": answer})


def test_a_character_that_no_document_can_hold_is_replaced_on_request(deployment):
    answers = dict(urllib.parse.parse_qsl(form("complete.form").decode(), keep_blank_values=True))
    answers["casenumber"] = "NB\v2025"
    failed = deployment.run(answers)
    assert not failed.success
    assert failed.verdict == "not-checked"
    assert failed.unreadable == 0
    assert b"Strandgata" not in failed.park
    kept = deployment.run(answers, replace_unstorable=True)
    assert kept.unreadable == 1
    assert "NB\ufffd2025" in kept.park.decode()
    assert b"Strandgata" in kept.park
    answers["casenumber"] = "NB-2025-00417"
    assert deployment.run(answers, replace_unstorable=True).unreadable == 0
    assert deployment.run(b"casenumber=%FF").unreadable == 1


def test_an_object_list_can_be_given(deployment):
    objects = (
        '<?xml version="1.0"?><prtobjcts><prtobjct id="q" objecttype="field" type="text"'
        ' dynamic="false"/><hdnflds/></prtobjcts>'
    )
    outcome = deployment.run({"q": "größer & <kleiner>"}, False, False, object_list=objects)
    assert 'value="größer &amp; &lt;kleiner>"' in outcome.park.decode().replace("&gt;", ">")


def test_options_win_over_the_file_and_may_be_booleans_and_paths(tmp_path):
    with Deployment(EXAMPLE, options={**NOW, "object-list": tmp_path / "none.xml"}) as opened:
        with pytest.raises(DeploymentError, match="none.xml: "):
            opened.run("")
    with Deployment(EXAMPLE, options={**NOW, "no-context": True}) as opened:
        assert "CNTXT_OBJ_MISSING" in opened.run("").result["errorName"]


@pytest.mark.parametrize(
    "limit, told",
    [
        ({"run_nodes": 100}, "The documents of the run have more nodes than they may."),
        ({"run_bytes": 4096}, "The documents of the run take more memory than they may."),
    ],
)
def test_the_documents_of_a_run_are_bounded_together(limit, told):
    with Deployment(EXAMPLE, options=NOW, **limit) as opened:
        outcome = opened.run(form("complete.form"))
    assert not outcome.success
    assert outcome.result["errorCode"] == -2147467259
    assert told in outcome.result["errorDetail"]
    with Deployment(EXAMPLE, options=NOW, run_nodes=100_000, run_bytes=64 << 20) as opened:
        assert opened.run(form("complete.form")).verdict == "valid"


def test_names_in_options_start_at_the_working_directory(tmp_path, monkeypatch):
    monkeypatch.chdir(EXAMPLE)
    with Deployment(EXAMPLE, options={**NOW, "template": "template.xml"}) as opened:
        assert opened.run(form("complete.form")).verdict == "valid"
        monkeypatch.chdir(tmp_path)
        assert opened.run(form("complete.form")).verdict == "not-checked"


@pytest.mark.parametrize("option", ["object-list", "protocol-info"])
def test_a_document_of_the_caller_s_that_cannot_be_read_is_an_exception(option):
    with Deployment(EXAMPLE, options={**NOW, option: "none.xml"}) as opened:
        with pytest.raises(DeploymentError, match="none.xml: "):
            opened.run(form("complete.form"))


@pytest.mark.parametrize("option", ["template", "object-mapper", "schema-types", "hidden-fields",
                                    "namespaces", "reference"])
def test_any_other_file_that_cannot_be_read_is_an_outcome(option):
    with Deployment(EXAMPLE, options={**NOW, option: "none.xml"}) as opened:
        outcome = opened.run(form("complete.form"))
    assert not outcome.success
    assert outcome.verdict == "not-checked"


def test_what_the_options_say_of_submit_and_validate_does_not_count():
    with Deployment(EXAMPLE, options={**NOW, "submit": True, "validate": True}) as opened:
        assert opened.run(form("complete.form"), submit=False, validate=False).message is None


def test_what_cannot_be_used_is_told(tmp_path):
    with pytest.raises(DeploymentError, match="deployment.json: "):
        Deployment(tmp_path)
    (tmp_path / "deployment.json").write_text('{"templates": "x"}')
    with pytest.raises(DeploymentError, match='"templates" is an unknown key'):
        Deployment(tmp_path)


def test_the_journal_is_there_on_request(deployment):
    assert "journal" not in deployment.run(form("draft.form")).result["report"]
    assert "journal" in deployment.run(form("draft.form"), journal=True).result["report"]


def test_the_trace_is_called_for_each_line(deployment):
    lines = []
    deployment.run(form("draft.form"), trace=lines.append)
    assert any("BuildXml - strTemplateXML =" in line for line in lines)
    assert all(line.endswith("\r\n") for line in lines)


def test_what_the_trace_raises_is_ignored_in_silence(deployment, capfd):
    def refuse(_line):
        raise ValueError("no more")

    assert deployment.run(form("complete.form"), trace=refuse).verdict == "valid"
    assert capfd.readouterr().err == ""


def test_a_closed_deployment_is_refused_and_closing_twice_is_not():
    opened = Deployment(EXAMPLE)
    opened.close()
    opened.close()
    with pytest.raises(ValueError):
        opened.run("")


def test_a_run_that_has_begun_keeps_its_deployment():
    opened = Deployment(EXAMPLE)
    assert opened.run(form("complete.form"), trace=lambda line: opened.close()).success


def test_a_run_lets_other_threads_work(deployment):
    """With such an interval a thread hands over only where it lets go of the interpreter lock."""
    body = form("complete.form")
    deployment.run(body)
    state = []

    def work():
        state.append("begun")
        deployment.run(body)
        state.append("ended")

    interval = sys.getswitchinterval()
    sys.setswitchinterval(1000)
    try:
        thread = threading.Thread(target=work)
        thread.start()
        worked_meanwhile = state == ["begun"]
        while "ended" not in state:
            worked_meanwhile = worked_meanwhile or state == ["begun"]
            time.sleep(0)
        thread.join()
    finally:
        sys.setswitchinterval(interval)
    assert worked_meanwhile


def test_threads_share_a_deployment(deployment):
    expected = deployment.run(form("complete.form")).message
    outcomes = []
    threads = [
        threading.Thread(target=lambda: outcomes.append(deployment.run(form("complete.form"))))
        for _ in range(4)
    ]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    assert all(outcome.message == expected for outcome in outcomes)


def test_the_version_is_the_library_s():
    assert varnel_xml.version().startswith("16.")
