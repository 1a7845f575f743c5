# SPDX-License-Identifier: Apache-2.0
import subprocess
import sys
import textwrap

import kx
import pytest


@pytest.fixture
def asset(library, chair):
    return library.save(chair)


def test_finds_and_releases_references(asset, chair):
    other = asset.load()
    kx.scene.add(other)
    assert kx.assets.find(chair) == [chair, other]
    assert kx.assets.find([chair, None], root=other) == [other]
    kx.assets.remove_references([other])
    assert other.asset_uuid is None
    assert kx.assets.find([chair]) == [chair]


def test_tells_of_changes(asset, chair, library):
    calls = []
    connection = kx.assets.on_changed(lambda: calls.append("changed"))
    kx.assets.mark_edited([chair])
    assert calls == ["changed"] and not asset.is_same(chair)
    kx.assets.overwrite(chair)
    assert calls == ["changed"], "saving changes no reference"
    assert asset.is_same(chair)
    kx.assets.query_changes([])
    assert calls == ["changed"]
    kx.assets.query_changes([chair])
    assert len(calls) == 2
    connection.disconnect()
    kx.assets.mark_edited([])
    assert len(calls) == 2


def test_a_callback_that_raises_stops_nobody(chair, asset, capsys):
    connection = kx.assets.on_changed(lambda: 1 / 0)
    kx.assets.mark_edited([chair])
    connection.disconnect()
    assert chair.asset_uuid == asset.uuid


def test_selects(asset, chair, library):
    assert kx.assets.select([chair]) == []
    asset.remove()
    (text,) = kx.assets.select([chair])
    assert text.startswith("Could not find asset.\nLast known storage location: file://")


def test_loads_sceneplates(library, picture):
    (plate,) = library.import_file(picture, "frontplate")
    kx.assets.load_sceneplates([plate.uuid, plate.uuid])
    group = kx.Node("Group", kx.create("Group"))
    kx.scene.plates.add(group)
    kx.assets.load_sceneplates([plate.uuid], group)
    assert len(kx.scene.plates) == 3 and len(group) == 1
    with pytest.raises(TypeError):
        kx.assets.load_sceneplates(plate.uuid, "nowhere")


def test_runs_in_a_plain_interpreter(tmp_path):
    """Also an exit in the middle, with objects alive, ends cleanly."""
    script = textwrap.dedent(
        f"""
        import kx, sys
        library = kx.library({str(tmp_path / "lib")!r}, create=True)
        asset = library.save(kx.Node("Stool"))
        node = asset.load()
        connection = kx.assets.on_changed(lambda: None)
        print(node)
        sys.exit(3)
        """
    )
    done = subprocess.run([sys.executable, "-c", script], capture_output=True, text=True, timeout=120)
    assert (done.returncode, done.stdout) == (3, "<kx.Node 'Stool' Transform3D>\n"), done.stderr
