"""A VHDL test bench that applies a line of inputs at each clock and tells the outputs just before the rising edge."""

from hdl_tools import require

BENCH = """
library ieee;
use ieee.std_logic_1164.all;
use std.textio.all;

entity bench is
end entity bench;

architecture test of bench is
  signal clock   : std_logic := '0';
  signal inputs  : std_logic_vector(1 to {input_width}) := (others => '0');
  signal outputs : std_logic_vector(1 to {output_width});
begin

  dut : entity work.{entity}
    port map ({port_map});

  cycles : process
    file stimulus     : text open read_mode is "stimulus.txt";
    file response     : text open write_mode is "response.txt";
    variable given    : line;
    variable seen     : line;
    variable number   : natural := 0;
    variable patience : natural;
    variable blank    : character;
    variable applied  : string(1 to inputs'length);
    variable levels   : std_logic_vector(inputs'range);
    variable values   : string(1 to outputs'length);
  begin
    while not endfile(stimulus) loop
      readline(stimulus, given);
      read(given, patience);
      read(given, blank);
      read(given, applied);
      for i in applied'range loop
        case applied(i) is
          when '0'    => levels(i) := '0';
          when '1'    => levels(i) := '1';
          when others => levels(i) := 'X';
        end case;
      end loop;
      inputs <= levels;
      loop
        wait for 5 ns;
        for i in values'range loop
          values(i) := std_logic'image(outputs(i))(2);
        end loop;
        write(seen, number);
        write(seen, ' ');
        write(seen, values);
        writeline(response, seen);
        if {is_taken} then
          patience := 0;
        else
          patience := patience - 1;
        end if;
        clock <= '1';
        wait for 5 ns;
        clock <= '0';
        exit when patience = 0;
      end loop;
      number := number + 1;
    end loop;
    wait;
  end process cycles;

end architecture test;
"""


class ClockedBench:
    """A bench for an entity; the ports are told as dictionaries from name to width, None being a single bit.

    A line is (patience, inputs as a text of 0, 1 and X): it stays for that many clocks, or until the output 'ready' is 1.
    """

    def __init__(self, entity, inputs, outputs, clock="clk", ready=None):
        self.outputs = places(outputs)
        port_map = [f"{clock} => clock"]
        for vector, ports in (("inputs", places(inputs)), ("outputs", self.outputs)):
            for name, place in ports.items():
                index = f"{place.start + 1} to {place.stop}" if (inputs | outputs)[name] else place.stop
                port_map.append(f"{name} => {vector}({index})")
        self.text = BENCH.format(
            entity=entity, input_width=total_width(inputs), output_width=total_width(outputs),
            port_map=",\n              ".join(port_map),
            is_taken=f"outputs({self.outputs[ready].stop}) = '1'" if ready else "false")

    def run(self, ghdl, lines, *options):
        """(number of the line, outputs as a text) of every clock; the entity is analysed already."""
        (ghdl.directory / "bench.vhd").write_text(self.text)
        with open(ghdl.directory / "stimulus.txt", "w", encoding="ascii") as stimulus:
            stimulus.writelines(f"{patience} {inputs}\n" for patience, inputs in lines)
        ghdl.analyse(["bench.vhd"])
        ghdl("-e", "bench")
        output = ghdl("-r", "bench", *options)
        require(output == "", f"the simulation is not silent:\n{output[:4000]}")
        rows = [row.split(" ") for row in (ghdl.directory / "response.txt").read_text().splitlines()]
        require(rows and int(rows[-1][0]) == len(lines) - 1, "the simulation ended early")
        return [(int(line), outputs) for line, outputs in rows]

    def fields(self, outputs):
        """The text of each output by its name."""
        return {name: outputs[place] for name, place in self.outputs.items()}


def places(ports):
    """The place of each port in a line."""
    found, begin = {}, 0
    for name, width in ports.items():
        found[name] = slice(begin, begin + (width or 1))
        begin += width or 1
    return found


def total_width(ports):
    return sum(width or 1 for width in ports.values())


def binary(value, width):
    """The low bits of a number, of which 'width' None means one."""
    width = width or 1
    return format(value & ((1 << width) - 1), f"0{width}b")
