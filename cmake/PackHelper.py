"""Makes the connected helper: the helper that browsers keep installed and that speaks through the relay.

Usage: PackHelper.py HELPER FOLDER PACKAGE HEADER RELAY

From the folder HELPER (resources/helper) come the unpacked extension in FOLDER, the signed one in PACKAGE (a file in the
format CRX3) and what programs must know of it in HEADER, which RELAY, the name of the relay's program, goes into too.

The manifest is the helper's own with the properties of connected/manifest.json in place of those it has, and with the
public half of connected/key.pem, whose hash is the extension's id. The name by which the browser knows the relay is
taken from relay.js. The same input gives the same bytes: files are stored without compression, which would depend on
the version of zlib, in the order of their names and with one time for all.
"""
import hashlib
import io
import json
import pathlib
import re
import shutil
import struct
import subprocess
import sys
import zipfile

earliest_time = (1980, 1, 1, 0, 0, 0)  # that an archive can say
in_connected_only = {"key.pem", "manifest.json"}  # and not in the extension


def openssl(*arguments, given=b""):
    return subprocess.run(["openssl", *arguments], input=given, stdout=subprocess.PIPE, check=True).stdout


def id_of(public_key):
    digits = hashlib.sha256(public_key).hexdigest()[:32]
    return digits.translate(str.maketrans("0123456789abcdef", "abcdefghijklmnop"))


def manifest_of(helper, public_key):
    manifest = json.loads((helper / "manifest.json").read_text())
    manifest |= json.loads((helper / "connected/manifest.json").read_text())
    manifest["key"] = openssl("base64", "-A", given=public_key).decode()
    return manifest


def files_of(helper, manifest):
    sources = [file for file in helper.iterdir() if file.is_file() and file.name != "manifest.json"]
    sources += [file for file in (helper / "connected").iterdir() if file.name not in in_connected_only]
    files = {file.name: file.read_bytes() for file in sources}
    files["manifest.json"] = (json.dumps(manifest, indent=2) + "\n").encode()
    return dict(sorted(files.items()))


def archive_of(files):
    archive = io.BytesIO()
    with zipfile.ZipFile(archive, "w", zipfile.ZIP_STORED) as writer:
        for name, content in files.items():
            entry = zipfile.ZipInfo(name, earliest_time)
            entry.create_system = 3  # Unix, also where this runs elsewhere
            entry.external_attr = 0o644 << 16
            writer.writestr(entry, content)
    return archive.getvalue()


def variable_length(number):
    """A number as protocol buffers write it: seven bits a byte, lowest first."""
    data = bytearray()
    while number > 0x7F:
        data.append(number & 0x7F | 0x80)
        number >>= 7
    return bytes(data + bytes([number]))


def field(number, content):
    """A field of a protocol buffer that holds bytes or a message."""
    return variable_length(number << 3 | 2) + variable_length(len(content)) + content


def signed(archive, key_file, public_key):
    # CrxFileHeader {sha256_with_rsa = 2: {public_key = 1, signature = 2}, signed_header_data = 10000: {crx_id = 1}}
    identity = field(1, hashlib.sha256(public_key).digest()[:16])
    what_is_signed = b"CRX3 SignedData\0" + struct.pack("<I", len(identity)) + identity + archive
    signature = openssl("dgst", "-sha256", "-sign", str(key_file), given=what_is_signed)
    header = field(2, field(1, public_key) + field(2, signature)) + field(10000, identity)
    return b"Cr24" + struct.pack("<II", 3, len(header)) + header + archive


def relay_name(helper):
    [name] = re.findall(r'^const relayName = "([a-z.]+)";$', (helper / "relay.js").read_text(), re.MULTILINE)
    return name


def header_of(manifest, public_key, helper, package, folder, relay):
    return f"""// Generated from resources/helper. Do not edit.
#pragma once
#include <string_view>

/// The helper that browsers keep installed, and its relay.
namespace tabwright::connectedhelper {{

/// The extension's id, which browsers compute from its key.
inline constexpr std::string_view identity{{"{id_of(public_key)}"}};
inline constexpr std::string_view version{{"{manifest["version"]}"}};
/// The relay as native messaging names it.
inline constexpr std::string_view relayName{{"{relay_name(helper)}"}};
/// File names: the relay's program, which lies beside tabwright-host; the signed extension, and the folder of the
/// unpacked one, which both lie beside tabwright-host in a build, and in DATADIR/tabwright once installed.
inline constexpr std::string_view relayProgram{{"{relay}"}};
inline constexpr std::string_view packageFile{{"{package.name}"}};
inline constexpr std::string_view unpackedFolder{{"{folder.name}"}};

}} // namespace tabwright::connectedhelper
"""


def main(helper, folder, package, header, relay):
    helper, folder, package, header = map(pathlib.Path, (helper, folder, package, header))
    key_file = helper / "connected/key.pem"
    public_key = openssl("pkey", "-in", str(key_file), "-pubout", "-outform", "DER")
    manifest = manifest_of(helper, public_key)
    files = files_of(helper, manifest)
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir(parents=True)
    for name, content in files.items():
        (folder / name).write_bytes(content)
    package.write_bytes(signed(archive_of(files), key_file, public_key))
    header.parent.mkdir(parents=True, exist_ok=True)
    header.write_text(header_of(manifest, public_key, helper, package, folder, relay))


main(*sys.argv[1:])
