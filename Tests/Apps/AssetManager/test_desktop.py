# SPDX-License-Identifier: Apache-2.0
"""The files by which desktops find the program say what their checkers accept, and name each other rightly."""

import configparser
import os
import pathlib
import subprocess
import xml.etree.ElementTree

DESKTOP = pathlib.Path(__file__).resolve().parents[3] / "Apps/AssetManager/Desktop"
ID = "kxassets-asset-manager"
ENTRY = DESKTOP / f"{ID}.desktop"
METAINFO = DESKTOP / f"{ID}.metainfo.xml"
ICON = DESKTOP / f"{ID}.svg"


def output_of(*command):
    return subprocess.run(command, capture_output=True, text=True)


def entry():
    parser = configparser.ConfigParser(interpolation=None)
    parser.optionxform = str
    parser.read(ENTRY)
    return parser["Desktop Entry"]


def test_entry_is_valid():
    result = output_of("desktop-file-validate", ENTRY)

    assert (result.returncode, result.stdout + result.stderr) == (0, "")


def test_metainfo_is_valid():
    # The project owns no domain that its identifier could begin with.
    result = output_of("appstreamcli", "validate", "--no-net", "--override=cid-desktopapp-is-not-rdns=info", METAINFO)

    assert result.returncode == 0, result.stdout


def test_name_each_other():
    root = xml.etree.ElementTree.parse(METAINFO).getroot()

    assert root.findtext("id") == ID
    assert root.findtext("launchable") == ENTRY.name
    assert root.findtext("project_license") == "Apache-2.0"
    assert entry()["Icon"] == ICON.stem
    assert entry()["Exec"].split()[0] == root.findtext("provides/binary") == "asset-manager"


def test_speak_german_too():
    language = "{http://www.w3.org/XML/1998/namespace}lang"
    summaries = [one.get(language) for one in xml.etree.ElementTree.parse(METAINFO).getroot().iter("summary")]

    assert summaries == [None, "de"]
    assert entry()["Comment[de]"]


def test_install_where_desktops_look(tmp_path):
    build = os.environ["KX_BUILD"]
    result = output_of("cmake", "--install", f"{build}/Apps/AssetManager", "--prefix", tmp_path)

    assert result.returncode == 0, result.stderr
    for file in (f"applications/{ENTRY.name}", f"metainfo/{METAINFO.name}", f"icons/hicolor/scalable/apps/{ICON.name}"):
        assert (tmp_path / "share" / file).is_file(), file
    assert (tmp_path / "bin/asset-manager").is_file()
