"""A headless Chromium for tests, and queries for it."""

import base64
import contextlib
import json
import os
import pathlib
import shutil
import subprocess
import tempfile
import unittest

from selenium import webdriver
from selenium.webdriver.chrome.options import Options
from selenium.webdriver.chrome.service import Service

TOOL = os.environ["TOOL"]
DOCUMENTS = os.environ["DOCUMENTS"]
PICTURES = pathlib.Path(os.environ["PICTURES"])
EXAMPLES = pathlib.Path(__file__).parents[4] / "examples"

FLAGS = [
    "--headless=new",
    "--no-sandbox",  # continuous integration runs as root, which Chromium refuses otherwise
    "--disable-gpu",
    "--disable-quic",
    "--no-first-run",
    "--disable-background-networking",
    "--disable-component-update",
    "--disable-sync",
    "--disable-dev-shm-usage",
    "--hide-scrollbars",
    "--force-device-scale-factor=1",
]

# The ground of a page.
LIGHT = "rgb(243, 245, 247)"
DARK = "rgb(17, 21, 26)"

# What is there for a user to use, by its role in the accessibility tree.
CONTROLS = {"button", "switch", "link", "searchbox", "textbox", "checkbox", "radio", "combobox", "listbox", "slider",
            "spinbutton", "tab", "menuitem", "DisclosureTriangle", "DisclosureTriangleGrouped"}


class Browser:
    """The browser, and pages that the tool makes for it in a folder that goes with it."""

    def __init__(self):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="browser-"))
        options = Options()
        options.binary_location = "/usr/bin/chromium"
        for flag in FLAGS + [f"--user-data-dir={self.folder / 'profile'}"]:
            options.add_argument(flag)
        options.set_capability("goog:loggingPrefs", {"browser": "ALL", "performance": "ALL"})
        try:
            self.driver = webdriver.Chrome(service=Service("/usr/bin/chromedriver"), options=options)
        except Exception:
            shutil.rmtree(self.folder, ignore_errors=True)
            raise
        self.driver.set_page_load_timeout(60)
        self.driver.set_script_timeout(60)

    def close(self):
        self.driver.quit()
        shutil.rmtree(self.folder, ignore_errors=True)

    def devtools(self, command, **parameters):
        return self.driver.execute_cdp_cmd(command, parameters)

    def script(self, code, *arguments):
        return self.driver.execute_script(code, *arguments)

    def made(self, document):
        """The page of a document, as the tool makes it."""
        page = self.folder / (pathlib.Path(document).name + ".html")
        with open(page, "wb") as output:
            subprocess.run([TOOL, "show", "--format", "html", str(document)], stdout=output, check=True, timeout=60)
        return page

    def compared(self, first, second):
        """The page of the differences of two documents."""
        page = self.folder / f"{pathlib.Path(first).name}-{pathlib.Path(second).name}.html"
        with open(page, "wb") as output:
            subprocess.run([TOOL, "diff", "--format", "html", str(first), str(second)], stdout=output, check=True,
                           timeout=60)
        return page

    def open(self, document, **how):
        return self.show(self.made(document), **how)

    def show(self, page, dark=False, width=1200, height=900):
        self.devtools("Emulation.setDeviceMetricsOverride", width=width, height=height, deviceScaleFactor=1,
                      mobile=False)
        self.emulate(dark=dark)
        self.driver.get("about:blank")
        self.driver.get_log("browser")
        self.driver.get_log("performance")
        self.driver.get(page.as_uri())
        return page

    def emulate(self, media="", dark=False):
        self.devtools("Emulation.setEmulatedMedia", media=media, features=[
            {"name": "prefers-color-scheme", "value": "dark" if dark else "light"},
            {"name": "prefers-reduced-motion", "value": "reduce"}])

    def settle(self):
        """Waits until the page shows the effect of all actions."""
        self.driver.execute_async_script("requestAnimationFrame(() => requestAnimationFrame(arguments[0]))")

    def click(self, identifier):
        self.script("document.getElementById(arguments[0]).click()", identifier)

    def open_all_details(self):
        self.script("document.querySelectorAll('details').forEach(each => { each.open = true; })")

    def background(self):
        return self.script("return getComputedStyle(document.body).backgroundColor")

    def screenshot(self, name, height=None):
        """Of the whole page, or of its upper part, as a file among the pictures."""
        self.script("window.scrollTo(0, 0)")
        self.settle()
        size = self.devtools("Page.getLayoutMetrics")["cssContentSize"]
        clip = {"x": 0, "y": 0, "width": size["width"], "height": min(height or size["height"], size["height"]), "scale": 1}
        taken = self.devtools("Page.captureScreenshot", format="png", captureBeyondViewport=True, clip=clip)
        PICTURES.mkdir(parents=True, exist_ok=True)
        path = PICTURES / name
        path.write_bytes(base64.b64decode(taken["data"]))
        return path

    def press(self, key):
        """Sends a key like the keyboard: the browser handles it before the page does."""
        codes = {"Tab": (9, ""), "Enter": (13, "\r"), "Space": (32, " "), "Escape": (27, ""), "/": (191, "/"),
                 "ArrowLeft": (37, ""), "ArrowUp": (38, ""), "ArrowRight": (39, ""), "ArrowDown": (40, "")}
        code, text = codes[key]
        name = " " if key == "Space" else key
        down = {"type": "keyDown" if text else "rawKeyDown", "key": name, "code": key, "windowsVirtualKeyCode": code}
        if text:
            down["text"] = text
        self.devtools("Input.dispatchKeyEvent", **down)
        self.devtools("Input.dispatchKeyEvent", type="keyUp", key=name, code=key, windowsVirtualKeyCode=code)

    def type(self, text):
        self.devtools("Input.insertText", text=text)

    def accessibility(self):
        """What is in the accessibility tree and is not ignored: role, name, properties, and the element's number."""
        found = []
        for node in self.devtools("Accessibility.getFullAXTree")["nodes"]:
            if node.get("ignored"):
                continue
            properties = {entry["name"]: entry["value"].get("value") for entry in node.get("properties", [])}
            found.append({"role": node.get("role", {}).get("value", ""), "name": node.get("name", {}).get("value", ""),
                          "properties": properties, "element": node.get("backendDOMNodeId")})
        return found

    def controls(self):
        return [node for node in self.accessibility() if node["role"] in CONTROLS]

    def focused(self):
        """The number of the element that has the focus; None for the page itself."""
        result = self.devtools("Runtime.evaluate",
                               expression="document.activeElement === document.body ? null : document.activeElement")
        if result["result"].get("subtype") == "null":
            return None
        return self.devtools("DOM.describeNode", objectId=result["result"]["objectId"])["node"]["backendNodeId"]

    def focus(self, control):
        self.devtools("DOM.focus", backendNodeId=control["element"])

    def tab_through(self):
        """The elements that the tab key comes by, in order, until it leaves the page or comes round."""
        self.script("document.activeElement.blur(); window.scrollTo(0, 0);"
                    "getSelection().setPosition(document.body, 0)")
        order = []
        while True:
            self.press("Tab")
            element = self.focused()
            if element is None or element in order:
                return order
            order.append(element)


