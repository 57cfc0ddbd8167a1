"""A frame around any design that registers each of its port bits, so that a chip's few pins do for all and no pin is timed."""

# Whose ports are those of another clock than the first one in CLOCKS.
BIT_CLOCK_PORTS = {"ser_out", "des_in"}

CLOCKS = ("clk", "pclk", "word_clk", "bit_clk")


def clocks_of(ports):
    return [name for name in CLOCKS if name in ports]


def clock_of(port, clocks):
    return "bit_clk" if port in BIT_CLOCK_PORTS else clocks[0]


def shift_chain(clock, inputs, outputs):
    """Registers of one clock: inputs come out of a shift register, outputs are sampled and then folded into another one.

    Inputs and outputs are (port, width). Between a port and its register there is no logic.
    """
    lines = []
    input_bits = sum(width for _, width in inputs)
    output_bits = sum(width for _, width in outputs)
    if input_bits:
        lines += [f"  reg [{input_bits}:0] {clock}_in;",
                  f"  always @(posedge {clock}) {clock}_in <= {{{clock}_in[{input_bits - 1}:0], {clock}_shift_in}};",
                  f"  assign {{{', '.join(f'port_{name}' for name, _ in inputs)}}} = {clock}_in[{input_bits}:1];"]
    if output_bits:
        lines += [f"  reg [{output_bits - 1}:0] {clock}_sampled;",
                  f"  reg [{output_bits}:0] {clock}_folded;",
                  f"  always @(posedge {clock}) begin",
                  f"    {clock}_sampled <= {{{', '.join(f'port_{name}' for name, _ in outputs)}}};",
                  f"    {clock}_folded <= {{{clock}_folded[{output_bits - 1}:0] ^ {clock}_sampled, 1'b0}};",
                  "  end",
                  f"  assign {clock}_shift_out = {clock}_folded[{output_bits}];"]
    return lines


def wrap(entity, ports):
    """Verilog of the module "wrapper" around the entity, and of the entity as a black box.

    ports: the entity's, by name, as (direction "input" or "output", width).
    """
    clocks = clocks_of(ports)
    pins = [f"input {clock}, input {clock}_shift_in, output {clock}_shift_out" for clock in clocks]
    lines = [f"module wrapper({', '.join(pins)});"]
    signals = {name: port for name, port in ports.items() if name not in clocks}
    lines += [f"  wire [{width - 1}:0] port_{name};" for name, (_, width) in signals.items()]
    for clock in clocks:
        chained = {direction: [(name, width) for name, (kind, width) in signals.items()
                               if kind == direction and clock_of(name, clocks) == clock] for direction in ("input", "output")}
        lines += shift_chain(clock, chained["input"], chained["output"])
    connections = [f".{name}({name})" for name in clocks] + [f".{name}(port_{name})" for name in signals]
    lines += [f"  {entity} design({', '.join(connections)});", "endmodule", ""]
    box = [f"{direction} [{width - 1}:0] {name}" for name, (direction, width) in ports.items()]
    return "\n".join([*lines, "(* blackbox *)", f"module {entity}({', '.join(box)});", "endmodule", ""])
