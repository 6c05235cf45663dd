"""Speaks to the background host as the program does (src/client/HostProtocol.h), a connection for each action."""
import asyncio
import json
from dataclasses import dataclass

PATIENCE = 120.0
LONGEST_LINE = 1 << 24


@dataclass
class Answer:
  output: str
  error: str
  exit_code: int


async def run(socket, version, words):
  """The host's answer to `tabwright run WORDS...`."""
  return await asyncio.wait_for(_converse(socket, version, words), PATIENCE)


async def _converse(socket, version, words):
  reader, writer = await asyncio.open_unix_connection(socket, limit=LONGEST_LINE)
  try:
    request = {'jsonrpc': '2.0', 'id': 1, 'method': 'tabwright/run',
               'params': {'version': version, 'arguments': words, 'directory': '/',
                          'terminal': {'output': False, 'width': 80}}}
    writer.write(json.dumps(request).encode() + b'\n')
    while line := await reader.readline():
      message = json.loads(line)
      if message.get('method') == 'tabwright/ask':
        reply = {'jsonrpc': '2.0', 'id': message['id'], 'result': {'answer': None}}
        writer.write(json.dumps(reply).encode() + b'\n')
      elif message.get('id') == 1:
        if 'error' in message:
          raise ConnectionError(message['error']['message'])
        return Answer(message['result']['output'], message['result']['error'], message['result']['exitCode'])
    raise ConnectionError('the host ended the connection without an answer')
  finally:
    writer.close()
    await writer.wait_closed()
