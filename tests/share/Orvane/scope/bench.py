"""Simulates a generated scope on given inputs and compares its outputs with the expected ones."""

from hdl_tools import require

# Ports that take part, in the order of a line of the stimulus and of the response.
INPUTS = {"scope": ["reset", "arm", "force_trigger", "trig_in", "data_in", "rd_addr"],
          "startup_scope": ["reset", "trig_in", "data_in", "rd_addr"]}
OUTPUTS = {"scope": ["busy", "triggered", "done", "window_count", "rd_data"],
           "startup_scope": ["busy", "triggered", "done", "first_valid", "rd_data"]}

BENCH = """
library ieee;
use ieee.std_logic_1164.all;

use std.textio.all;

entity bench is
end entity bench;

architecture test of bench is

  signal clk : std_logic := '0';
{signals}

  function bits(text : string) return std_logic_vector is
    variable value : std_logic_vector(text'length - 1 downto 0) := (others => '0');
  begin
    for place in text'range loop
      if text(place) = '1' then
        value(text'right - place) := '1';
      end if;
    end loop;
    return value;
  end function;

  function image(value : std_logic_vector) return string is
    constant NAMES  : string(1 to 9) := "UX01ZWLH-";
    variable result : string(1 to value'length);
    variable index  : natural := 0;
  begin
    for place in value'range loop
      index := index + 1;
      result(index) := NAMES(std_logic'pos(value(place)) + 1);
    end loop;
    return result;
  end function;

begin

  dut : entity work.{entity}
    port map (
{map}
    );

  drive : process
    file stimulus     : text open read_mode is "stimulus.txt";
    file response     : text open write_mode is "response.txt";
    variable inputs   : line;
    variable outputs  : line;
  begin
    while not endfile(stimulus) loop
      readline(stimulus, inputs);
{assignments}
      wait for 5 ns;
{writes}
      writeline(response, outputs);
      clk <= '1';
      wait for 5 ns;
      clk <= '0';
    end loop;
    wait;
  end process drive;

end architecture test;
"""


def port_widths(model):
    """Width of each port, None for a single bit."""
    return {"trig_in": model.line_count, "data_in": model.input_count, "rd_addr": model.address_width,
            "window_count": model.address_width, "first_valid": model.address_width, "rd_data": model.sample_width}


def bench_text(kind, entity, model):
    widths = port_widths(model)
    signals, assignments, writes = [], [], []
    place = 1
    for name in INPUTS[kind] + OUTPUTS[kind]:
        width = widths.get(name)
        signals.append(f"  signal {name} : std_logic" + (f"_vector({width - 1} downto 0);" if width else ";"))
    for name in INPUTS[kind]:
        width = widths.get(name)
        source = f"inputs({place} to {place + (width or 1) - 1})"
        assignments.append(f"      {name} <= bits({source}){'' if width else '(0)'};")
        place += width or 1
    for name in OUTPUTS[kind]:
        value = name if name in widths else f"std_logic_vector'(0 => {name})"
        writes.append(f"      write(outputs, image({value}));")
    ports = ",\n".join(f"      {name} => {name}" for name in ["clk"] + INPUTS[kind] + OUTPUTS[kind])
    return BENCH.format(entity=entity, signals="\n".join(signals), map=ports, assignments="\n".join(assignments),
                        writes="\n".join(writes))


def binary(value, width):
    return format(value, f"0{width or 1}b")


def input_line(kind, model, pins):
    widths = port_widths(model)
    values = {"reset": pins.reset, "arm": pins.arm, "force_trigger": pins.force, "trig_in": pins.trig,
              "data_in": pins.data, "rd_addr": pins.address}
    return "".join(binary(values[name], widths.get(name)) for name in INPUTS[kind])


def output_fields(kind, model, line):
    """The text of each output, cut from a line of the response."""
    widths, fields, place = port_widths(model), [], 0
    for name in OUTPUTS[kind]:
        width = widths.get(name) or 1
        fields.append(line[place:place + width])
        place += width
    return fields


def simulate(ghdl, kind, entity, model, source, asserts="disable-at-0"):
    """The response lines of the design in a source file to the inputs that the model has seen.

    'asserts' is what GHDL is to do with the warnings of the standard packages; at time 0, before the first assignment
    to the inputs, they mean nothing.
    """
    (ghdl.directory / "bench.vhd").write_text(bench_text(kind, entity, model))
    with open(ghdl.directory / "stimulus.txt", "w", encoding="ascii") as stimulus:
        stimulus.writelines(input_line(kind, model, pins) + "\n" for pins in model.pins)
    ghdl.analyse([source, "bench.vhd"])
    output = ghdl("-r", "bench", f"--ieee-asserts={asserts}")
    require(output == "", f"the simulation is not silent:\n{output[:2000]}")
    lines = (ghdl.directory / "response.txt").read_text(encoding="ascii").splitlines()
    require(len(lines) == len(model.pins), "the simulation ended early")
    return lines


def compare(kind, model, expected, lines):
    """Every output that the rules fix, at every edge; returns how many samples were compared."""
    samples = 0
    for edge, (outputs, line) in enumerate(zip(expected, lines)):
        wanted = [outputs.busy, outputs.triggered, outputs.done, outputs.count, outputs.sample]
        widths = [1, 1, 1, model.address_width, model.sample_width]
        for name, value, width, seen in zip(OUTPUTS[kind], wanted, widths, output_fields(kind, model, line)):
            if value is not None and seen != binary(value, width):
                raise_mismatch(edge, name, seen, binary(value, width), model)
        samples += outputs.sample is not None
    return samples


def raise_mismatch(edge, name, seen, wanted, model):
    history = "\n".join(f"  {index}: {model.pins[index]}" for index in range(max(0, edge - 6), edge + 1))
    require(False, f"{name} at edge {edge} is {seen}, not {wanted}; inputs:\n{history}")
