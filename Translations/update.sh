#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# update.sh [FOLDER]
#
# Brings the catalogues in FOLDER (default: the folder of this script) to what the sources say: new texts are added
# unfinished, and those that no source holds any more go. Call it after any change of a text, then translate what is new
# with Qt Linguist or an editor.
set -eu -o pipefail

folder=$(realpath -- "${1:-$(dirname "${BASH_SOURCE[0]}")}")
cd "$(dirname "${BASH_SOURCE[0]}")/.."

# Only files that hold texts or name their context: lupdate stumbles over digit separators in some of the others.
mapfile -t sources < <(grep -rlE --include='*.cpp' --include='*.h' \
    '\btr\(|\btranslate\(|QT_TRANSLATE_NOOP|Q_DECLARE_TR_FUNCTIONS' \
    Apps/AssetManager Apps/AssetSession Libs/Assets Host | LC_ALL=C sort)

update() {
    local complaints
    complaints=$(lupdate -silent -locations none -no-obsolete -no-ui-lines -source-language en -I Apps -I Libs -I Host "$@" 2>&1)
    # A text that was not understood would be missing without a trace.
    [[ -z $complaints ]] || { printf '%s\n' "$complaints" >&2; exit 1; }
}

update "${sources[@]}" -target-language de -ts "$folder/kxassets_de.ts"
update "${sources[@]}" -pluralonly -target-language en -ts "$folder/kxassets_en.ts"
