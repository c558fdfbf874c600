"""What the tests in Python share that run the example's programs: a folder of their own, processes that are ended by their own
ids whatever happens, and how a test fails. DEMO_BUILD_DIR names the build folder."""

import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import time

build = pathlib.Path(os.environ["DEMO_BUILD_DIR"]).resolve() / "bin"
folder = pathlib.Path(tempfile.mkdtemp())
running = []


def check(holds, what):
    if not holds:
        raise AssertionError(what)


def start(program, *options, **settings):
    process = subprocess.Popen([build / program, *map(str, options)], stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                               stderr=subprocess.PIPE, text=True, **settings)
    running.append(process)
    return process


def end_of(process, what):
    _, errors = process.communicate(timeout=60)
    check(process.returncode == 0, f"{what} ended with status {process.returncode}: {errors}")


def start_server(*options, **settings):
    """The server's process and port."""
    file = folder / "port"
    file.unlink(missing_ok=True)
    server = start("holdem-server", "--listen", "127.0.0.1:0", "--port-file", file, "--database", ":memory:", "--frame-rate", 0,
                   *options, **settings)
    deadline = time.monotonic() + 20
    while not file.exists():
        check(server.poll() is None and time.monotonic() < deadline, "the server does not listen")
        time.sleep(0.02)
    return server, int(file.read_text())


def play(hands, password, *options, table_password=None, during=None, **settings):
    """A game of six bots at two tables to its end; its port."""
    file = folder / "password"
    file.write_text(password)
    server, port = start_server("--hands", hands, "--start-with", 3, "--seed", 5, *options, **settings)
    bots = [start("holdem-client", "bot", "--connect", f"127.0.0.1:{port}", "--name", f"Player {i}", "--register",
                  "--password-file", file, "--seat", i // 2, "--table", i % 2 + 1, "--seed", i, "--pause", 0, "--rebuys", 1000,
                  *(["--table-password", table_password] if table_password and i % 2 else [])) for i in range(6)]
    if during:
        during()
    end_of(server, "the server")
    for bot in bots:
        bot.communicate(timeout=60)
    return port


def run(main):
    """Runs a test. The last line and the exit status (0, 1) say whether it passed; what it returns is told."""
    name = pathlib.Path(sys.argv[0]).name
    try:
        print(f"{name}: passed, {main()}")
    except (AssertionError, subprocess.SubprocessError, ValueError) as trouble:
        print(f"{name}: FAILED: {trouble}")
        sys.exit(1)
    finally:
        for process in running:
            if process.poll() is None:
                process.kill()
                process.wait()
        shutil.rmtree(folder, ignore_errors=True)
