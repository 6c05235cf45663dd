#!/usr/bin/env bash
# Puts the helper into Debian's Chromium for all users, in the tree of a package: install-for-all-users.sh TREE. What is
# written is what the packaged program writes for one user, without the tree in its paths.
set -euo pipefail
tree=$(realpath "$1")
home=$(mktemp -d)
trap 'rm -rf "$home"' EXIT
# The browser needn't be there when the package is made.
install -D -m 755 /dev/null "$home/bin/chromium"
env -i HOME="$home" PATH="$home/bin" LC_ALL=C.UTF-8 "$tree/usr/libexec/tabwright/tabwright-host" connect chromium --no-wait
for file in "$home/.config/chromium"/*/*.json; do
  case $file in
    */NativeMessagingHosts/*) folder=$tree/etc/chromium/native-messaging-hosts ;;
    *) folder=$tree/usr/share/chromium/extensions ;;
  esac
  mkdir -p "$folder"
  sed "s|$tree||" "$file" >"$folder/${file##*/}"
done
