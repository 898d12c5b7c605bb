#!/usr/bin/python3
"""Drives the page in a headless browser and compares it with the tool: page.py PAGE TOOL"""
import atexit, json, pathlib, re, statistics, subprocess, sys, time, urllib.parse
from selenium import webdriver
from selenium.webdriver import ActionChains, Keys
from selenium.webdriver.chrome.service import Service

FLAGS = """--headless --no-sandbox --disable-gpu --disable-quic --no-first-run --disable-sync
    --disable-background-networking --disable-component-update --window-size=1000,1400"""
POSITIONS = [  # the text, the chosen format, the one that is taken, settings
    ("01;00;00;02", "", "smpte-drop", dict(tempo="97")),
    ("00;01;00;00", "", "smpte-drop", {}),  # stands for another label
    ("00;59;59;59", "59.94df", "59.94df", dict(rate="44100")),
    ("00;01;00;02", "25", "25", {}),
    ("25:00:00:22", "23.976", "23.976", dict(rate="96000")),
    ("1:2:3:4", "", "smpte", dict(fps="25")),
    ("-1:11.25", "bars-beats", "bars-beats", dict(meter="12/8", offset_ms="-250.5", ticks="-1")),
    ("3:2.480", "", "bars-beats", dict(meter="6/8", tempo="133.33")),
    ("3 beats", "", "beats", {}),
    ("-9223372036854775807", "", "samples", {}),  # too far for a ruler
    ("1234567", "milliseconds", "milliseconds", {}),  # labels that do not read back
    ("1 s 2 s", "", "decimal", {}),
    ("00;00;01;00", "", "smpte-drop", dict(fps="25")),
    ("-480001", "", "samples", dict(meter="4/5"))]
KEYS = [  # in the field, from one text to another
    ("00;00;59;29", Keys.UP, "00;01;00;02"),
    ("00;00;59;00", Keys.SHIFT + Keys.UP, "00;01;00;02"),
    ("1:1.000", Keys.ALT + Keys.DOWN, "0:4.000"),
    ("2:4.100", Keys.ALT + Keys.UP, "3:1.100"),
    ("0:01", Keys.UP * 4, "0:01.133")]  # frame 34; its text reads back as an earlier position
READ = """return Array.from(document.querySelectorAll(
    "#answer, #notes, #error, samp, li small, svg title, svg text, #ruler:not(:has(svg))"),
    element => element.textContent.replace(/^Read as .*: /, ""));"""

def find(selector):
    return browser.find_element("css selector", selector)

def follow(address):
    browser.get("about:blank")
    browser.get(address)
    return find("#displays li") and find("[name=text]")

def check(what, got, wanted):
    assert got == wanted, f"{what}:\n  got    {got}\n  wanted {wanted}"

def tool(*words):
    done = subprocess.run([sys.argv[2], *words], capture_output=True, text=True)
    return done.stdout.strip(), done.stderr[7:].strip() if done.returncode else ""  # without the leading "mezzo: "

def expected(text, taken, settings, ruler_format, span=200000, notes=""):
    words = [f"--{name.replace('_', '-')}={value}" for name, value in settings.items()]
    listed = [each["name"] for each in json.loads(tool("formats", "--json")[0])
              if each["text"] and not each["meaning"].startswith("same as")]
    shown, error = tool("show", "--json", "--from", taken, *words, "--", text)
    if error:
        return ["", "", error] + [""] * (2 * len(listed) + 1)
    rows = [each for each in json.loads(shown)["formats"] if each["name"] in listed]
    sample = int(rows[1]["text"])
    width = str((find("#ruler").get_property("clientWidth") - 48) // 8)
    ends = "--from", f"@{sample - span // 2}", "--to", f"@{sample + span // 2}"
    drawn, error = tool("ruler", "--svg", "-", "--format", ruler_format, *words, "--width", width, *ends)
    return [f"sample {sample}", notes or "; ".join(json.loads(shown).get("notes", [])), "",
            *[part for each in rows for part in (each["text"] or "", *each.get("notes", [""]))],
            *(re.findall("<(?:text|title).*?>(.*)</", drawn) or [error])]

page = pathlib.Path(sys.argv[1]).resolve().as_uri()
options = webdriver.ChromeOptions()
options.arguments.extend(FLAGS.split())
options.set_capability("goog:loggingPrefs", {"browser": "ALL"})
browser = webdriver.Chrome(options=options, service=Service("/usr/bin/chromedriver"))
atexit.register(browser.quit)
browser.implicitly_wait(10)

for text, chosen, taken, settings in POSITIONS:
    follow(page + "#" + urllib.parse.urlencode({"text": text, "format": chosen} | settings))
    check(text, browser.execute_script(READ), expected(text, taken, settings, taken))
field = follow(page)
for text, keys, wanted in KEYS:
    field.send_keys(Keys.CONTROL, "a", Keys.NULL, text, keys)
    check(f"keys from {text}", field.get_property("value"), wanted)

ActionChains(browser).drag_and_drop_by_offset(find("#ruler"), -100, 0).perform()
find("#ruler").send_keys("+")
share = 100 / (find("#ruler").get_property("clientWidth") - 48 - 8)
sample = str(int(tool("parse", "frames", "34")[0]) + round(share * 200000))
text = tool("format", "decimal", sample)[0]
note = f"'{text}' reads back as sample {tool('parse', 'decimal', text)[0]}"
moved = browser.execute_script(READ)
check("drag", moved, expected(sample, "samples", {}, "decimal", 100000, note))
time.sleep(0.5)  # until the page has updated the address
follow(browser.current_url)
check("link", browser.execute_script(READ), moved)

find("[data-format=decimal] button").click()
find("[name=meter]").send_keys(Keys.CONTROL, "av")
check("copy", find("[name=meter]").get_property("value"), moved[3])
for scheme, colour in ("light", "rgb(255, 255, 255)"), ("dark", "rgb(22, 25, 29)"):
    browser.execute_cdp_cmd("Emulation.setEmulatedMedia", {
        "features": [{"name": "prefers-color-scheme", "value": scheme}]})
    field = follow(page)
    colours = browser.execute_script("""return [["body", "backgroundColor"], ["rect", "fill"]].map(
        ([name, property]) => getComputedStyle(document.querySelector(name))[property]);""")
    check(scheme, colours, [colour] * 2)

browser.execute_script("""times = []; addEventListener("input", event => setTimeout(() => {
    document.body.offsetHeight; times.push(performance.now() - event.timeStamp); }), true);""")
for character in "01;00;00;02\b3" * 8:
    field.send_keys(character)
median = statistics.median(browser.execute_script("return times"))
assert median < 16, f"{median:.1f} ms from a key to its answer"
check("console", browser.get_log("browser"), [])
