# SPDX-License-Identifier: MIT
"""Answers the automation host's requests by COM, a line each: sessions.py early|late < REQUESTS"""
import importlib
import json
import sys

from paper import Paper

client = importlib.import_module(sys.argv[1])


class Session:
    def __init__(self):
        self.objects = {}
        self.told = []

    def new(self, request):
        if request["class"] == "Printer":
            self.told = []
            self.objects[request["id"]] = client.wrap(Paper(self.told, client.wrap))
        else:
            self.objects[request["id"]] = client.create(request["class"])

    def drop(self, request):
        del self.objects[request["id"]]

    def trace(self, _):
        told, self.told[:] = "".join(self.told), []
        return told

    def value(self, given):
        if isinstance(given, dict):
            return self.objects[given["ref"]] if "ref" in given else client.array(given["values"])
        return given

    def set(self, request):
        client.put(self.objects["p"], request["name"], self.value(request["value"]))

    def get(self, request):
        return getattr(self.objects["p"], request["name"])

    def call(self, request):
        args = [client.array([]) if arg is None else self.value(arg) for arg in request["args"]]
        return client.result(getattr(self.objects["p"], request["name"])(*args))


session = Session()
for number, line in enumerate(sys.stdin):
    request = json.loads(line)
    try:
        answer = getattr(session, request["op"])(request)
    except client.Failure as failure:
        answer = f"!{client.code(failure)}"
    print(number, "" if answer is None else answer, sep="=")
