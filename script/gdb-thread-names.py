# Names the threads of a dump that Ravo has written on Linux. The dump keeps the names in notes of its own, since the
# format has no place for them. Usage: gdb -x script/gdb-thread-names.py PROGRAM DUMP, then "info threads".
import re
import struct

import gdb

OWNER = b"Ravo\0"
NAME_TYPE = 1
PT_NOTE = 4


def core_path():
    found = re.search(r"Local core dump file:\s+`([^']*)'", gdb.execute("info files", to_string=True))
    return found.group(1) if found else None


def padded(size):
    return (size + 3) // 4 * 4


def segments(core):
    header = core.read(64)
    offset, = struct.unpack_from("<Q", header, 32)
    size, count = struct.unpack_from("<HH", header, 54)
    for number in range(count):
        core.seek(offset + number * size)
        kind, _, place, _, _, length = struct.unpack("<IIQQQQ", core.read(40))
        yield kind, place, length


def notes(core):
    for kind, place, length in segments(core):
        if kind != PT_NOTE:
            continue
        core.seek(place)
        data = core.read(length)
        at = 0
        while at + 12 <= len(data):
            owner_size, body_size, note_type = struct.unpack_from("<III", data, at)
            body = at + 12 + padded(owner_size)
            yield data[at + 12:at + 12 + owner_size], note_type, data[body:body + body_size]
            at = body + padded(body_size)


def thread_names(core):
    for owner, note_type, body in notes(core):
        if owner == OWNER and note_type == NAME_TYPE:
            thread, name = struct.unpack("<i16s", body)
            yield thread, name.rstrip(b"\0").decode(errors="replace")


def name_threads():
    path = core_path()
    if path is None:
        print("no dump is loaded")
        return
    with open(path, "rb") as core:
        names = dict(thread_names(core))
    for thread in gdb.selected_inferior().threads():
        if thread.ptid[1] in names:
            thread.name = names[thread.ptid[1]]


name_threads()
