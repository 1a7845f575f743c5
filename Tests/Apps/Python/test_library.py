# SPDX-License-Identifier: Apache-2.0
import datetime
import os
import pathlib

import kx
import pytest


def test_imports_and_lists(library, model, picture):
    materials = library.import_file(model, tags=["paint"])
    (geometry,) = library.import_file(str(model), "geometry", folder="Models")
    assert [asset.name for asset in materials] == ["Red", "Blue"]
    library.import_file(picture, "environment")
    library.import_file(picture, "backplate")
    assert sorted(asset.name for asset in library) == ["Blue", "Red", "logo", "logo", "model"]
    assert len(library) == 5
    assert [asset.type for asset in library.assets("Sceneplates")] == ["Backplate"]
    assert [asset.name for asset in library.assets(tag="paint", name="re")] == ["Red"]
    assert geometry.folder == "Models" and materials[0].folder == ""
    assert geometry.category == "Geometries"
    assert isinstance(geometry.path, pathlib.Path) and geometry.path.is_dir()
    assert geometry.preview.width == 512
    assert datetime.datetime.now(datetime.timezone.utc) - geometry.modified < datetime.timedelta(minutes=5)
    assert library.verify() == []
    assert len(library.import_file(model, "parts")) == 2
    with pytest.raises(ValueError, match="kind is one of"):
        library.import_file(model, "music")
    with pytest.raises(ValueError, match="a category is one of"):
        library.assets("Music")
    with pytest.raises(kx.Error, match="none.obj"):
        library.import_file(library.path / "none.obj")


def test_finds_assets(library, model):
    red, blue = library.import_file(model)
    assert library[red.uuid] == red and library[red.uuid[:8]] == red and library["Red"] == red
    assert "Red" in library and "Green" not in library
    with pytest.raises(KeyError, match="no asset 'Green'"):
        library["Green"]
    assert {red, blue, library["Red"]} == {red, blue}
    assert repr(red) == f"<kx.Asset 'Red' {red.uuid}>"
    assert str(library.path) in repr(library)


def test_saves_and_loads_nodes(library, chair):
    asset = library.save(chair, folder="Seats")
    assert (asset.name, asset.folder, chair.asset_uuid) == ("Chair", "Seats", asset.uuid)
    loaded = asset.load()
    assert loaded.parent is None and chair.difference(loaded) is None
    assert asset.is_same(loaded)
    copy = library.save(chair, "Stool")
    assert copy != asset and copy.name == "Stool" and chair.name == "Chair"
    loaded.add(kx.Node("Arm"))
    assert library.save(loaded, update=True) == asset
    assert len(asset.load()) == 2
    assert not asset.is_same(chair), "another version is stored now"
    with pytest.raises(kx.Error, match="came from no asset"):
        library.save(kx.Node("New"), update=True)
    with pytest.raises(kx.Error, match="not inside the library"):
        library.save(chair, folder="../elsewhere")
    with pytest.raises(TypeError, match="node or a material"):
        library.save(kx.create("Group"))
    with pytest.raises(TypeError, match="nothing of the scene"):
        library.save("Chair")


def test_saves_and_loads_materials(library):
    paint = kx.Material("Lack ü")
    paint["Roughness"] = 0.125
    asset = library.save(paint, folder="Paints")
    assert asset.category == "Materials" and asset.folder == "Paints"
    assert asset.load()["Roughness"] == 0.125
    paint["Roughness"] = 0.5
    assert library.save(paint, update=True) == asset
    assert asset.folder == "Paints", "where it was"
    assert len(library) == 1
    assert library.save(paint) != asset, "a new one"
    with pytest.raises(ValueError, match="material.name"):
        library.save(paint, "Other")


def test_saves_groups(library, chair):
    table = kx.Node("Table")
    kx.scene.add(table)
    asset = library.save_group([chair, None, table], "Set")
    assert [child.name for child in asset.load()] == ["Chair", "Table"]
    assert chair.parent == kx.scene.root
    with pytest.raises(kx.Error, match="no node"):
        library.save_group([], "Nothing")


def test_edits_assets(library, model):
    red, blue = library.import_file(model)
    red.name = "Rot"
    assert library["Rot"] == red
    red.tags = ["warm", "paint"]
    assert sorted(red.tags) == ["paint", "warm"]
    red.move("Warm/Colours")
    assert red.folder == "Warm/Colours" and red.path.is_dir()
    with pytest.raises(ValueError, match="needs a name"):
        red.name = ""
    (red.path / "Red.png").unlink()
    assert not red.has_preview and red.preview is None
    red.render_preview()
    assert red.has_preview
    path = red.path
    red.remove()
    assert not path.exists() and not red.exists and len(library) == 1
    with pytest.raises(kx.Error, match="not in the library any more"):
        red.name
    assert repr(red) == f"<kx.Asset removed {red.uuid}>"


def test_keeps_what_others_are_made_of(library, model):
    red, blue = library.import_file(model)
    choice = kx.Material("Colours", "SwitchMaterial")
    choice["Materials"] = [red.load(), blue.load()]
    library.save(choice)
    with pytest.raises(kx.Error, match="'Colours' is made of it"):
        red.remove()
    assert [part.name for part in library["Colours"].load().parts] == ["Red", "Blue"]
    red.remove(force=True)
    assert any("Red" in line or red.uuid in line for line in library.verify())


def test_environments_join_the_scene(library, picture):
    (asset,) = library.import_file(picture, "environment")
    node = asset.load()
    assert node.parent is not None
    assert kx.scene.environment.name == "logo"
    asset.load(make_current=False)
    assert len(kx.scene.environments) == 3


def test_libraries_open_and_close(tmp_path, chair):
    with pytest.raises(kx.Error, match="there is no folder"):
        kx.library(tmp_path / "none")
    with kx.library(os.fsencode(tmp_path / "lib"), create=True) as first:
        uuid = first.save(chair).uuid
    assert len(first) == 0, "closed"
    counts = []
    second = kx.library(tmp_path / "lib", progress=counts.append)
    assert [asset.uuid for asset in second] == [uuid]
    second.close()
    second.refresh()
    assert second and len(second) == 1
    second.close()


def test_says_what_is_damaged(library, chair):
    asset = library.save(chair)
    (asset.path / "Chair.osb").write_text("no scene")
    with pytest.raises(kx.Error, match="Chair.osb"):
        asset.load()
    (finding,) = library.verify()
    assert "GEO_Chair" in finding


def test_prints_nothing_of_its_own(library, chair, capfd):
    library.save(chair).load()
    print("mine")
    assert capfd.readouterr().out == "mine\n"


def test_says_warnings_and_errors_once(library, model, capfd):
    (model.parent / "paint.mtl").unlink()
    with pytest.warns(RuntimeWarning, match="'paint.mtl' is missing"):
        library.import_file(model, "geometry")
    with pytest.raises(kx.Error):
        kx.scene.open(library.path / "none.osb")
    assert capfd.readouterr() == ("", "")
