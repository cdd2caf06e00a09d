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


ONE_LETTER = (Input("letter", inputs.one_letter, 0),)
ROWS = sizes("rows", inputs.rows, 10000, 100000, 1000000)

JOBS = (
    Job("rows", "rows", ROWS, rivals=(BY_HAND, PEGTL, PERL, JINJA)),
    Job("rows by line", "rows", ROWS, script="lines.kvl", rivals=(BY_HAND, PEGTL)),
    Job("tree", "tree", sizes("tree", inputs.tree, 100000), rivals=(BY_HAND, PEGTL)),
    Job("declarations", "declarations", sizes("declarations", inputs.declarations, 1000000), rivals=(BY_HAND, PEGTL)),
    Job("template", "template", sizes("table", inputs.table, 1000), rivals=(BY_HAND, PERL, JINJA)),
    Job("search", "search", sizes("text", inputs.text_with_regions, 10000000), rivals=(BY_HAND, PERL, JINJA)),
    Job("start", "start", ONE_LETTER, rivals=(BY_HAND, PERL, JINJA), runs=5),
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


STREAMS = sizes("text", inputs.text_with_regions, 5000000, 50000000)

GROWTH = (
    Growth("rows, 1 to 10 MB", "jobs/rows", sizes("rows", inputs.rows, 30000, 300000)),
    Growth("rows, 10 to 100 MB", "jobs/rows", sizes("rows", inputs.rows, 300000, 3000000)),
    Growth("rows by line, 10 to 100 MB", "jobs/rows", sizes("rows", inputs.rows, 300000, 3000000),
           scripts=("lines.kvl",) * 2),
    Growth("declarations, 1 to 10 MB", "jobs/declarations", sizes("declarations", inputs.declarations, 1000000, 10000000)),
    Growth("search, 10 to 100 MB", "jobs/search", sizes("text", inputs.text_with_regions, 10000000, 100000000)),
    Growth("calls, 10,000 to 100,000", "jobs/calls", sizes("orders", inputs.orders, 10000, 100000)),
    Growth("lists three levels deep", "jobs/tree", sizes("tree", inputs.tree, 100000, 1000000)),
    Growth("one output line, 1 to 10 MB", "growth/one_line", sizes("rows", inputs.rows, 30000, 300000)),
    Growth("options that fail at their end", "growth/options",
           sizes("options", inputs.unfinished_options, 10000, 100000)),
    Growth("sort and unify", "growth/order", sizes("named_groups", inputs.named_groups, 100000, 1000000)),
    Growth("a loop over 1,000,000 records", "growth/loop", ONE_LETTER * 2, scripts=("main.kvl", "larger.kvl")),
    Growth("a loop of 1,000 in one of 1,000", "growth/nested_loops", ONE_LETTER * 2, scripts=("main.kvl", "larger.kvl")),
    Growth("EXTEND by 1,000,000 records", "growth/extend", ONE_LETTER * 2, scripts=("main.kvl", "larger.kvl")),
    Growth("100,000 variables read 1,000,000 times", "growth/variables",
           sizes("reading_pattern", inputs.reading_pattern, 10000, 100000)),
    Growth("compiling 10,000 to 100,000 commands", "growth/compile", sizes("commands", inputs.commands, 10000, 100000)),
    Growth("compiling 5 to 50 MB of text", "growth/compile",
           sizes("template_text", inputs.template_text, 5000000, 50000000)),
    Growth("a list inside a terminator", "growth/terminator",
           sizes("terminators", inputs.terminated_lists, 10000, 100000)),
    Growth("choices 16 deep against 8", "growth/choices", sizes("choices", inputs.nested_words, 50000, 50000),
           scripts=("main.kvl", "deeper.kvl"), limit=2),
    Growth("streams, 5 to 50 MB: merge", "growth/streams", STREAMS, scripts=("merge.kvl",) * 2),
    Growth("streams, 5 to 50 MB: replace, delete", "growth/streams", STREAMS, scripts=("replace.kvl",) * 2),
    Growth("streams, 5 to 50 MB: clear, case", "growth/streams", STREAMS, scripts=("bytes.kvl",) * 2),
    Growth("streams, 5 to 50 MB: left, right, length", "growth/streams", STREAMS, scripts=("width.kvl",) * 2),
    Growth("calls, body of 500 commands against 5", "growth/calls", sizes("table", inputs.table, 10, 10),
           scripts=("main.kvl", "long.kvl"), limit=1.2),
    Growth("output of one template, 4 to 40 MB", "growth/output", sizes("table", inputs.table, 1000, 1000),
           scripts=("main.kvl", "ten_times.kvl")),
    Growth("each operator, 100,000 to 1,000,000", "growth/operators", sizes("table", inputs.table, 10, 10),
           scripts=("main.kvl", "ten_times.kvl")),
)
