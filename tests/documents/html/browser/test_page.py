"""What the page does: search, light and dark, open and close, print, lead to problems."""

import base64
import re
import subprocess
import unittest

from browser import DARK, EXAMPLES, LIGHT, TOOL, BrowserTest
from pdf import Pdf

RECEIVER = EXAMPLES / "receiver.xml"

# With errors in known places: two problems in the second component.
PROBLEMS = """<TunerProperties Version="1.1" type="SCP" baseresource="B"><Extra/>
  <Component type="a" name="first" optional="true"><Node id="whole">%s</Node></Component>
  <Component type="b" name="second" optional="true"><Node id="broken"><ValueItem/></Node></Component>
</TunerProperties>""" % "".join(f'<ValueItem><ValueInt id="v{i}" value="1"/></ValueItem>' for i in range(30))

# One warning, in a component that is closed.
WARNINGS = """<TunerProperties Version="1.1" type="SCP" baseresource="B">
  <Component type="a" name="first" optional="true">%s</Component>
  <Component type="b" name="second" optional="true"><Node id="level">
    <ValueItem><ValueNumericInt id="level" value="9" min="0" max="5" step="1"/></ValueItem></Node></Component>
</TunerProperties>""" % "".join(f'<Node id="n{i}"><ValueItem><ValueInt id="v" value="1"/></ValueItem></Node>'
                                for i in range(30))

