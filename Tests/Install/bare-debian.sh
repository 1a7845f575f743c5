#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# bare-debian.sh ROOT
#
# Proves that ./run and ./test need nothing but a bare Debian 12: makes one in the folder ROOT, clones the last commit into
# it, and runs both there, as root and with no display. Needs root, debootstrap and a network; takes some 20 minutes. A
# ROOT from an earlier call gives its downloaded packages to the new one.
set -eu -o pipefail

root=${1:?names no folder; see the comment at the top}
source=$(git -C "$(dirname "${BASH_SOURCE[0]}")" rev-parse --show-toplevel)
packages=$root.packages

release() {
    local place
    for place in dev/pts dev proc; do
        ! mountpoint -q "$root/$place" || umount "$root/$place"
    done
}
trap release EXIT

release
mkdir -p "$packages"
cp -n "$root"/var/cache/apt/archives/*.deb "$packages" 2> /dev/null || true
rm -rf --one-file-system "$root"
debootstrap --variant=minbase --cache-dir="$(realpath "$packages")" bookworm "$root"
cp "$packages"/*.deb "$root/var/cache/apt/archives" 2> /dev/null || true
git clone --quiet "$source" "$root/opt/kxAssets"
for place in proc dev dev/pts; do
    mount --bind "/$place" "$root/$place"
done

inside() {
    env -i HOME=/root PATH=/usr/sbin:/usr/bin:/sbin:/bin chroot "$root" bash -c "cd /opt/kxAssets && $1"
}
code=0
for command in ./run ./test; do
    start=$SECONDS
    if inside "$command"; then
        printf '%s: done after %d s\n' "$command" $((SECONDS - start))
    else
        printf '%s: FAILED after %d s\n' "$command" $((SECONDS - start))
        code=1
    fi
done
exit $code
