#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Reads the ELF headers of every program and library in the folders and files that are named.

Rejects an empty entry in RUNPATH or RPATH, which would be the current folder. With --hardened, each file must also be
position independent, have full RELRO and BIND_NOW and no executable stack or text relocations, check its stack, and
begin each function with endbr64 on x86-64; at least one file must call a fortified function."""

from __future__ import annotations

import argparse
import struct
import sys
from pathlib import Path

PT_LOAD, PT_DYNAMIC, PT_GNU_STACK, PT_GNU_RELRO = 1, 2, 0x6474E551, 0x6474E552
DT_NULL, DT_STRTAB, DT_SYMTAB, DT_RPATH, DT_TEXTREL, DT_RUNPATH, DT_FLAGS, DT_FLAGS_1 = (
    0, 5, 6, 15, 22, 29, 30, 0x6FFFFFFB)  # fmt: skip
DT_BIND_NOW = 24
DF_TEXTREL, DF_BIND_NOW, DF_1_NOW, DF_1_PIE = 4, 8, 1, 0x08000000
ET_EXEC, ET_DYN = 2, 3
EM_X86_64 = 62
SHT_DYNSYM = 11
STT_FUNC = 2
ENDBR64 = bytes.fromhex("f30f1efa")


class Elf:
    """A 64-bit little-endian file with dynamic linking."""

    def __init__(self, path: Path) -> None:
        self.path = path
        self.data = path.read_bytes()
        header = struct.unpack_from("<HHIQQQIHHHHHH", self.data, 16)
        self.type, self.machine = header[0], header[1]
        program_at, section_at, entry_size, entries = header[4], header[5], header[8], header[9]
        self.segments = [struct.unpack_from("<IIQQQQQQ", self.data, program_at + i * entry_size) for i in range(entries)]
        self.sections = [struct.unpack_from("<IIQQQQIIQQ", self.data, section_at + i * header[10]) for i in range(header[11])]
        self.dynamic: dict[int, int] = {}
        for segment in self.segments:
            if segment[0] == PT_DYNAMIC:
                for at in range(segment[2], segment[2] + segment[5], 16):
                    tag, value = struct.unpack_from("<qQ", self.data, at)
                    if tag == DT_NULL:
                        break
                    self.dynamic[tag] = value

    def _offset(self, address: int) -> int:
        for kind, _, offset, virtual, _, size, _, _ in self.segments:
            if kind == PT_LOAD and virtual <= address < virtual + size:
                return address - virtual + offset
        raise ValueError(f"{self.path}: no segment holds {address:#x}")

    def _text(self, index: int) -> str:
        start = self._offset(self.dynamic[DT_STRTAB]) + index
        return self.data[start : self.data.index(b"\0", start)].decode()

    def search_paths(self) -> list[str]:
        return [self._text(self.dynamic[tag]) for tag in (DT_RPATH, DT_RUNPATH) if tag in self.dynamic]

    def symbols(self) -> list[tuple[str, int, int, int]]:
        """Name, kind, section and address of each dynamic symbol."""
        result = []
        for section in self.sections:
            if section[1] == SHT_DYNSYM:
                for at in range(section[4], section[4] + section[5], 24):
                    name, info, _, index, value, _ = struct.unpack_from("<IBBHQQ", self.data, at)
                    result.append((self._text(name), info & 15, index, value))
        return result

    def segment_flags(self, kind: int) -> int | None:
        return next((segment[1] for segment in self.segments if segment[0] == kind), None)


def empty_entries(elf: Elf) -> list[str]:
    return [f"the search path '{path}' has an empty entry" for path in elf.search_paths() if "" in path.split(":")]


def weaknesses(elf: Elf) -> list[str]:
    flags, flags_1 = elf.dynamic.get(DT_FLAGS, 0), elf.dynamic.get(DT_FLAGS_1, 0)
    symbols = elf.symbols()
    undefined = {name.split("@")[0] for name, _, section, _ in symbols if section == 0}
    stack = elf.segment_flags(PT_GNU_STACK)
    is_library = ".so" in elf.path.name
    found = {
        "it is not position independent": elf.type != ET_DYN or (not is_library and not flags_1 & DF_1_PIE),
        "it has no RELRO segment": elf.segment_flags(PT_GNU_RELRO) is None,
        "it is not bound when it is loaded": not (flags & DF_BIND_NOW or flags_1 & DF_1_NOW or DT_BIND_NOW in elf.dynamic),
        "its stack is executable": stack is None or bool(stack & 1),
        "it has text relocations": DT_TEXTREL in elf.dynamic or bool(flags & DF_TEXTREL),
        "it does not check its stack": "__stack_chk_fail" not in undefined,
    }
    if elf.machine == EM_X86_64:
        functions = [value for _, kind, section, value in symbols if kind == STT_FUNC and section != 0]
        open_ = [value for value in functions if not elf.data[elf._offset(value) :].startswith(ENDBR64)]
        found[f"{len(open_)} of {len(functions)} functions do not begin with endbr64"] = bool(open_)
    return [text for text, is_so in found.items() if is_so]


def is_elf(path: Path) -> bool:
    if path.is_symlink() or not path.is_file() or path.suffix in (".o", ".a", ".debug"):
        return False
    with path.open("rb") as file:
        head = file.read(20)
    return head[:6] == b"\x7fELF\x02\x01" and struct.unpack_from("<H", head, 16)[0] in (ET_EXEC, ET_DYN)


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--hardened", action="store_true")
    parser.add_argument("places", nargs="+", type=Path)
    options = parser.parse_args()
    files = sorted({file for place in options.places for file in ([place] if place.is_file() else place.glob("*"))
                    if is_elf(file)})  # fmt: skip
    complaints = []
    fortified = False
    for file in files:
        elf = Elf(file)
        complaints += [f"{file}: {text}" for text in empty_entries(elf)]
        if options.hardened:
            complaints += [f"{file}: {text}" for text in weaknesses(elf)]
            fortified = fortified or any(name.split("@")[0].endswith("_chk") for name, *_ in elf.symbols())
    if not files:
        complaints.append(f"no program or library in {', '.join(map(str, options.places))}")
    elif options.hardened and not fortified:
        complaints.append("none of the files calls a fortified function")
    print("\n".join(complaints) or f"{len(files)} files are in order")
    return 1 if complaints else 0


if __name__ == "__main__":
    sys.exit(main())
