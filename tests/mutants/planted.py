"""The list of planted faults, and a copy of the tree that holds all of them, each behind a switch."""

import dataclasses
import pathlib
import re
import subprocess
import zlib

SWITCH_HEADER = "OznaMutant.h"
VARIABLE = "OZNA_MUTANT"
REACHED = "OZNA_MUTANTS_REACHED"

SWITCH = f"""#pragma once

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <sys/syscall.h>
#include <unistd.h>

// Adds the number to the file that the environment variable {REACHED} names, so that it is known which tests come by
// a fault at all. It asks the kernel directly, as some tests take the place of the C library's functions.
inline bool OznaMutantReached(std::uint32_t number)
{{
    const char* const path = std::getenv("{REACHED}");
    if (path == nullptr)
        return true;
    const auto file = syscall(SYS_openat, AT_FDCWD, path, O_WRONLY | O_APPEND | O_CLOEXEC, 0);
    const std::string line = std::to_string(number) + '\\n';
    const bool isWritten = file >= 0 && syscall(SYS_write, file, line.data(), line.size()) > 0;
    if (file >= 0)
        syscall(SYS_close, file);
    return isWritten;
}}

// Whether the planted fault of that number is switched on, by the environment variable {VARIABLE}.
template<std::uint32_t number>
inline bool OznaMutant()
{{
    static std::atomic<bool> isRecorded = false;
    if (!isRecorded)
        isRecorded = OznaMutantReached(number);
    static const auto chosen = [] {{
        const char* const text = std::getenv("{VARIABLE}");
        return static_cast<std::uint32_t>(text != nullptr ? std::strtoul(text, nullptr, 10) : 0);
    }}();
    return chosen == number;
}}
"""


class ListError(Exception):
    """Something in the list, or in the sources, that does not fit."""


@dataclasses.dataclass
class Fault:
    file: str
    name: str
    find: str = ""  # the code, with what is replaced between « and »
    replacement: str = ""
    equivalent: str = ""  # why no test can notice it

    @property
    def number(self):
        return zlib.crc32(f"{self.file}: {self.name}".encode())

    def __str__(self):
        return f"{self.file}: {self.name}"


def read_list(folder):
    """All faults of the files in folder, in their order. A line is, by how it begins:

    file PATH   of the faults that follow
    - CODE      as it stands in the file, once, with what is replaced between « and »; blanks and ends of line are the
                same, and " … " stands for anything
    + CODE      what is put in its place: an expression for an expression, and statements, or nothing, for statements
    = REASON    why no test can notice the fault
    # anything
    otherwise   the name of a fault, which no other fault of the file has
    """
    faults = []
    for path in sorted(pathlib.Path(folder).iterdir()):
        file = None
        fault = None
        for number, line in enumerate(path.read_text().splitlines(), 1):
            mark, text = line[:2].rstrip(), line[2:]
            if not line or mark == "#":
                continue
            if line.startswith("file "):
                file = line[len("file "):]
            elif mark in ("-", "+", "=") and fault is not None:
                name = {"-": "find", "+": "replacement", "=": "equivalent"}[mark]
                before = getattr(fault, name)
                setattr(fault, name, f"{before}\n{text}" if before else text)
            elif file is not None and line[0] not in "-+= ":
                fault = Fault(file, line)
                faults.append(fault)
            else:
                raise ListError(f"{path}:{number}: cannot be read: {line}")
    numbers = {}
    for fault in faults:
        if fault.find.count("«") != 1 or fault.find.count("»") != 1:
            raise ListError(f"{fault}: what is replaced stands between « and »")
        if fault.number in numbers:
            raise ListError(f"{fault}: the same number as {numbers[fault.number]}: call it otherwise")
        numbers[fault.number] = fault
    return faults


def _pattern(code):
    """Code as a regular expression, in which blanks and ends of line are the same, and … stands for any text."""
    return r"\s+".join(".*?" if word == "…" else re.escape(word) for word in code.split())


