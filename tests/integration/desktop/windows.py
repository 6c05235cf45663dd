"""The program with windows, driven from outside by the program's own actions and scripts: from the first launch through the
setup to its end, on a fresh profile.

Usage: scripts/apart.sh scripts/desktop-session.sh python3 windows.py TABWRIGHT
"""
import json
import subprocess
import sys
import time

program = sys.argv[1]
patience = 20
failed = []


def run(*words, given=""):
    return subprocess.run([program, *words], input=given, capture_output=True, text=True, timeout=60)


def windows(lines):
    script = f'tell application "System Events" to tell process "tabwright-desktop"\n{lines}\nend tell'
    ended = run("applescript", "-", given=script)
    return ended.stdout.strip() or ended.stderr.strip()


def eventually(condition):
    end = time.monotonic() + patience
    while not condition():
        if time.monotonic() > end:
            return False
        time.sleep(0.05)
    return True


def expect(name, value, wanted):
    if value != wanted:
        failed.append(name)
        print(f"{name}: {value!r}\n  and not {wanted!r}\n", flush=True)


def press(title, kind="button"):
    """Presses it as soon as it is there and can be."""
    where = f'{kind} "{title}" of window 1'
    expect(title, eventually(lambda: windows(f"get enabled of {where}") == "true"), True)
    expect(f"names beside {title}", windows('count (buttons of window 1 whose name is "" or name is missing value)'), "0")
    windows(f"click {where}")


def processes():
    return len(subprocess.run(["pgrep", "-f", "tabwright-desktop$"], capture_output=True, text=True).stdout.split())


expect("open", run("open").returncode, 0)
expect("the main window", eventually(lambda: windows("get name of every window") == '{"Tabwright"}'), True)
expect("its first tab", windows('exists radio button "Setup" of tab group 1 of window 1'), "true")
expect("open again", run("open").returncode, 0)
expect("still one process", eventually(lambda: processes() == 1), True)

press("Set up Tabwright")
expect("the setup", eventually(lambda: windows("get name of window 1") == '"Set up Tabwright"'), True)
expect("no way back", windows('exists button "Back" of window 1'), "false")
press("Continue")
press("Back")
press("Continue")
press("I've done that, continue")
expect("held up", eventually(lambda: windows('get enabled of button "Continue" of window 1') == "false"), True)
press("Make Tabwright ask for permissions")
press("Back")
press("I've done that, continue")
ask = 'get enabled of button "Make Tabwright ask for permissions" of window 1'
expect("one trial at a time", eventually(lambda: windows(ask) in ("true", "false")) and windows(ask), "false")
press("Continue")
press("I've done that, continue")
press("Finish")
expect("the setup is closed", eventually(lambda: windows("get name of every window") == '{"Tabwright"}'), True)
expect("its first tab now", windows('exists radio button "Home" of tab group 1 of window 1'), "true")
expect("the browser is gone", run("run", "GetListOfTabs").returncode, 3)

windows('set focused of button "Re-run Setup" of window 1 to true')
run("run", "SimulateNamedKeyPress", "--targetContext", "tabwright-desktop", "--namedKey", "space")
expect("the setup by a key", eventually(lambda: windows("get name of window 1") == '"Set up Tabwright"'), True)
run("run", "SimulateNamedKeyPress", "--targetContext", "tabwright-desktop", "--namedKey", "return")
press("I've done that, continue")
press("Continue") # access was granted before
expect("activated by a script", run("applescript", "-", given='tell application "Tabwright" to activate').returncode, 0)

selected = run("run", "SelectMenuItem", "--targetContext", "tabwright-desktop", "--path", "Tabwright > About Tabwright")
expect("by a menu", json.loads(selected.stdout or "{}").get("path"), "Tabwright > About Tabwright")
run("run", "SelectMenuItem", "--targetContext", "tabwright-desktop", "--path", "Tabwright > Quit Tabwright")
expect("quit", eventually(lambda: processes() == 0), True)

print(f"{len(failed)} failed")
sys.exit(1 if failed else 0)
