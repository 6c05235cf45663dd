"""The actions of the soak: a mix in which each has an answer that no other could have got."""
import json
from dataclasses import dataclass
from typing import Callable

from soak.host import Answer

BROWSER = ['--targetContext', 'chromium']


@dataclass
class Action:
  name: str
  words: list[str]
  is_right: Callable[[Answer], bool]
  clicks: int = 0


@dataclass
class Tab:
  reference: str
  address: str


def tabs_in(output):
  return [Tab(tab['fullID'], tab['url']) for tab in json.loads(output)]


def action(number, tabs):
  """The action of that number, in a browser that has these tabs."""
  kinds = [_list, _evaluate, _click, _evaluate_elsewhere, _fail_in_javascript, _list, _evaluate, _click, _evaluate,
           _fail_by_name, _list, _evaluate, _click, _evaluate_elsewhere, _fail_for_tab, _list, _evaluate, _click,
           _evaluate, _fail_for_value]
  return kinds[number % len(kinds)](number, tabs)


def _list(_number, tabs):
  return Action('GetListOfTabs', ['GetListOfTabs', *BROWSER],
                lambda answer: answer.exit_code == 0 and not answer.error and tabs_in(answer.output) == tabs)


def _evaluate(number, _tabs):
  return Action('RunJavascriptInTab', ['RunJavascriptInTab', *BROWSER, '--jsCode', f'return "answer " + {number}'],
                _gives([f'answer {number}']))


def _evaluate_elsewhere(number, tabs):
  tab = tabs[number % len(tabs)]
  return Action('RunJavascriptInTab',
                ['RunJavascriptInTab', '--tabSelection', 'specificTab', '--targetTab', tab.reference, '--jsCode',
                 f'return [location.href, {number}]'], _gives([tab.address, str(number)]))


def _click(_number, _tabs):
  return Action('ClickElement', ['ClickElement', *BROWSER, '--cssSelector', '#count'],
                lambda answer: answer == Answer('', '', 0), clicks=1)


def _fail_in_javascript(number, _tabs):
  return Action('bad JavaScript', ['RunJavascriptInTab', *BROWSER, '--jsCode', f'return ({number}'],
                _fails(1, 'SyntaxError'))


def _fail_by_name(number, _tabs):
  return Action('no such action', [f'Action{number}', *BROWSER], _fails(2, f'"Action{number}"'))


def _fail_for_tab(number, _tabs):
  return Action('no such tab', ['ClickElement', '--tabSelection', 'specificTab', '--targetTab', f'chromium:{number}',
                                '--cssSelector', '#count'], _fails(1, 'could not be found'))


def _fail_for_value(_number, _tabs):
  return Action('no value', ['ClickElement', *BROWSER], _fails(2, 'cssSelector needs a value'))


def _gives(result):
  return lambda answer: answer.exit_code == 0 and not answer.error and json.loads(answer.output) == result


def _fails(exit_code, words):
  return lambda answer: answer.exit_code == exit_code and not answer.output and words in answer.error
