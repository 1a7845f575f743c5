#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# screenshots.sh [LIBRARY [FOLDER]]
#
# Takes the pictures of the desktop program without a display: those of the README into Docs/images, among them sheets of all
# panels and of all dialogs for each language and each appearance. The single pictures go into FOLDER, where one is named, to be
# looked at. Needs a release build (./run --build-only), xvfb and oiiotool (./test installs both). Without LIBRARY a small one
# is made of the samples, where it can be in /home/artist, which the pictures name then.
#
# ONLY='panels-light-*' Docs/screenshots.sh takes those alone whose names, without the suffix, are like that.
set -eu -o pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."
programs=$PWD/build/release/bin
images=$PWD/Docs/images
temporary=$(mktemp -d)
home=
trash=
trap 'rm -rf -- "$temporary" ${home:+"$home"} ${trash:+"$trash"}' EXIT
mkdir -m 700 "$temporary/config" "$temporary/runtime"
export XDG_CONFIG_HOME=$temporary/config XDG_RUNTIME_DIR=$temporary/runtime

model=/usr/share/assimp/models/glTF2/2CylinderEngine-glTF-Binary/2CylinderEngine.glb
subject=2CylinderEngine

make_library() {
    mkdir -p "$1"
    "$programs/kxassets" import Samples/designs.materials.json --library "$1" --preview-size 256 --preview-samples 16
    "$programs/kxassets" import --geometry "$model" --library "$1" --folder Models --preview-size 256
}

# Brings assets of a library into each state that tiles have a mark for, and makes a scene of it.
make_marks() {
    mkdir "$1"
    cp -R "$library/Metal" "$library/Models" "$1"
    cat > "$temporary/marks.py" << 'EOT'
import sys

import kx

kx.set_previews(size=256, samples=16)
library = kx.library(sys.argv[1])
model = library[sys.argv[2]].load()
kx.scene.add(model)
meshes = [node for node in model.walk() if node.core and node.core.is_kind("Geometry")]
parts = list({node.core.id: node for node in meshes}.values())  # nodes that share a mesh share its material


def use(name):
    material = library[name].load()
    parts.pop(0).material = material
    return material


def save_again(material):
    material["Roughness"] += 0.1
    library.save(material, update=True)


for name in "Chrome", "Polished Gold", "Hammered Copper", "Brushed Aluminium":
    use(name)
save_again(use("Knurled Steel").clone())  # from which the copy in the scene differs then
kx.assets.mark_edited(model)
broken = library.save(parts[0].clone(), "Part", folder="Models")
kx.scene.save(sys.argv[3], model)
(broken.path / f"{broken.name}.osb").unlink()
kx.scene.new()
save_again(library["Brushed Aluminium"].load())  # which the saved scene does not know of
print(library["Polished Gold"].uuid)
EOT
    "$programs/kxassets" script "$temporary/marks.py" -- "$1" "$subject" "$2" | tail -n 1
}

# Copies of some assets as deleted ones, for the time of one picture, unless the library has its own.
fill_trash() {
    local folder asset
    [[ ! -e $library/.kx-trash ]] || return 0
    trash=$library/.kx-trash
    for folder in Wood Stone Metal; do
        for asset in "$library/$folder"/*/; do
            mkdir -p "$trash/$folder"
            cp -R "$asset" "$trash/$folder"
            printf '%s' "$folder" > "$trash/$folder/.origin"
            break
        done
    done
}

empty_trash() {
    rm -rf -- ${trash:+"$trash"}
    trash=
}

# wanted NAME: whether that picture is to be taken.
wanted() {
    # shellcheck disable=SC2053  # it is a pattern
    [[ $1 == ${ONLY-*} ]]
}

# picture FILE.png OPTION...; settings of the last picture are forgotten.
picture() {
    local file=$1
    shift
    rm -rf -- "${XDG_CONFIG_HOME:?}"/*
    mkdir "$XDG_CONFIG_HOME/kxAssets"
    printf '[General]\nfavourites=%s\nshowsLines=%s\n' "$favourite" "${lines:-false}" > "$XDG_CONFIG_HOME/kxAssets/asset-manager.conf"
    timeout 300 xvfb-run -a -s '-screen 0 1600x1000x24' "$programs/asset-manager" "$library" "$@" --screenshot "$file"
    printf '%s\n' "$file"
}

# What goes into the repository: fewer colours than a screen has are enough, and a third of the size.
keep() {
    wanted "$1" || return 0
    local taken=$temporary/taken.png
    picture "$taken" "${@:2}" > /dev/null
    oiiotool "$taken" --ch R,G,B --resize 1200x0 -d uint8 --compression zip:9 -o "$images/$1.png"
    printf '%s\n' "$images/$1.png"
}

# sheet NAME APPEARANCE LANGUAGE VIEW...: all of these, with a "/" between rows.
sheet() {
    local name=$1-$2-$3 appearance=$2 language=$3 view panels=()
    wanted "$name" || return 0
    shift 3
    for view in "$@"; do
        [[ $view != / ]] || { panels+=(/); continue; }
        local file=$folder/$view-$appearance-$language.png
        local options=(--language "$language" --appearance "$appearance" --show "$view")
        case $view in
            # Of the assets and of dialogs the scene shows nothing, and takes time.
            lines) lines=true picture "$file" "${options[@]/#lines/assets}" ;;
            python) picture "$file" "${options[@]}" --script "$temporary/hello.py" ;;
            trash)
                fill_trash
                picture "$file" "${options[@]}"
                empty_trash
                ;;
            assets | tour | welcome | import | move) picture "$file" "${options[@]}" ;;
            *) picture "$file" "${options[@]}" "$scene" --select "$subject" ;;
        esac
        panels+=("$file")
    done
    arrange "$images/$name.png" "${panels[@]}"
}

# Width and height of each picture.
sizes() {
    local file
    for file in "$@"; do oiiotool --info "$file"; done | sed -E 's/.*: +([0-9]+) x +([0-9]+),.*/\1 \2/'
}

