"""Holds the man pages and the completion that the command at argv[1] writes against its help, in the folder argv[2]: the
pages as man shows them, the completion as bash and zsh at a terminal do it."""
import fcntl
import os
import pathlib
import pty
import re
import select
import shutil
import struct
import subprocess
import sys
import termios
import time

STANDBY, WORK = sys.argv[1], pathlib.Path(sys.argv[2])
wrong = []


def expect(holds, what):
    if not holds:
        wrong.append(what)


def output(*words):
    return subprocess.run(words, check=True, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True, timeout=60,
                          env={**os.environ, "MANWIDTH": "300", "LC_ALL": "C.UTF-8"})


class Terminal:
    """A shell at a terminal wide enough for any list, where `standby` shows the words that it is called with."""

    def __init__(self, *words, prepare):
        pid, self.file = pty.fork()
        if pid == 0:
            os.chdir(WORK / "place")
            os.execvpe(words[0], words, {**os.environ, "TERM": "vt100", "PS1": "", "HOME": str(WORK)})
        fcntl.ioctl(self.file, termios.TIOCSWINSZ, struct.pack("HHHH", 200, 400, 0, 0))
        self.told = ""
        self.type(prepare + "; standby() { printf 'called'; printf '<%s>' \"$@\"; echo; }\n")
        self.type("echo rea''dy\n")
        self.until("ready")

    def type(self, text):
        os.write(self.file, text.encode())

    def until(self, end):
        """What is told up to the text `end`."""
        deadline = time.monotonic() + 30
        while end not in self.told:
            if not select.select([self.file], [], [], max(0.0, deadline - time.monotonic()))[0]:
                raise SystemExit(f"waited in vain for {end!r}: {self.told!r}")
            self.told += os.read(self.file, 65536).decode(errors="replace")
        told, self.told = self.told.split(end, 1)
        return told

    def called(self, typed):
        """The words with which `standby` is called after this was typed, tabs and all."""
        self.type(f"standby {typed}\n")
        self.until("called")
        return re.findall("<(.*?)>", self.until("\n"))

    def listed(self, typed):
        """What two tabs behind this show."""
        self.type(f"standby {typed}\t\t")
        time.sleep(0.3)
        self.type("\x15echo lis''ted\n")
        return set(re.findall(r"[-\w.]+", self.until("listed")))


def check_pages(name, names, help_text):
    page = WORK / "manual/man/man1" / f"{name}.1"
    expect(name in output("lexgrog", page).stdout, f"{name}: no name for apropos")
    shown = output("man", "--warnings", "-E", "UTF-8", "-l", page)
    expect(not shown.stderr, f"{name}: {shown.stderr}")
    for option in re.findall(r"^  (-\S+)(?: ([A-Z]+))?", help_text, re.MULTILINE):
        line = option[0].replace(",", ", ") + (" " + option[1] if option[1] else "")
        expect(re.search(rf"^ +{re.escape(line)}( |$)", shown.stdout, re.MULTILINE), f"{name}: {line} is not told")
    for heading in ("SYNOPSIS", "DESCRIPTION", "OPTIONS", "EXAMPLES", "EXIT STATUS", "SEE ALSO"):
        expect(f"\n{heading}\n       " in shown.stdout, f"{name}: no {heading}")
    for example in re.findall(r"^  (standby .*?)(?:  .*)?$", help_text, re.MULTILINE):
        expect(f"       {example}\n" in shown.stdout, f"{name}: {example} is not told")
    for other in names:
        expect(other == name or f"{other}(1)" in shown.stdout, f"{name}: nothing leads to {other}")


def check_shell(terminal, shell, options):
    def completes(typed, *words):
        called = terminal.called(typed)
        expect(called == list(words), f"{shell}: {typed!r} becomes {called}")

    completes("rep\t", "replay")
    completes("--ver\t", "--version")
    completes("replay --for\tjsonl", *(["replay", "--format=jsonl"] if shell == "zsh" else ["replay", "--format", "jsonl"]))
    completes("replay --format j\t", "replay", "--format", "jsonl")
    completes("replay --format=j\t", "replay", "--format=jsonl")
    completes("why --at 02:13 --about blu\t", "why", "--at", "02:13", "--about", "bluetooth")
    completes("why --at 02:13 a\\ n\t", "why", "--at", "02:13", "a night.jsonl")
    completes("replay --report fol\tp\t", "replay", "--report", "folder/page.html")
    completes("replay one.jsonl a\\ n\t", "replay", "one.jsonl", "a night.jsonl")
    completes("replay --log a\t", "replay", "--log", "a")
    completes("dump one.jsonl DUMP_SIM\t", "dump", "one.jsonl", "DUMP_SIMULATE_SENSOR")
    completes("dump o\t", "dump", "one.jsonl")
    expect("one.jsonl" not in terminal.listed("why --at "), f"{shell}: files where a time is due")
    expect(terminal.listed("") >= set(options), f"{shell}: not all commands")
    for command, names in options.items():
        missing = names - terminal.listed(f"{command} --")
        expect(not missing, f"{shell}: {command} lacks {missing}")


shutil.rmtree(WORK, ignore_errors=True)
(WORK / "place/folder").mkdir(parents=True)
for file in ("one.jsonl", "a night.jsonl", "folder/page.html"):
    (WORK / "place" / file).touch()
output(STANDBY, "--write-manual", WORK / "manual")

program_help = output(STANDBY, "--help").stdout
commands = re.findall(r"^  (\w+) ", program_help.split("Subcommands:")[1].split("Examples:")[0], re.MULTILINE)
helps = {command: output(STANDBY, command, "--help").stdout for command in commands}
pages = {"standby": program_help, **{f"standby-{command}": text for command, text in helps.items()}}
expect({page.name for page in (WORK / "manual/man/man1").iterdir()} == {f"{name}.1" for name in pages}, "the set of pages")
for name, text in pages.items():
    check_pages(name, pages, text)

options = {command: set(re.findall(r"(?<![\w-])--[a-z][-a-z]*", text.split("Options:")[1].split("\n\n")[0]))
           for command, text in helps.items()}
check_shell(Terminal("bash", "--norc", "--noprofile", "-i", prepare=f"source {WORK}/manual/bash-completion/completions/standby"),
            "bash", options)
check_shell(Terminal("zsh", "-f", "-i", prepare=f"fpath=({WORK}/manual/zsh/site-functions $fpath); autoload -Uz compinit;"
                     " compinit -u -D; setopt no_beep no_auto_menu list_ambiguous"), "zsh", options)
print("\n".join(wrong) or "all as the help has it")
sys.exit(1 if wrong else 0)
