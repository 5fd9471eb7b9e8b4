#!/usr/bin/python3
"""Opens the profile window, and the map, on a screen in memory (Xvfb), looks at them as another program of the desktop would,
and closes them as a person does, by the frame's button.

usage: show_window.py PROGRAM SOURCE_FOLDER

Exit status 0: everything held; 1: it did not; 77: there is no Xvfb here.
"""
import contextlib
import ctypes
import glob
import os
import shutil
import signal
import socket
import subprocess
import sys
import tempfile
import time

STATIONS = ["--from", "36.40,-84.35,30", "--to", "36.22,-84.12,30"]
TITLE = "Terrain Profile"
PLOT = {0xFFFFFF, 0x00FF00, 0xFF00FF, 0xFF0000, 0x0000FF}  # colours of its lines
MAP_TITLE = "Untitled - Terrain Profiler"
PATIENCE = 60  # seconds, for what takes one or two

faults = []


def check(holds, text):
    if not holds:
        faults.append(text)


# ---- The screen ----

@contextlib.contextmanager
def screen():
    """A screen of its own: the server itself takes a number that is free."""
    read, write = os.pipe()
    server = subprocess.Popen(["Xvfb", "-displayfd", str(write), "-screen", "0", "1280x1024x24", "-nolisten", "tcp"],
                              pass_fds=[write], stdout=subprocess.DEVNULL, stderr=subprocess.PIPE)
    os.close(write)
    try:
        with os.fdopen(read) as number:
            display = number.readline().strip()
        if not display:
            raise RuntimeError("Xvfb did not start: " + server.stderr.read().decode(errors="replace"))
        yield ":" + display
    finally:
        server.terminate()
        server.wait()


class Attributes(ctypes.Structure):
    """XWindowAttributes."""
    _fields_ = [(name, ctypes.c_int) for name in ("x", "y", "width", "height", "border", "depth")] + \
        [("visual", ctypes.c_void_p), ("root", ctypes.c_ulong)] + \
        [(name, ctypes.c_int) for name in ("window_class", "bit_gravity", "win_gravity", "backing")] + \
        [("planes", ctypes.c_ulong), ("pixel", ctypes.c_ulong), ("save_under", ctypes.c_int),
         ("colormap", ctypes.c_ulong), ("map_installed", ctypes.c_int), ("map_state", ctypes.c_int),
         ("masks", ctypes.c_long * 3), ("redirect", ctypes.c_int), ("screen", ctypes.c_void_p)]


class ClientMessage(ctypes.Structure):
    """XClientMessageEvent, as large as any XEvent."""
    _fields_ = [("type", ctypes.c_int), ("serial", ctypes.c_ulong), ("send_event", ctypes.c_int),
                ("display", ctypes.c_void_p), ("window", ctypes.c_ulong), ("message_type", ctypes.c_ulong),
                ("format", ctypes.c_int), ("data", ctypes.c_long * 5), ("rest", ctypes.c_long * 24)]


class Image(ctypes.Structure):
    """The beginning of XImage."""
    _fields_ = [(name, ctypes.c_int) for name in ("width", "height", "xoffset", "format")] + \
        [("data", ctypes.POINTER(ctypes.c_ubyte))] + \
        [(name, ctypes.c_int) for name in ("byte_order", "unit", "bit_order", "pad", "depth", "bytes_per_line")]


