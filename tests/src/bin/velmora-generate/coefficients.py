#!/usr/bin/env python3
"""Calls `velmora-generate coefficients` and computes independently what it should tell: `coefficients.py PROGRAM EXAMPLES`."""
import cmath
import json
import math
import os
import pathlib
import shutil
import struct
import subprocess
import sys
import tempfile
import time
import unittest

PROGRAM, EXAMPLES = (pathlib.Path(argument).resolve() for argument in sys.argv[1:3])


def call(*arguments, program=PROGRAM, text=None):
    words = [word for argument in arguments for word in (argument.split() if isinstance(argument, str) else [str(argument[0])])]
    return subprocess.run([program, 'coefficients', *words], input=text, env={**os.environ, 'LC_ALL': 'C.UTF-8'}, text=True, check=False,
                          stdout=subprocess.PIPE, stderr=subprocess.PIPE)


def magnitude(taps, frequency):
    return abs(sum(tap * cmath.exp(-2j * math.pi * frequency * index) for index, tap in enumerate(taps)))


def extreme(taps, bands, choose):
    """The least or largest magnitude in the bands: the best of a grid, then ever finer grids around it."""
    found = []
    for low, high in bands:
        step = (high - low) / (12 * len(taps))
        best = choose((low + index * step for index in range(12 * len(taps) + 1)), key=lambda f: magnitude(taps, f))
        for _ in range(6):
            around = [min(max(best + index * step / 4, low), high) for index in range(-4, 5)]
            best, step = choose(around, key=lambda f: magnitude(taps, f)), step / 4
        found.append(magnitude(taps, best))
    return choose(found)


def figures(taps, passes, stops):
    largest = extreme(taps, passes, max)
    return 20 * math.log10(largest / extreme(taps, passes, min)), 20 * math.log10(largest / extreme(taps, stops, max))


def bands_of(kind, passed, stopped):
    """The pass and the stop bands of edges."""
    between, outside = (stopped, passed) if kind == 'bandstop' else (passed, stopped)
    if len(passed) == 2:
        inner, outer = [tuple(between)], [(0, outside[0]), (outside[1], 0.5)]
        return (outer, inner) if kind == 'bandstop' else (inner, outer)
    return ([(0, passed[0])], [(stopped[0], 0.5)]) if kind == 'lowpass' else ([(passed[0], 0.5)], [(0, stopped[0])])


def npy(kind, shape, data):
    header = f"{{'descr': '{kind}', 'fortran_order': False, 'shape': {shape}, }}\n".encode()
    return b'\x93NUMPY\1\0' + struct.pack('<H', len(header)) + header + data


