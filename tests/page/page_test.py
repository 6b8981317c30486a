#!/usr/bin/python3
"""The page in a real browser.

  page_test.py TOOL EXAMPLES [TEST...]
"""

import json
import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

sys.dont_write_bytecode = True
sys.path.insert(0, str(pathlib.Path(__file__).parent))

import accessibility  # noqa: E402
from browser import Browser, Keys  # noqa: E402

TOOL, EXAMPLES = pathlib.Path(sys.argv[1]).resolve(), pathlib.Path(sys.argv[2]).resolve()
RF_STATUS = "LINAC.RF/LLRF.CONTROLLER/RF.A1/STATUS"
RF_STATUS_ADDRESS = "#channels?card=LINAC.RF%2FLLRF.CONTROLLER%2FRF.A1%2FSTATUS"

HOSTILE = "</script><script>window.hacked=1</script><img src=x onerror=window.hacked=2>'\"`${window.hacked=3}@script@\\"


def make_page(directory, name, *arguments, code=0):
    """Runs in the directory, so that files are called what they are called there."""
    path = pathlib.Path(directory, name)
    result = subprocess.run([TOOL, "page", "-o", str(path), *arguments], cwd=directory, capture_output=True, text=True,
                            env={**os.environ, "LC_ALL": "C.UTF-8", "SOURCE_DATE_EPOCH": "1763769600"})
    assert result.returncode == code, result.stderr
    return path


class PageTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        cls.directory = pathlib.Path(cls.folder.name)
        for example in ("channels/channels.xml", "channels/variables.xml", "channels/linac.xml", "cameras/area_scan.xml",
                        "event_lists/orbit_feedback.xml", "dictionaries/linac.xml"):
            kind, file = example.split("/")
            cls.directory.joinpath(f"{kind}_{file}").write_bytes(EXAMPLES.joinpath(example).read_bytes())
        changed = cls.directory.joinpath("channels_channels.xml").read_text("latin1")
        changed = changed.replace("<UNITS>MV</UNITS>", "<UNITS>kV</UNITS>").replace("<DESC>bunch charge</DESC>", "<DESC>charge</DESC>")
        changed = changed.replace("<BIT_NAME>QUENCH</BIT_NAME>", "<BIT_NAME>QUENCHED</BIT_NAME>").replace("OTR1.L1/IMAGE<", "OTR2.L1/IMAGE<")
        cls.directory.joinpath("new.xml").write_text(changed, "latin1")
        wanted = ("<BMR><EVENT><TYPE>1</TYPE><SBLOCK>LINAC.DAQ/RF.SERVER.RF.A1<CHLIST><CHAN>RF.A1.STATUS</CHAN>"
                  "<CHAN>NOT.DESCRIBED</CHAN></CHLIST></SBLOCK></EVENT><EVENT><TYPE>4</TYPE></EVENT></BMR>")
        cls.directory.joinpath("wanted.xml").write_text(wanted)
        text = f"<![CDATA[{HOSTILE}]]>"
        short = "<![CDATA[</td></script><b>]]>"
        cls.directory.joinpath("<img src=x onerror=hacked=4>.xml").write_text(
            f"<CHANDESCRIPTIONS>\n<!-- {HOSTILE.replace('--', '')} -->\n<CHANNEL><EVTYPE>1</EVTYPE><PROP>{text}</PROP><NAME>{text}</NAME><DESC>{text}</DESC>"
            f"<SUBSYSTEM>{short}</SUBSYSTEM><BIT>3<BIT_NAME>{short}</BIT_NAME><BIT_DESCR>{short}</BIT_DESCR></BIT></CHANNEL>\n"
            "<CHANNEL><EVTYPE>1</EVTYPE><PROP>__proto__</PROP><NAME>constructor</NAME><DESC>Größe\u2028μ𝄞</DESC></CHANNEL>\n"
            "<CHANNEL><EVTYPE>1</EVTYPE><PROP>javascript:window.hacked=5</PROP></CHANNEL></CHANDESCRIPTIONS>", "utf-8")
        cls.mixed = make_page(cls.directory, "mixed.html", "channels_channels.xml", "channels_variables.xml", "wanted.xml",
                              "cameras_area_scan.xml", "dictionaries_linac.xml", "--title", "All of it")
        cls.one = make_page(cls.directory, "one.html", "channels_channels.xml")
        cls.linac = make_page(cls.directory, "linac.html", "channels_linac.xml")
        cls.changes = make_page(cls.directory, "changes.html", "--diff", "channels_channels.xml", "new.xml")
        cls.hostile = make_page(cls.directory, "hostile.html", "--title", HOSTILE, "<img src=x onerror=hacked=4>.xml")
        cls.browser = Browser()

    @classmethod
    def tearDownClass(cls):
        cls.browser.driver.quit()
        cls.folder.cleanup()

    def setUp(self):
        self.browser.resize(1400, 900)
        self.browser.scheme("light")
        self.browser.console()
        self.browser.requests()

    # Whatever a test did, nothing was complained about and nothing asked for.
    def tearDown(self):
        self.assertEqual(self.browser.console(), [])
        self.assertEqual(self.browser.requests(), [])

    def says(self, selector, text):
        self.browser.until(lambda: text in self.browser.text(selector), f"{text!r} in {selector}")

    # --- opening

    def test_opens_with_an_overview(self):
        self.browser.open(self.mixed)
        self.assertEqual(self.browser.driver.title, "All of it")
        self.assertEqual(self.browser.text("#title"), "All of it")
        self.assertIn("made 2025-11-22 00:00:00 UTC", self.browser.text("#about"))
        self.assertEqual(self.browser.texts("#views a"), [
            "Overview", "Channels 16", "Requested 3", "Events 2", "Dictionary 325", "Camera features 333"])
        self.assertIn("channels_variables.xml channel descriptions, variable dialect 8 channels 0 0".split(),
                      [row.split() for row in self.browser.texts(".overview table tr")])

    def test_pictures_count_and_lead_to_what_they_count(self):
        self.browser.open(self.one)
        self.assertEqual(self.browser.script(
            "return [...document.querySelectorAll('figure')].map((e) => e.querySelector('strong').textContent)"),
            ["Channels by subsystem and event type", "Channels by data type", "Channels by stream", "Values per sample"])
        self.browser.one("a[aria-label='RF, 4 ENV: 2']").send_keys(Keys.ENTER)
        self.says(".count", "2 of 8 channels")
        self.assertEqual(self.browser.column("name"), ["RF.A1.SP.AMPL", "RF.A1.SP.PHASE"])

    def test_findings_have_their_lines(self):
        self.directory.joinpath("odd.xml").write_text("<BMR>\n<EVENT><TYPE>1</TYPE><COLOUR>3</COLOUR></EVENT>\n</BMR>")
        page = make_page(self.directory, "odd.html", "odd.xml")
        self.browser.open(page)
        self.assertIn("odd.xml:2:", self.browser.text(".findings"))
        self.assertIn("COLOUR", self.browser.text(".findings"))
        self.browser.click("#views a[href='#findings']")
        self.assertEqual(self.browser.column("line")[0], "2")

    # --- searching, filtering, sorting

    def test_searches_names_properties_descriptions_and_bits_as_one_types(self):
        for typed, found in (("quench", ["RF.A1.STATUS"]), ("AMPL", ["RF.A1.SP.AMPL"]), ("ain/", []),
                             ("bpm/3", ["BPM.3.L1.X", "BPM.3.L1.Y"]), ("rf station", ["RF.A1.STATUS"]),
                             ("station rf state", ["RF.A1.STATUS"]), ("rms", ["BPM.3.L1.X", "BPM.3.L1.Y", "TOROID.1.L1", "OTR1.L1.IMAGE"])):
            with self.subTest(typed):
                self.browser.open(self.one, "#channels")
                self.browser.type("/", typed)
                self.says(".count", f"{len(found)} of 8 channels")
                self.assertEqual(self.browser.column("name"), found)

    def test_marks_what_was_searched_for(self):
        self.browser.open(self.one, "#channels?q=Horiz+BEAM")
        self.assertEqual(set(self.browser.texts(".grid mark")), {"horiz", "beam"})

    def test_facets_count_filter_and_combine(self):
        self.browser.open(self.one, "#channels")
        count = "return [...document.querySelectorAll('.facet')].find((e) => e.querySelector('input').dataset.facet === arguments[0])?.querySelector('.number').innerText"
        self.assertEqual(self.browser.script(count, "subsystem RF"), "3")
        self.browser.click("input[data-facet='event_type ENV']")
        self.says(".count", "3 of 8 channels")
        self.assertEqual(self.browser.script(count, "subsystem RF"), "2")
        self.assertEqual(self.browser.script(count, "event_type NORMAL"), "4")
        self.browser.click("input[data-facet='subsystem RF']")
        self.says(".count", "2 of 8 channels")
        self.assertEqual(self.browser.address(), "#channels?event_type=ENV&subsystem=RF")
        self.browser.click("input[data-facet='event_type NORMAL']")
        self.says(".count", "3 of 8 channels")
        self.browser.driver.back()
        self.says(".count", "2 of 8 channels")
        self.browser.click(".tools > button")
        self.says(".count", "8 channels")

    def test_facets_tell_who_has_bits_and_dimensions(self):
        self.browser.open(self.one, "#channels?has_bits=yes")
        self.assertEqual(self.browser.column("name"), ["RF.A1.STATUS"])
        self.browser.open(self.one, "#channels?has_dimensions=no&subsystem=RF")
        self.assertEqual(self.browser.column("name"), ["RF.A1.SP.AMPL", "RF.A1.SP.PHASE", "RF.A1.STATUS"])

    def test_sorts_by_a_click_and_numbers_as_numbers(self):
        channels = "".join(f"<CHANNEL><PROP>P{number}</PROP><NAME>BPM.{number}.X</NAME><DB_KEY>{key}</DB_KEY></CHANNEL>"
                           for number, key in ((10, 9), (2, 100), (1, 10), (20, 10)))
        self.directory.joinpath("unsorted.xml").write_text(f"<CHANDESCRIPTIONS>{channels}</CHANDESCRIPTIONS>")
        page = make_page(self.directory, "unsorted.html", "unsorted.xml")
        self.browser.open(page, "#channels?columns=name,db_key")
        self.assertEqual(self.browser.column("name"), ["BPM.10.X", "BPM.2.X", "BPM.1.X", "BPM.20.X"])
        name = ".grid th:first-child button"
        self.browser.click(name)
        self.assertEqual(self.browser.column("name"), ["BPM.1.X", "BPM.2.X", "BPM.10.X", "BPM.20.X"])
        self.assertEqual(self.browser.address(), "#channels?sort=name&columns=name%2Cdb_key")
        self.browser.click(name)
        self.assertEqual(self.browser.column("name"), ["BPM.20.X", "BPM.10.X", "BPM.2.X", "BPM.1.X"])
        self.assertEqual(self.browser.one(".grid th").get_attribute("aria-sort"), "descending")
        self.browser.click(name)
        self.assertEqual(self.browser.one(".grid th").get_attribute("aria-sort"), "none")
        self.browser.click(".grid th:last-child button")
        self.assertEqual(self.browser.column("DB key"), ["9", "10", "10", "100"])

    def test_columns_are_chosen(self):
        self.browser.open(self.one, "#channels")
        self.browser.click(".menu summary")
        self.browser.click(".menu input[value=server_block]")
        self.browser.click(".menu input[value=property]")
        self.assertEqual(self.browser.column("server block")[0], "LINAC.DAQ/BPM.SERVER.L1")
        self.assertIn("server_block", self.browser.address())
        address = self.browser.address()
        self.browser.open(self.one, address)
        self.assertNotIn("property", self.browser.texts(".grid th"))
        self.assertIn("server block", self.browser.texts(".grid th"))

    def test_a_view_sent_to_a_colleague_is_the_same_view(self):
        self.browser.open(self.one, "#channels?q=set+point&subsystem=RF&sort=-name&columns=name,units")
        self.assertEqual(self.browser.column("name"), ["RF.A1.SP.PHASE", "RF.A1.SP.AMPL"])
        self.assertEqual(self.browser.column("units"), ["deg", "MV"])
        self.assertEqual(self.browser.one("#search").get_attribute("value"), "set point")

    def test_an_address_of_nothing_shows_what_there_is(self):
        self.browser.open(self.one, "#nonsense?x=%zz&sort=-&columns=,,&card=")
        self.assertEqual(self.browser.text("#views a[aria-current]"), "Overview")
        self.browser.open(self.one, "#channels?subsystem=NONE&sort=nothing&columns=nothing")
        self.says(".count", "0 of 8 channels")
        self.browser.open(self.one, "#channels?card=NOBODY")
        self.says(".card", "No channel of this page is called NOBODY.")

    # --- the card

    def test_card_tells_everything_about_a_channel(self):
        self.browser.open(self.one, RF_STATUS_ADDRESS)
        card = self.browser.text(".card")
        for text in ("RF.A1.STATUS", RF_STATUS, "state of the RF station", "1 NORMAL", "41 1CHAN_2010", "LINAC.DAQ/RF.SERVER.RF.A1",
                     "4113", "channels_channels.xml:83", "klystron delivers power"):
            self.assertIn(text, card)
        self.says("pre", "<PROP>LINAC.RF/LLRF.CONTROLLER/RF.A1/STATUS</PROP>")
        lines = self.browser.text("pre").split("\n")
        self.assertEqual([lines[0], lines[1].strip(), lines[-1]], ["<CHANNEL>", "<EVTYPE>1</EVTYPE>", "</CHANNEL>"])

    def test_place_is_the_line_of_the_record(self):
        text = self.directory.joinpath("channels_linac.xml").read_text("latin1").split("\n")
        self.browser.open(self.linac, "#channels?columns=name,line&sort=-line")
        line = int(self.browser.column("line")[0])
        self.assertEqual(text[line - 1].strip(), "<CHANNEL>")
        self.assertIn(self.browser.column("name")[0], "".join(text[line - 1:]))

    def test_card_shows_dimensions_with_their_statistics(self):
        self.browser.open(self.one, "#channels?card=LINAC.DIAG%2FCAMERA%2FOTR1.L1%2FIMAGE")
        rows = [" ".join(row.split()) for row in self.browser.texts(".card .rows tr")]
        self.assertIn("0 x horizontal position on the screen mm", rows)
        self.assertIn("1 rms height of the spot mm", rows)

    def test_decodes_a_value(self):
        self.browser.open(self.one, RF_STATUS_ADDRESS)
        for typed, told in (("0x2B", "set: RF_ON, FEEDBACK, QUENCH, MODULATOR"), ("43", "set: RF_ON, FEEDBACK, QUENCH, MODULATOR"),
                            ("0b1000", "set: QUENCH"), ("0", "no bit is set"), ("0x100", "no named bit is set; without a name: 8"),
                            ("-2147483648", "no named bit is set; without a name: 31"), ("0x1 0000", "without a name: 16"),
                            ("2B", "Not a number of 32 bits"), ("0x100000000", "Not a number of 32 bits"), ("", "")):
            with self.subTest(typed):
                self.browser.one("#value").clear()
                self.browser.one("#value").send_keys(typed)
                self.says("#value-set", told)
        self.browser.one("#value").send_keys("0x2B")
        self.assertEqual(self.browser.text("#value-forms"), "0x2B = 43 = 0b101011")
        pressed = self.browser.script("return [...document.querySelectorAll('.bit[aria-pressed=true]')].map((e) => e.dataset.bit)")
        self.assertEqual(pressed, ["5", "3", "1", "0"])
        self.assertTrue(self.browser.address().endswith("&value=0x2B"))
        self.browser.click(".bit[data-bit='2']")
        self.says("#value-set", "set: RF_ON, FEEDBACK, FEEDFORWARD, QUENCH, MODULATOR")
        self.assertEqual(self.browser.one("#value").get_attribute("value"), "0x2F")

    def test_bits_are_described_on_focus(self):
        self.browser.open(self.one, RF_STATUS_ADDRESS)
        self.browser.script("document.querySelector('.bit[data-bit=\"3\"]').focus()")
        self.says(".bit-told", "Bit 3 QUENCH: quench detected in a cavity of the module")

    def test_copies(self):
        self.browser.command("Browser.grantPermissions", permissions=["clipboardReadWrite", "clipboardSanitizedWrite"])
        self.browser.open(self.one, RF_STATUS_ADDRESS)
        self.says("pre", "<CHANNEL>")
        for label, text in (("Copy property", RF_STATUS), ("Copy name", "RF.A1.STATUS"), ("Copy place", "channels_channels.xml:83")):
            button = self.browser.driver.find_element("xpath", f"//button[.='{label}']")
            button.click()
            self.browser.until(lambda: button.text == "Copied", label)
            self.assertEqual(self.browser.driver.execute_async_script("navigator.clipboard.readText().then(arguments[0])"), text)

    def test_prints_the_card(self):
        self.browser.open(self.one, RF_STATUS_ADDRESS + "&value=0x2B")
        self.says("pre", "<CHANNEL>")
        pdf = self.directory.joinpath("card.pdf")
        pdf.write_bytes(self.browser.print_pdf())
        text = subprocess.run(["pdftotext", "-layout", pdf, "-"], capture_output=True, text=True, check=True).stdout
        for expected in ("RF.A1.STATUS", "QUENCH", "set: RF_ON, FEEDBACK, QUENCH, MODULATOR", "channels_channels.xml:83"):
            self.assertIn(expected, text)
        self.assertNotIn("TOROID.1.L1", text)

    def test_prints_the_table(self):
        self.browser.open(self.one, "#channels")
        pdf = self.directory.joinpath("table.pdf")
        pdf.write_bytes(self.browser.print_pdf())
        text = subprocess.run(["pdftotext", "-layout", pdf, "-"], capture_output=True, text=True, check=True).stdout
        self.assertIn("TOROID.1.L1", text)

    def test_links_to_what_other_documents_say(self):
        self.browser.open(self.mixed, RF_STATUS_ADDRESS)
        self.assertIn("channels_variables.xml:", self.browser.text(".card"))
        self.assertIn("1 NORMAL, LINAC.DAQ/RF.SERVER.RF.A1", self.browser.text(".card"))

    # --- the other kinds

    def test_requested_channels_are_linked(self):
        self.browser.open(self.mixed, "#requests")
        self.assertEqual(self.browser.column("channel"), ["RF.A1.STATUS", "NOT.DESCRIBED", "all channels"])
        self.assertEqual(self.browser.column("described as"), ["state of the RF station", "", ""])
        self.assertEqual(len(self.browser.all(".grid td a")), 1)
        self.browser.click(".grid td a")
        self.says("#card-title", "RF.A1.STATUS")

    def test_dictionary_and_camera_are_searched(self):
        self.browser.open(self.mixed, "#entries?q=pressure")
        self.assertTrue(all("PRESSURE" in text for text in self.browser.column("property")))
        self.browser.open(self.mixed, "#features?q=serial+number")
        self.assertEqual(self.browser.column("name"), ["DeviceSerialNumber"])
        self.browser.type(Keys.TAB)
        self.browser.open(self.mixed, "#features?card=DeviceSerialNumber")
        self.says(".card", "Engraved on the housing and fixed for the life of the camera.")
        self.says("pre", "<PvRename>ID.SERIAL</PvRename>")

    # --- what changed

    def test_changes_field_by_field(self):
        self.browser.open(self.changes)
        self.assertEqual(self.browser.text("#views a[aria-current]"), "Changes 5")
        self.browser.click("input[data-facet='field units']")
        self.says(".count", "1 of 5 changes")
        self.assertEqual(self.browser.column("before") + self.browser.column("after"), ["MV", "kV"])
        self.browser.click(".grid td a")
        self.says("#card-title", "RF.A1.SP.AMPL")
        self.assertIn("changed units MV → kV", " ".join(self.browser.text(".changed-list").split()))
        self.browser.open(self.changes, "#changes?change=removed")
        self.assertEqual(self.browser.column("key"), ["LINAC.DIAG/CAMERA/OTR1.L1/IMAGE"])
        self.browser.open(self.changes, "#changes?field=name")
        self.assertEqual(self.browser.column("inside"), ["bit 3"])
        self.browser.open(self.changes, "#channels?change=added")
        self.assertEqual(self.browser.column("property"), ["LINAC.DIAG/CAMERA/OTR2.L1/IMAGE"])

    def test_overview_tells_how_much_changed(self):
        self.browser.open(self.changes, "#overview")
        tiles = [" ".join(tile.split()) for tile in self.browser.texts(".tile")]
        self.assertEqual(tiles, ["8 channels", "1 channel added", "1 channel removed", "3 channels changed"])

    # --- five questions of somebody who has never seen the page, as docs/page.md tells them; and in how
    # many keystrokes and clicks they are answered

    def steps(self, *keys, click=None):
        for key in keys:
            self.browser.type(*key)
        if click:
            self.browser.click(click)
        return sum(map(len, keys)) + (1 if click else 0)

    def test_question_which_channel_has_half_this_description(self):
        self.browser.open(self.one)
        steps = self.steps("/", "radiation")
        self.assertEqual((steps, self.browser.column("name")), (10, ["OTR1.L1.IMAGE"]))

    def test_question_which_channels_of_rf_have_event_type_env(self):
        self.browser.open(self.one)
        self.browser.one("a[aria-label='RF, 4 ENV: 2'] text").click()
        self.assertEqual(self.browser.column("name"), ["RF.A1.SP.AMPL", "RF.A1.SP.PHASE"])

    def test_question_what_does_a_value_mean(self):
        self.browser.open(self.one)
        steps = self.steps("/", "a1.status", Keys.ENTER, "v", "0x2B")
        self.says("#value-set", "set: RF_ON, FEEDBACK, QUENCH, MODULATOR")
        self.assertEqual(steps, 16)

    def test_question_which_channels_changed_their_units(self):
        self.browser.open(self.changes)
        steps = self.steps(click="input[data-facet='field units']")
        self.assertEqual((steps, self.browser.column("key")), (1, ["LINAC.RF/LLRF.CONTROLLER/RF.A1/SP.AMPL"]))

    def test_question_where_is_it_defined(self):
        self.browser.open(self.one)
        steps = self.steps("/", "otr1", Keys.ENTER)
        self.assertEqual((steps, self.browser.text("#place")), (6, "channels_channels.xml:113"))

    # --- by keyboard alone

    def test_keyboard_alone(self):
        self.browser.open(self.one)
        self.browser.type("/")
        self.assertEqual(self.browser.focused(), "search")
        self.browser.type("set point", Keys.ARROW_DOWN)
        self.assertEqual(self.browser.focused(), "grid")
        self.browser.type(Keys.ARROW_DOWN, Keys.ENTER)
        self.says("#card-title", "RF.A1.SP.PHASE")
        self.assertEqual(self.browser.focused(), "card-title")
        self.browser.type("]")
        self.says("#card-title", "Q2.L1.SP")
        self.browser.type(Keys.ESCAPE)
        self.assertEqual(self.browser.focused(), "grid")
        self.assertEqual(self.browser.all(".card"), [])
        self.browser.type("/", Keys.ESCAPE)
        self.says(".count", "8 channels")
        self.browser.type("quench", Keys.ENTER)
        self.browser.type("v", "0x8")
        self.says("#value-set", "set: QUENCH")
        self.browser.type(Keys.TAB, Keys.SPACE)
        self.assertEqual(self.browser.script("return document.activeElement.dataset.bit"), "5")
        self.says("#value-set", "set: QUENCH, MODULATOR")
        self.browser.type("?")
        self.assertEqual(self.browser.script("return document.querySelector('dialog').open"), True)
        self.browser.type(Keys.ESCAPE, "1")
        self.assertEqual(self.browser.text("#views a[aria-current]"), "Overview")

    def test_tab_reaches_everything_and_shows_where_it_is(self):
        self.browser.open(self.one, RF_STATUS_ADDRESS)
        self.browser.script("document.getElementById('skip').focus()")
        reached = ["skip"]
        for _ in range(120):
            self.browser.type(Keys.TAB)
            name, outline = self.browser.script(
                "const e = document.activeElement, s = getComputedStyle(e), c = e.querySelector?.('.current');"
                "if (e === document.body) return ['BODY', true];"
                "return [e.id || e.dataset.facet || e.dataset.bit || e.innerText?.slice(0, 20) || e.tagName,"
                " s.outlineStyle !== 'none' || (c && getComputedStyle(c).boxShadow !== 'none')]")
            if name in reached[:1] or name == "BODY":
                break
            reached.append(name)
            self.assertTrue(outline, f"{name} does not show that it has the focus")
        for expected in ("skip", "help-button", "search", "subsystem RF", "value", "3"):
            self.assertIn(expected, reached)

    def test_the_table_has_a_current_row_for_screen_readers(self):
        self.browser.open(self.linac, "#channels")
        self.browser.type("/", Keys.ARROW_DOWN, Keys.END)
        row = self.browser.script(
            "const t = document.querySelector('[role=grid]'); const r = document.getElementById(t.getAttribute('aria-activedescendant'));"
            "return [t.getAttribute('aria-rowcount'), r.getAttribute('aria-rowindex'), r.getBoundingClientRect().bottom <= innerHeight]")
        channels = self.browser.script("return zrt4.page.sheets.get('channels').rows")
        self.assertEqual(row, [str(channels + 1), str(channels + 1), True])

    # --- for everyone

    def test_everything_has_a_name(self):
        for page, address in ((self.mixed, ""), (self.mixed, RF_STATUS_ADDRESS), (self.mixed, "#requests"), (self.changes, "#changes")):
            with self.subTest(address):
                self.browser.open(page, address)
                self.assertEqual(accessibility.nameless(self.browser), [])

    def test_every_text_has_contrast(self):
        for scheme in ("light", "dark"):
            self.browser.scheme(scheme)
            for page, address in ((self.mixed, ""), (self.mixed, RF_STATUS_ADDRESS + "&value=0x2B"), (self.changes, "#overview"),
                                  (self.changes, "#channels?q=amp&card=LINAC.RF%2FLLRF.CONTROLLER%2FRF.A1%2FSP.AMPL")):
                with self.subTest(scheme + address):
                    self.browser.open(page, address)
                    self.assertEqual(accessibility.faint_texts(self.browser), [])

    def test_fits_a_phone_a_tablet_and_a_desk(self):
        for width in (360, 390, 768, 1400):
            self.browser.resize(width, 800)
            for address in ("", "#channels", RF_STATUS_ADDRESS, "#requests"):
                with self.subTest(f"{width} {address}"):
                    self.browser.open(self.mixed, address)
                    self.assertLessEqual(accessibility.wider_than_window(self.browser), 0)

    def test_a_phone_shows_one_thing_at_a_time(self):
        self.browser.resize(390, 800)
        self.browser.open(self.one, "#channels")
        self.browser.click(".grid tr[data-place='5']")
        self.says("#card-title", "RF.A1.STATUS")
        self.assertFalse(self.browser.one(".grid").is_displayed())
        self.browser.driver.find_element("xpath", "//button[.='Close']").click()
        self.assertTrue(self.browser.one(".grid").is_displayed())

    # --- safety

    def test_texts_of_a_document_are_texts(self):
        self.browser.open(self.hostile)
        self.assertEqual(self.browser.text("#title"), HOSTILE)
        self.assertEqual(self.browser.driver.title, HOSTILE)
        scripts = self.browser.script("return document.scripts.length")
        self.browser.open(self.hostile, "#channels")
        self.assertEqual(self.browser.column("name"), [HOSTILE, "constructor", ""])
        self.assertEqual(self.browser.column("description")[1], "Größe\u2028μ𝄞")
        self.browser.click(".grid tr[data-place='0']")
        self.says("#card-title", "<script>")
        self.says("pre", "<PROP><![CDATA[</script>")
        self.browser.type("/", "__proto__", Keys.ENTER)
        self.says("#card-title", "constructor")
        self.says("pre", "Größe")
        self.assertEqual(self.browser.script("return [window.hacked, document.scripts.length, document.images.length]"), [None, scripts, 0])
        source = self.hostile.read_text("utf-8")
        self.assertEqual(source.count("<script"), 3)
        self.assertEqual(source.count("</script>"), 3)

    def test_policy_allows_the_own_script_and_style_and_nothing_else(self):
        text = self.one.read_text("utf-8")
        policy = text.split('Content-Security-Policy" content="')[1].split('"')[0]
        rules = dict(rule.strip().split(" ", 1) for rule in policy.split(";"))
        self.assertEqual(sorted(rules), ["base-uri", "default-src", "form-action", "script-src", "style-src"])
        self.assertEqual([rules[name] for name in ("default-src", "base-uri", "form-action")], ["'none'"] * 3)
        for name in ("script-src", "style-src"):
            self.assertRegex(rules[name], r"^'sha256-[A-Za-z0-9+/]{43}='$")
        other = self.directory.joinpath("other.html")
        other.write_text(text.replace('"use strict";', '"use strict"; '), "utf-8")
        self.browser.driver.get(other.as_uri())
        self.assertEqual(self.browser.text("main"), "Unpacking …")
        self.assertEqual(len([line for line in self.browser.console() if "Content Security Policy" in line]), 1)

    def test_data_cannot_end_its_element(self):
        text = self.hostile.read_text("utf-8")
        for block in text.split('<script type="application/octet-stream"')[1:]:
            self.assertRegex(block.split(">", 1)[1].split("</script>")[0], r"^[A-Za-z0-9+/=\n]*$")


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], *sys.argv[3:]], verbosity=1)
