#!/usr/bin/python3
"""check_reader.py READER VECTORS PROGRAM: holds the example that reads envelopes to the examples of the format and to
what PROGRAM, which writes envelopes as this project does, puts into a folder. Ends with 77 where python3-nacl is
missing."""

import importlib.util
import json
import pathlib
import subprocess
import sys
import tempfile
import unittest

sys.dont_write_bytecode = True
READER, VECTORS, PROGRAM = (pathlib.Path(argument) for argument in sys.argv[1:4])

if importlib.util.find_spec("nacl") is None:
    print(f"{sys.executable} has no nacl: install the Debian package python3-nacl.")
    sys.exit(77)

sys.path.insert(0, str(READER.parent))
reader = importlib.import_module(READER.stem)


def vectors(name):
    return json.loads((VECTORS / name).read_text(encoding="utf-8"))


def run(*arguments):
    return subprocess.run([sys.executable, "-B", READER, *arguments], capture_output=True, encoding="utf-8", check=False)


class Vectors(unittest.TestCase):
    def test_keys_have_their_fingerprints(self):
        for vector in vectors("keys.json"):
            self.assertEqual(reader.fingerprint(bytes.fromhex(vector["key"])), vector["fingerprint"])

    def test_facts_are_read(self):
        for vector in vectors("facts.json"):
            fact = reader.read_fact(bytes.fromhex(vector["wire"]))
            told = {key: fact.pop(key) for key in ("answers", "remark", "key", "not_understood") if key in fact}
            self.assertEqual(fact, {key: vector[key] for key in fact})
            if vector["kind"] in ("dispute", "note", "new-key"):
                with self.subTest(vector["about"]):
                    self.assertEqual("not_understood" in told, "not_understood" in vector)

    def test_what_is_said_of_a_request_is_told(self):
        for vector in vectors("facts.json"):
            if vector["kind"] not in ("dispute", "note") or "not_understood" in vector:
                continue
            asker = vector["fields"].get("asker", "partner")
            self.assertEqual(
                reader.read_fact(bytes.fromhex(vector["wire"]))["remark"],
                {"about": vector["fields"]["about"], "asker": asker, "text": vector["fields"]["text"]},
            )

    def test_which_key_replaces_which_is_told(self):
        for vector in vectors("facts.json"):
            if vector["kind"] != "new-key" or "not_understood" in vector:
                continue
            (field, public), = vector["fields"].items()
            key = reader.read_fact(bytes.fromhex(vector["wire"]))["key"]
            self.assertEqual((key["public"], key["former"]), (public, field == "former"))
            self.assertEqual(key["fingerprint"], reader.fingerprint(bytes.fromhex(public)))

    def test_what_is_no_fact_is_refused(self):
        for vector in vectors("refused_facts.json"):
            with self.subTest(vector["about"]), self.assertRaises(reader.Refused):
                reader.read_fact(bytes.fromhex(vector["wire"]))

    def test_the_envelope_is_opened(self):
        vector = vectors("envelope.json")
        envelope, seed = bytes.fromhex(vector["envelope"]), bytes.fromhex(vector["receiver_seed"])
        letter = reader.read_envelope(envelope, seed)
        for fact in letter["facts"]:
            fact.pop("not_understood", None)
        self.assertEqual(letter, vector["letter"])

    def test_what_was_changed_behind_the_seal_is_refused(self):
        vector = vectors("envelope.json")
        content, receiver = bytearray.fromhex(vector["content"]), vector["letter"]["receiver"]
        for at in range(0, len(content), 7):
            content[at] ^= 1
            with self.subTest(at), self.assertRaises(reader.Refused):
                reader.read_letter(bytes(content), receiver)
            content[at] ^= 1


class Envelopes(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(cls.folder.cleanup)
        subprocess.run([PROGRAM, cls.folder.name], check=True)
        cls.envelopes = sorted(pathlib.Path(cls.folder.name).glob("*.envelope"))

    def test_are_opened_with_all_that_is_in_them(self):
        self.assertGreaterEqual(len(self.envelopes), 5)
        for envelope in self.envelopes:
            read = run(envelope.with_suffix(".identity"), envelope)
            self.assertEqual(read.returncode, 0, read.stderr)
            letter = json.loads(read.stdout)
            for fact in letter["facts"]:
                fact["fields"].pop("proposal", None)
            self.assertEqual(letter, json.loads(envelope.with_suffix(".json").read_text(encoding="utf-8")))

    def test_are_opened_as_they_lie_in_a_shared_folder(self):
        whole = self.envelopes[0].read_bytes()
        identity = self.envelopes[0].with_suffix(".identity")
        shared = pathlib.Path(self.folder.name) / "shared"
        file = str(len(whole)).encode() + b":" + whole + b","
        shared.write_bytes(file)
        self.assertEqual(run(identity, shared).stdout, run(identity, self.envelopes[0]).stdout)
        for broken in (file[:-1], file + b"0:,", b"0:,", b"hello"):
            shared.write_bytes(broken)
            self.assertEqual(run(identity, shared).returncode, 1)

    def test_are_refused_with_another_key(self):
        other = pathlib.Path(self.folder.name) / "other.identity"
        other.write_text("multientity-identity 1\nseed " + 64 * "a" + "\n", encoding="utf-8")
        refused = run(other, self.envelopes[0])
        self.assertEqual(refused.returncode, 1)
        self.assertIn("sealed for another company", refused.stderr)

    def test_are_refused_when_they_were_changed(self):
        whole = self.envelopes[0].read_bytes()
        changed = pathlib.Path(self.folder.name) / "changed"
        for broken in (whole[:-1], whole + b"\n", whole[:100] + bytes([whole[100] ^ 1]) + whole[101:], b""):
            changed.write_bytes(broken)
            self.assertEqual(run(self.envelopes[0].with_suffix(".identity"), changed).returncode, 1)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
