#!/usr/bin/python3
"""Opens an envelope that a partner's MultiEntity has written, and prints what is in it as JSON.

    read_envelope.py IDENTITY ENVELOPE

IDENTITY is the identity file of the company that the envelope is for, or any file with a line "seed", a blank and 64
hexadecimal digits. ENVELOPE is an envelope, or the file of one as it lies in a shared folder. Everything is checked as
docs/exchange.md says: the seal, the sender's signature, and of each fact its canonical form, its hash and its author's
signature. Of an answer the proposal that it answers is shown as "answers", of a dispute and a note what they say as
"remark", of a new key which one it tells as "key", or why they are "not_understood". Ends with 1 and says why when the envelope is refused; a fact that is none is
shown with the reason. Whether the sender is a partner is for the reader to see: compare the fingerprint.

Needs Debian's python3-nacl.
"""

import hashlib
import json
import re
import sys

from nacl.exceptions import BadSignatureError, CryptoError
from nacl.public import SealedBox
from nacl.signing import SigningKey, VerifyKey

MOST_ENVELOPE_BYTES = 4_194_304
MOST_AROUND_BYTES = 9
MOST_BODY_BYTES = 65_536
MOST_FIELDS = 64
MOST_NAME_BYTES = 64
MOST_REQUEST_BYTES = 36
MOST_TEXT_BYTES = 4_000
OUTSIDE = b"multientity-sealed-1\n"
ENVELOPE_FORM = b"multientity-envelope-1"
FACT_FORM = b"multientity-fact-1"

LENGTH = re.compile(rb"(0|[1-9][0-9]{0,6}):")
HEX_16 = re.compile(rb"[0-9a-f]{32}")
HEX_32 = re.compile(rb"[0-9a-f]{64}")
TERM = re.compile(rb"[a-z-]{1,32}")
MONTH = re.compile(rb"(19|[2-9][0-9])[0-9]{2}-(0[1-9]|1[0-2])")
SUMMARY = re.compile(rb"(0|[1-9][0-9]{0,11}) [0-9a-f]{64}")
# Control characters, line separators and marks that turn the direction of a text.
ODD = re.compile("[\u0000-\u001f\u007f-\u009f\u2028\u2029\u061c\u200e\u200f\u202a-\u202e\u2066-\u2069]")


class Refused(Exception):
    pass


def require(holds, otherwise):
    if not holds:
        raise Refused(otherwise)


def netstrings(data):
    """Yields each text with the place at which its netstring begins."""
    at = 0
    while at < len(data):
        length = LENGTH.match(data, at)
        require(length, f"no length at byte {at}")
        end = length.end() + int(length[1])
        require(data[end : end + 1] == b",", f"no comma at byte {end}")
        yield at, data[length.end() : end]
        at = end + 1


def require_like(pattern, text, what):
    require(pattern.fullmatch(text), f"{what} is {text[:80]!r}")
    return text.decode("ascii")


def month_of(text):
    return require_like(MONTH, text, "the month") if text else ""


def fingerprint(key):
    digest = hashlib.sha256(key).digest()
    groups = (int.from_bytes(digest[at : at + 5], "big") % 100_000 for at in range(0, 30, 5))
    return " ".join(f"{group:05}" for group in groups)


def is_signed(key, message, signature):
    try:
        VerifyKey(bytes.fromhex(key)).verify(message, signature)
        return True
    except (BadSignatureError, ValueError):
        return False


def plain_text(data):
    """The text, or None when it is not UTF-8 of plain characters."""
    try:
        text = data.decode("utf-8")
    except UnicodeDecodeError:
        return None
    return None if ODD.search(text) else text


def shown(value):
    text = plain_text(value)
    return {"hex": value.hex()} if text is None else text


def fields_of(texts):
    require(len(texts) % 2 == 0, "a field has a name but no value")
    require(len(texts) <= 2 * MOST_FIELDS, "there are more than 64 fields")
    names = texts[0::2]
    for name in names:
        require_like(TERM, name, "the name of a field")
    require(all(one < other for one, other in zip(names, names[1:])), "the fields do not ascend")
    return dict(zip(names, texts[1::2]))


