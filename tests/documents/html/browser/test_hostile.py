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


if __name__ == "__main__":
    unittest.main()
