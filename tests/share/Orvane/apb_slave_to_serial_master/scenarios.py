"""Stimuli for everything that the description page tells, most of them random within what it allows."""

import dataclasses

from stimulus import (AUTO, CPHA, CPOL, CS, CTRL, DIV, ENABLE, FIFO_CTRL, FIFO_DEPTH, FLUSH_RX, FLUSH_TX, ID, INT_ENABLE,
                      INT_STATUS, LOOPBACK, LSB_FIRST, RX_OVERRUN, RXDATA, STATUS, TXDATA)

LINES = (AUTO | 1, AUTO | 10, AUTO, 4, 15)


@dataclasses.dataclass
class Setup:
    """One configuration of the serial side."""

    flags: int
    bits: int
    div: int
    lines: int

    @property
    def half(self):
        return self.div + 1

    @property
    def ctrl(self):
        return self.flags | self.bits - 1 << 8

    def duration(self, words):
        """Upper bound of the pclk cycles from ENABLE = 1 until BUSY = 0, each word in a burst of its own."""
        return words * (2 * self.bits * self.half + 4 * self.half + 16)

    def apply(self, stimulus):
        writes = [(DIV, self.div), (CS, self.lines), (CTRL, self.ctrl)]
        stimulus.random.shuffle(writes)
        for address, data in writes:
            stimulus.write(address, data)


def read_all(stimulus, words):
    """Pops one word more than can be there, then reads what is left in the status registers and clears it."""
    for _ in range(words + 1):
        stimulus.read(RXDATA)
        stimulus.idle(stimulus.random.randrange(2))
    for address in (STATUS, INT_STATUS):
        stimulus.read(address)
    stimulus.write(INT_STATUS, stimulus.random.getrandbits(5))
    stimulus.read(INT_STATUS)


def stray_accesses(stimulus):
    """Accesses that must leave the FIFOs alone, most of them refused."""
    rng = stimulus.random
    for address in (ID, STATUS, RXDATA, RXDATA + rng.randrange(1, 4), TXDATA + rng.randrange(1, 4), 0x80 | TXDATA):
        stimulus.write(address, rng.getrandbits(32))
    for address in (TXDATA, FIFO_CTRL, RXDATA + rng.randrange(1, 4), 0x40 | RXDATA):
        stimulus.read(address)
    stimulus.setup_only(TXDATA, rng.getrandbits(32))
    stimulus.idle()
    stimulus.read(STATUS)


def registers(stimulus):
    """Reset values, every address read and written, and cycles that are no access."""
    rng = stimulus.random
    stimulus.begin("registers")
    for address in range(0, 0x28, 4):
        stimulus.read(address)
    for address in rng.sample(range(256), 256):
        stimulus.write(address, rng.getrandbits(32) & ~ENABLE)
        stimulus.read(address)
        stimulus.read(rng.choice((CTRL, DIV, CS, INT_ENABLE, STATUS, INT_STATUS, ID)))
    for address in (CTRL, DIV, CS, INT_ENABLE):
        for data in (0xFFFFFFFE, 0, rng.getrandbits(32) & ~ENABLE):
            stimulus.write(address, data)
            stimulus.setup_only(address, ~data & 0xFFFFFFFF)
            stimulus.idle()
            stimulus.read(address)
            stimulus.read(rng.randrange(0, 0x28, 4))


