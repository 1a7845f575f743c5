# SPDX-License-Identifier: Apache-2.0
"""Asset libraries for 3D scenes: materials, geometry, environments and sceneplates.

Use it from the thread that imported it. Failures are kx.Error, with the reason.
"""
from __future__ import annotations

import os
from collections.abc import Callable, Iterable, Iterator, Sequence
from datetime import datetime
from pathlib import Path
from types import TracebackType
from typing import Any, Literal

__version__: str

_Path = str | bytes | os.PathLike[str] | os.PathLike[bytes]
_Point = Sequence[float]
_Matrix = Sequence[Sequence[float]]
_Category = Literal["Materials", "Environments", "Geometries", "Sceneplates"]
_Kind = Literal["materials", "geometry", "parts", "environment", "frontplate", "backplate"]
_Nodes = Node | Iterable[Node | None] | None

class Error(RuntimeError): ...

class Container:
    """Anything of the scene. Its fields are read and set by name: material['Roughness'] = 0.3"""

    @property
    def type(self) -> str: ...
    @property
    def id(self) -> int: ...
    @property
    def fields(self) -> list[str]: ...
    @property
    def asset_uuid(self) -> str | None:
        """The UUID of the asset that it came from, or None."""
    def is_kind(self, type: str) -> bool:
        """Whether it is of this type or of one derived from it."""
    def clone(self) -> Any:
        """A copy of it and of all that it refers to."""
    def difference(self, other: Container) -> str | None:
        """Where the two differ first, or None."""
    def __getitem__(self, field: str) -> Any: ...
    def __setitem__(self, field: str, value: Any) -> None: ...
    def __contains__(self, field: str) -> bool: ...
    def __hash__(self) -> int: ...

class Node(Container):
    """A node of the scene. Its core says what it is: a placement, a mesh, a light ..."""

    name: str
    core: Container | None
    matrix: list[list[float]]
    material: Material | None
    def __init__(self, name: str = "", core: Container | None = None) -> None:
        """A new node that belongs to no scene yet; without a core one that can be placed."""
    @property
    def parent(self) -> Node | None: ...
    @property
    def children(self) -> list[Node]: ...
    @property
    def world_matrix(self) -> list[list[float]]: ...
    @property
    def bounds(self) -> tuple[tuple[float, float, float], tuple[float, float, float]] | None:
        """The lower and the upper corner in the world; None without a mesh."""
    @property
    def materials(self) -> list[Material]:
        """What is assigned to the node and to the nodes below it."""
    def add(self, child: Node, index: int = -1) -> None:
        """Takes the child from an old parent; the last one by default."""
    def remove(self) -> None:
        """Takes the node from its parent."""
    def walk(self) -> list[Node]:
        """The node and all nodes below it, parents first."""
    def __len__(self) -> int: ...
    def __iter__(self) -> Iterator[Node]: ...

class Material(Container):
    """A material or an environment."""

    name: str
    tags: list[str]
    def __init__(self, name: str, type: str = "UBRDFMaterial") -> None: ...
    @property
    def parts(self) -> list[Material | None]:
        """The entries of a switch or multi-pass material."""

class Image(Container):
    """A picture. memoryview(image) and numpy.asarray(image) see its pixels: rows from the bottom up, columns, channels."""

    def __init__(self, path: _Path) -> None:
        """Reads a file of any format that is known."""
    @property
    def width(self) -> int: ...
    @property
    def height(self) -> int: ...
    @property
    def channels(self) -> int: ...
    def save(self, path: _Path) -> None:
        """Writes a file; the extension says in which format."""
    def __buffer__(self, flags: int) -> memoryview: ...

class Scene:
    """The scene document. There is one: kx.scene."""

    selection: list[Node]
    environment: Material | None
    modified: bool
    @property
    def root(self) -> Node: ...
    @property
    def plates(self) -> Node:
        """What holds the sceneplates."""
    @property
    def environments(self) -> list[Material]:
        """What can be switched between."""
    def new(self) -> None:
        """Begins an empty scene."""
    def open(self, path: _Path) -> list[Node]:
        """Adds what a scene file holds; its topmost nodes."""
    def save(self, path: _Path, objects: Container | Iterable[Container | None]) -> None:
        """Writes nodes and materials, with all that they refer to, into a scene file."""
    def node(self, path: str) -> Node:
        """The node at a path such as 'Room/Chair#2'."""
    def path(self, node: Node) -> str: ...
    def add(self, node: Node) -> None:
        """Hangs a node below the root."""

