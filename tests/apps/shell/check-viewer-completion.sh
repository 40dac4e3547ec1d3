#!/usr/bin/env bash
# Usage: check-viewer-completion.sh <vlviewer> <completion>. Fails where the completion offers what vlviewer does not
# tell, or leaves something out.
set -u
program=$1
. "$2"
. "$(dirname "$0")/completion-checks.sh"

told=$("$program" --help | grep -o -E '(^|[ [])--[a-z]+(-[a-z]+)*' | tr -d ' [' | sort -u)
expect "the options" "$told" "$(offered vlviewer --)"
expect "an option" "--tour" "$(offered vlviewer --to)"
cd "$(mktemp -d)" || exit 1
mkdir folder
touch file.tif "a file.VLRef"
expect "files" "$(printf 'a file.VLRef\nfile.tif\nfolder')" "$(offered vlviewer "")"
expect "folders" "folder" "$(offered vlviewer --catalogue "")"
expect "a folder of a tour" "folder" "$(offered vlviewer --tour fo)"
expect "servers" "127.0.0.1" "$(offered vlviewer --server 1)"
rm -r "$PWD"
exit $((failures > 0))
