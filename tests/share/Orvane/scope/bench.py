"""Simulates a generated scope on given inputs and compares its outputs with the expected ones."""

from clocked_bench import ClockedBench, binary
from hdl_tools import require


def inputs(model):
    """Width of each input but the clock, None for a single bit."""
    control = {"arm": None, "force_trigger": None} if model.is_armed else {}
    return {"reset": None, **control, "trig_in": model.line_count, "data_in": model.input_count,
            "rd_addr": model.address_width}


def outputs(model):
    count = "window_count" if model.is_armed else "first_valid"
    return {"busy": None, "triggered": None, "done": None, count: model.address_width, "rd_data": model.sample_width}


def input_line(model, pins):
    values = {"reset": pins.reset, "arm": pins.arm, "force_trigger": pins.force, "trig_in": pins.trig,
              "data_in": pins.data, "rd_addr": pins.address}
    return "".join(binary(values[name], width) for name, width in inputs(model).items())


def simulate(ghdl, entity, model, asserts="disable-at-0"):
    """The texts of the outputs at each edge, in response to the inputs that the model has seen.

    'asserts' is what GHDL is to do with the warnings of the standard packages; at time 0, before the first edge, they
    mean nothing.
    """
    bench = ClockedBench(entity, inputs(model), outputs(model))
    lines = [(1, input_line(model, pins)) for pins in model.pins]
    return [list(bench.fields(seen).values()) for _, seen in bench.run(ghdl, lines, f"--ieee-asserts={asserts}")]


def compare(model, expected, rows):
    """Every output that the rules fix, at every edge; returns how many samples were compared."""
    samples = 0
    for edge, (wanted, seen) in enumerate(zip(expected, rows)):
        values = [wanted.busy, wanted.triggered, wanted.done, wanted.count, wanted.sample]
        for (name, width), value, text in zip(outputs(model).items(), values, seen):
            if value is not None and text != binary(value, width):
                history = "\n".join(f"  {index}: {model.pins[index]}" for index in range(max(0, edge - 6), edge + 1))
                require(False, f"{name} at edge {edge} is {text}, not {binary(value, width)}; inputs:\n{history}")
        samples += wanted.sample is not None
    return samples
