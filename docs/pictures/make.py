"""Makes the pictures of the README. scripts/pictures.sh runs this."""

import html
import subprocess

from browser import EXAMPLES, TOOL, Browser

LINES = 34  # of the tree: what fits on a screen

TERMINAL = """<!DOCTYPE html><meta charset="utf-8"><style>
body { margin: 0; background: #ffffff; }
.window { width: 1000px; background: #14191f; color: #d7dee6; overflow: hidden; }
.title { background: #252d36; padding: 11px 14px; display: flex; gap: 8px; }
.title i { width: 12px; height: 12px; border-radius: 50%%; background: #4b5763; }
pre { margin: 0; padding: 18px 22px 22px; font: 15px/1.5 "DejaVu Sans Mono", monospace; }
pre div { white-space: pre; overflow: hidden; text-overflow: ellipsis; }
b { color: #63cbd6; font-weight: 400; } em { color: #8f9ba8; font-style: normal; }
</style><div class="window"><div class="title"><i></i><i></i><i></i></div><pre>%s</pre></div>"""


def terminal():
    """What the terminal shows: the command, and its output as far as there is room."""
    command = "tunerproperties show examples/receiver.xml"
    shown = subprocess.run([TOOL, "show", str(EXAMPLES / "receiver.xml")], capture_output=True, check=True, timeout=60)
    lines = shown.stdout.decode("utf-8").splitlines()
    rows = [f"<em>$</em> <b>{command}</b>"] + [html.escape(line) for line in lines[:LINES]] + ["<em>\u2026</em>"]
    return TERMINAL % "".join(f"<div>{row}</div>" for row in rows)


def main():
    browser = Browser()
    try:
        browser.open(EXAMPLES / "receiver.xml", width=1200, height=1500)
        browser.script("document.querySelectorAll('.card').forEach((card, i) => { card.open = i === 3; })")  # numbers
        browser.settle()
        browser.screenshot("receiver.png", height=1500)

        page = browser.folder / "terminal.html"
        page.write_text(terminal(), encoding="utf-8")
        browser.devtools("Emulation.setDeviceMetricsOverride", width=1000, height=800, deviceScaleFactor=1.5,
                         mobile=False)
        browser.driver.get(page.as_uri())
        browser.screenshot("show.png")
    finally:
        browser.close()


main()
