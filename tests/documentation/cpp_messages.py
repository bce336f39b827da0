"""The messages that C++ sources put together, each as one text with <> for every part that differs."""

import re

STRING = re.compile(r'(?:u8?|L)?"((?:[^"\\]|\\.)*)"')
ESCAPES = {"n": "\n", "t": "\t", "r": "\r", "0": "\0", '"': '"', "\\": "\\", "'": "'"}
HOLE = "<>"


def without_comments(source):
    """The source with its comments as blanks; strings and characters stay."""
    pattern = re.compile(r'"(?:[^"\\]|\\.)*"|\'(?:[^\'\\]|\\.)+\'|//[^\n]*|/\*.*?\*/', re.DOTALL)
    return pattern.sub(lambda match: match[0] if match[0][0] in "\"'" else " ", source)


def without_characters(source):
    return re.sub(r"""("(?:[^"\\]|\\.)*")|'(?:[^'\\]|\\.)+'""", lambda match: match[1] or "0", source)


def unescaped(literal):
    return re.sub(r"\\(.)", lambda match: ESCAPES.get(match[1], match[1]), literal)


def closing(text, opening):
    """The place of the parenthesis that closes the one at `opening`."""
    depth = 0
    position = opening
    while position < len(text):
        if text[position] == '"':
            position = STRING.match(text, position).end()
            continue
        if text.startswith("'\"'", position):
            position += 3
            continue
        depth += {"(": 1, ")": -1}.get(text[position], 0)
        if depth == 0:
            return position
        position += 1
    raise ValueError("a parenthesis is not closed: " + text[opening : opening + 80])


def arguments(text):
    """The arguments in a list of them."""
    parts, depth, start, position = [], 0, 0, 0
    while position < len(text):
        if text[position] == '"':
            position = STRING.match(text, position).end()
            continue
        if text[position] in "([{":
            depth += 1
        elif text[position] in ")]}":
            depth -= 1
        elif text[position] == "," and depth == 0:
            parts.append(text[start:position])
            start = position + 1
        position += 1
    return parts + [text[start:]]


def choice(expression):
    """The texts after the ? of a conditional expression and after its colon; None for other expressions."""
    depth, question, position = 0, None, 0
    while position < len(expression):
        if expression[position] == '"':
            position = STRING.match(expression, position).end()
            continue
        if expression[position] in "([{":
            depth += 1
        elif expression[position] in ")]}":
            depth -= 1
        elif depth == 0 and expression[position] == "?" and question is None:
            question = position
        elif depth == 0 and question is not None and re.match(r"(?<!:):(?!:)", expression[position:]):
            if expression[position - 1] != ":":
                return expression[question + 1 : position], expression[position + 1 :]
        position += 1
    return None


def alternatives(expression, names=None):
    """All texts that an expression may come to as a whole."""
    both = choice(expression)
    if both:
        return alternatives(both[0], names) | alternatives(both[1], names)
    return {composed(expression, names)}


def composed(expression, names=None):
    """The value of an expression that makes a text. `names` maps names of texts to these."""
    result = ""
    position = 0
    expression = expression.strip()
    while position < len(expression):
        rest = expression[position:]
        literal = STRING.match(expression, position)
        if literal:
            result += re.sub(r"%\d+", HOLE, unescaped(literal[1]))
            position = literal.end()
            continue
        character = re.match(r"QLatin1Char\('(\\?.)'\)", rest)
        if character:
            result += unescaped(character[1])
            position += character.end()
            continue
        if rest[0] == "(":
            end = closing(expression, position)
            inside = expression[position + 1 : end]
            result += HOLE if choice(inside) else composed(inside, names)
            position = end + 1
            continue
        call = re.match(r"(\.?[A-Za-z_][\w:.]*(?:->\w+)*)\s*(\(|\[)?", rest)
        if not call:
            position += 1  # "+", a blank
            continue
        name = call[1]
        if call[2] == "(":
            opening = position + call.end() - 1
            end = closing(expression, opening)
            inside = expression[opening + 1 : end]
            position = end + 1
            if name.split("::")[-1] in ("QStringLiteral", "QLatin1String", "QString", "ownText"):
                result += composed(inside, names)
            elif name == "withName":
                result += HOLE + composed(arguments(inside)[1], names)
            elif not name.startswith(".") and not name.endswith((".arg", ".trimmed")):
                result += HOLE
            continue
        if call[2] == "[":
            position += expression[position:].index("]") + 1
        else:
            position += call.end()
        if names and name in names:
            result += names[name]
        elif not name.startswith("."):
            result += HOLE
    return re.sub(f"(?:{HOLE})+", HOLE, result)


def calls(source, pattern):
    """For each call whose name and opening parenthesis match: the match, and the content of the parentheses."""
    for match in re.finditer(pattern, source):
        yield match, source[match.end() : closing(source, match.end() - 1)]
