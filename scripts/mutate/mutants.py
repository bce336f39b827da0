"""The mutants: every place of a source file that one of the rules can break, and which of them to try."""

import bisect
import hashlib
import re
from collections import Counter, defaultdict, namedtuple
from dataclasses import dataclass

TOKENS = re.compile(
    r"""
    (?P<comment>//[^\n]*|/\*.*?\*/)
  | (?P<preprocessor>^[ \t]*\#(?:[^\n]*\\\n)*[^\n]*)
  | (?P<string>"(?:\\.|[^"\\])*")
  | (?P<char>'(?:\\.|[^'\\])+')
  | (?P<number>0[xX][0-9A-Fa-f]+[uUlL]*|\d+\.\d+f?|\d+[uUlL]*)
  | (?P<word>[A-Za-z_]\w*)
  | (?P<sign>\.\.\.|<<=|>>=|->|::|\+\+|--|<=|>=|==|!=|&&|\|\||\+=|-=|\*=|/=|\|=|&=|<<|>>|[^\s\w])
    """,
    re.VERBOSE | re.MULTILINE | re.DOTALL,
)

Token = namedtuple("Token", "kind text start end")
Edit = namedtuple("Edit", "start end text")


@dataclass(frozen=True)
class Mutant:
    identity: str  # a short name of the three that follow, see Source._add()
    path: str
    scope: str  # the function or class that it is in, empty for neither
    change: str  # the statement without blanks, with the change in brackets: 'if([a -> !(a])'
    line: int
    category: str
    edits: tuple
    before: str
    after: str

    def applied_to(self, source):
        for edit in sorted(self.edits, reverse=True):
            source = source[: edit.start] + edit.text + source[edit.end :]
        return source


# Binary operators are set between spaces here, by clang-format; the brackets of templates and references are not.
OTHER_COMPARISONS = {
    "<": ("<=", ">="),
    "<=": ("<", ">"),
    ">": (">=", "<="),
    ">=": (">", "<"),
    "==": ("!=",),
    "!=": ("==",),
}
OTHER_SIGNS = {"+": "-", "-": "+", "*": "+", "/": "*", "%": "*", "|": "&", "&": "|", "+=": "-=", "-=": "+="}
OTHER_CALLS = {
    "isNull": "isEmpty",
    "isEmpty": "isNull",
    "min": "max",
    "max": "min",
    "lowest": "max",
    "bitOrder": "writtenOrder",
    "writtenOrder": "bitOrder",
    "append": "prepend",
    "prepend": "append",
    "all_of": "any_of",
    "names": "displayNames",
    "displayNames": "names",
    "toLower": "toUpper",
    "toUpper": "toLower",
    "toInt": "toShort",
    "toFloat": "toDouble",
}
# Words that begin no statement which could be left out.
KEPT_STATEMENTS = {
    "using", "typedef", "static", "constexpr", "const", "auto", "class", "struct", "enum", "namespace", "template",
    "friend", "public", "private", "protected", "case", "default", "explicit", "virtual", "static_assert", "extern",
    "mutable", "if", "for", "while", "do", "switch", "else", "try", "catch", "inline", "operator",
}  # fmt: skip

ROW = re.compile(
    r'constexpr\s+(?P<kind>\w+)\s+(?P<row>\w+)\{\s*(?P<bit>\d+),\s*"(?P<name>\w+)",\s*(?P<tag>0x[0-9A-Fa-f]{8}),'
    r"\s*&\w+::(?P<field>\w+)(?:,\s*(?P<traits>[^}]*?))?\s*\};"
)
STRUCT = re.compile(r"^struct (?:\w+Data|Versions|State)\n\{\n(.*?)^\};", re.MULTILINE | re.DOTALL)
FIELD = re.compile(r"^    (?P<type>[\w:<>]+) (?P<field>\w+)(?: = (?P<value>[^;]+))?;", re.MULTILINE)
TABLE = re.compile(r"constexpr Table members\{(?P<rows>[^}]*)\};")
# Traits that a row of the kind could have by mistake, with an effect.
ADDED_TO_LISTS = ("Mandatory", "ComparedByRightFlag", "SnapshotReadByCount")
ADDED_TO_SCALARS = ("Attribute", "Mandatory", "WrittenWhenSet", "SnapshotReadAlways")
ADDED_TO_TEXTS = (*ADDED_TO_SCALARS, "IsValidAcceptsNull", "Identifies")


