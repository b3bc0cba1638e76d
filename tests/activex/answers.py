# SPDX-License-Identifier: MIT
"""A script's answers against the automation host's replies."""
import json
import subprocess


def replies(program, requests):
    text = "".join(json.dumps(request) + "\n" for request in requests)
    out = subprocess.run([program, "automate"], input=text, capture_output=True, text=True,
                         check=True).stdout
    return [json.loads(line) for line in out.splitlines()]


def same(seen, value):
    if isinstance(value, str):
        return seen == value
    try:
        number = float({"True": -1, "False": 0}.get(seen, seen))
    except ValueError:
        return False
    if value >= 2**31:  # a system colour, whose 32 bits have a sign there
        value -= 2**32
    # A script shows seven digits of a single.
    return abs(number - value) <= 1e-6 * max(1, abs(value))


def fault(seen):
    """Some engines show a run-time error by its whole code."""
    return str(int(seen) & 0xFFFF) if seen.lstrip("-").isdigit() else seen