class Asset:
    """An asset of a library."""

    name: str
    tags: list[str]
    @property
    def uuid(self) -> str: ...
    @property
    def category(self) -> _Category: ...
    @property
    def type(self) -> str: ...
    @property
    def path(self) -> Path: ...
    @property
    def folder(self) -> str:
        """The folder of the library that it is in; '' is the library itself."""
    @property
    def modified(self) -> datetime | None:
        """When it was saved last, in UTC."""
    @property
    def checksum(self) -> int: ...
    @property
    def preview(self) -> Image | None:
        """The picture of it, or None."""
    @property
    def has_preview(self) -> bool: ...
    @property
    def exists(self) -> bool: ...
    def load(self, make_current: bool = True) -> Any:
        """The material or node; environments join the scene's, the others belong to no scene yet."""
    def is_same(self, object: Container) -> bool:
        """Whether an object of the scene is as the asset is stored."""
    def render_preview(self) -> None:
        """Renders the picture of a material again."""
    def move(self, folder: str) -> None:
        """Into another folder of the library."""
    def remove(self, force: bool = False) -> None:
        """Removes it from the disk. What other assets are made of stays, unless forced."""
    def __hash__(self) -> int: ...

class Library:
    """A folder of assets. Iterating gives the assets by name; with 'with' it is closed again."""

    @property
    def path(self) -> Path: ...
    def assets(
        self, category: _Category | None = None, name: str | None = None, tag: str | None = None
    ) -> list[Asset]:
        """Those of a category, whose name holds a text, and with a tag."""
    def refresh(self, progress: Callable[[int], bool | None] | None = None) -> None:
        """Reads what is on disk. progress(count) may answer False to stop."""
    def save(
        self,
        object: Node | Material,
        name: str | None = None,
        *,
        folder: str = "",
        update: bool = False,
        make_ordinary: bool = False,
    ) -> Asset:
        """Saves a node or material as an asset: a new one, or with update the one that it came from."""
    def save_group(self, nodes: Iterable[Node | None], name: str, *, folder: str = "") -> Asset:
        """Saves several nodes as one asset; they keep their places to each other."""
    def import_file(
        self,
        path: _Path,
        kind: _Kind = "materials",
        *,
        folder: str = "",
        tags: Sequence[str] = (),
        progress: Callable[[], bool | None] | None = None,
    ) -> list[Asset]:
        """Imports a model or picture and answers the assets."""
    def verify(self) -> list[str]:
        """One text for each thing that is wrong; none for a sound library."""
    def close(self) -> None:
        """Forgets the assets that opening it made known; nothing changes on disk."""
    def __iter__(self) -> Iterator[Asset]: ...
    def __len__(self) -> int: ...
    def __getitem__(self, asset: str) -> Asset:
        """By UUID, the beginning of one, or the exact name. KeyError when it is none or several."""
    def __contains__(self, asset: str) -> bool: ...
    def __enter__(self) -> Library: ...
    def __exit__(
        self, kind: type[BaseException] | None, error: BaseException | None, trace: TracebackType | None
    ) -> None: ...

class Connection:
    """A function that is called when something changes."""

    def disconnect(self) -> None: ...

class Assets:
    """What can be done with the assets that are in use in the scene: kx.assets."""

    def remove_references(self, nodes: _Nodes) -> None:
        """Makes the nodes ordinary ones, which belong to no asset."""
    def select(self, nodes: _Nodes) -> list[str]:
        """Selects the assets of the nodes in the library; one text for each that cannot be found."""
    def overwrite(self, nodes: _Nodes) -> None:
        """Saves the nodes over the assets that they came from."""
    def find(self, nodes: _Nodes, root: Node | None = None) -> list[Node]:
        """All nodes at and below the root, or in the scene, that came from the same assets."""
    def mark_edited(self, nodes: _Nodes) -> None:
        """Notes that the nodes differ from what is stored."""
    def query_changes(self, nodes: _Nodes) -> None:
        """Has the asset manager show which of the nodes differ from what is stored."""
    def load_sceneplates(self, uuids: Sequence[str], parent: Node | None = None) -> None:
        """Loads sceneplates below a node, or at the top."""
    def on_changed(self, function: Callable[[], object]) -> Connection:
        """Calls the function whenever references to assets changed. The answer's disconnect() ends that."""

scene: Scene
assets: Assets

def create(type: str) -> Any:
    """A new container of the type with this name, such as 'Group'."""

def set_previews(*, size: int, samples: int) -> None:
    """How large, in pixels, and how good the pictures of materials are rendered from now on."""

def library(path: _Path, create: bool = False, progress: Callable[[int], bool | None] | None = None) -> Library:
    """Opens a folder and reads the assets in it. progress(count) may answer False to stop."""

def render(
    nodes: _Nodes = None,
    *,
    width: int = 640,
    height: int = 480,
    samples: int = 32,
    transparent: bool = False,
    eye: _Point | None = None,
    target: _Point | None = None,
    field_of_view: float | None = None,
    progress: Callable[[], bool | None] | None = None,
) -> Image | None:
    """Renders nodes, or the whole scene with its plates.

    The camera frames them where eye and target do not say otherwise. progress() is called now and then; when it
    answers False the result is None.
    """

def import_scene(path: _Path) -> Node:
    """A model of another program as a node."""

def import_materials(path: _Path) -> list[Material]:
    """The materials of a model."""

def import_environment(path: _Path) -> Material:
    """A panorama as an environment."""

def process_events() -> None:
    """Lets happen what was put off, in a script that runs long."""
