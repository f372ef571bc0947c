#!/usr/bin/env python3
"""Drives Dravik from outside: the built program in a real window on a virtual display of its own, by mouse and
keyboard, over the sample disks. There is no window manager, so windows stand where the program puts them.

    drive.py PROGRAM TOOL       TOOL is the diskutil of the sample disks

What the program does is seen in the commands its tool gets, in the addresses its opener gets, in the windows that
are there, in the pixels of its table and buttons, in its preferences file and in how it ends.
"""

import ctypes
import os
import pathlib
import shutil
import struct
import subprocess
import sys
import tempfile
import time
from typing import NamedTuple

PATIENCE = 30  # seconds in which anything must happen

# Places in the content of a window, and parts of it as left, top, width and height; in pixels.
SCAN, INFO, UNMOUNT, MOUNT = (77, 236), (169, 236), (284, 236), (376, 236)
FILE_MENU = (10, -12)
DISKS_TAB, SETTINGS_TAB = (45, 27), (120, 27)
FIRST_ROW = (120, 86)
SHOW_UNMOUNT_BOX = (54, 130)
MAIL_LINK, WEB_LINK = (190, 308), (190, 327)
TABLE = (42, 80, 350, 124)
UNMOUNT_BUTTON = (244, 226, 80, 20)

# The commands of a scan. The name of one sample volume has a "disk" in it, and the identifier begins there.
A_SCAN = ["list", "info|disk0s2", "info|disk1s2", "info|disk1s3", "info|disk2s2", "info|disk2s3", "info|disk3s1",
          "info|disk|copy|15.2|GB|disk3s2", "info|disk4s3", "info|disk4s4"]

# Notes the words it is called with. Then it hangs where it is told to, or the sample disks answer.
TOOL = """#!/bin/sh
(IFS='|' && printf '%s\\n' "$*" >>"$HOME/commands")
[ ! -e "$HOME/hang" ] || { echo $$ >"$HOME/hanging" && exec sleep 600; }
exec "$SAMPLE_TOOL" "$@"
"""
OPENER = """#!/bin/sh
printf '%s\\n' "$@" >>"$HOME/opened"
"""


def until(what, look):
    """Looks until there is something to see, and returns that."""
    end = time.monotonic() + PATIENCE
    while time.monotonic() < end:
        seen = look()
        if seen:
            return seen
        time.sleep(0.02)
    raise AssertionError(f"waited in vain until {what}")


class Window(NamedTuple):
    """A window's number, and the place of its content on the screen."""
    id: int
    left: int
    top: int
    width: int
    height: int


class Screen:
    """The virtual display, and a hand on its mouse and keyboard."""

    def __init__(self, folder):
        self.frame = folder / "Xvfb_screen0"
        reading, writing = os.pipe()
        self.server = subprocess.Popen(["Xvfb", "-displayfd", str(writing), "-screen", "0", "1024x768x24", "-noreset",
                                        "-nolisten", "tcp", "-fbdir", folder],
                                       pass_fds=[writing], stderr=subprocess.DEVNULL)
        os.close(writing)
        with os.fdopen(reading) as told:
            number = told.readline().strip()
        assert number, "Xvfb does not start"
        os.environ["DISPLAY"] = f":{number}"

    def xdotool(self, *words):
        return subprocess.run(["xdotool", *map(str, words)], capture_output=True, text=True, timeout=PATIENCE).stdout

    def windows(self):
        windows = []
        for number in self.xdotool("search", "--onlyvisible", "--class", "dravik").split():
            values = dict(line.split("=") for line in self.xdotool("getwindowgeometry", "--shell", number).split())
            if "HEIGHT" in values:  # it may have gone meanwhile
                windows.append(Window(int(number), *(int(values[key]) for key in ("X", "Y", "WIDTH", "HEIGHT"))))
        return windows

    def window(self, width, height):
        """The one whose content, below a menu bar if there is one, has this size."""
        for found in self.windows():
            bar = found.height - height
            if found.width == width and 0 <= bar < 40:
                return Window(found.id, found.left, found.top + bar, width, height)
        return None

    def others(self, *known):
        return [found for found in self.windows() if found.id not in [window.id for window in known]]

    def click(self, window, place):
        self.xdotool("mousemove", window.left + place[0], window.top + place[1], "click", 1)

    def press(self, window, *keys):
        self.xdotool("windowfocus", "--sync", window.id, "key", *keys)

    def close_button(self, window):
        """Asks the program to close a window, as a button in its frame would."""
        xlib = ctypes.CDLL("libX11.so.6")
        xlib.XOpenDisplay.restype = ctypes.c_void_p
        display = ctypes.c_void_p(xlib.XOpenDisplay(None))
        protocols, delete = (xlib.XInternAtom(display, name, False) for name in (b"WM_PROTOCOLS", b"WM_DELETE_WINDOW"))
        message = struct.pack("@iLiPLLi5l", 33, 0, 1, 0, window.id, protocols, 32, delete, 0, 0, 0, 0)
        xlib.XSendEvent(display, ctypes.c_ulong(window.id), False, ctypes.c_long(0), message.ljust(192, b"\0"))
        xlib.XCloseDisplay(display)

    def picture(self, window, part):
        """How green each pixel of that part of a window is."""
        frame = self.frame.read_bytes()
        header = struct.unpack(">25I", frame[:100])
        pixels, line = header[0] + 12 * header[19], header[12]  # colours of 12 bytes stand in between
        left, top, width, height = window.left + part[0], window.top + part[1], part[2], part[3]
        start = pixels + top * line + left * 4 + 1
        return b"".join(frame[start + y * line:start + y * line + width * 4:4] for y in range(height))


