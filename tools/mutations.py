# SPDX-License-Identifier: MIT
"""The mutations of a C++ source, which tests have to detect, as changes of its text.

The patterns rely on the format of clang-format: an operator has a space on both sides, the bracket of a
template has none, and every body is in braces.
"""
import re
import zlib
from dataclasses import dataclass

COMMENT_OR_LITERAL = re.compile(
    r"""//[^\n]* | /\*.*?\*/ | "(?:\\.|[^"\\\n])*" | '(?:\\.|[^'\\\n])*'""", re.S | re.X)
DIRECTIVE = re.compile(r"^[ ]*#(?:[^\n]*\\\n)*[^\n]*", re.M)
DEFINE = re.compile(r"\s*#define")
PUBLIC = "include/"
STATIC_ASSERT = re.compile(r"static_assert\([^{};]*\);")
UNIT = re.compile(r"\\x[0-9A-Fa-f]{2}|\\[0-7]{1,3}|\\.|.")

OPERATORS = [(re.compile(pattern), new) for pattern, new in (
    (r"(?<=\s)==(?=\s)", "!="), (r"(?<=\s)!=(?=\s)", "=="),
    (r"(?<=\s)<(?=\s)", "<="), (r"(?<=\s)<=(?=\s)", "<"),
    (r"(?<=\s)>(?=\s)", ">="), (r"(?<=\s)>=(?=\s)", ">"),
    (r"(?<=\s)&&(?=\s)", "||"), (r"(?<=\s)\|\|(?=\s)", "&&"),
    (r"(?<=\s)\+(?=\s)", "-"), (r"(?<=\s)-(?=\s)", "+"),
    (r"(?<=\s)\*(?=\s)", "/"), (r"(?<=\s)/(?=\s)", "*"),
    (r"\+\+", "--"), (r"--", "++"), (r"\+=", "-="), (r"-=", "+="),
    (r"(?<![\w!])!(?=[\w(*])", ""),
    (r"\btrue\b", "false"), (r"\bfalse\b", "true"),
    (r"\bcontinue\b", "break"),
    (r"\bsizeof\b(?!\.)", "-1 + sizeof"),
    (r" = \{\}(?=;)", ""),
    # The condition of a ?:, an if or a while without an operator.
    (r"(?<=return )(?=[\w.>-]+(\([^()]*\))? \?)|(?<== )(?=[\w.>-]+(\([^()]*\))? \?)"
     r"|(?<=\()(?=[\w.>-]+(\([^()]*\))? \?)", "!"),
    (r"(?<=if \()(?=[\w.>-]+(\([^()]*\))?\) \{)|(?<=while \()(?=[\w.>-]+(\([^()]*\))?\) \{)", "!"),
)]
NUMBER = re.compile(r"(?<![\w.])(0x[0-9A-Fa-f]+|\d+)(?![\w.])")
ENUM = re.compile(r"enum class (\w+) \{([^}]*)\}")
FIELD = re.compile(r'FIELD(?:_AS|_IN)?\((\w+), ([\w.]+)(?:, ("?)(\w+)"?)?\)')
TABLE = re.compile(r"constexpr auto (\w+) = Fields\{")
READS_REQUEST = re.compile(r"(setting\w*<[^()]*>\(|read_fields\(\w+,|copy_optional\(\w+,)\s*$")
COMMAND = re.compile(r'COMMAND\("(\w+)", (\w+)\)')

KEYWORD = re.compile(r"(using|typedef|goto|if|for|while|do|else|extern|friend|template)\b")
JUMP = re.compile(r"(return|break|continue)\b")
DECLARATION = re.compile(r"((const|constexpr|static|struct|auto)\s+)*[\w:]+(<[^;=]*>)?"
                         r"(\s*[*&]+\s*(const\s+)?|\s+)\w+\s*[\[(={;]")
LABEL = re.compile(r"\s*(case [^:]+:(?!:)|default:)?\s*")
BODY = re.compile(r"(\)|\b(const|else|do)|\)\s*->\s*[\w:]+|:)$")
# These have no effect except their result.
LOOKS_ONLY = {"sizeof", "static_cast", "text_of", "number_of", "number_in", "array_of", "item_of",
              "clamped", "cJSON_GetObjectItem", "cJSON_GetObjectItemCaseSensitive",
              "cJSON_GetArraySize", "cJSON_IsObject", "cJSON_IsArray", "strlen", "strnlen",
              "is_number", "text", "holds", "text_under", "holds_any_case", "Ended", "strtoll", "time",
              "const_cast", "get", "access_code"}
