"""Rules that every generated HDL file of the catalogue keeps, checked on its text."""

import re

from hdl_tools import require

ALLOWED_CONTEXT = {"ieee.std_logic_1164", "ieee.numeric_std"}


def check_text(name, content):
    """Any generated file: ASCII, LF line ends, no mark of a protected region. The content is given as bytes."""
    require(content != b"", f"{name} is empty")
    for number, line in enumerate(content.split(b"\n"), 1):
        place = f"{name}:{number}"
        require(all(32 <= byte < 127 or byte == 9 for byte in line), f"{place}: not plain ASCII text with LF line ends")
        require(b"`protect begin" not in line and b"`protect end" not in line, f"{place}: mark of a protected region")
    require(content.endswith(b"\n"), f"{name}: the last line does not end")


def check_header(name, text, ip_name, entity):
    """The comment in front of the first other line names IP, entity and script version."""
    header = []
    for line in text.splitlines():
        if not line.startswith(("-- ", "// ", "<!-- ")):
            break
        header.append(line)
    for pattern in (re.escape(ip_name), rf"\b{entity}\b", r"\b\d+\.\d+\.\d+\b"):
        require(any(re.search(pattern, line) for line in header), f"{name}: the header does not show {pattern}")


def check_vhdl(name, text, entity, is_test_bench=False):
    """Context clauses, names of design units, and what the HDL must not hold."""
    code = re.sub(r"--[^\n]*", "", text).lower()
    entity = entity.lower()
    allowed = ALLOWED_CONTEXT | {f"work.{entity}_pkg"} | ({"std.textio"} if is_test_bench else set())
    for package in re.findall(r"\buse\s+(\w+\.\w+)\.\w+\s*;", code):
        require(package in allowed, f"{name}: uses {package}")
    for unit in re.findall(r"(?m)^\s*(?:entity|package(?:\s+body)?)\s+(\w+)\s+is", code):
        expected = unit == f"tb_{entity}" if is_test_bench else (unit == entity or unit.startswith(f"{entity}_"))
        require(expected, f"{name}: design unit {unit} is not named by the entity")
    if is_test_bench:
        return
    require(not re.search(r"\bgeneric\b|\battribute\b|\binout\b|'z'|\bguarded\b", code),
            f"{name}: holds a generic, an attribute, an inout port or a tri-state")
    port_lists = re.findall(r"\bport\s*\((.*?)\)\s*;\s*end\b", code, re.S)
    require(port_lists, f"{name}: no port list")
    for ports in port_lists:
        for port in ports.split(";"):
            require(re.fullmatch(r"\s*\w+\s*:\s*(in|out)\s+std_logic(_vector\(\d+ downto 0\))?\s*", port),
                    f"{name}: port of an unexpected form: {' '.join(port.split())}")
