#!/usr/bin/env bash
# Signs archives of updates. docs/updates.md tells how key, archive and feed belong together.
#   scripts/sign-update.sh KEY.pem ARCHIVE...     the attributes of each archive's <enclosure>
#   scripts/sign-update.sh --public KEY.pem       the public key, for TABWRIGHT_FEED_KEY
# KEY.pem is a private Ed25519 key: openssl genpkey -algorithm ed25519 -out KEY.pem
set -euo pipefail
fail() { printf 'sign-update.sh: %s\n' "$*" >&2; exit 1; }
[ $# -ge 2 ] || { sed -n '2,5s/^# \{0,1\}//p' "$0" >&2; exit 2; }

# The raw key are the last 32 bytes of its DER form (RFC 8410).
public_key() { openssl pkey -in "$1" -pubout -outform DER | tail -c 32 | base64 -w 0; }
require_key() {
  [ -r "$1" ] || fail "$1 can't be read"
  openssl pkey -in "$1" -noout -text 2>/dev/null | grep -q '^ED25519 Private-Key' || fail "$1 is no private Ed25519 key"
}

if [ "$1" = --public ]; then
  require_key "$2"
  public_key "$2"
  echo
  exit
fi
key=$1
shift
require_key "$key"
for archive in "$@"; do
  [ -s "$archive" ] || fail "$archive is missing or empty"
  signature=$(openssl pkeyutl -sign -inkey "$key" -rawin -in "$archive" | base64 -w 0)
  [ ${#signature} -eq 88 ] || fail "openssl can't sign $archive"
  printf 'length="%s" sparkle:edSignature="%s"\n' "$(stat -c %s "$archive")" "$signature"
done
