# SPDX-License-Identifier: MIT
"""What the nine controls share: a control without a window, its events and its picture."""

import os
from typing import Any, Callable, Dict, List, Optional, Tuple, Type, TypeVar, Union

from . import _core
from ._input import as_array
from ._picture import Picture

C = TypeVar("C", bound="Control")


class Control:
    """A plot control of its own, without a window. One thread uses it at a time; a second one waits.

    Args:
        width, height: In pixels, 1 to 10000, of 15 twips each.
    """

    _class: str
    _events: Tuple[str, ...]

    def __init__(self, width: int = 400, height: int = 300) -> None:
        self._handle = _core.control(self._class, width, height)
        self._handlers: Dict[str, List[Callable[..., Any]]] = {}

    def __reduce__(self) -> Tuple[Any, ...]:
        raise TypeError("a control can't be pickled; hand on its picture, or its data and settings")

    def _get(self, name: str) -> Any:
        return _core.control_get(self._handle, name)

    def _set(self, name: str, value: Any) -> None:
        _core.control_set(self._handle, name, value)

    def _call(self, name: str, *arguments: Any) -> Tuple[Any, ...]:
        found = _core.control_call(self._handle, name, arguments)
        return tuple(as_array(each) if isinstance(each, memoryview) else each for each in found)

    def _hear(self, event: str, *arguments: Any) -> None:
        for handler in list(self._handlers.get(event, ())):
            handler(*arguments)

    def on(self, event: str, handler: Callable[..., Any]) -> Callable[..., Any]:
        """Calls `handler` at each event of that name, with the event's arguments.

        What it raises is raised by the call that brought the event about. Gives the handler. Raises
        `AttributeError` for an event that the control doesn't have.
        """
        if not callable(handler):
            raise TypeError(f"takes a function, not {type(handler).__name__}")
        if event not in self._events:
            raise AttributeError(f"{self._class} has no event '{event}', but {', '.join(self._events)}")
        if not self._handlers:
            _core.control_listen(self._handle, self._hear)
        self._handlers.setdefault(event, []).append(handler)
        return handler

    def mouse(
        self,
        event: str,
        x: float = 0,
        y: float = 0,
        *,
        button: int = 0,
        shift: int = 0,
        child: Optional[str] = None,
    ) -> None:
        """Acts as the user does with the mouse, on the control or on a child of it.

        Positions count from the upper left corner in the child's own units.
        """
        _core.control_mouse(self._handle, child, event, button, shift, x, y)

    def resize(self, width: int, height: int) -> None:
        """In pixels."""
        _core.control_resize(self._handle, width, height)

    def picture(self) -> Picture:
        """The control as its user sees it, in pixels."""
        return Picture(_core.control_picture(self._handle))

    def page(self, mm: Optional[Tuple[float, float]] = None) -> Picture:
        """A page as the control prints it: the plot in its frame, the wafer's mark and the legend.

        `mm` is its width and height, 20 to 2000 each; without it the page is as large as the
        control. Raises `ValueError` for a control without data.
        """
        width, height = mm or (0.0, 0.0)
        return Picture(_core.control_print(self._handle, width, height))

    def png(self) -> bytes:
        """The bytes of a PNG file of the control as its user sees it."""
        return self.picture().png()

    def svg(self) -> str:
        """The text of an SVG file of its page."""
        return self.page().svg()

    def pdf(self) -> bytes:
        """The bytes of a PDF file of its page."""
        return self.page().pdf()

    def save(self, path: "Union[str, os.PathLike[str]]") -> None:
        """Writes a file; its ending tells the format: .png has the control as its user sees it,
        .svg and .pdf have its page.

        The file appears whole or not at all. Raises `OSError` if it can't be written and
        `ValueError` for another ending, and for a page without data.
        """
        vectors = os.fsdecode(path).lower().endswith((".svg", ".pdf"))
        (self.page() if vectors else self.picture()).save(path)

    def _repr_png_(self) -> bytes:
        return self.png()


def member(cls: Type[C]) -> Type[C]:
    """Refuses attributes that a control doesn't have, so that a misspelt one is no silent loss."""

    def refuse(self: C, name: str, value: Any) -> None:
        if not name.startswith("_") and not hasattr(type(self), name):
            raise AttributeError(f"{self._class} has no member '{name}'")
        object.__setattr__(self, name, value)

    setattr(cls, "__setattr__", refuse)
    return cls
