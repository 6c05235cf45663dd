"""A real Chromium with the connected helper installed as a user gets it, without a debugging port, and clients of its
relay."""
import json
import os
import pathlib
import re
import signal
import socket
import stat
import struct
import subprocess
import time

patience = 60  # seconds, for the first start of a browser and for anything else that must come


def wait_for(what, look, seconds=patience):
    end = time.monotonic() + seconds
    while True:
        found = look()
        if found:
            return found
        assert time.monotonic() < end, f"{what} has not come within {seconds} seconds"
        time.sleep(0.05)


class Build:
    """What the build has made, and what the installed package would have in other folders."""

    def __init__(self, folder, header):
        self.folder = pathlib.Path(folder).resolve()
        facts = dict(re.findall(r'string_view (\w+)\{"(.*)"\}', pathlib.Path(header).read_text()))
        self.identity = facts["identity"]
        self.version = facts["version"]
        self.relay_name = facts["relayName"]
        self.relay = self.folder / facts["relayProgram"]
        self.package = self.folder / facts["packageFile"]


class Client:
    """A connection to the relay, which speaks in frames."""

    def __init__(self, path):
        self.socket = socket.socket(socket.AF_UNIX)
        self.socket.settimeout(patience)
        self.socket.connect(str(path))
        self.last = 0

    def close(self):
        self.socket.close()

    def send_text(self, text):
        data = text if isinstance(text, bytes) else text.encode()
        self.socket.sendall(struct.pack("=I", len(data)) + data)

    def _exactly(self, count):
        data = bytearray()
        while len(data) < count:
            more = self.socket.recv(min(count - len(data), 1 << 20))
            if not more:
                raise ConnectionError("the relay has closed the connection")
            data += more
        return bytes(data)

    def message(self):
        [length] = struct.unpack("=I", self._exactly(4))
        return json.loads(self._exactly(length))

    def answer(self, id):
        """The answer to a request; news of changes may come before it."""
        while True:
            message = self.message()
            if message.get("id") == id:
                return message

    def ask(self, name, /, **parameters):
        self.last += 1
        self.send_text(json.dumps({"id": self.last, "name": name, "parameters": parameters}))
        return self.answer(self.last)

    def value(self, name, /, **parameters):
        answer = self.ask(name, **parameters)
        assert "value" in answer, answer
        return answer["value"]


class Browser:
    """A Chromium on a profile that has the helper; further extensions may be loaded by their folders."""

    def __init__(self, build, profile, *addresses, extensions=()):
        self.build = build
        self.profile = pathlib.Path(profile)
        words = ["/usr/bin/chromium", "--headless=new", "--disable-gpu", "--disable-quic", "--no-first-run",
                 "--disable-background-networking", "--disable-component-update", "--disable-sync",
                 f"--user-data-dir={self.profile}"]  # fmt: skip
        if os.geteuid() == 0:
            words.append("--no-sandbox")
        if extensions:
            words.append("--disable-features=DisableLoadExtensionCommandLineSwitch")
            words.append("--load-extension=" + ",".join(map(str, extensions)))
        self.log = open(self.profile.with_suffix(".log"), "ab")
        self.process = subprocess.Popen(
            [*words, *(addresses or ["about:blank"])], stdout=self.log, stderr=self.log, start_new_session=True
        )

    def socket(self):
        """The path of this browser's relay's socket, once it takes connections."""
        return wait_for("the relay’s socket", self._socket)

    def _socket(self):
        for path in sockets():
            relay = int(path.stem)
            try:
                parent = int(re.search(r"^PPid:\t(\d+)", pathlib.Path(f"/proc/{relay}/status").read_text(), re.M)[1])
                if self.process.pid == parent:
                    Client(path).close()
                    return path
            except OSError:
                pass  # that of a relay that is gone, or is just coming
        return None

    def kill(self, how=signal.SIGKILL):
        self.process.send_signal(how)
        self.process.wait(patience)
        self.log.close()


def relay_folder():
    return pathlib.Path(os.environ["XDG_RUNTIME_DIR"]) / "tabwright/relay"


def sockets():
    return sorted(relay_folder().glob("*.sock"))


def install(build, profile):
    """What `external_crx` and a host of native messaging take in a user data directory."""
    profile = pathlib.Path(profile)
    write(profile / f"External Extensions/{build.identity}.json",
          {"external_crx": str(build.package), "external_version": build.version})  # fmt: skip
    write(profile / f"NativeMessagingHosts/{build.relay_name}.json",
          {"name": build.relay_name, "description": "Tabwright", "path": str(build.relay), "type": "stdio",
           "allowed_origins": [f"chrome-extension://{build.identity}/"]})  # fmt: skip


def turn_switches_on(build, profile):
    """Scripts, private windows, files: as the user does it on the extension's page, before the first start."""
    switches = {"user_scripts_enabled": True, "incognito": True, "newAllowFileAccess": True}
    write(pathlib.Path(profile) / "Default/Preferences", {"extensions": {"settings": {build.identity: switches}}})


def write(file, content):
    file.parent.mkdir(parents=True, exist_ok=True)
    file.write_text(json.dumps(content))


def mode(path):
    return stat.S_IMODE(os.stat(path).st_mode)
