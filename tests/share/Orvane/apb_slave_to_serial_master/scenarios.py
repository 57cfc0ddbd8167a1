"""Scenarios that the serial model and the register model check together, most of them random."""

import dataclasses
from collections import Counter

from hdl_tools import require
from register_model import RegisterModel
from serial_model import SerialModel
from stimulus import (AUTO, CPHA, CPOL, CS, CTRL, DIV, DONE, ENABLE, FIFO_CTRL, FIFO_DEPTH, FLUSH_RX, FLUSH_TX, ID,
                      INT_ENABLE, INT_STATUS, LOOPBACK, LSB_FIRST, RESPONSE_CHECKED, RESPONSE_IRQ, RESPONSE_PSLVERR,
                      RESPONSE_SPI, RX_OVERRUN, RXDATA, SPI_AT_RESET, STATUS, TXDATA)


class Verdict:
    """Runs the models over a scenario and counts what they verified."""

    def __init__(self):
        self.counts = Counter()

    def __call__(self, cycles, responses):
        for number, response in enumerate(responses):
            require(set(response[RESPONSE_CHECKED]) <= set("01"), f"cycle {number}: an output is undefined: {response}")
        begin = None
        for number, cycle in enumerate(cycles + [None]):
            in_reset = cycle is None or not cycle.presetn
            if begin is None and not in_reset:
                begin = number
            elif begin is not None and in_reset:
                self.check_life(cycles, responses, begin, number)
                begin = None
            if cycle and in_reset:
                reset_state = responses[number][RESPONSE_SPI]
                require(reset_state == SPI_AT_RESET, f"cycle {number}: serial pins are {reset_state} in reset")
                require(responses[number][RESPONSE_IRQ] == "0" and responses[number][RESPONSE_PSLVERR] == "0",
                        f"cycle {number}: irq or pslverr is 1 in reset")

    def check_life(self, cycles, responses, begin, end):
        serial = SerialModel(cycles, responses, begin, end).run()
        registers = RegisterModel(serial).run()
        self.counts["words"] += len(serial.sent)
        self.counts["bursts"] += len(serial.bursts)
        self.counts["reads"] += registers.reads


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


def random_flags(rng):
    return sum(flag for flag in (CPHA, CPOL, LSB_FIRST) if rng.getrandbits(1)) | (LOOPBACK if rng.random() < 0.2 else 0)


def random_lines(rng):
    return (AUTO if rng.random() < 0.7 else 0) | (rng.randrange(1, 16) if rng.random() < 0.95 else 0)


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


def registers(stimulus, verdict):
    """Reset values, every address read and written, and cycles that are no access."""
    rng = stimulus.random
    stimulus.begin("registers", verdict)
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


def fifo_limits(stimulus, verdict):
    """TX filled beyond its depth, emptied by flush, and both FIFOs at their limits with a transfer between."""
    rng = stimulus.random
    stimulus.begin("FIFO limits", verdict)
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


def bursts(stimulus, verdict, setup, word_counts):
    """Bursts that wait in TX before ENABLE = 1, one after the other; the state is read all the time."""
    rng = stimulus.random
    stimulus.begin(f"bursts of {setup.bits} bits", verdict)
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


def stream(stimulus, verdict, setup, words):
    """Words pushed and popped at random while ENABLE is 1: bursts form as they come.

    All words are fetched before RX could become full, where the models would not know which words are lost.
    """
    rng = stimulus.random
    stimulus.begin(f"stream of {setup.bits} bits", verdict)
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
            stimulus.write(INT_STATUS, rng.getrandbits(5) & ~(1 << DONE))
        if number % FIFO_DEPTH == 0 or number == words:
            stimulus.idle(setup.duration(FIFO_DEPTH))
            read_all(stimulus, FIFO_DEPTH)


