"""A user's own Chromium, connected and disconnected by the shipped program: connect.py TABWRIGHT

Runs behind scripts/apart.sh, with a home of its own. The browser has no debugging port. The switches that a user would
click are set in the browser's settings before its first start; the clicks themselves are no part of this.
"""
import json
import os
import pathlib
import signal
import subprocess
import sys
import time
import unittest

tabwright = sys.argv.pop(1)
directory = pathlib.Path(os.environ["XDG_CONFIG_HOME"]) / "chromium"
# Without a directory a headless one takes a temporary one.
chromium = ["chromium", "--headless=new", "--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run",
            "--disable-background-networking", "--disable-component-update", "--disable-sync", f"--user-data-dir={directory}",
            "about:blank"]
longest = 40  # seconds that a step may take before the test fails


def run(*words, code=0):
    done = subprocess.run([tabwright, *words], capture_output=True, text=True, timeout=longest)
    if done.returncode != code:
        raise AssertionError(f"{words} ended with {done.returncode}: {done.stdout}{done.stderr}")
    return done.stdout + done.stderr


def listed():
    [browser] = json.loads(run("browsers", "--json"))
    return browser


def kinds():
    return [advice["kind"] for advice in listed()["advice"]]


def eventually(condition):
    end = time.monotonic() + longest
    while not condition():
        if time.monotonic() > end:
            raise AssertionError("gave up waiting")
        time.sleep(0.1)


def identity():
    [file] = (directory / "External Extensions").iterdir()
    return file.stem


def files():
    names = ("External Extensions", "NativeMessagingHosts")
    return sorted(str(file.relative_to(directory)) for name in names for file in (directory / name).glob("*"))


class Connecting(unittest.TestCase):
    def setUp(self):
        subprocess.run(["rm", "-rf", directory])
        self.started = []

    def tearDown(self):
        run("disconnect")
        for browser in self.started:
            self.end(browser)

    def start(self):
        # Without a word of its own on the terminal, as from a menu.
        browser = subprocess.Popen(chromium, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.started.append(browser)
        eventually(lambda: listed()["pid"] is not None)
        return browser

    def end(self, browser):
        browser.terminate()
        browser.wait(longest)

    def allow(self, **switches):
        settings = {"extensions": {"settings": {identity(): switches}}}
        (directory / "Default").mkdir()
        (directory / "Default/Preferences").write_text(json.dumps(settings))

    def test_a_browser_is_driven_once_its_switch_is_on_and_not_after_it_was_disconnected(self):
        run("connect", "--no-wait")
        self.allow(user_scripts_enabled=True)
        self.start()
        told = run("connect", "chromium", "--wait", str(longest))
        self.assertIn("already", told)
        self.assertIn("Connected", told)
        browser = listed()
        self.assertEqual(browser["roads"], ["helper"])
        # Its name reaches the disk a moment later.
        eventually(lambda: [profile["directory"] for profile in listed()["profiles"]] == ["Default"])
        helper = listed()["profiles"][0]["helper"]
        self.assertEqual((helper["allowsUserScripts"], helper["allowsIncognito"]), (True, False))
        self.assertEqual(kinds(), ["allowPrivate", "allowFiles"])
        self.assertIn("about:blank", run("run", "GetListOfTabs", "--targetContext", "chromium"))
        self.assertIn("can be driven", run())

        self.assertIn("cut off", run("disconnect"))
        self.assertEqual(files(), [])
        self.assertFalse((directory / "External Extensions").exists())
        eventually(lambda: listed()["roads"] == [])
        self.assertEqual(kinds(), ["install"])
        self.assertIn("nothing", run("disconnect"))

    def test_the_helper_leaves_with_its_files_and_comes_again_with_them(self):
        browser = self.start()
        run("connect", "--no-wait")
        self.assertEqual(kinds(), ["restart"])
        for comes in (True, False, True):
            run("connect" if comes else "disconnect", *(["--no-wait"] if comes else []))
            self.end(browser)
            browser = self.start()
            if comes:
                eventually(lambda: "allowScripts" in kinds())
            else:
                self.assertEqual(kinds(), ["install"])

    def test_a_wait_ends_by_its_limit_or_a_signal_and_leaves_what_is_installed(self):
        told = run("connect", "--wait", "1", code=3)
        self.assertIn("Start Chromium", told)
        self.assertIn("has not come within 1 seconds", told)
        installed = files()
        self.assertEqual(len(installed), 2)
        waiting = subprocess.Popen([tabwright, "connect"], stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
        while "Waiting for it" not in waiting.stdout.readline():
            self.assertIsNone(waiting.poll())
        waiting.send_signal(signal.SIGINT)
        _, errors = waiting.communicate(timeout=longest)
        self.assertEqual(waiting.returncode, 130, errors)
        self.assertEqual(files(), installed)

        run("connect", "--no-wait")
        self.start()
        eventually(lambda: "allowScripts" in kinds())
        told = run("connect", "--wait", "1", code=3)
        self.assertIn("“Allow User Scripts” was still off after 1 seconds", told)


unittest.main(verbosity=2)
