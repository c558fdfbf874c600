"""What bash, zsh and fish make of a command line when Tab is pressed, each the real shell with the real script."""

import os
import pathlib
import pty
import select
import shlex
import signal
import subprocess
import time


def bash(script, *words):
    """The candidates for the last word."""
    program = """
      source "$1"; shift
      COMP_WORDS=("$@") COMP_CWORD=$(($# - 1))
      _cmdproc
      ((${#COMPREPLY[@]} == 0)) || printf '%s\\n' "${COMPREPLY[@]}"
    """
    answer = subprocess.run(["bash", "--norc", "-c", program, "bash", script, *words], check=True, capture_output=True, text=True)
    assert answer.stderr == "", answer.stderr
    return answer.stdout.splitlines()


def fish(script, *words):
    """The candidates for the last word."""
    line = " ".join(words)
    program = f"source {shlex.quote(str(script))}; complete -C {shlex.quote(line)}"
    answer = subprocess.run(["fish", "--no-config", "-c", program], check=True, capture_output=True, text=True)
    assert answer.stderr == "", answer.stderr
    return [candidate.split("\t")[0] for candidate in answer.stdout.splitlines()]


class Zsh:
    """An interactive zsh that has loaded the script by compinit."""

    def __init__(self, script):
        self.folder = pathlib.Path(script).parent
        self.process, self.terminal = pty.fork()
        if self.process == 0:
            os.environ.update(TERM="dumb", HOME=str(self.folder), LC_ALL="C.UTF-8", ZDOTDIR=str(self.folder))
            os.execvp("zsh", ["zsh", "-f", "-i"])
        self._send(f"PS1= PS2= RPS1=; setopt nobeep noautolist noalwayslastprompt; unsetopt zle_bracketed_paste; "
                   f"fpath=({shlex.quote(str(self.folder))} $fpath); autoload -Uz compinit; compinit -u -D; bindkey -e; "
                   f"cd {shlex.quote(str(self.folder))}; print -r -- rea''dy\n")
        self._until("ready")

    def __enter__(self):
        return self

    def __exit__(self, *_):
        os.close(self.terminal)
        os.kill(self.process, signal.SIGKILL)
        os.waitpid(self.process, 0)

    def complete(self, *words):
        """The line after Tab: completed as far as it is certain."""
        # The line becomes the argument of a print, so that what stands in it is told and not run.
        self._send(" ".join(words) + "\t")
        self._send("\x01print -r -- 'li''ne:\x05:end'\n")
        return self._until(":end").rsplit("line:", 1)[1].rsplit(":end", 1)[0].strip()

    def _send(self, text):
        os.write(self.terminal, text.encode())

    def _until(self, sign):
        text, last = "", time.monotonic() + 20
        while sign not in text or (sign == ":end" and "line:" not in text):
            if not select.select([self.terminal], [], [], max(0, last - time.monotonic()))[0]:
                raise TimeoutError(f"zsh did not say {sign!r} but {text!r}")
            text += os.read(self.terminal, 65536).decode("utf-8", "replace")
        return text
