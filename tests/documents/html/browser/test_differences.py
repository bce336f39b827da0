"""The page with the differences of two documents."""

import unittest

from browser import EXAMPLES, BrowserTest, changed

RECEIVER = EXAMPLES / "receiver.xml"


class Differences(BrowserTest):
    def setUp(self):
        self.changed = changed(RECEIVER, self.browser.folder)

    def open(self, **how):
        return self.browser.show(self.browser.compared(RECEIVER, self.changed), **how)

    def test_page_is_quiet_and_loads_nothing(self):
        self.assert_quiet(self.open())

    def test_readers_of_html_and_of_xml_see_the_same_elements(self):
        page = self.open()
        differences = self.browser.script("""
            const outline = root => Array.from(root.querySelectorAll('*'))
                .map(each => each.localName + ' in ' + (each.parentElement ? each.parentElement.localName : 'nothing'));
            const xml = outline(new DOMParser().parseFromString(arguments[0], 'application/xhtml+xml'));
            const html = outline(new DOMParser().parseFromString(arguments[0], 'text/html'));
            return [xml.length, xml.filter((each, i) => each !== html[i]), html.length];
        """, page.read_text(encoding="utf-8"))
        self.assertGreater(differences[0], 100)
        self.assertEqual(differences[1:], [[], differences[0]])

    def test_values_are_beside_each_other(self):
        for width in (320, 1200):
            self.open(width=width)
            self.browser.open_all_details()
            rows = self.browser.script("""return Array.from(document.querySelectorAll('.changes .changed')).map(row => {
                const [before, after] = Array.from(row.querySelectorAll('td')).map(cell => cell.getBoundingClientRect());
                return [before.top === after.top, before.right <= after.left, before.width > 60];
            })""")
            self.assertGreater(len(rows), 5)
            self.assertEqual([row for row in rows if row != [True, True, True]], [])

    def test_nothing_is_wider_than_a_narrow_screen(self):
        pages = [self.browser.compared(RECEIVER, self.changed),
                 self.browser.compared(self.changed, self.document("hostile.json")),
                 self.browser.compared(RECEIVER, RECEIVER)]
        for page in pages:
            for width in (320, 390, 800):
                with self.subTest(page=page.name, width=width):
                    self.browser.show(page, width=width)
                    self.browser.open_all_details()
                    self.browser.settle()
                    self.assertLessEqual(self.browser.script("return document.documentElement.scrollWidth"), width)

    def test_every_control_has_a_role_and_a_name_and_is_reached_by_tab(self):
        self.open()
        self.browser.click("open")
        controls = self.browser.controls()
        self.assertGreater(len(controls), 20)
        self.assertEqual([control for control in controls if not control["name"].strip()], [])
        self.assertEqual(sorted(control["element"] for control in controls), sorted(self.browser.tab_through()))

    def test_table_has_headers_for_rows_and_columns(self):
        for width in (390, 1200):
            self.open(width=width)
            self.browser.click("open")
            roles = [node["role"] for node in self.browser.accessibility()]
            self.assertIn("rowheader", roles)
            self.assertIn("columnheader", roles)

    def test_button_copies_the_path_without_the_mark_of_what_was_added(self):
        self.open()
        self.browser.script("navigator.clipboard.writeText = text => { window.copied = text; return Promise.resolve(); }")
        copied = self.browser.script("""return Array.from(document.querySelectorAll('.card, .node')).map(item => {
            item.querySelector('.copy').click();
            return [decodeURIComponent(item.id), window.copied];
        })""")
        self.assertIn(["Component[type=AntennaInput,name=input]/Node[id=impedance]"] * 2, copied)
        self.assertIn(["+Component[type=AntennaInput,name=input]/Node[id=fresh]",
                       "Component[type=AntennaInput,name=input]/Node[id=fresh]"], copied)
        self.assertIn(["+Component[type=X,name=added]", "Component[type=X,name=added]"], copied)

    def test_link_to_an_added_node_opens_its_component(self):
        page = self.open()
        self.browser.click("close")
        self.browser.script("location.hash = document.querySelector('[id$=\"Component[type=X,name=added]/Node[id=a]\"]').id")
        self.browser.settle()
        opened = self.browser.script("return Array.from(document.querySelectorAll('.card[open] h3')).map(e => e.textContent)")
        self.assertEqual(opened, ["An added one"])
        self.browser.driver.get(page.as_uri() + "#%2BComponent[type=X,name=added]/Node[id=a]")
        self.assertIn("Node[id=a]", self.browser.script("return document.querySelector(':target').id"))

    def test_search_finds_values_of_both_documents(self):
        self.open()
        for text, count in (("75", "1 node in 1 component"), ("6.15", "1 node in 1 component"),
                            ("fresh", "1 node in 1 component"), ("zzz", "Nothing found")):
            with self.subTest(search=text):
                self.browser.script("const search = document.getElementById('search'); search.value = arguments[0];"
                                    "search.dispatchEvent(new Event('input'))", text)
                self.assertEqual(self.browser.script("return document.getElementById('found').value"), count)

    def test_exact_numbers_replace_those_with_prefixes(self):
        self.open()
        shown = """return Array.from(document.querySelectorAll('.changes .prefixed')).map(each => each.checkVisibility())"""
        self.assertEqual(set(self.browser.script(shown)), {True})
        self.browser.click("exact")
        self.assertEqual(set(self.browser.script(shown)), {False})

    def test_paper_shows_everything(self):
        self.open()
        self.browser.click("close")
        self.browser.emulate(media="print")
        self.browser.settle()
        hidden = self.browser.script("""return Array.from(document.querySelectorAll('.changes td, .node'))
            .filter(each => !each.checkVisibility()).length""")
        self.assertEqual(hidden, 0)

    def test_hostile_texts_run_nothing(self):
        other = changed(RECEIVER, self.browser.folder)
        for first, second in ((other, self.document("hostile.json")), (self.document("hostile.json"), other)):
            page = self.browser.show(self.browser.compared(first, second))
            self.browser.open_all_details()
            self.assert_quiet(page)
            self.assertIsNone(self.browser.script("return window.ran === undefined ? null : String(window.ran)"))
            self.assertEqual(self.browser.script("return document.querySelectorAll('h1').length"), 1)

    def test_pictures_are_kept(self):
        for name, how in (("light", {}), ("dark", {"dark": True}), ("narrow", {"width": 320})):
            self.open(**how)
            self.assertGreater(self.browser.screenshot(f"differences-{name}.png").stat().st_size, 10000)


if __name__ == "__main__":
    unittest.main()
