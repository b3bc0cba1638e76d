# SPDX-License-Identifier: MIT
"""A printer that keeps what it is told, as paper.vbs does."""

STATE = ["FontTransparent", "ScaleMode", "DrawWidth", "DrawStyle", "FillStyle", "FillColor",
         "ForeColor", "BackColor", "CurrentX", "CurrentY"]
TWIPS = 2.4  # a pixel
LEFT_OUT = -2147352572  # an argument that isn't given, by its code


class Sheet:
    """Attributes and methods that a caller may use by name; what it sets is told."""

    def __init__(self, told, prefix=""):
        vars(self).update(_told=told, _prefix=prefix)

    def __setattr__(self, name, value):
        vars(self)[name] = value
        if name in self._public_attrs_ and not name.startswith("_"):
            self._tell(self._prefix + name, value)

    def _tell(self, *parts):
        shown = ["null" if part in (None, LEFT_OUT) else str(part) for part in parts]
        self._told.append("\t".join(shown) + "\t~")


class Lettering(Sheet):
    _public_attrs_ = ["Name", "Size", "Bold", "Underline"]
    _public_methods_ = []


class Paper(Sheet):
    _public_attrs_ = [*STATE, "Font", "TwipsPerPixelX", "TwipsPerPixelY", "hdc"]
    _public_methods_ = ["TextWidth", "TextHeight", "Print", "Line", "Circle", "Polygon",
                        "FloodFill"]

    def __init__(self, told, wrap):
        super().__init__(told)
        vars(self).update(Font=wrap(Lettering(told, "Font.")), TwipsPerPixelX=TWIPS,
                          TwipsPerPixelY=TWIPS, hdc=0, ScaleMode=1)

    def _unit(self):
        return TWIPS if self.ScaleMode == 1 else 1

    def TextWidth(self, text):
        return 6 * len(text) * self._unit()

    def TextHeight(self, _):
        return 13 * self._unit()

    def Print(self, text):
        self._tell("Print", text)

    def Line(self, *parts):
        self._tell("Line", *parts)

    def Circle(self, *parts):
        self._tell("Circle", *parts)

    def Polygon(self, points):
        self._tell("Polygon", *points)

    def FloodFill(self, *parts):
        self._tell("FloodFill", *parts)
