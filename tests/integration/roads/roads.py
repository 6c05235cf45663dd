"""Takes every action down every road that users take, and the examples, with the programs as they are shipped, on a
real Chromium.

Usage: scripts/apart.sh python3 roads.py TABWRIGHT [PART OF A CASE'S NAME]

roads.yaml holds what is done and what comes of it. One headless browser serves all cases. What a case did there is seen
without the program's help, in the DevTools port's list of pages.

With TABWRIGHT_TEST_ROAD=helper that browser also has the installed helper, which is how the program reaches it then.
"""
import contextlib
import http.server
import json
import os
import pathlib
import pty
import re
import shlex
import signal
import subprocess
import sys
import threading
import time
import urllib.request
from dataclasses import dataclass
from typing import Any

import yaml

program = sys.argv[1]
folder = pathlib.Path(__file__).resolve().parent
sys.path.insert(0, str(folder.parent / "relay"))
import surroundings  # noqa: E402

by_helper = os.environ.get("TABWRIGHT_TEST_ROAD") == "helper"
checkout = folder.parents[2]
effect_seconds = 10  # for an effect to show
case_seconds = 60
ours = {"targetContext": "chromium"}
at_rest = {"target": None, "front": "front visible", "new": []}


@dataclass
class Outcome:
    done: str  # to be done again by hand
    exit: int = 0  # 1 from an agent's call that failed
    result: Any = None
    case: str | None = None  # the kind of failure; a workflow doesn't tell
    words: str = ""


@dataclass
class Source:
    """An action whose result another one is given, and the parameter that takes it."""

    feeds: str
    action: str
    parameters: dict


def source_of(subject, url):
    filters = {
        "targetTab": ("GetListOfTabs", {"urlFilter": "equals", "pageURL": url}),
        "targetWindow": ("GetListOfWindows", {"titleFilter": "contains", "title": "target"}),
        "targetContext": ("GetBrowserReference", {}),
    }
    action, parameters = filters[subject]
    return Source(subject, action, ours | parameters)


def reference_to(subject, url):
    source = source_of(subject, url)
    found = by_command(source.action, source.parameters).result
    return found[0]["fullID"].replace("org.chromium.", "")


def shell(line, given=""):
    return subprocess.run(["bash", "-c", line], input=given, capture_output=True, text=True)


def command(action, parameters):
    words = [program, "run", action, "--json"]
    for name, value in parameters.items():
        words += ["--" + name, value if isinstance(value, str) else json.dumps(value)]
    return shlex.join(words)


def by_command(action, parameters, source=None):
    line = command(action, parameters)
    if source:
        line = f"{command(source.action, source.parameters)} | {line} --{source.feeds} -"
    ended = shell(line)
    if ended.returncode == 0:
        return Outcome(line, result=json.loads(ended.stdout))
    failure = json.loads(ended.stderr.splitlines()[-1])
    return Outcome(line, ended.returncode, case=failure["case"], words=failure["message"])


def by_agent(action, parameters, source=None):
    if source:
        found = told_by(source.action, agent.call(source.action, source.parameters))
        parameters = parameters | {source.feeds: found[0] if isinstance(found, list) else found}
    answer = agent.call(action, parameters)
    done = f"tools/call {action} {json.dumps(parameters)}"
    if answer.get("isError"):
        case = answer["_meta"]["com.tabwright/failure"]["case"]
        return Outcome(done, 1, case=case, words=answer["content"][0]["text"])
    return Outcome(done, result=told_by(action, answer))


def told_by(action, answer):
    """The result that an agent reads: texts stand as they are, other values as JSON."""
    kind = catalogue[action]["outputSchema"]["type"]
    if kind == "null":
        return None
    # What a page has written is marked: by a text before it, or by a line of its own.
    texts = [part["text"] for part in answer["content"] if part["type"] == "text"]
    text = texts[0]
    if text.startswith("From a web page:"):
        if len(texts) == 1:
            return {"text": text.split("\n", 1)[1]}
        text = texts[1]
    return text if kind == "string" else json.loads(text)


def by_workflow(action, parameters, source=None):
    steps = []
    if source:
        steps = [{"action": source.action, "parameters": source.parameters, "as": "found"}]
        found = "${found}" if source.action == "GetBrowserReference" else "${found.0}"
        parameters = parameters | {source.feeds: found}
    step = {"action": action, "parameters": parameters}
    steps.append(step)
    if catalogue[action]["outputSchema"] != {"type": "null"}:
        step["as"] = "result"
        steps += [{"set": {"results": ["${result}"]}}, {"print": "${results}"}]
    text = yaml.safe_dump({"steps": steps}, allow_unicode=True, sort_keys=False)
    ended = shell(f"{program} workflow -", text)
    result = json.loads(ended.stdout)[0] if ended.stdout else None
    return Outcome(f"{program} workflow - <<'END'\n{text}END", ended.returncode, result, words=ended.stderr)


