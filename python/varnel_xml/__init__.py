"""Turns submitted forms into XML: the parked form, to be stored and opened again, and the message.

    with Deployment("examples/inspection") as deployment:
        outcome = deployment.run(body)  # what the browser posted, or a mapping of its fields
        if outcome.verdict != "valid":
            for violation in outcome.violations:
                print(violation["questionText"], violation["message"])

A deployment may be used by any number of threads at once; a run lets other threads of the interpreter
work. It begins with the form's own object list: a form is opened again by its answers, never by running
a parked form.

The environment variable VARNEL_XML_LIBRARY names the shared library where it is not installed.
"""

from __future__ import annotations

import contextlib
import ctypes
import json
import os
import urllib.parse
from dataclasses import dataclass
from decimal import Decimal
from typing import Any, Callable, Dict, Iterator, List, Mapping, Optional, Sequence, TypedDict, Union

from ._library import Handle, Option, Settings, Submission, TraceFunction, call, library

__all__ = ["Deployment", "DeploymentError", "Outcome", "Violation", "version"]

Path = Union[str, "os.PathLike[str]"]
Answer = Union[str, int, float, Decimal]
Answers = Mapping[str, Union[Answer, Sequence[Answer]]]
Form = Union[str, bytes, Answers]


class DeploymentError(Exception):
    """A file or an option of the deployment cannot be used; the text tells which and why."""


class Violation(TypedDict):
    """What the schema says against the message; docs/report.md describes each key."""

    kind: str
    facet: str
    path: str
    attribute: str
    value: str
    limit: str
    allowed: List[str]
    type: str
    expected: List[str]
    message: str
    questionId: str
    questionText: str
    rowIndex: str
    columnId: str
    columnText: str
    cause: str
    constraint: str


@dataclass(frozen=True)
class Outcome:
    """What one submission gave."""

    park: Optional[bytes]
    """The form with its answers, to be stored; None when the deployment has no object list."""

    message: Optional[bytes]
    """The message; None when the run made none."""

    result: Dict[str, Any]
    """The result as `varnel-xml build` writes it, the report included."""

    unreadable: int = 0
    """How many posted fields hold U+FFFD, which stands for what did not arrive: bytes that are not UTF-8,
    and what `replace_unstorable` replaced. Keep such a form and do not send it: nobody typed that."""

    @property
    def success(self) -> bool:
        """Whether the run succeeded. It does too when the check of the message broke down: ask
        `verdict`."""
        return bool(self.result["success"])

    @property
    def verdict(self) -> str:
        """"not-asked", "valid", "invalid" or "not-checked"."""
        return str(self.result["report"]["verdict"])

    @property
    def violations(self) -> List[Violation]:
        """All of them, in the order of the message."""
        violations: List[Violation] = self.result["report"]["violations"]
        return violations


