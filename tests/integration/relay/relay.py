"""The helper's road without a debugging port, on a real Chromium: from its installation to the answers at the socket.

Usage: scripts/apart.sh python3 relay.py FOLDER HEADER [CASE]

FOLDER has the programs and the packed helper of a build, HEADER is its ConnectedHelper.h. Each case begins with a fresh
profile.
"""
import concurrent.futures
import contextlib
import http.server
import os
import pathlib
import signal
import sys
import tempfile
import threading
import urllib.parse

from surroundings import Browser, Build, Client, install, mode, relay_folder, sockets, wait_for, write

build = Build(*sys.argv[1:3])
chosen = sys.argv[3:]
MiB = 1 << 20


@contextlib.contextmanager
def browser(*addresses, profile=None, **others):
    with tempfile.TemporaryDirectory(ignore_cleanup_errors=True) as scratch:
        profile = profile or pathlib.Path(scratch) / "profile"
        install(build, profile)
        started = Browser(build, profile, *addresses, **others)
        try:
            yield started
        except BaseException:
            print(started.profile.with_suffix(".log").read_text()[-4000:], file=sys.stderr)
            raise
        finally:
            if started.process.poll() is None:
                started.kill()


def no_socket_left():
    wait_for("the end of all sockets", lambda: not list(relay_folder().iterdir()))


def addresses_of(client):
    return [tab["url"] for window in client.value("snapshot")["windows"] for tab in window["tabs"]]


def installed_it_answers_at_once_and_at_each_start():
    with tempfile.TemporaryDirectory(ignore_cleanup_errors=True) as scratch:
        profile = pathlib.Path(scratch) / "profile"
        for how in (signal.SIGKILL, signal.SIGTERM):
            with browser("about:blank", profile=profile) as started:
                path = started.socket()
                assert (mode(path), mode(path.parent)) == (0o600, 0o700)
                client = Client(path)
                assert addresses_of(client) == ["about:blank"]
                snapshot = client.value("snapshot")
                assert snapshot["helper"] == build.version and snapshot["windows"][0]["tabs"][0]["target"] == ""
                started.kill(how)
                no_socket_left()


def without_its_files_it_is_gone():
    with tempfile.TemporaryDirectory(ignore_cleanup_errors=True) as scratch:
        profile = pathlib.Path(scratch) / "profile"
        with browser("about:blank", profile=profile) as started:
            started.socket()
            extension = wait_for("the helper’s folder", lambda: next(profile.glob(f"*/Extensions/{build.identity}"), None))
            started.kill(signal.SIGTERM)
        for file in [*profile.glob("External Extensions/*"), *profile.glob("NativeMessagingHosts/*")]:
            file.unlink()
        started = Browser(build, profile)
        try:
            wait_for("its removal", lambda: not extension.exists())
            assert not sockets()
        finally:
            started.kill()


def a_relay_that_is_killed_is_back():
    with browser() as started:
        for _ in range(2):
            path = started.socket()
            client = Client(path)
            client.value("snapshot")
            os.kill(int(path.stem), signal.SIGKILL)
            try:
                client.message()
                raise AssertionError("a dead relay speaks")
            except ConnectionError:
                pass
            wait_for("another relay", lambda: started.socket() != path)
            assert len(sockets()) == 1, "the dead one’s socket is left"


def what_nobody_understands_is_answered_and_harms_nobody():
    with browser() as started:
        client, other = Client(started.socket()), Client(started.socket())
        for text in ("", "rubbish{", "[]", "null", '"text"', '{"id":"1","name":"snapshot"}', '{"id":1}', "{" * 100_000):
            client.send_text(text)
            answer = client.message()
            assert (answer["id"], answer["fault"]) == (0, "malformed") and answer["detail"], (text[:20], answer)
        for name in ("noSuchCommand", "constructor", "__proto__"):
            assert client.ask(name)["fault"] == "refused", name
        assert client.ask("closeTab", tab=1)["fault"] == "noSuchTab"
        client.send_text(b'{"id":1,"name":"\xff"}')
        try:
            client.message()
            raise AssertionError("what isn’t UTF-8 is taken")
        except ConnectionError:
            pass
        assert other.value("snapshot")


