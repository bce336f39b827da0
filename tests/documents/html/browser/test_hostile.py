"""Documents that mean harm, and documents that are merely large."""

import json
import unittest

from browser import BrowserTest

# The text of an element, with signs replaced with their characters.
TEXTS = """
const read = node => node.nodeType === Node.TEXT_NODE ? node.data
    : node.matches('.sign') ? String.fromCodePoint(parseInt(node.title.slice(2), 16))
    : Array.from(node.childNodes).map(read).join('');
return Array.from(document.querySelectorAll('[data-member] > bdi, [data-member] > dd > bdi')).map(read);
"""

# The nodes that are shown after a search, and those that have to be, looked for without an index.
BY_HAND = """
const words = arguments[0].toLowerCase().split(/\\s+/).filter(word => word !== '');
const textOf = (element, selector) => Array.from(element.querySelectorAll(selector)).map(part => part.textContent)
    .join('\\n').toLowerCase();
const parts = 'bdi, .number, .prefixed, .unit, .word, .kind';
const nodes = Array.from(document.querySelectorAll('.node'));
const texts = new Map(Array.from(document.querySelectorAll('.card')).map(card => [card,
    textOf(card.firstElementChild, parts) + '\\n'
        + textOf(card.querySelector('.facts'), parts)]));
return [nodes.filter(node => !node.closest('[hidden]')), nodes.filter(node => {
    const text = texts.get(node.closest('.card')) + '\\n' + textOf(node, parts);
    return words.every(word => text.includes(word));
})].map(found => found.map(node => node.id));
"""


class Hostile(BrowserTest):
    def test_nothing_in_a_text_runs_and_every_text_is_shown_as_it_is(self):
        page = self.browser.open(self.document("hostile.json"))
        self.browser.open_all_details()
        self.browser.script("const search = document.getElementById('search'); search.value = '<script>';"
                            "search.dispatchEvent(new Event('input'));"
                            "search.value = ''; search.dispatchEvent(new Event('input'))")
        self.assertEqual(self.browser.script("return typeof window.ran"), "undefined")
        self.assert_quiet(page)
        texts = json.loads(self.document("texts.json").read_text(encoding="utf-8"))
        self.assertGreater(len(texts), 60)
        shown = self.browser.script(TEXTS)
        self.assertEqual(sorted(shown), sorted(texts))

    def test_no_element_of_the_page_is_broken(self):
        self.browser.open(self.document("hostile.json"))
        self.assertEqual(self.browser.script("""return ['h1', 'header', 'main', 'footer', 'style', 'script', 'img', 'title']
            .map(tag => document.querySelectorAll(tag).length)"""), [1, 1, 1, 1, 1, 1, 0, 1])
        self.assertEqual(self.browser.script("return document.querySelectorAll('.node').length"), 6)
        self.assertEqual(self.browser.script("return document.body.lastElementChild.tagName"), "SCRIPT")
        controls = self.browser.controls()
        self.assertEqual([control for control in controls if not control["name"].strip()], [])
        self.browser.screenshot("hostile.png", height=4000)

    def test_long_texts_wrap(self):
        for width in (320, 1200):
            self.browser.open(self.document("hostile.json"), width=width)
            self.browser.open_all_details()
            self.assertLessEqual(self.browser.script("return document.documentElement.scrollWidth"), width)

    def test_a_script_that_got_into_the_page_would_not_run(self):
        page = self.browser.made(self.document("hostile.json"))
        html = page.read_text(encoding="utf-8")
        page.write_text(html.replace("<main>", "<main><script>window.ran = true</script>"
                                     "<img src='x' onerror='window.ran = true'/>", 1), encoding="utf-8")
        self.browser.driver.get(page.as_uri())
        self.assertEqual(self.browser.script("return document.querySelectorAll('script').length"), 2)
        self.assertEqual(self.browser.script("return typeof window.ran"), "undefined")
        self.assertTrue(self.browser.script("return document.getElementById('bar').checkVisibility()"))
        complaints = [entry["message"] for entry in self.browser.driver.get_log("browser")]
        self.assertTrue(any("Content Security Policy" in complaint for complaint in complaints), complaints)


