"""Reads one processor's half of a Mach-O executable, with LLVM's tools."""

import hashlib
import re
import struct
import subprocess


def output(tool, *arguments):
    return subprocess.run([f"{tool}-14", *arguments], check=True, capture_output=True, text=True).stdout


class Half:
    def __init__(self, executable, processor, folder):
        self.path = f"{folder}/{processor}"
        output("llvm-lipo", executable, "-thin", processor, "-output", self.path)
        with open(self.path, "rb") as file:
            self.bytes = file.read()

    def _objdump(self, what):
        return output("llvm-objdump", "--macho", f"--{what}", self.path)

    def minimum_systems(self):
        return re.findall(r"platform (\w+)\n.*\n *minos ([\d.]+)", self._objdump("private-headers"))

    def exports(self):
        return re.findall(r"^0x\w+ +(\S+)", self._objdump("exports-trie"), re.M)

    def libraries(self):
        return re.findall(r"^\t(\S+) \(", self._objdump("dylibs-used"), re.M)

    def undefined(self):
        """Pairs of a symbol and what it is bound to."""
        listing = output("llvm-nm", "-m", "-u", self.path)
        return re.findall(r"^ *\(undefined\).* (\S+) \((?:from )?(.+)\)$", listing, re.M)

    def objective_c(self):
        """The interface to the Objective-C runtime: a line for each class, method, property and variable.

        Names are those that the runtime reads, not those of the symbols.
        """
        lines = []
        owner = kind = name = extended = superclass = ""
        for line in self._objdump("objc-meta-data").splitlines():
            words = line.split() or [""]
            if match := re.match(r"[0-9a-f]{16} 0x\w+ _(OBJC_CLASS_\$|_OBJC_\$_CATEGORY)_(\w+?)(_\$_\w+)?$", line):
                owner, kind = "", "-"
                extended = match[2] if "CATEGORY" in match[1] else ""
            elif line == "Meta Class":
                owner, kind = "", "+"
            elif words[0] == "superclass":
                superclass = words[-1].removeprefix("_OBJC_CLASS_$_")
            elif words[0] == "classMethods":
                kind = "+"
            elif words[0] == "name" and not owner:
                owner = f"{extended}({words[-1]})" if extended else words[-1]
                if kind == "-" and not extended:
                    lines.append(f"{owner} : {superclass}")
            elif words[0] == "name":
                name = words[-1]
            elif words[0] == "types":
                lines.append(f"{kind}[{owner} {name}] {words[-1]}")
            elif words[0] == "type":
                lines.append(f"{owner} variable {name} {words[-1]}")
            elif words[0] == "attributes":
                lines.append(f"{owner} property {kind}{name} {words[-1]}")
        return lines

    def exceptions_pass(self, dwarf):
        """Whether every function can be unwound: `dwarf` is the encoding that refers to __eh_frame, without where."""
        table = self._objdump("unwind-info")
        return "personality[1]" in table and dwarf not in table

    def signed_ad_hoc(self):
        """Whether there is a signature that names nobody and whose hashes are those of the bytes."""
        found = re.search(r"cmd LC_CODE_SIGNATURE\n.*\n *dataoff (\d+)", self._objdump("private-headers"))
        if not found:
            return False
        blob = self.bytes[int(found[1]) :]
        directory = blob[struct.unpack_from(">I", blob, 16)[0] :]  # the first of its blobs
        magic, _, _, flags, hashes, _, _, count, limit = struct.unpack_from(">9I", directory)
        if magic != 0xFADE0C02 or not flags & 2:
            return False
        page = 1 << directory[39]
        for slot in range(count):
            content = self.bytes[slot * page : min((slot + 1) * page, limit)]
            if directory[hashes + 32 * slot :][:32] != hashlib.sha256(content).digest():
                return False
        return limit == int(found[1])
