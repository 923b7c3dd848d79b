#!/usr/bin/env python3
"""Compares the platform's declarations with its lists and with the symbols of archives.

    symbols.py --include DIR lists                  headers and family lists name the same functions
    symbols.py --include DIR defined ARCHIVE...     the archives together define every declared function
    symbols.py --include DIR imports ARCHIVE...     the archives need nothing but the platform, zlib and the
                                                    C and C++ libraries

Exit status 0: so it is; 1: no, and standard output names each deviation.
"""
import argparse
import pathlib
import re
import subprocess
import sys

LISTED = re.compile(r'^MOX_(?:FUNCTION0?\(\s*[^,]+,\s*|PROCEDURE0?\(\s*)(\w+)', re.M)
DECLARED = re.compile(r'^(?!typedef\b)[A-Za-z_][\w \t*]*?\b((?:Aa|ddal_)\w+)\s*\(', re.M)
# Functions with "..." are in no list.
VARIADIC = {'AaSysLogPrint', 'AaSysLogPrintE'}
# What sanitizers, coverage counters and the linker itself add.
TOOLING = re.compile(r'^(__asan|__ubsan|__tsan|__lsan|__sanitizer|__gcov|__llvm_|_GLOBAL_OFFSET_TABLE_$|__dso_handle$'
                     r'|__tls_get_addr$|__stack_chk|__aeabi_|_ITM_|__gnu_)')
XML = re.compile(r'^_ZNK?(?:12AaGpuXmlNode|14AaGpuXmlParser)')
SYSTEM_LIBRARIES = ['libc.so.6', 'libstdc++.so', 'libm.so.6', 'libgcc_s.so.1', 'libz.so', 'libpthread.so.0',
                    'ld-linux-x86-64.so.2', 'ld-linux-armhf.so.3']


def without_comments(text):
    return re.sub(r'/\*.*?\*/|//[^\n]*', '', text, flags=re.S)


def listed(include):
    names = set()
    for file in sorted((include / 'families').glob('*.def')):
        names.update(LISTED.findall(file.read_text()))
    return names


def declared(include):
    names = set()
    for file in sorted([*(include / 'pal').glob('*.h'), *(include / 'ddal').glob('*.h')]):
        names.update(DECLARED.findall(without_comments(file.read_text())))
    return names


def symbols(nm, archives, option, dynamic=False):
    command = [nm, option] + (['--dynamic'] if dynamic else []) + [str(archive) for archive in archives]
    output = subprocess.run(command, check=True, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True).stdout
    names = set()
    for line in output.splitlines():
        words = line.split()
        if len(words) >= 2 and not line.endswith(':'):
            names.add(words[-1].split('@')[0])
    return names


def system_symbols(nm, compiler, sysroot):
    files = []
    for name in SYSTEM_LIBRARIES:
        command = [compiler, f'--sysroot={sysroot}', f'-print-file-name={name}']
        path = subprocess.run(command, check=True, stdout=subprocess.PIPE, text=True).stdout.strip()
        if '/' in path and pathlib.Path(path).exists():
            files.append(path)
    return symbols(nm, files, '--defined-only', dynamic=True)


def check_lists(include):
    lists, headers = listed(include), declared(include)
    return ([f'{name}: declared in a header, in no list' for name in sorted(headers - lists - VARIADIC)] +
            [f'{name}: in a list, declared in no header' for name in sorted(lists - headers)])


def check_defined(include, nm, archives):
    defined = symbols(nm, archives, '--defined-only')
    return [f'{name}: declared, defined in none of the archives' for name in sorted(declared(include) - defined)]


def check_imports(include, nm, compiler, sysroot, archives):
    imports = symbols(nm, archives, '--undefined-only') - symbols(nm, archives, '--defined-only')
    allowed = declared(include) | system_symbols(nm, compiler, sysroot)
    return [f'{name}: imported, but neither of the platform nor of zlib or the C and C++ libraries'
            for name in sorted(imports - allowed) if not TOOLING.match(name) and not XML.match(name)]


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument('--include', type=pathlib.Path, required=True)
    parser.add_argument('--nm', default='nm')
    parser.add_argument('--compiler', default='c++')
    parser.add_argument('--sysroot', default='', help='where the compiler finds the system libraries')
    parser.add_argument('check', choices=['lists', 'defined', 'imports'])
    parser.add_argument('archives', nargs='*', type=pathlib.Path)
    options = parser.parse_args()
    if options.check == 'lists':
        deviations = check_lists(options.include)
    elif options.check == 'defined':
        deviations = check_defined(options.include, options.nm, options.archives)
    else:
        deviations = check_imports(options.include, options.nm, options.compiler, options.sysroot, options.archives)
    print('\n'.join(deviations) or f'{len(declared(options.include))} declared functions: as it must be')
    return 1 if deviations else 0


if __name__ == '__main__':
    sys.exit(main())
