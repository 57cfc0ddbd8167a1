#!/usr/bin/env python3
"""Walks the way of an author: a new IP, its check, a generation from the plain script, a simulation, sealing, installing, and the
same from the installation. Each fault that is put into the author's folder has to be told.

    authoring.py VELMORA_GENERATE VELMORA_SEAL KEYS PREFIX
"""
import json
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

GENERATE, SEAL, KEYS, PREFIX = sys.argv[1:]

# What replaces what in which file, and a word of the error; a deleted file has no replacement.
FAULTS = [
    ('config', 'uid TICKER', 'uid', 'Invalid'),
    ('form.json', '"label": "Period"', '"label": 7', "'label' of the row 'Period' should be a text"),
    ('description.html', '<title>ticker</title>', '<title></title>', 'no title'),
    ('description.html', '</body>', '<img src="none.svg"></body>', "'none.svg', which does not exist"),
    ('generator.py', 'def generate(', 'def generated(', "defines no 'generate'"),
    ('generator.py', 'import re', 'import', 'SyntaxError'),
    ('generator.py', 'import re', '# \u00e9', 'Only ASCII'),
    ('description.html', None, None, 'Unable to open the description page'),
    ('generator.py', None, None, 'Unable to open file'),
    ('templates/ticker.vhd', None, None, "KeyError: 'ticker.vhd'"),
    ('generator.py', "'clocks')", "3)", "'describe' should return"),
    ('example.velmora', 'my_ticker', '1st', 'Entity name should be a VHDL identifier.'),
]


def run(*command, cwd, status=0, prefix=None, errors=subprocess.STDOUT):
    done = subprocess.run(command, cwd=cwd, env={**os.environ, 'ORVANE_PREFIX': str(prefix or PREFIX), 'SOURCE_DATE_EPOCH': '0'}, check=False,
                          timeout=120, stdout=subprocess.PIPE, stderr=errors, encoding='utf-8')
    assert done.returncode == status, (command, done.returncode, done.stdout)
    return done.stdout


def simulate(folder, standard):
    work = folder / f'ghdl{standard}'
    work.mkdir()
    options = [f'--std={standard}', f'--workdir={work}']
    run('ghdl', '-a', *options, '-Werror', 'my_ticker.vhd', 'my_ticker_tb.vhd', cwd=folder)
    return run('ghdl', '--elab-run', *options, 'my_ticker_tb', cwd=folder)


def main():
    with tempfile.TemporaryDirectory() as directory:
        place = pathlib.Path(directory)
        folder = place / 'ticker'
        run(GENERATE, 'new-ip', 'ticker', cwd=place)
        run(GENERATE, 'new-ip', 'ticker', cwd=place, status=2)
        run(GENERATE, 'new-ip', "ti'cker", cwd=place, status=2)
        check = [GENERATE, 'check-ip', 'ticker', '--run', 'ticker/example.velmora']
        run(*check, '--join', 'joined.py', cwd=place)
        for standard in ('93', '08'):
            assert re.search(r'my_ticker_tb: PASSED \(22 checks\)', simulate(folder, standard)), standard
        plain = (folder / 'my_ticker.vhd').read_bytes()
        assert b'PERIOD : positive := 7;' in plain

        for number, (name, old, new, message) in enumerate(FAULTS):
            faulty = place / f'faulty{number}'
            shutil.copytree(folder, faulty)
            if old is None:
                (faulty / name).unlink()
            else:
                text = (faulty / name).read_text(encoding='utf-8')
                assert text.count(old) >= 1, (name, old)
                (faulty / name).write_text(text.replace(old, new, 1), encoding='utf-8')
            report = json.loads(run(GENERATE, 'check-ip', faulty.name, '--run', f'{faulty.name}/example.velmora', '--json', cwd=place, status=1,
                                    errors=subprocess.DEVNULL))
            assert any(message in each['text'] for each in report[0]['messages']), (name, new, report)

        prefix = place / 'prefix'
        installed = prefix / 'share/velmora/Example/ticker'
        shutil.copytree(folder, installed)
        shutil.copytree(f'{PREFIX}/etc', prefix / 'etc')
        run(SEAL, 'seal', 'joined.py', '-o', str(installed / 'generator.py'), '--key', f'{KEYS}/scripts', '--signer', f'{KEYS}/signer.private.pem',
            '--force', cwd=place)
        run(GENERATE, 'run', 'ticker/example.velmora', '-o', 'sealed.vhd', cwd=place, prefix=prefix)
        assert (place / 'sealed.vhd').read_bytes() == plain, 'the sealed script generates something else'
        assert 'part of an installation' in run(GENERATE, 'check-ip', str(installed), cwd=place, prefix=prefix, status=1)
        shutil.copy(folder / 'generator.py', installed / 'generator.py')
        run(GENERATE, 'run', 'ticker/example.velmora', '-o', 'plain.vhd', cwd=place, prefix=prefix, status=1)
        assert not (place / 'plain.vhd').exists(), 'a plain script was run from an installation'
    print(f'{len(FAULTS)} faults told')
    return 0


if __name__ == '__main__':
    sys.exit(main())
