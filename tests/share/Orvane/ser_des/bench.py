"""A VHDL test bench that plays a file of pin changes and records all pins where the file says so."""

import dataclasses

from clocked_bench import places
from hdl_tools import require

BIT_PERIOD = 20  # ns
LINE_DELAY = 7   # ns, from a serial output to the input that it is looped to, besides whole bits

BENCH = """
library ieee;
use ieee.std_logic_1164.all;
use std.textio.all;

entity {entity}_bench is
end entity {entity}_bench;

architecture simulation of {entity}_bench is

  signal reset, word_clk, bit_clk, unsteady      : std_logic := '0';
  signal ser_training, des_training, des_locked  : std_logic := '0';
  signal ser_data                                : std_logic_vector({ser_bits} - 1 downto 0) := (others => '0');
  signal ser_out                                 : std_logic_vector({ser_lines} - 1 downto 0) := (others => '0');
  signal arriving                                : std_logic_vector({des_lines} - 1 downto 0) := (others => '0');
  signal des_in, des_bitslip, des_aligned        : std_logic_vector({des_lines} - 1 downto 0) := (others => '0');
  signal des_data                                : std_logic_vector({des_bits} - 1 downto 0) := (others => '0');

begin

  dut : entity work.{entity}
    port map ({port_map});

  -- Line i is i bits longer than line 0, modulo the word length.
  lines : for i in des_in'range generate
    arriving(i) <= transport ser_out(i mod {ser_lines}) after (i mod {size}) * {bit_period} ns + {line_delay} ns;
    des_in(i) <= arriving(i) xor unsteady; -- wrong but around the rising edge
  end generate lines;

  play : process
    file changes     : text open read_mode is "changes.txt";
    file pins        : text open write_mode is "pins.txt";
    variable change  : line;
    variable row     : line;
    variable pause   : natural;
    variable kind    : character;
    variable level   : std_logic;
    variable words   : std_logic_vector(ser_data'range);
    variable slips   : std_logic_vector(des_bitslip'range);
  begin
    while not endfile(changes) loop
      readline(changes, change);
      read(change, pause);
      wait for pause * 1 ns; -- 0 ns is one delta cycle
      read(change, kind);
      read(change, kind);
      case kind is
        when 's' =>
          write(row, reset & ser_training & ser_data & ser_out & des_training & des_bitslip & des_in & des_data
                     & des_aligned & des_locked);
          writeline(pins, row);
        when 'i' =>
          read(change, level);
          ser_training <= level;
          read(change, words);
          ser_data <= words;
          read(change, level);
          des_training <= level;
          read(change, slips);
          des_bitslip <= slips;
        when others =>
          read(change, level);
          case kind is
            when 'r'    => reset <= level;
            when 'w'    => word_clk <= level;
            when 'b'    => bit_clk <= level;
            when 'u'    => unsteady <= level;
            when others => word_clk <= level; bit_clk <= level;
          end case;
      end case;
    end loop;
    wait;
  end process play;

end architecture simulation;
"""

@dataclasses.dataclass(frozen=True)
class Shape:
    """What the pins of an interface follow from."""

    entity: str
    size: int
    ser_count: int
    des_count: int

    def widths(self):
        """Widths in the record; an absent side has dummy pins."""
        ser_lines, des_lines = max(self.ser_count, 1), max(self.des_count, 1)
        return {"reset": None, "ser_training": None, "ser_data": ser_lines * self.size, "ser_out": ser_lines,
                "des_training": None, "des_bitslip": des_lines, "des_in": des_lines, "des_data": des_lines * self.size,
                "des_aligned": des_lines, "des_locked": None}

    def inputs(self):
        """The inputs that the interface has, with their widths, None for a single bit."""
        ports = {"reset": None, "word_clk": None, "bit_clk": None}
        if self.ser_count:
            ports.update(ser_training=None, ser_data=self.ser_count * self.size)
        if self.des_count:
            ports.update(des_training=None, des_bitslip=self.des_count, des_in=self.des_count)
        return ports

    def outputs(self):
        ports = {"ser_out": self.ser_count} if self.ser_count else {}
        if self.des_count:
            ports.update(des_data=self.des_count * self.size, des_aligned=self.des_count, des_locked=None)
        return ports


def bench_text(shape):
    ports = [*shape.inputs(), *shape.outputs()]
    ser_lines, des_lines = shape.widths()["ser_out"], shape.widths()["des_in"]
    return BENCH.format(
        entity=shape.entity, ser_lines=ser_lines, ser_bits=ser_lines * shape.size, des_lines=des_lines,
        des_bits=des_lines * shape.size, port_map=", ".join(f"{port} => {port}" for port in ports),
        size=shape.size, bit_period=BIT_PERIOD, line_delay=LINE_DELAY)


def simulate(ghdl, shape, changes):
    """All pins at each 's' of the changes, as one dictionary of bit strings each; the design is analysed already."""
    (ghdl.directory / "changes.txt").write_text("\n".join(changes) + "\n")
    (ghdl.directory / "bench.vhd").write_text(bench_text(shape))
    ghdl.analyse(["bench.vhd"])
    ghdl("-e", f"{shape.entity}_bench")
    output = ghdl("-r", f"{shape.entity}_bench", "--ieee-asserts=disable-at-0")
    require(output == "", f"the simulation is not silent:\n{output[:4000]}")
    widths = places(shape.widths())
    for row in (ghdl.directory / "pins.txt").read_text().splitlines():
        yield {name: row[place] for name, place in widths.items()}
