"""The inputs of the benchmarks. Each is made from a number alone, so that every run on every machine reads the same
bytes; files that exist already are kept."""

import os

FIRST = ["Ada", "Johannes", "Grace", "Linus", "Maria", "Edsger", "Barbara", "Alan", "Emmy", "Carl", "Sofia"]
LAST = ["Lovelace", "Kepler", "Hopper", "Noether", "Gauss", "Turing", "Curie", "Euler", "Bernoulli"]
WORDS = ("the of and to in is that for it as was with be by on not he his but at are this have from which one had "
         "grammar pattern record column letter number measure [draft] (see below) 1969 table|row list").split()


class Numbers:
    """A linear congruential generator (Knuth's MMIX constants); the high bits are given out."""

    def __init__(self, seed):
        self.state = seed

    def below(self, limit):
        self.state = (self.state * 6364136223846793005 + 1442695040888963407) % 2**64
        return (self.state >> 33) % limit

    def choice(self, values):
        return values[self.below(len(values))]


def rows(count):
    numbers = Numbers(1)
    for i in range(1, count + 1):
        value = numbers.below(99 * 9999991)
        yield (f"{i};{FIRST[value % 11]} {LAST[value % 9]};{value // 99 % 100000}.{value % 90 + 10};"
               f"{'TRUE' if value % 3 else 'FALSE'}\n")


def tree(leaves):
    numbers = Numbers(2)
    for i in range(leaves):
        if i % 1000 == 0:
            yield f"group {FIRST[i // 1000 % 11]}_{i // 1000} {{\n"
        if i % 20 == 0:
            yield f"  part {LAST[i // 20 % 9]}_{i // 20} {{\n"
        yield f"    leaf {FIRST[i % 11]}_{i} = {numbers.below(1000000)};\n"
        if i % 20 == 19:
            yield "  }\n"
        if i % 1000 == 999:
            yield "}\n"


KINDS = ["string", "string_view", "path", "char_array", "bool", "char", "byte", "wchar_t", "float", "double",
         "long double", "half", "int8_t", "int16_t", "int32_t", "int64_t", "uint8_t", "uint16_t", "uint32_t",
         "uint64_t", "date", "time_of_day", "duration", "time_zone", "vector<{0}>", "optional<{0}>", "set<{0}>",
         "list<{0}>", "{0}*", "{0}"]


def declarations(size):
    numbers = Numbers(3)
    written = 0
    count = 0
    while written < size:
        name = f"{numbers.choice(LAST)}{count}"
        if numbers.below(4) == 0:
            text = f"// What a {numbers.choice(FIRST)} may be.\nenum {name} {{\n"
            for i in range(3 + numbers.below(10)):
                if numbers.below(6) == 0:
                    text += f"    // {numbers.choice(WORDS)} {numbers.choice(WORDS)}\n"
                text += f"    {numbers.choice(FIRST).upper()}_{i}{f' = {i * 3}' if numbers.below(2) else ''},\n"
        else:
            text = f"/* A {numbers.choice(FIRST)}. */\n"
            text += f"struct {name}{f' : {numbers.choice(LAST)}' if numbers.below(5) == 0 else ''} {{\n"
            for i in range(4 + numbers.below(20)):
                if numbers.below(8) == 0:
                    text += f"    // {numbers.choice(WORDS)} {numbers.choice(WORDS)}\n"
                qualifier = numbers.choice(["", "", "", "", "const ", "static ", "mutable "])
                kind = numbers.choice(KINDS).format(numbers.choice(LAST))
                text += f"    {qualifier}{kind} {numbers.choice(FIRST).lower()}_{i}"
                text += f"[{numbers.below(64) + 1}]" if numbers.below(10) == 0 else ""
                text += f" = {numbers.below(100)}" if numbers.below(5) == 0 else ""
                text += ";\n"
        text += "};\n\n"
        count += 1
        written += len(text)
        yield text


def table(count):
    numbers = Numbers(4)
    for i in range(1, count + 1):
        fields = [str(i), f"{numbers.choice(FIRST)} {numbers.choice(LAST)}",
                  f"{numbers.choice(FIRST).lower()}@example.org" if numbers.below(3) else "",
                  numbers.choice(["open", "closed", "new"]), numbers.choice(LAST) if numbers.below(2) else ""]
        fields += [f"{numbers.below(100000)}.{numbers.below(90) + 10}" for _ in range(14)]
        fields.append("a remark that is rare" if numbers.below(10) == 0 else "")
        yield ";".join(fields) + "\n"


