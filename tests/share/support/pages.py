"""What the description pages show as examples."""

import html
import re

from generator import CATALOGUE
from hdl_tools import require


def example(ip, name):
    """The text of an IP's example with that id, whose entity is called E."""
    page = (CATALOGUE / ip / "description.html").read_text("utf-8")
    return html.unescape(re.search(rf'(?s)<pre id="{name}">(.*?)</pre>', page).group(1))


def check_instance(ghdl, instance, text):
    """An example's instance of the analysed design with this text has the widths of its comments and elaborates silently."""
    ports = dict(re.findall(r"(?m)^ +(\w+) *: (?:in|out) +(std_logic(?:_vector\([^)]*\))?)", text.split("end entity")[0]))
    signals = []
    for port, signal, told in re.findall(r"(\w+) *=> (\w+)\S*(?: *-- (std_logic_vector\(.*\)))?", instance):
        require(told in ("", ports[port]), f"the example tells {port} as {told}")
        signals += [f"signal {signal} : {ports[port]};"] * (signal != "open")
    (ghdl.directory / "page.vhd").write_text("\n".join([
        "library ieee;", "use ieee.std_logic_1164.all;", "entity page is", "end entity page;",
        "architecture example of page is", *signals, "begin", instance, "end architecture example;"]))
    ghdl.analyse(["page.vhd"])
    require(ghdl("-e", "page") == "", "the example does not elaborate silently")
