#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# make-library.sh KXASSETS LIBRARY
#
# Makes the sample library with the program KXASSETS: the designed materials beside this script, and what the models of the
# package assimp-testmodels bring along, where that is installed: materials, and two models to put into a scene.
# Only a finished library stands at its place: it is made beside it and moved there.
set -eu

samples=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
kxassets=$1
library=$2
models=/usr/share/assimp/models/glTF2
engine=$models/2CylinderEngine-glTF-Binary/2CylinderEngine.glb
box=$models/BoxTextured-glTF-Binary/BoxTextured.glb
coats=$models/ClearCoat-glTF/ClearCoatTest.gltf

# Nothing may wait for something that does not come.
import() { timeout 900 "$kxassets" import "$@" --library "$unfinished" --preview-size 256 < /dev/null > /dev/null; }

unfinished=$library.unfinished
rm -rf -- "$unfinished"
mkdir -p -- "$unfinished"
import "$samples/designs.materials.json"
if [[ -e $engine ]]; then
    import "$engine" "$box" "$coats" --folder Models
    import --geometry "$engine" "$box" --folder Models
fi
mv -- "$unfinished" "$library"
