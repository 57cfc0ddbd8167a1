"""Input pins of the design, one line per pclk cycle, and the register map."""

import dataclasses
import random

INPUTS = {"presetn": None, "psel": None, "penable": None, "pwrite": None, "paddr": 8, "pwdata": 32, "spi_miso": None}
OUTPUTS = {"prdata": 32, "pready": None, "pslverr": None, "irq": None, "spi_sclk": None, "spi_mosi": None, "spi_cs_n": 4}

ID, CTRL, DIV, CS, TXDATA, RXDATA, STATUS, INT_ENABLE, INT_STATUS, FIFO_CTRL = range(0, 0x28, 4)

ENABLE, CPHA, CPOL, LSB_FIRST, LOOPBACK = (1 << bit for bit in range(5))
AUTO = 1 << 8
DONE, RX_AVAIL, TX_OVERFLOW, RX_OVERRUN, RX_UNDERFLOW = range(5)
FLUSH_TX, FLUSH_RX = 1, 2

FIFO_DEPTH = 16


@dataclasses.dataclass(slots=True)
class Cycle:
    """What the inputs are in one pclk cycle. The cycle ends with the rising edge of the same number."""

    presetn: int
    psel: int
    penable: int
    pwrite: int
    paddr: int
    pwdata: int
    miso: int

    def is_access(self):
        return self.presetn and self.psel and self.penable

    def line(self):
        return (f"{self.presetn}{self.psel}{self.penable}{self.pwrite}"
                f"{self.paddr:08b}{self.pwdata:032b}{self.miso}")


class Stimulus:
    """Builds the cycles. Every input that means nothing in a cycle is random, MISO always is."""

    def __init__(self, seed):
        self.random = random.Random(seed)
        self.cycles = []
        self.scenarios = []

    def begin(self, name):
        """Starts a scenario with a reset."""
        self.scenarios.append((len(self.cycles), name))
        self._add(0, 0, 0)
        self._add(0, 0, 0)

    def idle(self, count=1):
        for _ in range(count):
            self._add(1, 0, self.random.getrandbits(1))

    def write(self, address, data):
        self._access(1, address, data)

    def read(self, address):
        self._access(0, address, self.random.getrandbits(32))

    def setup_only(self, address, data):
        """A selected cycle without penable, which must do nothing."""
        self._add(1, 1, 0, 1, address, data)

    def _access(self, write, address, data):
        self._add(1, 1, 0, write, address, data)
        self._add(1, 1, 1, write, address, data)

    def _add(self, presetn, psel, penable, pwrite=None, paddr=None, pwdata=None):
        bits = self.random.getrandbits
        self.cycles.append(Cycle(presetn, psel, penable, bits(1) if pwrite is None else pwrite,
                                 bits(8) if paddr is None else paddr, bits(32) if pwdata is None else pwdata, bits(1)))
