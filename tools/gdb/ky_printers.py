"""Shows the library's classes in gdb as people write them.

    (gdb) source /path/to/ky_printers.py
    (gdb) print address
    $1 = BOARD[2]/IOCHANNEL[3]/VOLTAGE_MAX
    (gdb) print *parameter
    $2 = VOLTAGE_MAX Float64 10 V
    (gdb) print root
    $3 = ROOT, 1 parameter, 2 sub-items
    (gdb) ky-tree &root

Nothing here calls a function of the program: it works on core files, too. The classes must be known to gdb, from the
library's debug information or from a program that is compiled with -g -femit-class-debug-always.
"""

import math
import struct

import gdb
import gdb.printing

TYPES = {0x111: ('Int8', 'signed char'), 0x112: ('Int16', 'short'), 0x114: ('Int32', 'int'),
         0x118: ('Long64', 'long long'), 0x121: ('UInt8', 'unsigned char'), 0x122: ('UInt16', 'unsigned short'),
         0x124: ('UInt32', 'unsigned int'), 0x128: ('ULong64', 'unsigned long long'), 0x214: ('Float32', 'float'),
         0x218: ('Float64', 'double'), 0x2000: ('String', None), 0x4000: ('Version', None)}
EXTERNAL = 0x80000000    # the flag of a value that lives elsewhere
MOST_SIBLINGS = 1000000    # a ring in damaged memory ends somewhere


def id_name(number):
    """The registered name of an ID, else its number."""
    try:
        # The map of names: the list, its capacity, the count. By its place, as a program may know no more of its class.
        place = '(char*)&_ZN15KyNInventoryIDs3MapE'
        if number < int(gdb.parse_and_eval('((unsigned int*)(%s + sizeof(void*)))[1]' % place)):
            return gdb.parse_and_eval('(*(char***)%s)[%d]' % (place, number)).string(errors='replace')
    except gdb.error:
        pass
    return str(number)


def element(number, index):
    return id_name(number) + ('' if index == 1 else '[%d]' % index)


def string_of(value):
    """The text of a KyCString: short ones stand in the object, their length in the odd first byte."""
    inline = value['m_inline']
    tag_byte, text_byte = (7, 0) if 'big' in gdb.execute('show endian', to_string=True) else (0, 1)
    tag = int(inline[tag_byte])
    if tag & 1:
        data = bytes(int(inline[text_byte + n]) for n in range(tag >> 1))
    else:
        block = gdb.Value(int(value['m_bits'])).cast(gdb.lookup_type('KyCString::TBlock').pointer())
        length = int(block['length'])
        data = gdb.selected_inferior().read_memory(int(block + 1), length).tobytes() if length else b''
    return data.decode('utf-8', 'backslashreplace')


def version_of(value):
    return '.'.join(str(int(value[field])) for field in ('m_major', 'm_minor', 'm_maintenance', 'm_build'))


def number_text(number, is_single):
    """The shortest text that reads back as this number, without ".0"."""
    def reads_back(text):
        try:
            return struct.unpack('<f', struct.pack('<f', float(text)))[0] == number
        except OverflowError:    # rounded up beyond the largest one
            return False

    if is_single and math.isfinite(number):
        digits = ('%.*g' % (precision, number) for precision in range(1, 10))
        number = float(next(text for text in digits if reads_back(text)))
    text = repr(number)
    return text[:-2] if text.endswith('.0') else text


def siblings(first):
    node = first
    for _ in range(MOST_SIBLINGS):
        if int(node) == 0:
            return
        yield node
        node = node['m_next']


def parameter_value(parameter):
    kind = int(parameter['m_typeAndFlags']) & 0xFFFF
    is_external = int(parameter['m_typeAndFlags']) & EXTERNAL
    place = parameter['m_value']
    if kind == 0x4000:
        version = place['external'] if is_external else place['version']
        if int(version) == 0:
            return '0.0.0.0'
        return version_of(version.cast(gdb.lookup_type('KyCVersion').pointer()).dereference())
    where = place['external'] if is_external else place.address
    if kind == 0x2000:
        return '"%s"' % string_of(where.cast(gdb.lookup_type('KyCString').pointer()).dereference())
    if kind not in TYPES:
        return '?'
    value = where.cast(gdb.lookup_type(TYPES[kind][1]).pointer()).dereference()
    return number_text(float(value), kind == 0x214) if kind & 0x200 else str(int(value))


def parameter_line(parameter):
    kind = int(parameter['m_typeAndFlags']) & 0xFFFF
    try:
        unit = string_of(parameter.cast(gdb.lookup_type('KyCInventoryParameter'))['m_unit'])
    except gdb.error:
        unit = ''
    name = TYPES.get(kind, ('0x%x' % kind,))[0]
    return ' '.join(part for part in (id_name(int(parameter['m_id'])), name, parameter_value(parameter), unit) if part)


def item_name(item):
    return element(int(item['m_classId']), int(item['m_unitId']))


def plural(count, noun):
    return '%d %s%s' % (count, noun, '' if count == 1 else 's')


class Printer:
    """A value that is shown by one function of it."""

    def __init__(self, show, value):
        self.show = show
        self.value = value

    def to_string(self):
        return self.show(self.value)


def show_address(value):
    elements = value['m_elements']
    return '/'.join(element(int(elements[n]['id']), int(elements[n]['index'])) for n in range(int(value['m_length'])))


def show_item(value):
    parameters = sum(1 for _ in siblings(value['m_firstParameter']))
    items = sum(1 for _ in siblings(value['m_firstChild']))
    return '%s, %s, %s' % (item_name(value), plural(parameters, 'parameter'), plural(items, 'sub-item'))


class Collection(gdb.printing.PrettyPrinter):
    SHOWN = {'KyCString': lambda value: '"%s"' % string_of(value), 'KyCVersion': version_of,
             'KyCInventoryAddress': show_address, 'KyCInventoryParameter': parameter_line, 'KyCInventoryItem': show_item}

    def __call__(self, value):
        show = self.SHOWN.get(value.type.strip_typedefs().unqualified().tag)
        return Printer(show, value) if show else None


class Tree(gdb.Command):
    """ky-tree ITEM: prints the item with its parameters and all below it. ITEM is a pointer to a KyCInventoryItem."""

    def __init__(self):
        super().__init__('ky-tree', gdb.COMMAND_DATA, gdb.COMPLETE_EXPRESSION)

    def invoke(self, argument, _from_tty):
        item = gdb.parse_and_eval(argument).cast(gdb.lookup_type('KyCComposite').pointer())
        pending = [(item, 0)]
        while pending:
            node, depth = pending.pop()
            print('  ' * depth + item_name(node))
            for parameter in siblings(node['m_firstParameter']):
                print('  ' * (depth + 1) + parameter_line(parameter.dereference()))
            pending.extend((child, depth + 1) for child in reversed(list(siblings(node['m_firstChild']))))


gdb.printing.register_pretty_printer(gdb.current_objfile(), Collection('KyInventoryTree'), replace=True)
Tree()
