"""Checks every bus access and irq of a run against the register map.

It follows a run after the serial model, which gives the earliest and the latest edge of what happens inside. A value
that depends on an event between the two is not checked; a refused or accepted access there tells which it was.
A response k shows the state before edge k, that is, what happened at edges smaller than k.
"""

from collections import deque

from hdl_tools import require
from stimulus import (CS, CTRL, DIV, DONE, FIFO_CTRL, FIFO_DEPTH, FLUSH_RX, ID, INT_ENABLE, INT_STATUS, RESPONSE_IRQ,
                      RESPONSE_PREADY, RESPONSE_PSLVERR, RX_AVAIL, RX_OVERRUN, RX_UNDERFLOW, RXDATA, STATUS,
                      TX_OVERFLOW, TXDATA, read_data)

WRITABLE_BITS = {CTRL: 0x1F1F, DIV: 0xFFFF, CS: 0x10F, INT_ENABLE: 0x1F}
RESET_VALUES = {CTRL: 0x700, DIV: 0, CS: 0x100, INT_ENABLE: 0}
READ_ONLY = {ID, RXDATA, STATUS}
ADDRESSES = {ID, CTRL, DIV, CS, TXDATA, RXDATA, STATUS, INT_ENABLE, INT_STATUS, FIFO_CTRL}


class StickyBit:
    """An event bit: set between two edges each time, cleared by software."""

    def __init__(self, begin):
        self.sets = []
        self.cleared = begin - 1

    def add(self, earliest, latest):
        self.sets.append((earliest, latest))

    def clear(self, edge):
        self.cleared = edge
        self.sets = [(earliest, latest) for earliest, latest in self.sets if latest >= edge]

    def value(self, response):
        """1, 0 or None for unknown. A set at the edge of the clear wins."""
        if any(self.cleared <= earliest and latest < response for earliest, latest in self.sets):
            return 1
        if any(earliest < response and self.cleared <= latest for earliest, latest in self.sets):
            return None
        return 0


