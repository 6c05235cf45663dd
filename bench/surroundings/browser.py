"""A headless Chromium as `tabwright browser` starts it, seen and changed over its debugging port."""
import json
import subprocess
import time
import urllib.request
from pathlib import Path

from surroundings import processes

PAGE = Path(__file__).parent.parent / 'page.html'
QUIET = ['--disable-background-networking', '--disable-component-update', '--disable-sync', '--disable-quic']


class Browser:
  def __init__(self, tabwright):
    """Starts it with the page of the benchmarks in its only tab."""
    self.page = PAGE.as_uri()
    started = subprocess.run([tabwright, 'browser', 'chromium', '--headless', self.page, '--', *QUIET],
                             capture_output=True, timeout=120, check=False)
    if started.returncode != 0:
      raise SystemExit(started.stderr.decode())
    facts = json.loads(started.stdout)
    self.process = facts['pid']
    self.port = int((Path(facts['profile']) / 'DevToolsActivePort').read_text().split()[0])
    self.wait_for_pages()
    self.front = self.tabs()[0]['id']

  @property
  def address(self):
    return f'http://127.0.0.1:{self.port}'

  def targets(self):
    return json.loads(self._ask('/json/list'))

  def tabs(self):
    return [target for target in self.targets() if target['type'] == 'page']

  def open_tabs(self, wanted):
    """Opens tabs with the same page up to that number, and brings the first tab back to the front."""
    for number in range(len(self.tabs()), wanted):
      self._ask(f'/json/new?{self.page}?{number}', 'PUT')
    self.wait_for_pages()
    self._ask(f'/json/activate/{self.front}')

  def clicks(self):
    """How often the button of the page was clicked, in all tabs together."""
    return sum(int(tab['title'].split()[0]) for tab in self.tabs())

  def wait_for_pages(self, patience=120):
    """Until every page is there as far as its title."""
    deadline = time.monotonic() + patience
    while not all(tab['title'].endswith(' clicks') for tab in self.tabs()):
      if time.monotonic() > deadline:
        raise SystemExit('a page of the benchmark is not loaded')
      time.sleep(0.1)

  def memory(self):
    """Of all its processes."""
    total = processes.Memory()
    for pid in processes.running():
      if processes.command(pid).startswith(('chromium', 'chrome_crashpad')):
        total += processes.memory(pid) or processes.Memory()
    return total

  def _ask(self, path, method='GET'):
    request = urllib.request.Request(self.address + path, method=method)
    with urllib.request.urlopen(request, timeout=60) as answer:
      return answer.read()
