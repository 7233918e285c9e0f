#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
# Copyright (c) 2026 The Shared authors
"""Runs the map report as its users do: exit status, one line on standard error, an untouched output folder."""

import json
import os
import socket
import sys

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "common"))
from program_test import DATA, ProgramTest, main  # noqa: E402

SQUARE = b"0, 0\n0, 4\n4, 4\n4, 0\n"
POINTS = b"latitude,longitude,magnitude\n1,1,5\n"
CITIES = b"name,country,lat,lon,population\nX,XX,2,2,1000\n"

# name, option that gets the file, content (None: no file, a folder where it ends in "/"), what the line holds
BAD_INPUTS = [
    ("missing.txt", "--map", None, "missing.txt"),
    ("folder/", "--map", None, "folder"),
    ("folder/", "--points", None, "folder"),
    ("empty.csv", "--points", b"", "empty.csv:1:"),
    ("mark-only.csv", "--cities", b"\xff\xfe", "mark-only.csv:1:"),
    ("odd.csv", "--cities", b"\xff\xfen\0a\0m\0e\0\n\0x", "odd.csv:2:"),
    ("zeros.csv", "--points", POINTS + b"\0\0\0\n", "zeros.csv:3:"),
    ("cut.csv", "--cities", CITIES + "Κιλκίς,GR,1,1,1\nΆ".encode()[:-1], "cut.csv:4:"),
    ("count.txt", "--map", b"A\touter\t5\n" + SQUARE + b"B\touter\t4\n" + SQUARE, "count.txt:6:"),
    ("short.txt", "--map", b"A\touter\t40\n" + SQUARE, "short.txt:5:"),
    ("hole.txt", "--map", b"A\thole\t4\n" + SQUARE, "hole.txt:1:"),
    ("number.txt", "--map", b"A\touter\t4\n0, 0\n0, x\n4, 4\n4, 0\n", "number.txt:3:"),
    ("number.csv", "--points", POINTS + b"1,east,2\n", "number.csv:3:"),
    ("row.csv", "--cities", CITIES + b"Y,YY,1\n", "row.csv:3:"),
    ("quote.csv", "--cities", CITIES + b'"Y,YY,1,1,1\n', "quote.csv:3:"),
    ("capital.csv", "--cities", b"name,lat,lon,capital\nA,1,1,yes\nB,2,2,maybe\n", "capital.csv:3: 'maybe'"),
    ("column.csv", "--points", b"lat,magnitude\n1,2\n", "column.csv:1:"),
    ("line.csv", "--points", POINTS + b"x" * 3_000_000, "line.csv:3:"),
    ("Ünï地.csv", "--points", POINTS + b"1,east,2\n", "Ünï地.csv:3:"),
]


