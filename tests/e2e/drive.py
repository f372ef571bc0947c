#!/usr/bin/env python3
"""Drives Dravik from outside: the built program in a real window on a virtual display of its own, by mouse and
keyboard, over the sample disks. There is no window manager, so windows stand where the program puts them.

    drive.py PROGRAM TOOL               TOOL is the diskutil of the sample disks
    drive.py --pictures PROGRAM TOOL    looks at the pictures alone, over many lists, tools, scales and both palettes

What the program does is seen in what its tool and its opener are told, in its windows, its preferences and how it ends.
On a walk through all windows each one is painted anew after every step, and must look as it did.
"""

import itertools
import os
import pathlib
import shutil
import signal
import subprocess
import sys
import tempfile
import time

sys.path.append(str(pathlib.Path(__file__).resolve().parents[2] / "tools"))
from screen import PATIENCE, Screen, until  # noqa: E402

# Places in the content of a window, and parts of it as left, top, width and height; in pixels.
SCAN, INFO, UNMOUNT, MOUNT = (77, 236), (169, 236), (284, 236), (376, 236)
DISKS_TAB, SETTINGS_TAB = (45, 27), (120, 27)
FIRST_ROW = (237, 86)  # where a column ends, which a press without a move is not meant for
SHOW_UNMOUNT_BOX, MAIL_LINK, WEB_LINK = (54, 130), (190, 308), (190, 327)
TABLE, UNMOUNT_BUTTON = (42, 80, 350, 124), (244, 226, 80, 20)

# The commands of a scan. The name of one sample volume has a "disk" in it, and the identifier begins there.
A_SCAN = ["list", "info|disk0s2", "info|disk1s2", "info|disk1s3", "info|disk2s2", "info|disk2s3", "info|disk3s1",
          "info|disk|copy|15.2|GB|disk3s2", "info|disk4s3", "info|disk4s4"]

# Notes the words it is called with. Then it hangs where it is told to, or the sample disks answer.
TOOL = """#!/bin/sh
(IFS='|' && printf '%s\\n' "$*" >>"$HOME/commands")
[ ! -e "$HOME/hang" ] || { echo $$ >"$HOME/hanging" && exec sleep 600; }
exec "$SAMPLE_TOOL" "$@"
"""
# A tool of another speed, for lists of any length. Every other volume is mounted, and the first cannot be.
LISTS_TOOL = """#!/bin/sh
[ "$DELAY" = 0 ] || sleep "$DELAY"
case $*:$1 in
"mount disk0s0"*) exit 1 ;;
*:list) cat "$HOME/list" ;;
*[13579]:info) printf '   %-26s%s\\n' Mounted: Yes "Volume Name:" "$2" ;;
*) printf '   %-26s%s\\n' Mounted: No "Volume Name:" "$2" ;;
esac
"""
# A desktop's settings with dark colours.
DARK = "".join(f"[Colors:{part}]\nBackgroundNormal={back}\nForegroundNormal=230,230,230\n" for part, back in (
    ("Window", "40,44,48"), ("View", "27,30,32"), ("Button", "49,54,59"), ("Selection", "30,90,140")))
OPENER = '#!/bin/sh\nprintf "%s\\n" "$@" >>"$HOME/opened"\n'