# What makes another document of the example receiver.xml: every kind of difference, in the document, components and nodes.
CHANGES = [
    ('quantity="2"', 'quantity="3"'),
    ("<StartupMode>Stop</StartupMode>", ""),
    ("<MaxBandwidth>600<", "<MaxBandwidth>650<"),
    ('id="impedance" value="50"', 'id="impedance" value="75"'),
    ('<ValueItem><ValueFloat id="X3" value="6.15"/></ValueItem>', ""),
    ('id="recoveryTime" value="250"', 'id="recoveryTime" value="2000"'),
    ('<ValueItem><ValueFloat id="maximum" value="3.20"/></ValueItem>',
     '<ValueItem><ValueNumericInt id="new" value="3" min="0" max="7" step="1"/></ValueItem>'
     '<ValueItem><ValueFloat id="maximum" value="3.20"/></ValueItem>'),
    ('<ValueBoolean id="engaged" value="false"/>', '<ValueString id="engaged" value="no"/>'),
    ('<Node id="feedVoltage">', '<Node id="fresh"><ValueItem><ValueBoolean id="b" value="true"/></ValueItem></Node>'
                                '<Node id="feedVoltage">'),
    ('type="FrontEnd" name="frontend"', 'type="FrontEnd" name="front"'),
    ("</TunerProperties>", '<Component type="X" name="added" displayName="An added one" optional="true"><Node id="a">'
     '<ValueItem><ValueNumericInt64 id="f" value="98500000" min="9000" max="8000000000" step="1"/></ValueItem>'
     '<ValueItem><ValueString id="unit" value="Hz"/></ValueItem></Node></Component></TunerProperties>'),
]


def changed(document, folder):
    """Another document, with these changes."""
    text = pathlib.Path(document).read_text(encoding="utf-8")
    for old, new in CHANGES:
        assert old in text, old
        text = text.replace(old, new)
    path = folder / ("changed-" + pathlib.Path(document).name)
    path.write_text(text, encoding="utf-8")
    return path


class BrowserTest(unittest.TestCase):
    """A test with a browser of its own for its class, and the documents."""

    @classmethod
    def setUpClass(cls):
        with contextlib.ExitStack() as stack:
            cls.browser = Browser()
            stack.callback(cls.browser.close)
            subprocess.run([DOCUMENTS, str(cls.browser.folder)], check=True, timeout=60)
            cls.stack = stack.pop_all()

    @classmethod
    def tearDownClass(cls):
        cls.stack.close()

    def document(self, name):
        return self.browser.folder / name

    def assert_quiet(self, page):
        """The page has reported no error and has requested nothing but itself."""
        complaints = [entry for entry in self.browser.driver.get_log("browser") if entry["level"] != "INFO"]
        self.assertEqual(complaints, [])
        requests = []
        for entry in self.browser.driver.get_log("performance"):
            message = json.loads(entry["message"])["message"]
            if message["method"] == "Network.requestWillBeSent":
                requests.append(message["params"]["request"]["url"])
        self.assertEqual(requests, [page.as_uri()])
        self.assertEqual(self.browser.script("return performance.getEntriesByType('resource').length"), 0)
