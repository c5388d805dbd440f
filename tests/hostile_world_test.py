"""Runs the command at the first argument in a hostile world: endless input, signals, no memory, no temporary folder.

Each time there is one clear line and the right exit status, in bounded time, and nothing stays behind. A second argument
is the folder to work in; a third, "--limits", also takes memory away.
"""
import gzip
import os
import resource
import shutil
import signal
import subprocess
import sys
import time

STANDBY, WORK = os.path.abspath(sys.argv[1]), os.path.abspath(sys.argv[2])
HEADER = '{"trace": 1, "start": 0, "end": 9000000000, "host": {"mode": "scripted"}, "device": {"sensors": []}}\n'
CONTROLS = [chr(c) for c in range(0x20) if chr(c) != "\n"] + ["\x7f", "\x9b"]
failures = []


def expect(what, holds, shown=""):
    if not holds:
        failures.append(f"{what}: {shown}")


def run(*words, stdin=subprocess.DEVNULL, timeout=60, memory=None, **environment):
    def limit():
        if memory:
            resource.setrlimit(resource.RLIMIT_AS, (memory, memory))

    return subprocess.run([STANDBY, *words], stdin=stdin, capture_output=True, cwd=WORK, timeout=timeout,
                          preexec_fn=limit, env={**os.environ, **environment})


def expect_line(result, status, *fragments):
    """The exit status, and one line on standard error that holds all fragments and steers no terminal."""
    said = result.stderr.decode("utf-8", "replace")
    expect(" ".join(result.args[1:]), result.returncode == status and said.startswith("standby: ")
           and said.count("\n") == 1 and len(said) < 1000 and all(f in said for f in fragments)
           and not any(c in said for c in CONTROLS), f"{result.returncode} {said[:1200]!r}")


def write(name, text):
    with open(os.path.join(WORK, name), "w") as file:
        file.write(text)


def endless_input():
    zero = "/dev/zero"
    too_long = "of more than 16 megabytes"
    for words in (["replay", zero], ["check", zero], ["why", zero, "--at", "+1h"], ["dump", zero], ["shell", zero], ["replay", "-"],
                  ["compare", zero, "--config", "empty.json"], ["replay", "night.jsonl", "--config", zero],
                  ["shell", "night.jsonl"]):
        with open(zero) as stdin:
            result = run(*words, stdin=stdin)
        expect_line(result, 2, too_long)
    expect_line(run("diff", zero, "night.jsonl"), 2, "neither a trace nor a record")
    expect_line(run("import", "--from", "csv", zero), 2, "more than a megabyte")
    expect_line(run("import", "--from", "batterystats", zero), 2, "more than a megabyte")
    expect_line(run("import", "--from", "csv", "--mapping", zero, "night.jsonl"), 2, "more than a megabyte")
    expect_line(run("replay", "--files-from", zero, "night.jsonl", "night.jsonl", "--format", "csv"), 2, "/dev/zero: a line")
    for command in (["yes", "# nothing" + 500 * "."],
                    ["sh", "-c", "printf '%s' '{\"trace\": \"'; tr '\\0' x </dev/zero"]):
        source = subprocess.Popen(command, stdout=subprocess.PIPE)
        expect_line(run("replay", "-", stdin=source.stdout), 2, "16 megabytes")
        source.stdout.close()
        source.kill()
        source.wait()


def torn_archive():
    rows = "time,event\n" + "".join(f"2026-03-01T22:{m:02}:00,screen {'on' if m % 2 else 'off'}\n" for m in range(60))
    with open(os.path.join(WORK, "torn.csv.gz"), "wb") as file:
        file.write(gzip.compress(rows.encode())[:-30])
    expect_line(run("import", "--from", "csv", "torn.csv.gz"), 2, "torn.csv.gz: damaged: it ends too early")


def closed_streams():
    for words in (["replay", "-"], ["check", "--files-from", "-"], ["shell"], ["diff", "-", "night.jsonl"],
                  ["import", "--from", "csv", "-"]):
        closing = ["sh", "-c", 'exec "$0" "$@" <&-', STANDBY, *words]
        expect_line(subprocess.run(closing, capture_output=True, cwd=WORK, timeout=60), 2, "standard input is closed")


def names_that_steer():
    name = "\x1b[31m\x9bnight\x07.jsonl"
    write(name, HEADER)
    write("bad" + name, HEADER + "{}\n")
    expect_line(run("replay", "absent" + name), 2, "absent?[31m")
    expect_line(run("replay", "bad" + name), 2, "bad?[31m")
    for words in (["replay", name], ["replay", name, "--format", "csv"], ["why", name, "--at", "+1h"], ["compare", name, "--config", "empty.json"]):
        said = run(*words).stdout.decode()
        expect(" ".join(words), said and not any(c in said for c in CONTROLS), repr(said[:300]))


def listing():
    folders = ("/dev/shm", WORK, os.path.join(WORK, "tmp"))
    return {os.path.join(folder, name) for folder in folders for name in os.listdir(folder)
            if folder != "/dev/shm" or name.startswith("standby")}


def left_since(before):
    """What is there that was not; what others make and take away meanwhile does not count."""
    left = listing() - before
    for _ in range(3):
        time.sleep(0.05)  # also for workers, which end a moment after the program
        left &= listing()
    return left


