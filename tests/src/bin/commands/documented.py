#!/usr/bin/env python3
"""Compares the manual page and the bash completion of a program of several commands with what its own help says.

    documented.py PROGRAM MANUAL_PAGE COMPLETION
"""
import os
import re
import shlex
import subprocess
import sys

PROGRAM, PAGE, COMPLETION = sys.argv[1:]
NAME = os.path.basename(PROGRAM)


def help_of(*command):
    return subprocess.run([PROGRAM, *command, '--help'], check=True, stdout=subprocess.PIPE, universal_newlines=True).stdout


def commands_of(text):
    return re.findall(r'^  ([a-z-]+(?: [a-z]+)*) {2,}\S', text.split('tells more about')[0], re.MULTILINE)


def calls_in(text):
    """The ways to call the program, on one line each."""
    return sorted(' '.join(call.split()) for call in re.split(rf'(?=\b{NAME} [a-z])', text) if call.startswith(NAME))


def options_in(text):
    return set(re.findall(r'(?<![\w-])--[a-z-]+', text))


def options_of(text):
    """Those that a command's help lists or shows in its usage; others it may mention."""
    return options_in(text.split('\n\n')[0]) | set(re.findall(r'^ +(?:-[a-z], )?(--[a-z-]+)', text, re.MULTILINE))


def section_of(page, title):
    return re.search(rf'^\.SH {title}\n(.*?)^\.SH', page, re.MULTILINE | re.DOTALL)[1]


def plain(roff):
    """The text of a page's source, as far as these pages use the language."""
    lines = []
    for line in roff.splitlines():
        macro = re.match(r'\.([BI]+|[BIR]{2}) (.*)', line)
        if macro:
            words = shlex.shlex(macro[2], posix=True, punctuation_chars=False)
            words.whitespace_split, words.escape, words.commenters = True, '', ''
            line = (' ' if len(macro[1]) == 1 else '').join(words)
        elif line.startswith('.'):
            continue
        lines.append(re.sub(r'\\f[BIR]', '', line).replace('\\-', '-'))
    return '\n'.join(lines)


def completed(*words):
    """What the shell offers for the last of the words behind the program's name."""
    script = f'source "$0"; COMP_WORDS=({NAME} "$@"); COMP_CWORD=$#; _{NAME.replace("-", "_")}; printf "%s\\n" "${{COMPREPLY[@]}}"'
    path = os.path.dirname(PROGRAM) + ':' + os.environ['PATH']
    return set(subprocess.run(['bash', '-c', script, COMPLETION, *words], check=True, env={**os.environ, 'PATH': path},
                              stdout=subprocess.PIPE, universal_newlines=True).stdout.split())


def main():
    faults = []

    def compare(what, found, expected):
        if found != expected:
            faults.append(f'{what}:\n  found     {found}\n  the help says {expected}')

    commands = commands_of(help_of())
    assert commands
    with open(PAGE, encoding='utf-8') as file:
        page = file.read()
    helps = {command: help_of(*command.split()) for command in commands}
    usages = ' '.join(text.split('\n\n')[0].replace('Usage:', '') for text in helps.values())
    compare('synopsis', calls_in(plain(section_of(page, 'SYNOPSIS'))), calls_in(usages))
    described = options_in(plain(section_of(page, 'OPTIONS')))
    compare('options of the page', described, set().union(*map(options_of, helps.values())) | {'--help', '--version'})
    compare('commands completed', completed(''), {*(command.split()[0] for command in commands), '--help', '--version'})
    for command, text in helps.items():
        compare(f'options completed for {command}', completed(*command.split(), '-'), options_of(text) | {'--help'})
    print(*faults, f'{len(commands)} commands looked at, {len(faults)} faults', sep='\n')
    return 1 if faults else 0


if __name__ == '__main__':
    sys.exit(main())