class Desktop:
    """A client of the screen beside the program."""

    def __init__(self, display):
        x = ctypes.CDLL("libX11.so.6")
        pointer, number = ctypes.c_void_p, ctypes.c_ulong
        x.XOpenDisplay.restype = pointer
        x.XDefaultRootWindow.restype = x.XInternAtom.restype = number
        x.XGetImage.restype = ctypes.POINTER(Image)
        x.XFree.argtypes = [pointer]
        x.XCloseDisplay.argtypes = [pointer]
        # A window may go between two questions; that is no reason to end.
        self.handler = ctypes.CFUNCTYPE(ctypes.c_int, pointer, pointer)(lambda *_: 0)
        x.XSetErrorHandler(self.handler)
        self.x = x
        self.display = pointer(x.XOpenDisplay(display.encode()))
        if not self.display:
            raise RuntimeError("cannot connect to " + display)
        self.root = number(x.XDefaultRootWindow(self.display))

    def close(self):
        self.x.XCloseDisplay(self.display)

    def atom(self, name):
        return self.x.XInternAtom(self.display, name.encode(), 0)

    def windows(self, of=None):
        """All windows below one, with their titles."""
        root, parent, children = ctypes.c_ulong(), ctypes.c_ulong(), ctypes.POINTER(ctypes.c_ulong)()
        count = ctypes.c_uint()
        found = []
        if self.x.XQueryTree(self.display, of or self.root, ctypes.byref(root), ctypes.byref(parent), ctypes.byref(children),
                             ctypes.byref(count)):
            for i in range(count.value):
                window = ctypes.c_ulong(children[i])
                name = ctypes.c_char_p()
                if self.x.XFetchName(self.display, window, ctypes.byref(name)) and name.value:
                    found.append((window, name.value.decode()))
                found += self.windows(window)
            if count.value:
                self.x.XFree(children)
        return found

    def attributes(self, window):
        attributes = Attributes()
        self.x.XGetWindowAttributes(self.display, window, ctypes.byref(attributes))
        return attributes

    def shown(self, title):
        """The window of that title once it can be seen."""
        for window, name in self.windows():
            if name == title and self.attributes(window).map_state == 2:  # IsViewable
                return window
        return None

    def pixels(self, window):
        """What the window shows, four bytes a pixel (blue, green, red, nothing) in rows; nothing when it is gone."""
        attributes = self.attributes(window)
        image = self.x.XGetImage(self.display, window, 0, 0, attributes.width, attributes.height,
                                 ctypes.c_ulong(0xFFFFFFFF), 2)  # ZPixmap
        if not image:
            return b""
        content = image.contents
        data = ctypes.string_at(content.data, content.height * content.bytes_per_line)
        self.x.XDestroyImage(image)
        return data

    def colours(self, window):
        """The colours that the window shows, each as 0xRRGGBB."""
        data = self.pixels(window)
        return {int.from_bytes(pixel, "little") for pixel in set(zip(data[::4], data[1::4], data[2::4]))}

    def point_at(self, window, x, y):
        self.x.XWarpPointer(self.display, ctypes.c_ulong(0), window, 0, 0, 0, 0, x, y)
        self.x.XFlush(self.display)

    def ask_to_close(self, window):
        """What a window manager does when the button of the frame is pressed."""
        event = ClientMessage(type=33, window=window.value, message_type=self.atom("WM_PROTOCOLS"), format=32)
        event.data[0] = self.atom("WM_DELETE_WINDOW")
        self.x.XSendEvent(self.display, window, 0, ctypes.c_long(0), ctypes.byref(event))
        self.x.XFlush(self.display)


def wait_for(question, process=None):
    end = time.monotonic() + PATIENCE
    while time.monotonic() < end:
        answer = question()
        if answer or (process is not None and process.poll() is not None):
            return answer
        time.sleep(0.05)
    return None


def settled(question):
    """The answer once it stays the same for a while."""
    last, since = question(), time.monotonic()
    end = since + PATIENCE
    while time.monotonic() < min(since + 0.4, end):
        time.sleep(0.05)
        answer = question()
        if answer != last:
            last, since = answer, time.monotonic()
    return last


# ---- The program ----

@contextlib.contextmanager
def running(command, environment, folder):
    process = subprocess.Popen(command, env=environment, cwd=folder, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                               stderr=subprocess.PIPE, text=True)
    try:
        yield process
    finally:
        if process.poll() is None:
            process.kill()
            process.communicate()


def end_of(process):
    """Exit status and both outputs; a program that does not end is a fault."""
    try:
        out, err = process.communicate(timeout=PATIENCE)
    except subprocess.TimeoutExpired:
        process.kill()
        out, err = process.communicate()
        faults.append("the program goes on")
    return process.returncode, out, err


def without_display(folder):
    environment = {name: value for name, value in os.environ.items()
                   if name not in ("DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM")}
    environment.update(HOME=folder, XDG_CONFIG_HOME=folder + "/config", XDG_STATE_HOME=folder + "/state",
                       XDG_CACHE_HOME=folder + "/cache", ZEL_SKIP_SETUP="1")
    return environment


