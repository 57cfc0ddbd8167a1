"""Two things at the same clock edge: which one counts.

A scan repeats one short run and moves a single access, edge by edge, over the moment at which something happens
inside. What comes out flips at one edge. The edges of different scans then tell what happens when both meet,
without any look inside: for instance, reads of TX_LEVEL show at which edge the engine takes a word, and a
flush at exactly that edge must leave the word to be sent.

Edges are counted from the write that sets ENABLE.
"""

from hdl_tools import require
from stimulus import (AUTO, CS, CTRL, DIV, DONE, ENABLE, FIFO_CTRL, FIFO_DEPTH, FLUSH_RX, FLUSH_TX, INT_STATUS,
                      RESPONSE_PSLVERR, RESPONSE_SCLK, RX_OVERRUN, RXDATA, STATUS, TXDATA, read_data)


class Scan:
    """Results by edge; each is true or false and must become true at one edge and stay so."""

    def __init__(self, title):
        self.title = title
        self.results = {}

    def flips_at(self):
        edges = sorted(self.results)
        true_edges = [edge for edge in edges if self.results[edge]]
        require(true_edges and not self.results[edges[0]], f"scan '{self.title}' shows no change: {self.results}")
        require(true_edges == edges[edges.index(true_edges[0]):],
                f"scan '{self.title}' changes more than once: {self.results}")
        return true_edges[0]


