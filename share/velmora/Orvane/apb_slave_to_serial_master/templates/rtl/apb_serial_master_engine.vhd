-- Serial engine: takes words from the TX FIFO, shifts them out and in, and drives clock and chip selects.
--
-- All times are counted in half SCLK periods of H = divider + 1 clk cycles. A word that is taken at some
-- clk edge has its SCLK edges H, 2 H, ... later; the next word of a burst is taken at the last of them,
-- so that SCLK runs on without a gap. After the last word the select lines are held for H (HOLDING) and
-- then stay released for at least H (RECOVERING) before another burst may begin.

library ieee;
use ieee.std_logic_1164.all;
use ieee.numeric_std.all;

use work.apb_serial_master_pkg.all;

entity apb_serial_master_engine is
  port (
    clk         : in  std_logic;
    reset_n     : in  std_logic;
    -- configuration
    enable      : in  std_logic;
    cpha        : in  std_logic;
    cpol        : in  std_logic;
    lsb_first   : in  std_logic;
    loopback    : in  std_logic;
    wlen        : in  std_logic_vector(4 downto 0);
    divider     : in  std_logic_vector(15 downto 0);
    line_select : in  std_logic_vector(3 downto 0);
    line_auto   : in  std_logic;
    -- FIFOs
    tx_word     : in  std_logic_vector(31 downto 0);
    tx_empty    : in  std_logic;
    tx_take     : out std_logic;  -- tx_word is taken at the coming clk edge
    rx_word     : out std_logic_vector(31 downto 0);
    rx_push     : out std_logic;  -- rx_word is complete
    -- state
    busy        : out std_logic;
    finishing   : out std_logic;  -- busy falls at the coming clk edge
    -- pins
    spi_sclk    : out std_logic;
    spi_mosi    : out std_logic;
    spi_miso    : in  std_logic;
    spi_cs_n    : out std_logic_vector(3 downto 0)
  );
end entity apb_serial_master_engine;

architecture rtl of apb_serial_master_engine is

  type state_t is (IDLE, SHIFTING, HOLDING, RECOVERING);

  signal state      : state_t;
  signal next_state : state_t;

  signal half_count : integer range 0 to 2 ** 16 - 1;           -- clk cycles left in this half period, less one
  signal edges_left : integer range 0 to 2 * WORD_WIDTH - 1;    -- SCLK edges that follow the coming one

  signal half_over    : std_logic;
  signal sclk_edge    : std_logic;
  signal leading_edge : std_logic;
  signal last_edge    : std_logic;
  signal take         : std_logic;
  signal line_open    : std_logic;

  signal sent_word     : std_logic_vector(WORD_WIDTH - 1 downto 0);
  signal received_word : std_logic_vector(WORD_WIDTH - 1 downto 0);
  signal received_bit  : std_logic;

  signal sclk : std_logic;
  signal mosi : std_logic;
  signal cs_n : std_logic_vector(LINE_COUNT - 1 downto 0);

  -- Index of the bit that remaining others follow on the line. The modulus only matters when software
  -- changes the word length in the middle of a word, which it must not do.
  function bit_index(remaining : integer; last_index : std_logic_vector; from_bit_0 : std_logic) return integer is
  begin
    if from_bit_0 = '1' then
      return (to_integer(unsigned(last_index)) - remaining) mod WORD_WIDTH;
    end if;
    return remaining;
  end function;

