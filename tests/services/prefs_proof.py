"""Preference files beside a reader and a writer that share nothing with the framework.

prefs_proof.py PREFSECHO: writes 500 random trees in whatever form the format allows, lets PrefsEcho read and
write them, and reads its files back: the trees must be the same, and the files, byte for byte, what this writer
makes of them in the form that the framework promises.
"""
import pathlib
import random
import re
import subprocess
import sys
import tempfile

TREES = 500
UNITS = ('abcXYZ 019.,;:/|%&<>=?*#-_\\\\\\"""\'\t\r\n\x01\x7f\x80\xa5\xe9\u0416\u4e00\u2028\ufffd'
         '\U0001f600nt')
NAMES = ''.join(chr(code) for code in range(32, 127)) + '\t'
ESCAPES = {'\\': '\\\\', '"': '\\"', '\t': '\\t', '\r\n': '\\n'}
PIECE = re.compile(r'\\(.)|([^"\\])', re.DOTALL)


def quoted(text, escapes):
    return '"' + re.sub(r'\r\n|[\\"\t]', lambda found: escapes.get(found[0], found[0]), text) + '"'


def rendered(tree):
    """The form that the framework promises."""
    text = '#BEGINPREFS\r\n'
    for group, values in tree.items():
        text += '\r\n' + quoted(group, ESCAPES) + '\r\n#BEGINDICT\r\n'
        text += ''.join(quoted(key, ESCAPES) + ' ' + quoted(value, ESCAPES) + '\r\n'
                        for key, value in values.items())
        text += '#ENDDICT\r\n\r\n'
    return text + '#ENDPREFS\r\n'


def loosely(tree, dice):
    """Any form that a reader must take."""
    end = dice.choice(['\n', '\r\n', '\r'])
    escapes = dict(ESCAPES)
    if dice.random() < 0.5:
        del escapes['\t']  # may stand for itself
    text = dice.choice(['', 'something before' + end]) + '#BEGINPREFS' + end
    for group, values in tree.items():
        text += end * dice.randrange(3) + quoted(group, escapes) + dice.choice(['', ' ', end]) + end
        text += '#BEGINDICT' + end
        for key, value in values.items():
            text += ' ' * dice.randrange(2) + quoted(key, escapes) + ' ' * dice.randrange(3)
            text += quoted(value, escapes) + dice.choice(['', ' passed over']) + end
        text += '#ENDDICT' + end
    return text + '#ENDPREFS' + dice.choice(['', end])


def string_at(text, at):
    """The quoted string that begins there, and where it ends."""
    result = ''
    at += 1
    while text[at] != '"':
        found = PIECE.match(text, at)
        code = found[1]
        result += found[2] if code is None else {'n': '\r\n', 't': '\t', '"': '"', '\\': '\\'}[code]
        at = found.end()
    return result, at + 1


def parsed(text):
    lines = text.split('\r\n')
    assert lines[0] == '#BEGINPREFS' and lines[-2:] == ['#ENDPREFS', ''], text
    tree, values = {}, None
    for line in lines[1:-2]:
        if line == '#BEGINDICT':
            values = tree[group] = {}
        elif line == '#ENDDICT':
            values = None
        elif line and values is None:
            group, _ = string_at(line, 0)
        elif line:
            key, at = string_at(line, 0)
            values[key], _ = string_at(line, at + 1)
    return tree


def encoded(text, kind):
    """In UTF-8 the framework writes and reads each half of a surrogate pair on its own."""
    wide = text.encode('utf-16-le')
    if kind == 'utf16':
        return wide
    halves = ''.join(chr(wide[i] | wide[i + 1] << 8) for i in range(0, len(wide), 2))
    return halves.encode('utf-8', 'surrogatepass')


def decoded(data, kind):
    if kind == 'utf16':
        return data.decode('utf-16')
    return data.decode('utf-8', 'surrogatepass').encode('utf-16-le', 'surrogatepass').decode('utf-16-le')


def some(units, dice, most):
    text = ''.join(dice.choice(units) for _ in range(dice.randrange(most)))
    return re.sub(r'\r\n|\n\r|\r|\n', '\r\n', text)  # a line end of any kind is kept as one of this kind


def main():
    dice = random.Random(10)
    trees = {}
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        for number in range(TREES):
            tree = {some(NAMES, dice, 12): {some(NAMES, dice, 12): some(UNITS, dice, 40)
                                           for _ in range(1, dice.randrange(2, 12))}
                    for _ in range(dice.randrange(7))}
            kind = dice.choice(['utf8', 'utf16'])
            trees[f'{number}.{kind}'] = tree
            mark = '\ufeff' if kind == 'utf16' or dice.random() < 0.3 else ''
            (folder / f'{number}.{kind}.in').write_bytes(encoded(mark + loosely(tree, dice), kind))
        done = subprocess.run([sys.argv[1], name], capture_output=True, text=True)
        assert done.returncode == 0 and not done.stdout, done.stdout + done.stderr
        for stem, tree in trees.items():
            kind = stem.split('.')[1]
            written = (folder / f'{stem}.out').read_bytes()
            text = decoded(written, kind)
            assert parsed(text) == tree, (stem, tree, text)
            wanted = rendered(parsed(text))
            mark = b'\xff\xfe' if kind == 'utf16' else b''
            assert written == mark + encoded(wanted, kind), (stem, text)
    print(f'{len(trees)} trees each way')


main()
