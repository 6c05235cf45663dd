"""Menus and keys beside others: python3 -m compare.desktop TABWRIGHT [RUNS], on a desktop of its own
(scripts/desktop-session.sh). All work on one editor, in turns. Ours are whole commands to a warm host; dogtail is a
library and is measured within its process, its own start left out.
"""
import json
import os
import pathlib
import statistics
import subprocess
import sys
import tempfile
import time

PATH = ['Edit', 'Convert', 'To Uppercase']
TITLE = 'Contents'  # of the last menu, so that all of them are read
EDITOR = 'org.xfce.mousepad'
TEXT = ('The quick brown fox jumps over the lazy dog. ' * 45)[:2000]


def timed(work):
  """In milliseconds."""
  start = time.perf_counter()
  work()
  return (time.perf_counter() - start) * 1000


def show(name, times):
  print(f'{name:42} median {statistics.median(times):9.1f} ms   least {min(times):9.1f}   most {max(times):9.1f}', flush=True)


class Ours:
  def __init__(self, program):
    self.program = program

  def run(self, action, **parameters):
    words = [self.program, 'run', action, '--targetContext', EDITOR]
    for name, value in parameters.items():
      words += ['--' + name, value]
    return json.loads(subprocess.run(words, capture_output=True, text=True, check=True).stdout or 'null')

  def path(self):
    assert self.run('GetMenuItemReference', path=' > '.join(PATH))['pathSegments'] == PATH

  def title(self):
    assert self.run('GetMenuItemReference', title=TITLE)['pathSegments'] == ['Help', TITLE]

  def text(self, new=None):
    """The editor's text; or sets it."""
    area = 'value of text area 1 of scroll area 1 of radio button 1 of tab group 1 of window 1'
    script = f'tell application "System Events" to tell process "Mousepad" to ' + (
        f'set {area} to "{new}"' if new is not None else f'return {area}')
    return subprocess.run([self.program, 'applescript', '-'], input=script, capture_output=True, text=True,
                          check=True).stdout.strip().strip('"')

  def type(self):
    self.run('SimulateTyping', characters=TEXT)


class Dogtail:
  def __init__(self):
    from dogtail import config, tree
    config.config.logDebugToFile = False
    config.config.searchCutoffCount = 1
    self.tree = tree

  def path(self):
    node = self.tree.root.application('mousepad').child(roleName='menu bar')
    for title in PATH:
      node = next(each for each in node.children if each.name.strip() == title)

  def title(self):
    application = self.tree.root.application('mousepad')
    application.findChild(lambda node: node.name.strip() == TITLE and node.roleName.endswith('menu item'), recursive=True)


def main():
  program, runs = sys.argv[1], int(sys.argv[2]) if len(sys.argv) > 2 else 20
  notes = pathlib.Path(tempfile.mkdtemp()) / 'notes.txt'
  notes.write_text('')
  editor = subprocess.Popen(['mousepad', '--disable-server', str(notes)], stderr=subprocess.DEVNULL)
  ours = Ours(program)
  while True:
    try:
      ours.path()
      break
    except subprocess.CalledProcessError:
      time.sleep(0.1)
  compared = {'tabwright': ours}
  try:
    compared['dogtail'] = Dogtail()
  except ImportError:
    print('dogtail takes no part: apt-get install python3-dogtail')
  for case in ('path', 'title'):
    times = {name: [] for name in compared}
    for _ in range(runs):
      for name, tool in compared.items():
        times[name].append(timed(getattr(tool, case)))
    for name in compared:
      show(f'{case}, {name}', times[name])

  def typed(work):
    """Until the editor has it all."""
    def whole():
      work()
      deadline = time.perf_counter() + 60
      while len(ours.text()) < len(TEXT) and time.perf_counter() < deadline:
        time.sleep(0.2)  # to look costs the editor time
    milliseconds = timed(whole)
    isWhole = ours.text() == TEXT
    ours.text('')
    return milliseconds, isWhole

  typists = {'tabwright': ours.type,
             'xdotool type': lambda: subprocess.run(['xdotool', 'type', TEXT], check=True),
             'xdotool type --delay 1': lambda: subprocess.run(['xdotool', 'type', '--delay', '1', TEXT], check=True)}
  for name, work in typists.items():
    results = [typed(work) for _ in range(3)]
    show(f'2,000 characters, {name}', [milliseconds for milliseconds, _ in results])
    if not all(isWhole for _, isWhole in results):
      print(f'  not whole in {sum(not isWhole for _, isWhole in results)} of {len(results)}')
  editor.kill()


if __name__ == '__main__':
  os.environ.setdefault('GTK_MODULES', '')
  main()
