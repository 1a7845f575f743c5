# SPDX-License-Identifier: Apache-2.0
import struct
import zlib

import kx
import pytest

kx.set_previews(size=16, samples=1)

MODEL = """mtllib paint.mtl
v 0 0 0
v 1 0 0
v 1 1 0
v 0 1 0
v 3 0 0
v 4 0 0
v 4 1 0
usemtl Red
o Left
f 1 2 3 4
usemtl Blue
o Right
f 5 6 7
"""


@pytest.fixture
def model(tmp_path):
    """A model of two parts and two materials."""
    (tmp_path / "paint.mtl").write_text("newmtl Red\nKd 1 0 0\nnewmtl Blue\nKd 0 0 1\n")
    path = tmp_path / "model.obj"
    path.write_text(MODEL)
    return path


@pytest.fixture
def picture(tmp_path):
    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))

    rows = b"".join(b"\0" + bytes([255, 80, 20]) * 8 for _ in range(4))
    path = tmp_path / "logo.png"
    path.write_bytes(
        b"\x89PNG\r\n\x1a\n"
        + chunk(b"IHDR", struct.pack(">IIBBBBB", 8, 4, 8, 2, 0, 0, 0))
        + chunk(b"IDAT", zlib.compress(rows))
        + chunk(b"IEND", b"")
    )
    return path


@pytest.fixture
def library(tmp_path):
    with kx.library(tmp_path / "lib", create=True) as opened:
        yield opened


@pytest.fixture(autouse=True)
def fresh_scene():
    kx.scene.new()
    yield
    kx.scene.new()


@pytest.fixture
def chair():
    node = kx.Node("Chair")
    node.add(kx.Node("Seat", kx.create("Group")))
    kx.scene.add(node)
    return node
