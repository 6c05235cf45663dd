"""The comparison: python3 -m compare.main TABWRIGHT FOLDER_OF_PACKAGES [RUNS [TOOL...]], in surroundings of its own
(scripts/apart.sh).

Each round lets every program do the same thing once, in turns, so that what else the machine does hits all alike. What
they print is looked at, and the clicks are counted in the page.
"""
import os
import statistics
import sys
import time

from compare import stopwatch
from compare.tools import CLICK, EVALUATE, LIST, tools
from surroundings.browser import Browser

COUNTS = [3, 100, 1000]
MANY = 1000  # some take many seconds for a round then
TABS_FOR_MEMORY = 10
CASES = [LIST, EVALUATE, CLICK]
FLOOR = '/bin/true'


class Comparison:
  def __init__(self, browser, compared, runs):
    self.browser = browser
    self.tools = compared
    self.runs = runs
    self.tabs = 1
    self.clicks = 0
    self.faults = []

  def open_tabs(self, count):
    start = time.perf_counter()
    self.browser.open_tabs(count)
    self.tabs = count
    print(f'\n== {count} tabs (opened in {time.perf_counter() - start:.0f} s; the browser has '
          f'{self.browser.memory().pss / 1024:.0f} MB)', flush=True)

  def first_contact(self):
    ours = self.tools[0]
    self._measure(ours, LIST, [ours.words(LIST)], times := [])
    print(f'The first command to a browser that is new to us: {times[0] * 1000:.0f} ms' if times else self.faults[-1])

  def cold(self, cases, runs):
    for case in cases:
      times = {tool.name: [] for tool in self.tools}
      for number in range(runs):
        for tool in self._in_turn(number):
          tool.end()
          self._measure(tool, case, tool.cold(case), times[tool.name])
          tool.end()
      notes = {tool.name: f'{len(tool.cold(case))} commands' for tool in self.tools if len(tool.cold(case)) > 1}
      show(f'{case}, cold, {self.tabs} tabs', times, notes)

  def prepare(self):
    for tool in list(self.tools):
      try:
        tool.prepare()
      except (RuntimeError, TypeError, StopIteration) as error:
        print(f'{tool.name} takes no part any more: {error}')
        self.tools.remove(tool)

  def warm(self, cases, runs):
    times = {case: {tool.name: [] for tool in self.tools} | {FLOOR: []} for case in cases}
    for case in cases:
      for tool in self.tools:
        self._measure(tool, case, [tool.words(case)], [])
    for number in range(runs):
      for case in cases:
        times[case][FLOOR].append(stopwatch.run([FLOOR], os.environ).seconds)
        for tool in self._in_turn(number):
          self._measure(tool, case, [tool.words(case)], times[case][tool.name])
    for case in cases:
      show(f'{case}, warm, {self.tabs} tabs', times[case])

  def memory(self):
    print(f'\nMemory in MB, {self.tabs} tabs:      background process            client at its peak')
    print(f'{"":20} {"RSS":>8} {"PSS":>8} {"private":>8}  {"RSS":>8} {"PSS":>8} {"private":>8}')
    for tool in self.tools:
      clients = [stopwatch.peak_memory(tool.words(LIST), tool.environment) for _ in range(5)]
      client = max(clients, key=lambda memory: memory.pss)  # one may have ended before it was looked at
      sizes = [*vars(tool.memory()).values(), *vars(client).values()]
      print(f'{tool.name:20} ' + ' '.join(f'{size / 1024:8.1f}' for size in sizes))

  def check_clicks(self):
    deadline = time.monotonic() + 10
    while self.browser.clicks() != self.clicks and time.monotonic() < deadline:
      time.sleep(0.1)
    if self.browser.clicks() != self.clicks:
      self.faults.append(f'the page was clicked {self.browser.clicks()} times, not {self.clicks}')

  def _in_turn(self, number):
    first = number % len(self.tools)
    return self.tools[first:] + self.tools[:first]

  def _measure(self, tool, case, commands, times):
    seconds = 0
    for words in commands:
      done = stopwatch.run(words, tool.environment)
      seconds += done.seconds
      if done.exit_code != 0:
        self.faults.append(f'{tool.name} {" ".join(words[1:])}: {done.exit_code}: {gist(done.output)}')
        return
    if case == CLICK:
      self.clicks += 1
    if case == EVALUATE and ' clicks' not in done.output or case == LIST and done.output.count('page.html') < self.tabs:
      self.faults.append(f'{tool.name}: {case}: {gist(done.output)}')
      return
    times.append(seconds)


def gist(output):
  return ' '.join(output.split())[:200]


def show(title, times, notes=None):
  print(f'\n{title}:')
  ours = statistics.median(times['tabwright']) if times.get('tabwright') else None
  for name, measured in times.items():
    if not measured:
      print(f'  {name:18} no result')
      continue
    median = statistics.median(measured)
    ratio = f'{median / ours:7.2f} of ours' if ours and name not in ('tabwright', FLOOR) else ''
    print(f'  {name:18} median {median * 1000:8.2f} ms, best {min(measured) * 1000:8.2f}, {len(measured):3} runs '
          f'{ratio} {(notes or {}).get(name, "")}'.rstrip(), flush=True)


def main():
  tabwright, installed, *rest = sys.argv[1:]
  runs = int(rest[0]) if rest else 20
  os.chdir(os.environ['TMPDIR'])  # some write files where they are called
  print(f'{os.cpu_count()} processors, load {os.getloadavg()[0]:.1f}')
  browser = Browser(tabwright)
  compared = [tool for tool in tools(tabwright, installed, browser) if not rest[1:] or tool.name in rest[1:]]
  comparison = Comparison(browser, compared, runs)
  comparison.first_contact()
  for count in COUNTS:
    rounds = runs if count < MANY else max(runs // 4, 3)
    comparison.open_tabs(count)
    comparison.prepare()
    comparison.cold(CASES if count == COUNTS[0] else [LIST], max(rounds // 2, 3))
    comparison.prepare()
    comparison.warm(CASES, rounds)
    comparison.check_clicks()
    comparison.memory()
    if count == COUNTS[0]:
      comparison.open_tabs(TABS_FOR_MEMORY)
      comparison.warm([LIST], runs)
      comparison.memory()
  for tool in comparison.tools:
    tool.end()
  for fault in comparison.faults:
    print(f'FAULT: {fault}')
  return 1 if comparison.faults else 0


if __name__ == '__main__':
  sys.exit(main())
