"""Other programs, each run within a bound."""
import resource
import signal
import subprocess
import time

SECONDS = 900
MEMORY = 6 << 30


def _bounded():
    resource.setrlimit(resource.RLIMIT_AS, (MEMORY, MEMORY))


def output_of(*command):
    """What it prints; nothing if it can't be run or doesn't end."""
    try:
        return subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL,
                              timeout=SECONDS, check=False, preexec_fn=_bounded).stdout
    except (OSError, subprocess.TimeoutExpired):
        return b""


def status_of(*command):
    """Its exit status; None if it can't be run, doesn't end or is killed."""
    try:
        status = subprocess.run(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                                timeout=SECONDS, check=False, preexec_fn=_bounded).returncode
    except (OSError, subprocess.TimeoutExpired):
        return None
    return status if status >= 0 else None


class Timed:
    """A program run to its end: its exit status (minus the signal's number), what it printed on
    both channels, and wall time in seconds."""

    def __init__(self, command):
        start = time.perf_counter()
        with subprocess.Popen(command, stdout=subprocess.PIPE, stderr=subprocess.PIPE) as process:
            try:
                output, errors = process.communicate(timeout=SECONDS)
            except subprocess.TimeoutExpired:
                process.send_signal(signal.SIGTERM)
                output, errors = process.communicate()
        self.status = process.returncode
        self.seconds = time.perf_counter() - start
        self.output = output.decode("utf-8", "replace")
        self.errors = errors.decode("utf-8", "replace")


class Pipe:
    """A program's output, to be read while it runs."""

    def __init__(self, *command):
        self._process = subprocess.Popen(command, stdout=subprocess.PIPE,
                                         stderr=subprocess.DEVNULL, preexec_fn=_bounded)

    def __enter__(self):
        return self._process.stdout

    def __exit__(self, *_):
        self._process.kill()
        self._process.stdout.close()
        self._process.wait()
