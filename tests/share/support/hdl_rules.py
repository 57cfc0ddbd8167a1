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
    allowed = ALLOWED_CONTEXT | {f"work.{entity}_pkg"} | ({"ieee.math_real"} if is_test_bench else set())
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


def without_attributes(text):
    """The text without its attributes, each of which stands alone on its line."""
    return re.sub(r"(?m)^ *attribute [^\n]*\n", "", text)


def check_design(content, ip_name, entity, shown, units, inputs, outputs):
    """The text of one design: what its header shows, its design units, and its ports by width, None for a single bit."""
    check_text("the design", content)
    text = content.decode("ascii")
    require("%%" not in text, "a key of the argument dictionary is left over")
    check_header("the design", text, ip_name, entity)
    header = re.match(r"(--[^\n]*\n)+", text).group(0)
    for value in shown:
        require(f"  {value}\n" in header, f"the header does not show {value}")
    check_vhdl("the design", text, entity)
    code = re.sub(r"--[^\n]*", "", text)
    names = {"package": f"{entity}_pkg", "entity": entity, "architecture": "rtl"}
    found = re.findall(r"(?m)^(package|entity|architecture)\s+(\w+)", code)
    require(found == [(unit, names[unit]) for unit in units], f"the design units are {found}")
    ports = re.search(r"\bport\s*\((.*?)\)\s*;\s*(end|attribute)\b", code, re.S).group(1)
    found = {(name, direction, int(high) + 1 if high else None) for name, direction, high in
             re.findall(r"(\w+)\s*:\s*(\w+)\s+std_logic(?:_vector\((\d+) downto 0\))?", ports)}
    expected = {(name, direction, width) for direction, all_ports in (("in", inputs), ("out", outputs))
                for name, width in all_ports.items()}
    require(found == expected, f"the ports differ: {found ^ expected}")


def check_constants(text, expected):
    """Type and value of each constant of the package, both without blanks."""
    package = re.sub(r"--[^\n]*", "", text).split("end package")[0]
    found = {name: (re.sub(r"\s", "", type_name), re.sub(r"\s", "", value)) for name, type_name, value in
             re.findall(r"constant\s+(\w+)\s*:\s*([^:]+):=\s*([^;]+);", package)}
    require(found == expected, f"the constants differ: {set(found.items()) ^ set(expected.items())}")
