"""The soak: python3 -m soak.main TABWRIGHT [ACTIONS], in surroundings of its own (scripts/apart.sh).

The host's state after a warm-up is what its state after each of the later phases is held against: descriptors, threads,
files and the browser's targets may not become more, memory only by a margin: 400 bytes for each of 10,000 actions.
"""
import asyncio
import os
import subprocess
import sys
import time
from concurrent.futures import ThreadPoolExecutor
from dataclasses import dataclass
from pathlib import Path

from soak import actions, host
from soak.actions import Action
from surroundings import processes
from surroundings.browser import Browser

TABS = 10
CLIENTS = 64
WARM_UP = 2000
PROCESSES = 300
PROCESSES_AT_ONCE = 8
MARGIN = 4096  # kilobytes of private memory
QUIET = 12.0  # seconds: the host gives memory back after two, the JavaScript engine ends its helping threads after ten


@dataclass
class State:
  host: int
  memory: processes.Memory
  descriptors: int
  threads: int
  files: int
  targets: int
  browser: processes.Memory

  def row(self):
    return (f'{self.memory.rss / 1024:8.1f} {self.memory.pss / 1024:8.1f} {self.memory.private / 1024:8.1f} '
            f'{self.descriptors:11d} {self.threads:8d} {self.files:6d} {self.targets:8d} {self.browser.pss / 1024:9.0f}')


class Soak:
  def __init__(self, tabwright):
    self.tabwright = tabwright
    self.version = self._program('--version').stdout.split()[-1]
    self.browser = Browser(tabwright)
    self.browser.open_tabs(TABS)
    self.tabs = actions.tabs_in(self._program('run', 'GetListOfTabs', '--targetContext', 'chromium').stdout)
    self.socket = str(next((Path(os.environ['XDG_RUNTIME_DIR']) / 'tabwright').glob('*.socket')))
    self.next_number = 0
    self.clicks = 0
    self.wrong = []
    print(f'{"":34} {"RSS":>8} {"PSS":>8} {"private":>8} {"descriptors":>11} {"threads":>8} {"files":>6} {"targets":>8} '
          f'{"browser":>9}')

  def state(self, after):
    time.sleep(QUIET)
    hosts = [pid for pid in processes.running() if processes.command(pid) == 'tabwright-host']
    memory = processes.memory(hosts[0]) if len(hosts) == 1 else None
    if not memory:
      raise SystemExit(f'{len(hosts)} hosts are running, not one')
    state = State(hosts[0], memory, processes.descriptors(hosts[0]), processes.threads(hosts[0]),
                  files(), len(self.browser.targets()), self.browser.memory())
    print(f'{after:34} {state.row()}', flush=True)
    return state

  def through_connections(self, count, clients):
    numbers = iter(self._numbers(count))

    async def client():
      for number in numbers:
        action = actions.action(number, self.tabs)
        start = time.perf_counter()
        try:
          answer = await host.run(self.socket, self.version, action.words)
        except Exception as error:  # whatever it was, no answer came
          answer = host.Answer('', f'{type(error).__name__}: {error}', -1)
        times.append(time.perf_counter() - start)
        self._judge(action, answer)

    async def crowd():
      await asyncio.gather(*(client() for _ in range(clients)))

    times = []
    start = time.perf_counter()
    asyncio.run(crowd())
    report(times, time.perf_counter() - start)

  def through_processes(self, count):
    def one(number):
      action = actions.action(number, self.tabs)
      start = time.perf_counter()
      done = self._program('run', *action.words)
      return action, host.Answer(done.stdout, done.stderr, done.returncode), time.perf_counter() - start

    start = time.perf_counter()
    with ThreadPoolExecutor(PROCESSES_AT_ONCE) as pool:
      results = list(pool.map(one, self._numbers(count)))
    for action, answer, _ in results:
      self._judge(action, answer)
    report([seconds for _, _, seconds in results], time.perf_counter() - start)

  def _numbers(self, count):
    first = self.next_number
    self.next_number += count
    return range(first, self.next_number)

  def _judge(self, action: Action, answer):
    self.clicks += action.clicks
    try:
      is_right = action.is_right(answer)
    except ValueError:
      is_right = False
    if not is_right:
      self.wrong.append(f'{" ".join(action.words)}: {answer}')

  def _program(self, *words):
    return subprocess.run([self.tabwright, *words], capture_output=True, text=True, stdin=subprocess.DEVNULL,
                          timeout=host.PATIENCE, check=False)


def files():
  """All files of the host's but the browser's profile, and the log, which is allowed to grow."""
  folders = [Path(os.environ[name]) for name in ('XDG_DATA_HOME', 'XDG_CONFIG_HOME', 'XDG_RUNTIME_DIR')]
  found = [path for folder in folders for path in (folder / 'tabwright').rglob('*')]
  return sum(1 for path in found if path.is_file() and 'browsers' not in path.parts)


def report(times, seconds):
  times.sort()
  at = lambda share: times[min(int(len(times) * share), len(times) - 1)] * 1000
  print(f'  {len(times)} actions in {seconds:.1f} s, {len(times) / seconds:.0f} a second; each: median {at(0.5):.1f} ms, '
        f'99 of 100 within {at(0.99):.1f} ms, slowest {at(1):.1f} ms', flush=True)


def faults(soak, before, states):
  for name, state in states:
    for what in ('descriptors', 'threads', 'files', 'targets'):
      if getattr(state, what) > getattr(before, what):
        yield f'{what} became more {name}: {getattr(before, what)} -> {getattr(state, what)}'
    grown = state.memory.private - before.memory.private
    if grown > MARGIN:
      yield f'private memory grew by {grown / 1024:.1f} MB {name}, more than {MARGIN / 1024:.0f} MB'
    if state.host != before.host:
      yield f'another host runs {name}'
  if soak.wrong:
    yield f'{len(soak.wrong)} answers were wrong, the first of them:\n' + '\n'.join(soak.wrong[:5])
  if soak.browser.clicks() != soak.clicks:
    yield f'the page was clicked {soak.browser.clicks()} times, not {soak.clicks}'


def main():
  count = int(sys.argv[2]) if len(sys.argv) > 2 else 10000
  soak = Soak(sys.argv[1])
  soak.state(f'started, {TABS} tabs')
  soak.through_connections(WARM_UP, CLIENTS)
  before = soak.state('after the warm-up')
  states = []
  soak.through_connections(count, 1)
  states.append(('after one client', soak.state('after one client')))
  soak.through_connections(count, CLIENTS)
  states.append((f'after {CLIENTS} clients', soak.state(f'after {CLIENTS} clients at once')))
  soak.through_processes(PROCESSES)
  states.append(('after processes', soak.state(f'after {PROCESSES} processes')))
  found = list(faults(soak, before, states))
  for fault in found:
    print(f'FAULT: {fault}')
  if not found:
    print(f'Every answer was right; nothing grew, memory by less than {MARGIN / 1024:.0f} MB.')
  return 1 if found else 0


if __name__ == '__main__':
  sys.exit(main())
