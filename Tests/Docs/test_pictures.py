# SPDX-License-Identifier: Apache-2.0
"""Every picture that a document shows is there and can be seen, every picture is shown, and the script makes them all."""

import pathlib
import re
import struct

import pytest

ROOT = pathlib.Path(__file__).resolve().parents[2]
DOCUMENTS = sorted([*ROOT.glob("*.md"), *ROOT.glob("Docs/**/*.md")])
PICTURES = sorted([*ROOT.glob("Docs/images/*"), *ROOT.glob("Docs/pictures/*")])
SCRIPT = (ROOT / "Docs/screenshots.sh").read_text()


def named(document):
    """The pictures that it shows, by Markdown or by HTML, without those of other places."""
    text = document.read_text()
    found = re.findall(r"!\[[^\]]*\]\(([^)\s]+)\)", text) + re.findall(r'<img[^>]*src="([^"]+)"', text)
    return [document.parent / name for name in found if "://" not in name]


def shown():
    return {picture.resolve() for document in DOCUMENTS for picture in named(document)}


def test_documents_show_pictures():
    assert len(named(ROOT / "README.md")) > 8


@pytest.mark.parametrize("document", DOCUMENTS, ids=lambda document: str(document.relative_to(ROOT)))
def test_what_a_document_shows_is_there(document):
    for picture in named(document):
        data = picture.read_bytes()
        assert data.startswith(b"\x89PNG\r\n\x1a\n"), picture
        width, height = struct.unpack(">II", data[16:24])
        assert width >= 400 and height >= 200, picture


@pytest.mark.parametrize("picture", PICTURES, ids=lambda picture: picture.name)
def test_each_picture_is_shown(picture):
    assert picture in shown()


def test_has_the_window_in_both_languages_and_appearances():
    names = {picture.name for picture in shown()}

    assert {"window-light.png", "window-dark.png", "window-light-de.png", "window-dark-de.png"} <= names


@pytest.mark.parametrize("sheet", ["panels", "dialogs"])
def test_has_sheets_in_both_languages_and_appearances(sheet):
    names = {picture.name for picture in shown()}

    assert {f"{sheet}-{appearance}-{language}.png" for appearance in ("light", "dark") for language in ("en", "de")} <= names


def test_the_script_takes_each_view_that_there_is():
    source = (ROOT / "Apps/AssetManager/Screenshot.cpp").read_text()
    body = source[source.index("QStringList Screenshot::views()"):]
    views = re.findall(r'"(\w+)"', body[:body.index("\n}")])
    assert len(views) >= 12
    taken = " ".join(re.findall(r"^ *sheet (.*)$", SCRIPT, re.MULTILINE)).split()

    assert [view for view in views if view not in taken] == []


@pytest.mark.parametrize("picture", sorted((ROOT / "Docs/images").glob("*.png")), ids=lambda picture: picture.name)
def test_the_script_makes_the_picture(picture):
    made = re.findall(r"^ *keep (\S+)", SCRIPT, re.MULTILINE) + re.findall(r'-o "\$images/(\w+)\.png"', SCRIPT)
    sheets = re.findall(r"^ *sheet (\S+)", SCRIPT, re.MULTILINE)

    assert picture.stem in made or picture.stem.split("-")[0] in sheets
