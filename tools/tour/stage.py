"""The private stage of a tour: a display, a message bus, a window manager, accessibility, a demo
server and folders of its own, so that nothing of the user's is seen or touched. Every process
started here ends with the tour, by its own number, however the tour ends."""

import ctypes
import os
import secrets
import shutil
import signal
import socket
import subprocess
import sys
import tempfile
import time

PATIENCE = 60  # seconds; machines that play tours are often busy with something else
SCREEN = "1440x900x24"
PR_SET_PDEATHSIG = 1
PR_SET_CHILD_SUBREAPER = 36

# Whatever the user's own desktop says about looks and languages must not change the pictures.
FOREIGN = (
    "DESKTOP_SESSION",
    "GTK_MODULES",
    "LANGUAGE",
    "NO_AT_BRIDGE",
    "QT_QPA_PLATFORM",
    "QT_QPA_PLATFORMTHEME",
    "QT_SCALE_FACTOR",
    "QT_STYLE_OVERRIDE",
    "WAYLAND_DISPLAY",
    "XAUTHORITY",
    "XDG_CURRENT_DESKTOP",
    "XDG_RUNTIME_DIR",
    "XDG_SESSION_TYPE",
)


class StageError(Exception):
    """The stage could not be set up; the text says what is missing."""


class NoServerError(StageError):
    """The server that was asked for cannot be had on this machine."""


class CheckError(Exception):
    """Something on the screen is not as it should be."""


def wait_for(condition, what, patience=PATIENCE):
    """Asks until the condition gives something true, and returns that."""
    end = time.monotonic() + patience
    while True:
        result = condition()
        if result:
            return result
        if time.monotonic() > end:
            raise StageError(f"waited {patience} seconds in vain for {what}")
        time.sleep(0.1)


def die_with_parent():
    # A tour that is killed outright cannot clean up any more.
    ctypes.CDLL(None).prctl(PR_SET_PDEATHSIG, signal.SIGTERM)


def children():
    """The processes whose parent is this one."""
    found = []
    for name in filter(str.isdigit, os.listdir("/proc")):
        try:
            with open(f"/proc/{name}/stat", encoding="utf-8", errors="replace") as stat:
                parent = int(stat.read().rpartition(")")[2].split()[1])
        except OSError:
            continue  # gone meanwhile
        if parent == os.getpid():
            found.append(int(name))
    return found


