#!/usr/bin/python3
"""Reads which rooms of the engine know each other: each includes files only of those that its
CMakeLists.txt puts below it, directly or by way of others. The include path alone finds all rooms."""
import pathlib
import re
import unittest

ENGINE = pathlib.Path(__file__).resolve().parents[2] / "engine"


def rooms_below():
    rooms = {}
    for listing in ENGINE.glob("*/CMakeLists.txt"):
        below = re.search(r"\bBELOW ([^)\n]*)", listing.read_text())
        rooms[listing.parent.name] = set(below.group(1).split()) if below else set()
    return rooms


def with_those_below(room, rooms):
    return {room}.union(*(with_those_below(other, rooms) for other in rooms[room]))


def rooms_included(path):
    return set(re.findall(r'^#include "([^/"]+)/', path.read_text(), re.MULTILINE))


class Rooms(unittest.TestCase):
    def test_a_room_knows_only_those_below(self):
        rooms = rooms_below()
        self.assertGreater(len(rooms), 10)
        for room in rooms:
            for path in [*(ENGINE / room).glob("*.h"), *(ENGINE / room).glob("*.cpp")]:
                with self.subTest(path=str(path.relative_to(ENGINE))):
                    self.assertLessEqual(rooms_included(path), with_those_below(room, rooms))

    def test_no_include_climbs(self):
        for path in [*ENGINE.rglob("*.h"), *ENGINE.rglob("*.cpp")]:
            with self.subTest(path=str(path.relative_to(ENGINE))):
                self.assertNotIn('#include "../', path.read_text())


unittest.main()