class Program:
    """Dravik with a home of its own, and what it leaves behind there."""

    def __init__(self, program, tool, home):
        self.program, self.home, self.process = program, home, None
        for name, text in (("diskutil", TOOL), ("xdg-open", OPENER)):
            path = home / "bin" / name
            path.parent.mkdir(exist_ok=True)
            path.write_text(text)
            path.chmod(0o755)
        os.environ.update(HOME=str(home), XDG_CONFIG_HOME=str(home), XDG_RUNTIME_DIR=str(home), LC_ALL="C.UTF-8",
                          PATH=f"{home}/bin:{os.environ['PATH']}", SAMPLE_TOOL=tool, QT_QPA_PLATFORM="xcb",
                          DRAVIK_DEMO_STATE=str(home / "state"))
        os.environ.pop("WAYLAND_DISPLAY", None)

    def start(self):
        self.process = subprocess.Popen([self.program], cwd=self.home)

    def status(self):
        return self.process.wait(PATIENCE)

    def lines(self, name):
        path = self.home / name
        return path.read_text().splitlines() if path.exists() else []

    def expect_commands(self, *expected):
        """Exactly these since the last time."""
        until(f"the tool got {expected}", lambda: len(self.lines("commands")) >= len(expected))
        got = self.lines("commands")
        assert got == list(expected), f"the tool got {got}"
        (self.home / "commands").unlink()

    def expect_preferences(self, scan, feedback, unmount):
        got = self.lines("Dravik.prefs")
        assert got == ["# Dravik's preferences version", "1.3", "# Scan on startup", scan, "# Show feedback window'",
                       feedback, "# Show unMount button'", unmount, "# EOF"], f"the preferences are {got}"


def table_after_scan(screen, program, main):
    """The picture of the table once a scan is over: all commands given, and the table the same for a while."""
    program.expect_commands(*A_SCAN)
    screen.xdotool("mousemove", 0, 0)  # out of the picture
    pictures = []

    def settled():
        pictures.append(screen.picture(main, TABLE))
        return len(pictures) > 20 and len(set(pictures[-20:])) == 1

    until("the table stays the same", settled)
    return pictures[-1]


def mount_and_unmount(screen, program, main):
    at_first = table_after_scan(screen, program, main)
    screen.click(main, FIRST_ROW)
    screen.press(main, "Down", "Down")
    screen.click(main, MOUNT)
    program.expect_commands("mount|disk1s3")
    screen.click(main, SCAN)
    mounted = table_after_scan(screen, program, main)
    assert sum(mounted) < sum(at_first), "the row of the mounted volume has not become bold"

    assert len(set(screen.picture(main, UNMOUNT_BUTTON))) == 1, "the unMount button is there unasked"
    screen.click(main, SETTINGS_TAB)
    screen.click(main, SHOW_UNMOUNT_BOX)
    screen.click(main, DISKS_TAB)
    until("the unMount button is there", lambda: len(set(screen.picture(main, UNMOUNT_BUTTON))) > 1)

    screen.click(main, FIRST_ROW)
    screen.press(main, "Down", "Down")
    screen.click(main, UNMOUNT)
    program.expect_commands("unMount|disk1s3")
    until("the feedback window goes", lambda: not screen.others(main))
    screen.click(main, SCAN)
    assert table_after_scan(screen, program, main) == at_first, "the table is not what it was before the mount"