class Large(BrowserTest):
    def test_a_document_of_two_thousand_nodes_is_searched(self):
        page = self.browser.open(self.document("large.tpb"))
        self.assert_quiet(page)
        self.assertEqual(self.browser.script("return document.querySelectorAll('.node').length"), 2000)
        self.browser.script("document.getElementById('search').focus()")
        self.browser.type("needle")
        self.assertEqual(self.browser.script("return document.getElementById('found').value"), "1 node in 1 component")
        self.assertEqual(self.browser.script("""return Array.from(document.querySelectorAll('.node'))
            .filter(node => node.checkVisibility()).length"""), 1)
        self.browser.press("Escape")
        self.browser.type("node1234")
        self.assertEqual(self.browser.script("return document.getElementById('found').value"), "1 node in 1 component")
        self.browser.press("Enter")
        self.assertEqual(self.browser.script("return document.querySelector('[aria-current].node h4 bdi').textContent"),
                         "node1234")

    def test_a_document_of_six_hundred_components_is_searched(self):
        page = self.browser.open(self.document("wide.tpb"))
        self.assert_quiet(page)
        self.browser.script("document.getElementById('search').focus()")
        self.browser.type("component417")
        self.assertEqual(self.browser.script("return document.getElementById('found').value"), "1 node in 1 component")
        visible = """return Array.from(document.querySelectorAll('.card, .node')).filter(each => each.checkVisibility())
            .map(each => each.id)"""
        path = "Component[type=Filter,name=component417]"
        self.assertEqual(self.browser.script(visible), [path, path + "/Node[id=node0]"])
        # The others take no room.
        self.assertLess(self.browser.script("return document.documentElement.scrollHeight"), 2000)
        self.browser.press("ArrowDown")
        self.assertEqual(self.browser.script("return document.activeElement.closest('.node').id"), path + "/Node[id=node0]")
        self.browser.press("Escape")
        self.browser.press("Escape")
        self.assertEqual(len(self.browser.script(visible)), 601)  # one component is open

    def test_every_node_of_a_large_document_has_its_link_and_its_path(self):
        self.browser.open(self.document("large.tpb"))
        self.browser.driver.execute_async_script("""const done = arguments[0];
            const wait = () => document.querySelectorAll('.node .copy').length < 2000 ? setTimeout(wait, 20) : done();
            wait();""")
        self.assertEqual(self.browser.script("return document.querySelectorAll('.node .to').length"), 2000)

    def test_a_link_to_a_distant_node_leads_there(self):
        page = self.browser.made(self.document("many.tpb"))
        self.browser.driver.get("about:blank")
        self.browser.driver.get(page.as_uri() + "#Component[type=Filter,name=component70]/Node[id=node7050]")
        for _ in range(10):  # it scrolls again when it knows more sizes
            self.browser.settle()
        self.assertEqual(self.browser.script("return document.querySelector(':target h4 bdi').textContent"), "node7050")
        self.assertTrue(self.browser.script("""const box = document.querySelector(':target').getBoundingClientRect();
            return box.top >= 0 ? box.bottom <= innerHeight : false"""))
        # Its component is the current one of the outline, and in sight there.
        self.assertEqual(self.browser.script("""const entry = document.querySelector('#outline [aria-current] a');
            const box = entry.getBoundingClientRect();
            return [entry.textContent, box.top >= 0 ? box.bottom <= innerHeight : false]"""), ["component70", True])

    def test_each_search_shows_exactly_the_nodes_that_have_all_words(self):
        self.browser.open(self.document("many.tpb"))
        for text in ("node1", "zzz", "x2 1", "node1234", "true node9", "component7", "component70 ghz", "node1", ""):
            with self.subTest(search=text):
                self.browser.script("const search = document.getElementById('search'); search.value = arguments[0];"
                                    "search.dispatchEvent(new Event('input'))", text)
                shown, expected = self.browser.script(BY_HAND, text)
                self.assertEqual(shown, expected)

    def test_paper_shows_what_the_search_has_hidden(self):
        self.browser.open(self.document("large.tpb"))
        self.browser.script("const search = document.getElementById('search'); search.value = 'node7';"
                            "search.dispatchEvent(new Event('input'))")
        hidden = "return Array.from(document.querySelectorAll('.node')).filter(node => !node.checkVisibility()).length"
        self.assertGreater(self.browser.script(hidden), 1000)
        self.browser.emulate(media="print")
        self.browser.settle()
        self.assertEqual(self.browser.script(hidden), 0)


if __name__ == "__main__":
    unittest.main()
