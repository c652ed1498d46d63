"""What `cmake --install` lays down: the right files, which the desktop's own checkers accept and agree on.

usage: check_install.py BUILD_DIR VERSION
"""

import configparser
import gzip
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree as ElementTree

HERE = pathlib.Path(__file__).parent
APP = "com.qno.corvel"


class InstalledTree(unittest.TestCase):
    build = version = None

    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory(prefix="corvel-install-")
        cls.addClassCleanup(folder.cleanup)
        cls.prefix = pathlib.Path(folder.name) / "usr"
        run("cmake", "--install", cls.build, "--prefix", cls.prefix)
        cls.share = cls.prefix / "share"
        cls.files = sorted(str(path.relative_to(cls.prefix)) for path in cls.prefix.rglob("*") if not path.is_dir())

    def entry(self, path):
        parser = configparser.ConfigParser(interpolation=None, strict=True)
        parser.optionxform = str
        parser.read(self.share / path, encoding="utf-8")
        return parser

    def test_files_are_those_listed(self):
        self.assertEqual(self.files, (HERE / "installed-files.txt").read_text().split())

    def test_desktop_entry(self):
        run("desktop-file-validate", self.share / f"applications/{APP}.desktop")
        entry = self.entry(f"applications/{APP}.desktop")
        for action in entry["Desktop Entry"]["Actions"].strip(";").split(";"):
            section = entry[f"Desktop Action {action}"]
            self.assertTrue(section["Name"] and section["Name[pl]"])
            self.assertTrue(in_sources(f'add_action("{action}"'), f"the program has no action {action}")

    def test_desktop_search_finds_the_program(self):
        provider = self.entry(f"gnome-shell/search-providers/{APP}.search-provider.ini")["Shell Search Provider"]
        self.assertEqual((provider["BusName"], provider["DesktopId"]), (APP, f"{APP}.desktop"))
        self.assertTrue(in_sources(f'"{provider["ObjectPath"]}"'), "no object at that path")

    def test_metainfo(self):
        path = self.share / f"metainfo/{APP}.metainfo.xml"
        run("appstreamcli", "validate", "--no-net", path)
        component = ElementTree.parse(path).getroot()
        self.assertEqual(component.find("releases/release").get("version"), self.version)
        self.assertEqual(component.findtext("launchable"), f"{APP}.desktop")
        for element in component.iter("ul"):
            languages = [item.get("{http://www.w3.org/XML/1998/namespace}lang", "en") for item in element]
            self.assertEqual(languages.count("en"), languages.count("pl"), "a point in one language only")

    def test_changelog_begins_with_this_version(self):
        with gzip.open(self.share / "doc/qno-corvel/changelog.gz", "rt", encoding="utf-8") as changelog:
            self.assertEqual(re.match(r"qno-corvel \(([^)]+)\)", changelog.readline()).group(1), self.version)

    def test_bus_starts_the_installed_program(self):
        service = self.entry(f"dbus-1/services/{APP}.service")["D-BUS Service"]
        self.assertEqual(service["Name"], APP)
        program, option = service["Exec"].split()
        self.assertEqual(pathlib.Path(program), self.prefix / "bin/qno-corvel")
        self.assertEqual(option, "--gapplication-service")

    def test_desktop_knows_the_file_types(self):
        run("update-mime-database", self.share / "mime")
        types = subprocess.run(
            ["/usr/bin/python3", "-c", "from gi.repository import Gio\n"
             "for name in ('a.md', 'a.mdown', 'a.qnotheme'): print(Gio.content_type_guess(name, None)[0])"],
            env={**os.environ, "XDG_DATA_DIRS": f"{self.share}:/usr/share"},
            check=True, capture_output=True, text=True).stdout.split()
        self.assertEqual(types, ["text/markdown", "text/markdown", "application/x-qnotheme"])

    def test_manual_pages_have_no_fault(self):
        for page in self.share.glob("man/**/*.gz"):
            text = gzip.decompress(page.read_bytes())
            done = subprocess.run(["groff", "-man", "-Kutf8", "-Tutf8", "-ww", "-z"], input=text, capture_output=True)
            self.assertEqual((done.returncode, done.stderr.decode()), (0, ""), page.name)


def run(*command):
    done = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
    if done.returncode != 0:
        raise AssertionError(f"{command[0]}: {done.stdout}")


def in_sources(text):
    files = (HERE.parent.parent / "src/ui").glob("*.*")
    return any(text in path.read_text(encoding="utf-8") for path in files if path.suffix in (".h", ".cpp"))


if __name__ == "__main__":
    InstalledTree.build, InstalledTree.version = sys.argv[1:3]
    unittest.main(argv=sys.argv[:1])