def text_of(fields, name, most):
    require(name in fields, f"it has no field {name.decode()}")
    text = plain_text(fields[name])
    require(text is not None and 1 <= len(fields[name]) <= most, f"{name.decode()} is {fields[name][:80]!r}")
    return text


def remark_in(fact, fields):
    """What a dispute or a note says, and who made the request that it is about: its author or the author's partner."""
    require_like(HEX_16, fact["name"].encode(), "the name")
    require(fact["month"], "it is of no month")
    of_dispute, of_note = {b"about", b"text"}, {b"about", b"asker", b"text"}
    require(set(fields) <= (of_dispute if fact["kind"] == "dispute" else of_note), "it has a field that it cannot have")
    asker = "partner" if fact["kind"] == "dispute" else text_of(fields, b"asker", MOST_NAME_BYTES)
    require(asker in ("author", "partner"), f"the asker is {asker!r}")
    return {
        "about": text_of(fields, b"about", MOST_REQUEST_BYTES),
        "asker": asker,
        "text": text_of(fields, b"text", MOST_TEXT_BYTES),
    }


def key_in(fact, fields):
    """Which key a new-key fact tells, and whether it is a former one of its author's or the one from now on."""
    require(set(fields) in ({b"key"}, {b"former"}), "it does not tell one key")
    (field, value), = fields.items()
    key = require_like(HEX_32, value, "the key")
    named = hashlib.sha256(b"multientity-new-key-1" + fact["pairing"].encode() + value).hexdigest()[:32]
    require(key != fact["author"], "it has the key of its author")
    require(fact["name"] == named and not fact["month"], "it is not named by its key")
    return {"public": key, "former": field == b"former", "fingerprint": fingerprint(bytes.fromhex(key))}


TOLD = {"dispute": ("remark", remark_in), "note": ("remark", remark_in), "new-key": ("key", key_in)}


def tell(fact, fields):
    name, tell_it = TOLD[fact["kind"]]
    try:
        fact[name] = tell_it(fact, fields)
    except Refused as refusal:
        fact["not_understood"] = str(refusal)


def read_fact(wire):
    """A fact as it travels: its body and its author's signature."""
    parts = [text for _, text in netstrings(wire)]
    require(len(parts) == 2, "a fact is a body and a signature")
    body, signature = parts
    require(len(body) <= MOST_BODY_BYTES, "the body has more than 65,536 bytes")
    texts = [text for _, text in netstrings(body)]
    require(len(texts) >= 6, "the body is cut off")
    require(texts[0] == FACT_FORM, f"the form is {texts[0][:80]!r}")
    name = plain_text(texts[4])
    require(name is not None and 1 <= len(texts[4]) <= MOST_NAME_BYTES, f"the name is {texts[4][:80]!r}")
    fact = {
        "hash": hashlib.sha256(body).hexdigest(),
        "pairing": require_like(HEX_16, texts[1], "the pairing"),
        "author": require_like(HEX_32, texts[2], "the author"),
        "kind": require_like(TERM, texts[3], "the kind"),
        "name": name,
        "month": month_of(texts[5]),
    }
    fields = fields_of(texts[6:])
    fact["fields"] = {name.decode("ascii"): shown(value) for name, value in fields.items()}
    require(len(signature) == 64, "a signature has 64 bytes")
    require(is_signed(fact["author"], body, signature), "its author did not sign it")
    if fact["kind"] == "answer" and b"proposal" in fields:
        fact["answers"] = shown_fact(fields[b"proposal"])
    if fact["kind"] in TOLD:
        tell(fact, fields)
    return fact


def shown_fact(wire):
    try:
        return read_fact(wire)
    except Refused as refusal:
        return {"refused": str(refusal), "wire": wire.hex()}


def split_month(value):
    month, blank, rest = value.partition(b" ")
    require(blank, "a month has no blank behind it")
    return month_of(month), rest


