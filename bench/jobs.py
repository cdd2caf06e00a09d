"""What is measured: jobs with their competitors, and the jobs that show how time grows with the input."""

from dataclasses import dataclass

import inputs

BY_HAND = "C++ by hand"
PEGTL = "PEGTL + fmt"
PERL = "Perl"
JINJA = "Python + Jinja2"


@dataclass(frozen=True)
class Input:
    name: str           # of the file, from which its maker and size can be told
    generate: callable
    size: int

    @property
    def file(self):
        return f"{self.name}-{self.size}.txt"

    def pieces(self):
        return self.generate(self.size) if self.size else self.generate()


@dataclass(frozen=True)
class Job:
    name: str
    folder: str         # below jobs/ or growth/
    inputs: tuple       # the smallest first
    script: str = "main.kvl"
    rivals: tuple = (BY_HAND,)
    runs: int = 1       # times the usual number


def sizes(name, generate, *counts):
    return tuple(Input(name, generate, count) for count in counts)


ROWS = sizes("rows", inputs.rows, 10000, 100000, 1000000)

JOBS = (
    Job("rows", "rows", ROWS, rivals=(BY_HAND, PEGTL, PERL, JINJA)),
    Job("rows by line", "rows", ROWS, script="lines.kvl", rivals=(BY_HAND, PEGTL)),
    Job("tree", "tree", sizes("tree", inputs.tree, 100000), rivals=(BY_HAND, PEGTL)),
    Job("declarations", "declarations", sizes("declarations", inputs.declarations, 1000000), rivals=(BY_HAND, PEGTL)),
    Job("template", "template", sizes("table", inputs.table, 1000), rivals=(BY_HAND, PERL, JINJA)),
    Job("search", "search", sizes("text", inputs.text_with_regions, 10000000), rivals=(BY_HAND, PERL, JINJA)),
    Job("start", "start", (Input("letter", inputs.one_letter, 0),), rivals=(BY_HAND, PERL, JINJA), runs=5),
    Job("calls", "calls", sizes("orders", inputs.orders, 100000)),
)


@dataclass(frozen=True)
class Growth:
    """The time for the second input over that for the first, and the most that it may be."""
    name: str
    folder: str
    inputs: tuple
    scripts: tuple = ("main.kvl", "main.kvl")
    limit: float = 11


GROWTH = (
    Growth("rows, 1 to 10 MB", "jobs/rows", sizes("rows", inputs.rows, 30000, 300000)),
    Growth("rows, 10 to 100 MB", "jobs/rows", sizes("rows", inputs.rows, 300000, 3000000)),
    Growth("lists three levels deep", "jobs/tree", sizes("tree", inputs.tree, 100000, 1000000)),
    Growth("one output line, 1 to 10 MB", "growth/one_line", sizes("rows", inputs.rows, 30000, 300000)),
    Growth("options that fail at their end", "growth/options",
           sizes("options", inputs.unfinished_options, 10000, 100000)),
    Growth("sort and unify", "growth/order", sizes("names", inputs.names, 100000, 1000000)),
    Growth("a list inside a terminator", "growth/terminator",
           sizes("terminators", inputs.terminated_lists, 10000, 100000)),
    Growth("choices 16 deep against 8", "growth/choices", sizes("choices", inputs.nested_words, 50000, 50000),
           scripts=("main.kvl", "deeper.kvl"), limit=3),
)
