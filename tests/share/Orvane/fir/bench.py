"""A VHDL test bench that drives a filter from a text file and records its pins before every rising edge."""

from hdl_tools import require
from model import Pins

BENCH = """
library ieee;
use ieee.std_logic_1164.all;
use std.textio.all;

entity {entity}_bench is
end entity {entity}_bench;

architecture simulation of {entity}_bench is

  signal clk, rst, din_valid : std_logic := '0';
  signal din_ready           : std_logic := '1';
  signal din_channel, dout_valid, dout_channel, clk_aux1 : std_logic := '0';
  signal din                 : std_logic_vector({input_width} - 1 downto 0) := (others => '0');
  signal dout                : std_logic_vector({output_width} - 1 downto 0);
  signal coefs               : std_logic_vector({coefs_width} - 1 downto 0) := (others => '0');

  function text_of(value : std_logic_vector) return string is
    variable text : string(1 to value'length);
    variable bits : std_logic_vector(1 to value'length) := value;
  begin
    for index in bits'range loop
      text(index) := std_logic'image(bits(index))(2);
    end loop;
    return text;
  end function text_of;

  function text_of(value : std_logic) return string is
  begin
    return std_logic'image(value)(2 to 2);
  end function text_of;

  procedure read_bits(source : inout line; value : out std_logic_vector) is
    variable bits      : std_logic_vector(1 to value'length);
    variable character_read : character;
  begin
    for index in bits'range loop
      read(source, character_read);
      case character_read is
        when '0'    => bits(index) := '0';
        when '1'    => bits(index) := '1';
        when others => bits(index) := 'X';
      end case;
    end loop;
    value := bits;
  end procedure read_bits;

begin

  dut : entity work.{entity}
    port map ({port_map});

  drive : process
    file commands      : text open read_mode is "stimulus.txt";
    file pins          : text open write_mode is "pins.txt";
    variable command   : line;
    variable row       : line;
    variable kind      : character;
    variable blank     : character;
    variable bits      : std_logic_vector(1 to 2);
    variable sample    : std_logic_vector(din'range);
    variable new_coefs : std_logic_vector(coefs'range);
    variable set_index : natural := 0;
    variable patience  : natural;
  begin
    while not endfile(commands) loop
      readline(commands, command);
      read(command, kind);
      read(command, blank);
      if kind = 'C' then
        read_bits(command, new_coefs);
        coefs     <= new_coefs;
        set_index := set_index + 1;
      else
        read_bits(command, bits(1 to 1));
        read(command, blank);
        read_bits(command, bits(2 to 2));
        read(command, patience);
        read(command, blank);
        read_bits(command, sample);
        rst       <= bits(1);
        din_valid <= bits(2);
        din       <= sample;
        loop
          wait for 4 ns;
          write(row, text_of(rst) & ' ' & text_of(din_valid) & ' ' & text_of(din_ready) & ' ' & text_of(din) & ' '
                     & text_of(din_channel) & ' ' & text_of(dout_valid) & ' ' & text_of(dout) & ' '
                     & text_of(dout_channel) & ' ' & text_of(clk_aux1) & ' ' & integer'image(set_index));
          writeline(pins, row);
          patience := patience - 1;
          clk <= '1';
          exit when rst = '1' or din_valid = '0' or din_ready = '1' or patience = 0;
          wait for 5 ns;
          clk <= '0';
          wait for 1 ns;
        end loop;
        wait for 5 ns;
        clk <= '0';
        wait for 1 ns;
      end if;
    end loop;
    wait;
  end process drive;

end architecture simulation;
"""


def bench_name(described):
    return f"{described.entity}_bench"


def bench_text(described):
    ports = ["clk", "rst", "din_valid", "din", "dout_valid", "dout"]
    if described.is_mac:
        ports += ["din_ready", "clk_aux1"]
    if described.is_dual:
        ports += ["din_channel", "dout_channel"]
    coefs_width = described.port_coefficient_count * described.coefficient_width
    if described.coefficients is None:
        ports.append("coefs")
    return BENCH.format(
        entity=described.entity, input_width=described.input_width, output_width=described.output_width,
        coefs_width=coefs_width, port_map=", ".join(f"{port} => {port}" for port in ports))


def simulate(ghdl, described, stimulus, *options):
    """The pins before every edge of a simulation; the filter is already analysed."""
    (ghdl.directory / "stimulus.txt").write_text("\n".join(stimulus.lines) + "\n")
    (ghdl.directory / "bench.vhd").write_text(bench_text(described))
    ghdl.analyse(["bench.vhd"])
    ghdl("-e", bench_name(described))
    output = ghdl("-r", bench_name(described), *options)
    require(output == "", f"the simulation is not silent:\n{output[:4000]}")
    for row in (ghdl.directory / "pins.txt").read_text().splitlines():
        fields = row.split(" ")
        yield Pins(*fields[:-1], coefficient_set=int(fields[-1]))