class Coincidences:
    """The scans of one serial configuration."""

    def __init__(self, stimulus, flags, bits, div):
        self.stimulus = stimulus
        self.ctrl = flags | bits - 1 << 8
        self.div = div
        self.half = div + 1
        self.bits = bits
        self.word_time = 2 * bits * self.half
        self.closing_time = 2 * self.half
        end = self.word_time + self.closing_time
        second, at_end, overrun = self.around(1), range(end + 6), self.around(FIFO_DEPTH)

        self.taken = self.scan("TX_LEVEL read", 2, second, self.read_status(lambda data: data >> 8 & 31 == 0))
        self.flushed = self.scan("TX flushed", 2, second, self.write(FIFO_CTRL, FLUSH_TX), self.sent_words(2))
        self.disabled = self.scan("ENABLE := 0", 2, second, self.write(CTRL, self.ctrl), self.sent_words(2))
        self.pushed = self.scan("push while full", FIFO_DEPTH + 1, second, self.push)
        self.pushed_sent = self.scan("push while full, words sent", FIFO_DEPTH + 1, second, self.push,
                                     self.sent_words(FIFO_DEPTH + 2))
        self.idle = self.scan("BUSY read", 1, range(8, end + 6), self.read_status(lambda data: data & 1 == 0))
        self.done = self.scan("DONE read", 1, at_end, self.read_event(DONE))
        self.done_cleared = self.scan("DONE cleared", 1, at_end, self.write(INT_STATUS, 1 << DONE),
                                      self.read_event(DONE, 0))
        self.received = self.scan("RX_LEVEL read", 1, at_end, self.read_status(lambda data: data >> 16 & 31 == 1))
        self.rx_flushed = self.scan("RX flushed", 1, at_end, self.write(FIFO_CTRL, FLUSH_RX),
                                    self.read_status(lambda data: data >> 16 & 31 == 0))
        self.popped = self.scan("pop while empty", 1, at_end, self.pop)
        self.overrun = self.scan("RX_OVERRUN read", FIFO_DEPTH + 1, overrun, self.read_event(RX_OVERRUN))
        self.overrun_cleared = self.scan("RX_OVERRUN cleared", FIFO_DEPTH + 1, overrun,
                                         self.write(INT_STATUS, 1 << RX_OVERRUN), self.read_event(RX_OVERRUN, 0))
        self.overrun_popped = self.scan("pop while full", FIFO_DEPTH + 1, overrun, self.pop, self.read_event(RX_OVERRUN))
        self.overrun_left = self.scan("pop while full, words left", FIFO_DEPTH + 1, overrun, self.pop,
                                      self.read_status(lambda data: data >> 16 & 31 == FIFO_DEPTH - 1))

    def around(self, words):
        """Edges around the end of a number of words."""
        return range((words - 1) * self.word_time + 4, (words + 1) * self.word_time + 12)

    def scan(self, title, words, offsets, act, observe=None):
        """One run for each offset; 'act' does the moved access and, without 'observe', gives the result itself."""
        result = Scan(title)
        for offset in offsets:
            stimulus = self.stimulus
            stimulus.begin(title, None)
            stimulus.write(DIV, self.div)
            stimulus.write(CS, AUTO | 1)
            stimulus.write(CTRL, self.ctrl)
            for _ in range(min(words, FIFO_DEPTH)):
                stimulus.write(TXDATA, stimulus.random.getrandbits(32))
            enabled = stimulus.write(CTRL, self.ctrl | ENABLE)
            cycles_then = len(stimulus.cycles)
            if words > FIFO_DEPTH:
                stimulus.idle(2)
                stimulus.write(TXDATA, stimulus.random.getrandbits(32))
            stimulus.idle(offset - (len(stimulus.cycles) - cycles_then))
            edge, judge = act()
            if observe:
                stimulus.idle((words + 1) * (self.word_time + self.closing_time) + 16)
                _, judge = observe()
            self.on_response(result, edge - enabled, judge)
        return result

    def on_response(self, scan, edge, judge):
        name, _, begin = self.stimulus.scenarios.pop()

        def checker(_, responses):
            scan.results[edge] = judge(responses)
        self.stimulus.scenarios.append((name, checker, begin))

    # What is moved or, at the end, looked at: each gives its edge and a judge of the responses.

    def write(self, address, data):
        return lambda: (self.stimulus.write(address, data), None)

    def push(self):
        return self.accepted(self.stimulus.write(TXDATA, 0))

    def pop(self):
        return self.accepted(self.stimulus.read(RXDATA))

    def accepted(self, edge):
        return edge, lambda responses: responses[edge][RESPONSE_PSLVERR] == "0"

    def read_judged(self, address, predicate):
        edge = self.stimulus.read(address)
        return edge, lambda responses: predicate(read_data(responses[edge]))

    def read_status(self, predicate):
        return lambda: self.read_judged(STATUS, predicate)

    def read_event(self, place, value=1):
        return lambda: self.read_judged(INT_STATUS, lambda data: data >> place & 1 == value)

    def sent_words(self, words):
        def judge(responses):
            levels = [response[RESPONSE_SCLK] for response in responses]
            return sum(before != after for before, after in zip(levels, levels[1:])) >= 2 * self.bits * words
        return lambda: (None, judge)

    # Called when all runs are done.

    def check(self):
        """A read at edge e shows what happened before e, so a read that flips at e + 1 means an event at e."""
        taken = self.taken.flips_at() - 1
        self.compare("a flush at the edge at which a word is taken leaves it to be sent", self.flushed, taken)
        self.compare("ENABLE := 0 at the edge at which a word is taken leaves it to be sent", self.disabled, taken)
        self.compare("a push at the edge at which a full FIFO loses a word is refused", self.pushed, taken + 1)
        self.compare("a refused push is not sent", self.pushed_sent, taken + 1)

        closed, done = self.idle.flips_at() - 1, self.done.flips_at() - 1
        require(done - closed in (0, 1), f"DONE is set {done - closed} cycles after BUSY falls")
        self.compare("DONE set and cleared at the same edge is set", self.done_cleared, done + 1)

        received = self.received.flips_at() - 1
        require(received < closed, "the word is not in the RX FIFO before BUSY falls")
        self.compare("a flush wins over a received word at the same edge", self.rx_flushed, received)
        self.compare("a pop at the edge at which a word comes into the empty FIFO fails", self.popped, received + 1)

        lost = self.overrun.flips_at() - 1
        self.compare("RX_OVERRUN set and cleared at the same edge is set", self.overrun_cleared, lost + 1)
        self.compare("a word that comes at the edge at which a full FIFO is read is lost", self.overrun_popped, lost)
        self.compare("a lost word is not in the RX FIFO", self.overrun_left, lost)

    def compare(self, rule, scan, expected):
        found = scan.flips_at()
        require(found == expected, f"not kept: {rule} (changes {found - expected:+d} cycles off)")