def take_field(letter, name, value):
    if name in (b"word", b"echo"):
        require(name.decode() not in letter, f"{name.decode()} stands twice")
        letter[name.decode()] = require_like(HEX_16, value, name.decode())
    elif name == b"summary":
        require("summary" not in letter, "summary stands twice")
        letter["summary"] = require_like(SUMMARY, value, "the summary")
    elif name == b"month":
        month, summary = split_month(value)
        require(month not in letter["months"], "a month stands twice")
        letter["months"][month] = require_like(SUMMARY, summary, "the summary of a month")
    elif name == b"hashes":
        month, packed = split_month(value)
        require(len(packed) % 32 == 0, "a list of hashes is cut off")
        hashes = letter["hashes"].setdefault(month, [])
        hashes += [packed[at : at + 32].hex() for at in range(0, len(packed), 32)]
        require(all(one < other for one, other in zip(hashes, hashes[1:])), "hashes do not ascend")
    elif name == b"fact":
        letter["facts"].append(shown_fact(value))


def read_letter(content, receiver):
    """What is behind the seal of an envelope for this key."""
    texts = list(netstrings(content))
    require(len(texts) >= 5 and len(texts) % 2 == 1, "a head, fields and a signature are expected")
    require(texts[0][1] == ENVELOPE_FORM, f"the form is {texts[0][1][:80]!r}")
    letter = {
        "pairing": require_like(HEX_16, texts[1][1], "the pairing"),
        "sender": require_like(HEX_32, texts[2][1], "the sender"),
        "receiver": require_like(HEX_32, texts[3][1], "the receiver"),
    }
    letter["fingerprint"] = fingerprint(bytes.fromhex(letter["sender"]))
    require(letter["receiver"] == receiver, "it was written to another company")
    require(letter["sender"] != receiver, "it was written by whom it is for")
    signed_bytes, signature = texts[-1]
    require(len(signature) == 64, "a signature has 64 bytes")
    require(is_signed(letter["sender"], content[:signed_bytes], signature), "its sender did not sign it")
    letter.update(months={}, hashes={}, facts=[])
    for (_, name), (_, value) in zip(texts[4:-1:2], texts[5:-1:2]):
        take_field(letter, name, value)
    require("word" in letter, "there is no word")
    require("summary" in letter, "there is no summary")
    return letter


def envelope_in(file):
    """In a shared folder an envelope is a netstring, which shows whether all of it is there."""
    if file.startswith(OUTSIDE):
        return file
    texts = list(netstrings(file))
    require(len(texts) == 1, "it is no envelope and no file of one")
    return texts[0][1]


def read_envelope(envelope, seed):
    require(len(envelope) <= MOST_ENVELOPE_BYTES, "it is larger than 4 MiB")
    require(envelope.startswith(OUTSIDE), "it does not begin with multientity-sealed-1 and a line feed")
    key = SigningKey(seed)
    try:
        content = SealedBox(key.to_curve25519_private_key()).decrypt(envelope[len(OUTSIDE) :])
    except (CryptoError, ValueError, TypeError):
        raise Refused("it was sealed for another company, or was changed on its way") from None
    return read_letter(content, key.verify_key.encode().hex())


def seed_in(identity):
    for line in identity.splitlines():
        if found := re.fullmatch(rb"seed ([0-9a-f]{64})", line):
            return bytes.fromhex(found[1].decode())
    raise Refused("the identity has no line with a seed")


def main(arguments):
    if len(arguments) != 2:
        sys.exit(__doc__)
    with open(arguments[0], "rb") as identity, open(arguments[1], "rb") as envelope:
        try:
            file = envelope.read(MOST_ENVELOPE_BYTES + MOST_AROUND_BYTES + 1)
            letter = read_envelope(envelope_in(file), seed_in(identity.read()))
        except Refused as refusal:
            sys.exit(f"{arguments[1]}: refused: {refusal}")
    sys.stdout.reconfigure(encoding="utf-8")
    json.dump(letter, sys.stdout, indent=2, ensure_ascii=False)
    print()


if __name__ == "__main__":
    main(sys.argv[1:])