class CoefficientsTest(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix='velmora-coefficients-'))
        self.addCleanup(shutil.rmtree, self.folder)
        self.file = self.folder / 'taps'

    def read(self, content, options):
        self.file.write_bytes(content if isinstance(content, bytes) else content.encode())
        return call('import', [self.file], options)

    def test_import(self):
        for content, options, expected in [
                ('# a\n"tap 1",tap 2\n 3, -2 ; b\n% c\n+1\t0 // d\r\n', '--width 3', [3, -2, 1, 0]),
                ('1 2', '--width 8 --scale full', [64, 127]), ('0.5\n-1.0', '--width 4', [4, -8]),
                ('0.5\n-1.0', '--width 4 --scale power', [4, -8]), ('0.5 1', '--width 4 --scale power', [2, 4]),
                ('0.5 -0.5 1.5 2.5 -2.4', '--width 8 --scale 1', [1, -1, 2, 3, -2]), ('3 5', '--width 8 --scale 2^-1', [2, 3]),
                ('200 -100', '--width 8', [127, -64]), ('0 0', '--width 8 --scale full', [0, 0]),
                ('radix=10;\nCoefData=0.5,\n-1;', '--width 4', [4, -8]), ('; x=1\nradix=2;coefdata=0111 1000;', '--width 8', [7, -8]),
                ('radix = 16;\ncoefdata = 7fff, FF9C,\n0001;', '--width 16', [32767, -100, 1]),
                ('radix=16;coefdata=3f4,00c;', '--width 10', [-12, 12]), ('radix=16;coefdata=-1f,+3f;', '--width 8', [-31, 63]),
                ('#include <a.h>\nstatic const int16_t h[] = {0xFFFF, /* { */ 1,\n -017, 2u,}; // 1', '--width 8', [-1, 1, -15, 2]),
                ('double h[2] = {1.5f, -.5e1};', '--width 4 --scale 1', [2, -5]), ('[1, -2.5e0,\n 3]', '--width 8 --scale 2', [2, -5, 6]),
                *[(npy(f'{order}{kind}', '(2,)', struct.pack(f'{order}2{code}', *values)), '--width 4 --scale 2', [v * 2 for v in values])
                  for order in '<>' for kind, code, values in [('f2', 'e', (1.5, -2)), ('f4', 'f', (1.5, -2)), ('f8', 'd', (1.5, -2)),
                                                               ('i1', 'b', (1, -2)), ('i2', 'h', (1, -2)), ('i4', 'i', (1, -2)),
                                                               ('i8', 'q', (1, -2)), ('u1', 'B', (1, 2)), ('u2', 'H', (1, 2)),
                                                               ('u4', 'I', (1, 2)), ('u8', 'Q', (1, 2))]],
                (npy('<f16', '(1,)', struct.pack('<QHHI', 3 << 62, 0xc000, 7, 7)), '--width 4', [-3])]:
            with self.subTest(content):
                outcome = self.read(content, options)
                self.assertEqual((outcome.stdout, outcome.returncode), (', '.join(map(str, map(int, expected))) + '\n', 0), outcome.stderr)

    def test_scale_and_error_are_told(self):
        outcome = json.loads(self.read('0.3\n1\n-0.7\n', '--width 8 --json').stdout)
        # the largest factor is as near as can be to that with which 1 would round to 128
        self.assertAlmostEqual(outcome['scale'], 127.5, 9)
        self.assertEqual((outcome['coefficients'], outcome['taps']), ([38, 127, -89], 3))
        self.assertAlmostEqual(outcome['roundingError'], 0.5, 9)
        self.assertEqual(call('import - --width 8', text='1\n-2').stdout, '1, -2\n')

    def test_refused_files(self):
        for content, place, options in [
                ('1\n2x\n', 'line: 2', ''), ('1,,2', 'line: 1', ''), ('h = 1\n2', 'line: 1', ''), ('1\nnan', 'line: 2', ''),
                *[(f'{first}\n1', f"'{first}' is no number", '') for first in ['nan', '-INF', '1e999', '0x1F', '-.5.']],
                ('1;2;3', 'line: 1', ''), ('# a\n', 'line: 2', ''), ('1e999', 'line: 1', ''), ('radix=16;\ncoefdata=1,\n1g;', 'line: 3', ''),
                ('radix=8;coefdata=1;', 'line: 1', ''), ('coefdata=1;\nradix=10;', 'line: 1', ''), ('radix=10;coefdata=1;2', 'line: 1', ''),
                ('int a[] = {1,\n08}', 'line: 2', ''), ('{1,\n{2}}', 'line: 2', ''), ('{1', 'line: 1', ''), ('[1,\n]', 'line: 2', ''),
                ('[1]\n2', 'line: 2', ''), ('[\n01]', 'line: 2', ''), ('[.5]', 'line: 1', ''), ('[[1]]', 'line: 1', ''),
                (npy('<f8', '(2,)', b'\0' * 12), 'element: 2', ''), (npy('<f8', '(1, 1)', b'\0' * 8), 'line: 1', ''),
                (npy('<c8', '(1,)', b'\0' * 8), 'line: 1', ''), (npy('>f4', '(1,)', b'\x7f\x80\0\0'), 'element: 1', ''),
                ('1\n3', 'coefficient: 2', '--scale 100')]:
            with self.subTest(content):
                outcome = self.read(content, '--width 8 ' + options)
                self.assertEqual((outcome.stdout, outcome.returncode), ('', 1))
                self.assertIn(place, outcome.stderr)

    def test_many_numbers(self):
        count = 100000
        self.file.write_text('\n'.join(f'{math.sin(index):.17g}' for index in range(count)))
        begin = time.monotonic()
        outcome = call('import', [self.file], '--width 16')
        self.assertLess(time.monotonic() - begin, 10)  # a fifth of a second, on a machine with nothing else to do
        self.assertEqual(outcome.stdout.count(','), count - 1)

    def test_designs(self):
        for kind, passed, stopped, ripple, attenuation, options in [
                ('lowpass', [0.1], [0.15], 0.2, 60, '--width 16'), ('highpass', [0.3], [0.26], 0.5, 40, '--width 10'),
                ('bandpass', [0.2, 0.25], [0.15, 0.4], 0.2, 60, '--width 16'), ('bandstop', [0.1, 0.35], [0.15, 0.3], 0.3, 50, '--width 12'),
                ('lowpass', [0.1], [0.12], 0.2, 70, '--width 18 --most 160 --odd'), ('lowpass', [0.2], [0.27], 1, 30, '--width 8 --even'),
                ('lowpass', [0.1], [0.15], 0.2, 60, '--width 16 --most 160 --method kaiser'),
                ('bandpass', [0.1, 0.2], [0.05, 0.25], 1, 40, '--width 16 --method kaiser'),
                ('lowpass', [0.1], [0.12], None, None, '--width 24 --taps 160')]:
            with self.subTest(kind=kind, options=options):
                edges = f"{kind} --pass {','.join(map(str, passed))} --stop {','.join(map(str, stopped))}"
                wish = f'--ripple {ripple} --attenuation {attenuation}' if ripple else ''
                outcome = call('design', edges, wish, options, '--json')
                self.assertEqual(outcome.returncode, 0, outcome.stderr)
                design = json.loads(outcome.stdout)
                taps, width = design['coefficients'], int(options.split()[1])
                self.assertEqual((taps, len(taps)), (taps[::-1], design['taps']))
                self.assertIn(max(max(taps), -1 - min(taps)), [2 ** (width - 1) - 1])
                found = figures(taps, *bands_of(kind, passed, stopped))
                self.assertAlmostEqual(design['ripple'], found[0], delta=0.01)
                self.assertAlmostEqual(design['attenuation'], found[1], delta=0.01)
                if ripple:
                    self.assertLessEqual(found[0], ripple + 0.01)
                    self.assertGreaterEqual(found[1], attenuation - 0.01)
                if '--even' in options or '--odd' in options:
                    self.assertEqual(len(taps) % 2, int('--odd' in options))

    def test_designs_are_the_shortest(self):
        """A filter of one or two taps less is not found, at 24 bits where rounding plays no part."""
        for edges, taps in [('lowpass --pass 0.1 --stop 0.15', 55), ('highpass --pass 0.15 --stop 0.1', 53)]:
            wish = f'design {edges} --ripple 0.2 --attenuation 60 --width 24'
            self.assertEqual(json.loads(call(wish, '--json').stdout)['taps'], taps)
            for fewer in {taps - 2, taps - 1} if 'low' in edges else {taps - 2}:
                self.assertEqual(call(wish, f'--taps {fewer}').returncode, 1)

    def test_edges_in_hertz(self):
        wish = 'design lowpass --ripple 0.5 --attenuation 40 --width 12'
        self.assertEqual(call(wish, '--pass 4800 --stop 7200 --rate 48000').stdout, call(wish, '--pass 0.1 --stop 0.15').stdout)

    def test_root_raised_cosine(self):
        for samples, rolloff, span in [(4, 0.25, 8), (3, 0.5, 5), (5, 0, 3), (2, 1, 7)]:
            with self.subTest(samples=samples, rolloff=rolloff, span=span):
                outcome = call(f'design rootraisedcosine --symbol-samples {samples} --rolloff {rolloff} --span {span} --width 24 --json')
                design = json.loads(outcome.stdout)
                self.assertEqual((design['taps'], design['ripple'], design['attenuation']), (span * samples + 1, None, None))
                # the inverse Fourier transform of the root of the raised cosine, by Simpson's rule
                edge, steps = (1 + rolloff) / 2, 2000
                def height(time):
                    def integrand(f):
                        beyond = f - (1 - rolloff) / 2
                        root = 1 if beyond <= 0 else math.cos(math.pi * beyond / (2 * rolloff))
                        return 2 * root * math.cos(2 * math.pi * f * time)
                    # piecewise, because of the corner
                    def simpson(low, high):
                        h = (high - low) / steps
                        return h / 3 * sum((1 if i in (0, steps) else 4 if i % 2 else 2) * integrand(low + i * h) for i in range(steps + 1))
                    return simpson(0, (1 - rolloff) / 2) + (simpson((1 - rolloff) / 2, edge) if rolloff else 0)
                heights = [height((index - span * samples / 2) / samples) for index in range(span * samples + 1)]
                scale = design['coefficients'][span * samples // 2] / heights[span * samples // 2]
                for tap, expected in zip(design['coefficients'], heights):
                    self.assertAlmostEqual(tap, scale * expected, delta=2)

    def test_unmet_wishes(self):
        wish = 'design lowpass --pass 0.1 --stop 0.12 --ripple 0.2 --attenuation 70'
        for options, relaxed in [('--width 16', '56 taps reach'), ('--width 10 --most 160', 'more bits than 10')]:
            outcome = call(wish, options)
            self.assertEqual((outcome.stdout, outcome.returncode), ('', 1))
            self.assertIn(relaxed, outcome.stderr)
        self.assertEqual(call('design highpass --pass 0.3 --stop 0.2 --ripple 1 --attenuation 20 --width 8 --even').returncode, 1)
        for wrong in ['lowpass --pass 0.2 --stop 0.1 --ripple 1 --attenuation 20 --width 8', 'lowpass --pass 0.1 --stop 0.2 --width 8',
                      'lowpass --pass 0.1 --stop 0.5 --ripple 1 --attenuation 20 --width 8', 'rootraisedcosine --width 8',
                      'bandpass --pass 0.1 --stop 0.2 --ripple 1 --attenuation 20 --width 8',
                      'lowpass --pass 0.1 --stop 0.2 --taps 21 --width 8 --even', 'nothing --width 8']:
            self.assertEqual(call('design', wrong).returncode, 2, wrong)

    def test_missing_module(self):
        """The rest works without the part that designs."""
        moved = self.folder / 'bin' / PROGRAM.name
        moved.parent.mkdir()
        shutil.copy(PROGRAM, moved)
        outcome = call('design lowpass --pass 0.1 --stop 0.2 --ripple 1 --attenuation 20 --width 8', program=moved)
        self.assertEqual((outcome.stdout, outcome.returncode), ('', 1))
        self.assertIn('velmora_design.so', outcome.stderr)
        for rest in ['response --list 1 --width 8', 'design rootraisedcosine --symbol-samples 2 --rolloff 0.5 --span 4 --width 8']:
            self.assertEqual(call(rest, program=moved).returncode, 0)

    def test_response(self):
        configuration = (EXAMPLES / 'fir_transpose_symmetric.velmora').read_text()
        for name, text, taps in [('as listed', configuration, [3, 9, 27, 27, 9, 3]),
                                 ('cut to the width', configuration.replace('3, 9, 27,', 'x"1fd", 200, -1,', 1), [-3, -56, -1, 27, 9, 3])]:
            response = json.loads(call('response - --points 33 --json', text=text).stdout)
            largest = max(magnitude(taps, index / 64) for index in range(33))
            self.assertEqual(response['frequency'], [index / 64 for index in range(33)], name)
            for frequency, level, phase in zip(response['frequency'], response['magnitude'], response['phase']):
                expected = sum(tap * cmath.exp(-2j * math.pi * frequency * index) for index, tap in enumerate(taps)) / largest
                if level > -400:
                    self.assertAlmostEqual(abs(cmath.rect(10 ** (level / 20), phase) - expected), 0, 9)
                else:
                    self.assertAlmostEqual(abs(expected), 0, 9)
        columns = [line.split() for line in call('response --width 12 --points 3 --list', ['1, 2, 1']).stdout.splitlines()]
        self.assertEqual([[float(word) for word in line] for line in columns], [[0, 0, 0], [0.25, -6.0206, -1.570796327], [0.5, -400, 0]])
        for wrong in [configuration.replace('Constant', 'Input'), configuration.replace('Coefficients = 3', 'Coefficients = y'), '']:
            self.assertEqual(call('response -', text=wrong).returncode, 1)


if __name__ == '__main__':
    unittest.main(argv=sys.argv[:1])