MOST_AROUND = 80  # characters of a statement before and after a change


def without_blanks(text):
    """The code without comments, and without blanks but those that keep two words apart."""
    text = re.sub(r"//[^\n]*|/\*.*?\*/", " ", text, flags=re.DOTALL)
    text = re.sub(r"(?m)^[ \t]*#.*$", " ", text)
    return re.sub(r"(?<=\w)\s+(?=\w)", "\0", text.strip()).replace(" ", "").replace("\n", "").replace("\t", "").replace("\0", " ")


class Source:
    """One file and its mutants by the rules."""

    def __init__(self, path, text):
        self.path = path
        self.text = text
        self.mutants = []
        self._taken = []  # what the rules for tables have dealt with
        self._seen = set()
        self._alike = Counter()
        self._line_starts = [0]
        self._lines = text.split("\n")
        for line in self._lines:
            self._line_starts.append(self._line_starts[-1] + len(line) + 1)
        self.tokens = [
            Token(match.lastgroup, match.group(), match.start(), match.end())
            for match in TOKENS.finditer(text)
            if match.lastgroup not in ("comment", "preprocessor")
        ]
        self._drop_static_asserts()
        self._scopes, self._matching = self._find_scopes()
        self._find_statements()
        self._tables()
        self._fields()
        self._name_lists()
        for index, token in enumerate(self.tokens):
            if not any(start <= token.start < end for start, end in self._taken):
                self._at(index, token)
        self._statements()

    # --- Mutants and their identities ---

    def _find_statements(self):
        """Where statements begin and end, and the name of the function or class around each."""
        self._statement_starts, self._scope_names = [0], [""]
        stack = [("namespace", "")]
        depth = 0  # of lists in braces, which are within a statement
        for index, token in enumerate(self.tokens):
            if token.text == "{":
                kind = self._kinds.get(index, "list")
                name = stack[-1][1]
                if kind in ("function", "type") and stack[-1][0] in ("namespace", "type"):
                    head = self._head_of(index)
                    name = "::".join(part for part in (name, self._name_in(head, kind)) if part)
                    kind = "enum" if kind == "type" and "enum" in head else kind
                stack.append((kind, name))
            elif token.text == "}" and len(stack) > 1:
                stack.pop()
            elif token.text != ";" and not (token.text == "," and stack[-1][0] == "enum"):
                continue
            depth = sum(kind == "list" for kind, _ in stack)
            if depth == 0 and not (token.text == "}" and self._kinds.get(self._matching.get(index)) == "list"):
                self._statement_starts.append(token.end)
                self._scope_names.append(stack[-1][1])

    def _head_of(self, index):
        """The words and signs before the braces that open at a token."""
        begin = index
        while begin > 0 and self.tokens[begin - 1].text not in (";", "{", "}"):
            begin -= 1
        return [token.text for token in self.tokens[begin:index]]

    @staticmethod
    def _name_in(head, kind):
        """The name of a type, or of a function with its class."""
        if kind == "type":
            keyword = max(i for i, text in enumerate(head) if text in ("class", "struct", "enum"))
            names = [text for text in head[keyword + 1 :] if re.fullmatch(r"\w+", text) and not text.endswith("_EXPORT")]
            return names[0] if names else ""
        end = head.index("(") if "(" in head else len(head)
        start = end
        while start > 0 and (re.fullmatch(r"\w+|::|~", head[start - 1]) or "operator" in head[max(0, start - 3) : start]):
            if start < end and re.fullmatch(r"\w+", head[start - 1]) and re.fullmatch(r"\w+", head[start]):
                break
            start -= 1
        return "".join(head[start:end])

    def _line_of(self, position):
        low, high = 0, len(self._lines) - 1
        while low < high:
            middle = (low + high + 1) // 2
            if self._line_starts[middle] <= position:
                low = middle
            else:
                high = middle - 1
        return low

    def _add(self, category, *edits):
        """Mutants are identified by the change, not by the place: a function may move within its file, and lines may be
        laid out differently. If several are alike within a function, the later ones are numbered."""
        edits = tuple(sorted(Edit(*edit) for edit in edits))
        if edits in self._seen:
            return
        self._seen.add(edits)
        scope = self._scope_names[self._statement_of(edits[0].start)]
        change = " and ".join(self._change(edit) for edit in edits)
        self._alike[scope, change] += 1
        if self._alike[scope, change] > 1:
            change += f" ({self._alike[scope, change]})"
        identity = hashlib.sha256("\n".join([self.path, scope, change]).encode()).hexdigest()[:10]
        first = self._line_of(edits[0].start)
        last = self._line_of(edits[-1].end)
        start, end = self._line_starts[first], self._line_starts[last + 1] - 1
        mutant = Mutant(identity, self.path, scope, change, first + 1, category, edits, self.text[start:end], "")
        mutated = mutant.applied_to(self.text)
        after = mutated[start : end + len(mutated) - len(self.text)]
        self.mutants.append(Mutant(identity, self.path, scope, change, first + 1, category, edits, self.text[start:end], after))

    def _statement_of(self, position):
        return bisect.bisect_right(self._statement_starts, position) - 1

    def _change(self, edit):
        number = self._statement_of(edit.start)
        start = self._statement_starts[number]
        ends = [place for place in self._statement_starts[number + 1 :] if place >= edit.end]
        before = without_blanks(self.text[start : edit.start])
        after = without_blanks(self.text[edit.end : ends[0] if ends else len(self.text)])
        if len(before) > MOST_AROUND:
            before = "..." + before[-MOST_AROUND:]
        if len(after) > MOST_AROUND:
            after = after[:MOST_AROUND] + "..."
        what = without_blanks(self.text[edit.start : edit.end])
        return f"{before}[{what} -> {without_blanks(edit.text)}]{after}"

    def _choice(self, text, options):
        digest = hashlib.sha256(f"{self.path}|{text}".encode()).digest()
        return options[int.from_bytes(digest[:4], "big") % len(options)]

    # --- Tables, structs and lists of names ---

    def _tables(self):
        rows = list(ROW.finditer(self.text))
        fields = {field["field"]: field for struct in STRUCT.finditer(self.text)
                  for field in FIELD.finditer(self.text, *struct.span(1))}  # fmt: skip
        for row in rows:
            self._taken.append(row.span())
            self._tag(row.start("tag"), row.end("tag"))
            self._string("name", row.start("name") - 1, row.end("name") + 1)
            traits = row["traits"]
            if traits is None:
                continue
            names = [name.strip() for name in traits.split("|")]
            start, end = row.span("traits")
            if names != ["NoTraits"]:
                for name in names:
                    rest = [other for other in names if other != name] or ["NoTraits"]
                    self._add("trait", (start, end, " | ".join(rest)))
            added = ADDED_TO_LISTS if row["kind"] != "Scalar" else ADDED_TO_SCALARS
            if row["field"] in fields and fields[row["field"]]["type"] == "QString":
                added = ADDED_TO_TEXTS
            for name in added:
                if name == "SnapshotReadAlways" and "WrittenWhenSet" not in names:
                    continue # of which it is the exception
                if name not in names:
                    kept = [] if names == ["NoTraits"] else names
                    self._add("trait", (start, end, " | ".join([*kept, name])))
        table = TABLE.search(self.text)
        if not table:
            return
        self._taken.append(table.span())
        # Two members change places: their flags, the order of the check and of the snapshot.
        listed = {m.group(1): m.span(1) for m in re.finditer(r"row::(\w+)", self.text[: table.end()])
                  if m.start() > table.start()}  # fmt: skip
        for left, right in zip(rows, rows[1:]):
            self._add(
                "bit",
                (left.start("bit"), left.end("bit"), right["bit"]),
                (right.start("bit"), right.end("bit"), left["bit"]),
                (*listed[left["row"]], right["row"]),
                (*listed[right["row"]], left["row"]),
            )
        self._accessors(rows, fields, table.end())

    def _accessors(self, rows, fields, begin):
        """An accessor works on another member, if possible of the same type."""
        names = [row["row"] for row in rows]
        if len(names) < 2:
            return
        types, distinguishing = {}, {}
        for row in rows:
            field = fields.get(row["field"])
            types[row["row"]] = field and field["type"]
            # Two members of a type that agree in these give the same answers.
            distinguishing["defaultValue", row["row"]] = field and field["value"]
            distinguishing["isValid", row["row"]] = "IsValidAcceptsNull" in (row["traits"] or "")
        for use in re.compile(r"\brow::(\w+)\.(\w+)").finditer(self.text, begin):
            row, call = use.groups()
            at = names.index(row)
            others = names[at + 1 :] + names[:at]
            fitting = [name for name in others if types[name] == types[row]]
            if call in ("defaultValue", "isValid"):
                fitting = [name for name in fitting if distinguishing[call, name] != distinguishing[call, row]]
            elif not fitting and call in ("isSet", "reset", "bit"):
                fitting = others
            if fitting:
                self._add("accessor", (*use.span(1), fitting[0]))

    def _fields(self):
        for struct in STRUCT.finditer(self.text):
            for field in FIELD.finditer(self.text, *struct.span(1)):
                if field["value"] is None:
                    if field["type"] == "QString":
                        self._add("default", (field.end("field"), field.end("field"), ' = QStringLiteral("")'))
                    continue
                start, end = field.span("value")
                self._taken.append((start, end))
                value = field["value"]
                other = {"0": "1", "1": "0", "0.0": "1.0", "0.0F": "1.0F", "false": "true", "true": "false"}.get(value)
                if other:
                    self._add("default", (start, end, other))
                elif literal := re.search(r'\b(?:QStringLiteral|ownText)\(("[^"]*")\)', value):
                    self._string("default", start + literal.start(1), start + literal.end(1))
                else:
                    self._add("default", (start, end, f"{field['type']}(0)"))

    def _name_lists(self):
        for names in re.compile(r"const NameList \w+\(\{(.*?)\}\);", re.DOTALL).finditer(self.text):
            self._taken.append(names.span())
            strings = list(re.compile(r'"\w+"').finditer(self.text, *names.span(1)))
            for string in strings:
                self._string("name", *string.span())
            for left, right in zip(strings, strings[1:]):
                self._add("name", (*left.span(), right.group()), (*right.span(), left.group()))

    def _tag(self, start, end):
        text = self.text[start:end]
        digits = len(text) - 2
        flipped = int(text, 16) ^ (1 << self._choice(text, range(4 * digits)))
        self._add("tag", (start, end, f"0x{flipped:0{digits}X}"))

    def _string(self, category, start, end):
        """One letter of a text is changed; placeholders and escapes (%1, \\n) stay."""
        text = self.text[start + 1 : end - 1]
        plain = re.sub(r"%\d|\\x[0-9A-Fa-f]+|\\.", lambda match: "\0" * len(match.group()), text)
        places = [i for i, letter in enumerate(plain) if letter not in '\0"\\']
        if not places:
            self._add(category, (start, end, f'"{text}x"'))
            return
        place = self._choice(f"{start - self._line_starts[self._line_of(start)]}{text}", places)
        other = "x" if plain[place] != "x" else "y"
        self._add(category, (start + 1 + place, start + 2 + place, other))

    # --- Everywhere else ---

    def _drop_static_asserts(self):
        kept, skipping = [], False
        for token in self.tokens:
            if token.text == "static_assert":
                skipping = True
            if not skipping:
                kept.append(token)
            elif token.text == ";":
                skipping = False
        self.tokens = kept

    def _find_scopes(self):
        """For each token the kind of its innermost braces (type, function, block, list), and each bracket's partner."""
        scopes, stack, matching, open_brackets = [], ["namespace"], {}, []
        self._kinds = {}  # of the braces that open at a token
        for index, token in enumerate(self.tokens):
            if token.text in ("(", "[", "{"):
                open_brackets.append(index)
            if token.text in (")", "]", "}") and open_brackets:
                partner = open_brackets.pop()
                matching[index], matching[partner] = partner, index
            if token.text == "}":
                stack.pop()
            scopes.append(stack[-1])
            if token.text == "{":
                self._kinds[index] = self._kind_of_braces(index, matching)
                stack.append(self._kinds[index])
        return scopes, matching

    def _kind_of_braces(self, index, matching):
        before = index - 1
        while before >= 0 and self.tokens[before].text in ("const", "noexcept", "override", "final", "mutable"):
            before -= 1
        text = self.tokens[before].text if before >= 0 else ""
        if text in ("else", "do", "try"):
            return "block"
        if text == ")":
            opener = matching[before] - 1
            word = self.tokens[opener].text if opener >= 0 else ""
            return "block" if word in ("if", "for", "while", "switch", "catch") else "function"
        head = []
        while before >= 0 and self.tokens[before].text not in (";", "{", "}"):
            head.append(self.tokens[before].text)
            before -= 1
        if "namespace" in head:
            return "namespace"
        if {"class", "struct", "enum"} & set(head) and ")" not in head and "=" not in head:
            return "type"
        if text in (";", "{", "}", ":"):
            return "block"
        if head and head[-1] not in ("return", "throw") and "(" in head and ":" in head and text == "}":
            return "function"  # a constructor whose last member is initialized with braces
        return "list"

    def _is_binary(self, token):
        return (
            self.text[token.start - 1 : token.start].isspace() and self.text[token.end : token.end + 1].isspace()
        )

    def _at(self, index, token):
        text, here = token.text, (token.start, token.end)
        scope = self._scopes[index]
        after = self.tokens[index + 1].text if index + 1 < len(self.tokens) else ""
        before = self.tokens[index - 1].text if index else ""
        default = scope == "type" and before == "="
        if token.kind == "string":
            named = before == "(" and "GetStaticObjectName" in self._lines[self._line_of(token.start)]
            self._string("name" if named else "text", *here)
        elif token.kind == "char":
            self._add("text", (*here, "'x'" if text != "'x'" else "'y'"))
        elif token.kind == "number":
            self._number("default" if default else "boundary", text, here)
        elif text in ("true", "false"):
            self._add("default" if default else "logic", (*here, "false" if text == "true" else "true"))
        elif text in OTHER_COMPARISONS and self._is_binary(token):
            for other in OTHER_COMPARISONS[text]:
                self._add("comparison", (*here, other))
        elif text in ("&&", "||") and self._is_binary(token):
            self._add("logic", (*here, "||" if text == "&&" else "&&"))
        elif text == "!" and not after == "=":
            self._add("logic", (*here, ""))
        elif text in ("if", "while") and after == "(":
            self._condition(index + 1)
        elif text == "?":
            self._ternary(index)
        elif text in ("++", "--"):
            self._add("arithmetic", (*here, "--" if text == "++" else "++"))
        elif text in OTHER_SIGNS and (self._is_binary(token) or len(text) == 2):
            self._add("arithmetic", (*here, OTHER_SIGNS[text]))
        elif text in OTHER_CALLS and after == "(" and before in (".", "->", "::"):
            self._add("call", (*here, OTHER_CALLS[text]))

    def _number(self, category, text, here):
        if re.fullmatch(r"0[xX][0-9A-Fa-f]{8}", text):
            self._tag(*here)
        elif "." in text:
            self._add(category, (*here, "1.0" if float(text.rstrip("f")) == 0 else "0.0"))
        else:
            digits = re.match(r"0[xX][0-9A-Fa-f]+|\d+", text).group()
            octal = re.fullmatch(r"0[0-7]+", digits)
            value, suffix = int(digits, 8 if octal else 0), text[len(digits) :]
            for other in (value + 1, value - 1):
                if other >= 0:
                    self._add(category, (*here, f"0{other:o}{suffix}" if octal else f"{other}{suffix}"))

    def _condition(self, opener):
        closer = self._matching[opener]
        tokens = self.tokens[opener + 1 : closer]
        if not any(token.text == ";" for token in tokens) and "=" not in [token.text for token in tokens]:
            self._add("logic", (self.tokens[opener].end,) * 2 + ("!(",), (self.tokens[closer].start,) * 2 + (")",))

    def _ternary(self, index):
        first = index
        while first > 0:
            text = self.tokens[first - 1].text
            if text in (")", "]", "}"):
                first = self._matching[first - 1]
            elif text in ("(", "[", "{", ",", ";", "=", "return", "<<", "?", ":", "}"):
                break
            else:
                first -= 1
        start, end = self.tokens[first].start, self.tokens[index - 1].end
        self._add("logic", (start, start, "!("), (end, end, ")"))

    def _statements(self):
        """Statements are left out: a mark, a propagation, a check, an early return."""
        for index, token in enumerate(self.tokens):
            if self._scopes[index] not in ("function", "block") or token.kind != "word" or token.text in KEPT_STATEMENTS:
                continue
            before = self.tokens[index - 1].text
            guarded = before == "else" or (before == ")" and self._is_control(self._matching[index - 1] - 1))
            if before not in (";", "{", "}", ":") and not guarded:
                continue
            if before == ":" and self.tokens[index - 2].kind == "word" and self.tokens[index - 3].text == "?":
                continue
            end = self._end_of_statement(index)
            if end is None:
                continue
            words = [t.text for t in self.tokens[index:end]]
            if words[0] == "return" and not guarded and self._scopes[index] != "block":
                continue # it is what the function ends with
            if words[0] not in ("return", "break", "continue", "throw") and not self._is_action(index, words):
                continue
            self._add("removal", (token.start, self.tokens[end].start, ""))

    def _is_control(self, index):
        return self.tokens[index].text in ("if", "for", "while", "switch")

    def _end_of_statement(self, index):
        while index < len(self.tokens) and self.tokens[index].text != ";":
            if self.tokens[index].text == "}":
                return None
            index = self._matching[index] + 1 if self.tokens[index].text in ("(", "[", "{") else index + 1
        return index if index < len(self.tokens) else None

    def _is_action(self, index, words):
        """A call or an assignment; no declaration, which would only leave a name unknown."""
        if len(words) < 2:
            return False
        second = self.tokens[index + 1]
        if words[1] in ("(", ".", "->", "::", "++", "--", "+=", "-=", "=", "["):
            return words[1] != "::" or not re.match(r"[\w:<>]+(?: &| \*| )\w+ =", self.text[self.tokens[index].start :])
        return words[1] in ("<<", ">>") and self._is_binary(second)


def all_mutants(tree, paths):
    mutants = []
    for path in sorted(paths):
        mutants += Source(path, (tree / path).read_text(encoding="utf-8")).mutants
    return mutants


def in_order(mutants, seed):
    """All mutants, in the order in which to try them: any number from the front is spread over files and categories.

    The more mutants of one category a file has, the more of them come early, but only with the root of their number:
    eighty accessors do not crowd out one tag."""
    groups = defaultdict(list)
    for mutant in mutants:
        digest = hashlib.sha256(f"{seed}|{mutant.identity}".encode()).digest()
        groups[mutant.category, mutant.path].append((int.from_bytes(digest[:8], "big") / 2**64, mutant))
    keyed = []
    for group in groups.values():
        group.sort(key=lambda entry: entry[0])
        for place, (fraction, mutant) in enumerate(group):
            keyed.append(((place + fraction) / len(group) ** 0.5, mutant.identity, mutant))
    return [mutant for _, _, mutant in sorted(keyed, key=lambda entry: entry[:2])]
