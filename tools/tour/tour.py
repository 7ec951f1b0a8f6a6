"""Plays a tour of one workbench; see tour.sh for the arguments. Ends with 0 only when every step
showed what it should."""

import argparse
import os
import signal
import sys
import traceback

import stage
from scenes import WORKSPACE, scenes

# What the scenes may have left on the server.
CLEAN_UP = "DROP DATABASE IF EXISTS korvane_tour; DROP DATABASE IF EXISTS korvane_tour_new"


class Interrupted(BaseException):
    """The user or the system wants an end."""


SIGNALS = (signal.SIGINT, signal.SIGTERM, signal.SIGHUP)


def on_signals(handler):
    for number in SIGNALS:
        signal.signal(number, handler)


def interrupt(number, _frame):
    on_signals(signal.SIG_IGN)  # once is enough, the rest is cleaning up
    raise Interrupted(signal.Signals(number).name)


class Tour:
    """What the scenes share: the stage, the screen, and the telling of what was seen."""

    def __init__(self, the_stage, screen, folder):
        self.stage = the_stage
        self.screen = screen
        self.folder = folder
        self._number = 0

    def say(self, text):
        print(f"  {text}", flush=True)

    def check(self, holds, text):
        if not holds:
            raise stage.CheckError(text)

    def equal(self, found, wanted, what):
        self.check(found == wanted, f"{what}: wanted {wanted!r}, found {found!r}")

    def shows(self, node, text, what=None):
        """Waits until a control has a text in it."""
        self.screen.wait(
            lambda: text in node.text,
            lambda: f"{what or node} does not show {text!r} but {node.text!r}",
        )

    def main(self):
        return self.screen.window("Korvane", "frame")

    def menu(self, *path):
        """Clicks a way through the menu bar; the last entry is returned unclicked."""
        where = self.screen.find(self.main(), "menu bar")
        for caption in path[:-1]:
            entry = self.screen.find(where, "menu item", caption)
            self.screen.click(entry)
            where = self.screen.wait(
                lambda entry=entry: next(
                    (child for child in entry.children if child.showing and child.children), None
                ),
                f'the menu "{caption}" does not open',
            )
        return self.screen.find(where, "menu item", path[-1])

    def choose(self, *path):
        """Clicks an entry of the menu, which has to be enabled."""
        entry = self.menu(*path)
        self.check(entry.enabled, f"the entry {' > '.join(path)} is disabled")
        self.screen.click(entry)

    def close_menu(self, levels=1):
        self.screen.keys(*["Escape"] * levels)

    def shot(self, name, *nodes, settled=True, rest=True):
        """Saves a picture on which each of the controls has to be painted, whole on the screen."""
        if rest:
            self.screen.rest_mouse()
        self._number += 1
        file_name = os.path.join(
            self.folder, f"{self._number:02}-{self.stage.server}-{name}.png"
        )
        places = [(str(node), node.rect) for node in nodes]  # some are gone in a second
        picture = self.screen.picture(file_name, settled)
        for node, rect in places:
            self.check(picture.holds(rect), f"{node} is not whole on the screen: {rect}")
            self.check(picture.colours(rect) > 1, f"{node} is not painted at {rect}")
        self.say(f"{os.path.basename(file_name)}")

    def failure_shot(self):
        file_name = os.path.join(self.folder, f"{self._number + 1:02}-{self.stage.server}-failure.png")
        self.screen.picture(file_name, settled=False)
        return file_name


def empty_folder(folder):
    """Pictures of an earlier tour must not be taken for those of this one."""
    os.makedirs(folder, exist_ok=True)
    for name in os.listdir(folder):
        if name.endswith((".png", ".png.new")) and name[:2].isdigit():
            os.remove(os.path.join(folder, name))


def play(the_stage, folder, part):
    from screen import Screen

    tour = Tour(the_stage, Screen(the_stage), folder)
    title = "start"
    try:
        the_stage.start_workbench()
        tour.screen.connect()
        for title, scene in scenes(the_stage.server, part):
            print(title, flush=True)
            scene(tour)
    except Exception as error:
        print(f"tour: {title}: {error}", file=sys.stderr)
        if not isinstance(error, (stage.CheckError, stage.StageError)):
            traceback.print_exc()
        try:
            print(f"tour: the screen then: {tour.failure_shot()}", file=sys.stderr)
        except Exception as second:
            print(f"tour: no picture of it: {second}", file=sys.stderr)
        output = the_stage.workbench_output().strip() if the_stage.workbench else ""
        if output:
            print(f"tour: the workbench said: {output[-2000:]}", file=sys.stderr)
        return 1
    print(f"The tour is over. The pictures are in {folder}", flush=True)
    return 0


def arguments():
    parser = argparse.ArgumentParser(prog="tour.sh")
    parser.add_argument("binary")
    parser.add_argument("folder", metavar="outdir")
    parser.add_argument("--server", choices=("mariadb", "mysql"), default="mariadb")
    parser.add_argument("--part", choices=tuple(WORKSPACE))
    return parser.parse_args()


def main():
    asked = arguments()
    folder = os.path.abspath(asked.folder)
    on_signals(interrupt)
    the_stage = stage.Stage(asked.binary, asked.server)
    try:
        empty_folder(folder)
        the_stage.start()
        return play(the_stage, folder, asked.part)
    except stage.NoServerError as error:
        print(f"tour: skipped: {error}", file=sys.stderr)
        return 0
    except stage.StageError as error:
        print(f"tour: {error}", file=sys.stderr)
        return 1
    except Interrupted as signal_name:
        print(f"tour: ended by {signal_name}", file=sys.stderr)
        return 130
    finally:
        on_signals(signal.SIG_IGN)
        the_stage.end(CLEAN_UP)


if __name__ == "__main__":
    sys.exit(main())
