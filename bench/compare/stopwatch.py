"""Times whole processes: from the spawn to the end, without a shell between."""
import os
import select
import signal
import time
from dataclasses import dataclass

from surroundings import processes

PATIENCE = 120.0


@dataclass
class Run:
  seconds: float
  output: str  # standard output and standard error
  exit_code: int
  peak: int  # resident kilobytes, at most


def run(words, environment):
  """Runs `words`, whose first is a path. What takes longer than the patience is killed."""
  output, pid, start = _spawn(words, environment)
  end = os.pidfd_open(pid)
  try:
    if not select.select([end], [], [], PATIENCE)[0]:
      os.kill(pid, signal.SIGKILL)
    _, status, usage = os.wait4(pid, 0)
    seconds = time.perf_counter() - start
  finally:
    os.close(end)
  return Run(seconds, _read(output), os.waitstatus_to_exitcode(status), usage.ru_maxrss)


def peak_memory(words, environment):
  """The most that the process had at any time, looked at all the time; which slows it down."""
  output, pid, start = _spawn(words, environment)
  peak = processes.Memory()
  while os.waitpid(pid, os.WNOHANG) == (0, 0):
    if time.perf_counter() - start > PATIENCE:
      os.kill(pid, signal.SIGKILL)
    now = processes.memory(pid)
    if now and now.pss > peak.pss:
      peak = now
  os.close(output)
  return peak


def _spawn(words, environment):
  output = os.memfd_create('output')
  files = [(os.POSIX_SPAWN_OPEN, 0, '/dev/null', os.O_RDONLY, 0), (os.POSIX_SPAWN_DUP2, output, 1),
           (os.POSIX_SPAWN_DUP2, output, 2)]
  start = time.perf_counter()
  return output, os.posix_spawn(words[0], words, environment, file_actions=files), start


def _read(descriptor):
  with open(descriptor, 'rb') as file:
    file.seek(0)
    return file.read().decode(errors='replace')
