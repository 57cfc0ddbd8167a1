"""Follows the serial pins of a run edge by edge and checks them against the rules of the serial side.

What the rules leave open stays open: a word may be taken within some pclk cycles, a select line may rise within a
window, and so on. The result is, for every word and burst, the earliest and the latest edge of what the pins do
not show (word taken, word received, burst closed); the register model takes it from there.

An event at edge k is a difference between the responses k and k + 1; the input pins of cycle k act at edge k.
"""

import dataclasses

from hdl_tools import require
from stimulus import (AUTO, CPHA, CPOL, CS, CTRL, DIV, ENABLE, FIFO_CTRL, FLUSH_TX, LOOPBACK, LSB_FIRST, RESPONSE_CS_N,
                      RESPONSE_MOSI, RESPONSE_PSLVERR, RESPONSE_SCLK, RESPONSE_SPI, TXDATA)

NEVER = 1 << 60
START_LIMIT = 4        # pclk cycles until a word is taken
SCLK_IDLE_LIMIT = 2    # pclk cycles until SCLK follows CPOL
CS_LIMIT = 2           # pclk cycles until a select line follows ENABLE or SELECT with AUTO = 0


@dataclasses.dataclass
class Word:
    """A word pushed into the TX FIFO and how it left: taken or flushed between two edges, both included."""

    value: int
    pushed: int
    leaves_min: int = NEVER
    leaves_max: int = NEVER
    edges: list = dataclasses.field(default_factory=list)
    received: int = 0
    arrives_min: int = None
    arrives_max: int = None


@dataclasses.dataclass
class Burst:
    """BUSY rises between two edges and falls between two edges; see SerialModel.close."""

    starts_min: int
    starts_max: int
    ends_min: int = NEVER
    ends_max: int = NEVER