def opened_and_closed(command, desktop, environment, folder, title=TITLE, shows=lambda colours: PLOT <= colours, size=(621, 432)):
    """The standard output of a command that opens the window, after the window was looked at and closed."""
    with running(command, environment, folder) as process:
        window = wait_for(lambda: desktop.shown(title), process)
        if window is None:
            process.kill()
            faults.append(f"no window named {title!r}: {end_of(process)}")
            return ""
        seen = wait_for(lambda: shows(desktop.colours(window)), process)
        check(seen, "the window does not show what it has to in its colours")
        seen_size = desktop.attributes(window)
        check((seen_size.width, seen_size.height) == size, f"the window has {seen_size.width} x {seen_size.height} pixels")
        desktop.ask_to_close(window)
        status, out, err = end_of(process)
        check(status == 0, f"exit status {status} after the window was closed")
        check(err == "", f"standard error has {err!r}")
        check(desktop.shown(title) is None, "the window is still there")
        return out


# ---- What has to hold ----

def changed_columns(before, after, width, rows):
    return sorted({x for y in rows for x in range(width) for i in [4 * (y * width + x)]
                   if before[i:i + 3] != after[i:i + 3]})


def show_opens_the_window_and_ends_when_it_is_closed(program, _source, folder):
    with screen() as display:
        desktop = Desktop(display)
        environment = dict(without_display(folder), DISPLAY=display)
        out = opened_and_closed([program, "show"] + STATIONS, desktop, environment, folder)
        check(out == "", f"standard output has {out!r}")
        # The place on the screen is remembered: a second window comes up as the first one did.
        opened_and_closed([program, "show"] + STATIONS, desktop, environment, folder)
        desktop.close()


def the_pointer_leaves_no_trace_on_the_screen(program, _source, folder):
    """Only what the strobe covers is painted anew as it moves; nothing of it may stay behind."""
    with screen() as display:
        desktop = Desktop(display)
        with running([program, "show"] + STATIONS, dict(without_display(folder), DISPLAY=display), folder) as process:
            window = wait_for(lambda: desktop.shown(TITLE), process)
            check(window, "no window")
            if window:
                seen = []
                shown = settled(lambda: desktop.pixels(window))
                for x in (150, 158, 400, 150):
                    desktop.point_at(window, x, 100)
                    # A busy machine takes its time until anything moves.
                    wait_for(lambda: desktop.pixels(window) != shown, process)
                    shown = settled(lambda: desktop.pixels(window))
                    seen.append(shown)
                check(len(set(seen[:3])) == 3, "the window does not follow the pointer")
                check(seen[0] == seen[3], "back at the same place it looks another way")
                # A circle of a two-hundredth of 621 pixels, within its outline, has gone at 150 and come whole at 400.
                columns = changed_columns(seen[0], seen[2], desktop.attributes(window).width, range(30, 170))
                check(columns == [*range(148, 153), *range(398, 403)], f"the columns {columns} have changed")
                desktop.ask_to_close(window)
                end_of(process)
        desktop.close()


def an_interrupt_ends_it(program, _source, folder):
    with screen() as display:
        desktop = Desktop(display)
        with running([program, "show"] + STATIONS, dict(without_display(folder), DISPLAY=display), folder) as process:
            check(wait_for(lambda: desktop.shown(TITLE), process), "no window")
            process.send_signal(signal.SIGINT)
            check(end_of(process)[0] == -signal.SIGINT, "an interrupt from the terminal does not end it")
        desktop.close()


def a_wayland_without_the_toolkits_plugin_is_told_of(program, _source, folder):
    """The toolkit itself would end the process."""
    if glob.glob("/usr/lib/*/qt6/plugins/platforms/libqwayland*.so"):
        return
    with socket.socket(socket.AF_UNIX) as compositor:
        compositor.bind(os.path.join(folder, "way-0"))
        compositor.listen(5)
        environment = dict(without_display(folder), WAYLAND_DISPLAY="way-0", XDG_RUNTIME_DIR=folder)
        with running([program, "show"] + STATIONS, environment, folder) as process:
            status, _, err = end_of(process)
    check(status == 1 and "qt6-wayland" in err and len(err.splitlines()) == 1, f"exit status {status}: {err!r}")