class MapReport(ProgramTest):
    PROGRAM = "mapreport"

    def setUp(self):
        super().setUp()
        self.good = {"--map": self.write("good.txt", b"A\touter\t4\n" + SQUARE),
                     "--points": self.write("good.csv", POINTS),
                     "--cities": self.write("cities.csv", CITIES)}

    def run_inputs(self, *more, **inputs):
        options = dict(self.good, **{"--" + key: value for key, value in inputs.items()})
        pairs = [part for pair in options.items() for part in pair]
        return self.run_program(*pairs, "--out", self.out, *more)

    def test_bad_inputs_are_told_by_file_and_line(self):
        for name, option, content, part in BAD_INPUTS:
            with self.subTest(name=name, option=option):
                self.make(name, content)
                status, text = self.run_inputs(**{option[2:]: self.path(name)})
                self.assertEqual(1, status, text)
                self.assert_one_line(text, part)
                self.assertFalse(os.path.exists(self.out))

    def test_bad_input_leaves_old_outputs(self):
        os.mkdir(self.out)
        self.write("out/map.svg", b"old")
        status, _ = self.run_inputs(points=self.path("missing.csv"))
        self.assertEqual(1, status)
        self.assertEqual(["map.svg"], os.listdir(self.out))
        with open(self.path("out/map.svg"), "rb") as file:
            self.assertEqual(b"old", file.read())

    def test_output_folder_that_cannot_be(self):
        self.out = self.path("good.csv/out")
        status, text = self.run_inputs()
        self.assertEqual(1, status)
        self.assert_one_line(text, "out")

    def test_wrong_usage(self):
        for arguments in ([], ["--out"], ["--out", self.out, "--window", "1,2"], ["--nothing"]):
            with self.subTest(arguments=arguments):
                status, text = self.run_program(*arguments)
                self.assertEqual(2, status, text)
                self.assert_one_line(text, "--help")

    def test_help_and_version(self):
        status, text = self.run_program("--help")
        self.assertEqual(0, status)
        for option in ("--map", "--points", "--cities", "--window", "--out", "--quiet", "--save", "--load", "--undo",
                       "--log", "--remote-log", "--last", "--remember", "--colors", "--config", "--rivers", "--clip",
                       "--union-continent", "--geojson", "--dashes", "--attributes", "--track", "--text",
                       "--face"):
            self.assertIn(option, text)
        status, text = self.run_program("--version")
        self.assertEqual(0, status)
        self.assertRegex(text, r"^mapreport \d+\.\d+\.\d+\n$")

    def test_success_prints_the_report_and_nothing_else(self):
        status, text = self.run_inputs()
        self.assertEqual(0, status, text)
        self.assertRegex(text, r"^.*report\.html\n$")
        self.assertEqual(["map.svg", "overview.svg", "report.html"], sorted(os.listdir(self.out)))
        status, text = self.run_inputs("--quiet")
        self.assertEqual((0, ""), (status, text))

    def test_multi_byte_code_page(self):
        cities = self.write("sjis.csv", CITIES + "東京都,JP,3,3,9000000\n".encode("cp932"))
        status, text = self.run_inputs("--cities-codepage", "932", cities=cities)
        self.assertEqual(0, status, text)
        with open(self.path("out/map.svg"), "rb") as file:
            self.assertIn("東京都".encode(), file.read())
        with open(self.path("out/report.html"), "rb") as file:
            self.assertIn(b"code page 932", file.read())

    def outputs(self):
        """Returns the bytes of the outputs by their names."""
        contents = {}
        for name in sorted(os.listdir(self.out)):
            with open(os.path.join(self.out, name), "rb") as file:
                contents[name] = file.read()
        return contents

    def test_a_loaded_map_gives_the_same_report(self):
        saved = self.path("saved Ünï.map")
        status, text = self.run_inputs("--undo", "1", "--save", saved, "--title", "東京", "--colors", "#ffffff,#ff0000")
        self.assertEqual(0, status, text)
        before = self.outputs()
        self.assertIn(b"Taken back and done again: Color the countries by number of events.", before["report.html"])
        self.out = self.path("again")
        status, text = self.run_program("--load", saved, "--out", self.out)
        self.assertEqual(0, status, text)
        self.assertEqual(before, self.outputs())
        status, text = self.run_program("--load", saved, "--out", self.out, "--window", "1,1,3,3", "--undo", "9")
        self.assertEqual(0, status, text)
        self.assertEqual(3, self.outputs()["report.html"].count(b"<TD>Taken back</TD>") - 1)

    def test_a_damaged_saved_map_is_told(self):
        saved = self.path("saved.map")
        self.assertEqual(0, self.run_inputs("--save", saved)[0])
        with open(saved, "rb") as file:
            whole = file.read()
        damaged = bytes([*whole[:-50], whole[-50] ^ 4, *whole[-49:]])
        for name, content in (("cut", whole[:-7]), ("empty", b""), ("changed", damaged), ("other", b"name,lat\n" * 9)):
            with self.subTest(name=name):
                self.write("saved.map", content)
                status, text = self.run_program("--load", saved, "--out", self.path("never"))
                self.assertEqual(1, status, text)
                self.assert_one_line(text, "saved.map")
                self.assertFalse(os.path.exists(self.path("never")))

    def test_a_map_that_cannot_be_saved_leaves_everything(self):
        status, text = self.run_inputs("--save", self.path("missing/saved.map"))
        self.assertEqual(1, status)
        self.assert_one_line(text, "saved.map")
        self.assertFalse(os.path.exists(self.out))

    def clipped_names(self, *options, status=0):
        """Returns the names of the features that a run with `options` leaves, with their numbers of events."""
        geojson = self.path("areas.json")
        if os.path.exists(geojson):
            os.remove(geojson)
        result, text = self.run_inputs("--geojson", geojson, *options)
        self.assertEqual(status, result, text)
        if status != 0:
            self.assertFalse(os.path.exists(geojson))
            return text
        with open(geojson, encoding="utf-8") as file:
            features = json.load(file)["features"]
        return {f["properties"]["name"]: f["properties"].get("events") for f in features}

    def write_two_countries(self):
        self.good["--map"] = self.write("two.txt", b"A\touter\t4\n" + SQUARE + b"B\"\touter\t4\n4, 0\n4, 4\n8, 4\n8, 0\n")
        self.good["--attributes"] = self.write("two.csv", b'name,continent\nA,East\n"B""",East\nC,West\n')

    def test_a_map_is_clipped_to_what_names_an_area(self):
        self.write_two_countries()
        west = "POLYGON ((0 0, 2 0, 2 4, 0 4))"
        self.write("west.wkt", west.encode())
        self.write("east.json", b'\xef\xbb\xbf{"type":"Polygon","coordinates":[[[5,0],[6,0],[6,4],[5,0]]]}')
        rows = [((), {"A": 1, 'B"': 0}), (("--clip", west), {"A": 1}), (("--clip", "@" + self.path("west.wkt")), {"A": 1}),
                (("--clip", self.path("west.wkt")), {"A": 1}), (("--clip", "@" + self.path("east.json")), {'B"': 0}),
                (("--clip", 'b"'), {'B"': 0}), (("--clip", "MULTIPOLYGON (((9 9, 10 9, 9 10)))"), {})]
        for options, expected in rows:
            with self.subTest(options=options):
                self.assertEqual(expected, self.clipped_names(*options))
        for area, part in (("Atlantis", "'Atlantis'"), ("POLYGON ((0 0, 2 x))", "offset"), ("POLYGON EMPTY ()", "POLYGON"),
                           ("@" + self.path("none.wkt"), "none.wkt"), ("@" + self.good["--map"], "two.txt")):
            with self.subTest(area=area):
                self.assert_one_line(self.clipped_names("--clip", area, status=1), part)

    def test_the_countries_of_a_continent_are_united(self):
        self.write_two_countries()
        self.assertEqual({"East": None}, self.clipped_names("--union-continent", "east", "--undo", "1"))
        with open(self.path("areas.json"), encoding="utf-8") as file:
            ring = json.load(file)["features"][0]["geometry"]["coordinates"][0]
        corners = {tuple(point) for point in ring}
        self.assertLessEqual({(0, 0), (8, 0), (8, 4), (0, 4)}, corners)
        self.assertIn(b"are united: 1 ring", self.outputs()["report.html"])
        self.assert_one_line(self.clipped_names("--union-continent", "Atlantis", status=1), "It knows East.")

    def test_settings_come_from_a_file(self):
        self.write("map.ini", b"[Files]\nMap=good.txt\nPoints=good.csv\nCities=cities.csv\nTracks=one.gpx ; two.kml\n[Map]\nTitle=From a file\n"
                              b"Clip=A\n[Colors]\nSea=Light Sky Blue\n")
        self.write("one.gpx", b"<gpx><wpt lat='1' lon='1'><name>First</name></wpt></gpx>")
        self.write("two.kml", b"<kml><Placemark><name>Second</name><Point><coordinates>2,3</coordinates></Point></Placemark></kml>")
        status, text = self.run_program("--config", self.path("map.ini"), "--out", self.out)
        self.assertEqual(0, status, text)
        page = self.outputs()
        self.assertIn(b"<TITLE>From a file</TITLE>", page["report.html"])
        self.assertIn(b"Clipped to A.", page["report.html"])
        self.assertIn(b"#87cefa", page["map.svg"])
        self.assertIn(b"<TD>First</TD>", page["report.html"])
        self.assertIn(b"<TD>Second</TD>", page["report.html"])
        status, text = self.run_program("--config", self.path("map.ini"), "--out", self.out, "--title", "Mine")
        self.assertIn(b"<TITLE>Mine</TITLE>", self.outputs()["report.html"])
        self.write("map.ini", b"[Map]\nWindow=here\n")
        status, text = self.run_inputs("--config", self.path("map.ini"))
        self.assertEqual(1, status)
        self.assert_one_line(text, "map.ini: [Map] Window: 'here'")

    def test_only_a_run_that_asks_sees_what_was_remembered(self):
        window = "3\u00b0E to 5\u00b0E".encode("ascii", "xmlcharrefreplace")
        self.assertEqual(0, self.run_inputs("--window", "3,1,5,4", "--colors", "#010203,#040506", "--remember")[0])
        for options, seen in (((), False), (("--last",), True), (("--last", "--window", "0,0,9,9"), False)):
            with self.subTest(options=options):
                self.assertEqual(0, self.run_inputs(*options)[0])
                self.assertEqual(seen, window in self.outputs()["report.html"])
        self.assertEqual(0, self.run_inputs("--last", "--window", "0,0,9,9")[0])
        self.assertIn(b"#010203", self.outputs()["map.svg"], "the window is of the command line, the colors are not")

    def test_tracks_are_drawn_and_told(self):
        self.write("a.gpx", '<?xml version="1.0" encoding="UTF-16"?><x:gpx xmlns:x="u">'
                            '<x:wpt lat="2" lon="1"><x:name>Γ &lt; 山 &amp;amp;</x:name></x:wpt>'
                            '<x:trk><x:name>T</x:name><x:trkseg><x:trkpt lat="0" lon="0"/><x:trkpt lat="0" lon="1"/>'
                            '</x:trkseg></x:trk><x:rte><x:rtept lat="1" lon="1"/><x:rtept lat="3" lon="3"/></x:rte></x:gpx>'
                            .encode("utf-16"))
        self.write("b.kml", b"<kml><Placemark><LineString><coordinates>3,3 4,4</coordinates></LineString></Placemark></kml>")
        saved = self.path("saved.map")
        status, text = self.run_inputs("--track", self.path("a.gpx"), "--track", self.path("b.kml"), "--csv", "--save", saved,
                                       "--text", "portable")
        self.assertEqual(0, status, text)
        before = self.outputs()
        self.assertIn("Γ &lt; 山 &amp;amp;</text>".encode(), before["map.svg"])
        self.assertEqual(2, before["map.svg"].count(b'class="track route"'), "the route and its sample in the legend")
        self.assertIn(b"T,Track,2,111.195,,,,", before["tracks.csv"])
        self.assertIn("Γ < 山 &amp;,2,1,,".encode(), before["waypoints.csv"])
        for part in (b">Waypoints<", b">a.gpx<", b">b.kml<", b"UTF-16LE with mark", b"1 track, 1 route, 1 waypoint, 4 points"):
            self.assertIn(part, before["report.html"])
        status, text = self.run_program("--load", saved, "--out", self.out, "--csv")
        self.assertEqual((0, before), (status, self.outputs()), text)
        status, text = self.run_program("--load", saved, "--out", self.out, "--track", self.path("a.gpx"))
        self.assertEqual(2, status)
        self.assert_one_line(text, "--track")

    def test_bad_tracks_are_told_by_file_and_line(self):
        rows = [("missing.gpx", None, "missing.gpx"), ("folder/", None, "folder"), ("empty.gpx", b"", "empty.gpx:1:"),
                ("place.gpx", b"<gpx>\n<wpt lat='91' lon='0'/></gpx>", "place.gpx:2: The latitude '91' is not on the globe."),
                ("nan.gpx", b"<gpx>\n\n<wpt lat='NaN' lon='0'/></gpx>", "nan.gpx:3:"),
                ("empty.kml", b"<kml><Placemark>\n<Point><coordinates/></Point></Placemark></kml>", "empty.kml:2:"),
                ("cut.gpx", b"<gpx>\n<trk>", "cut.gpx', line 2: The file ends inside an element."),
                ("table.gpx", POINTS, "neither GPX nor KML")]
        for name, content, part in rows:
            with self.subTest(name=name):
                self.make(name, content)
                status, text = self.run_inputs("--track", self.path(name))
                self.assertEqual(1, status, text)
                self.assert_one_line(text, part)
                self.assertFalse(os.path.exists(self.out))

    def test_texts_are_math_text_in_the_mode_that_is_asked_for(self):
        title = r"{\b Big} & \i small\plain {\up40\fs60 2}"
        self.good["--cities"] = self.write("names.csv", CITIES + rb"a\b{c,YY,60,60,5" + b"\n")
        for mode, texts, paths in (("text", True, False), ("portable", True, False), ("outlines", False, True)):
            with self.subTest(mode=mode):
                status, text = self.run_inputs("--title", title, "--text", mode)
                self.assertEqual(0, status, text)
                svg, page = self.outputs()["map.svg"], self.outputs()["report.html"]
                self.assertEqual(texts, b"<text" in svg)
                self.assertEqual(paths, b'id="glyph1"' in svg)
                self.assertEqual(mode == "text", b"textLength" in svg)
                self.assertIn(b'<title id="title">Big &amp; small2</title>', svg)
                self.assertIn(b"<TITLE>Big &amp; small2</TITLE>", page)
                self.assertIn(b"font-style:italic", page)
                self.assertIn(b"a\\b{c", svg)
        for option, value, part in (("--title", "\\fs0", "fs0"), ("--title", "{\\b x", "Unbalanced"), ("--text", "huge", "'huge'")):
            with self.subTest(value=value):
                status, text = self.run_inputs(option, value)
                self.assertEqual(2, status, text)
                self.assert_one_line(text, part)
        self.write("map.ini", b"[Map]\nTitle=\\fs0\n")
        status, text = self.run_inputs("--config", self.path("map.ini"))
        self.assertEqual(1, status)
        self.assert_one_line(text, "map.ini: [Map] Title")

    def test_names_in_fifteen_scripts_and_capitals(self):
        status, text = self.run_inputs("--text", "portable", cities=os.path.join(DATA, "cities-scripts.csv"))
        self.assertEqual(0, status, text)
        svg = self.outputs()["map.svg"].decode()
        for name in ("القاهرة", "मुंबई", "北京", "さっぽろ", "서울", "Αθήνα", "Москва", "ירושלים", "กรุงเทพฯ", "ბათუმი", "Երևան",
                     "Reykjavík", "ວຽງຈັນ", "ⵔⴱⴰⵟ", "ᐃᖃᓗᐃᑦ"):
            self.assertIn(name + "</text>", svg)
        self.assertEqual(24, svg.count('"#marker-capital-'), "23 capitals and the one of the legend")

    def test_the_log_tells_the_run(self):
        log = self.path("run.log")
        status, text = self.run_inputs("--log", log)
        self.assertEqual(0, status, text)
        with open(log, "rb") as file:
            content = file.read()
        self.assertEqual(b"\xff\xfe", content[:2])
        lines = content.decode("utf-16").splitlines()
        for line in ("Operating System", "Enter Reading countries", "Exit Reading cities"):
            self.assertIn(line, lines)
        self.assertTrue(any(line.startswith("Done: Count the events of each country (1 event") for line in lines))
        status, _ = self.run_inputs("--log", log, points=self.path("missing.csv"))
        self.assertEqual(1, status)
        with open(log, "rb") as file:
            content = file.read().decode("utf-16")
        self.assertRegex(content, "Error: .*missing.csv")
        self.assertNotIn("Exit Reading events", content)
        status, text = self.run_inputs("--log", self.path("missing/run.log"))
        self.assertEqual(1, status)
        self.assert_one_line(text, "run.log")

    def test_log_lines_reach_the_collector(self):
        with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as collector:
            collector.bind(("127.0.0.1", 0))
            collector.settimeout(5)
            status, text = self.run_inputs("--remote-log", f"127.0.0.1:{collector.getsockname()[1]}")
            self.assertEqual(0, status, text)
            received = []
            while not received or "The run took" not in received[-1]:
                received.append(collector.recv(65536).decode("cp1252"))
        self.assertRegex(received[0], r"^<6> mapreport: Run of mapreport \d")
        self.assertEqual(4, len([line for line in received if "; state " in line]), received)
        status, text = self.run_inputs("--remote-log", "no-such-host.invalid:514")
        self.assertEqual(1, status)
        self.assert_one_line(text, "no-such-host.invalid")

    def test_real_data_twice_gives_the_same_bytes(self):
        outputs = []
        for _ in range(2):
            status, text = self.run_program("--map", os.path.join(DATA, "countries-110m.txt"), "--points",
                                            os.path.join(DATA, "earthquakes.csv"), "--cities",
                                            os.path.join(DATA, "cities-utf8.csv"), "--out", self.out)
            self.assertEqual(0, status, text)
            with open(self.path("out/map.svg"), "rb") as file:
                outputs.append(file.read())
        self.assertEqual(outputs[0], outputs[1])
        for name in ("Αθήνα", "Москва", "القاهرة", "東京都", "上海"):
            self.assertIn(name.encode(), outputs[0])


if __name__ == "__main__":
    main()
