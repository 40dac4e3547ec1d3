#!/usr/bin/env bash
# Usage: check-completion.sh <vlhost> <completion>. Fails where the completion offers what vlhost does not tell, or
# leaves something out.
set -u
program=$1
. "$2"
. "$(dirname "$0")/completion-checks.sh"

commands=$("$program" --help | sed -n 's/^  vlhost \([a-z]*\) .*/\1/p' | sort -u)
expect "the commands" "$commands" "$(offered vlhost "" | grep -v '^-' | sort -u)"
for command in $commands; do
  told=$("$program" "$command" --help | grep -o -E '(^|[ [])--[a-z]+(-[a-z]+)*' | tr -d ' [' | sort -u)
  # An example in the words that all commands share.
  [ "$command" = export ] || told=$(grep -v -x -e --cols <<<"$told")
  expect "the options of $command" "$(printf '%s\n--help\n--verbose\n' "$told" | grep -v -x -e --version | sort -u)" \
    "$(offered vlhost "$command" x -- | sort -u)"
done
expect "a beginning" "services" "$(offered vlhost se)"
expect "an option" "--dry-run" "$(offered vlhost export a --dr)"
expect "formats" "PNG" "$(offered vlhost export a --format P)"
expect "formats with blanks" 'TIFF-No\ Compression' "$(offered vlhost export a --format TIFF-N)"
expect "formats behind =" "PNG" "$(offered vlhost export a --format = P)"
expect "all formats behind =" "$(offered vlhost export a --format "")" "$(offered vlhost export a --format =)"
expect "a begun blank" 'TIFF-No\ Compression' "$(offered vlhost export a --format 'TIFF-No\ C')"
expect "what connections do" "remove" "$(offered vlhost connections rem)"
cd "$(mktemp -d)" || exit 1
touch one.VLJob "two words.VLJob"
expect "files" "$(printf 'one.VLJob\ntwo words.VLJob')" "$(offered vlhost export --job "" | sort)"
expect "files behind =" "one.VLJob" "$(offered vlhost export --job = o)"
rm -r "$PWD"
exit $((failures > 0))