def text_with_regions(size):
    numbers = Numbers(5)
    written = 0
    while written < size:
        words = [numbers.choice(WORDS) for _ in range(60)]
        kind = numbers.below(12)
        if kind < 8:
            words.insert(20, f"[[{numbers.choice(LAST).lower()}_{kind}| {' '.join(words[3:9])} ]]")
        elif kind == 8:
            words.insert(20, "[[draft without a bar")
        elif kind == 9:
            words.insert(20, "[[ 12 | no key ]]")
        for i in range(11, len(words), 12):
            words[i] += "\n"
        text = " ".join(words) + "\n"
        written += len(text)
        yield text


def orders(count):
    numbers = Numbers(6)
    for i in range(1, count + 1):
        parts = [f"{numbers.choice(LAST).lower()} {numbers.below(50) + 1}" for _ in range(numbers.below(4) + 1)]
        yield f"{i}: {', '.join(parts)};\n"


def one_letter():
    yield "x\n"


def named_groups(count):
    """One name for each record, four of them alike on average, and up to three words below it."""
    numbers = Numbers(7)
    for _ in range(count):
        words = " ".join(numbers.choice(FIRST) for _ in range(numbers.below(4)))
        yield f"n{numbers.below(count // 4)} {numbers.below(1000000)} {f'({words})' if words else ''}\n"


def reading_pattern(count):
    """A pattern that declares `count` variables and reads, in 1000 passes of a loop, a hundredth of them: by full and by
    short names in turn."""
    yield '$BEGIN KVL VERSION="1.0.0"$\n$BEGIN PATTERN READ_ALL(#PASSES ::INTEGER[])$\n'
    for i in range(count):
        yield f'$GROUP_{i // 10}:V{i} ::STRING = "{i % 10}"$\n'
    yield "$BEGIN ALL PASSES$"
    for i in range(0, count, 100):
        yield f"$GROUP_{i // 10}:V{i}$" if i % 200 else f"$:V{i}$"
    yield '$END ALL PASSES$\n$END PATTERN READ_ALL(#PASSES ::INTEGER[])$\n$END KVL VERSION="1.0.0"$\n'


def commands(count):
    """A pattern of `count` commands of all kinds, with text between them."""
    yield '$BEGIN KVL VERSION="1.0.0"$\n$BEGIN PATTERN COMPILED()$\n'
    for i in range(count // 10):
        yield (f'$X{i} ::STRING = "a $A$ b"$\n$BEGIN IF X{i} == "x"$\n<$X{i}$ $Y$>\n$M(A, L[], "z")$\n'
               f'$END IF X{i} == "x"$\n$BEGIN ALL L{i}$$B:C$\n$END ALL L{i}$\n$X{i} += 1$\n')
    yield '$END PATTERN COMPILED()$\n$END KVL VERSION="1.0.0"$\n'


def template_text(size):
    """A pattern of text alone."""
    line = "a line of some text that goes to the output as it stands, with a number 12345\n"
    yield '$BEGIN KVL VERSION="1.0.0"$\n$BEGIN PATTERN COMPILED()$\n'
    for _ in range(size // len(line)):
        yield line
    yield '$END PATTERN COMPILED()$\n$END KVL VERSION="1.0.0"$\n'


def unfinished_options(count):
    """Each record goes on like the optional part up to its last letter."""
    for i in range(count):
        yield f"r{i} = a b c d e f g h i j k l !\n"


def nested_words(count):
    """Words that only the innermost choice knows."""
    for i in range(count):
        yield f"z{i} = {i};\n"


def terminated_lists(count):
    """Texts that end at a list of numbers in front of a semicolon, after lists that look like it."""
    numbers = Numbers(8)
    for i in range(count):
        yield f"text {i} # 1 2 3 or so # {numbers.below(1000)} {i} {i + 1} ;\n"


def write(path, pieces):
    """Writes the pieces as one file, unless it is there."""
    if os.path.exists(path):
        return
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path + ".part", "w", encoding="ascii", newline="") as file:
        file.writelines(pieces)
    os.rename(path + ".part", path)