def fifo_limits(stimulus):
    """TX filled beyond its depth, emptied by flush, and both FIFOs at their limits with a transfer between."""
    rng = stimulus.random
    stimulus.begin("FIFO limits")
    stimulus.write(INT_ENABLE, 0x1F)
    for _ in range(2):
        for _ in range(FIFO_DEPTH + 2):
            stimulus.write(TXDATA, rng.getrandbits(32))
            stimulus.read(STATUS)
        stimulus.read(INT_STATUS)
        stray_accesses(stimulus)
        stimulus.write(FIFO_CTRL, FLUSH_RX)
        stimulus.read(STATUS)
        stimulus.write(FIFO_CTRL, FLUSH_TX)
        stimulus.read(STATUS)
        stimulus.read(RXDATA)
        stimulus.write(INT_STATUS, 0x1F)
    setup = Setup(ENABLE, 4, 0, AUTO | 1)
    setup.apply(stimulus)
    for _ in range(FIFO_DEPTH + 3):
        stimulus.write(TXDATA, rng.getrandbits(32))
        stimulus.idle(rng.randrange(8))
    stimulus.idle(setup.duration(FIFO_DEPTH + 3))
    stimulus.read(STATUS)
    stimulus.read(INT_STATUS)
    stimulus.write(INT_STATUS, 1 << RX_OVERRUN)
    stimulus.read(INT_STATUS)
    stray_accesses(stimulus)
    stimulus.write(FIFO_CTRL, FLUSH_TX)
    stimulus.read(STATUS)
    read_all(stimulus, FIFO_DEPTH)
    stimulus.write(TXDATA, rng.getrandbits(32))
    stimulus.idle(setup.duration(1))
    stimulus.write(FIFO_CTRL, FLUSH_RX)
    read_all(stimulus, 0)


def bursts(stimulus, setup, word_counts):
    """Bursts that wait in TX before ENABLE = 1, one after the other; the state is read all the time."""
    rng = stimulus.random
    stimulus.begin(f"bursts of {setup.bits} bits")
    stimulus.write(INT_ENABLE, rng.getrandbits(5))
    for words in word_counts:
        setup.apply(stimulus)
        for _ in range(words):
            stimulus.write(TXDATA, rng.getrandbits(32))
        stimulus.write(CTRL, setup.ctrl | ENABLE)
        end = len(stimulus.cycles) + setup.duration(words)
        while len(stimulus.cycles) < end:
            stimulus.read(rng.choice((STATUS, INT_STATUS)))
            stimulus.idle(rng.randrange(1 + min(20, setup.half * setup.bits)))
            if rng.random() < 0.02:
                stray_accesses(stimulus)
        stimulus.write(CTRL, setup.ctrl)
        read_all(stimulus, words)


