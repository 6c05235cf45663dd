"""The programs that are compared, and how each is told to do the same: list the tabs of a running browser, evaluate the
title of its front page, click the button there. All attach to the same browser over its debugging port.
"""
import json
import os
import re
from pathlib import Path

from compare import stopwatch
from surroundings import processes

LIST, EVALUATE, CLICK = 'list of tabs', 'evaluation', 'click'
MARK = 'TABWRIGHT_BENCH_TOOL'


class Tool:
  """The names of the cases are methods; each gives the words of a command. `cold` gives all commands that it takes where
  no background process runs."""
  name = ''
  settings = {}

  def __init__(self, program, browser):
    self.program = str(program)
    self.browser = browser
    self.mark = f'{MARK}={self.name}'
    self.environment = {**os.environ, **self.settings, MARK: self.name}

  def words(self, case):
    return [self.program, *self.commands[case]]

  def cold(self, case):
    return [[self.program, *command] for command in self.cold_commands[case]]

  def prepare(self):
    """Connects, and chooses the front tab where that isn't done by itself."""
    raise NotImplementedError

  def must(self, *words):
    done = stopwatch.run([self.program, *words], self.environment)
    if done.exit_code != 0:
      raise RuntimeError(f'{self.name} {" ".join(words)}: {" ".join(done.output.split())[:200]}')
    return done.output

  def background(self):
    return processes.with_variable(self.mark)

  def end(self):
    processes.end(self.background)

  def memory(self):
    """Of the background processes."""
    total = processes.Memory()
    for pid in self.background():
      total += processes.memory(pid) or processes.Memory()
    return total


class Tabwright(Tool):
  name = 'tabwright'
  commands = {LIST: ['run', 'GetListOfTabs', '--targetContext', 'chromium'],
              EVALUATE: ['run', 'RunJavascriptInTab', '--targetContext', 'chromium', '--jsCode', 'return document.title'],
              CLICK: ['run', 'ClickElement', '--targetContext', 'chromium', '--cssSelector', '#count']}
  cold_commands = {case: [command] for case, command in commands.items()}

  def prepare(self):
    self.must(*self.commands[LIST])


class AgentBrowser(Tool):
  name = 'agent-browser'
  commands = {LIST: ['tab', 'list'], EVALUATE: ['eval', 'document.title'], CLICK: ['click', '#count']}

  def __init__(self, program, browser):
    super().__init__(program, browser)
    self.cold_commands = {case: [['--cdp', str(browser.port), *command]] for case, command in self.commands.items()}

  def prepare(self):
    self.must('connect', str(self.browser.port))
    tabs = json.loads(self.must('tab', 'list', '--json'))['data']['tabs']
    self.must('tab', next(tab['tabId'] for tab in tabs if tab['targetId'] == self.browser.front))


class PlaywrightCli(Tool):
  name = 'playwright-cli'
  commands = {LIST: ['tab-list'], EVALUATE: ['eval', 'document.title'], CLICK: ['click', '#count']}

  def __init__(self, program, browser):
    super().__init__(program, browser)
    self.attach = ['attach', f'--cdp={browser.address}']

  def prepare(self):
    self.must(*self.attach)
    tabs = self.must('tab-list')
    select = ['tab-select', re.search(rf'^- (\d+):.*\({re.escape(self.browser.page)}\)$', tabs, re.M)[1]]
    self.must(*select)
    # It begins with any tab, and a click waits until that one is in front.
    self.cold_commands = {case: [self.attach, *([] if case == LIST else [select]), command]
                          for case, command in self.commands.items()}


class ChromeDevTools(Tool):
  name = 'chrome-devtools'
  settings = {'CHROME_DEVTOOLS_MCP_NO_UPDATE_CHECKS': '1', 'CHROME_DEVTOOLS_MCP_NO_USAGE_STATISTICS': '1'}

  def __init__(self, program, browser):
    super().__init__(program, browser)
    settings = Path(os.environ['XDG_CONFIG_HOME']) / 'cd4a/config.json'
    settings.parent.mkdir(exist_ok=True)
    settings.write_text(json.dumps({'browserUrl': browser.address}))
    self.commands = {LIST: ['list_pages']}
    self.cold_commands = {LIST: [['list_pages']]}

  def prepare(self):
    # Pages and elements have numbers that the background process gives.
    page = re.search(rf'^(\d+): .*\({re.escape(self.browser.page)}\)', self.must('list_pages'), re.M)[1]
    element = re.search(r'uid=(\S+) button "Count"', self.must('take_snapshot', page))[1]
    self.commands[EVALUATE] = ['evaluate_script', '() => document.title', '--pageId', page, '--waitForStableDom', 'false']
    self.commands[CLICK] = ['click', page, element]
    # Their values when the background process is new.
    self.cold_commands[EVALUATE] = [['evaluate_script', '() => document.title', '--pageId', '1', '--waitForStableDom',
                                     'false']]
    self.cold_commands[CLICK] = [['take_snapshot', '1'], ['click', '1', element]]


def tools(tabwright, installed, browser):
  """All of them; `installed` is the folder that the others were installed in."""
  packages = Path(installed) / 'node_modules'
  return [Tabwright(tabwright, browser),
          AgentBrowser(next((packages / 'agent-browser/bin').glob(f'agent-browser-linux-{_machine()}')), browser),
          PlaywrightCli(packages / '.bin/playwright-cli', browser),
          ChromeDevTools(packages / '.bin/chrome-devtools', browser)]


def _machine():
  return {'x86_64': 'x64', 'aarch64': 'arm64'}[os.uname().machine]
