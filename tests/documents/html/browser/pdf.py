"""The texts on the sheets of a PDF document as Chromium prints it."""

import re
import zlib

OBJECT = re.compile(rb"(\d+) 0 obj\n?(.*?)endobj", re.DOTALL)
TOKEN = re.compile(rb"<([0-9A-Fa-f]*)>|/([^\s/<>\[\]()]+)|(-?\d*\.?\d+)|([A-Za-z*]+)|<<.*?>>")

SAME_LINE = 2.5  # points: texts of different sizes are on the same line


def multiplied(first, second):
    """The transformation that applies the first one, then the second one."""
    a, b, c, d, e, f = first
    g, h, i, j, k, m = second
    return (a * g + b * i, a * h + b * j, c * g + d * i, c * h + d * j, e * g + f * i + k, e * h + f * j + m)


class Pdf:
    def __init__(self, content):
        self.objects = {int(match[1]): match[2] for match in OBJECT.finditer(content)}
        # In reading order, which is that of the objects.
        self.sheets = [body for _, body in sorted(self.objects.items()) if re.search(rb"/Type\s*/Page\b", body)]

    def stream(self, number):
        body = self.objects[number]
        start = re.search(rb"stream\r?\n", body).end()
        data = body[start:start + int(re.search(rb"/Length (\d+)", body)[1])]
        return zlib.decompress(data) if b"/FlateDecode" in body else data

    def characters(self, sheet):
        """By name of a font: the text of each glyph."""
        fonts = {}
        for name, number in re.findall(rb"/(F\d+) (\d+) 0 R", sheet):
            source = re.search(rb"/ToUnicode (\d+) 0 R", self.objects[int(number)])
            fonts[name] = self.glyphs(self.stream(int(source[1]))) if source else {}
        return fonts

    @staticmethod
    def glyphs(source):
        table = {}
        for block in re.findall(rb"beginbfchar(.*?)endbfchar", source, re.DOTALL):
            for glyph, text in re.findall(rb"<([0-9A-F]+)>\s*<([0-9A-F]+)>", block, re.IGNORECASE):
                table[int(glyph, 16)] = bytes.fromhex(text.decode()).decode("utf-16-be")
        for block in re.findall(rb"beginbfrange(.*?)endbfrange", source, re.DOTALL):
            for first, last, text in re.findall(rb"<([0-9A-F]+)>\s*<([0-9A-F]+)>\s*<([0-9A-F]+)>", block, re.IGNORECASE):
                start = int(text, 16)
                for offset in range(int(last, 16) - int(first, 16) + 1):
                    table[int(first, 16) + offset] = chr(start + offset)
        return table

    def lines(self, sheet):
        """The lines of a sheet as (distance from its top in points, text), from the top down."""
        height = float(re.search(rb"/MediaBox \[\S+ \S+ \S+ (\S+)\]", sheet)[1])
        lines = []
        for top, left, text in sorted(self.texts(sheet, height)):
            if not lines or top - lines[-1][0] > SAME_LINE:
                lines.append((top, []))
            lines[-1][1].append((left, text))
        return [(top, "".join(text for _, text in sorted(parts))) for top, parts in lines]

    def texts(self, sheet, height):
        fonts = self.characters(sheet)
        matrix, saved, place, font, numbers, name, text = (1, 0, 0, 1, 0, 0), [], None, {}, [], b"", ""
        for token in TOKEN.finditer(self.stream(int(re.search(rb"/Contents (\d+) 0 R", sheet)[1]))):
            glyphs, called, number, operator = token.groups()
            if number is not None:
                numbers.append(float(number))
                continue
            if glyphs is not None:
                codes = [int(glyphs[i:i + 4], 16) for i in range(0, len(glyphs), 4)]
                text = "".join(font.get(code, "") for code in codes)
                continue
            if called is not None:
                name = called
                continue
            if operator == b"q":
                saved.append(matrix)
            elif operator == b"Q":
                matrix = saved.pop()
            elif operator == b"cm":
                matrix = multiplied(tuple(numbers[-6:]), matrix)
            elif operator == b"Tf":
                font = fonts.get(name, {})
            elif operator == b"Tm":
                place = tuple(numbers[-6:])
            elif operator == b"Td":
                place = multiplied((1, 0, 0, 1, numbers[-2], numbers[-1]), place)
            elif operator == b"Tj":
                *_, x, y = multiplied(place, matrix)
                yield height - y, x, text
            numbers = []