def message_and_report(screen, program, main):
    screen.click(main, FIRST_ROW)
    screen.click(main, UNMOUNT)
    program.expect_commands("unMount|disk0s2")
    feedback = until("the feedback window comes", lambda: screen.window(397, 102))
    message, = until("a message comes", lambda: screen.others(main, feedback))
    screen.press(message, "Return")
    until("the message and the feedback window go", lambda: not screen.others(main))

    screen.click(main, INFO)
    program.expect_commands("info|disk0s2")
    report = until("the report comes", lambda: screen.window(720, 493))
    until("the feedback window goes", lambda: not screen.others(main, report))
    screen.press(report, "Return")
    until("the report goes", lambda: not screen.others(main))


def links(screen, program, main):
    for link, address in ((MAIL_LINK, "mailto:contacts@dravik.example?subject=Dravik"),
                          (WEB_LINK, "https://www.dravik.example/")):
        screen.click(main, FILE_MENU)
        file_menu = until("the File menu opens", lambda: screen.others(main))
        screen.press(main, "Right")
        until("the Edit menu opens", lambda: screen.others(main, *file_menu))
        screen.press(main, "Up", "Return")  # the last item
        screen.click(until("the About window comes", lambda: screen.window(380, 355)), link)
        until("the About window goes", lambda: not screen.others(main))
        until(f"{address} is opened", lambda: program.lines("opened")[-1:] == [address])


def main_story(screen, program):
    program.start()
    main = until("the main window comes", lambda: screen.window(450, 280))
    mount_and_unmount(screen, program, main)
    message_and_report(screen, program, main)
    links(screen, program, main)
    began = time.monotonic()
    screen.press(main, "ctrl+q")
    assert program.status() == 0, "the program ended with a status"
    program.expect_preferences("yes", "no", "yes")
    return time.monotonic() - began


def quit_with_hung_tool(screen, program, usual):
    (program.home / "hang").touch()
    (program.home / "Dravik.prefs").write_text("# Any line\n1.3\n#\nYES\n#\nyes\n#\nno\n")
    program.start()
    main = until("the main window comes", lambda: screen.window(450, 280))
    tool, = until("the tool hangs", lambda: program.lines("hanging"))
    until("the feedback window comes", lambda: screen.window(397, 102))
    began = time.monotonic()
    screen.close_button(main)
    assert program.status() == 0, "the program ended with a status"
    longer = time.monotonic() - began - usual
    assert longer < 1, f"quitting took {longer:.1f} s more with a tool that hangs"
    program.expect_preferences("yes", "yes", "no")
    assert not os.path.exists(f"/proc/{tool}"), "the tool outlives the program"


def quit_as_the_display_goes(screen, program):
    (program.home / "hang").touch()
    program.start()
    tool, = until("the tool hangs", lambda: program.lines("hanging"))
    until("the main window comes", lambda: screen.window(450, 280))
    (program.home / "Dravik.prefs").unlink()
    screen.server.terminate()
    assert program.status() == 1, "the program ended with another status"
    program.expect_preferences("yes", "yes", "no")
    assert not os.path.exists(f"/proc/{tool}"), "the tool outlives the program"


def run():
    missing = [name for name in ("Xvfb", "xdotool") if not shutil.which(name)]
    if missing:
        print("skipped: there is no " + " and no ".join(missing))
        return 77
    with tempfile.TemporaryDirectory() as folder:
        home = pathlib.Path(folder)
        screen = Screen(home)
        program = Program(*(os.path.abspath(path) for path in sys.argv[1:3]), home)
        try:
            quit_with_hung_tool(screen, program, main_story(screen, program))
            quit_as_the_display_goes(screen, program)
        except AssertionError:
            print("commands not looked at yet:", program.lines("commands"), "windows:", screen.windows())
            raise
        finally:
            if program.process and program.process.poll() is None:
                program.process.kill()
                program.process.wait()
            screen.server.terminate()
            screen.server.wait()
    return 0


sys.exit(run())
