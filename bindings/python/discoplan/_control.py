# SPDX-License-Identifier: MIT
"""What the nine controls share: a control without a window, its events and its picture."""

from typing import Any, Callable, Dict, List, Optional, Tuple, Type, TypeVar

from . import _core
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

    def _get(self, name: str) -> Any:
        return _core.control_get(self._handle, name)

    def _set(self, name: str, value: Any) -> None:
        _core.control_set(self._handle, name, value)

    def _call(self, name: str, *arguments: Any) -> Tuple[Any, ...]:
        return _core.control_call(self._handle, name, arguments)

    def _hear(self, event: str, *arguments: Any) -> None:
        for handler in list(self._handlers.get(event, ())):
            handler(*arguments)

    def on(self, event: str, handler: Callable[..., Any]) -> Callable[..., Any]:
        """Calls `handler` at each event of that name, with the event's arguments.

        What it raises is raised by the call that brought the event about. Gives the handler. Raises
        `AttributeError` for an event that the control doesn't have.
        """
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
        """The control as its user sees it."""
        return Picture(_core.control_picture(self._handle))

    def _repr_png_(self) -> bytes:
        return self.picture().png()


def member(cls: Type[C]) -> Type[C]:
    """Refuses attributes that a control doesn't have, so that a misspelt one is no silent loss."""

    def refuse(self: C, name: str, value: Any) -> None:
        if not name.startswith("_") and not hasattr(type(self), name):
            raise AttributeError(f"{self._class} has no member '{name}'")
        object.__setattr__(self, name, value)

    setattr(cls, "__setattr__", refuse)
    return cls