def tree_with_run(program, source, folder):
    """The two commands' tree around a program that is built already: what would configure and build does nothing."""
    tree = os.path.join(folder, "a tree")
    os.makedirs(os.path.join(tree, "build", "release", "bin"))
    shutil.copytree(os.path.join(source, "scripts"), os.path.join(tree, "scripts"))
    shutil.copy(os.path.join(source, "run"), tree)
    for name, content in (("build.ninja", ""), ("CMakeCache.txt", f"CMAKE_HOME_DIRECTORY:INTERNAL={tree}\n")):
        with open(os.path.join(tree, "build", "release", name), "w", encoding="utf-8") as file:
            file.write(content)
    for name, content in ((os.path.join(tree, "build", "release", "bin", "terrain-profiler"), f'exec "{program}" "$@"\n'),
                          (os.path.join(folder, "bin", "cmake"), "exit 0\n")):
        os.makedirs(os.path.dirname(name), exist_ok=True)
        with open(name, "w", encoding="utf-8") as file:
            file.write("#!/bin/sh\n" + content)
        os.chmod(name, 0o755)
    return tree, dict(without_display(folder), PATH=os.path.join(folder, "bin") + ":/usr/bin:/bin")


def run_opens_the_map_on_a_display(program, source, folder):
    tree, environment = tree_with_run(program, source, folder)
    with screen() as display:
        desktop = Desktop(display)
        # Relief has thousands of colours; a window without terrain has some hundred.
        out = opened_and_closed(["./run"], desktop, dict(environment, DISPLAY=display), tree, MAP_TITLE,
                                lambda colours: len(colours) > 3000, (1260, 800))  # a little less than the screen
        check(out == "$ terrain-profiler\n", f"standard output has {out!r}")
        check(not os.path.exists(os.path.join(tree, "profile.png")), "a picture was drawn, too")
        desktop.close()


def run_draws_the_plot_and_prints_the_losses_without_a_display(program, source, folder):
    tree, environment = tree_with_run(program, source, folder)
    done = subprocess.run(["./run"], env=environment, cwd=tree, stdin=subprocess.DEVNULL, capture_output=True, text=True,
                          timeout=PATIENCE, check=False)
    check(done.returncode == 0 and done.stderr == "", f"exit status {done.returncode}, {done.stderr!r}")
    for text in ("$ terrain-profiler picture", "profile.png (1000 x 500 pixels)", "$ terrain-profiler loss",
                 "Free-space loss   121.12 dB", "Modeled loss"):
        check(text in done.stdout, f"{text!r} is not printed")
    with open(os.path.join(tree, "profile.png"), "rb") as picture:
        check(picture.read(8) == b"\x89PNG\r\n\x1a\n", "profile.png is no PNG")
    # From elsewhere the picture lies in the tree all the same, and the line that names it can be typed again.
    os.remove(os.path.join(tree, "profile.png"))
    done = subprocess.run([os.path.join(tree, "run")], env=environment, cwd="/", stdin=subprocess.DEVNULL,
                          capture_output=True, text=True, timeout=PATIENCE, check=False)
    check(done.returncode == 0 and os.path.exists(os.path.join(tree, "profile.png")), "no picture from another folder")
    done = subprocess.run([os.path.join(tree, "run"), "--version"], env=environment, cwd="/", stdin=subprocess.DEVNULL,
                          capture_output=True, text=True, timeout=PATIENCE, check=False)
    check(done.returncode == 0 and done.stdout.count("\n") == 1, "arguments do not go to the program")


def main():
    program, source = os.path.abspath(sys.argv[1]), os.path.abspath(sys.argv[2])
    if shutil.which("Xvfb") is None:
        print("left out: there is no Xvfb (package xvfb)")
        return 77
    for case in (show_opens_the_window_and_ends_when_it_is_closed, the_pointer_leaves_no_trace_on_the_screen,
                 an_interrupt_ends_it, a_wayland_without_the_toolkits_plugin_is_told_of,
                 run_opens_the_map_on_a_display,
                 run_draws_the_plot_and_prints_the_losses_without_a_display):
        before = len(faults)
        # Short, because the name of a socket may have some hundred characters.
        with tempfile.TemporaryDirectory(dir="/tmp") as folder:
            case(program, source, folder)
        print(("ok      " if len(faults) == before else "FAILED  ") + case.__name__)
        for fault in faults[before:]:
            print("        " + fault)
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
