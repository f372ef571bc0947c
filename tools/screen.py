"""A virtual display of its own: its windows, its pictures, and a hand on its mouse and keyboard. There is no window
manager, so windows stand where the program puts them."""

import ctypes
import mmap
import os
import struct
import subprocess
import time
from typing import NamedTuple

PATIENCE = 30  # seconds in which anything must happen
A_LOOK = 3  # seconds in which a picture that moves comes round again
STRANGE = 0xFF00FF  # a colour that no window has


def until(what, look, patience=PATIENCE):
    """Looks until there is something to see, and returns that."""
    end = time.monotonic() + patience
    while time.monotonic() < end:
        seen = look()
        if seen:
            return seen
        time.sleep(0.01)
    raise AssertionError(f"waited in vain until {what}")


class Window(NamedTuple):
    """A window's number, and the place of its content on the screen, in pixels of the screen."""
    id: int
    left: int
    top: int
    width: int
    height: int


class Screen:
    """The display. Sizes and places are in pixels of the design, each of which is `scale` of the screen's."""

    def __init__(self, folder):
        self.scale = 1
        self.settle = None  # returns when nothing is under way
        reading, writing = os.pipe()
        self.server = subprocess.Popen(["Xvfb", "-displayfd", str(writing), "-screen", "0", "1600x1200x24", "-noreset",
                                        "-nolisten", "tcp", "-fbdir", folder],
                                       pass_fds=[writing], stderr=subprocess.DEVNULL)
        os.close(writing)
        with os.fdopen(reading) as told:
            number = told.readline().strip()
        assert number, "Xvfb does not start"
        os.environ["DISPLAY"] = f":{number}"
        with open(folder / "Xvfb_screen0", "rb") as file:
            self.frame = mmap.mmap(file.fileno(), 0, prot=mmap.PROT_READ)
        header = struct.unpack(">25I", self.frame[:100])
        self.pixels, self.line = header[0] + 12 * header[19], header[12]  # colours of 12 bytes stand in between
        self.xlib = ctypes.CDLL("libX11.so.6")
        self.xlib.XOpenDisplay.restype = self.xlib.XCreateGC.restype = ctypes.c_void_p
        self.display = ctypes.c_void_p(self.xlib.XOpenDisplay(None))
        self.ignore = ctypes.CFUNCTYPE(ctypes.c_int, ctypes.c_void_p, ctypes.c_void_p)(lambda *_: 0)
        self.xlib.XSetErrorHandler(self.ignore)  # of a window that has gone
        self.xlib.XDefaultRootWindow.restype = ctypes.c_ulong
        children_come_and_go = 1 << 19
        self.xlib.XSelectInput(self.display, ctypes.c_ulong(self.xlib.XDefaultRootWindow(self.display)),
                               ctypes.c_long(children_come_and_go))

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
        width, height = int(width * self.scale), int(height * self.scale)
        for found in self.windows():
            bar = found.height - height
            if found.width == width and 0 <= bar < 40 * self.scale:
                return Window(found.id, found.left, found.top + bar, width, height)
        return None

    def others(self, *known):
        return [found for found in self.windows() if found.id not in [window.id for window in known]]

    def came_and_went(self):
        """The numbers of the windows that have come since the last call, and in their order those less than 0 that have
        gone."""
        signs, event, order = {19: +1, 18: -1}, ctypes.create_string_buffer(192), []
        while self.xlib.XPending(self.display):
            self.xlib.XNextEvent(self.display, event)
            order.append(signs.get(*struct.unpack_from("@i", event), 0) * struct.unpack_from("@L", event, 40)[0])
        return [number for number in order if number]

    def click(self, window, place, times=1):
        self.xdotool("mousemove", window.left + int(place[0] * self.scale), window.top + int(place[1] * self.scale),
                     "click", "--repeat", times, "--delay", 20, 1)

    def press(self, window, *keys):
        self.xdotool("windowfocus", "--sync", window.id, "key", *keys)

    def close_button(self, window):
        """Asks the program to close a window, as a button in its frame would."""
        protocols, delete = (self.xlib.XInternAtom(self.display, name, False)
                             for name in (b"WM_PROTOCOLS", b"WM_DELETE_WINDOW"))
        message = struct.pack("@iLiPLLi5l", 33, 0, 1, 0, window.id, protocols, 32, delete, 0, 0, 0, 0)
        self.xlib.XSendEvent(self.display, ctypes.c_ulong(window.id), False, ctypes.c_long(0), message.ljust(192, b"\0"))
        self.xlib.XSync(self.display, False)

    def picture(self, left, top, width, height):
        """The pixels of a part of the screen, a row after the other."""
        start = self.pixels + top * self.line + left * 4
        return [self.frame[start + y * self.line:start + y * self.line + width * 4] for y in range(height)]

    def greens(self, window, part):
        """How green each pixel of that part of a window is. At a scale of 1."""
        rows = self.picture(window.left + part[0], window.top + part[1], part[2], part[3])
        return b"".join(row[1::4] for row in rows)

    def smear(self, window, height):
        """Fills a window with a strange colour and gives it another height, at which the program paints all of it."""
        number = ctypes.c_ulong(window.id)
        context = ctypes.c_void_p(self.xlib.XCreateGC(self.display, number, ctypes.c_ulong(0), None))
        self.xlib.XSetForeground(self.display, context, ctypes.c_ulong(STRANGE))
        self.xlib.XFillRectangle(self.display, number, context, 0, 0, window.width, window.height)
        self.xlib.XResizeWindow(self.display, number, window.width, height)
        self.xlib.XFreeGC(self.display, context)
        self.xlib.XSync(self.display, False)

    def fault(self):
        """What is wrong with the picture: "" when every window shows what it shows painted anew from edge to edge. What
        moves, such as a wheel or a caret, is looked at until it comes round again."""
        self.settle()
        for window in self.windows():
            place = window[1:]
            stood = self.picture(*place)
            self.smear(window, window.height - int(2 * self.scale))  # smaller first: what is at its end stays there
            self.settle()
            self.smear(window, window.height)
            try:
                until("the picture is whole", lambda: self.picture(*place) == stood, A_LOOK)
            except AssertionError:
                rows = [y for y, row in enumerate(self.picture(*place)) if row != stood[y]]
                return f"lines of pixels {rows[:1]} to {rows[-1:]} of {window} were not what they are painted anew"
        return ""

    def expect_whole(self):
        fault = self.fault()
        assert not fault, fault