def _find(fault, text):
    """Where in text the fault's code stands: the spans before the marked part, of the part, and behind it."""
    before, rest = fault.find.split("«")
    part, after = rest.split("»")
    gap = r"\s*"
    pattern = f"({_pattern(before)}{gap})({_pattern(part)})({gap}{_pattern(after)})"
    found = list(re.finditer(pattern, text, re.DOTALL))
    if len(found) != 1:
        raise ListError(f"{fault}: the code stands {len(found)} times in the file, not once")
    return found[0]


def _switched(faults, part):
    """What stands in the marked part's place: it, what replaces it, and the switches."""
    if not part or part[-1] in ";}":
        for fault in faults:
            part = f"{{ if (OznaMutant<{fault.number}U>()) {{ {fault.replacement} }} else {{ {part} }} }}"
    else:
        for fault in faults:
            part = f"(OznaMutant<{fault.number}U>() ? ({fault.replacement}) : ({part}))"
    return part


def _render(text, first, last, edits):
    """text from first to last with those edits in it, the outermost of them first, each a span and what makes its
    new text of the old one."""
    rendered = ""
    while edits:
        (begin, end), make = edits[0]
        inner = [edit for edit in edits[1:] if edit[0][1] <= end]
        edits = edits[1 + len(inner):]
        if begin < first or end > last:
            raise ListError(f"faults overlap at: {text[begin:end]}")
        part = make(_render(text, begin, end, inner))
        # Lines keep their numbers.
        lines = text[begin:end].count("\n") - part.count("\n")
        rendered += text[first:begin] + part + "\n" * max(lines, 0)
        first = end
    return rendered + text[first:last]


def plant(text, faults):
    """The text of a file with the faults in it."""
    parts = {}
    edits = {}
    for fault in faults:
        match = _find(fault, text)
        # What was a constant of the compiler's has its value when the process begins.
        begin = min(match.start(), text.rfind("\n", 0, match.start(2)) + 1)
        for constant in re.finditer(r"\b(static )?constexpr\b", text[begin:match.start(2)]):
            word = "static inline const" if constant[1] else "const"
            edits[constant.start() + begin, constant.end() + begin] = lambda _, word=word: word
        parts.setdefault(match.span(2), []).append(fault)
    for span, alternatives in parts.items():
        edits[span] = lambda part, alternatives=alternatives: _switched(alternatives, part)
    return _render(text, 0, len(text), sorted(edits.items(), key=lambda edit: (edit[0][0], -edit[0][1])))


def check(root, faults):
    """Whether the code of each fault is there."""
    for name in {fault.file for fault in faults}:
        plant((root / name).read_text(encoding="utf-8"), [fault for fault in faults if fault.file == name])


def _write(path, content):
    """Leaves a file alone that is as it should be, so that nothing is built anew for it."""
    if path.exists() and path.read_bytes() == content:
        return
    path.parent.mkdir(parents=True, exist_ok=True)
    path.write_bytes(content)


def copy_tree(root, target, faults):
    """Brings target up to the tree at root, with the faults planted."""
    listed = subprocess.run(["git", "ls-files", "-z", "--cached", "--others", "--exclude-standard"], cwd=root,
                            check=True, capture_output=True, text=True).stdout
    names = {name for name in listed.split("\0") if name and (root / name).is_file()}
    for fault in faults:
        if fault.file not in names:
            raise ListError(f"{fault}: no such file")
    if target.is_dir():
        for path in target.rglob("*"):
            if path.is_file() and str(path.relative_to(target)) not in names | {SWITCH_HEADER}:
                path.unlink()
    for name in sorted(names):
        content = (root / name).read_bytes()
        planted = [fault for fault in faults if fault.file == name]
        if planted:
            header = "../" * name.count("/") + SWITCH_HEADER
            text = plant(content.decode(), planted)
            content = f'#include "{header}"\n#line 1\n{text}'.encode()
        _write(target / name, content)
        (target / name).chmod((root / name).stat().st_mode)
    _write(target / SWITCH_HEADER, SWITCH.encode())