LONG = """<TunerProperties Version="1.1" type="SCP" baseresource="B">%s</TunerProperties>""" % "".join(
    f'<Component type="a" name="C{c}" optional="true">' + "".join(
        f'<Node id="n{c}.{n}"><ValueItem><ValueInt id="v" value="1"/></ValueItem></Node>' for n in range(nodes))
    + "</Component>" for c, nodes in enumerate([7, 90, 130, 25, 160, 3]))

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
        self.search("2.1 kHz")
        self.assertEqual(self.browser.script(SHOWN_NODES), ["bandwidth"])
        opened = "return document.querySelectorAll('.fold[open]').length"
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
        for _ in range(4):
            self.browser.press("Enter")
            current = self.browser.script("""return Array.from(document.querySelectorAll('.node[aria-current]')).map(node => {
                const box = node.getBoundingClientRect();
                return [node.querySelector('h4 bdi').textContent, box.top >= 0 ? box.bottom <= innerHeight : false];
            })""")
            places.append((current, self.found()))
        # The last one has a maximum of 8 GHz.
        self.assertEqual(places, [([["connector", True]], "Node 1 of 3"), ([["band", True]], "Node 2 of 3"),
                                  ([["frequency", True]], "Node 3 of 3"), ([["connector", True]], "Node 1 of 3")])

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
            '.card, .node, .value, .options li, .facts dd')).filter(each => !each.checkVisibility()).length""")
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
        """The sheets of paper that the page takes."""
        return Pdf(base64.b64decode(self.browser.devtools("Page.printToPDF", printBackground=True)["data"]))

    def test_closed_parts_are_printed(self):
        self.browser.open(RECEIVER)
        sheets = len(self.printed().sheets)
        self.assertEqual(self.browser.script(OPEN_CARDS), ["Antenna inputs"])
        self.browser.open_all_details()
        self.assertEqual(len(self.printed().sheets), sheets)
        self.assertGreater(sheets, 3)

    def test_a_receiver_takes_at_most_six_sheets_with_numbers(self):
        for paper in ({}, {"paperWidth": 8.27, "paperHeight": 11.69}):  # letter, A4
            self.browser.open(RECEIVER)
            pdf = Pdf(base64.b64decode(self.browser.devtools("Page.printToPDF", printBackground=True, **paper)["data"]))
            self.assertLessEqual(len(pdf.sheets), 6)
            numbers = [pdf.lines(sheet)[-1][1] for sheet in pdf.sheets]
            self.assertEqual(numbers, [f"{i + 1} / {len(pdf.sheets)}" for i in range(len(pdf.sheets))])

    def test_no_heading_is_left_at_the_end_of_a_sheet(self):
        long = self.browser.folder / "long.xml"  # components that are longer than a sheet, too
        long.write_text(LONG, encoding="utf-8")
        for document, widths in ((RECEIVER, (8.27, 8.5, 7, 6)), (long, (8.27, 6))):
            self.browser.open(document)
            # The title of each component, and its first node: the title must be on the sheet where the nodes begin.
            pairs = self.browser.script("""return Array.from(document.querySelectorAll('.card')).map(card =>
                [card.querySelector('h3').textContent, card.querySelector('h4 bdi').textContent])""")
            other = self.browser.script("return Array.from(document.querySelectorAll('h2')).map(each => each.textContent)")
            for width in widths:
                with self.subTest(document=document.name, width=width):
                    data = self.browser.devtools("Page.printToPDF", printBackground=True, paperWidth=width)["data"]
                    self.check_headings(Pdf(base64.b64decode(data)), pairs, other)

    def check_headings(self, pdf, pairs, other):
        found = 0
        for sheet in pdf.sheets:
            lines = [text.replace("\xa0", " ") for _, text in pdf.lines(sheet)][:-1]  # without the number of the sheet
            for title, node in pairs:
                for at, line in enumerate(lines):
                    if line.startswith(title) and re.search(r"Node \d+$", line):
                        found += 1
                        self.assertTrue(any(later.startswith(node) for later in lines[at + 1:]), title)
            for heading in other:
                self.assertFalse(lines[-1].startswith(heading), heading)
        self.assertEqual(found, len(pairs))

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
        sheets = len(self.printed().sheets)
        self.browser.open_all_details()
        self.assertEqual(len(self.printed().sheets), sheets)
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
        links = [control for control in self.browser.controls() if control["name"].startswith("ValueItem:")]
        self.assertEqual([link["name"] for link in links],
                         ["ValueItem:Check failed. The mandatory choice ChoiceValueItem is not initialized: expected "
                          "ValueBoolean, ValueFloat, ValueInt, ValueInt64, ValueNumericFloat, ValueNumericInt, "
                          "ValueNumericInt64, ValueSelection, ValueString or ValueStringList"])
        self.assertEqual(links[0]["role"], "link")
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
        self.browser.focus(next(control for control in self.browser.controls()
                                if control["name"].startswith("ValueItem:")))
        self.browser.press("Enter")
        self.browser.settle()
        self.assertTrue(self.browser.script("return document.querySelector(':target').checkVisibility()"))
        self.browser.screenshot("problems.png")

    def test_a_slash_leads_to_the_search_and_escape_out_of_it(self):
        self.browser.open(RECEIVER)
        in_search = "return document.activeElement === document.getElementById('search')"
        self.assertFalse(self.browser.script(in_search))
        self.browser.press("/")
        self.assertTrue(self.browser.script(in_search))
        self.assertEqual(self.browser.script("return document.getElementById('search').value"), "")
        self.browser.press("/")  # in the field it is a character like any other
        self.assertEqual(self.browser.script("return document.getElementById('search').value"), "/")
        self.browser.press("Escape")
        self.assertTrue(self.browser.script(in_search))
        self.browser.press("Escape")
        self.assertFalse(self.browser.script(in_search))

    def place(self):
        """The title of the component or node in which the focus is."""
        return self.browser.script("""const item = document.activeElement.closest('.node, .card');
            return item ? item.querySelector(item.matches('.card') ? 'h3' : 'h4 bdi').textContent : null""")

    def test_arrows_move_among_components_and_nodes(self):
        self.browser.open(RECEIVER)
        self.browser.click("close")
        self.browser.press("/")
        seen = []
        for key in ("ArrowDown", "ArrowDown", "ArrowRight", "ArrowDown", "ArrowDown", "ArrowLeft", "ArrowLeft", "ArrowDown",
                    "ArrowUp", "ArrowUp"):
            self.browser.press(key)
            seen.append(self.place())
        self.assertEqual(seen, ["Antenna inputs", "Preselector", "Preselector", "mode", "band", "Preselector", "Preselector",
                                "Front end", "Preselector", "Antenna inputs"])
        self.assertEqual(self.browser.script(OPEN_CARDS), [])
        self.browser.press("ArrowUp")
        self.assertTrue(self.browser.script("return document.activeElement === document.getElementById('search')"))

    def test_arrows_move_among_what_was_found(self):
        self.browser.open(RECEIVER)
        self.search("GHz")
        seen = []
        for key in ("ArrowDown", "ArrowDown", "ArrowDown"):
            self.browser.press(key)
            seen.append(self.place())
        self.assertEqual(seen, ["connector", "Preselector", "band"])
        self.assertTrue(self.browser.script("""const box = document.activeElement.closest('.node').getBoundingClientRect();
            return box.top >= 0 ? box.bottom <= innerHeight : false"""))
        self.browser.press("Escape")
        self.assertTrue(self.browser.script("return document.activeElement === document.getElementById('search')"))
        self.assertEqual(len(self.browser.script(SHOWN_NODES)), 3)

    def test_the_path_of_a_node_is_copied_and_understood_by_get(self):
        page = self.browser.open(RECEIVER)
        self.browser.devtools("Browser.grantPermissions", permissions=["clipboardReadWrite", "clipboardSanitizedWrite"])
        expected = "Component[type=AntennaInput,name=input]/Node[id=cableLoss]"
        self.browser.focus(self.control("Copy path of cableLoss"))
        self.browser.press("Enter")
        self.browser.settle()
        copied = self.browser.driver.execute_async_script("navigator.clipboard.readText().then(arguments[0])")
        self.assertEqual(copied, expected)
        self.assertEqual(self.found(), "Copied " + expected)
        self.assert_quiet(page)
        got = subprocess.run([TOOL, "get", str(RECEIVER), copied], capture_output=True, check=True, timeout=60)
        self.assertIn(b'"cableLoss"', got.stdout)

    def test_a_link_to_a_node_opens_its_component(self):
        page = self.browser.open(RECEIVER)
        link = self.browser.script("""return Array.from(document.querySelectorAll('.node'))
            .find(node => node.querySelector('h4 bdi').textContent === 'hysteresis').querySelector('.to').href""")
        self.assertEqual(link, page.as_uri() + "#Component[type=Squelch,name=squelch]/Node[id=hysteresis]")
        self.browser.driver.get("about:blank")
        self.browser.driver.get(link)
        self.browser.settle()
        self.assertEqual(self.browser.script(OPEN_CARDS), ["Antenna inputs", "Squelch"])
        self.assertTrue(self.browser.script("""const box = document.querySelector(':target').getBoundingClientRect();
            return box.top >= 0 ? box.bottom <= innerHeight : false"""))

    def test_the_outline_lists_components_and_the_nodes_of_the_current_one(self):
        self.browser.open(RECEIVER, width=1280)
        listed = """return Array.from(document.querySelectorAll('#outline > ol > li > a')).map(each => each.textContent)"""
        self.assertEqual(self.browser.script(listed), self.browser.script(
            "return Array.from(document.querySelectorAll('.card h3')).map(each => each.textContent)"))
        self.browser.script("""Array.from(document.querySelectorAll('#outline a'))
            .find(each => each.textContent === 'Squelch').click()""")
        self.browser.settle()
        self.browser.settle()
        self.assertIn("Squelch", self.browser.script(OPEN_CARDS))
        self.assertEqual(self.browser.script("""return Array.from(document.querySelectorAll('#outline [aria-current] ol a'))
            .map(each => each.textContent)"""), ["level", "hysteresis", "hang", "subTone"])
        # It is beside the document, and not there without room.
        box = "const box = document.getElementById('outline').getBoundingClientRect(); return [box.left, box.right]"
        left, right = self.browser.script(box)
        self.assertTrue(0 <= left < right <= self.browser.script(
            "return document.querySelector('main').getBoundingClientRect().left"))
        self.browser.open(RECEIVER, width=800)
        self.assertFalse(self.browser.script("return document.getElementById('outline').checkVisibility()"))

    def test_exact_numbers_replace_those_with_prefixes(self):
        self.browser.open(RECEIVER)
        seen = """const node = Array.from(document.querySelectorAll('.node'))
                .find(each => each.querySelector('h4 bdi').textContent === 'frequency');
            node.closest('.card').open = true;
            return node.innerText.replace(/\\u00a0/g, ' ')"""
        text = self.browser.script(seen)
        for part in ("98.5 MHz", "98500000 Hz", "min 9 kHz", "max 8 GHz"):
            self.assertIn(part, text)
        self.browser.focus(self.control("Exact numbers"))
        self.browser.press("Enter")
        self.assertEqual(self.control("Exact numbers")["properties"]["checked"], "true")
        text = self.browser.script(seen)
        for part in ("98500000 Hz", "min 9000 Hz", "max 8000000000 Hz"):
            self.assertIn(part, text)
        for part in ("MHz", "kHz", "GHz"):
            self.assertNotIn(part, text)

    def test_a_warning_opens_its_component_from_the_list(self):
        document = self.browser.folder / "warnings.xml"
        document.write_text(WARNINGS, encoding="utf-8")
        self.browser.open(document)
        self.assertEqual(self.browser.script("return document.querySelector('.problems h2').textContent"),
                         "No problems, 1 warning")
        self.assertEqual(self.browser.script("""return Array.from(document.querySelectorAll('.card'))
            .map(card => [card.open, card.querySelector('summary .doubtful')?.textContent || ''])"""),
                         [[True, ""], [False, "1 warning"]])
        self.assertEqual(self.browser.script("""return Array.from(document.querySelectorAll('#outline a'))
            .map(each => each.innerText || each.textContent)"""), ["No problems, 1 warning", "first", "second1 warning"])
        self.browser.focus(self.control("value 9 is above max 5; use a value from 0 to 5"))
        self.browser.press("Enter")
        self.browser.settle()
        self.assertEqual(self.browser.script("return document.querySelector(':target').closest('.value').innerText"
                                             ".includes('value 9 is above max 5')"), True)
        self.browser.screenshot("warnings.png")

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