roads = {"command": by_command, "agent": by_agent, "workflow": by_workflow}


class Agent:
    """A client of the program's server for agents."""

    def __init__(self):
        pipe = subprocess.PIPE
        self.server = subprocess.Popen([program, "mcp"], stdin=pipe, stdout=pipe, text=True)
        self.count = 0
        self.ask("initialize", {"protocolVersion": "2025-11-25", "capabilities": {}})

    def ask(self, method, parameters):
        self.count += 1
        request = {"jsonrpc": "2.0", "id": self.count, "method": method, "params": parameters}
        print(json.dumps(request), file=self.server.stdin, flush=True)
        for line in self.server.stdout:
            message = json.loads(line)
            if message.get("id") == self.count:
                return message["result"]
        raise RuntimeError("the server for agents ended")

    def call(self, action, parameters):
        return self.ask("tools/call", {"name": action, "arguments": parameters})


class Browser:
    """The browser, as its DevTools port shows it. One page, the front one, stays for all cases."""

    def __init__(self):
        profile = self.start_with_helper() if by_helper else self.start()
        self.port = (profile / "DevToolsActivePort").read_text().split()[0]
        blank = self.pages()[0]["id"]
        self.front = self.open_tab(f"{site}/front")
        self.ask("close/" + blank)

    def start(self):
        line = "browser chromium --headless about:blank -- --disable-background-networking --disable-component-update"
        started = shell(f"{program} {line} --disable-sync --disable-quic")
        if started.returncode:
            sys.exit(started.stderr)
        return pathlib.Path(json.loads(started.stdout)["profile"])

    def start_with_helper(self):
        """A profile as its user leaves it who has turned all switches of the helper on."""
        programs = pathlib.Path(program).resolve().parent
        build = surroundings.Build(programs, programs.parents[1] / "generated/ConnectedHelper.h")
        profile = pathlib.Path(os.environ["XDG_DATA_HOME"]) / "profile"
        surroundings.install(build, profile)
        surroundings.turn_switches_on(build, profile)
        self.process = surroundings.Browser(build, profile, "--remote-debugging-port=0", "about:blank")
        self.process.socket()
        surroundings.wait_for("the debugging port", (profile / "DevToolsActivePort").exists)
        told = shell(f"{program} --log-level debug run GetListOfTabs --no-host").stderr
        if "is reached by its helper" not in told:
            sys.exit(f"The helper isn’t the road: {told}")
        return profile

    def ask(self, path, method="GET"):
        request = urllib.request.Request(f"http://127.0.0.1:{self.port}/json/{path}", method=method)
        return urllib.request.urlopen(request).read()

    def pages(self):
        return [page for page in json.loads(self.ask("list")) if page["type"] == "page"]

    def open_tab(self, url):
        self.ask("new?" + url, "PUT")
        return self.ready(url)

    def open_window(self, url, kind="standardWindow"):
        by_command("CreateWindow", ours | {"newURL": url, "windowType": kind})
        return self.ready(url)

    def ready(self, url):
        """The id of the page at an address, once it is in front and has loaded."""
        while True:
            for page in self.pages():
                if page["url"] == url and page["title"].endswith(" visible"):
                    return page["id"]
            time.sleep(0.01)

    def show_front(self):
        self.ask("activate/" + self.front)
        while self.seen(None)["front"] != "front visible":
            time.sleep(0.01)

    def seen(self, target):
        titles = {page["id"]: page["title"] for page in self.pages()}
        target, front = titles.pop(target, None), titles.pop(self.front, None)
        return {"target": target, "front": front, "new": list(titles.values())}

    def tidy(self):
        for page in self.pages():
            if page["id"] != self.front:
                self.ask("close/" + page["id"])
        while self.seen(None) != at_rest:
            time.sleep(0.01)


class PageHandler(http.server.BaseHTTPRequestHandler):
    """Serves the one page at every address."""

    def do_GET(self):
        body = (folder / "page.html").read_bytes()
        self.send_response(200)
        self.send_header("Content-Type", "text/html")
        self.send_header("Content-Length", str(len(body)))
        self.end_headers()
        self.wfile.write(body)

    def log_message(self, *_):
        pass


