# SPDX-License-Identifier: Apache-2.0
"""The catalogues hold every text of the sources, and translate all of them."""

import pathlib
import re
import shutil
import subprocess
import xml.etree.ElementTree

import pytest

TRANSLATIONS = pathlib.Path(__file__).resolve().parents[2] / "Translations"
NAMES = ["kxassets_de.ts", "kxassets_en.ts"]


def messages(file):
    """Context, source, whether it has plural forms, and the translation element of each text."""
    for context in xml.etree.ElementTree.parse(file).getroot().iter("context"):
        for message in context.iter("message"):
            yield (context.findtext("name"), message.findtext("source"), message.get("numerus") == "yes",
                   message.find("translation"))


def forms(translation):
    return [form.text or "" for form in translation.iter("numerusform")] or [translation.text or ""]


def placeholders(text):
    return sorted(set(re.findall(r"%L?(?:\d+|n)", text)))


def mnemonics(text):
    return len(re.findall(r"&[^& ]", text))


@pytest.fixture(params=NAMES)
def catalogue(request):
    return TRANSLATIONS / request.param


def test_hold_all_texts_and_no_others(tmp_path):
    for name in NAMES:
        shutil.copy(TRANSLATIONS / name, tmp_path)

    result = subprocess.run([TRANSLATIONS / "update.sh", tmp_path], capture_output=True, text=True)

    assert (result.returncode, result.stderr) == (0, "")
    for name in NAMES:
        assert (tmp_path / name).read_text() == (TRANSLATIONS / name).read_text(), "call Translations/update.sh"


def test_find_the_texts_of_every_folder():
    contexts = {context for context, *_ in messages(TRANSLATIONS / "kxassets_de.ts")}

    assert contexts >= {"MainWindow", "SceneActions", "kxAssetCategory", "kxAssetManagerModule", "kxMaterials",
                        "kxMultipleEnvironmentsDialog", "kxViewport", "DirectoryMove", "main"}


def test_are_finished(catalogue):
    for context, source, _, translation in messages(catalogue):
        assert translation.get("type") is None, f"{context}: {source}"
        assert all(forms(translation)), f"{context}: {source}"


def test_keep_placeholders(catalogue):
    for context, source, _, translation in messages(catalogue):
        for form in forms(translation):
            assert placeholders(form) == placeholders(source), f"{context}: {source}"


def test_have_both_plural_forms(catalogue):
    for context, source, has_plural, translation in messages(catalogue):
        assert len(forms(translation)) == (2 if has_plural else 1), f"{context}: {source}"
        assert not any("(s)" in form for form in forms(translation)), f"{context}: {source}"


def test_keep_mnemonics_and_line_ends(catalogue):
    for context, source, _, translation in messages(catalogue):
        for form in forms(translation):
            assert mnemonics(form) == mnemonics(source), f"{context}: {source}"
            assert form.count("\n") == source.count("\n"), f"{context}: {source}"
            assert form.startswith(" ") == source.startswith(" "), f"{context}: {source}"


def test_english_has_plural_forms_only():
    assert all(has_plural for _, _, has_plural, _ in messages(TRANSLATIONS / "kxassets_en.ts"))


def test_german_calls_one_thing_by_one_name():
    terms = {"librar": "bibliothek", "undo": "rückgängig", "plate": "plate", "favourite": "favorit"}
    for context, source, _, translation in messages(TRANSLATIONS / "kxassets_de.ts"):
        for english, german in terms.items():
            if english in source.lower():
                assert all(german in form.lower() for form in forms(translation)), f"{context}: {source}"

def test_german_does_not_address_people():
    for context, source, _, translation in messages(TRANSLATIONS / "kxassets_de.ts"):
        for form in forms(translation):
            assert not re.search(r"\b(Sie|Ihre?[mnrs]?|[Dd]u|[Dd]eine?[mnrs]?)\b", form), f"{context}: {source}"