begin

  half_over    <= '1' when half_count = 0 else '0';
  sclk_edge    <= '1' when state = SHIFTING and half_over = '1' else '0';
  leading_edge <= '1' when edges_left mod 2 = 1 else '0';
  last_edge    <= '1' when sclk_edge = '1' and edges_left = 0 else '0';

  -- A burst begins only after SCLK has stood at its idle level for one clk cycle.
  take <= enable and not tx_empty when last_edge = '1' or (state = IDLE and sclk = cpol) else '0';

  next_state_logic : process (state, take, last_edge, half_over)
  begin
    next_state <= state;
    if take = '1' then
      next_state <= SHIFTING;
    elsif last_edge = '1' then
      next_state <= HOLDING;
    elsif state = HOLDING and half_over = '1' then
      next_state <= RECOVERING;
    elsif state = RECOVERING and half_over = '1' then
      next_state <= IDLE;
    end if;
  end process next_state_logic;

  sequencer : process (clk, reset_n)
  begin
    if reset_n = '0' then
      state      <= IDLE;
      half_count <= 0;
      edges_left <= 0;
      sclk       <= '0';
    elsif rising_edge(clk) then
      state <= next_state;

      if state = IDLE or half_over = '1' then
        half_count <= to_integer(unsigned(divider));
      else
        half_count <= half_count - 1;
      end if;

      if take = '1' then
        edges_left <= 2 * to_integer(unsigned(wlen)) + 1;
      elsif sclk_edge = '1' and last_edge = '0' then
        edges_left <= edges_left - 1;
      end if;

      if sclk_edge = '1' then
        sclk <= not sclk;
      elsif state = IDLE then
        sclk <= cpol;
      end if;
    end if;
  end process sequencer;

  -- CPHA = 0 puts the first bit out when the word is taken and each further one at a trailing edge;
  -- CPHA = 1 puts every bit out at a leading edge.
  transmitter : process (clk, reset_n)
  begin
    if reset_n = '0' then
      sent_word <= (others => '0');
      mosi      <= '0';
    elsif rising_edge(clk) then
      if take = '1' then
        sent_word <= tx_word;
      end if;

      if cpha = '1' then
        if sclk_edge = '1' and leading_edge = '1' then
          mosi <= sent_word(bit_index(edges_left / 2, wlen, lsb_first));
        end if;
      elsif take = '1' then
        mosi <= tx_word(bit_index(to_integer(unsigned(wlen)), wlen, lsb_first));
      elsif sclk_edge = '1' and leading_edge = '0' and last_edge = '0' then
        mosi <= sent_word(bit_index(edges_left / 2 - 1, wlen, lsb_first));
      end if;
    end if;
  end process transmitter;

  received_bit <= mosi when loopback = '1' else spi_miso;

  -- Every word of a burst fills the same bits, so clearing the others while idle is enough. A word is
  -- handed over one clk cycle after its last edge, before the next one can change it.
  receiver : process (clk, reset_n)
  begin
    if reset_n = '0' then
      received_word <= (others => '0');
      rx_push       <= '0';
    elsif rising_edge(clk) then
      rx_push <= last_edge;
      if state = IDLE then
        received_word <= (others => '0');
      elsif sclk_edge = '1' and leading_edge /= cpha then
        received_word(bit_index(edges_left / 2, wlen, lsb_first)) <= received_bit;
      end if;
    end if;
  end process receiver;

  line_open <= '1' when next_state = SHIFTING or next_state = HOLDING else
               '1' when line_auto = '0' and (enable = '1' or next_state = RECOVERING) else
               '0';

  -- A line never falls together with a change of the idle level: a slave would take that for a clock edge.
  selector : process (clk, reset_n)
  begin
    if reset_n = '0' then
      cs_n <= (others => '1');
    elsif rising_edge(clk) then
      for i in cs_n'range loop
        if line_open = '0' or line_select(i) = '0' then
          cs_n(i) <= '1';
        elsif sclk = cpol then
          cs_n(i) <= '0';
        end if;
      end loop;
    end if;
  end process selector;

  tx_take   <= take;
  rx_word   <= received_word;
  busy      <= '0' when state = IDLE else '1';
  finishing <= '1' when state = RECOVERING and half_over = '1' else '0';
  spi_sclk  <= sclk;
  spi_mosi  <= mosi;
  spi_cs_n  <= cs_n;

end architecture rtl;