def nothing_stays(long_night):
    """A run that is ended in its midst leaves nothing, wherever it ends."""
    for words in (["replay", long_night], ["replay", long_night, "--report", "page.html"],
                  ["replay", long_night, long_night, "--format", "csv"], ["diff", long_night, "--config", "empty.json"]):
        for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
            before = listing()
            process = subprocess.Popen([STANDBY, *words], cwd=WORK, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                                       stdin=subprocess.DEVNULL, env={**os.environ, "TMPDIR": os.path.join(WORK, "tmp")})
            time.sleep(0.5)
            expect(f"{words} is still busy", process.poll() is None)
            process.send_signal(number)
            expect(f"{words} ended by {number}", process.wait(60) == -number, process.returncode)
            left = left_since(before)
            expect(f"{words} after {number}", not left, left)
    before = listing()
    process = subprocess.Popen([STANDBY, "replay", "--format", "jsonl", long_night], cwd=WORK, stdout=subprocess.PIPE,
                               stderr=subprocess.DEVNULL, env={**os.environ, "TMPDIR": os.path.join(WORK, "tmp")})
    process.stdout.read(10)
    process.stdout.close()
    process.wait(60)
    left = left_since(before)
    expect("a closed pipe", not left, left)


def no_temporary_folder():
    told = run("replay", "night.jsonl", "--format", "jsonl")
    expect("the night", told.returncode == 0 and told.stdout.count(b"\n") > 10, told.stderr)
    without = run("replay", "night.jsonl", "--format", "jsonl", TMPDIR="/nonexistent")
    expect("no TMPDIR", (without.returncode, without.stdout) == (0, told.stdout), without.stderr)
    result = run("diff", "night.jsonl", "--config", "empty.json", TMPDIR="/nonexistent")
    expect_line(result, 2, "cannot make a temporary file /nonexistent/standby-", "No such file")


def phone_files():
    record = os.path.join(WORK, "kept/data/service/el1/public/device_standby/power_off_record")
    os.makedirs(os.path.join(WORK, "kept"))
    told = run("replay", "off.jsonl", "--format", "jsonl")
    kept = run("replay", "off.jsonl", "--format", "jsonl", "--phone-files", "kept")
    expect("kept files", kept.stdout == told.stdout and kept.returncode == 0, kept.stderr)
    expect("the record stays", os.path.exists(record) and '"bluetooth_off": 2' in open(record).read())
    again = run("replay", "on.jsonl", "--format", "jsonl", "--phone-files", "kept").stdout
    expect("the next night begins with it", b"EnableBle" in again, again)
    expect("and else without", b"EnableBle" not in run("replay", "on.jsonl", "--format", "jsonl").stdout)
    expect_line(run("replay", "off.jsonl", "--phone-files", "absent"), 1, "absent")
    expect_line(run("replay", "off.jsonl", "night.jsonl", "--phone-files", "kept"), 2, "one trace")
    os.remove(record)
    os.makedirs(record + ".tmp")  # nothing can be written there
    expect_line(run("replay", "dumped.jsonl", "--phone-files", "kept"), 1, "the phone's files cannot be written below kept")


def no_memory():
    write("long.jsonl", HEADER + "".join(f'{{"t": {t}, "set": {{"light": 1}}}}\n' for t in range(300_000)))
    for words in (["replay", "long.jsonl"], ["check", "long.jsonl"]):
        result = run(*words, memory=120_000_000)
        expect("the length of a trace takes no memory", result.returncode == 0, result.stderr)
    write("heavy.jsonl", HEADER + '{"t": 1, "set": {"accounts": [' + ",".join(7_000_000 * "1") + "]}}\n")
    for words in (["diff", "long.jsonl", "night.jsonl"], ["replay", "heavy.jsonl"], ["check", "heavy.jsonl", "night.jsonl"],
                  ["replay", "--jobs", "1", "--format", "csv", "heavy.jsonl", "night.jsonl"]):
        result = run(*words, memory=120_000_000)
        expect_line(result, 2, ("long" if words[0] == "diff" else "heavy") + ".jsonl: out of memory")
    expect("the other night", b"night.jsonl," in result.stdout, result.stdout)


shutil.rmtree(WORK, ignore_errors=True)
os.makedirs(os.path.join(WORK, "tmp"))
write("night.jsonl", HEADER + '{"t": 500, "message": {"eventId": 14}}\n')
write("empty.json", "{}")
POWER_OFF = ('{"trace": 1, "start": 0, "end": 1000, "host": {"mode": "scripted"}, "device": {"sensors": [], '
             '"device_mode": 603}}\n')
write("off.jsonl", POWER_OFF + '{"t": 1, "file": {"name": "power_off_record", "text": "{\\"bluetooth_off\\": 2}"}}\n')
write("dumped.jsonl", POWER_OFF + '{"t": 1, "dump": ["", "DUMP_POWEROFF_STRATEGY"]}\n')
write("on.jsonl", POWER_OFF)
write("long.jsonl", '{"trace": 1, "start": 0, "end": 3000000000000}\n')
endless_input()
torn_archive()
closed_streams()
names_that_steer()
no_temporary_folder()
phone_files()
nothing_stays("long.jsonl")
if "--limits" in sys.argv:
    no_memory()
print("\n".join(failures))
sys.exit(1 if failures else 0)