class Stage:
    """`program` is the workbench's binary; the demo's tool is looked for beside it."""

    def __init__(self, program, server="mariadb"):
        self.program = os.path.abspath(program)
        self.server = server
        self.tool = os.path.join(os.path.dirname(self.program), "korvane-demo-profile")
        self.root = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
        self.folder = tempfile.mkdtemp(prefix="korvane-tour-")
        self.home = os.path.join(self.folder, "home")
        self.users_environment = dict(os.environ)
        self.environment = self._private_environment()
        self.workbench = None
        self._processes = []
        self._demo = None
        self._mysql = None

    def _private_environment(self):
        environment = {k: v for k, v in os.environ.items() if k not in FOREIGN}
        folders = {
            "HOME": self.home,
            "XDG_DATA_HOME": f"{self.home}/.local/share",
            "XDG_CONFIG_HOME": f"{self.home}/.config",
            "XDG_CACHE_HOME": f"{self.home}/.cache",
            "XDG_RUNTIME_DIR": f"{self.folder}/runtime",
        }
        for folder in (*folders.values(), f"{self.home}/Documents"):
            os.makedirs(folder, mode=0o700, exist_ok=True)
        environment.update(folders)
        environment["PATH"] = f"{self._make_browser()}:{os.environ['PATH']}"
        environment.update(
            LANG="C.UTF-8",
            LC_ALL="C.UTF-8",
            QT_ACCESSIBILITY="1",
            QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1",
            QT_QPA_PLATFORM="xcb",
        )
        return environment

    def _make_browser(self):
        """What the desktop is asked to open is only written down."""
        folder = self.path("bin")
        os.makedirs(folder, exist_ok=True)
        browser = os.path.join(folder, "xdg-open")
        with open(browser, "w", encoding="utf-8") as script:
            script.write(f'#!/bin/sh\necho "$@" >> "{self.path("browsed")}"\n')
        os.chmod(browser, 0o755)
        return folder

    def browsed(self):
        if not os.path.exists(self.path("browsed")):
            return ""
        with open(self.path("browsed"), encoding="utf-8") as addresses:
            return addresses.read()

    @property
    def frame_buffer(self):
        return self.path("Xvfb_screen0")

    def path(self, name):
        return os.path.join(self.folder, name)

    def start(self):
        # What the bus starts for itself comes to this process when the bus is gone.
        ctypes.CDLL(None).prctl(PR_SET_CHILD_SUBREAPER, 1)
        self._start_display()
        self._start_bus()
        self._start_server()
        # The accessibility client of this process looks for the same display and bus.
        os.environ.clear()
        os.environ.update(self.environment)

    def _spawn(self, name, *command, **options):
        log = open(self.path(f"{name}.log"), "wb")
        process = subprocess.Popen(
            command,
            env=self.environment,
            cwd=self.home,
            stdin=subprocess.DEVNULL,
            stdout=options.pop("stdout", log),
            stderr=log,
            start_new_session=True,
            preexec_fn=die_with_parent,
            **options,
        )
        log.close()
        self._processes.append((name, process))
        return process

    def _start_display(self):
        # The server itself finds a number that is free.
        reading, writing = os.pipe()
        self._spawn(
            "xvfb", "Xvfb", "-displayfd", str(writing), "-screen", "0", SCREEN, "-nolisten", "tcp",
            "-wr", "-nocursor", "-fbdir", self.folder,
            pass_fds=(writing,),
        )  # fmt: skip
        os.close(writing)
        with os.fdopen(reading) as answer:
            number = answer.readline().strip()
        if not number:
            raise StageError(f"Xvfb did not start: {self._last_words('xvfb')}")
        self.environment["DISPLAY"] = f":{number}"
        self._spawn("openbox", "openbox", "--sm-disable")
        wait_for(self._has_window_manager, "the window manager")

    def _has_window_manager(self):
        asked = subprocess.run(
            ["xdotool", "get_num_desktops"], env=self.environment, capture_output=True, check=False
        )
        return asked.returncode == 0

    def _start_bus(self):
        bus = self._spawn(
            "dbus", "dbus-daemon", "--session", "--nofork", "--nopidfile", "--print-address=1",
            stdout=subprocess.PIPE,
        )  # fmt: skip
        address = bus.stdout.readline().decode().strip()
        if not address:
            raise StageError(f"no message bus: {self._last_words('dbus')}")
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = address
        folders = ("/usr/libexec", "/usr/lib/at-spi2-core")
        launcher = shutil.which("at-spi-bus-launcher", path=":".join(folders))
        if not launcher:
            raise StageError("at-spi-bus-launcher is missing; install the package at-spi2-core")
        self._spawn("at-spi", launcher, "--launch-immediately")

    def _start_server(self):
        if self.server == "mysql":
            self._start_mysql()
        else:
            self._start_demo()
        # From copies: the user's own profile stays what it is.
        copies = self.path("profile")
        os.makedirs(copies, exist_ok=True)
        for name in ("port", "password"):
            shutil.copy(os.path.join(self._demo, name), copies)
        stored = subprocess.run(
            [self.tool, "--store", copies],
            env=self.environment, capture_output=True, text=True, check=False,
        )  # fmt: skip
        if stored.returncode != 0:
            raise StageError(f"the demo profile could not be stored: {stored.stderr.strip()}")

    def _start_demo(self):
        """The user's demo server if it runs, else one in the tour's own folder."""
        users = self._tool_paths(self.users_environment).get("demo", "")
        is_running = users and self._server("status", users, quiet=True)
        self._demo = users if is_running else self.path("demo")
        if not self._server("start", self._demo, str(os.getpid())):
            raise StageError(f"the demo server did not start: {self._last_words('server')}")

    def _start_mysql(self):
        """A server of the tests, with an account and a database named as those of the demo. It ends
        with its standard input, so with this process at the latest."""
        support = os.path.join(self.root, "tests", "support")
        fetch = subprocess.run(
            [os.path.join(support, "fetch-mysql.sh")],
            env=self.users_environment, capture_output=True, text=True, check=False,
        )  # fmt: skip
        if fetch.returncode != 0:
            raise NoServerError("no MySQL 9 can be had here (it is fetched from Debian's mirror)")
        self._demo = self.path("mysql")
        log = open(self.path("server.log"), "wb")
        self._mysql = subprocess.Popen(
            [os.path.join(support, "test-server.sh"), "serve", "mysql", self._demo,
             "--event-scheduler=ON", "--max-allowed-packet=256M"],
            env=self.users_environment, start_new_session=True,
            stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=log,
        )  # fmt: skip
        log.close()
        answer = self._mysql.stdout.readline().decode().split()
        if answer[:1] != ["ready"]:
            raise StageError(f"MySQL did not start: {self._last_words('server')}")
        password = secrets.token_urlsafe(12)
        for name, text in (("port", answer[1]), ("password", password)):
            with open(os.path.join(self._demo, name), "w", encoding="utf-8") as file:
                file.write(text)
        self._write_client_options(answer[1], "korvane", "secret")
        self.sql(
            f"CREATE USER demo@'%' IDENTIFIED BY '{password}';"
            "GRANT ALL PRIVILEGES ON *.* TO demo@'%' WITH GRANT OPTION;"
            "CREATE DATABASE shop;"
            "CREATE TABLE shop.customers (id INT PRIMARY KEY, name VARCHAR(40))"
        )
        self._write_client_options(answer[1], "demo", password)

    def _write_client_options(self, port, user, password):
        with open(os.path.join(self._demo, "client.cnf"), "w", encoding="utf-8") as file:
            file.write(
                f"[client]\nprotocol=tcp\nhost=127.0.0.1\nport={port}\nssl\n"
                f"user={user}\npassword={password}\n"
            )

    def _tool_paths(self, environment):
        answer = subprocess.run(
            [self.tool, "--paths"], env=environment, capture_output=True, text=True, check=False
        )
        if answer.returncode != 0:
            raise StageError(f"{self.tool}: {answer.stderr.strip()}")
        return dict(line.split("=", 1) for line in answer.stdout.splitlines())

    def _server(self, command, *arguments, quiet=False):
        with open(self.path("server.log"), "ab") as log:
            done = subprocess.run(
                [os.path.join(self.root, "demo", "server.sh"), command, *arguments],
                env=self.users_environment, check=False, stdin=subprocess.DEVNULL,
                stdout=log, stderr=subprocess.DEVNULL if quiet else log,
            )  # fmt: skip
        return done.returncode == 0

    def password(self):
        with open(os.path.join(self._demo, "password"), encoding="utf-8") as password:
            return password.read().strip()

    def sql(self, text):
        """Runs statements beside the workbench, to see from outside what it did. Gives lines."""
        command = [
            "mariadb", f"--defaults-file={self._demo}/client.cnf",
            "--default-character-set=utf8mb4", "--batch", "--skip-column-names", "-e", text,
        ]  # fmt: skip
        done = subprocess.run(command, capture_output=True, text=True, check=False)
        if done.returncode != 0:
            raise StageError(f"{text}: {done.stderr.strip()}")
        return done.stdout.splitlines()

    def start_workbench(self):
        self.workbench = self._spawn("workbench", self.program)
        return self.workbench

    def workbench_output(self):
        with open(self.path("workbench.log"), encoding="utf-8", errors="replace") as log:
            return log.read()

    def _last_words(self, name):
        with open(self.path(f"{name}.log"), encoding="utf-8", errors="replace") as log:
            lines = log.read().strip().splitlines()
        return lines[-1] if lines else "it gave no reason"

    def end(self, clean_up):
        """`clean_up` is SQL that takes away what was left on the server."""
        for name, process in reversed(self._processes):
            self._end_process(name, process)
        self._processes.clear()
        if self._demo:
            try:
                self.sql(clean_up)
            except StageError as error:
                print(f"tour: {error}", file=sys.stderr)
            if self.server == "mariadb":
                self._server("stop", self._demo, str(os.getpid()))
            self._demo = None
        if self._mysql:
            self._mysql.stdin.close()
            self._mysql.wait()
            self._mysql.stdout.close()
            self._mysql = None
        self._end_orphans()
        shutil.rmtree(self.folder, ignore_errors=True)

    @staticmethod
    def _end_orphans():
        for pid in children():
            try:
                os.kill(pid, signal.SIGTERM)
                os.waitpid(pid, 0)
            except (ProcessLookupError, ChildProcessError):
                pass  # it was faster

    @staticmethod
    def _end_process(name, process):
        if process.poll() is None:
            process.terminate()
            try:
                process.wait(20)
            except subprocess.TimeoutExpired:
                print(f"tour: {name} did not end by itself.", file=sys.stderr)
                process.kill()
                process.wait()
        if process.stdout:
            process.stdout.close()


class SilentServer:
    """A port that takes connections and never says a word."""

    def __enter__(self):
        self._listener = socket.socket()
        self._listener.bind(("127.0.0.1", 0))
        self._listener.listen()
        self.port = self._listener.getsockname()[1]
        return self

    def __exit__(self, *_):
        self._listener.close()


def closed_port():
    """A port of loopback on which nobody listens."""
    with socket.socket() as listener:
        listener.bind(("127.0.0.1", 0))
        return listener.getsockname()[1]