def clients_at_once_get_their_own_answers_and_all_news():
    with browser() as started:
        path = started.socket()

        def use(number):
            client = Client(path)
            address = f"data:,{number}"
            for turn in range(20):
                # The answer repeats what is no address, so it shows whose it is.
                text = f"{number} {turn} é€😀\"\\\n"
                assert client.ask("makeTab", url=text)["detail"] == f"“{text}” is not an address"
            client.value("makeTab", url=address)
            return address

        listener = Client(path)
        with concurrent.futures.ThreadPoolExecutor() as pool:
            made = set(pool.map(use, range(8)))
        assert made <= set(addresses_of(listener))
        # All the news of eight tabs came before that answer, or come now.
        news = Client(path)
        news.value("snapshot")
        listener.value("makeTab", url="data:,last")
        assert int(news.message()["changes"]) > 0


def messages_of_60_megabytes_pass_both_ways():
    with browser() as started:
        client, other = Client(started.socket()), Client(started.socket())
        text = "é" * 10_000_000 + "x" * 40_000_000
        answer = client.ask("makeTab", url=text)
        assert answer["fault"] == "refused" and answer["detail"] == f"“{text}” is not an address"
        # The browser lets no more than 64 MiB out at once, which is told and ends nothing.
        answer = client.ask("makeTab", url="x" * (64 * MiB))
        assert answer["fault"] == "refused" and len(answer["detail"]) < 1000, answer["detail"][:1000]
        assert client.value("snapshot") and other.value("snapshot")


class Pages(http.server.BaseHTTPRequestHandler):
    """A page that tries to reach the helper, and keeps in its title how that went."""

    def do_GET(self):
        body = """<script>
          const reach = [
            typeof chrome === "undefined" ? "none" : typeof chrome.runtime?.connectNative,
            typeof chrome === "undefined" ? "none" : typeof chrome.runtime?.sendMessage,
          ];
          fetch("chrome-extension://IDENTITY/worker.js").then(() => "read", () => "not read").then((outcome) => {
            document.title = [...reach, outcome].join(", ");
          });
        </script>""".replace("IDENTITY", build.identity)
        self.send_response(200)
        self.send_header("Content-Type", "text/html")
        self.end_headers()
        self.wfile.write(body.encode())

    def log_message(self, *_):
        pass


def pages_do_not_reach_it():
    server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Pages)
    threading.Thread(target=server.serve_forever, daemon=True).start()
    with browser(f"http://127.0.0.1:{server.server_port}/") as started:
        client = Client(started.socket())

        def title():
            return next((tab["title"] for window in client.value("snapshot")["windows"] for tab in window["tabs"]
                         if "read" in tab["title"]), None)  # fmt: skip

        assert wait_for("the page’s title", title) == "undefined, undefined, not read"
    server.shutdown()


foreign_worker = """
const told = [];
const tell = (what) => {
  told.push(what);
  if (told.length === 2) chrome.tabs.create({ url: "data:,told:" + encodeURIComponent(told.sort().join("|")) });
};
const port = chrome.runtime.connectNative("NAME");
port.onMessage.addListener(() => tell("relay: reached"));
port.onDisconnect.addListener(() => tell("relay: " + chrome.runtime.lastError?.message));
chrome.runtime.sendMessage("IDENTITY", { id: 1, name: "snapshot" }).then(
  () => tell("helper: reached"), ({ message }) => tell("helper: " + message));
"""


def other_extensions_do_not_reach_it():
    with tempfile.TemporaryDirectory() as scratch:
        folder = pathlib.Path(scratch)
        write(folder / "manifest.json", {"manifest_version": 3, "name": "Foreign", "version": "1",
              "permissions": ["nativeMessaging", "tabs"], "background": {"service_worker": "worker.js"}})  # fmt: skip
        worker = foreign_worker.replace("NAME", build.relay_name).replace("IDENTITY", build.identity)
        (folder / "worker.js").write_text(worker)
        with browser(extensions=[folder]) as started:
            client = Client(started.socket())

            def told():
                return next((url for url in addresses_of(client) if url.startswith("data:,told:")), None)

            words = urllib.parse.unquote(wait_for("the other extension’s word", told)).removeprefix("data:,told:")
            assert words == ("helper: Could not establish connection. Receiving end does not exist.|"
                             "relay: Access to the specified native messaging host is forbidden."), words  # fmt: skip


cases = [
    installed_it_answers_at_once_and_at_each_start,
    without_its_files_it_is_gone,
    a_relay_that_is_killed_is_back,
    what_nobody_understands_is_answered_and_harms_nobody,
    clients_at_once_get_their_own_answers_and_all_news,
    messages_of_60_megabytes_pass_both_ways,
    pages_do_not_reach_it,
    other_extensions_do_not_reach_it,
]
for case in cases:
    if not chosen or any(part in case.__name__ for part in chosen):
        print(case.__name__, flush=True)
        case()
