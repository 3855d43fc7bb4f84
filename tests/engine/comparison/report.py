"""Rows of tab-separated values, one an original, and the totals of a folder."""

HEADER = ["file", "bytes", *(f"{who} {what}" for who in ("gs", "corvgs") for what in
                             ("exit", "bytes", "ratio", "s", "verdict")), "corvgs says"]


def verdict(run):
    if run.bytes is None:
        return "no copy"
    return "; ".join(f"{what} {how}" for what, how in run.faults) or "ok"


def cells(run, original_bytes):
    if run is None:
        return ["-"] * 5
    size = "-" if run.bytes is None else str(run.bytes)
    ratio = "-" if run.bytes is None or not original_bytes else f"{run.bytes / original_bytes:.3f}"
    return [str(run.status), size, ratio, f"{run.seconds:.2f}", verdict(run)]


def row(name, original_bytes, plain, ours):
    reports = " | ".join(ours.reports) if ours else ""
    return [name, str(original_bytes), *cells(plain, original_bytes), *cells(ours, original_bytes),
            reports or "-"]


class Totals:
    """Of one program: bytes of the originals that qpdf can open, and of their copies. Where there
    is no copy, or a larger one, the user keeps the original: that is the second sum."""

    def __init__(self):
        self.originals = self.copied = self.copies = self.kept = 0
        self.without = self.larger = self.faulty = self.unreadable = 0
        self.seconds = 0.0
        self.kinds = {}

    def add(self, original_bytes, run):
        self.seconds += run.seconds
        if not run.readable:
            self.unreadable += 1
            return
        self.originals += original_bytes
        self.kept += min(original_bytes, original_bytes if run.bytes is None else run.bytes)
        if run.bytes is None:
            self.without += 1
        else:
            self._add_copy(original_bytes, run)

    def _add_copy(self, original_bytes, run):
        self.copied += original_bytes
        self.copies += run.bytes
        self.larger += run.bytes > original_bytes
        self.faulty += run.faulty
        for kind in {fault[0] for fault in run.faults}:
            self.kinds[kind] = self.kinds.get(kind, 0) + 1

    def text(self, who):
        kinds = ", ".join(f"{kind} {count}" for kind, count in sorted(self.kinds.items()))
        return (f"{who}: {_share(self.copies, self.copied)}; without larger copies "
                f"{_share(self.kept, self.originals)}; unreadable {self.unreadable}, no copy "
                f"{self.without}, larger {self.larger}, faulty {self.faulty} "
                f"({kinds or 'nothing'}); {self.seconds:.1f} s")


def _share(part, whole):
    return f"{part:,} of {whole:,} bytes" + (f" ({part / whole:.4f})" if whole else "")
