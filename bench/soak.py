#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Uses the program as a busy user would, by mouse, keys and bus, and writes what it takes meanwhile.

soak.py PROGRAM ACTIONS TABLE.csv PLOT.svg [CHECKER...]

Runs on a desktop and in a home of its own. Every action leaves the arrangement as it found it and tells whether it
did what it is for. Fails when the program ends, too many actions miss, or memory, descriptors or threads grow. With a
checker, such as valgrind and its options, the program runs under that, nothing is measured, and its status is ours.
"""
import ctypes
import json
import os
import pathlib
import random
import shutil
import signal
import statistics
import subprocess
import sys
import tempfile
import time

TILES = ["Only", "Links", "Notes", "Inbox"]
SIDE, CAP, HEIGHT = 44, 14, 800
SETTINGS = "pondWicket Settings"
MENU = "menu"
NOTES = "https://dropped.example/"
SAMPLES = 200  # over the whole run
X, XTEST = ctypes.CDLL("libX11.so.6"), ctypes.CDLL("libXtst.so.6")
X.XOpenDisplay.restype = ctypes.c_void_p
IGNORE = ctypes.CFUNCTYPE(ctypes.c_int, ctypes.c_void_p, ctypes.c_void_p)(lambda *_: 0)  # windows come and go


class Screen:
    def __init__(self, name):
        X.XSetErrorHandler(IGNORE)
        self.display = ctypes.c_void_p(X.XOpenDisplay(name.encode()))
        self.root = X.XDefaultRootWindow(self.display)

    def keys(self, *names):
        for name in names:
            codes = [X.XKeysymToKeycode(self.display, X.XStringToKeysym(part.encode())) for part in name.split("+")]
            for down in (True, False):
                for code in codes if down else reversed(codes):
                    XTEST.XTestFakeKeyEvent(self.display, code, down, 0)
            X.XSync(self.display, False)

    def move(self, x, y):
        XTEST.XTestFakeMotionEvent(self.display, -1, x, y, 0)
        X.XSync(self.display, False)

    def button(self, down, number=1):
        XTEST.XTestFakeButtonEvent(self.display, number, down, 0)
        X.XSync(self.display, False)

    def click(self, x, y, number=1):
        self.move(x, y)
        self.button(True, number)
        self.button(False, number)

    def focus(self):
        """The name of the window that gets the keys."""
        window, name = ctypes.c_ulong(), ctypes.c_char_p()
        X.XGetInputFocus(self.display, ctypes.byref(window), ctypes.byref(ctypes.c_int()))
        return name.value.decode() if window.value > 1 and X.XFetchName(
            self.display, window, ctypes.byref(name)) and name.value else None

    def windows(self, window=None):
        """The name and the place of each window that is seen; one of ours without a name is a menu."""
        parent, children, count = ctypes.c_ulong(), ctypes.POINTER(ctypes.c_ulong)(), ctypes.c_uint()
        name, place = ctypes.c_char_p(), [ctypes.c_int() for _ in range(7)]
        found = {}
        if not X.XQueryTree(self.display, ctypes.c_ulong(window or self.root), *map(ctypes.byref, (
                parent, parent, children, count))):
            return found
        for child in map(ctypes.c_ulong, children[:count.value]):
            attributes = (ctypes.c_int * 64)()
            if X.XGetWindowAttributes(self.display, child, attributes) and attributes[23] == 2:  # viewable
                if X.XFetchName(self.display, child, ctypes.byref(name)):
                    X.XTranslateCoordinates(self.display, child, ctypes.c_ulong(self.root), 0, 0, *map(
                        ctypes.byref, (place[0], place[1], parent)))
                    found[name.value.decode() or MENU] = (place[0].value, place[1].value, attributes[2], attributes[3])
                    X.XFree(name)
                found.update(self.windows(child.value))
        X.XFree(children)
        return found


slowness = 1  # of the program under a checker


def pause(seconds):
    time.sleep(seconds * slowness)


def wait(condition):
    end = time.monotonic() + 5 * slowness
    while not (value := condition()) and time.monotonic() < end:
        time.sleep(0.004)
    return value


class Soak:
    def __init__(self, program, folder, checker):
        self.program, self.home, self.processes = program, folder / "home", []
        self.folder = self.home / "Documents" / "pondWicket ƒ"
        self.opened, self.text = folder / "opened", folder / "links"
        (folder / "run").mkdir(mode=0o700)
        self.environment = {"HOME": str(self.home), "PATH": os.environ["PATH"], "LC_ALL": "C.UTF-8",
                            "XDG_RUNTIME_DIR": str(folder / "run")}
        display = self.start("Xvfb", "-displayfd", "1", "-screen", "0", f"1280x{HEIGHT}x24", "-nolisten", "tcp")
        self.environment["DISPLAY"] = ":" + display.stdout.readline().decode().strip()
        bus = self.start("dbus-daemon", "--session", "--nofork", "--print-address=1")
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = bus.stdout.readline().decode().strip()
        self.start("openbox")
        self.screen = Screen(self.environment["DISPLAY"])
        time.sleep(2)  # a window that is mapped while the manager still starts is never shown
        first = self.start(program)  # leaves the themes
        wait(lambda: self.sees("pondWicket"))
        first.terminate()
        first.wait()
        self.write_home(folder)
        self.environment["QT_ENABLE_REGEXP_JIT"] = str(int(not checker))  # code that no checker can look into
        self.process = self.start(*checker, program)
        wait(lambda: self.sees("pondWicket"))
        pause(1)
        self.base = set(self.screen.windows())

    def start(self, *command):
        # That of the program, which nobody reads, would become full.
        output = subprocess.DEVNULL if command[-1] == self.program else subprocess.PIPE
        process = subprocess.Popen(command, env=self.environment, stdout=output, stderr=subprocess.DEVNULL)
        self.processes.append(process)
        return process

    def write_home(self, folder):
        links = {"Only": ["https://a.example/"], "Links": ["https://b.example/", "tel:1", "/nowhere"]}
        tiles = []
        for number, name in enumerate(TILES):
            (self.folder / "Tiles" / name).mkdir(parents=True)
            items = [{"id": f"{number:08}-0000-0000-0001-{i:012}", "itemString": link, "itemName": "a link"}
                     for i, link in enumerate(links.get(name, []))]
            tiles.append({"id": f"{number:08}-0000-0000-0000-000000000000", "iconName": "default", "tileName": name,
                          "tileDirectory": (self.folder / "Tiles" / name).as_uri(), "scratchpadText": "",
                          "showsScratchpad": name == "Notes", "tileMenuItems": items})
        self.settings.write_text(json.dumps({
            "currentTheme": "2024", "availableThemes": ["1984", "1988", "1995", "1996", "2000", "2010", "2024"],
            "showsDate": False, "direction": "ltr", "appIcon": "Default", "tileItems": tiles}))
        self.notes.write_text(NOTES)
        self.opened.write_text("")
        self.text.write_text("See https://imported.example/ for more.")
        applications = self.home / ".local" / "share" / "applications"
        applications.mkdir(parents=True)
        recorder = folder / "recorder"
        recorder.write_text(f"#!/bin/sh\necho >>'{self.opened}'\n")
        recorder.chmod(0o755)
        (applications / "recorder.desktop").write_text(
            f"[Desktop Entry]\nType=Application\nName=R\nExec={recorder} %u\nMimeType=x-scheme-handler/https;\n")
        (applications / "mimeapps.list").write_text("[Default Applications]\nx-scheme-handler/https=recorder.desktop\n")

    settings = property(lambda self: self.folder / "pondWicket-settings.json")
    notes = property(lambda self: self.folder / "Tiles" / "Notes" / "Notes.txt")

    def sees(self, name):
        return self.screen.windows().get(name)

    def stored(self):
        try:
            return json.loads(self.settings.read_text())
        except ValueError:  # met while it is written
            return {}

    def links(self, name):
        return next((len(t["tileMenuItems"]) for t in self.stored().get("tileItems", []) if t["tileName"] == name), 0)

    def clicks(self, name, button=1):
        left, top, _, _ = self.sees("pondWicket")
        self.screen.click(left + CAP + SIDE * (TILES.index(name) + 1) + SIDE // 2, top + SIDE // 2, button)

    def popover(self, name):
        self.clicks(name, 3)
        wait(lambda: self.screen.focus() == name)
        return self.sees(name)

    def closes(self, name):
        if place := name == SETTINGS and self.sees(name):  # by its title, whoever has the focus
            self.screen.click(place[0] + 60, place[1] - 10)
            wait(lambda: self.screen.focus() == name)
        self.screen.keys("Escape")
        return wait(lambda: not self.sees(name))

    def page(self, *keys):
        """The settings window with its place, after the keys."""
        subprocess.run([self.program, "--settings"], env=self.environment, check=True, stdout=subprocess.DEVNULL)
        place = wait(lambda: self.sees(SETTINGS))
        self.screen.click(place[0] + 60, place[1] - 10)
        wait(lambda: self.screen.focus() == SETTINGS)
        self.screen.keys(*keys)
        return place

    def edits_tile(self, tile, *keys):
        """In the settings window, by keys that begin at the tile's segment."""
        self.page("Control_L+Tab", "Tab", *["Right"] * TILES.index(tile), *keys)

    def menu(self, name, steps):
        left, top, width, _ = self.popover(name)
        self.screen.click(left + width - 38, top + 38)
        wait(lambda: self.sees(MENU))
        self.screen.keys(*["Down"] * steps, "Return")

    def removes_link(self, name):
        self.edits_tile(name, *["Tab"] * 6, "Delete")  # past the buttons and the tile's name to its first link
        return wait(lambda: self.links(name) == 0) and self.closes(SETTINGS)

    # -- the actions: each true when it did what it is for ------------------------------------------------------

    def opens_popover(self):
        name = random.choice(TILES)
        return self.popover(name) and self.closes(name)

    def starts_again_and_opens_popover_by_key(self):
        subprocess.run([self.program], env=self.environment, check=True)
        wait(lambda: self.screen.focus() == "pondWicket")
        self.screen.keys("Control_L+2")
        opened = wait(lambda: self.screen.focus() == "Links")
        self.screen.keys("Control_L+2")  # closed otherwise, it would take two presses to open the next time
        return opened and wait(lambda: not self.sees("Links"))

    def opens_link(self):
        before = self.opened.stat().st_size
        self.clicks("Only")
        return wait(lambda: self.opened.stat().st_size > before)

    def types_notes(self):
        word = random.choice(["pond", "wicket", "frog", "reed"])
        if not self.popover("Notes"):
            return False
        self.screen.keys("Tab", "Tab", "Control_L+End", *word)
        typed = wait(lambda: self.notes.read_text().endswith(word))
        self.screen.keys(*["BackSpace"] * len(word))
        return wait(lambda: self.notes.read_text() == NOTES) and typed and self.closes("Notes")

    def drops_text(self):
        left, top, _, height = self.popover("Notes")
        strip = self.sees("pondWicket")
        self.screen.keys("Tab", "Tab", "Control_L+a")
        x, y = left + 60, top + height - 128
        self.screen.move(x, y)
        self.screen.button(True)
        target = strip[0] + CAP + SIDE * 4 + 20, strip[1] + 20
        for step in range(21):
            self.screen.move(x + (target[0] - x) * step // 20, y + (target[1] - y) * step // 20)
            pause(0.01)
        pause(0.1)
        self.screen.button(False)
        arrived = wait(lambda: self.links("Inbox") == 1)
        self.closes("Notes")
        return arrived and self.removes_link("Inbox")

    def imports(self):
        self.menu("Inbox", 3)
        if not wait(lambda: self.sees("Import links from file")):
            return False
        wait(lambda: self.screen.focus() == "Import links from file")
        pause(0.1)
        self.screen.keys(*("slash" if letter == "/" else letter for letter in str(self.text)), "Return")
        arrived = wait(lambda: self.links("Inbox") == 1)
        self.closes("Inbox")
        return arrived and self.removes_link("Inbox")

    def hides_and_shows(self):
        left, top, _, _ = self.sees("pondWicket")
        for end in (len(TILES) + 1, 1):
            self.screen.click(left + CAP + end * SIDE + CAP // 2, top + SIDE // 2)
            pause(0.4)
        return self.popover("Links") and self.closes("Links")

    def changes_setting(self, field, *keys):
        """Away and back."""
        first = self.stored()[field]
        self.page()
        for there, key in zip((True, False), keys):
            self.screen.keys(*key.split())
            if not wait(lambda: (self.stored().get(field) == first) != there and self.stored()):
                return False
        return self.closes(SETTINGS)

    def changes_theme(self):
        down = random.randrange(1, 7)
        return self.changes_setting("currentTheme", "Alt_L+t" + " Up" * down, "Down " * down)

    def changes_direction(self):
        return self.changes_setting("direction", "Alt_L+p Right", "Alt_L+p Left")

    def changes_calendar(self):
        return self.changes_setting("showsDate", "Alt_L+s", "Alt_L+s")

    def edits_name(self):
        self.edits_tile("Only", "Tab", "Tab", "Tab", "End", "s")
        edited = wait(lambda: self.stored().get("tileItems", [{}])[0].get("tileName") == "Onlys")
        self.screen.keys("BackSpace")
        undone = wait(lambda: self.stored().get("tileItems", [{}])[0].get("tileName") == "Only")
        return edited and undone and self.closes(SETTINGS)

    def adds_and_removes_tile(self):
        self.edits_tile("Only", "Tab", "space")
        added = wait(lambda: len(self.stored().get("tileItems", [])) == len(TILES) + 1)
        self.closes(SETTINGS)
        name = self.stored()["tileItems"][-1]["tileName"]
        TILES.append(name)
        self.menu(name, 5)
        TILES.pop()
        return wait(lambda: len(self.stored().get("tileItems", [])) == len(TILES)) and added

    def asks_the_bus(self):
        subprocess.run(["gdbus", "call", "--session", "--dest", "com.example.pondwicket", "--object-path",
                        "/com/example/pondwicket", "--method", "org.freedesktop.Application.ActivateAction",
                        "settings", "[]", "{}"], env=self.environment, check=True, stdout=subprocess.DEVNULL)
        return wait(lambda: self.sees(SETTINGS)) and self.closes(SETTINGS)

    def monitors(self, *changes):
        for change in changes:
            subprocess.run(["xrandr", *change.split()], env=self.environment, check=True, stdout=subprocess.DEVNULL)

    def undocks_screen(self):
        """The right half becomes a screen that takes the strip, and goes again."""
        self.monitors("--setmonitor left 640/160x800/200+0+0 screen", "--setmonitor *right 640/160x800/200+640+0 none")
        came = wait(lambda: self.sees("pondWicket")[0] == 640)
        opened = came and self.popover("Links") and self.closes("Links")
        self.monitors("--delmonitor right", "--delmonitor left")
        return wait(lambda: self.sees("pondWicket")[0] == 0) and opened

    def opens_menu(self):
        left, top, _, _ = self.sees("pondWicket")
        self.screen.click(left + CAP // 2, top + 4 + self.done["opens_menu"][0] % 2 * 30, 3)  # never a double click
        opened = wait(lambda: self.sees(MENU))
        self.screen.keys("Down")
        return opened and self.closes(MENU)

    def clear(self, action):
        for _ in range(3):
            for name in self.screen.windows().keys() - self.base:
                self.closes(name)
                self.screen.click(1200, 300)  # which also closes a popover that never got the focus
        if self.screen.windows().keys() != self.base:
            raise RuntimeError(f"{self.screen.windows().keys() - self.base} stays after {action.__name__}")

    def repair(self):
        """What a missed action left."""
        if self.stored()["direction"] != "ltr":
            self.page("Alt_L+p", "Left")
            wait(lambda: self.stored().get("direction") == "ltr")
            self.closes(SETTINGS)
        if len(tiles := self.stored()["tileItems"]) > len(TILES):
            TILES.append(tiles[-1]["tileName"])
            self.menu(TILES[-1], 5)
            TILES.pop()
        if self.links("Inbox"):
            self.removes_link("Inbox")

    # -- measuring -----------------------------------------------------------------------------------------------

    def sample(self):
        folder = pathlib.Path("/proc") / str(self.process.pid)
        memory = dict(line.split(":") for line in (folder / "smaps_rollup").read_text().splitlines()[1:])
        threads = next(line for line in (folder / "status").read_text().splitlines() if line.startswith("Threads"))
        sizes = [int(memory[name].split()[0]) for name in ("Pss", "Rss", "Anonymous")]
        return [*sizes, len(list((folder / "fd").iterdir())),
                int(threads.split()[1])]

    def run(self, count, rows):
        weights = {self.opens_popover: 30, self.opens_link: 30, self.types_notes: 10, self.opens_menu: 10,
                   self.starts_again_and_opens_popover_by_key: 8, self.asks_the_bus: 4, self.changes_theme: 4,
                   self.changes_calendar: 2, self.changes_direction: 2, self.hides_and_shows: 2, self.edits_name: 2,
                   self.adds_and_removes_tile: 2, self.imports: 1, self.drops_text: 1, self.undocks_screen: 1}
        self.done = {action.__name__: [0, 0] for action in weights}
        start = time.monotonic()
        for number in range(count + 1):
            if slowness == 1 and number % max(1, count // SAMPLES) == 0:
                rows.append([number, round(time.monotonic() - start, 1), *self.sample()])
            action = list(weights)[number] if number < len(weights) else random.choices(
                list(weights), list(weights.values()))[0]
            tally = self.done[action.__name__]
            tally[0] += 1
            try:
                worked = bool(action())
                tally[1] += worked
                if not worked:
                    self.clear(action)
                    self.repair()
            except (TypeError, KeyError, IndexError):  # a window that should be there was not
                pass
            if number % 500 == 0:
                print(number, round(time.monotonic() - start), flush=True)
            self.clear(action)
            if self.process.poll() is not None:
                raise RuntimeError(f"the program ended with {self.process.returncode} in {action.__name__}")


def plot(rows):
    """Memory above, descriptors and threads below, over the actions."""
    width, height, edge = 640, 160, 48
    parts = []
    for top, series in ((20, ((3, "resident", 1024), (4, "of its own", 1024))),
                        (height + 60, ((5, "descriptors", 1), (6, "threads", 1)))):
        most = max(row[column] / unit for row in rows for column, _, unit in series) * 1.15
        parts.append(f'<path d="M{edge} {top}V{top + height}H{edge + width}" stroke="#888" fill="none"/>')
        for step in range(1, 4):
            y = top + height - height * step / 4
            parts.append(f'<path d="M{edge} {y}H{edge + width}" stroke="#ddd"/><text x="{edge - 6}" y="{y + 4}" '
                         f'text-anchor="end">{most * step / 4:.0f}</text>')
        for colour, (column, name, unit) in zip(("#06c", "#c40"), series):
            heights = [top + height - height * row[column] / unit / most for row in rows]
            points = " ".join(f"{edge + width * row[0] / rows[-1][0]:.1f},{y:.1f}" for row, y in zip(rows, heights))
            y = heights[-1] - 8
            parts.append(f'<polyline points="{points}" fill="none" stroke="{colour}" stroke-width="1.5"/>'
                         f'<text x="{edge + width}" y="{y:.0f}" text-anchor="end" fill="{colour}">{name}'
                         f'{", MiB" if unit > 1 else ""}</text>')
    parts.append(f'<text x="{edge + width}" y="{2 * height + 80}" text-anchor="end">{rows[-1][0]} actions</text>')
    return (f'<svg xmlns="http://www.w3.org/2000/svg" width="{width + edge + 16}" height="{2 * height + 90}" '
            f'font-family="sans-serif" font-size="12"><rect width="100%" height="100%" fill="#fff"/>'
            f'{"".join(parts)}</svg>')


def main(program, count, table, picture, *checker):
    global slowness
    slowness = 10 if checker else 1
    signal.signal(signal.SIGTERM, signal.default_int_handler)
    random.seed(20240229)
    folder = pathlib.Path(tempfile.gettempdir(), f"soak{os.getpid()}")  # a name that needs no shift key
    folder.mkdir()
    soak = Soak(os.path.abspath(program), folder, checker)
    rows, status, failure = [], 1, None
    try:
        soak.run(int(count), rows)
        subprocess.run([program, "--quit"], env=soak.environment, check=True)
        status = soak.process.wait(60)
    except (KeyboardInterrupt, RuntimeError) as reason:  # what was measured until then is written all the same
        failure = f"stopped early: {reason}"
    finally:
        for process in reversed(soak.processes):
            process.terminate()
            try:
                process.wait(10)
            except subprocess.TimeoutExpired:
                process.kill()
        shutil.rmtree(folder)
    for name, (tried, worked) in soak.done.items():
        print(f"{name.replace('_', ' '):45}{tried:6} times, {tried - worked} missed")
    missed = sum(tried - worked for tried, worked in soak.done.values())
    if checker:
        sys.exit(failure or status)
    names = ["actions", "seconds", "PSS KiB", "resident KiB", "of its own KiB", "descriptors", "threads"]
    pathlib.Path(table).write_text("\n".join(",".join(map(str, row)) for row in [names, *rows]) + "\n")
    pathlib.Path(picture).write_text(plot(rows) + "\n")
    tenth = max(1, len(rows) // 10)
    grew = False
    for column, room in ((3, 1024), (4, 1024), (5, 2), (6, 1)):  # less than which is flat
        early, late = (statistics.median(row[column] for row in part)
                       for part in (rows[tenth:2 * tenth], rows[-tenth:]))
        grew |= late - early > room
        print(f"{names[column]}: {early:.0f} in the second tenth, {late:.0f} in the last, "
              f"at most {max(row[column] for row in rows)}")
    if grew:
        failure = failure or "grew"
    if missed > int(count) / 100:
        failure = failure or "too many missed"
    sys.exit(failure and f"soak: {failure}")


if __name__ == "__main__":
    main(*sys.argv[1:])