def stream(stimulus, setup, words):
    """Words pushed and popped at random while ENABLE is 1: bursts form as they come."""
    rng = stimulus.random
    stimulus.begin(f"stream of {setup.bits} bits")
    setup.apply(stimulus)
    stimulus.write(INT_ENABLE, rng.getrandbits(5))
    stimulus.write(CTRL, setup.ctrl | ENABLE)
    word_time = 2 * setup.bits * setup.half
    for number in range(1, words + 1):
        stimulus.write(TXDATA, rng.getrandbits(32))
        wait = rng.choice((0, word_time // 2, word_time, word_time + 3 * setup.half, rng.randrange(2 * word_time + 9)))
        for address in rng.choices((RXDATA, RXDATA, STATUS, INT_STATUS), k=rng.randrange(1, 5)):
            stimulus.read(address)
            stimulus.idle(rng.randrange(wait // 2 + 1))
        if rng.random() < 0.2:
            stimulus.write(INT_STATUS, rng.getrandbits(5))
        if number % FIFO_DEPTH == 0 or number == words:
            stimulus.idle(setup.duration(FIFO_DEPTH))
            read_all(stimulus, FIFO_DEPTH)


def cut_bursts(stimulus, setup):
    """Bursts that the reset of the next scenario ends, each a cycle later, after which nothing of them may be left."""
    for length in range(setup.duration(2)):
        stimulus.begin(f"burst cut after {length} cycles")
        setup.apply(stimulus)
        stimulus.write(TXDATA, stimulus.random.getrandbits(32))
        stimulus.write(TXDATA, stimulus.random.getrandbits(32))
        stimulus.read(INT_STATUS)
        stimulus.write(CTRL, setup.ctrl | ENABLE)
        stimulus.idle(length)


def idle_configuration(stimulus):
    """Idle level and lines follow CTRL and CS; ENABLE and CPOL written together, with a word waiting."""
    rng = stimulus.random
    stimulus.begin("configuration while idle")
    for _ in range(20):
        setup = Setup(rng.randrange(16) << 1, rng.randrange(1, 5), rng.randrange(3, 6), rng.choice(LINES))
        setup.apply(stimulus)
        stimulus.idle(rng.randrange(8))
        stimulus.write(CTRL, setup.ctrl | ENABLE)
        stimulus.idle(rng.randrange(8))
        stimulus.write(CS, rng.choice(LINES))
        stimulus.idle(rng.randrange(8))
        stimulus.write(CTRL, setup.ctrl)
        stimulus.write(TXDATA, rng.getrandbits(32))
        setup.flags ^= CPOL
        stimulus.write(CTRL, setup.ctrl | ENABLE)
        stimulus.idle(setup.duration(1))
        stimulus.write(CTRL, setup.ctrl)
        stimulus.read(RXDATA)


def coincidences(stimulus, setup):
    """Runs of a few words with one access that moves edge by edge over all that happens in the first and the last words."""
    word_time = 2 * setup.bits * setup.half
    for words, act in ((2, lambda: stimulus.write(FIFO_CTRL, FLUSH_RX)),
                       (2, lambda: stimulus.write(FIFO_CTRL, 0xFFFFFFFC)),
                       (2, lambda: stimulus.read(INT_STATUS)),
                       (2, lambda: stimulus.write(FIFO_CTRL, FLUSH_TX)),
                       (2, lambda: stimulus.write(CTRL, setup.ctrl)),
                       (1, lambda: stimulus.write(INT_STATUS, 0x1F)),
                       (1, lambda: stimulus.read(STATUS)),
                       (1, lambda: stimulus.read(RXDATA)),
                       (FIFO_DEPTH + 1, lambda: stimulus.write(TXDATA, 0)),
                       (FIFO_DEPTH + 1, lambda: stimulus.write(INT_STATUS, 1 << RX_OVERRUN)),
                       (FIFO_DEPTH + 1, lambda: stimulus.read(RXDATA))):
        end = words * word_time + 2 * setup.half + 4
        for wait in range(end):
            if 2 * word_time < wait < end - 2 * word_time:
                continue
            stimulus.begin(f"access {wait} cycles after the start of {words} words")
            setup.apply(stimulus)
            for number in range(words):
                if number == FIFO_DEPTH:
                    stimulus.write(CTRL, setup.ctrl | ENABLE)
                stimulus.write(TXDATA, stimulus.random.getrandbits(32))
            stimulus.write(CTRL, setup.ctrl | ENABLE)
            stimulus.idle(wait)
            act()
            stimulus.idle(end - wait + word_time)
            stimulus.write(CTRL, setup.ctrl | ENABLE)
            stimulus.idle(setup.duration(2))
            read_all(stimulus, words)


def add_all(stimulus, is_long):
    rng = stimulus.random
    words = (FIFO_DEPTH, 1, 2)
    for _ in range(12 if is_long else 1):
        fifo_limits(stimulus)
        idle_configuration(stimulus)
        bursts(stimulus, Setup(0, 9, 0, AUTO | 1), words)
        bursts(stimulus, Setup(CPHA | CPOL, 1, 0, AUTO | 6), words)
        bursts(stimulus, Setup(CPOL | LSB_FIRST, 32, 1, 8), words)
        bursts(stimulus, Setup(CPHA | LSB_FIRST | LOOPBACK, 3, 0x155, AUTO | 4), (1,))
        bursts(stimulus, Setup(0, 2, 0xAAA, 4), (1,))
        stream(stimulus, Setup(CPHA, rng.randrange(1, 17), rng.randrange(3), AUTO | rng.randrange(1, 16)), 60)
        stream(stimulus, Setup(LSB_FIRST, rng.randrange(1, 33), rng.randrange(3, 9), rng.choice(LINES)), 25)
        cut_bursts(stimulus, Setup(CPOL, 2, 1, AUTO | 1))
        registers(stimulus)
    coincidences(stimulus, Setup(0, 3, 0, AUTO | 1))
    coincidences(stimulus, Setup(CPHA | CPOL, 2, 1, 8))

    if is_long:
        for bits in range(1, 33):
            setup = Setup(rng.randrange(16) << 1, bits, rng.choice((0, 0, 1, 2, 3, rng.randrange(4, 20))), rng.choice(LINES))
            bursts(stimulus, setup, (rng.randrange(1, 6), 1))
        for div in (0x3FF, 0x8000, 0xFFFF):
            bursts(stimulus, Setup(rng.randrange(16) << 1, 2, div, AUTO | 4), (1,))
