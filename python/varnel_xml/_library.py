"""The C interface (varnel_xml.h), declared for ctypes. Its calls release the interpreter lock."""

from __future__ import annotations

import ctypes
import os
from typing import Any, Type

library = ctypes.CDLL(os.environ.get("VARNEL_XML_LIBRARY") or "libvarnel-xml-creation.so.16")

TraceFunction = ctypes.CFUNCTYPE(None, ctypes.c_void_p, ctypes.c_void_p, ctypes.c_size_t)


class Error(ctypes.Structure):
    _fields_ = [("size", ctypes.c_size_t), ("message", ctypes.c_char * 504)]


class Option(ctypes.Structure):
    _fields_ = [("key", ctypes.c_char_p), ("value", ctypes.c_char_p)]


class Settings(ctypes.Structure):
    _fields_ = [
        ("size", ctypes.c_size_t),
        ("options", ctypes.POINTER(Option)),
        ("option_count", ctypes.c_size_t),
        ("cache_bytes", ctypes.c_size_t),
        ("document_bytes", ctypes.c_size_t),
        ("run_nodes", ctypes.c_size_t),
        ("run_bytes", ctypes.c_size_t),
    ]


class Submission(ctypes.Structure):
    _fields_ = [
        ("size", ctypes.c_size_t),
        ("form", ctypes.c_char_p),
        ("form_length", ctypes.c_size_t),
        ("submit", ctypes.c_int32),
        ("validate", ctypes.c_int32),
        ("report", ctypes.c_int32),
        ("journal", ctypes.c_int32),
        ("object_list", ctypes.c_char_p),
        ("object_list_length", ctypes.c_size_t),
        ("trace", TraceFunction),
        ("trace_context", ctypes.c_void_p),
        ("replace_unstorable", ctypes.c_int32),
        ("reserved", ctypes.c_int32),
    ]


_pointer = ctypes.c_void_p
_length = ctypes.POINTER(ctypes.c_size_t)
_error = ctypes.POINTER(Error)
library.varnel_xml_version.restype = ctypes.c_char_p
library.varnel_xml_open.argtypes = [
    ctypes.c_char_p,
    ctypes.POINTER(Settings),
    ctypes.POINTER(_pointer),
    _error,
]
library.varnel_xml_close.argtypes = [_pointer]
library.varnel_xml_close.restype = None
library.varnel_xml_run.argtypes = [
    _pointer,
    ctypes.POINTER(Submission),
    ctypes.POINTER(_pointer),
    _error,
]
library.varnel_xml_free.argtypes = [_pointer]
library.varnel_xml_free.restype = None
library.varnel_xml_unreadable.argtypes = [_pointer]
library.varnel_xml_unreadable.restype = ctypes.c_int32
for _text in (library.varnel_xml_json, library.varnel_xml_park, library.varnel_xml_message):
    _text.argtypes = [_pointer, _length]
    _text.restype = _pointer

_OK, _BAD_ARGUMENT, _CANNOT_USE, _OUT_OF_MEMORY = range(4)


def call(function: Any, *arguments: Any, cannot_use: Type[Exception]) -> None:
    """Calls a function that gives a status, and raises what the status says."""
    error = Error(size=ctypes.sizeof(Error))
    status = function(*arguments, ctypes.byref(error))
    message = error.message.decode(errors="replace")
    if status == _CANNOT_USE:
        raise cannot_use(message)
    if status == _BAD_ARGUMENT:
        raise ValueError(message)
    if status == _OUT_OF_MEMORY:
        raise MemoryError(message)
    if status != _OK:
        raise RuntimeError(message)


class Handle:
    """A handle of the library, given back when nobody refers to it any more: a run that another
    thread is in keeps its deployment."""

    def __init__(self, pointer: ctypes.c_void_p, give_back: Any) -> None:
        self.pointer = pointer
        self._give_back = give_back

    def __del__(self) -> None:
        self._give_back(self.pointer)