class Deployment:
    """The configuration of one form, open for submissions."""

    def __init__(
        self,
        path: Optional[Path] = None,
        *,
        options: Optional[Mapping[str, Union[str, bool, Path]]] = None,
        cache_bytes: int = 0,
        document_bytes: int = 0,
        run_nodes: int = 0,
        run_bytes: int = 0,
    ) -> None:
        """Opens the folder `path`; without one, a deployment made of `options` alone.

        `options` are keys of deployment.json and win over it; file names in them start at the working
        directory, those in deployment.json at the folder. `cache_bytes` bounds what is kept of the
        configuration between runs, `document_bytes` the length of a document, `run_nodes` and `run_bytes`
        what the documents of one run may have together; 0 is the default of each.
        Raises DeploymentError for a deployment.json or an option that cannot be used.
        """
        given = [
            Option(key.encode(), _option_text(value)) for key, value in (options or {}).items()
        ]
        settings = Settings(
            size=ctypes.sizeof(Settings),
            options=(Option * len(given))(*given),
            option_count=len(given),
            cache_bytes=cache_bytes,
            document_bytes=document_bytes,
            run_nodes=run_nodes,
            run_bytes=run_bytes,
        )
        folder = None if path is None else os.fsencode(path)
        pointer = ctypes.c_void_p()
        call(
            library.varnel_xml_open,
            folder,
            ctypes.byref(settings),
            ctypes.byref(pointer),
            cannot_use=DeploymentError,
        )
        self._handle: Optional[Handle] = Handle(pointer, library.varnel_xml_close)

    def run(
        self,
        form: Form = "",
        submit: bool = True,
        validate: bool = True,
        *,
        journal: bool = False,
        object_list: Union[str, bytes, None] = None,
        trace: Optional[Callable[[str], None]] = None,
        replace_unstorable: bool = False,
    ) -> Outcome:
        """Runs one submission.

        `form` is the body that a browser posts, or the answers by the names of their form fields, the
        count of each table's rows included; the values of a list or tuple are posted one after the other,
        as `urllib.parse.parse_qs` gives them. With `submit` the message is built, with `validate` the
        schema is asked about it: these two count, not what deployment.json or `options` say of them.
        `object_list` is used in place of the deployment's. `trace` is called with each line, which may
        hold what people answered; an exception of it is ignored.

        With `replace_unstorable`, U+FFFD takes the place of each character in an answer that no XML document
        can hold, such as U+000B. Without, the run fails at the first of them and parks no answer behind it.

        Raises DeploymentError when the object list or the protocol information cannot be read, and TypeError
        for an answer that is neither text nor number. What else goes wrong is no exception: another file
        that cannot be read gives an outcome without `success` and without a verdict.
        """
        handle = self._handle
        if handle is None:
            raise ValueError("the deployment is closed")
        body = _form_body(form)
        objects = object_list.encode() if isinstance(object_list, str) else object_list

        def write(_context: Any, line: int, length: int) -> None:
            if trace is None:
                return
            with contextlib.suppress(Exception):  # ctypes would print each of them
                trace(ctypes.string_at(line, length).decode(errors="replace"))

        submission = Submission(
            size=ctypes.sizeof(Submission),
            form=body,
            form_length=len(body),
            submit=submit,
            validate=validate,
            report=True,
            journal=journal,
            object_list=objects,
            object_list_length=0 if objects is None else len(objects),
            trace=TraceFunction(write) if trace is not None else TraceFunction(),
            replace_unstorable=replace_unstorable,
        )
        pointer = ctypes.c_void_p()
        call(
            library.varnel_xml_run,
            handle.pointer,
            ctypes.byref(submission),
            ctypes.byref(pointer),
            cannot_use=DeploymentError,
        )
        result = Handle(pointer, library.varnel_xml_free)
        return Outcome(
            park=_bytes_of(library.varnel_xml_park, result),
            message=_bytes_of(library.varnel_xml_message, result),
            result=json.loads(_bytes_of(library.varnel_xml_json, result) or b"null"),
            unreadable=library.varnel_xml_unreadable(result.pointer),
        )

    def close(self) -> None:
        """Gives back what the deployment holds, when the last run of it has ended."""
        self._handle = None

    def __enter__(self) -> Deployment:
        return self

    def __exit__(self, *_exception: object) -> None:
        self.close()


def version() -> str:
    """The version of the library, such as "16.0.0"."""
    text: bytes = library.varnel_xml_version()
    return text.decode()


def _option_text(value: Union[str, bool, Path]) -> bytes:
    if isinstance(value, bool):
        return b"true" if value else b"false"
    return os.fsencode(value)


def _form_body(form: Form) -> bytes:
    if isinstance(form, bytes):
        return form
    if isinstance(form, str):
        return form.encode()
    pairs = [(name, text) for name, answer in form.items() for text in _texts_of(name, answer)]
    return urllib.parse.urlencode(pairs).encode()


def _texts_of(name: str, answer: object) -> Iterator[str]:
    for value in answer if isinstance(answer, (list, tuple)) else [answer]:
        # A bool is an int, and "True" no answer of anybody's.
        if isinstance(value, bool) or not isinstance(value, (str, int, float, Decimal)):
            raise TypeError(f"{name!r}: an answer is text or a number, not {type(value).__name__}")
        yield str(value)


def _bytes_of(ask: Any, result: Handle) -> Optional[bytes]:
    length = ctypes.c_size_t()
    text: Optional[int] = ask(result.pointer, ctypes.byref(length))
    return None if text is None else ctypes.string_at(text, length.value)
