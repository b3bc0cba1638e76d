# SPDX-License-Identifier: MIT
"""The controls by their members' names, as pywin32 calls them."""
import pythoncom
import win32com.client
from win32com.server.util import wrap

Failure = pythoncom.com_error


def create(name):
    return win32com.client.dynamic.Dispatch("Discoplan." + name)


put = setattr


def array(values):
    return values


def result(answer):
    """In front of arguments that come back."""
    return answer[0] if isinstance(answer, tuple) else answer


def code(failure):
    return failure.excepinfo[5] if failure.excepinfo else failure.hresult