class Server(http.server.ThreadingHTTPServer):
    def handle_error(self, *_):
        """A page that is left while it loads hangs up, which is no fault."""


def fits(value, wanted):
    if isinstance(wanted, dict):
        return isinstance(value, dict) and all(fits(value.get(key), part) for key, part in wanted.items())
    if isinstance(wanted, list):
        return isinstance(value, list) and len(value) == len(wanted) and all(map(fits, value, wanted))
    if isinstance(wanted, str) and wanted.startswith("~"):
        return isinstance(value, str) and re.fullmatch(wanted[1:], value, re.DOTALL) is not None
    return type(value) is type(wanted) and value == wanted


def eventually(condition):
    end = time.monotonic() + effect_seconds
    while not condition():
        if time.monotonic() > end:
            return False
        time.sleep(0.01)
    return True


def filled(row, url):
    """The row with the addresses of this case in it."""
    text = json.dumps(row).replace("{site}", site).replace("{url}", url)
    return json.loads(text.replace("{checkout}", str(checkout)))


def parameters_of(action):
    return catalogue[action]["inputSchema"]["properties"]


def subject_of(action):
    """The parameter that an action is aimed by at the most particular thing it works on."""
    return next(name for name in ("targetTab", "targetWindow", "targetContext") if name in parameters_of(action))


def take(action, row, road, aim, case):
    """One case. Gives the complaint, if there is one."""
    subject = subject_of(action)
    url = f"{site}/target/{case}"
    row = filled(row, url)
    isWindow = subject == "targetWindow"
    target = browser.open_window(url) if isWindow else browser.open_tab(url)
    isBehind = aim in ("reference", "result") and subject != "targetContext"
    if isBehind:
        browser.show_front()

    aims = {"name": lambda: ours, "reference": lambda: {subject: reference_to(subject, url)}}
    parameters = row.get("parameters", {}) | aims.get(aim, dict)()
    outcome = roads[road](action, parameters, source_of(subject, url) if aim == "result" else None)
    told = f"{outcome.done}\n  gave {outcome.words or outcome.result!r}"
    if outcome.exit != 0 or not fits(outcome.result, row.get("result")):
        return f"{told}\n  and not {row.get('result')!r}"

    effect = {
        "target": "target hidden" if isBehind and not isWindow else "target visible",
        "front": "front visible" if isBehind or isWindow else "front hidden",
        "new": [],
    } | row.get("effect", {})
    if not eventually(lambda: fits(browser.seen(target), effect)):
        return f"{told}\n  the pages are {browser.seen(target)}\n  and not {effect}"

    if "then" in row:
        (second, parameters), (_, wanted) = row["then"].items()
        if subject_of(second) == "targetTab":
            parameters["targetTab"] = reference_to("targetTab", url)
        after = by_command(second, ours | parameters)
        if not fits(after.result, wanted):
            return f"{told}\n  then {after.done}\n  gave {after.words or after.result!r}\n  and not {wanted!r}"


def refuse(row, road):
    action, parameters = next(iter(row.items()))
    outcome = roads[road](action, parameters)
    code = min(row["exit"], 1) if road == "agent" else row["exit"]
    case = None if road == "workflow" else row["case"]
    told = f"{outcome.done}\n  gave exit code {outcome.exit}, {outcome.case}: {outcome.words or outcome.result!r}"
    if (outcome.exit, outcome.case) != (code, case) or row["says"] not in outcome.words:
        return f"{told}\n  and not {row}"
    if browser.seen(None) != at_rest:
        return f"{told}\n  the pages are {browser.seen(None)}"


def at_terminal(line, typed):
    """What a terminal is sent by a command at which somebody types."""
    ours, theirs = pty.openpty()
    with subprocess.Popen(["bash", "-c", line], stdin=theirs, stdout=theirs, stderr=theirs):
        os.close(theirs)
        os.write(ours, typed.encode())
        with contextlib.suppress(OSError), open(ours, errors="replace") as shown:
            return "".join(iter(shown.readline, ""))


def choose(case):
    url = f"{site}/target/{case}"
    target = browser.open_tab(url)
    browser.show_front()
    offered = shell(f"{program} complete run FocusTab --targetTab=chromium:").stdout.splitlines()
    if len(offered) != 2:
        return f"the completion offers {offered}"
    at_terminal(f"{program} run FocusTab", "3\n2\n")
    wanted = {"target": "target visible", "front": "front hidden", "new": []}
    if not eventually(lambda: browser.seen(target) == wanted):
        return f"the pages are {browser.seen(target)}"


