"""The connected helper is packed as browsers verify it, and alike each time.

Usage: pack.py CHECKOUT FOLDER, where FOLDER has what the build has packed.
"""
import base64
import hashlib
import json
import pathlib
import struct
import subprocess
import sys
import tempfile
import zipfile

checkout, built = map(pathlib.Path, sys.argv[1:])
helper = checkout / "resources/helper"


def pack(folder):
    subprocess.run(
        ["python3", checkout / "cmake/PackHelper.py", helper, folder / "helper", folder / "tabwright-helper.crx",
         folder / "ConnectedHelper.h", "tabwright-relay"], check=True)  # fmt: skip
    return (folder / "tabwright-helper.crx").read_bytes()


def fields(message):
    """The fields of a protocol buffer that has only bytes in it."""

    def number():
        nonlocal at
        value = shift = 0
        while True:
            byte = message[at]
            at += 1
            value |= (byte & 0x7F) << shift
            if byte < 0x80:
                return value
            shift += 7

    at, found = 0, {}
    while at < len(message):
        key = number()
        assert key & 7 == 2, "a field that holds no bytes"
        length = number()
        found[key >> 3] = message[at : at + length]
        at += length
    return found


with tempfile.TemporaryDirectory() as place:
    folder = pathlib.Path(place)
    (folder / "again").mkdir()
    package = pack(folder)
    assert package == pack(folder / "again"), "packing it twice gives two packages"
    assert package == (built / "tabwright-helper.crx").read_bytes(), "the build’s package is another one"

    magic, version, header_length = struct.unpack_from("<4sII", package)
    assert (magic, version) == (b"Cr24", 3)
    header, archive = fields(package[12 : 12 + header_length]), package[12 + header_length :]
    identity, proof = header[10000], fields(header[2])
    assert fields(identity)[1] == hashlib.sha256(proof[1]).digest()[:16], "the id is not the key’s"

    (folder / "key.der").write_bytes(proof[1])
    (folder / "signature").write_bytes(proof[2])
    what_is_signed = b"CRX3 SignedData\0" + struct.pack("<I", len(identity)) + identity + archive
    subprocess.run(
        ["openssl", "dgst", "-sha256", "-verify", folder / "key.der", "-keyform", "DER", "-signature",
         folder / "signature"], input=what_is_signed, check=True, stdout=subprocess.DEVNULL)  # fmt: skip

    (folder / "archive").write_bytes(archive)
    with zipfile.ZipFile(folder / "archive") as reader:
        packed = {entry.filename: reader.read(entry) for entry in reader.infolist()}
    unpacked = {file.name: file.read_bytes() for file in (folder / "helper").iterdir()}
    assert packed == unpacked
    assert "key.pem" not in packed, "the private key goes out"
    assert packed["worker.js"] == (helper / "worker.js").read_bytes()

    manifest, own = json.loads(packed["manifest.json"]), json.loads((helper / "manifest.json").read_text())
    assert base64.b64decode(manifest["key"]) == proof[1], "unpacked it would have another id"
    assert manifest["version"] == own["version"] and manifest["key"] != own["key"]
    assert "debugger" not in manifest["permissions"]
    assert set(manifest["icons"].values()) <= set(packed)
