"""A generator script that tells what the interpreter of an installation can import, and where it takes it from."""

import json
import sys

MODULES = '''
    ConfigParser HTMLParser Queue StringIO abc argparse array ast base64 binascii bisect bz2 cPickle cStringIO calendar cmath
    codecs collections contextlib copy csv datetime decimal difflib doctest email encodings.gb18030 encodings.utf_16 errno fnmatch
    fractions functools future_builtins getopt gettext glob gzip hashlib heapq hmac inspect io itertools json locale logging
    marshal math mmap multiprocessing numbers operator optparse os os.path parser pickle platform pprint random re resource select
    shlex shutil signal socket string struct subprocess tarfile tempfile textwrap threading time traceback unicodedata
    unittest urllib2 urlparse uuid warnings weakref xml.dom.minidom xml.etree.cElementTree xml.etree.ElementTree xml.sax zipfile zlib
'''.split()


def failuresOfImports():
    failures = []
    for name in MODULES:
        try:
            __import__(name)
        except Exception as error:
            failures.append('%s: %s' % (name, error))
    return failures


def failuresOfUse():
    """Modules that import and still lack what they are for."""
    import hashlib
    import xml.etree.cElementTree
    import decimal
    checks = [
        ('hashlib', hashlib.sha256('abc').hexdigest()[:8] == 'ba7816bf' and hashlib.md5('').hexdigest()[:8] == 'd41d8cd9'),
        ('cElementTree', xml.etree.cElementTree.fromstring('<a b="1"/>').get('b') == '1'),
        ('decimal', str(decimal.Decimal(1) / 8) == '0.125'),
        ('codecs', u'\u4e2d'.encode('gb18030') == '\xd6\xd0' and u'\u4e2d'.encode('utf-8') == '\xe4\xb8\xad')]
    return [name for name, works in checks if not works]


def generate(argDict):
    report = {'failures': failuresOfImports() or failuresOfUse(), 'prefix': sys.prefix, 'path': sys.path,
              'files': [module.__file__ for module in sys.modules.values() if hasattr(module, '__file__')]}
    return {'report.json': json.dumps(report)}
