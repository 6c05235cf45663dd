"""What processes hold, as /proc tells it."""
import os
import signal
import time
from dataclasses import dataclass
from pathlib import Path


@dataclass
class Memory:
  """Kilobytes: resident; proportional, where shared pages are divided among those who share them; private."""
  rss: int = 0
  pss: int = 0
  private: int = 0

  def __add__(self, other):
    return Memory(self.rss + other.rss, self.pss + other.pss, self.private + other.private)


def memory(pid):
  """Nothing when the process has ended."""
  try:
    text = Path(f'/proc/{pid}/smaps_rollup').read_text()
  except OSError:
    return None
  sizes = {}
  for line in text.splitlines()[1:]:
    name, size, *_ = line.split()
    sizes[name] = int(size)
  return Memory(sizes['Rss:'], sizes['Pss:'], sizes['Private_Clean:'] + sizes['Private_Dirty:'])


def descriptors(pid):
  return len(os.listdir(f'/proc/{pid}/fd'))


def threads(pid):
  return len(os.listdir(f'/proc/{pid}/task'))


def running():
  return [int(name) for name in os.listdir('/proc') if name.isdigit()]


def command(pid):
  try:
    return Path(f'/proc/{pid}/comm').read_text().strip()
  except OSError:
    return ''


def command_line(pid):
  try:
    return Path(f'/proc/{pid}/cmdline').read_bytes().replace(b'\0', b' ').decode(errors='replace')
  except OSError:
    return ''


def with_variable(entry):
  """Those that were started with this entry, NAME=VALUE, in their environment, and haven't ended."""
  found = []
  for pid in running():
    try:
      if entry.encode() in Path(f'/proc/{pid}/environ').read_bytes().split(b'\0'):
        found.append(pid)
    except OSError:
      pass
  return found


def end(find, patience=10.0):
  """Ends the processes that `find` gives, by force if they don't heed."""
  deadline = time.monotonic() + patience
  for pid in find():
    os.kill(pid, signal.SIGTERM)
  while pids := find():
    if time.monotonic() > deadline:
      for pid in pids:
        os.kill(pid, signal.SIGKILL)
    time.sleep(0.01)
