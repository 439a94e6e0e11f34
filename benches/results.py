"""What was measured, against what was to be reached."""

import math
import statistics
from dataclasses import dataclass, field


@dataclass
class Check:
    """One number with its limit. `is_strict`: the limit itself is not good enough."""

    name: str
    value: float
    target: float
    is_strict: bool = False

    @property
    def is_reached(self):
        return self.value < self.target if self.is_strict else self.value <= self.target


@dataclass
class Result:
    """Of one measure. `ours`, `floor` and what is in `rivals` are medians in `unit`."""

    measure: str
    what: str
    unit: str = ""
    ours: float = math.nan
    floor: float = None
    rivals: dict = field(default_factory=dict)
    checks: list = field(default_factory=list)
    details: dict = field(default_factory=dict)
    error: str = None

    @property
    def is_reached(self):
        return self.error is None and all(check.is_reached for check in self.checks)

    def as_json(self):
        """In JSON there is no infinity and nothing that is not a number: both are null."""
        content = {"measure": self.measure, "what": self.what, "unit": self.unit, "ours": _rounded(self.ours),
                   "floor": _rounded(self.floor),
                   "rivals": {name: _rounded(value) for name, value in self.rivals.items()},
                   "ratio": {check.name: _rounded(check.value) for check in self.checks},
                   "target": {check.name: check.target for check in self.checks},
                   "reached": self.is_reached, "details": self.details}
        return dict(content, error=self.error) if self.error else content


def _rounded(value):
    return round(value, 5) if value is not None and math.isfinite(value) else None


def share(part, whole):
    """How many times `whole` the `part` is."""
    if whole:
        return part / whole
    return math.inf if part else 1.0


def median_share(parts, wholes):
    """The median over the rounds: what else the machine did met both sides of a round alike."""
    return statistics.median(share(part, whole) for part, whole in zip(parts, wholes))


def better(values):
    """The name of the rival with the least median, of lists by name."""
    return min(values, key=lambda name: statistics.median(values[name]))


HEADINGS = ("measure", "ours", "floor", "mpv", "VLC", "unit", "compared", "is", "target", "reached")


def table(results):
    """The results for people, one line for each number with a limit."""
    rows = [HEADINGS]
    for result in results:
        if result.error:
            rows.append((result.measure,) + ("",) * 8 + ("not measured",))
        for index, check in enumerate(result.checks):
            first = (result.measure, _shown(result.ours), _shown(result.floor), _shown(result.rivals.get("mpv")),
                     _shown(result.rivals.get("VLC")), result.unit)
            limit = ("< " if check.is_strict else "<= ") + f"{check.target:g}"
            rows.append((first if index == 0 else ("",) * 6)
                        + (check.name, _shown(check.value), limit, "yes" if check.is_reached else "no"))
    widths = [max(len(row[column]) for row in rows) for column in range(len(HEADINGS))]
    return "\n".join("  ".join(cell.ljust(width) for cell, width in zip(row, widths)).rstrip() for row in rows)


def _shown(value):
    return "" if value is None else f"{value:.4g}"