class Program:
    """Dravik with a home of its own, and what it leaves behind there."""

    def __init__(self, program, tool, home):
        self.program, self.home, self.process = program, home, None
        for name, text in (("diskutil", TOOL), ("xdg-open", OPENER), ("lists", LISTS_TOOL)):
            path = home / "bin" / name
            path.parent.mkdir(exist_ok=True)
            path.write_text(text)
            path.chmod(0o755)
        os.environ.update(HOME=str(home), XDG_CONFIG_HOME=str(home), XDG_RUNTIME_DIR=str(home), LC_ALL="C.UTF-8",
                          PATH=f"{home}/bin:{os.environ['PATH']}", SAMPLE_TOOL=tool, QT_QPA_PLATFORM="none;xcb",
                          DRAVIK_DEMO_STATE=str(home / "state"))
        os.environ.pop("WAYLAND_DISPLAY", None)

    def start(self, **environment):
        self.process = subprocess.Popen([self.program], cwd=self.home, env={**os.environ, **environment},
                                        preexec_fn=self.leave_odd_things_behind)

    @staticmethod
    def leave_odd_things_behind():
        """A parent may ignore SIGCHLD and close standard input, and both survive `exec`."""
        signal.signal(signal.SIGCHLD, signal.SIG_IGN)
        os.close(0)

    def settle(self):
        """Returns when the program has long been asleep, with no command under way but one that hangs."""
        self.asleep = 0

        def settled():
            tasks = list(pathlib.Path(f"/proc/{self.process.pid}/task").iterdir())
            try:
                states = {(task / "stat").read_text().rpartition(")")[2].split()[0] for task in tasks}
                busy = not (self.home / "hang").exists() and any((task / "children").read_text() for task in tasks)
            except (OSError, IndexError):  # a thread has ended
                busy = True
            self.asleep = 0 if busy or states != {"S"} else self.asleep + 1
            return self.asleep == 10

        until("nothing moves", settled)

    def lines(self, name):
        path = self.home / name
        return path.read_text().splitlines() if path.exists() else []

    def expect_commands(self, *expected):
        """Exactly these since the last time."""
        until(f"the tool got {expected}", lambda: len(self.lines("commands")) >= len(expected))
        got = self.lines("commands")
        assert got == list(expected), f"the tool got {got}"
        (self.home / "commands").unlink()

    def expect_end(self, status, scan, feedback, unmount):
        ended, got = self.process.wait(PATIENCE), self.lines("Dravik.prefs")
        assert ended == status, f"the program ended with {ended}"
        assert got == ["# Dravik's preferences version", "1.3", "# Scan on startup", scan, "# Show feedback window'",
                       feedback, "# Show unMount button'", unmount, "# EOF"], f"the preferences are {got}"
        assert not any(os.path.exists(f"/proc/{tool}") for tool in self.lines("hanging")), "the tool outlives the program"


def table_after_scan(screen, program, main):
    """The picture of the table once a scan is over."""
    program.expect_commands(*A_SCAN)
    screen.xdotool("mousemove", 0, 0)  # out of the picture
    screen.expect_whole()
    return screen.greens(main, TABLE)


def mount_and_unmount(screen, program, main):
    at_first = table_after_scan(screen, program, main)
    screen.click(main, FIRST_ROW)
    screen.press(main, "Down", "Down")
    screen.click(main, MOUNT)
    program.expect_commands("mount|disk1s3")
    screen.click(main, SCAN)
    mounted = table_after_scan(screen, program, main)
    assert sum(mounted) < sum(at_first), "the row of the mounted volume has not become bold"

    assert len(set(screen.greens(main, UNMOUNT_BUTTON))) == 1, "the unMount button is there unasked"
    for place in (SETTINGS_TAB, SHOW_UNMOUNT_BOX, DISKS_TAB):
        screen.click(main, place)
    until("the unMount button is there", lambda: len(set(screen.greens(main, UNMOUNT_BUTTON))) > 1)

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

    screen.came_and_went()
    screen.click(main, INFO)
    program.expect_commands("info|disk0s2")
    report = until("the report comes", lambda: screen.window(720, 493))
    until("the feedback window goes", lambda: not screen.others(main, report))
    feedback, *order = screen.came_and_went()
    assert order[:2] == [report.id, -feedback], f"the feedback window does not go last: {feedback}, {order}"
    screen.press(report, "F10")
    until("the File menu opens", lambda: screen.others(main, report))
    screen.press(report, "Escape", "Return")
    until("the report goes", lambda: not screen.others(main))


def links(screen, program, main):
    for link, address, keys in ((MAIL_LINK, "mailto:contacts@dravik.example?subject=Dravik", ["alt+f"]),
                                (WEB_LINK, "https://www.dravik.example/", ["F10", "Down"])):
        screen.press(main, *keys)
        file_menu = until("the File menu opens", lambda: screen.others(main))
        screen.press(main, "Right")
        until("the Edit menu opens", lambda: screen.others(main, *file_menu))
        screen.press(main, "Up", "Return")  # the last item
        about = until("the About window comes", lambda: screen.window(380, 355))
        screen.expect_whole()
        screen.click(about, link)
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
    program.expect_end(0, "yes", "no", "yes")
    return time.monotonic() - began


def quit_with_hung_tool(screen, program, usual):
    (program.home / "hang").touch()
    (program.home / "Dravik.prefs").write_text("# Any line\n1.3\n#\nYES\n#\nyes\n#\nno\n")
    program.start()
    main = until("the main window comes", lambda: screen.window(450, 280))
    until("the tool hangs", lambda: program.lines("hanging"))
    until("the feedback window comes", lambda: screen.window(397, 102))
    began = time.monotonic()
    screen.close_button(main)
    program.expect_end(0, "yes", "yes", "no")
    longer = time.monotonic() - began - usual
    assert longer < 1, f"quitting took {longer:.1f} s more with a tool that hangs"


