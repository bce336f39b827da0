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
                const html = outline(document);
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
            reached = self.browser.tab_through()
            self.assertEqual(sorted(control["element"] for control in controls), sorted(reached))
            # What takes the focus is a control, and nothing else.
            focusable = [node for node in self.browser.accessibility()
                         if node["properties"].get("focusable") and node["role"] != "RootWebArea"]
            self.assertEqual(sorted(node["element"] for node in focusable), sorted(reached))

        self.for_each(check)

    def test_the_controls_are_those_of_the_bar_and_what_opens_and_closes(self):
        def check(_, __):
            self.browser.click("open")
            roles = [(control["role"], control["name"]) for control in self.browser.controls()]
            self.assertEqual(roles[:4], [("searchbox", "Search components, nodes and values"), ("button", "Open all"),
                                         ("button", "Close all"), ("switch", "Dark")])
            cards, drops = self.browser.script("return [document.querySelectorAll('.card').length,"
                                               "document.querySelectorAll('.drop').length]")
            self.assertEqual([role for role, _ in roles[4:]], ["DisclosureTriangle"] * (cards + drops))
            self.assertGreater(cards, 0)

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


if __name__ == "__main__":
    unittest.main()