def close_each(case):
    url = f"{site}/target/{case}"
    browser.open_tab(url)
    browser.open_tab(url)
    source = source_of("targetTab", url)
    line = f"{command(source.action, source.parameters)} | {command('CloseTab', {})} --targetTab - --each"
    ended = shell(line)
    isSo = ended.returncode == 0 and len(ended.stdout.splitlines()) == 2
    if not isSo or not eventually(lambda: browser.seen(None) == at_rest):
        return f"{line}\n  gave {ended}\n  the pages are {browser.seen(None)}"


def start_again(case):
    """The browser runs, has no window, and is to open another address."""
    url = f"{site}/target/{case}"
    ended = shell(f"{program} browser chromium --headless {url.removeprefix('http://')}")
    if ended.returncode or not json.loads(ended.stdout)["wasRunning"]:
        return f"it gave {ended}"
    if not eventually(lambda: url in [page["url"] for page in browser.pages()]):
        return f"the pages are {browser.seen(None)}"


def read_kept_page(_):
    """A page that no helper gets into: the debugging port answers for it."""
    browser.ask("new?chrome://version", "PUT")
    wanted = ["About Version"]
    line = command("RunJavascriptInTab", ours | {"jsCode": "return document.title"})
    gave = []
    if not eventually(lambda: gave.append(shell(line)) or gave[-1].stdout.strip() == json.dumps(wanted)):
        return f"{line}\n  gave {gave[-1]}\n  and not {wanted}"


def run_example(name, row):
    """An example, as the manual runs it. Gives the complaint, if there is one."""
    row = filled(row, "")
    for page in row.get("privatePages", []):
        browser.open_window(site + page, "privateWindow")
    for page in row.get("pages", []):
        browser.open_tab(site + page)
    values = [f"--set={name}={value}" for name, value in row.get("values", {}).items()]
    line = shlex.join([program, "workflow", str(checkout / "examples" / f"{name}.yaml"), *values])
    ended = shell(line)
    told = f"{line}\n  printed {ended.stdout}{ended.stderr}"
    if ended.returncode != 0 or not fits(ended.stdout.splitlines(), row["prints"]):
        return f"{told}\n  and not {row['prints']}"
    left = lambda: sorted(browser.seen(None)["new"])
    if not eventually(lambda: fits(left(), row["leaves"])):
        return f"{told}\n  the pages are {left()}\n  and not {row['leaves']}"


def cases(table):
    """The name of every case, and a function that takes its number and gives its complaint."""
    covered = set(table["actions"]) | set(table["onDesktop"])
    if covered != set(catalogue):
        sys.exit(f"Actions without a row, or rows without an action: {covered ^ set(catalogue)}")
    for action, row in table["actions"].items():
        aims = ["default", "name"] if "targetContext" in parameters_of(action) else []
        aims += ["reference"] if subject_of(action) != "targetContext" else []
        for road in roads:
            for aim in [*aims, "result"]:
                if road == "command" or aim in ("default", "result"):
                    yield f"{action}, {road}, {aim}", lambda case: take(action, row, road, aim, case)
    for row in table["refusals"]:
        for road in roads:
            yield f"{next(iter(row.items()))}, {road}, refused", lambda case: refuse(row, road)
    yield "FocusTab, command, number", choose
    yield "CloseTab, command, each", close_each
    if by_helper:
        yield "RunJavascriptInTab, command, a page kept by the browser", read_kept_page
    else:  # whose profile is the program's own
        yield "browser, command, runs already", start_again
    for name, row in table["examples"].items():
        yield f"example {name}", lambda case: run_example(name, row)


def hangs(*_):
    raise TimeoutError(f"no end after {case_seconds} s")


signal.signal(signal.SIGALRM, hangs)
server = Server(("127.0.0.1", 0), PageHandler)
threading.Thread(target=server.serve_forever, daemon=True).start()
site = f"http://127.0.0.1:{server.server_port}"
catalogue = {tool["name"]: tool for tool in json.loads(shell(f"{program} actions --json").stdout)}
browser = Browser()
agent = Agent()
wanted = " ".join(sys.argv[2:])
count = failed = 0
for name, work in cases(yaml.safe_load((folder / "roads.yaml").read_text())):
    if wanted not in name:
        continue
    count += 1
    signal.alarm(case_seconds)
    try:
        complaint = work(count)
    except Exception as error:
        complaint = repr(error)
    browser.tidy()
    if complaint:
        failed += 1
        print(f"{name}: {complaint}\n", flush=True)
signal.alarm(0)
print(f"{count} cases, {failed} failed")
sys.exit(1 if failed or count == 0 else 0)
