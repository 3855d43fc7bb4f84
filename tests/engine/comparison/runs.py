"""One original through one program, and what came of it."""
import hashlib
import json
import os
import tempfile
from dataclasses import asdict, dataclass, field

from . import line
from .judgement import faults, is_serious
from .tools import Timed


@dataclass
class Run:
    """Bytes are None where there is no copy; reports are the lines that the program printed;
    readable says whether qpdf can open the original."""
    status: int = 0
    seconds: float = 0.0
    bytes: int | None = None
    faults: list = field(default_factory=list)
    reports: list = field(default_factory=list)
    readable: bool = True

    @property
    def faulty(self):
        return any(is_serious(tuple(fault)) for fault in self.faults)


@dataclass
class Job:
    """A program with its switches."""
    program: str
    switches: list
    mark: str | None = None
    copies: str | None = None  # the folder that keeps the copies
    results: str | None = None  # the folder that keeps what has been found

    def key(self, path):
        """The same as long as neither the program, its line, the original nor this tool is
        another."""
        here = os.path.dirname(os.path.abspath(__file__))
        sources = sorted(os.path.join(here, name) for name in os.listdir(here)
                         if name.endswith(".py"))
        stamps = [f"{os.stat(name).st_size} {os.stat(name).st_mtime_ns}"
                  for name in (self.program, path, *sources, *filter(None, [self.mark]))]
        return hashlib.sha1("\n".join([path, *stamps, *self.switches]).encode()).hexdigest()


def run(job, original):
    """Takes what was found earlier, if that is kept and still holds."""
    if not job.results:
        return made(job, original)
    kept = os.path.join(job.results, job.key(original.path) + ".json")
    if os.path.exists(kept):
        with open(kept, encoding="utf-8") as file:
            return Run(**json.load(file))
    result = made(job, original)
    with open(kept + ".new", "w", encoding="utf-8") as file:
        json.dump(asdict(result), file)
    os.replace(kept + ".new", kept)
    return result


def made(job, original):
    with tempfile.TemporaryDirectory() as folder:
        copy = os.path.join(job.copies or folder, os.path.basename(original.path)
                            if job.copies else "copy.pdf")
        if os.path.exists(copy):
            os.unlink(copy)
        timed = Timed(line.command(job.program, job.switches, original.path, copy, job.mark))
        result = Run(timed.status, timed.seconds, reports=_reports(timed),
                     readable=original.structure is not None)
        if os.path.exists(copy):
            result.bytes = os.path.getsize(copy)
            result.faults = faults(copy, original)
        return result


def _reports(timed):
    said = timed.output.splitlines() + timed.errors.splitlines()
    return [text.removeprefix("corvgs: ") for text in said if text.startswith("corvgs: ")]
