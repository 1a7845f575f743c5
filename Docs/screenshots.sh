#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# screenshots.sh [LIBRARY [FOLDER]]
#
# Takes the pictures of the desktop program without a display: those of the README into Docs/images, among them a sheet of
# all panels for each language and each appearance. The single pictures go into FOLDER, where one is named, to be looked at.
# Needs a release build (./run --build-only), xvfb and oiiotool (./test installs both). Without LIBRARY a small one is made
# of the samples.
set -eu -o pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."
programs=$PWD/build/release/bin
images=$PWD/Docs/images
temporary=$(mktemp -d)
trap 'rm -rf -- "$temporary"' EXIT
mkdir -m 700 "$temporary/config" "$temporary/runtime"
export XDG_CONFIG_HOME=$temporary/config XDG_RUNTIME_DIR=$temporary/runtime

model=/usr/share/assimp/models/glTF2/2CylinderEngine-glTF-Binary/2CylinderEngine.glb
subject=2CylinderEngine

make_library() {
    mkdir -p "$1"
    "$programs/kxassets" import Samples/designs.materials.json --library "$1" --preview-size 256 --preview-samples 16
    "$programs/kxassets" import --geometry "$model" --library "$1" --folder Models --preview-size 256
}

# picture FILE.png OPTION...; settings of the last picture are forgotten.
picture() {
    local file=$1
    shift
    rm -rf -- "${XDG_CONFIG_HOME:?}"/*
    timeout 300 xvfb-run -a -s '-screen 0 1600x1000x24' "$programs/asset-manager" "$library" "$@" --screenshot "$file"
    printf '%s\n' "$file"
}

# What goes into the repository: fewer colours than a screen has are enough, and a third of the size.
keep() {
    local taken=$temporary/taken.png
    picture "$taken" "${@:2}" > /dev/null
    oiiotool "$taken" --ch R,G,B --resize 1200x0 -d uint8 --compression zip:9 -o "$images/$1.png"
    printf '%s\n' "$images/$1.png"
}

# sheet APPEARANCE-LANGUAGE: all its panels side by side.
sheet() {
    local view panels=()
    for view in folders tree details property material environment plate view; do
        panels+=("$folder/$view-$1.png" --ch 'R,G,B,A=1')
    done
    oiiotool "${panels[@]}" --mosaic:pad=12:fit=360x420 4x2 -d uint8 --compression zip:9 \
        -o "$images/panels-$1.png"
    printf '%s\n' "$images/panels-$1.png"
}

library=${1-}
if [[ -z $library ]]; then
    library=$temporary/Library
    make_library "$library"
fi
scene=$temporary/Engine.osb
"$programs/kxassets" load "$subject" --library "$library" -o "$scene"

mkdir -p "$images"
keep window-light --language en --appearance light "$scene" --select "$subject"
keep window-dark-de --language de --appearance dark "$scene" --select "$subject"
keep list --language en --appearance light "$scene" --show list

folder=${2-$temporary/panels}
mkdir -p "$folder"
for language in en de; do
    for appearance in light dark; do
        for view in tiles list folders details view tree property material environment plate; do
            picture "$folder/$view-$appearance-$language.png" --language "$language" --appearance "$appearance" \
                "$scene" --select "$subject" --show "$view"
        done
        picture "$folder/empty-$appearance-$language.png" --language "$language" --appearance "$appearance"
        sheet "$appearance-$language"
    done
done
