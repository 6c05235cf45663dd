"""The actions on menus and keys down every road that users take, with the programs as they are shipped, on an editor and
on a browser with windows.

Usage: scripts/apart.sh scripts/desktop-session.sh python3 actions.py TABWRIGHT
"""
import json
import os
import pathlib
import shlex
import subprocess
import sys
import tempfile
import time

program = sys.argv[1]
editor = "org.xfce.mousepad"
examples = pathlib.Path(__file__).parents[3] / "examples"
patience = 10
failed = []


def shell(line, given=""):
    return subprocess.run(["bash", "-c", line], input=given, capture_output=True, text=True, timeout=60)


def run(action, source="", **parameters):
    words = [program, "run", action, "--json"]
    for name, value in parameters.items():
        words += ["--" + name, value]
    return shell(source + shlex.join(words))


def result(action, source="", **parameters):
    ended = run(action, source, **parameters)
    return json.loads(ended.stdout or "null") if ended.returncode == 0 else ended.stderr


def agent(*calls):
    """The texts of an agent's calls; a parameter that is an integer stands for the result of the call of that number."""
    server = subprocess.Popen([program, "mcp"], stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
    texts = []
    requests = [("initialize", {"protocolVersion": "2025-11-25", "capabilities": {}})]
    requests += [("tools/call", {"name": name, "arguments": arguments}) for name, arguments in calls]
    for number, (method, parameters) in enumerate(requests):
        for name, value in parameters.get("arguments", {}).items():
            if isinstance(value, int):
                parameters["arguments"][name] = json.loads(texts[value])
        print(json.dumps({"jsonrpc": "2.0", "id": number, "method": method, "params": parameters}), file=server.stdin, flush=True)
        answer = next(message for message in map(json.loads, server.stdout) if message.get("id") == number)
        if method == "tools/call":
            texts.append(answer["result"]["content"][0]["text"])
    server.stdin.close()
    server.wait(patience)
    return texts


def eventually(condition):
    end = time.monotonic() + patience
    while not condition():
        if time.monotonic() > end:
            return False
        time.sleep(0.02)
    return True


def expect(name, value, wanted):
    if value != wanted:
        failed.append(name)
        print(f"{name}: {value!r}\n  and not {wanted!r}\n", flush=True)


def titles():
    return shell("xwininfo -root -tree").stdout


def path(value):
    return value["path"] if isinstance(value, dict) else value


notes = pathlib.Path(tempfile.mkdtemp()) / "notes.txt"
notes.write_text("")
writer = subprocess.Popen(["mousepad", "--disable-server", str(notes)], stderr=subprocess.DEVNULL)
expect("the editor's window", eventually(lambda: "notes.txt" in titles()), True)


def saved(text):
    """Whether the editor holds the text: it is saved by the menu, read, and emptied."""
    def isSaved():  # the editor may still be taking keys in
        run("SelectMenuItem", targetContext=editor, path="File > Save")
        return notes.read_text() == text
    isThere = eventually(isSaved)
    run("SelectMenuItem", targetContext=editor, path="Edit > Select All")
    run("SimulateNamedKeyPress", targetContext=editor, namedKey="delete")
    return True if isThere else notes.read_text()


expect("type and save", path(result("SimulateTyping", targetContext=editor, characters='“Grüße”\nПривет 世界 😀 "\\"')), None)
expect("what was typed", saved('“Grüße”\nПривет 世界 😀 "\\"'), True)
long = "The quick brown fox jumps over the lazy dog. " * 45
result("SimulateTyping", targetContext=editor, characters=long)
expect("2,000 characters", saved(long), True)

named = result("GetMenuItemReference", targetContext=editor, title="select all", isFilterCaseInsensitive="true")
expect("reference", named["pathSegments"], ["Edit", "Select All"])
expect("default target", path(result("GetMenuItemReference", title="Select All")), "Edit > Select All")
get = shlex.join([program, "run", "GetMenuItemReference", "--targetContext", editor, "--path", "File > New"]) + " | "
expect("piped", path(result("SelectMenuItem", get, targetContext=editor, menuItem="-")), "File > New")
expect("a new tab of the editor", eventually(lambda: "Untitled" in titles()), True)
expect("piped test", result("TestMenuItemForX", get, menuItem="-"), True)
expect("close it by keys", result("SimulateTyping", targetContext="mousepad", characters="w", modCmd="true"), None)
expect("closed", eventually(lambda: "Untitled" not in titles()), True)
expect("either or", path(result("SelectMenuItemEitherOr", targetContext="Mousepad", title1="No such", title2="Select All")),
       "Edit > Select All")
missing = run("SelectMenuItem", targetContext=editor, path="File > Sav")
expect("what there is instead", (missing.returncode, "It has “Save”" in missing.stderr), (1, True))
absent = run("SelectMenuItem", targetContext="no.such.editor", title="x")
expect("what runs instead", (absent.returncode, "These run:" in absent.stderr and editor in absent.stderr), (1, True))

told = agent(("GetMenuItemReference", {"targetContext": editor, "title": "Select All"}),
             ("TestMenuItemForX", {"menuItem": 0}), ("SelectMenuItem", {"targetContext": editor, "menuItem": 0}),
             ("SimulateNamedKeyPress", {"targetContext": editor, "namedKey": "Delete"}))
expect("agent", (told[1], path(json.loads(told[2])), told[3]), ("true", "Edit > Select All", "Done."))
steps = f"""
steps:
  - {{action: GetMenuItemReference, parameters: {{targetContext: {editor}, title: Select All}}, as: item}}
  - {{action: TestMenuItemForX, parameters: {{menuItem: "${{item}}"}}, as: isThere}}
  - {{action: SelectMenuItem, parameters: {{targetContext: {editor}, menuItem: "${{item}}"}}}}
  - {{action: SimulateTyping, parameters: {{targetContext: {editor}, characters: by a workflow}}}}
  - print: "${{isThere}}"
"""
expect("workflow", shell(f"{program} workflow -", steps).stdout, "true\n")
expect("typed by a workflow", saved("by a workflow"), True)

# A script of the user's own, as they are published.
script = f"""
tell application "System Events" to tell process "Mousepad"
    set frontmost to true
    keystroke "by a script"
    keystroke "a" using command down
    click menu item "Cut" of menu "Edit" of menu bar 1
    delay 0.3
    click menu item "Paste" of menu 1 of menu bar item "Edit" of menu bar 1
    key code 36
    return {{name of menu bar items of menu bar 1, exists menu item "Nowhere" of menu "File" of menu bar 1, bundle identifier}}
end tell
"""
expect("script", shell(f"{program} applescript -", script).stdout,
       '{{"File", "Edit", "Search", "View", "Document", "Help"}, false, "' + editor + '"}\n')
expect("typed by a script", saved("by a script\n"), True)

def process(name, lines):
    """`name` may be a process number too."""
    target = f"first process whose unix id is {name}" if isinstance(name, int) else f'process "{name}"'
    script = f'tell application "System Events" to tell {target}\n{lines}\nend tell'
    ended = shell(f"{program} applescript -", script)
    return ended.stdout.strip() or ended.stderr


# A dialog takes keys: GTK stands still at one after the connection was closed by which the dialog was opened.
def hasDialog():
    return process("Mousepad", "exists text field 1 of sheet 1 of window 1") == "true"


def entered(file):
    """Presses Return, which a dialog doesn't take while it reads the folder, and waits for the file for a while."""
    run("SimulateNamedKeyPress", targetContext=editor, namedKey="return")
    end = time.monotonic() + 2
    while not file.exists() and time.monotonic() < end:
        time.sleep(0.05)
    return file.exists()


for number, how in enumerate(["", "--no-host"]):
    keyed = notes.with_name(f"keyed{number}.txt")
    expect("a dialog for keys", shell(f"{program} run {how} SelectMenuItem --targetContext mousepad --path 'File > Save As...'").stderr, "")
    expect("it is there", eventually(hasDialog), True)
    time.sleep(0.5)  # a new dialog misses the first keys
    result("SimulateTyping", targetContext=editor, characters=str(keyed.with_suffix("")))
    expect("saved by keys", eventually(lambda: entered(keyed)), True)

# A dialog that GTK answers nothing beside, on the connection by which it was opened.
copy = notes.with_name("copy.txt")
result("SimulateTyping", targetContext=editor, characters="by a dialog")
expect("a dialog", shell(f"{program} applescript {examples}/save-a-copy.applescript {copy}").stdout, f'"{copy} - Mousepad"\n')
expect("saved by a dialog", copy.read_text(), "by a dialog")
expect("an editor's window", process("Mousepad", """set position of window 1 to {70, 80}
set {size, value of attribute "AXMinimized"} of window 1 to {{500, 400}, true}
perform action "AXRaise" of window 1
return {position, size, value of attribute "AXMinimized"} of window 1"""), "{{70, 80}, {500, 400}, false}")
expect("full screen", process("Mousepad", """set value of attribute "AXFullScreen" of window 1 to true
delay 0.3
set wide to item 1 of (size of window 1 as list)
set value of attribute "AXFullScreen" of window 1 to false
return wide"""), "1280")
expect("dark mode", process("Mousepad", """tell application "System Events" to tell appearance preferences
set dark mode to true
return dark mode
end tell"""), "true")
expect("an editor's text", process("Mousepad", """repeat with e in (get entire contents of window 1)
if class of e is text area then return value of e
end repeat"""), '"by a dialog"')

# Programs with rows: GTK and Qt show the cells of a table alone.
folder = pathlib.Path(__file__).parent
tables = subprocess.Popen(["/usr/bin/python3", folder / "tables.py"], stderr=subprocess.DEVNULL)
phrases = notes.with_name("phrases.ts")
phrases.write_text("""<!DOCTYPE TS><TS version="2.1" language="de_DE" sourcelanguage="en">
<context><name>Desk</name><message><source>One</source><translation>Eins</translation></message>
<message><source>Two</source><translation type="unfinished"/></message></context>
<context><name>Disk</name><message><source>Three</source><translation>Drei</translation></message></context></TS>""")
expect("a window with tables", eventually(lambda: '"Tables"' in titles()), True)
table = "table 1 of scroll area 1 of radio button 1 of tab group 1 of window 1"
expect("rows of GTK", process(tables.pid, f"""tell {table}
repeat while position of checkbox 1 of row 900 is missing value
set focused of checkbox 1 of row 900 to true
delay 0.1
end repeat
click checkbox 1 of row 900
repeat while value of checkbox 1 of row 900 is 1
delay 0.02
end repeat
return {{count rows, name of columns, name of row 900, value of text field 1 of row 1000, value of checkbox 1 of rows 899 thru 900}}
end tell"""), '{1000, {"Icon", "Name", "On"}, "File 900", "File 1000", {0, 0}}')
expect("selected rows", process(tables.pid, f"""tell {table}
select row 900
select rows 2 thru 3
set selected of row 1000 to true
set selected of row 3 to false
return name of rows whose selected is true
end tell"""), '{"File 2", "File 1000"}')
expect("a tab and what is on it", process(tables.pid, """tell tab group 1 of window 1
select radio button "Others"
tell radio button "Others"
set chosen to value of it
select row 1 of list 1
set selected of row 3 of list 1 to true
set selected of row 1 of list 1 to false
set value of slider 1 to 5
return {chosen, selected of rows of list 1, value of text field 2 of row 2 of outline 1 of scroll area 1, ¬
{minimum value, value, maximum value} of slider 1, {minimum value, maximum value} of incrementor 1}
end tell
end tell"""), '{1, {false, false, true}, "file", {-5.0, 5.0, 10.0}, {1.0, 9.0}}')
expect("what can't be selected", "The element can’t do that" in process(
    tables.pid, 'select slider 1 of radio button "Others" of tab group 1 of window 1'), True)
tables.kill()
linguist = subprocess.Popen(["/usr/lib/qt6/bin/linguist", phrases], stderr=subprocess.DEVNULL)
expect("a window of Qt", eventually(lambda: "phrases.ts" in titles()), True)
expect("rows of Qt", process(linguist.pid, """tell outline 1 of group "Strings" of window 1
select row 2
return {name of rows, value of UI element 3 of row 1, selected of rows}
end tell"""), '{{"One", "Two"}, "One", {false, true}}')
linguist.kill()

# A browser with windows: its page, its own keys, its menu, and an editor that is in front of it.
page = notes.with_name("page.html")
page.write_text("<title>Page</title><textarea autofocus id=t></textarea><script>seen = []\n"
                "onkeydown = event => seen.push(event.code)</script>")
started = shell(f"{program} browser chromium file://{page} -- --disable-background-networking --disable-sync")
expect("the browser", started.stderr, "")
browser = json.loads(started.stdout)["pid"]
expect("its window", eventually(lambda: "Page - Chromium" in titles()), True)
chromium = {"id": "org.chromium.chromium", "name": "Chromium"}
expect("it is found", eventually(lambda: result("GetBrowserReference") == chromium), True)
expect("type into a page", result("SimulateTyping", characters="Grüße 😀"), None)
expect("a key", result("SimulateNamedKeyPress", namedKey="F13"), None)
expect("what the page has", result("RunJavascriptInTab", jsCode="return [t.value, seen.at(-1)]"), ["Grüße 😀", "F13"])
# The desktop's portal shows the dialog in the browser's place.
saved = notes.with_name("saved")
expect("save the page", shell(f"{program} workflow {examples}/save-page.yaml --set file={saved}").stderr, "")
expect("the saved page", eventually(lambda: "<title>Page" in saved.with_suffix(".html").read_text()
                                    if saved.with_suffix(".html").exists() else False), True)
expect("a key of the browser", result("SimulateTyping", characters="t", modCmd="true"), None)
expect("a new tab", eventually(lambda: len(result("GetListOfTabs")) == 2), True)
expect("its menu", path(result("SelectMenuItem", path="Chromium > New window")), "Chromium > New window")
expect("two windows", eventually(lambda: len(result("GetListOfWindows")) == 2), True)
tabs = len(result("GetListOfTabs"))
expect("its toolbar", process("Chromium", 'click button "New Tab" of window 1\nreturn {role, enabled} of button "Reload" of toolbar 1 of window 1'),
       '{"AXButton", true}')
expect("a tab by its toolbar", eventually(lambda: len(result("GetListOfTabs")) == tabs + 1), True)
process("Chromium", """set {{left, top}, {width, height}} to {position, size} of button "New Tab" of window 1
click at {left + width div 2, top + height div 2}""")
expect("a tab by the pointer", eventually(lambda: len(result("GetListOfTabs")) == tabs + 2), True)

expect("close the others", shell(f"{program} workflow {examples}/close-other-tabs.yaml").stderr, "")
expect("one tab in front", eventually(lambda: len(result("GetFrontmostWindow")["tabs"]) == 1), True)


def front(window):
    shell(f"xdotool search --name '{window}' windowactivate --sync")


def titlesOfTabs():
    return [tab["title"] for tab in result("GetListOfTabs")]


# The browser that is meant is the one behind the editor, whatever others there are, and wherever its window is.
profile, otherPage = notes.with_name("profile"), notes.with_name("other.html")
otherPage.write_text("<title>Other</title>")
other = subprocess.Popen(["chromium", f"--user-data-dir={profile}", "--remote-debugging-port=0", "--no-sandbox", "--no-first-run",
                          "--disable-background-networking", "--disable-sync", f"file://{otherPage}"],
                         stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
expect("another browser", eventually(lambda: "Other" in titlesOfTabs()), True)
front("copy.txt")
expect("behind the editor", (result("GetBrowserReference"), titlesOfTabs()), (chromium, ["Other"]))
front("New Tab - Chromium")
front("copy.txt")
expect("the one behind the editor now", "Other" in titlesOfTabs(), False)
expect("the editor is in front again", result("GetMenuItemReference", title="Save")["app"]["id"], editor)
shell("xdotool search --name 'New Tab - Chromium' windowminimize %@")
expect("the one that isn't minimised", eventually(lambda: titlesOfTabs() == ["Other"]), True)
shell("xdotool search --name 'Other - Chromium' set_desktop_for_window 1; xdotool set_desktop 2")
expect("from an empty workspace", (result("GetBrowserReference"), titlesOfTabs()), (chromium, ["Other"]))
expect("which stays", shell("xdotool get_desktop").stdout, "2\n")

other.terminate()
os.kill(browser, 15)
writer.kill()
print(f"{len(failed)} failed")
sys.exit(1 if failed else 0)