class SerialModel:
    """One life of the design, from the release of reset at cycle 'begin' to cycle 'end' (not included)."""

    def __init__(self, cycles, responses, begin, end):
        self.cycles = cycles
        self.responses = responses
        self.begin = begin
        self.end = end
        self.edge = begin
        self.ctrl, self.div, self.cs = 0x700, 0, AUTO
        self.config_written = self.cpol_written = begin - 100
        self.waiting = []           # words in the TX FIFO, the oldest first
        self.words = []             # every word pushed
        self.sent = []              # every word that appeared on the pins
        self.bursts = []
        self.word = None            # being sent
        self.last_edge = None       # of the word before, while its burst may go on
        self.must_follow = False
        self.select_fell = None
        self.select_rose = None
        self.mosi_changed = begin - 1
        self.ready_min = self.ready_max = NEVER   # from when on a burst may, must begin
        self.withdrawn = NEVER      # edge at which what a burst needs was taken back
        self.idle_min = self.idle_max = begin     # the last burst's end
        self.enable_set = begin
        self.enable_cleared = None  # since when no further word may be taken

    # What the configuration means.

    def flag(self, mask):
        return 1 if self.ctrl & mask else 0

    @property
    def half(self):
        return self.div + 1

    @property
    def gap_limit(self):
        return 2 * self.half + 4

    @property
    def bits(self):
        return (self.ctrl >> 8 & 31) + 1

    @property
    def selected(self):
        """Level of the lines, line 3 first, while they are asserted."""
        return "".join("0" if self.cs >> line & 1 else "1" for line in (3, 2, 1, 0))

    @property
    def is_framed(self):
        """Whether select lines show where bursts begin and end."""
        return bool(self.cs & AUTO and self.cs & 15)

    def expect(self, condition, text):
        require(condition, f"edge {self.edge}: {text} (CTRL {self.ctrl:03x}, DIV {self.div:x}, CS {self.cs:03x})")

    # The walk over all edges.

    def run(self):
        for self.edge in range(self.begin, self.end - 1):
            before = self.responses[self.edge][RESPONSE_SPI]
            after = self.responses[self.edge + 1][RESPONSE_SPI]
            self.check_levels(self.responses[self.edge])
            self.check_deadlines()
            if before != after:
                self.follow_pins(self.responses[self.edge], self.responses[self.edge + 1])
            if self.cycles[self.edge].is_access():
                self.apply_access(self.cycles[self.edge])
        return self

    def check_levels(self, now):
        if self.word or self.last_edge is not None:
            return
        if self.edge > self.cpol_written + SCLK_IDLE_LIMIT:
            self.expect(int(now[RESPONSE_SCLK]) == self.flag(CPOL), "SCLK does not idle at CPOL")
        lines_settled = self.edge > max(self.config_written + CS_LIMIT + 1, self.idle_max + 1)
        if lines_settled and self.edge <= self.ready_min:
            self.expect(now[RESPONSE_CS_N] == self.idle_lines(),
                        f"spi_cs_n is {now[RESPONSE_CS_N]} while nothing is sent, not {self.idle_lines()}")

    def idle_lines(self):
        return self.selected if self.flag(ENABLE) and not self.cs & AUTO else "1111"

    def check_deadlines(self):
        if self.word:
            self.expect(self.word.edges[-1] + self.half >= self.edge, "an SCLK edge is missing in a word")
        elif self.last_edge is not None:
            if self.edge > self.last_edge + self.gap_limit:
                self.expect(not self.must_follow, "the next word of a burst does not follow")
                self.expect(not self.is_framed, "the select lines do not rise after a burst")
                self.close(self.last_edge + 2 * self.half, self.last_edge + self.gap_limit + self.half)
        elif self.ready_max != NEVER:
            start = self.ready_max + START_LIMIT
            if self.withdrawn < start:
                if self.edge > max(self.withdrawn, start) + self.gap_limit and self.select_fell is None:
                    self.no_burst()
                return
            self.expect(not self.is_framed or self.select_fell is not None or self.edge <= start,
                        "a word does not start although ENABLE is 1 and TX is not empty")
            self.expect(self.edge <= start + self.gap_limit, "the first SCLK edge of a burst is missing")

    # Pins.

    def follow_pins(self, now, then):
        if now[RESPONSE_MOSI] != then[RESPONSE_MOSI]:
            self.check_mosi_change(now, then)
        if now[RESPONSE_CS_N] != then[RESPONSE_CS_N]:
            self.lines_change(now, then)
        if now[RESPONSE_SCLK] != then[RESPONSE_SCLK]:
            self.sclk_edge(now)

    def check_mosi_change(self, now, then):
        """Within a burst MOSI changes with SCLK only, but for a first bit, whose distance begin_word checks."""
        self.mosi_changed = self.edge
        in_gap = self.last_edge is not None and not self.flag(CPHA)
        if not self.word and (self.last_edge is None or in_gap):
            return
        self.expect(now[RESPONSE_SCLK] != then[RESPONSE_SCLK], "MOSI changes without an SCLK edge")
        leading = int(now[RESPONSE_SCLK]) == self.flag(CPOL)
        self.expect(leading == bool(self.flag(CPHA)), "MOSI changes at the SCLK edge that samples")

    def lines_change(self, now, then):
        old, new = now[RESPONSE_CS_N], then[RESPONSE_CS_N]
        if self.is_framed and old == "1111" and not self.word and self.last_edge is None:
            self.lines_fall(now, new)
        elif self.is_framed and self.last_edge is not None:
            self.expect(new == "1111", f"spi_cs_n becomes {new} at the end of a burst")
            self.expect(not self.must_follow, "spi_cs_n rises although another word waits")
            self.expect(self.half <= self.edge - self.last_edge <= self.gap_limit,
                        f"spi_cs_n rises {self.edge - self.last_edge} cycles after the last SCLK edge")
            self.select_rose = self.edge
            self.close(self.edge + self.half, self.edge + self.half + 1)
        else:
            closing = self.last_edge is not None and self.edge >= self.last_edge + 2 * self.half
            self.expect(not self.word and (self.last_edge is None or closing), "spi_cs_n changes in a burst")
            self.expect(new == self.idle_lines(), f"spi_cs_n becomes {new}, not {self.idle_lines()}")
            if any(level < before for before, level in zip(old, new)):
                self.expect(int(now[RESPONSE_SCLK]) == self.flag(CPOL), "spi_cs_n falls before SCLK stands at CPOL")
            because_written = self.edge <= self.config_written + CS_LIMIT
            because_closed = self.idle_min <= self.edge <= self.idle_max + 1
            self.expect(closing or because_written or because_closed, "spi_cs_n changes without a reason")
            if closing:
                self.close(self.last_edge + 2 * self.half, self.edge)

    def lines_fall(self, now, new):
        self.expect(new == self.selected, f"spi_cs_n becomes {new}, selected is {self.selected}")
        self.expect(self.ready_min < self.edge <= self.withdrawn, "spi_cs_n falls without a word to send")
        self.expect(int(now[RESPONSE_SCLK]) == self.flag(CPOL), "spi_cs_n falls before SCLK stands at CPOL")
        if self.select_rose is not None:
            self.expect(self.edge - self.select_rose >= self.half, "spi_cs_n was not high for H between two bursts")
        self.select_fell = self.edge

    def sclk_edge(self, now):
        if self.word:
            self.expect(self.edge == self.word.edges[-1] + self.half,
                        f"SCLK edge {self.edge - self.word.edges[-1]} cycles after the one before")
        elif int(now[RESPONSE_SCLK]) != self.flag(CPOL):
            self.expect(self.edge <= self.cpol_written + SCLK_IDLE_LIMIT, "SCLK changes while idle")
            return
        elif self.last_edge is not None:
            self.next_word()
        else:
            self.first_word()
        self.take_bit(now)
        if len(self.word.edges) == 2 * self.bits:
            self.end_word()

    def first_word(self):
        self.expect(self.waiting and self.ready_min != NEVER, "an SCLK edge without a word to send")
        taken_max = self.edge - self.half
        if self.is_framed:
            self.expect(self.select_fell is not None, "an SCLK edge without a select line")
            self.expect(self.select_fell <= taken_max, "the first SCLK edge comes less than H after spi_cs_n falls")
        taken_min = self.ready_min + 1
        taken_max = min(taken_max, self.ready_max + START_LIMIT, self.withdrawn)
        self.expect(taken_min <= taken_max, "the first SCLK edge comes less than H after the word can be taken")
        self.bursts.append(Burst(taken_min, taken_max))
        self.begin_word(taken_min, taken_max)

    def next_word(self):
        gap = self.edge - self.last_edge
        self.expect(self.half <= gap <= self.gap_limit,
                    f"the next word of a burst begins {gap} cycles after the last edge")
        self.expect(self.waiting and self.waiting[0].pushed < self.edge, "an SCLK edge without a word to send")
        taken_max = self.edge
        if self.enable_cleared is not None:
            taken_max = min(taken_max, self.enable_cleared)
            self.expect(taken_max >= self.last_edge, "a burst goes on although ENABLE is 0")
        self.begin_word(max(self.last_edge, self.waiting[0].pushed + 1), taken_max)

    def begin_word(self, taken_min, taken_max):
        self.word = self.waiting.pop(0)
        self.word.leaves_min, self.word.leaves_max = taken_min, min(taken_max, self.word.leaves_max)
        self.last_edge = None
        self.ready_min = self.ready_max = self.withdrawn = NEVER
        if not self.flag(CPHA):
            early = self.edge - self.mosi_changed
            self.expect(early >= self.half, f"the first bit is on MOSI only {early} cycles before the first SCLK edge")

    def take_bit(self, now):
        word = self.word
        word.edges.append(self.edge)
        number, leading = (len(word.edges) - 1) // 2, len(word.edges) % 2 == 1
        if leading == bool(self.flag(CPHA)):
            return
        place = number if self.flag(LSB_FIRST) else self.bits - 1 - number
        sent = int(now[RESPONSE_MOSI])
        self.expect(sent == word.value >> place & 1, f"bit {place} of the word {word.value:08x} is {sent} on MOSI")
        received = sent if self.flag(LOOPBACK) else self.cycles[self.edge].miso
        word.received |= received << place
        word.arrives_min = self.edge

    def end_word(self):
        self.word.arrives_max = self.edge + self.gap_limit
        self.sent.append(self.word)
        self.word = None
        self.last_edge = self.edge
        self.must_follow = bool(self.flag(ENABLE) and self.waiting)
        self.enable_cleared = None if self.flag(ENABLE) else self.edge - 1

    def close(self, ends_min, ends_max):
        """The burst is over on the pins; its closing time ends between the two edges."""
        self.sent[-1].arrives_max = min(self.sent[-1].arrives_max, ends_min - 1)
        self.bursts[-1].ends_min, self.bursts[-1].ends_max = ends_min, ends_max
        self.idle_min, self.idle_max = ends_min, ends_max
        self.last_edge = self.select_fell = self.enable_cleared = None
        self.no_burst()

    def no_burst(self):
        """No burst is due any more; a word that was flushed when it might just have been taken was not."""
        self.waiting = [word for word in self.waiting if word.leaves_max == NEVER]
        self.ready_min = self.ready_max = self.withdrawn = NEVER
        self.update_ready()

    # Bus accesses that the serial side sees. They act at this edge, after what the pins do at it.

    def apply_access(self, cycle):
        if not cycle.pwrite or self.responses[self.edge][RESPONSE_PSLVERR] == "1":
            return
        if cycle.paddr == TXDATA:
            word = Word(cycle.pwdata, self.edge)
            self.words.append(word)
            self.waiting.append(word)
        elif cycle.paddr == FIFO_CTRL and cycle.pwdata & FLUSH_TX:
            self.flush()
        elif cycle.paddr in (CTRL, DIV, CS):
            self.configure(cycle.paddr, cycle.pwdata)
        self.update_ready()

    def configure(self, address, data):
        self.config_written = self.edge
        if address == DIV:
            self.div = data & 0xFFFF
        elif address == CS:
            self.cs = data & (AUTO | 15)
        else:
            if self.ctrl & ENABLE and not data & ENABLE:
                self.enable_cleared = self.edge
                self.must_follow = False
                if self.ready_min != NEVER:
                    self.withdrawn = min(self.withdrawn, self.edge)
            elif data & ENABLE and not self.ctrl & ENABLE:
                self.enable_cleared = None
                self.enable_set = self.edge
            if (self.ctrl ^ data) & CPOL:
                self.cpol_written = self.edge
            self.ctrl = data & 0x1F1F

    def flush(self):
        """Every waiting word leaves; the oldest may have been taken in time when one was due."""
        due = self.last_edge is not None or self.ready_min < self.edge
        for word in self.waiting:
            word.leaves_min = word.leaves_max = self.edge
        if due and self.waiting:
            self.waiting[0].leaves_min = self.ready_min + 1 if self.last_edge is None else self.last_edge
            self.waiting = self.waiting[:1]
            self.withdrawn = min(self.withdrawn, self.edge)
            self.must_follow = False
        else:
            self.waiting = []

    def update_ready(self):
        """Notes from when on a burst may and must begin: ENABLE = 1, a word waits and no burst is running."""
        if self.word or self.last_edge is not None or self.ready_min != NEVER:
            return
        if self.flag(ENABLE) and self.waiting:
            since = max(self.enable_set, self.waiting[0].pushed)
            self.ready_min = max(since, self.idle_min)
            self.ready_max = max(since, self.idle_max)