class RegisterModel:
    def __init__(self, serial):
        self.serial = serial
        self.now = serial.begin
        self.values = dict(RESET_VALUES)
        self.sticky = [StickyBit(serial.begin) for _ in range(5)]
        self.tx_words = []                      # pushed so far and perhaps still there
        self.tx_coming = deque(serial.words)
        self.rx_stored = deque()                # values surely in the RX FIFO
        self.rx_coming = deque(serial.sent)
        self.bursts = deque(serial.bursts)
        self.reads = 0
        for burst in serial.bursts:
            self.sticky[DONE].add(burst.ends_min, burst.ends_max + 1)

    def expect(self, condition, text):
        if not condition:
            cycle = self.serial.cycles[self.now]
            require(False, f"edge {self.now}: {text} ({'write' if cycle.pwrite else 'read'} {cycle.paddr:02x} "
                           f"{cycle.pwdata:08x})")

    def run(self):
        irq_before = 0
        for self.now in range(self.serial.begin, self.serial.end):
            response = self.serial.responses[self.now]
            cycle = self.serial.cycles[self.now]
            self.expect(response[RESPONSE_PREADY] == "1", "pready is 0")
            self.let_words_arrive()
            irq_now = self.irq()
            if irq_now is not None and irq_now == irq_before:
                self.expect(int(response[RESPONSE_IRQ]) == irq_now, f"irq is not {irq_now}")
            irq_before = irq_now
            if not cycle.is_access():
                self.expect(response[RESPONSE_PSLVERR] == "0", "pslverr without an access")
                continue
            refused = self.write(cycle) if cycle.pwrite else self.read(cycle, response)
            self.expect(int(response[RESPONSE_PSLVERR]) == refused, f"pslverr is not {refused}")
        return self

    # State of the two FIFOs, the engine and the interrupts before edge 'now'.

    def let_words_arrive(self):
        while self.rx_coming and self.rx_coming[0].arrives_max < self.now:
            word = self.rx_coming.popleft()
            if len(self.rx_stored) == FIFO_DEPTH:
                self.sticky[RX_OVERRUN].add(word.arrives_min, word.arrives_max)
            else:
                self.rx_stored.append(word.received)

    def rx_uncertain(self):
        return sum(word.arrives_min < self.now for word in self.rx_coming)

    def rx_level(self):
        surely = len(self.rx_stored)
        return surely, min(FIFO_DEPTH, surely + self.rx_uncertain())

    def tx_level(self):
        self.tx_words = [word for word in self.tx_words if word.leaves_max >= self.now]
        return sum(word.leaves_min >= self.now for word in self.tx_words), len(self.tx_words)

    def busy(self):
        while self.bursts and self.bursts[0].ends_max < self.now:
            self.bursts.popleft()
        if not self.bursts or self.now <= self.bursts[0].starts_min:
            return 0
        return 1 if self.bursts[0].starts_max < self.now <= self.bursts[0].ends_min else None

    def int_bits(self):
        bits = [sticky.value(self.now) for sticky in self.sticky]
        lowest, highest = self.rx_level()
        bits[RX_AVAIL] = 1 if lowest else None if highest else 0
        if not bits[RX_OVERRUN] and lowest + self.rx_uncertain() > FIFO_DEPTH:
            bits[RX_OVERRUN] = None
        return bits

    def irq(self):
        if not self.values[INT_ENABLE]:
            return 0
        enabled = [bit for place, bit in enumerate(self.int_bits()) if self.values[INT_ENABLE] >> place & 1]
        return 1 if 1 in enabled else None if None in enabled else 0

    # Accesses; each returns the pslverr that belongs to it.

    def write(self, cycle):
        address, data = cycle.paddr, cycle.pwdata
        if address not in ADDRESSES or address in READ_ONLY:
            return 1
        if address in self.values:
            self.values[address] = data & WRITABLE_BITS[address]
        elif address == TXDATA:
            return self.push()
        elif address == INT_STATUS:
            for place, sticky in enumerate(self.sticky):
                if data >> place & 1:
                    sticky.clear(self.now)
        elif data & FLUSH_RX:
            self.expect(not self.rx_uncertain(), "unclear stimulus: RX is flushed while a word arrives")
            self.rx_stored.clear()
        return 0

    def push(self):
        lowest, highest = self.tx_level()
        accepted = bool(self.tx_coming) and self.tx_coming[0].pushed == self.now
        if accepted:
            self.expect(lowest < FIFO_DEPTH, "a push into the full TX FIFO is accepted")
            if highest == FIFO_DEPTH:
                self.tx_words[0].leaves_max = self.now - 1
            self.tx_words.append(self.tx_coming.popleft())
            return 0
        self.expect(highest == FIFO_DEPTH, "a push is refused although the TX FIFO is not full")
        self.tx_words[0].leaves_min = max(self.tx_words[0].leaves_min, self.now)
        self.sticky[TX_OVERFLOW].add(self.now, self.now)
        return 1

    def read(self, cycle, response):
        address, data = cycle.paddr, read_data(response)
        self.reads += 1
        if address == RXDATA:
            return self.pop(data, response[RESPONSE_PSLVERR] == "1")
        if address == STATUS:
            self.check_status(data)
        elif address == INT_STATUS:
            for place, bit in enumerate(self.int_bits()):
                self.expect(bit in (None, data >> place & 1), f"INT_STATUS is {data:08x}: bit {place}")
            self.expect(data >> 5 == 0, f"INT_STATUS is {data:08x}")
        else:
            expected = 0x53504D31 if address == ID else self.values.get(address, 0)
            self.expect(data == expected, f"reads {data:08x}, not {expected:08x}")
        return int(address not in ADDRESSES)

    def pop(self, data, refused):
        expected = 0
        if self.rx_stored:
            self.expect(len(self.rx_stored) < FIFO_DEPTH or not self.rx_uncertain(),
                        "unclear stimulus: full RX is read while a word arrives")
            expected = self.rx_stored.popleft()
        elif self.rx_uncertain() and not refused:
            expected = self.rx_coming.popleft().received
        else:
            if self.rx_uncertain():
                self.rx_coming[0].arrives_min = self.now
            self.sticky[RX_UNDERFLOW].add(self.now, self.now)
            self.expect(data == 0, f"the empty RX FIFO reads {data:08x}")
            return 1
        self.expect(data == expected, f"RXDATA is {data:08x}, not {expected:08x}")
        return 0

    def check_status(self, data):
        busy, tx, rx = data & 1, data >> 8 & 31, data >> 16 & 31
        self.expect(self.busy() in (None, busy), f"BUSY is {busy}")
        for name, level, (lowest, highest) in (("TX", tx, self.tx_level()), ("RX", rx, self.rx_level())):
            self.expect(lowest <= level <= highest, f"{name}_LEVEL is {level}, not {lowest} to {highest}")
        flags = busy | (tx == 0) << 1 | (tx == 16) << 2 | (rx == 0) << 3 | (rx == 16) << 4
        self.expect(data == flags | tx << 8 | rx << 16, f"STATUS {data:08x} contradicts itself")