def quit_without_a_display(screen, program):
    screen.server.send_signal(signal.SIGSTOP)  # it answers no more
    program.start()
    program.settle()
    until("a second signal ends the program", lambda: program.process.terminate() or program.process.poll())
    screen.server.send_signal(signal.SIGCONT)
    program.expect_end(1, "yes", "yes", "no")
    (program.home / "hanging").unlink()
    program.start()
    until("the tool hangs", lambda: program.lines("hanging"))
    (program.home / "Dravik.prefs").unlink()
    screen.server.terminate()
    program.expect_end(1, "yes", "yes", "no")
    program.start()
    program.expect_end(1, "yes", "yes", "no")


def look_around(screen, program, rows, delay, dark):
    """A walk through the windows over a list of so many rows. Returns what is wrong with each picture, "" for nothing."""
    (program.home / "list").write_text("".join(
        f"   {row + 2}:                  Apple_HFS {f'Volume {row}':21} {row}.5 GB   disk{row}s{row}\n" for row in range(rows)))
    (program.home / "Dravik.prefs").write_text("#\n1.3\n#\nyes\n#\nyes\n#\nyes\n")
    program.start(SAMPLE_TOOL="lists", DELAY=str(delay), QT_SCALE_FACTOR=str(screen.scale),
                  **({"XDG_CURRENT_DESKTOP": "KDE", "KDE_SESSION_VERSION": "5"} if dark else {}))
    main = until("the main window comes", lambda: screen.window(450, 280))
    bar, = until("the windows stand", lambda: [main.top - found.top for found in screen.windows() if found.id == main.id])
    program.process.send_signal(signal.SIGHUP)  # which it is to outlive
    faults = [screen.fault()]
    for place, *keys in ((FIRST_ROW,), (SCAN,), (FIRST_ROW, "End"), (FIRST_ROW,), (MOUNT,), (FIRST_ROW, "Down", "Down"),
                         (MOUNT,), (FIRST_ROW, "Down", "Down"), (UNMOUNT,), (INFO,), (SETTINGS_TAB,), (DISKS_TAB,)):
        screen.click(main, place)
        if keys:
            screen.press(main, *keys)
        faults.append(screen.fault())
        for window in screen.others(main):
            screen.press(window, "Return")
            faults.append(screen.fault())
    for height in (500, 280):
        screen.xdotool("windowsize", main.id, main.width, bar + int(height * screen.scale))
        faults.append(screen.fault())
    screen.press(main, "Home", "Return")  # a message, where there is a disk, does not keep the program
    program.process.terminate()
    program.expect_end(0, "yes", "yes", "yes")
    return faults


def look_at_pictures(screen, program, scales, palettes, counts, delays):
    (program.home / "kdeglobals").write_text(DARK)
    good = True
    for screen.scale, dark, rows, delay in itertools.product(scales, palettes, counts, delays):
        faults = look_around(screen, program, rows, delay, dark)
        print(f"scale {screen.scale}, {'dark' if dark else 'light'}, {rows} rows, {delay} s a command:",
              f"{faults.count('')} of {len(faults)} pictures are whole",
              *(f"picture {number}: {fault}" for number, fault in enumerate(faults) if fault), sep="\n  ", flush=True)
        good &= not any(faults)
    assert good, "not all pictures are whole"


def run():
    missing = [name for name in ("Xvfb", "xdotool") if not shutil.which(name)]
    if missing:
        print("skipped: there is no " + " and no ".join(missing))
        return 77
    with tempfile.TemporaryDirectory() as folder:
        signal.signal(signal.SIGHUP, signal.SIG_IGN)  # as nohup does
        home = pathlib.Path(folder)
        screen = Screen(home)
        program = Program(*(os.path.abspath(path) for path in sys.argv[-2:]), home)
        screen.settle = program.settle
        try:
            if sys.argv[1] == "--pictures":
                look_at_pictures(screen, program, (1, 1.5, 2), (False, True), (0, 1, 2, 4, 7, 8, 30), (0, 0.004, 0.02, 0.06))
                return 0
            usual = main_story(screen, program)
            look_at_pictures(screen, program, (1,), (False,), (4,), (0.004,))
            quit_with_hung_tool(screen, program, usual)
            quit_without_a_display(screen, program)
        except AssertionError:
            print("commands not looked at yet:", program.lines("commands"), "windows:", screen.windows())
            raise
        finally:
            for process, last in ((screen.server, signal.SIGTERM), (program.process, signal.SIGKILL)):
                process.send_signal(signal.SIGCONT)
                process.send_signal(last)
                process.wait()
    return 0


sys.exit(run())
