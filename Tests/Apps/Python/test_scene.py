# SPDX-License-Identifier: Apache-2.0
import gc

import kx
import pytest


def test_nodes_form_trees(chair):
    seat = chair.children[0]
    assert (seat.name, seat.parent, len(chair), list(chair)) == ("Seat", chair, 1, [seat])
    assert [node.name for node in chair.walk()] == ["Chair", "Seat"]
    leg = kx.Node("Leg")
    chair.add(leg, 0)
    assert [child.name for child in chair.children] == ["Leg", "Seat"]
    leg.remove()
    assert leg.parent is None
    leg.remove()
    with pytest.raises(ValueError, match="cannot hold itself"):
        seat.add(chair)
    with pytest.raises(TypeError, match="takes a core"):
        kx.Node("x", leg)
    assert bool(kx.Node("empty")), "a node without children is still a node"


def test_handles_keep_what_they_hold_alive(chair):
    seat = chair.children[0]
    chair.remove()
    del chair
    gc.collect()
    kx.scene.new()
    assert seat.name == "Seat"
    assert seat == seat and seat != kx.scene.root and seat != "Seat" and len({seat, seat}) == 1


def test_fields_follow_their_declarations():
    material = kx.Material("Lack")
    assert "Roughness" in material.fields and "Roughness" in material and "Nothing" not in material
    material["Roughness"] = 0.25
    assert material["Roughness"] == 0.25
    material["DiffuseColor"] = (1, 0.5, 0.25, 1)
    assert material["DiffuseColor"] == (1.0, 0.5, 0.25, 1.0)
    for value in ("rough", None, (1, 2)):
        with pytest.raises(TypeError, match="Roughness"):
            material["Roughness"] = value
    assert material["Roughness"] == 0.25
    with pytest.raises(KeyError, match="has no field 'Nothing'"):
        material["Nothing"]
    with pytest.raises(TypeError, match="takes a"):
        material["Environment"] = kx.Node("x")


def test_meshes_are_lists_of_tuples():
    mesh = kx.create("Geometry")
    mesh["Positions"] = [(0, 0, 0), (1, 0, 0), (0, 1, 0)]
    mesh["Indices"] = [0, 1, 2]
    node = kx.Node("Triangle", mesh)
    assert node.bounds == ((0.0, 0.0, 0.0), (1.0, 1.0, 0.0))
    assert mesh["Positions"][2] == (0.0, 1.0, 0.0)
    with pytest.raises(TypeError):
        mesh["Positions"] = [(1, 2, 3), "x"]
    assert len(mesh["Positions"]) == 3, "nothing changes where a part does not fit"
    with pytest.raises(ValueError, match="add"):
        node["Children"] = []


def test_placements(chair):
    chair.matrix = [[2, 0, 0, 1], [0, 2, 0, 2], [0, 0, 2, 3], [0, 0, 0, 1]]
    assert chair.core["Translation"] == (1.0, 2.0, 3.0)
    assert chair.core["Scale"] == pytest.approx((2.0, 2.0, 2.0))
    assert chair.children[0].world_matrix[2][3] == 3.0
    with pytest.raises(ValueError, match="no placement"):
        chair.children[0].matrix = chair.matrix
    assert kx.Node("x").bounds is None


def test_materials_are_assigned(chair):
    paint = kx.Material("Farbe")
    mesh = kx.Node("Mesh", kx.create("Geometry"))
    chair.add(mesh)
    mesh.material = paint
    assert (mesh.material, chair.materials) == (paint, [paint])
    mesh.material = None
    assert mesh.material is None
    with pytest.raises(ValueError, match="takes no material"):
        chair.children[0].material = paint
    paint.tags = ["red", "Lack"]
    assert sorted(paint.tags) == ["Lack", "red"]
    paint.tags = []
    assert paint.tags == []
    assert repr(paint) == "<kx.UBRDFMaterial 'Farbe'>"
    with pytest.raises(ValueError, match="no type of material"):
        kx.Material("x", "Group")


def test_paths_and_selection(chair):
    assert kx.scene.path(chair) == "Chair"
    assert kx.scene.node("Chair/Seat") == chair.children[0]
    with pytest.raises(kx.Error, match="has no 'Arm', but Seat"):
        kx.scene.node("Chair/Arm")
    kx.scene.selection = [chair, None]
    assert kx.scene.selection == [chair]
    kx.scene.selection = []
    assert kx.scene.selection == []
    with pytest.raises(TypeError, match="is no node"):
        kx.scene.selection = ["Chair"]


def test_scene_files(chair, tmp_path):
    file = tmp_path / "scène.osb"
    kx.scene.save(file, chair)
    kx.scene.new()
    (opened,) = kx.scene.open(file)
    assert opened.parent == kx.scene.root
    assert chair.difference(opened) is None
    opened.name = "Stool"
    assert chair.difference(opened)
    assert chair.clone().difference(chair) is None
    with pytest.raises(kx.Error, match="none.osb"):
        kx.scene.open(tmp_path / "none.osb")
    with pytest.raises(kx.Error):
        kx.scene.save(tmp_path / "none" / "x.osb", [chair])


def test_import_and_render(model, tmp_path):
    node = kx.import_scene(model)
    assert sorted(material.name for material in node.materials) == ["Blue", "Red"]
    assert [m.name for m in kx.import_materials(str(model))] == ["Red", "Blue"]
    calls = []
    image = kx.render(node, width=40, height=30, samples=1, progress=lambda: calls.append(1))
    assert (image.width, image.height, image.channels) == (40, 30, 4)
    assert calls
    view = memoryview(image)
    assert (view.shape, view.format, view.readonly) == ((30, 40, 4), "B", True)
    image.save(tmp_path / "out.png")
    assert kx.Image(tmp_path / "out.png").width == 40
    with pytest.raises(kx.Error, match="nothing.obj"):
        kx.import_scene(tmp_path / "nothing.obj")
    with pytest.raises(kx.Error, match="nothing.png"):
        kx.Image(tmp_path / "nothing.png")
    with pytest.raises(kx.Error):
        image.save(tmp_path / "none" / "out.png")


def test_rendering_can_be_stopped(chair):
    assert kx.render(width=64, height=64, samples=4, progress=lambda: False) is None

    def fails():
        raise ZeroDivisionError("in the callback")

    with pytest.raises(ZeroDivisionError, match="in the callback"):
        kx.render(width=64, height=64, samples=4, progress=fails)
    with pytest.raises(ValueError):
        kx.render(width=0)


def test_environments(picture):
    before = kx.scene.environment
    sky = kx.import_environment(picture)
    kx.scene.environment = sky
    assert kx.scene.environment == sky
    assert kx.scene.environments == [before, sky]
    kx.scene.environment = before
    assert kx.scene.environment == before
    assert len(kx.scene.environments) == 2
    with pytest.raises(ValueError, match="is no environment"):
        kx.scene.environment = kx.Material("Red")