def disabled_in_burst(stimulus, verdict, setup):
    """ENABLE := 0 in the middle of a word: it is completed, the others are kept until ENABLE = 1 again."""
    rng = stimulus.random
    stimulus.begin("ENABLE := 0 in a burst", verdict)
    setup.apply(stimulus)
    for _ in range(4):
        stimulus.write(TXDATA, rng.getrandbits(32))
    for stop in (True, False):
        stimulus.write(CTRL, setup.ctrl | ENABLE)
        if stop:
            word_time = 2 * setup.bits * setup.half
            stimulus.idle(rng.randrange(8, word_time) + rng.randrange(2) * word_time)
            stimulus.write(CTRL, setup.ctrl)
            for _ in range(setup.duration(2) // 8):
                stimulus.read(STATUS)
                stimulus.idle(6)
        else:
            stimulus.idle(setup.duration(4))
    stimulus.write(CTRL, setup.ctrl)
    read_all(stimulus, 4)


def reset_in_transfer(stimulus, verdict, setup):
    """Reset at some moment of a burst, after which nothing of it may be left."""
    rng = stimulus.random
    stimulus.begin("reset in a transfer", verdict)
    setup.apply(stimulus)
    stimulus.write(INT_ENABLE, 0x1F)
    for _ in range(3):
        stimulus.write(TXDATA, rng.getrandbits(32))
    stimulus.write(CTRL, setup.ctrl | ENABLE)
    stimulus.idle(rng.randrange(3 * 2 * setup.bits * setup.half))
    stimulus.reset()
    for address in (CTRL, DIV, CS, STATUS, INT_ENABLE, INT_STATUS):
        stimulus.read(address)
    bits = Setup(0, 8, 0, AUTO | 2)
    bits.apply(stimulus)
    stimulus.write(TXDATA, rng.getrandbits(32))
    stimulus.write(CTRL, bits.ctrl | ENABLE)
    stimulus.idle(bits.duration(1))
    read_all(stimulus, 1)


def idle_configuration(stimulus, verdict):
    """Idle level and lines follow CTRL and CS; ENABLE and CPOL written together, with a word waiting."""
    rng = stimulus.random
    stimulus.begin("configuration while idle", verdict)
    for _ in range(20):
        setup = Setup(random_flags(rng), rng.randrange(1, 5), rng.randrange(3, 6), random_lines(rng))
        setup.apply(stimulus)
        stimulus.idle(rng.randrange(8))
        stimulus.write(CTRL, setup.ctrl | ENABLE)
        stimulus.idle(rng.randrange(8))
        stimulus.write(CS, random_lines(rng))
        stimulus.idle(rng.randrange(8))
        stimulus.write(CTRL, setup.ctrl)
        stimulus.write(TXDATA, rng.getrandbits(32))
        setup.flags ^= CPOL
        stimulus.write(CTRL, setup.ctrl | ENABLE)
        stimulus.idle(setup.duration(1))
        stimulus.write(CTRL, setup.ctrl)
        stimulus.read(RXDATA)


def add_all(stimulus, verdict, is_long):
    rng = stimulus.random
    repeat = 12 if is_long else 1
    for _ in range(repeat):
        registers(stimulus, verdict)
        fifo_limits(stimulus, verdict)
        idle_configuration(stimulus, verdict)

    combinations = [(cpha | cpol | lsb, lines) for cpha in (0, CPHA) for cpol in (0, CPOL) for lsb in (0, LSB_FIRST)
                    for lines in (AUTO | 1, 8)]
    for flags, lines in combinations * repeat:
        bursts(stimulus, verdict, Setup(flags, rng.randrange(2, 17), rng.randrange(3), lines), (FIFO_DEPTH, 1, 2))
        slow = Setup(flags, rng.randrange(2, 9), rng.randrange(3, 6), lines)
        disabled_in_burst(stimulus, verdict, slow)
        reset_in_transfer(stimulus, verdict, slow)
        stream(stimulus, verdict, slow, 30)

    for bits in list(range(1, 33)) * repeat:
        div = rng.choice((0, 0, 1, 2, 3, rng.randrange(4, 20)))
        setup = Setup(random_flags(rng), bits, div, random_lines(rng))
        bursts(stimulus, verdict, setup, (rng.randrange(1, 6), 1))
    for _ in range(15 * repeat):
        bits, div = rng.randrange(1, 33), rng.choice((3, 4, 5, rng.randrange(3, 9)))
        stream(stimulus, verdict, Setup(random_flags(rng), bits, div, random_lines(rng)), 25)
    for _ in range(8 * repeat):
        framed = Setup(random_flags(rng), rng.randrange(1, 17), rng.randrange(3), AUTO | rng.randrange(1, 16))
        stream(stimulus, verdict, framed, 60)

    for div in (0x3FF, 0x8000, 0xFFFF) if is_long else (0x155, 0xAAA):
        bursts(stimulus, verdict, Setup(random_flags(rng), 2, div, AUTO | 4), (1,))
