"""A private desktop for one program: a network that is only the loopback, a screen, a session bus and a bus for screen
readers, a home folder, and scripts in place of the programs that would reach outside. It ends all that it starts."""

import ctypes
import fcntl
import os
import pathlib
import re
import select
import shutil
import signal
import socket
import struct
import subprocess
import sys
import tempfile
import time

LIMIT = 30  # seconds for anything to start; far more than needed
BUS = '''<busconfig><type>session</type><listen>unix:path={path}</listen><auth>EXTERNAL</auth><policy context="default">
<allow send_destination="*" eavesdrop="true"/><allow eavesdrop="true"/><allow own="*"/></policy></busconfig>'''
PR_SET_CHILD_SUBREAPER = 36


class Missing(Exception):
    """Something that a desk needs is missing."""


def alone(inside):
    """Restarts this program in a network of its own, with `inside` set in the environment, and returns only there. If
    the system doesn't allow that, returns at once: then only the loopback of the machine's network is used."""
    if inside in os.environ:
        return raise_loopback()
    own = ['unshare', '--net'] if os.geteuid() == 0 else ['unshare', '--user', '--map-root-user', '--net']
    if subprocess.run([*own, 'true'], stderr=subprocess.DEVNULL, check=False).returncode == 0:
        os.environ[inside] = '1'
        os.execvp(own[0], [*own, sys.executable, *sys.argv])


def raise_loopback():
    with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as any_socket:
        up = struct.pack('16sh', b'lo', 0x1 | 0x40)  # IFF_UP, IFF_RUNNING
        fcntl.ioctl(any_socket, 0x8914, up + bytes(14))  # SIOCSIFFLAGS


def program(name):
    found = shutil.which(name)
    if not found:
        raise Missing('%s is not installed' % name)
    return found


def at_spi_launcher():
    """The program named in the file from which a session bus would start it."""
    service = pathlib.Path('/usr/share/dbus-1/services/org.a11y.Bus.service')
    if not service.exists():
        raise Missing('at-spi2-core is not installed')
    return re.search(r'^Exec=(\S+)', service.read_text(), re.MULTILINE).group(1)


def await_readers_bus(session):
    """Returns after the bus for screen readers is known on the session bus: a program that asks earlier is ended."""
    try:
        from gi.repository import Gio, GLib
    except ImportError as error:
        raise Missing('this Python has no gi: %s' % error) from error
    kinds = Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION
    connection = Gio.DBusConnection.new_for_address_sync(session, kinds, None, None)
    loop = GLib.MainLoop()
    Gio.bus_watch_name_on_connection(connection, 'org.a11y.Bus', Gio.BusNameWatcherFlags.NONE,
                                     lambda *_: loop.quit(), None)
    GLib.timeout_add_seconds(LIMIT, loop.quit)
    loop.run()
    try:
        connection.call_sync('org.a11y.Bus', '/org/a11y/bus', 'org.a11y.Bus', 'GetAddress', None, None,
                             Gio.DBusCallFlags.NO_AUTO_START, LIMIT * 1000, None)
    except GLib.Error as error:
        raise Missing('there is no bus for screen readers: %s' % error.message) from error
    connection.close_sync(None)


