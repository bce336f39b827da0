"""Contrast, as the Web Content Accessibility Guidelines measure it (level AA)."""

import unittest

from browser import EXAMPLES, LIGHT, BrowserTest, changed

TEXT = 4.5
PICTURE = 3.0

# The color of each text, over the nearest opaque background.
TEXTS = """
const ground = element => {
    for (let each = element; each; each = each.parentElement) {
        const color = getComputedStyle(each).backgroundColor;
        if (!/, 0\\)$|^transparent$/.test(color))
            return color;
    }
    return 'rgb(255, 255, 255)';
};
document.querySelectorAll('details').forEach(each => { each.open = true; });
const pairs = new Map();
const walker = document.createTreeWalker(document.body, NodeFilter.SHOW_TEXT);
while (walker.nextNode()) {
    const element = walker.currentNode.parentElement;
    if (walker.currentNode.data.trim() === '' || element.closest('script, .unseen, [hidden]'))
        continue;
    const style = getComputedStyle(element);
    const color = element instanceof SVGElement ? style.fill : style.color;
    pairs.set(color + ' on ' + ground(element), element.className.baseVal || element.className || element.tagName);
}
return Array.from(pairs);
"""

# Pictures and edges that carry a meaning, and what they are on.
PICTURES = """
const color = (selector, property) => {
    const element = document.querySelector(selector);
    return element ? getComputedStyle(element)[property] : null;
};
const surface = color('.card', 'backgroundColor');
const check = getComputedStyle(document.querySelector('.yes'), '::before').color;
const chosen = getComputedStyle(document.querySelector('.options [aria-current]'), '::before').color;
return [
    ['edge of the search field', color('#search', 'borderTopColor'), color('body', 'backgroundColor')],
    ['edge of a button', color('#open', 'borderTopColor'), color('body', 'backgroundColor')],
    ['bar', color('.plot rect', 'fill'), surface],
    ['scale', color('.scale rect + rect', 'fill'), surface],
    ['mark of a scale', color('.scale .mark', 'fill'), surface],
    ['tick of a scale', color('.scale g rect', 'fill'), surface],
    ['sign of what is true', check, surface],
    ['sign of the chosen option', chosen, surface],
];
"""

# A problem, and two warnings.
WARNINGS = """<TunerProperties Version="1.1" type="SCP"><Component type="a" name="first" optional="true"><Node id="n">
  <ValueItem><ValueNumericInt id="v" value="9" min="0" max="5" step="1"/></ValueItem>
  <ValueItem><ValueNumericInt id="w" value="-9" min="0" max="5" step="1"/></ValueItem>
</Node></Component></TunerProperties>"""


def channels(color):
    numbers = [float(part) for part in color[color.index("(") + 1:color.index(")")].replace(",", " ").split()]
    assert len(numbers) == 3, color
    return numbers


def luminance(color):
    linear = []
    for channel in channels(color):
        share = channel / 255
        linear.append(share / 12.92 if share <= 0.04045 else ((share + 0.055) / 1.055) ** 2.4)
    return 0.2126 * linear[0] + 0.7152 * linear[1] + 0.0722 * linear[2]


def contrast(first, second):
    lighter, darker = sorted((luminance(first), luminance(second)), reverse=True)
    return (lighter + 0.05) / (darker + 0.05)


class Colors(BrowserTest):
    def test_the_measure_is_right(self):
        self.assertAlmostEqual(contrast("rgb(0, 0, 0)", "rgb(255, 255, 255)"), 21.0)
        self.assertAlmostEqual(contrast("rgb(119, 119, 119)", "rgb(255, 255, 255)"), 4.478, places=3)

    def test_texts_have_enough_contrast_light_and_dark(self):
        warnings = self.browser.folder / "warnings.xml"
        warnings.write_text(WARNINGS, encoding="utf-8")
        for document in (EXAMPLES / "receiver.xml", self.document("hostile.json"), warnings):
            for dark in (False, True):
                self.browser.open(document, dark=dark)
                pairs = self.browser.script(TEXTS)
                self.assertGreater(len(pairs), 5)
                for pair, where in pairs:
                    with self.subTest(pair=pair, where=where, dark=dark):
                        self.assertGreaterEqual(contrast(*pair.split(" on ")), TEXT)

    def test_texts_of_a_comparison_have_enough_contrast_light_and_dark(self):
        other = changed(EXAMPLES / "receiver.xml", self.browser.folder)
        for first, second in ((EXAMPLES / "receiver.xml", other), (other, self.document("hostile.json"))):
            page = self.browser.compared(first, second)
            for dark in (False, True):
                self.browser.show(page, dark=dark)
                pairs = self.browser.script(TEXTS)
                self.assertGreater(len(pairs), 5)
                for pair, where in pairs:
                    with self.subTest(pair=pair, where=where, dark=dark):
                        self.assertGreaterEqual(contrast(*pair.split(" on ")), TEXT)

    def test_edges_of_a_comparison_have_enough_contrast_light_and_dark(self):
        other = changed(EXAMPLES / "receiver.xml", self.browser.folder)
        page = self.browser.compared(EXAMPLES / "receiver.xml", other)
        for dark in (False, True):
            self.browser.show(page, dark=dark)
            edges = self.browser.script("""
                const edge = name => getComputedStyle(document.querySelector('.changes .changed > .' + name)).borderLeftColor;
                return [edge('before'), edge('after'), getComputedStyle(document.querySelector('.panel')).backgroundColor];
            """)
            for edge in edges[:2]:
                self.assertGreaterEqual(contrast(edge, edges[2]), PICTURE)

    def test_an_older_browser_shows_the_light_colors(self):
        page = self.browser.made(EXAMPLES / "receiver.xml")
        html = page.read_text(encoding="utf-8")
        # A browser that does not know the function; the policy would refuse the changed style.
        html = html.replace("light-dark(", "unknown-function(").replace("Content-Security-Policy", "X-Nothing")
        page.write_text(html, encoding="utf-8")
        self.browser.emulate(dark=True)
        self.browser.driver.get(page.as_uri())
        self.assertEqual(self.browser.background(), LIGHT)
        self.assertEqual(self.browser.script("return getComputedStyle(document.body).color"), "rgb(24, 33, 43)")
        pairs = self.browser.script(TEXTS)
        self.assertGreater(len(pairs), 5)
        for pair, where in pairs:
            with self.subTest(pair=pair, where=where):
                self.assertGreaterEqual(contrast(*pair.split(" on ")), TEXT)
        # It cannot be dark, so there is no switch for that.
        self.assertFalse(self.browser.script("return document.getElementById('theme').checkVisibility()"))

    def test_pictures_and_edges_have_enough_contrast_light_and_dark(self):
        for dark in (False, True):
            self.browser.open(EXAMPLES / "receiver.xml", dark=dark)
            for what, color, ground in self.browser.script(PICTURES):
                with self.subTest(what=what, dark=dark):
                    self.assertGreaterEqual(contrast(color, ground), PICTURE)


if __name__ == "__main__":
    unittest.main()
