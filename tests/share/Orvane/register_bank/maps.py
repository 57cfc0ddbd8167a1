"""The registers of a bank as each of its files gives them: offset, mask and reset value by name."""

import re

from hdl_tools import require, run

C_PROGRAM = """#include <stddef.h>
#include <stdio.h>
#include "{entity}_regs.h"
int main(void)
{{
{lines}
  return sizeof({entity}_regs_t) != {size}u;
}}
"""
C_LINE = """  printf("{name} %u %u %u %u %u\\n", (unsigned){prefix}_OFFSET, (unsigned)offsetof({entity}_regs_t, {name}),
         {prefix}_WIDTH, {prefix}_MASK, {prefix}_RESET);"""

READ_OUT = """library ieee;
use ieee.std_logic_1164.all;
use ieee.numeric_std.all;
use std.textio.all;

entity read_out is
end entity read_out;

architecture test of read_out is
  signal pclk, presetn, psel, penable, pwrite, pready, pslverr, driven : std_logic := '0';
  signal paddr : std_logic_vector(7 downto 0) := (others => '0');
  signal pwdata, prdata, level : std_logic_vector(31 downto 0) := (others => '0');
begin
  dut : entity work.{entity}
    port map (
      pclk => pclk, presetn => presetn, psel => psel, penable => penable, pwrite => pwrite, paddr => paddr, pwdata => pwdata,
      prdata => prdata, pready => pready, pslverr => pslverr, {connections});

  level <= (others => driven);

  process
    procedure pass_clock is
    begin
      wait for 5 ns;
      pclk <= '1';
      wait for 5 ns;
      pclk <= '0';
    end procedure;
    procedure put(name : string) is
      variable row : line;
    begin
      write(row, name & " " & integer'image(to_integer(unsigned(paddr))) & " " & to_string(prdata) & " " & to_string(pslverr));
      writeline(output, row);
    end procedure;
    procedure transfer(address : natural; is_write : std_logic) is
    begin
      (psel, penable, pwrite) <= std_logic_vector'('1', '0', is_write);
      paddr <= std_logic_vector(to_unsigned(address, 8));
      pass_clock;
      penable <= '1';
      wait for 1 ns;
      if is_write = '1' then
        put("write");
      elsif driven = '1' then
        put("mask");
      else
        put("reset");
      end if;
      pass_clock;
      psel <= '0';
    end procedure;
  begin
    pass_clock;
    presetn <= '1';
    for address in 0 to 255 loop
      transfer(address, '0');
    end loop;
    (driven, pwdata) <= std_logic_vector'(32 downto 0 => '1');
    for address in 0 to 255 loop
      transfer(address, '1');
      transfer(address, '0');
    end loop;
    wait;
  end process;
end architecture test;
"""


def from_header(design, registers):
    """What a C program finds, compiled without a warning."""
    entity = design.entity
    lines = [C_LINE.format(entity=entity, name=each.name, prefix=f"{entity}_{each.name}".upper()) for each in registers]
    (design.path / "map.c").write_text(C_PROGRAM.format(entity=entity, lines="\n".join(lines), size=4 * len(registers)))
    for standard in ("c99", "c11", "gnu17"):
        run(["gcc", f"-std={standard}", "-Wall", "-Wextra", "-pedantic", "-Werror", "-Iinclude", "map.c", "-o", "map"], design.path)
    found = {}
    for name, *numbers in map(str.split, run(["./map"], design.path).splitlines()):
        offset, place, width, mask, reset = map(int, numbers)
        require((offset, mask) == (place, 2**width - 1), f"{name}: the header contradicts itself")
        found[name] = (offset, mask, reset)
    return found


def from_page(design):
    """What the table of the Markdown page tells."""
    rows = re.findall(r"(?m)^\| 0x(\w\w) \| (\S+) \| (\w+) \| (\d+) \| 0x(\w+) \| .* \|$",
                      (design.path / f"doc/{design.entity}.md").read_text())
    return {name.replace("\\", ""): (int(offset, 16), 2**int(width) - 1, int(reset, 16)) for offset, name, _, width, reset in rows}


def from_simulation(design, registers):
    """What the bus reads after the reset, and with all bits written or driven as 1; Pulse registers read nothing."""
    ports = {"RW": {"out": "open"}, "RO": {"in": "level"}, "W1C": {"set": "level", "out": "open"}, "Pulse": {"pulse": "open"}}
    connections = [f"{each.name}_{suffix} => " + (signal if signal == "open" else f"{signal}({each.width - 1} downto 0)")
                   for each in registers for suffix, signal in ports[each.access].items()]
    ghdl = design.ghdl("08")
    (ghdl.directory / "read_out.vhd").write_text(READ_OUT.format(entity=design.entity, connections=", ".join(connections)))
    ghdl.analyse(["read_out.vhd"])
    ghdl("-e", "read_out")
    seen = {(kind, int(address)): (int(value, 2), error == "1") for kind, address, value, error in
            re.findall(r"(?m)^(\w+) (\d+) ([01]{32}) ([01])$", ghdl("-r", "read_out"))}
    require(len(seen) == 3 * 256, f"{len(seen)} accesses were seen")
    refused = {kind: {address for seen_kind, address in seen if seen_kind == kind and seen[kind, address][1]}
               for kind in ("reset", "mask", "write")}
    unknown = set(range(256)) - {4 * number for number in range(len(registers))}
    read_only = {4 * number for number, each in enumerate(registers) if each.access == "RO"}
    require(refused == {"reset": unknown, "mask": unknown, "write": unknown | read_only}, f"refused are {refused}")
    require(not any(seen[kind, address][0] for kind in ("reset", "mask") for address in unknown), "an unknown address reads 1")
    return {each.name: (4 * number, seen["mask", 4 * number][0], seen["reset", 4 * number][0])
            for number, each in enumerate(registers)}
