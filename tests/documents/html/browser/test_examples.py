"""The pages of the examples: whole, quiet, and usable by keyboard and by those who listen."""

import unittest

from browser import DARK, EXAMPLES, LIGHT, BrowserTest

NAMES = ["directionfinder", "ffp", "mcp", "receiver", "scp"]


class Examples(BrowserTest):
    def for_each(self, test, **how):
        """Calls test(name, page) with the page of each example open."""
        for name in NAMES:
            with self.subTest(document=name, **how):
                test(name, self.browser.open(EXAMPLES / f"{name}.xml", **how))

    def test_pages_are_quiet_and_load_nothing(self):
        self.for_each(lambda _, page: self.assert_quiet(page))

    def test_readers_of_html_and_of_xml_see_the_same_elements(self):
        def check(_, page):
            differences = self.browser.script("""
                const outline = root => Array.from(root.querySelectorAll('*'))
                    .map(each => each.localName + ' in ' + (each.parentElement ? each.parentElement.localName : 'nothing'));
                const xml = outline(new DOMParser().parseFromString(arguments[0], 'application/xhtml+xml'));
                const html = outline(new DOMParser().parseFromString(arguments[0], 'text/html'));
                return [xml.length, xml.filter((each, i) => each !== html[i]), html.length];
            """, page.read_text(encoding="utf-8"))
            self.assertGreater(differences[0], 100)
            self.assertEqual(differences[1:], [[], differences[0]])

        self.for_each(check)

    def test_pictures_of_them_are_kept_light_and_dark(self):
        for dark, color in ((False, LIGHT), (True, DARK)):
            def keep(name, _):
                self.assertEqual(self.browser.background(), color)
                path = self.browser.screenshot(f"{name}-{'dark' if dark else 'light'}.png")
                self.assertGreater(path.stat().st_size, 10000)

            self.for_each(keep, dark=dark)

    def test_every_control_has_a_role_and_a_name_and_is_reached_by_tab(self):
        def check(_, __):
            self.browser.click("open")
            controls = self.browser.controls()
            self.assertEqual([control for control in controls if not control["name"].strip()], [])
            # Before the outline follows the focus.
            focusable = [node for node in self.browser.accessibility()
                         if node["properties"].get("focusable") and node["role"] != "RootWebArea"]
            reached = self.browser.tab_through()
            self.assertEqual(sorted(control["element"] for control in controls), sorted(reached))
            # What takes the focus is a control, and nothing else.
            self.assertEqual(sorted(node["element"] for node in focusable), sorted(reached))

        self.for_each(check)

    def test_the_controls_are_those_of_the_bar_links_paths_and_what_opens_and_closes(self):
        def check(_, __):
            self.browser.click("open")
            self.browser.settle()
            roles = [(control["role"], control["name"]) for control in self.browser.controls()]
            self.assertEqual(roles[:5], [("searchbox", "Search components, nodes and values"), ("button", "Open all"),
                                         ("button", "Close all"), ("switch", "Exact numbers"), ("switch", "Dark")])
            cards, nodes, folds, links = self.browser.script("""return ['.card', '.node', '.fold, .problems details',
                '#outline a, .problems a'].map(each => document.querySelectorAll(each).length)""")
            places = cards + nodes
            self.assertEqual(sorted(role for role, _ in roles[5:]), ["DisclosureTriangle"] * (cards + folds)
                             + ["button"] * places + ["link"] * (places + links))
            self.assertGreater(cards, 0)
            self.assertGreaterEqual(links, cards)

        self.for_each(check)

    def test_every_node_and_component_has_a_link_to_itself_and_a_button_for_its_path(self):
        def check(_, __):
            wrong = self.browser.script("""return Array.from(document.querySelectorAll('.card, .node')).filter(item => {
                const tools = item.matches('.card') ? item.querySelector(':scope > .inside > .place')
                    : item.querySelector(':scope > h4');
                const links = tools.querySelectorAll('a.to');
                return !item.id || document.querySelectorAll('[id="' + CSS.escape(item.id) + '"]').length !== 1
                    || links.length !== 1 || links[0].getAttribute('href') !== '#' + item.id
                    || tools.querySelectorAll('button.copy').length !== 1;
            }).map(item => item.id)""")
            self.assertEqual(wrong, [])

        self.for_each(check)

    def test_everything_that_opens_does_so_by_enter_and_by_space(self):
        def check(_, __):
            self.browser.click("open")
            for control in self.browser.controls():
                if control["role"] != "DisclosureTriangle":
                    continue
                self.browser.focus(control)
                states = [self.expanded(control)]
                for key in ("Enter", "Space"):
                    self.browser.press(key)
                    states.append(self.expanded(control))
                first = states[0]
                self.assertIn(first, (True, False))
                self.assertEqual(states, [first, not first, first], control["name"])

        self.for_each(check)

    def expanded(self, control):
        node = self.browser.devtools("Accessibility.getPartialAXTree", backendNodeId=control["element"],
                                     fetchRelatives=False)["nodes"][0]
        return {entry["name"]: entry["value"]["value"] for entry in node["properties"]}.get("expanded")

    def test_pictures_that_are_not_controls_have_names(self):
        def check(_, __):
            self.browser.click("open")
            pictures = [node for node in self.browser.accessibility() if node["role"] in ("image", "img", "meter")]
            self.assertGreater(len(pictures), 0)
            self.assertEqual([node for node in pictures if not node["name"].strip()], [])

        self.for_each(check)

    def test_nothing_is_wider_than_a_narrow_screen(self):
        for width in (320, 390, 800):
            def check(_, __):
                self.browser.open_all_details()
                self.assertLessEqual(self.browser.script("return document.documentElement.scrollWidth"), width)

            self.for_each(check, width=width)

    def test_labels_of_an_axis_and_a_range_do_not_overlap(self):
        for width in (320, 390, 500, 640, 800, 900, 1024, 1180, 1280, 1600):
            def check(_, __):
                self.browser.open_all_details()
                self.browser.settle()
                groups = self.browser.script("""return Array.from(document.querySelectorAll('.plot svg, .range'))
                    .map(group => Array.from(group.querySelectorAll('text, :scope > span'))
                        .filter(label => label.checkVisibility())
                        .map(label => [label.getBoundingClientRect(), label.textContent])
                        .map(([box, text]) => [box.left, box.top, box.right, box.bottom, text]))""")
                labels = [label for group in groups for label in group]
                self.assertGreater(len(labels), 10)
                for group in groups:
                    for i, (left, top, right, bottom, text) in enumerate(group):
                        self.assertTrue(0 <= left < right <= width, text)
                        for other in group[i + 1:]:
                            apart = right < other[0] or other[2] < left or bottom <= other[1] or other[3] <= top
                            self.assertTrue(apart, f"'{text}' and '{other[4]}' overlap")

            self.for_each(check, width=width)


if __name__ == "__main__":
    unittest.main()
