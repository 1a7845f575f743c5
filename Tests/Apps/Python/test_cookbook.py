# SPDX-License-Identifier: Apache-2.0
"""The scripts of the cook book, as a reader would save and run them."""
import json
import os
import pathlib
import re
import subprocess

import kx
import pytest

PROGRAM = os.environ["KXASSETS"]
BOOK = pathlib.Path(__file__).parents[3] / "Docs" / "python.md"


def scripts():
    blocks = re.findall(r"```python\n(# (\S+\.py) .*?)```", BOOK.read_text(encoding="utf-8"), re.DOTALL)
    return {name: text for text, name in blocks}


@pytest.fixture
def run(tmp_path):
    def start(name, *arguments, code=0):
        (tmp_path / name).write_text(scripts()[name], encoding="utf-8")
        done = subprocess.run(
            [PROGRAM, "script", name, "--", *map(str, arguments)],
            cwd=tmp_path,
            capture_output=True,
            text=True,
            timeout=120,
        )
        assert (done.returncode, done.stderr) == (code, "")
        return done.stdout.splitlines()

    return start


@pytest.fixture
def filled(library, model):
    """Red and Blue as materials, the model as geometry."""
    library.import_file(model, folder="Paints/Warm")
    library.import_file(model, "geometry")
    return library


def test_has_a_test_for_every_script():
    tested = pathlib.Path(__file__).read_text(encoding="utf-8")
    assert len(scripts()) == 10
    assert [name for name in scripts() if f'"{name}"' not in tested] == []


def test_import_folder(run, model, tmp_path):
    (tmp_path / "in" / "Deep").mkdir(parents=True)
    (tmp_path / "in" / "Deep" / "model.obj").write_text(model.read_text())
    (tmp_path / "in" / "Deep" / "paint.mtl").write_text((tmp_path / "paint.mtl").read_text())
    assert run("import_folder.py", tmp_path / "in", tmp_path / "new") == ["Deep model"]
    assert (tmp_path / "new" / "Deep" / "GEO_model" / "model.osb").is_file()


def test_unused(run, filled, tmp_path):
    kx.scene.save(tmp_path / "scene.osb", [filled["model"].load(), filled["Red"].load()])
    assert run("unused.py", filled.path, tmp_path / "scene.osb") == ["Blue", "Red"], "no node shows the red"


def test_rename(run, filled):
    filled["Red"].name = "deep_red "
    assert run("rename.py", filled.path) == ["deep_red  -> Deep red", "model -> Model"]
    filled.refresh()
    assert sorted(asset.name for asset in filled) == ["Blue", "Deep red", "Model"]


def test_previews(run, filled):
    next(filled["Red"].path.glob("*.png")).unlink()
    assert run("previews.py", filled.path) == ["rendered Red"]
    assert filled["Red"].has_preview


def test_outdated(run, filled, tmp_path):
    node = filled["model"].load()
    kx.scene.save(tmp_path / "scene.osb", node)
    assert run("outdated.py", filled.path, "scene.osb") == []
    node.add(kx.Node("More"))
    filled.save(node, update=True)
    assert run("outdated.py", filled.path, "scene.osb") == ["scene.osb: model: differs from what is stored"]
    filled["model"].remove()
    assert run("outdated.py", filled.path, "scene.osb") == ["scene.osb: model: not in the library"]


def test_build(run, filled, tmp_path):
    (tmp_path / "list").write_text("model 0 0 0\nmodel 10 0 0\n")
    assert run("build.py", filled.path, "list", "scene.osb") == []
    first, second = kx.scene.open(tmp_path / "scene.osb")
    assert second.bounds[0][0] - first.bounds[0][0] == 10
    assert first.asset_uuid is None and first.children[0].asset_uuid == filled["model"].uuid


def test_export_previews(run, filled, tmp_path):
    run("export_previews.py", filled.path, "pictures")
    assert sorted(file.name for file in (tmp_path / "pictures").iterdir()) == ["Blue.jpg", "Red.jpg", "model.jpg"]


def test_tag_by_folder(run, filled):
    assert run("tag_by_folder.py", filled.path) == [
        "Blue ['paints', 'warm']",
        "Red ['paints', 'warm']",
    ]
    assert run("tag_by_folder.py", filled.path) == [], "nothing is left to do"


def test_exchange(run, filled, tmp_path):
    kx.scene.save(tmp_path / "scene.osb", filled["model"].load())
    paths = run("exchange.py", filled.path, "scene.osb", "Red", "Blue")
    assert len(paths) == 1 and paths[0].startswith("model/")
    (node,) = kx.scene.open(tmp_path / "scene.osb")
    assert {material.name for material in node.materials} == {"Blue"}


def test_nightly(run, filled, tmp_path):
    run("nightly.py", "report.json", filled.path)
    next(filled["Red"].path.glob("*.osb")).unlink()
    run("nightly.py", "report.json", filled.path, code=1)
    report = json.loads((tmp_path / "report.json").read_text(encoding="utf-8"))
    assert report[str(filled.path)]["assets"] == 3 and len(report[str(filled.path)]["findings"]) == 1
