"""What is read from a small profile."""

import unittest

from instructions_of_profile import ProfileError, files_of, read_profile

PROFILE = """\
# callgrind format
version: 1
pid: 4711
cmd:  /build/bin/program
part: 3

desc: Timerange: Basic block 2 - 40
desc: Trigger: Client Request: company file: ten questions

positions: line
events: Ir
summary: 158

ob=(1) /build/bin/program
fl=(1) ???
fn=(2) main
0 5
cob=(4) /usr/lib/libsqlite3.so.0.8.6
cfi=(7) ???
cfn=(8) sqlite3_step
calls=2 0
0 148
+3 4
* 1

ob=(4)
fl=(7)
fn=(8)
12 40
cob=(6) /usr/lib/libc.so.6
cfi=(9) malloc.c
cfn=(10) malloc
calls=3 7
-2 100
-2 8
fi=(11) inline.h
7 0

ob=(6)
fl=(9)
fn=(10)
16 90
cfn=(12) _int_malloc
calls=1 20
* 10

fn=(12)
30 10

totals: 158
"""


class ReadProfileTest(unittest.TestCase):
    def test_each_file_has_what_it_ran_itself(self):
        profile = read_profile(PROFILE)
        self.assertEqual(profile.name, "company file: ten questions")
        self.assertEqual(profile.instructions, {"program": 10, "libsqlite3.so.0.8.6": 48, "libc.so.6": 100})

    def test_instructions_that_callgrind_did_not_count_are_an_error(self):
        with self.assertRaisesRegex(ProfileError, "158 instructions were read, but callgrind counted 157"):
            read_profile(PROFILE.replace("totals: 158", "totals: 157"))

    def test_instructions_that_were_not_read_are_an_error(self):
        with self.assertRaisesRegex(ProfileError, "153 instructions were read, but callgrind counted 158"):
            read_profile(PROFILE.replace("\n0 5\n", "\n0x1f 0 5\n"))


class FilesOfTest(unittest.TestCase):
    def test_a_name_stands_for_each_version_of_its_library(self):
        profile = read_profile(PROFILE)
        files = files_of(["program", "libsqlite3.so"], [profile])
        self.assertEqual(files, {"program", "libsqlite3.so.0.8.6"})
        self.assertEqual(profile.of(files), 58)

    def test_a_name_is_not_the_beginning_of_another(self):
        with self.assertRaisesRegex(ProfileError, "No profile has instructions of lib."):
            files_of(["program", "lib"], [read_profile(PROFILE)])


if __name__ == "__main__":
    unittest.main()