class Desk:
    def __init__(self, programs, platform):
        """programs: the folder of a build, such as build/dev. platform: xcb or wayland, as Qt calls them."""
        self.build, self.platform = pathlib.Path(programs).resolve(), platform
        self.has_keyboard = platform == 'xcb'  # the headless Wayland screen has none, so no window is ever active
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix='ravelyn-spoken-'))
        self.home, self.opened = self.folder / 'home', self.folder / 'opened'
        self.started = []
        # Processes whose parent has ended become children of this one, so that all of them can be ended.
        ctypes.CDLL(None).prctl(PR_SET_CHILD_SUBREAPER, 1, 0, 0, 0)

    def __enter__(self):
        signal.signal(signal.SIGTERM, lambda *_: sys.exit(1))  # which calls __exit__
        try:
            self.lay_out()
            self.open_x11() if self.platform == 'xcb' else self.open_wayland()
            self.open_buses()
        except BaseException:
            self.__exit__()
            raise
        return self

    def __exit__(self, *_):
        for process in reversed(self.started):
            self.end(process)
        self.end_orphans()
        shutil.rmtree(self.folder, ignore_errors=True)

    def lay_out(self):
        for each in (self.home / 'Documents', self.folder / 'bin', self.folder / 'run'):
            each.mkdir(parents=True)
        (self.folder / 'run').chmod(0o700)
        self.opened.touch()
        self.script('xdg-open', 'echo "$1" >> "%s"' % self.opened)
        self.script('ping', 'exit 0')  # the program takes this for a connection
        # No program started here may see the session of this one.
        os.environ.update(HOME=str(self.home), XDG_RUNTIME_DIR=str(self.folder / 'run'), LC_ALL='C.UTF-8',
                          PATH='%s:%s' % (self.folder / 'bin', os.environ['PATH']), QT_QPA_PLATFORM=self.platform,
                          QT_STYLE_OVERRIDE='Fusion', QT_FONT_DPI='96', GSETTINGS_BACKEND='memory', NO_AT_BRIDGE='1')
        for name in [name for name in os.environ if name.startswith(('XDG_', 'AT_SPI', 'QT_')) and name not in
                     ('XDG_RUNTIME_DIR', 'QT_QPA_PLATFORM', 'QT_STYLE_OVERRIDE', 'QT_FONT_DPI')]:
            del os.environ[name]
        for name in ('SESSION_MANAGER', 'WAYLAND_DISPLAY', 'DBUS_SYSTEM_BUS_ADDRESS'):
            os.environ.pop(name, None)

    def script(self, name, line):
        path = self.folder / 'bin' / name
        path.write_text('#!/bin/sh\n%s\n' % line)
        path.chmod(0o755)

    def open_x11(self):
        reading, writing = os.pipe()
        self.start('screen', program('Xvfb'), '-displayfd', str(writing), '-screen', '0', '1280x1024x24', '-nolisten',
                   'tcp', '-noreset', pass_fds=(writing,))
        os.close(writing)
        os.environ['DISPLAY'] = ':' + self.line(reading, 'the screen').strip()

    def open_wayland(self):
        name, plugin = 'ravelyn-0', '*/qt6/plugins/platforms/libqwayland-generic.so'
        if not any(pathlib.Path('/usr/lib').glob(plugin)):
            raise Missing('qt6-wayland is not installed')
        self.start('screen', program('weston'), '--no-config', '--backend=headless-backend.so', '--width=1280',
                   '--height=1024', '--idle-time=0', '--socket=' + name)
        until = time.monotonic() + LIMIT
        while not (self.folder / 'run' / name).exists():
            if time.monotonic() > until:
                raise Missing('the screen does not open:\n' + self.log('screen'))
            time.sleep(0.01)
        os.environ['WAYLAND_DISPLAY'] = name

    def open_buses(self):
        path, config = self.folder / 'run' / 'bus', self.folder / 'bus.conf'
        config.write_text(BUS.format(path=path))
        reading, writing = os.pipe()
        self.start('bus', program('dbus-daemon'), '--nofork', '--nopidfile', '--config-file=%s' % config,
                   '--print-address=%d' % writing, pass_fds=(writing,))
        os.close(writing)
        os.environ['DBUS_SESSION_BUS_ADDRESS'] = self.line(reading, 'the session bus').strip()
        self.start('at-spi', at_spi_launcher(), '--launch-immediately', '--a11y=1', '--screen-reader=1')
        await_readers_bus(os.environ['DBUS_SESSION_BUS_ADDRESS'])

    def open_gateway(self, folder):
        """Serves the caption files of folder at the address that the program requests."""
        gateway = self.start('gateway', self.build / 'gateway' / 'ravelyn-gateway', '--folder', folder, '--no-cache',
                             stdout=subprocess.PIPE)
        self.line(gateway.stdout.fileno(), 'the gateway')

    def start(self, name, *command, **kinds):
        if not os.access(command[0], os.X_OK):
            raise Missing('%s is missing; build first' % command[0])
        with open(self.folder / (name + '.log'), 'wb') as log:
            kinds = {'stdout': log, **kinds}
            process = subprocess.Popen([str(word) for word in command], stdin=subprocess.DEVNULL, stderr=log,
                                       start_new_session=True, **kinds)
        self.started.append(process)
        return process

    def log(self, name):
        return (self.folder / (name + '.log')).read_text(errors='replace')

    @staticmethod
    def line(descriptor, who):
        """The first line that arrives there."""
        text = b''
        until = time.monotonic() + LIMIT
        while not text.endswith(b'\n'):
            if not select.select([descriptor], [], [], max(0, until - time.monotonic()))[0]:
                raise Missing('%s printed nothing' % who)
            more = os.read(descriptor, 1)
            if not more:
                raise Missing('%s ended' % who)
            text += more
        return text.decode()

    def end(self, process):
        """By its process ID; kills it if it doesn't end in time."""
        if process.poll() is None:
            process.terminate()
            try:
                process.wait(LIMIT)
            except subprocess.TimeoutExpired:
                process.kill()
                process.wait()
        if process.stdout:
            process.stdout.close()

    @staticmethod
    def end_orphans():
        """Kills the children of ended children, which are children of this process now."""
        own = '/proc/self/task/%d/children' % os.getpid()
        while True:
            left = [int(pid) for pid in pathlib.Path(own).read_text().split()]
            if not left:
                return
            for pid in left:
                os.kill(pid, signal.SIGKILL)
                os.waitpid(pid, 0)
