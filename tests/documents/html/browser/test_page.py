"""What the page does: search, light and dark, open and close, print, lead to problems."""

import base64
import re
import unittest

from browser import DARK, EXAMPLES, LIGHT, BrowserTest

RECEIVER = EXAMPLES / "receiver.xml"

# With errors in known places: two problems in the second component.
PROBLEMS = """<TunerProperties Version="1.1" type="SCP" baseresource="B"><Extra/>
  <Component type="a" name="first" optional="true"><Node id="whole">%s</Node></Component>
  <Component type="b" name="second" optional="true"><Node id="broken"><ValueItem/></Node></Component>
</TunerProperties>""" % ('<ValueItem><ValueInt id="v" value="1"/></ValueItem>' * 30)

SHOWN_NODES = """return Array.from(document.querySelectorAll('.node')).filter(node => node.checkVisibility())
                 .map(node => node.querySelector('h4 bdi').textContent)"""
OPEN_CARDS = "return Array.from(document.querySelectorAll('.card[open]')).map(card => card.querySelector('h3').textContent)"


class Page(BrowserTest):
    def search(self, text):
        self.browser.script("const search = document.getElementById('search'); search.focus(); search.select()")
        self.browser.type(text)

    def found(self):
        return self.browser.script("return document.getElementById('found').value")

    def control(self, name):
        return next(control for control in self.browser.controls() if control["name"] == name)

    def test_search_shows_what_fits_and_opens_it(self):
        self.browser.open(RECEIVER)
        self.assertEqual(self.browser.script(OPEN_CARDS), ["Antenna inputs"])
        self.search("squelch HYST")
        self.assertEqual(self.browser.script(SHOWN_NODES), ["hysteresis"])
        self.assertEqual(self.browser.script(OPEN_CARDS), ["Squelch"])
        self.assertEqual(self.found(), "1 node in 1 component")
        self.assertEqual(self.browser.script("return document.getElementById('found').getAttribute('aria-live')"),
                         "polite")

    def test_search_finds_components_kinds_values_and_texts(self):
        self.browser.open(RECEIVER)
        for text, shown, count in [
                ("RingBuffer", ["ringBuffer"], "1 node in 1 component"),
                ("98500000", ["frequency"], "1 node in 1 component"),
                ("iq-store.local", ["destination"], "1 node in 1 component"),
                ("I/Q stream", ["sampleRate", "sampleFormat", "ringBuffer", "timeStampOffset", "destination"],
                 "5 nodes in 1 component"),
                ("日本語", ["announcementLanguage"], "1 node in 1 component"),
                ("ValueNumericFloat hyst", ["hysteresis"], "1 node in 1 component"),
                ("<b>", [], "Nothing found"),
        ]:
            with self.subTest(search=text):
                self.search(text)
                self.assertEqual(self.browser.script(SHOWN_NODES), shown)
                self.assertEqual(self.found(), count)

    def test_search_opens_the_options_in_which_it_finds_something(self):
        self.browser.open(RECEIVER)
        self.search("6.25 kHz")
        self.assertEqual(self.browser.script(SHOWN_NODES), ["channelRaster"])
        opened = "return Array.from(document.querySelectorAll('.drop[open]')).length"
        self.assertEqual(self.browser.script(opened), 1)
        self.browser.press("Escape")
        self.assertEqual(self.browser.script(opened), 0)

    def test_escape_ends_the_search_and_puts_back_what_it_opened(self):
        self.browser.open(RECEIVER)
        before = self.browser.script(SHOWN_NODES)
        self.search("hysteresis")
        self.assertNotEqual(self.browser.script(SHOWN_NODES), before)
        self.browser.press("Escape")
        self.assertEqual(self.browser.script("return document.getElementById('search').value"), "")
        self.assertEqual(self.browser.script(SHOWN_NODES), before)
        self.assertEqual(self.browser.script(OPEN_CARDS), ["Antenna inputs"])
        self.assertEqual(self.found(), "")

    def test_enter_goes_from_match_to_match(self):
        self.browser.open(RECEIVER)
        self.search("GHz")
        places = []
        for _ in range(3):
            self.browser.press("Enter")
            current = self.browser.script("""return Array.from(document.querySelectorAll('.node[aria-current]')).map(node => {
                const box = node.getBoundingClientRect();
                return [node.querySelector('h4 bdi').textContent, box.top >= 0 ? box.bottom <= innerHeight : false];
            })""")
            places.append((current, self.found()))
        self.assertEqual(places, [([["connector", True]], "Node 1 of 2"), ([["band", True]], "Node 2 of 2"),
                                  ([["connector", True]], "Node 1 of 2")])

    def test_found_texts_are_highlighted(self):
        self.browser.open(RECEIVER)
        marked = "return Array.from(CSS.highlights.get('found') || []).map(range => range.toString())"
        self.search("hysteresis")
        # The heading of the node, and the identifier of its value.
        self.assertEqual(self.browser.script(marked), ["hysteresis", "hysteresis"])
        self.browser.press("Escape")
        self.assertEqual(self.browser.script(marked), [])

    def test_open_all_and_close_all_work_by_enter_and_space(self):
        self.browser.open(RECEIVER)
        for key in ("Enter", "Space"):
            self.browser.focus(self.control("Open all"))
            self.browser.press(key)
            self.assertEqual(len(self.browser.script(OPEN_CARDS)), 12)
            self.browser.focus(self.control("Close all"))
            self.browser.press(key)
            self.assertEqual(self.browser.script(OPEN_CARDS), [])

    def test_the_switch_changes_between_light_and_dark(self):
        for system, order in ((False, [LIGHT, DARK, LIGHT]), (True, [DARK, LIGHT, DARK])):
            self.browser.open(RECEIVER, dark=system)
            switch = self.control("Dark")
            self.browser.focus(switch)
            seen = [self.browser.background()]
            states = [self.control("Dark")["properties"]["checked"]]
            for key in ("Enter", "Space"):
                self.browser.press(key)
                seen.append(self.browser.background())
                states.append(self.control("Dark")["properties"]["checked"])
            self.assertEqual(seen, order)
            self.assertEqual(states, ["true" if color == DARK else "false" for color in order])

    def test_the_switch_follows_the_system_until_it_is_used(self):
        self.browser.open(RECEIVER)
        self.browser.emulate(dark=True)
        self.browser.settle()
        self.assertEqual(self.control("Dark")["properties"]["checked"], "true")

    def test_paper_shows_everything_and_no_controls(self):
        self.browser.open(RECEIVER, dark=True)
        self.search("hysteresis")
        self.browser.emulate(media="print", dark=True)
        self.browser.settle()
        hidden = self.browser.script("""return Array.from(document.querySelectorAll(
            '.card, .node, .value, .drop, .drop td, .facts dd')).filter(each => !each.checkVisibility()).length""")
        self.assertEqual(hidden, 0)
        bar = "return document.getElementById('bar').checkVisibility()"
        self.assertFalse(self.browser.script(bar))
        self.assertEqual(self.browser.background(),
                         "rgb(255, 255, 255)")
        self.assertEqual(self.browser.script("return getComputedStyle(document.body).color"), "rgb(24, 33, 43)")
        self.browser.emulate(dark=True)
        self.browser.settle()
        self.assertTrue(self.browser.script(bar))
        self.assertEqual(self.browser.script(SHOWN_NODES), ["hysteresis"])

    def printed(self):
        """How many sheets the page takes."""
        document = base64.b64decode(self.browser.devtools("Page.printToPDF", printBackground=True)["data"])
        return len(re.findall(rb"/Type\s*/Page\b", document))

    def test_closed_parts_are_printed(self):
        self.browser.open(RECEIVER)
        sheets = self.printed()
        self.assertEqual(self.browser.script(OPEN_CARDS), ["Antenna inputs"])
        self.browser.open_all_details()
        self.assertEqual(self.printed(), sheets)
        self.assertGreater(sheets, 3)

    def test_nothing_moves_by_itself_for_those_who_do_not_want_it(self):
        self.browser.open(RECEIVER)
        motion = """return [getComputedStyle(document.documentElement).scrollBehavior,
                            getComputedStyle(document.querySelector('.card > summary'), '::before').transitionDuration]"""
        self.assertEqual(self.browser.script(motion), ["auto", "0s"])
        self.browser.devtools("Emulation.setEmulatedMedia", media="", features=[])
        self.assertEqual(self.browser.script(motion), ["smooth", "0.12s"])

    def test_without_scripts_the_page_is_whole(self):
        self.browser.devtools("Emulation.setScriptExecutionDisabled", value=True)
        self.addCleanup(self.browser.devtools, "Emulation.setScriptExecutionDisabled", value=False)
        self.browser.open(RECEIVER)
        self.assertFalse(self.browser.script("return document.getElementById('bar').checkVisibility()"))
        sheets = self.printed()
        self.browser.open_all_details()
        self.assertEqual(self.printed(), sheets)
        self.browser.open(RECEIVER)
        closed = next(node for node in self.browser.controls() if node["name"].startswith("Squelch"))
        self.browser.focus(closed)
        self.browser.press("Enter")
        self.assertIn("hysteresis", self.browser.script(SHOWN_NODES))

    def test_a_problem_is_reached_from_the_list_of_all(self):
        document = self.browser.folder / "problems.xml"
        document.write_text(PROBLEMS, encoding="utf-8")
        page = self.browser.open(document)
        self.assert_quiet(page)
        self.browser.click("close")
        links = [control for control in self.browser.controls() if control["role"] == "link"]
        self.assertEqual([link["name"] for link in links],
                         ["ValueItem:Check failed. The mandatory choice ChoiceValueItem is not initialized"])
        self.assertIn(links[0]["element"], self.browser.tab_through())
        self.browser.focus(links[0])
        self.browser.press("Enter")
        self.browser.settle()
        self.assertEqual(self.browser.script(OPEN_CARDS), ["second"])
        place = self.browser.script("""const box = document.querySelector(':target').getBoundingClientRect();
            return [document.querySelector(':target').closest('.node').querySelector('h4 bdi').textContent,
                    box.top >= 0 ? box.bottom <= innerHeight : false]""")
        self.assertEqual(place, ["broken", True])

    def test_a_problem_is_reached_though_the_search_has_hidden_it(self):
        document = self.browser.folder / "problems.xml"
        document.write_text(PROBLEMS, encoding="utf-8")
        self.browser.open(document)
        self.search("whole")
        self.browser.focus(next(control for control in self.browser.controls() if control["role"] == "link"))
        self.browser.press("Enter")
        self.browser.settle()
        self.assertTrue(self.browser.script("return document.querySelector(':target').checkVisibility()"))
        self.browser.screenshot("problems.png")

    def bare(self):
        """A page without components, and so without search; one of its details is closed."""
        document = self.browser.folder / "bare.json"
        document.write_text('{"TunerProperties":{"type":"SCP","baseresource":"b"}}', encoding="utf-8")
        page = self.browser.open(document)
        self.assertEqual(self.browser.script("""return ['bar', 'theme', 'search', 'found', 'open', 'close']
            .map(id => document.getElementById(id) !== null)"""), [True, True, False, False, False, False])
        return page

    def test_without_components_the_switch_works(self):
        page = self.bare()
        self.assert_quiet(page)
        self.assertEqual(self.browser.background(), LIGHT)
        self.browser.focus(self.control("Dark"))
        self.browser.press("Enter")
        self.assertEqual(self.browser.background(), DARK)
        self.assertEqual(self.control("Dark")["properties"]["checked"], "true")
        self.browser.press("Space")
        self.assertEqual(self.browser.background(), LIGHT)

    def fold(self):
        """Puts all that the page says into something that is closed."""
        self.browser.script("""const fold = document.createElement('details');
            document.querySelector('main').replaceWith(fold);
            fold.innerHTML = '<summary>All</summary><p id="inside">Inside</p>';""")

    def is_open(self):
        return self.browser.script("return document.querySelector('details').open")

    def test_without_components_paper_shows_everything_and_links_open(self):
        page = self.bare()
        self.fold()
        self.browser.emulate(media="print")
        self.browser.settle()
        self.assertTrue(self.is_open())
        self.browser.emulate()
        self.browser.settle()
        self.assertFalse(self.is_open())
        self.browser.script("location.hash = 'inside'")
        self.browser.settle()
        self.assertTrue(self.is_open())
        self.assert_quiet(page)

    def test_a_link_that_is_not_a_text_leads_nowhere(self):
        page = self.bare()
        self.fold()
        for link in ("#%ZZ", "#%C3", "#"):
            self.browser.script("location.hash = arguments[0]", link)
            self.browser.settle()
            self.assertFalse(self.is_open())
        self.browser.script("location.hash = '#%69nside'")
        self.browser.settle()
        self.assertTrue(self.is_open())
        self.assert_quiet(page)


if __name__ == "__main__":
    unittest.main()