CALL = re.compile(r"(\w+)(?:<[^<>()]*>)?\(")
# These set their first argument and read the others.
SETTERS = {"copy_text", "assign", "put_if_known", "put_bytes_per_second", "empty_if_unknown"}
SET_FIELD = re.compile(rf"(?:{'|'.join(sorted(SETTERS))})\((\w+(?:(?:\.|->)\w+)*)[,)]|"
                       r"(\w+(?:(?:\.|->)\w+)+)(?:\[\w+\])? \|?= ")
LOG = re.compile(r"(?:LOG_\w+|log_\w+)\(")
REMOVAL = re.compile(r"(?:remove_key|cJSON_DeleteItemFromObject)\(obj, ")
SET = re.compile(r"(?:(?:const|constexpr|static|auto|\w+(?:<[^<>]*>)?)\s+)*[*&]*\s*(?:const\s+)?(\w+)"
                 r"(?:(?:\.|->)\w+|\[\w+\])*\s*(?:[-+|&]?=(?!=)|\{)")
SCOPE = re.compile(r"\b(namespace|struct|class|enum|union|extern)\b[^()]*$")


@dataclass(frozen=True)
class Mutation:
    """One change: the text from start to end is replaced."""
    file: str
    line: int
    number: int  # among the mutations of the line
    start: int
    end: int
    new: str
    kind: str

    @property
    def name(self):
        return f"{self.file}:{self.line}:{self.number}"

    def applied_to(self, text):
        return text[:self.start] + self.new + text[self.end:]


def blank(text):
    return re.sub(r"[^\n]", " ", text)


def blanked(match):
    return blank(match.group())


def literal_blanked(match):
    text = match.group()
    return blank(text) if text[0] == "/" else text[0] + " " * (len(text) - 2) + text[0]


def literals(text, code):
    """Each string with one character changed, and with one removed; each character as its successor."""
    for match in COMMENT_OR_LITERAL.finditer(text):
        literal = match.group()
        if literal[0] == "/" or code[match.start()] != literal[0]:
            continue
        units = UNIT.findall(literal[1:-1])
        if literal[0] == "'":
            other = "\\1" if units == ["\\0"] else "x" if units[0][0] == "\\" else chr(
                ord(units[0]) + 1)
            yield match.span(), f"'{other}'", "character"
        elif not units:
            yield match.span(), '"x"', "text"
        else:
            at = zlib.crc32(literal.encode()) % len(units)
            other = "y" if units[at] == "x" else "x"
            # A hexadecimal escape would include the next character.
            apart = '" "' if "\\x" in units[at - 1] else ""
            changed = "".join(units[:at]) + apart + other + "".join(units[at + 1:])
            yield match.span(), f'"{changed}"', "text"
            yield match.span(), f'"{"".join(units[:-1])}"', "text"


def numbers(code):
    for match in NUMBER.finditer(code):
        value = int(match.group(), 0)
        yield match.span(), str(value + 1), "number"
        if value > 0:
            yield match.span(), str(value - 1), "number"


def operators(code):
    for pattern, new in OPERATORS:
        for match in pattern.finditer(code):
            yield match.span(), new, "operator"


def enumerators(code, enums):
    for name, values in enums.items():
        for match in re.finditer(rf"\b{name}::(\w+)", code):
            if match.group(1) in values:
                at = (values.index(match.group(1)) + 1) % len(values)
                yield match.span(1), values[at], "enumerator"


def only_reads_requests(text, at):
    """Whether the table of the place is used for nothing else, so that its order has no effect."""
    tables = list(TABLE.finditer(text, 0, at))
    name = tables[-1].group(1)
    uses = [match.start() for match in re.finditer(rf"\b{name}\b", text)
            if match.start() != tables[-1].start(1)]
    return bool(uses) and all(READS_REQUEST.search(text, 0, use) for use in uses)


def key_and_member(field):
    """The contents of a row of a field table, in any of its forms."""
    member, quote, last = field.group(2, 3, 4)
    if not last:
        return member, member
    return (last, member) if quote else (last, f"{member}.{last}")


def with_neighbours_value(first, second):
    """The place in the first row and its replacement: for a field the next row's member, for a command its handler."""
    if first.re is COMMAND:
        return first.span(2), second.group(2)
    return first.span(), (f'FIELD_AS({first.group(1)}, {key_and_member(second)[1]}, '
                          f'"{key_and_member(first)[0]}")')


def rows(text, code):
    """Adjacent rows of a table swapped, and a row with its neighbour's value."""
    for pattern in (FIELD, COMMAND):
        found = [match for match in pattern.finditer(text) if code[match.start()] != " "]
        for first, second in zip(found, found[1:]):
            between = text[first.end():second.start()]
            if not re.fullmatch(r"[,\s\\]*", between):
                continue
            if pattern is FIELD and not only_reads_requests(text, first.start()):
                yield (first.start(), second.end()), second.group() + between + first.group(), "row"
            yield *with_neighbours_value(first, second), "row"


