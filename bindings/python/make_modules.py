#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Writes the modules that are made from the library's own rows: make_modules.py PACKAGE_FOLDER"""

import importlib.machinery
import importlib.util
import json
import keyword
import pathlib
import sys
import textwrap
from typing import Any

TYPES = {
    "int16": "int",
    "int32": "int",
    "float": "float",
    "double": "float",
    "boolean": "bool",
    "colour": "int",
    "string": "str",
    "object": "Any",
    "array": "Any",
    "variant": "Any",
    "none": "None",
}
HEAD = '''# SPDX-License-Identifier: MIT
# Made from the library's rows by make_modules.py.
"""{}"""

'''


def core(package: pathlib.Path) -> Any:
    loader = importlib.machinery.ExtensionFileLoader("_core", str(next(package.glob("_core*.so"))))
    spec = importlib.util.spec_from_loader("_core", loader)
    assert spec is not None
    module = importlib.util.module_from_spec(spec)
    loader.exec_module(module)
    return module


def doc(text: str, indent: str) -> str:
    lines = textwrap.wrap(text, 96 - len(indent))
    if len(lines) == 1 and len(lines[0]) < 90 - len(indent):
        return f'{indent}"""{lines[0]}"""\n'
    return f'{indent}"""' + f"\n{indent}".join(lines) + f'\n{indent}"""\n'


def name_of(name: str) -> str:
    return name + "_" if keyword.iskeyword(name) else name


def converted(kind: str, enums: set[str], value: str) -> str:
    if kind == "boolean":
        return f"{value} != 0"
    if kind in enums:
        return f"{kind}({value})"
    return value


def property_text(member: dict[str, Any], enums: set[str]) -> str:
    name, kind = member["name"], member["type"]
    annotation = TYPES.get(kind, kind)
    value = converted(kind, enums, f'self._get("{name}")')
    text = f"    @property\n    def {name_of(name)}(self) -> {annotation}:\n"
    text += doc(member["doc"], " " * 8)
    if kind in enums:  # a host may have set another number
        text += f'        value = self._get("{name}")\n'
        text += f"        known: {kind} = {kind}(value) if value in {kind}._value2member_map_ else value\n"
        text += "        return known\n\n"
    else:
        text += f"        value: {annotation} = {value}\n        return value\n\n"
    if member["writable"]:
        taken = {"float": "float", "int": "int"}.get(annotation, annotation)
        text += f"    @{name_of(name)}.setter\n    def {name_of(name)}(self, value: {taken}) -> None:\n"
        text += f'        self._set("{name}", value)\n\n'
    return text


def method_text(member: dict[str, Any], enums: set[str]) -> str:
    name, parameters = member["name"], member["parameters"]
    changed = [i for i, p in enumerate(parameters) if p["direction"] != "in"]
    arguments = "".join(
        f", {name_of(p['name'])}: {TYPES.get(p['type'], p['type'])}"
        + (" = None" if p["type"] == "array" and i in changed and changed == list(range(len(parameters))) else "")
        for i, p in enumerate(parameters)
    )
    result = member["result"] or "none"
    annotation = TYPES.get(result, result)
    explained = member["doc"]
    if changed:
        names = ", ".join(parameters[i]["name"] for i in changed)
        explained += f" Gives its result and, as the method leaves them, {names}."
        annotation = "Tuple[Any, ...]"
    text = f"    def {name_of(name)}(self{arguments}) -> {annotation}:\n" + doc(explained, " " * 8)
    given = "".join(f", {name_of(p['name'])}" for p in parameters)
    call = f'self._call("{name}"{given})'
    if changed:
        picks = ", ".join(f"all_[{i + 1}]" for i in changed)
        text += f"        all_ = {call}\n        return all_[0], {picks}\n\n"
    elif result == "none":
        text += f"        {call}\n\n"
    else:
        text += f"        result: {annotation} = {converted(result, enums, call + '[0]')}\n"
        text += "        return result\n\n"
    return text


def class_text(described: dict[str, Any], enums: set[str]) -> str:
    events = ", ".join(f'"{event["name"]}"' for event in described["events"])
    listed = "; ".join(
        event["name"] + "(" + ", ".join(p["name"] for p in event["parameters"]) + ")"
        for event in described["events"]
    )
    text = f"@member\nclass {described['name']}(Control):\n"
    text += doc(f"{described['summary']}. Events: {listed}.", " " * 4)
    text += f'\n    _class = "{described["name"]}"\n    _events = ({events},)\n\n'
    for row in described["members"]:
        text += property_text(row, enums) if row["kind"] == "property" else method_text(row, enums)
    return text + "\n"


def enum_text(enumeration: dict[str, Any]) -> str:
    text = f"class {enumeration['name']}(enum.IntEnum):\n"
    for value in enumeration["values"]:
        name = value.get("alias", value["name"]) if keyword.iskeyword(value["name"]) else value["name"]
        text += f"    {name} = {value['value']}\n" + doc(value["doc"], " " * 4)
    return text + "\n\n"


def controls(rows: dict[str, Any]) -> str:
    enums = {enumeration["name"] for enumeration in rows["enumerations"]}
    text = HEAD.format("The nine controls, with every member by its name.")
    text += "import enum\nfrom typing import Any, Tuple\n\nfrom ._control import Control, member\n\n"
    names = sorted(enums | {described["name"] for described in rows["classes"]})
    text += "__all__ = [\n" + "".join(f'    "{name}",\n' for name in names) + "]\n\n\n"
    text += "".join(map(enum_text, rows["enumerations"]))
    text += "".join(class_text(described, enums) for described in rows["classes"])
    return text.rstrip() + "\n"


UNITS = ("in the unit of the values", "in percent", "in the unit of the values for each mm", "in degrees")


def figures(rows: list[tuple[str, str, str, str, int]], poorest: tuple[Any, ...]) -> str:
    """`poorest` are the figures of a wafer for which as few as possible have a meaning."""
    text = HEAD.format("The figures of merit of a wafer.")
    text += "from dataclasses import asdict, dataclass\nfrom typing import Dict, Optional\n\n\n"
    text += "@dataclass(frozen=True)\nclass Statistics:\n"
    text += '    """Figures of merit of a wafer; None where one has no meaning, as sigma of one value."""\n\n'
    for (key, title, formula, source, unit), given in zip(rows, poorest):
        text += f"    {key}: {'float' if given is not None else 'Optional[float]'}\n" + doc(f"{title}: {formula}; {UNITS[unit]} ({source}).", " " * 4)
    text += "\n    def asdict(self) -> Dict[str, Optional[float]]:\n"
    text += '        """By the keys of the command line and of JSON."""\n        return asdict(self)\n'
    return text


def main() -> None:
    package = pathlib.Path(sys.argv[1])
    module = core(package)
    poorest = module.statistics(module.wafer(*3 * (memoryview(bytes(4)).cast("f"),), None), 0)
    (package / "controls.py").write_text(controls(json.loads(module.describe())), encoding="utf-8")
    (package / "_figures.py").write_text(figures(module.figures(), poorest), encoding="utf-8")


main()
