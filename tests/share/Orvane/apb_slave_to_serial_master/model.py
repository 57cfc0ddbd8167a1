"""What the bridge does in every pclk cycle by the register map, the rules and the times of its description page."""

from collections import Counter, deque

from stimulus import (AUTO, CPHA, CPOL, CS, CTRL, DIV, DONE, ENABLE, FIFO_CTRL, FIFO_DEPTH, FLUSH_RX, FLUSH_TX, ID, INT_ENABLE,
                      INT_STATUS, LOOPBACK, LSB_FIRST, RX_AVAIL, RX_OVERRUN, RX_UNDERFLOW, RXDATA, STATUS, TX_OVERFLOW, TXDATA)

WRITABLE_BITS = {CTRL: 0x1F1F, DIV: 0xFFFF, CS: 0x10F, INT_ENABLE: 0x1F}
RESET_VALUES = {CTRL: 0x700, DIV: 0, CS: 0x100, INT_ENABLE: 0}
READ_ONLY = {ID, RXDATA, STATUS}
ADDRESSES = range(0, 0x28, 4)


class Model:
    """The state before a clock edge; 'outputs' tells what the pins show then, 'edge' goes beyond it."""

    def __init__(self):
        self.counts = Counter()
        self.reset()

    def reset(self):
        self.values = dict(RESET_VALUES)
        self.events = 0
        self.tx, self.rx = deque(), deque()
        self.word = None     # the one on the line
        self.since = None    # pclk cycles since a word was taken, or since the last edge of a burst; None: BUSY = 0
        self.received = 0
        self.arrived = None  # a complete word on its way to the RX FIFO
        self.sclk = self.mosi = self.irq = 0
        self.lines = 0       # that are low

    # Before the edge.

    def flag(self, mask, register=CTRL):
        return int(bool(self.values[register] & mask))

    @property
    def half(self):
        return self.values[DIV] + 1

    @property
    def bits(self):
        return (self.values[CTRL] >> 8) + 1

    def int_status(self):
        return self.events | bool(self.rx) << RX_AVAIL

    def status(self):
        tx, rx = len(self.tx), len(self.rx)
        return ((self.since is not None) | (tx == 0) << 1 | (tx == FIFO_DEPTH) << 2 | (rx == 0) << 3 | (rx == FIFO_DEPTH) << 4
                | tx << 8 | rx << 16)

    def is_refused(self, cycle):
        if cycle.paddr not in ADDRESSES:
            return True
        if cycle.pwrite:
            return cycle.paddr in READ_ONLY or cycle.paddr == TXDATA and len(self.tx) == FIFO_DEPTH
        return cycle.paddr == RXDATA and not self.rx

    def read_data(self, cycle):
        found = {**self.values, ID: 0x53504D31, STATUS: self.status(), INT_STATUS: self.int_status(),
                 RXDATA: self.rx[0] if self.rx else 0}
        return found.get(cycle.paddr, 0)

    def outputs(self, cycle):
        """The response to the inputs of the cycle; prdata means something in the access cycle of a read alone."""
        if not cycle.presetn:
            self.reset()
        refused, data = 0, None
        if cycle.is_access():
            refused = int(self.is_refused(cycle))
            if not cycle.pwrite:
                data = self.read_data(cycle)
                self.counts["reads"] += 1
        prdata = "-" * 32 if data is None else format(data, "032b")
        return f"{prdata}1{refused}{self.irq}{self.sclk}{self.mosi}{~self.lines & 15:04b}"

    # The edge: everything is judged by what was before it.

    def edge(self, cycle):
        if not cycle.presetn:
            return
        self.irq = int(bool(self.int_status() & self.values[INT_ENABLE]))
        waiting = self.flag(ENABLE) and bool(self.tx)
        rests = self.sclk == self.flag(CPOL)
        tx_was_full, rx_was_empty, rx_was_full = len(self.tx) == FIFO_DEPTH, not self.rx, len(self.rx) == FIFO_DEPTH
        arrived, self.arrived = self.arrived, None
        happened = self.serial_edge(cycle.miso, waiting, rests)
        self.move_lines(rests)
        if arrived is not None and rx_was_full:
            happened |= 1 << RX_OVERRUN
        if cycle.is_access() and not cycle.pwrite and cycle.paddr == RXDATA:
            if rx_was_empty:
                happened |= 1 << RX_UNDERFLOW
            else:
                self.rx.popleft()
        if arrived is not None and not rx_was_full:
            self.rx.append(arrived)
        if cycle.is_access() and cycle.pwrite:
            happened |= self.write(cycle.paddr, cycle.pwdata, tx_was_full)
        self.events |= happened

    def write(self, address, data, tx_was_full):
        """The event bits that the write sets."""
        if address in self.values:
            self.values[address] = data & WRITABLE_BITS[address]
        elif address == INT_STATUS:
            self.events &= ~data
        elif address == TXDATA and tx_was_full:
            return 1 << TX_OVERFLOW
        elif address == TXDATA:
            self.tx.append(data)
        elif address == FIFO_CTRL:
            for mask, fifo in ((FLUSH_TX, self.tx), (FLUSH_RX, self.rx)):
                if data & mask:
                    fifo.clear()
        return 0

    # The serial side.

    def serial_edge(self, miso, waiting, rests):
        """The event bits that come from it."""
        if self.since is None:
            if waiting and rests:
                self.counts["bursts"] += 1
                self.take()
            self.sclk = self.flag(CPOL)
            return 0
        self.since += 1
        if self.word is None:
            if self.since == 2 * self.half:
                self.since = None
                return 1 << DONE
        elif self.since % self.half == 0:
            self.sclk_edge(self.since // self.half, miso, waiting)
        return 0

    def take(self):
        self.word, self.since, self.received = self.tx.popleft(), 0, 0
        self.counts["words"] += 1
        if not self.flag(CPHA):
            self.send(0)

    def send(self, position):
        self.mosi = self.word >> self.place(position) & 1

    def place(self, position):
        return position if self.flag(LSB_FIRST) else self.bits - 1 - position

    def sclk_edge(self, number, miso, waiting):
        """The SCLK edge of that number in the word, counted from 1."""
        position, is_leading = (number - 1) // 2, number % 2
        self.sclk ^= 1
        if is_leading != self.flag(CPHA):
            self.received |= (self.mosi if self.flag(LOOPBACK) else miso) << self.place(position)
        elif is_leading:
            self.send(position)
        elif position + 1 < self.bits:
            self.send(position + 1)
        if number == 2 * self.bits:
            self.arrived, self.word, self.since = self.received, None, 0
            if waiting:
                self.take()

    def move_lines(self, rests):
        """A line falls only while SCLK rests at its idle level."""
        in_burst = self.word is not None or self.since is not None and self.since < self.half
        is_open = in_burst or not self.flag(AUTO, CS) and (self.flag(ENABLE) or self.since is not None)
        wanted = self.values[CS] & 15 if is_open else 0
        self.lines = wanted if rests else wanted & self.lines
