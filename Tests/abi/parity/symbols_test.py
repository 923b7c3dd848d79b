#!/usr/bin/env python3
"""The symbol checks find what is wrong: each test breaks one thing on purpose."""
import argparse
import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

HERE = pathlib.Path(__file__).parent
OPTIONS = argparse.Namespace()


def run(include, *words):
    command = [sys.executable, HERE / 'symbols.py', '--include', include, '--nm', OPTIONS.nm, '--compiler',
               OPTIONS.compiler, *words]
    done = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
    return done.returncode, done.stdout


class BrokenOnPurpose(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.include = self.folder / 'include'
        shutil.copytree(OPTIONS.include, self.include)

    def compile(self, text):
        source, target = self.folder / 'part.cpp', self.folder / 'part.o'
        source.write_text(text)
        subprocess.run([OPTIONS.compiler, '-c', source, '-o', target], check=True)
        return target

    def test_lists_agree_before_anything_is_broken(self):
        status, output = run(self.include, 'lists')
        self.assertEqual(status, 0, output)

    def test_function_missing_from_its_list_is_named(self):
        family = self.include / 'families' / 'AaSem.def'
        family.write_text('\n'.join(line for line in family.read_text().splitlines() if 'AaSemUnlink' not in line))
        status, output = run(self.include, 'lists')
        self.assertEqual((status, output), (1, 'AaSemUnlink: declared in a header, in no list\n'))

    def test_list_entry_without_declaration_is_named(self):
        with (self.include / 'families' / 'ddal_bip.def').open('a') as family:
            family.write('MOX_FUNCTION0(int, ddal_bip_reset)\n')
        status, output = run(self.include, 'lists')
        self.assertEqual((status, output), (1, 'ddal_bip_reset: in a list, declared in no header\n'))

    def test_archive_that_lacks_functions_is_refused(self):
        status, output = run(self.include, 'defined', self.compile('extern "C" int AaSemPost(void*) { return 0; }'))
        self.assertEqual(status, 1)
        self.assertIn('AaSemWait: declared, defined in none', output)
        self.assertNotIn('AaSemPost:', output)

    def test_import_from_elsewhere_is_named(self):
        part = self.compile('extern "C" int AaMemMalloc(int); extern "C" int foreign_call(int);\n'
                            '#include <cstdio>\n#include <string>\n'
                            'int use(int a) { std::puts(std::to_string(a).c_str());'
                            ' return AaMemMalloc(a) + foreign_call(a); }')
        status, output = run(self.include, 'imports', part)
        self.assertEqual(status, 1)
        self.assertEqual([line.split(':')[0] for line in output.splitlines()], ['foreign_call'])


if __name__ == '__main__':
    parser = argparse.ArgumentParser()
    for name in ('--nm', '--compiler'):
        parser.add_argument(name, required=True)
    parser.add_argument('--include', type=pathlib.Path, required=True)
    OPTIONS = parser.parse_args()
    unittest.main(argv=sys.argv[:1])
