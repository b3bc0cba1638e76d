# SPDX-License-Identifier: MIT
"""The controls by their type library, as comtypes reads it."""
from ctypes import byref, c_float

import comtypes
import comtypes.client
from comtypes import COMObject, automation, hresult
from comtypes.safearray import _midlSAFEARRAY

Failure = comtypes.COMError


def create(name):
    return comtypes.client.CreateObject("Discoplan." + name)


def put(plot, name, value):
    if name == "PrinterObj":  # the classes' own setters of objects all lead to the last one's
        plot.Invoke(*plot.GetIDsOfNames(name), value, _invkind=automation.DISPATCH_PROPERTYPUTREF)
    else:
        setattr(plot, name, value)


def array(values):
    """By reference, as callers with types hand it over; a plain list must not be empty."""
    return byref(_midlSAFEARRAY(c_float).from_param(values))


def result(answer):
    return answer


def code(failure):
    return failure.details[-1] if failure.details and failure.details[-1] else failure.hresult


def wrap(wrapped):
    return Named(wrapped).QueryInterface(automation.IDispatch)


class Named(COMObject):
    """An object whose members any caller may use by name."""
    _com_interfaces_ = [automation.IDispatch]

    def __init__(self, wrapped):
        super().__init__()
        self.wrapped = wrapped
        self.names = wrapped._public_attrs_ + wrapped._public_methods_

    def IDispatch_GetTypeInfoCount(self, this, count):
        count[0] = 0
        return hresult.S_OK

    def IDispatch_GetIDsOfNames(self, this, _, names, count, locale, ids):
        if names[0] not in self.names:
            return hresult.DISP_E_UNKNOWNNAME
        ids[0] = self.names.index(names[0])
        return hresult.S_OK

    def IDispatch_Invoke(self, this, member, _, locale, kind, params, value, raised, wrong):
        name = self.names[member]
        given = [params[0].rgvarg[i] for i in reversed(range(params[0].cArgs))]
        given = [None if arg.vt == automation.VT_ERROR else arg.value for arg in given]
        if kind & automation.DISPATCH_PROPERTYPUT:
            setattr(self.wrapped, name, given[0])
            return hresult.S_OK
        answer = getattr(self.wrapped, name)
        if name in self.wrapped._public_methods_:
            answer = answer(*given)
        if value and answer is not None:
            value[0].value = answer
        return hresult.S_OK
