"""What the description pages show as examples."""

import html
import re

from generator import CATALOGUE


def example(ip, name):
    """The text of an IP's example with that id, whose entity is called E."""
    page = (CATALOGUE / ip / "description.html").read_text("utf-8")
    return html.unescape(re.search(rf'(?s)<pre id="{name}">(.*?)</pre>', page).group(1))
