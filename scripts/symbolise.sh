#!/usr/bin/env bash
# Says which functions and lines the addresses of an error report mean: scripts/symbolise.sh REPORT [FILE...]. REPORT is an
# envelope or the event in it, “-” standard input. Each FILE is a program or library with debug information, as it was
# built: it counts for the modules of its build id. Beside them the builds of this checkout are looked at, and what the
# system has below /usr/lib/debug.
set -euo pipefail
[ $# -ge 1 ] || { sed -n '2,5s/^# //p' "$0" >&2; exit 2; }
command -v readelf >/dev/null || { echo "symbolise.sh: readelf is missing: apt-get install binutils" >&2; exit 2; }
root=$(dirname "$(dirname "$(readlink -f "$0")")")
exec python3 - "$root" "$@" <<'PY'
import glob, json, os, re, shutil, subprocess, sys

root, report, *files = sys.argv[1:]


def fail(sentence):
    sys.exit("symbolise.sh: " + sentence)


def event_in(text):
    """The first line that is an event; an envelope has headers before it."""
    for line in [text, *text.splitlines()]:
        try:
            value = json.loads(line)
        except ValueError:
            continue
        if isinstance(value, dict) and "exception" in value:
            return value
    fail(f"{report} holds no report of a crash or error")


def told(*words):
    return subprocess.run(words, capture_output=True, text=True, check=False).stdout


def build_id(path):
    found = re.search(r"Build ID: ([0-9a-f]+)", told("readelf", "-n", path))
    return found.group(1) if found else None


def first_address(path):
    """Where the file wants to lie: the addresses in it count from there."""
    loads = re.findall(r"^ +LOAD +\S+ +(0x[0-9a-f]+)", told("readelf", "-lW", path), re.M)
    return min((int(load, 16) for load in loads), default=0)


def places(path, address):
    """“function at file:line”, the innermost first where functions were inlined."""
    symboliser = shutil.which("llvm-symbolizer-19") or shutil.which("llvm-symbolizer")
    if symboliser:
        text = told(symboliser, "--output-style=GNU", "-p", "-i", "-C", "-f", "-e", path, hex(address))
    else:
        text = told("addr2line", "-p", "-i", "-C", "-f", "-e", path, hex(address))
    return [line.replace("(inlined by)", "").strip() for line in text.splitlines() if line.strip()]


try:
    event = event_in(sys.stdin.read() if report == "-" else open(report, encoding="utf-8").read())
except (OSError, UnicodeDecodeError) as error:
    fail(str(error))
for path in files:
    if not os.path.isfile(path):
        fail(f"there is no file {path}")

images = event.get("debug_meta", {}).get("images", [])
candidates = {}
for path in [*files, *glob.glob(f"{root}/build/*/src/app/tabwright-host")]:
    candidates.setdefault(build_id(path), path)
for image in images:
    code = image.get("code_id", "")
    debug = f"/usr/lib/debug/.build-id/{code[:2]}/{code[2:]}.debug"
    if code and code not in candidates and os.path.isfile(debug):
        candidates[code] = debug

print(event.get("release", "?"), event.get("environment", ""), event.get("event_id", ""))
for exception in event["exception"]["values"]:
    print(exception["type"], exception.get("value", ""))
    for frame in reversed(exception.get("stacktrace", {}).get("frames", [])):
        address = int(frame["instruction_addr"], 16)
        image = next((each for each in images
                      if 0 <= address - int(each["image_addr"], 16) < each["image_size"]), None)
        if not image:
            print(f"  {address:#x}")
            continue
        offset = address - int(image["image_addr"], 16)
        path = candidates.get(image.get("code_id"))
        if not path:
            print(f"  {image['code_file']}+{offset:#x}  (no file with the build id {image.get('code_id', 'that it lacks')})")
            continue
        # A caller's address is the one behind its call, which may be another line already.
        call = offset + first_address(path) - (0 if frame.get("trust") == "context" else 1)
        guess = "  (found on the stack, perhaps a relic)" if frame.get("trust") == "scan" else ""
        for place in places(path, call) or ["?"]:
            print(f"  {image['code_file']}+{offset:#x}  {place}{guess}")
PY