# arrange SHEET.png FILE...: below each other where a "/" stands between, side by side otherwise. All of a row are equally
# scaled, and none is enlarged.
arrange() {
    local sheet=$1 width=1200 gap=12 x=0 y=0 high=0 wide file i parts=() row=() scale sizes
    shift
    set -- "$@" /
    for file in "$@"; do
        if [[ $file != / ]]; then
            row+=("$file")
            continue
        fi
        sizes=$(sizes "${row[@]}")
        scale=$(awk -v width=$width -v gap=$gap '
            { wide += $1 } END { scale = (width - (NR - 1) * gap) / wide; print scale < 1 ? scale : 1 }' <<< "$sizes")
        for ((i = 0; i < ${#row[@]}; ++i)); do
            file=$temporary/part-$x-$y.png
            oiiotool "${row[i]}" --ch 'R,G,B,A=1' --resize "$(awk -v n=$((i + 1)) -v scale="$scale" '
                NR == n { printf "%dx%d", $1 * scale, $2 * scale }' <<< "$sizes")" -o "$file"
            parts+=("$file" --swap --paste "+$x+$y")
            wide=$(sizes "$file")
            x=$((x + ${wide% *} + gap))
            high=$((high < ${wide#* } ? ${wide#* } : high))
        done
        y=$((y + high + gap))
        x=0 high=0 row=()
    done
    oiiotool --create "${width}x$((y - gap))" 4 "${parts[@]}" -d uint8 --compression zip:9 -o "$sheet"
    printf '%s\n' "$sheet"
}

library=${1-}
if [[ -z $library ]]; then
    library=$temporary/Library
    if [[ ! -e /home/artist ]] && mkdir /home/artist 2> /dev/null; then
        home=/home/artist
        library=$home/Library
    fi
    make_library "$library"
fi
scene=$temporary/Engine.osb
favourite=
"$programs/kxassets" load "$subject" --library "$library" -o "$scene"

mkdir -p "$images"
keep window-light --language en --appearance light "$scene" --select "$subject"
keep window-dark --language en --appearance dark "$scene" --select "$subject"
keep window-light-de --language de --appearance light "$scene" --select "$subject"
keep window-dark-de --language de --appearance dark "$scene" --select "$subject"
keep list --language en --appearance light "$scene" --show list

if wanted marks; then
    mkdir "$temporary/Marks"
    favourite=$(make_marks "$temporary/Marks/Library" "$temporary/Marks.osb")
    for appearance in light dark; do
        library=$temporary/Marks/Library picture "$temporary/marks-$appearance.png" --language en \
            --appearance "$appearance" "$temporary/Marks.osb" --show assets > /dev/null
    done
    # All of the light one, and the lower row of the dark one.
    oiiotool "$temporary/marks-light.png" --ch R,G,B --cut 832x396+0+0 \
        "$temporary/marks-dark.png" --ch R,G,B --cut 832x168+0+228 \
        --mosaic:pad=12 1x2 --cut 832x576+0+0 -d uint8 --compression zip:9 -o "$images/marks.png"
    favourite=
fi

folder=${2-$temporary/panels}
mkdir -p "$folder"
cat > "$temporary/hello.py" << EOT
import kx

for asset in kx.library("$library").assets("Materials"):
    print(asset.name)
EOT
for language in en de; do
    for appearance in light dark; do
        sheet panels "$appearance" "$language" folders tree details property / material environment plate view
        sheet dialogs "$appearance" "$language" assets lines / tour welcome / import move trash / python
        name=empty-$appearance-$language
        [[ -z ${2-} ]] || ! wanted "$name" || picture "$folder/$name.png" --language "$language" --appearance "$appearance"
    done
done
