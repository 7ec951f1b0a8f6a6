"""What is on the screen, by the words that assistive technology gets, and hands that work it with a
real mouse and keyboard."""

import os
import re
import struct
import subprocess
import time
import zlib

import stage
from access import Bus
from stage import CheckError

DOUBLE_CLICK = 0.6  # seconds; two clicks closer than this are one double click

class Screen:
    """The screen of a stage. Whatever looks for something waits for it, for a while."""

    def __init__(self, the_stage):
        self._stage = the_stage
        self._last_click = (0.0, (0, 0))
        self._bus = Bus()
        self._application = None

    def wait(self, condition, what, patience=stage.PATIENCE):
        """Waits until the condition gives something true, and gives that. Otherwise the check has
        failed; `what` tells how, or is a function that tells it then."""

        def look():
            process = self._stage.workbench
            if process and process.poll() is not None and not self.ending:
                raise CheckError(
                    f"the workbench ended with code {process.returncode}: "
                    f"{self._stage.workbench_output().strip()[-2000:]}"
                )
            return condition()

        try:
            return stage.wait_for(look, what, patience)
        except stage.StageError:
            raise CheckError(what() if callable(what) else what) from None

    ending = False

    def connect(self):
        """Waits until the workbench is on the stage and can be asked."""
        what = "assistive technology gets no answer from the workbench (AT-SPI)"
        pid = self._stage.workbench.pid
        self._application = self.wait(lambda: self._bus.application(pid), what)

    def windows(self):
        found = self._application.children
        return [node for node in found if node.showing]

    def window(self, title, role=None, patience=stage.PATIENCE):
        """The title may be a pattern."""
        pattern = title if isinstance(title, re.Pattern) else re.compile(re.escape(title))

        def look():
            found = [
                node
                for node in self.windows()
                if pattern.fullmatch(node.name) and role in (None, node.role)
            ]
            return found[-1] if found else None

        return self.wait(
            look, lambda: f'no window "{pattern.pattern}" among {self.titles()}', patience
        )

    def titles(self):
        return [node.name for node in self.windows()]

    def gone(self, title):
        self.wait(lambda: title not in self.titles(), f'the window "{title}" did not close')

    def find(self, where, role=None, name=None):
        """A control in a window or another control; with patience."""
        shown = name.pattern if isinstance(name, re.Pattern) else name
        return self.wait(
            lambda: where.find(role, name), f'no {role or "control"} "{shown}" in {where}'
        )

    def focused(self, role, name):
        """The control that has the focus, as soon as it is the right one."""

        def look():
            node = self._bus.latest("focused")
            return node if node and (node.role, node.name) == (role, name) else None

        return self.wait(look, f'not the {role} "{name}" has the focus')

    def popup(self):
        """The menu that has just popped up."""

        def look():
            node = self._bus.latest("showing")
            return node if node and node.role == "popup menu" and node.showing else None

        return self.wait(look, "no menu pops up")

    # Hands

    def _tool(self, *arguments):
        return subprocess.run(
            ["xdotool", *(str(a) for a in arguments)],
            env=self._stage.environment, check=True, capture_output=True, text=True,
        ).stdout  # fmt: skip

    def place(self, node):
        """Where a control stands once it has come to rest."""
        last = [None]

        def rests():
            rect, before = node.rect, last[0]
            last[0] = rect
            return rect if rect == before and rect[2] > 0 and rect[3] > 0 else None

        return self.wait(rests, f"{node} has no place on the screen")

    def point(self, node, at=None):
        """The middle of a control, or a place in it from its upper left corner."""
        x, y, width, height = self.place(node)
        dx, dy = at or (width // 2, height // 2)
        return x + dx, y + dy

    def click(self, target, button=1, at=None, times=1):
        """On a control, or on a point of the screen."""
        point = target if isinstance(target, tuple) else self.point(target, at)
        moment, last = self._last_click
        if abs(point[0] - last[0]) < 12 and abs(point[1] - last[1]) < 12:
            time.sleep(max(0.0, moment + DOUBLE_CLICK - time.monotonic()))
        self._tool("mousemove", *point)
        self._tool("click", "--repeat", times, "--delay", 60, button)
        self._last_click = (time.monotonic(), point)

    def double_click(self, target, at=None):
        self.click(target, at=at, times=2)

    def resize_window(self, title, width, height):
        """As the user does at its corner."""
        found = self._tool("search", "--onlyvisible", "--name", f"^{title}$").split()
        self._tool("windowsize", "--sync", found[-1], width, height)

    def rest_mouse(self):
        """Out of the way, so that no hint pops up in a picture."""
        self._tool("mousemove", 1438, 898)

    def keys(self, *combinations):
        for combination in combinations:
            self._tool("key", "--clearmodifiers", combination)

    def type(self, text):
        self._tool("type", "--clearmodifiers", "--delay", 15, "--", text)

    # Pictures

    def _grab(self):
        with open(self._stage.frame_buffer, "rb") as pixels:
            return pixels.read()

    def picture(self, file_name=None, settled=True):
        """The screen as it is painted, saved too when there is a file name; settled means that two
        looks after each other saw the same."""
        pixels = self._grab()
        for _ in range(20 if settled else 0):
            time.sleep(0.15)
            before, pixels = pixels, self._grab()
            if before == pixels:
                break
        picture = Picture(pixels)
        if file_name:
            picture.save(file_name)
        return picture


def png(width, lines):
    """A picture file of lines of three bytes a pixel."""

    def chunk(kind, data):
        body = kind + data
        return struct.pack(">I", len(data)) + body + struct.pack(">I", zlib.crc32(body))

    size = struct.pack(">IIBBBBB", width, len(lines), 8, 2, 0, 0, 0)
    pixels = zlib.compress(b"".join(b"\0" + line for line in lines), 9)
    start = b"\x89PNG\r\n\x1a\n"
    return start + chunk(b"IHDR", size) + chunk(b"IDAT", pixels) + chunk(b"IEND", b"")


class Picture:
    """Pixels of the screen, from the file in which Xvfb keeps them (an X window dump)."""

    def __init__(self, dump):
        head = struct.unpack(">25I", dump[:100])
        head_size, version, layout, depth, self.width, self.height = head[:6]
        bits, line = head[11], head[12]
        if (version, layout, depth, bits) != (7, 2, 24, 32):
            raise CheckError("the screen keeps its pixels in an unknown way")
        start = head_size + head[19] * 12  # behind the colours of a palette
        self._lines = []
        for y in range(self.height):
            data = dump[start + y * line : start + y * line + self.width * 4]
            colours = bytearray(self.width * 3)
            for i in range(3):
                colours[i::3] = data[2 - i :: 4]  # stored blue first
            self._lines.append(bytes(colours))

    def save(self, file_name):
        """As PNG; under its name there is always a whole picture."""
        with open(f"{file_name}.new", "wb") as file:
            file.write(png(self.width, self._lines))
        os.replace(f"{file_name}.new", file_name)

    def colours(self, rect):
        """How many colours there are in a part of the picture."""
        left, right = max(0, rect[0]), min(self.width, rect[0] + rect[2])
        seen = set()
        for line in self._lines[max(0, rect[1]) : rect[1] + rect[3]]:
            part = line[left * 3 : right * 3]
            seen.update(part[i : i + 3] for i in range(0, len(part), 3))
        return len(seen)

    def holds(self, rect):
        x, y, width, height = rect
        return x >= 0 and y >= 0 and x + width <= self.width and y + height <= self.height
