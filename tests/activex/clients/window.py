# SPDX-License-Identifier: MIT
"""A control in the system's own container: events come to comtypes and to pywin32, and its picture is
drawn by OleDraw with the colours of its classes. Needs a display."""
import ctypes
from ctypes import byref, wintypes

import comtypes.client
import pythoncom
import win32com.client
from comtypes import IUnknown, automation

import early

WIDTH, HEIGHT = 400, 300
MOUSE_MOVE, DOWN, UP, LEFT = 0x200, 0x201, 0x202, 1
VISIBLE_CHILD = 0x50000000
COLOURS = [0x20 * i + 0x1F00 * (i + 1) + 0x110000 * (10 - i) for i in range(10)]

user, drawing = ctypes.windll.user32, ctypes.windll.gdi32
user.CreateWindowExW.restype = wintypes.HWND
user.CreateWindowExW.argtypes = [wintypes.DWORD, wintypes.LPCWSTR, wintypes.LPCWSTR, wintypes.DWORD,
                                 *[ctypes.c_int] * 4, *[ctypes.c_void_p] * 4]
user.SendMessageW.argtypes = [wintypes.HWND, wintypes.UINT, wintypes.WPARAM, wintypes.LPARAM]
drawing.CreateCompatibleDC.restype = drawing.CreateDIBSection.restype = ctypes.c_void_p
drawing.CreateDIBSection.argtypes = [ctypes.c_void_p] * 2 + [wintypes.UINT] + [ctypes.c_void_p] * 2 \
    + [wintypes.DWORD]
drawing.SelectObject.argtypes = [ctypes.c_void_p] * 2


def same(seen, due):
    assert seen == due, f"{seen}, not {due}"


heard = []


def note(name):
    # What comtypes hands over are the control's own variables, for the time of the call.
    return lambda _, *args: heard.append(
        (name, *(arg[0] if isinstance(arg, automation.VARIANT) else arg for arg in args)))


class Listener:
    """Of comtypes, and with the names that pywin32 looks for."""
    MouseDown = OnMouseDown = note("MouseDown")
    MouseUp = OnMouseUp = note("MouseUp")
    Click = OnClick = note("Click")


def contained(name):
    """The control, and its container's window."""
    container = ctypes.windll.atl
    container.AtlAxWinInit()
    frame = user.CreateWindowExW(0, "AtlAxWin", f"Discoplan.{name}", 0x10000000, 0, 0, WIDTH, HEIGHT,
                                 None, None, None, None)
    inner = ctypes.POINTER(IUnknown)()
    same(container.AtlAxGetControl(wintypes.HWND(frame), byref(inner)), 0)
    return comtypes.client.GetBestInterface(inner), frame


def click(window, x, y):
    at = y << 16 | x
    user.SendMessageW(window, DOWN, LEFT, at)
    user.SendMessageW(window, UP, 0, at)


def hear(plot, connect):
    leave = connect(plot)
    click(plot.hwnd, 2, 4)
    same(heard, [("MouseDown", 1, 0, 30.0, 60.0), ("MouseUp", 1, 0, 30.0, 60.0), ("Click",)])
    heard.clear()
    leave()
    click(plot.hwnd, 2, 4)
    same(heard, [])


def early_events(plot):
    return comtypes.client.GetEvents(plot, Listener()).disconnect


def late_events(plot):
    address = ctypes.cast(plot, ctypes.c_void_p).value
    return win32com.client.WithEvents(
        win32com.client.Dispatch(pythoncom.ObjectFromAddress(address, pythoncom.IID_IDispatch)),
        Listener).close


def drawn(plot):
    """The rows of the picture, from the top."""
    header = (ctypes.c_int32 * 10)(40, WIDTH, -HEIGHT, 32 << 16 | 1)
    device, bits = drawing.CreateCompatibleDC(None), ctypes.c_void_p()
    bitmap = drawing.CreateDIBSection(device, header, 0, byref(bits), None, 0)
    drawing.SelectObject(device, bitmap)
    place = wintypes.RECT(0, 0, WIDTH, HEIGHT)
    same(ctypes.oledll.ole32.OleDraw(plot, 1, ctypes.c_void_p(device), byref(place)), 0)
    drawing.GdiFlush()
    return list((ctypes.c_uint32 * (WIDTH * HEIGHT)).from_address(bits.value))


def load(plot):
    places = [(x, y) for y in range(-90, 91, 10) for x in range(-90, 91, 10) if x * x + y * y <= 8100]
    columns = zip(*[(x, y, x + 2 * y) for x, y in places])
    same(plot.SetWaferData(*[early.array(list(map(float, column))) for column in columns]), 0)


def show_classes(plot):
    for i, colour in enumerate(COLOURS):
        setattr(plot, f"IntervalColor{i}", colour)
    load(plot)
    same(plot.Plot(), 0)
    pixels = drawn(plot)
    for i, colour in enumerate(COLOURS):
        pixel = (colour & 0xFF) << 16 | colour & 0xFF00 | colour >> 16
        assert pixels.count(pixel) > 300, f"class {i}: {pixels.count(pixel)} pixels of {colour:#x}"


plot, frame = contained("Plot2D")
hear(plot, early_events)
hear(plot, late_events)
show_classes(plot)
print("events and picture are right")
