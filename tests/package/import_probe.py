"""A generator script that tells what the interpreter of an installation can import, and where it takes it from."""

import json
import sys

# One of each kind: pure, built in, an extension, with data, and what needs several others.
MODULES = 'argparse bz2 csv encodings.gb18030 json math multiprocessing pickle subprocess tempfile unittest zlib'.split()


def failures():
    found = []
    for name in MODULES:
        try:
            __import__(name)
        except Exception as error:
            found.append('%s: %s' % (name, error))
    return found


def failuresOfUse():
    """Modules that import and still lack what they are for."""
    import hashlib
    import xml.etree.cElementTree
    checks = [('hashlib', hashlib.sha256('abc').hexdigest()[:8] == 'ba7816bf' and hashlib.md5('').hexdigest()[:8] == 'd41d8cd9'),
              ('cElementTree', xml.etree.cElementTree.fromstring('<a b="1"/>').get('b') == '1')]
    return [name for name, works in checks if not works]


def generate(argDict):
    report = {'failures': failures() or failuresOfUse(), 'prefix': sys.prefix, 'path': sys.path,
              'files': [module.__file__ for module in sys.modules.values() if hasattr(module, '__file__')]}
    return {'report.json': json.dumps(report)}