def statements(code):
    """The statements of bodies, block by block in order, as their places in the text."""
    blocks = []
    stack = []
    kind, start, parentheses, block = "scope", 0, 0, []
    for at, letter in enumerate(code):
        if letter in "([":
            parentheses += 1
        elif letter in ")]":
            parentheses -= 1
        elif letter == "{":
            head = code[start:at].strip()
            stack.append((kind, start, parentheses, block))
            if SCOPE.search(head):
                kind = "scope"
            else:
                kind = "body" if BODY.search(head) or not head else "value"
            start, parentheses, block = at + 1, 0, []
            blocks.append(block)
        elif letter == "}":
            ended = kind
            kind, start_before, parentheses, block = stack.pop()
            start = start_before if ended == "value" or parentheses > 0 else at + 1
            if start == at + 1 and block is not None:
                block.append(None)  # the statements around a block are not adjacent
        elif letter == ";" and parentheses == 0:
            begin = start + LABEL.match(code[start:at]).end()
            if kind == "body" and begin < at:
                block.append((begin, at + 1))
            start = at + 1
    return blocks


def set_by(statement):
    """The variable or field that the statement sets, when that is all it does; None for any other."""
    field = SET_FIELD.match(statement)
    found = field or SET.match(statement)
    harmless = LOOKS_ONLY | SETTERS if field else LOOKS_ONLY
    if not found or not harmless.issuperset(CALL.findall(statement)):
        return None
    return next(filter(None, found.groups()))


def names(statement, place):
    """Whether the statement names the place, a part of it, or an object that contains it."""
    wholes = [place[:end.start()] for end in re.finditer(r"\.|->", place)]
    return bool(re.search(rf"\b{re.escape(place)}\b", statement)) or any(
        re.search(rf"\b{re.escape(whole)}(?![\w.]|->)", statement) for whole in wholes)


def only_logs(statement):
    return bool(LOG.match(statement)) and LOOKS_ONLY.issuperset(CALL.findall(statement)[1:])


def are_independent(first, second):
    """Whether each statement only sets a place that the other does not name, or one of them logs something else; or
    both remove keys."""
    if REMOVAL.match(first) and REMOVAL.match(second):
        return True
    first_set, second_set = set_by(first), set_by(second)
    return (bool(first_set or only_logs(first)) and bool(second_set or only_logs(second)) and
            bool(first_set or second_set) and
            not (first_set and names(second, first_set)) and not (second_set and names(first, second_set)))


def changed_statements(text, code):
    for block in statements(code):
        for at, place in enumerate(block):
            if place is None:
                continue
            statement = code[slice(*place)]
            if KEYWORD.match(statement):
                continue
            declares = DECLARATION.match(statement)
            if not declares:
                yield place, ";" + "\n" * statement.count("\n"), "deletion"
            follower = block[at + 1] if at + 1 < len(block) else None
            if follower is None or JUMP.match(statement):
                continue
            other = code[slice(*follower)]
            if KEYWORD.match(other) or JUMP.match(other):
                continue
            if any(DECLARATION.match(one) and "(" not in one for one in (statement, other)):
                continue  # a declaration without a call may be moved
            if are_independent(statement, other):
                continue
            between = text[place[1]:follower[0]]
            yield ((place[0], follower[1]), text[slice(*follower)] + between + text[slice(*place)],
                   "order")


def enums_of(texts):
    return {name: re.findall(r"\bk\w+", COMMENT_OR_LITERAL.sub(blanked, values))
            for text in texts for name, values in ENUM.findall(text)}


def mutations_of(file, text, enums):
    """All mutations of a source, in the order of its lines.

    Of a public header only what it defines: the records' layout is pinned by the compiler.
    """
    code = COMMENT_OR_LITERAL.sub(literal_blanked, text)
    code = STATIC_ASSERT.sub(blanked, code)
    code = DIRECTIVE.sub(lambda match: match.group() if DEFINE.match(match.group())
                         else blanked(match), code)
    code = re.sub(r'extern "C"', 'extern    ', code)
    without_defines = DIRECTIVE.sub(blanked, code)
    if file.startswith(PUBLIC):
        code = "".join(letter if other in " \n" else " "
                       for letter, other in zip(code, without_defines))
        without_defines = blank(code)
    found = [*literals(text, code), *numbers(code), *operators(code), *enumerators(code, enums),
             *rows(text, code), *changed_statements(text, without_defines)]
    numbers_of_lines = {}
    for (start, end), new, kind in sorted(found, key=lambda entry: entry[0]):
        if new == text[start:end]:
            continue
        line = text.count("\n", 0, start) + 1
        numbers_of_lines[line] = numbers_of_lines.get(line, 0) + 1
        yield Mutation(file, line, numbers_of_lines[line], start, end, new, kind)
