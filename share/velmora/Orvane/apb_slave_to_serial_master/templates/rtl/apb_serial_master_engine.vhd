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

  subtype index_t is unsigned(wlen'range);

  -- The state: one of these is 1.
  signal idle       : std_logic;
  signal shifting   : std_logic;
  signal holding    : std_logic;
  signal recovering : std_logic;

  signal half_count : integer range 0 to 2 ** 16 - 1;  -- clk cycles left in this half period, less one
  signal bits_left  : index_t;                         -- bits that follow the one on the line

  -- Registers beside the counters, so that nothing has to wait for a comparison.
  signal half_over : std_logic;  -- half_count is 0
  signal more_bits : std_logic;  -- bits_left is not 0

  -- What happens at the coming clk edge.
  signal sclk_edge     : std_logic;
  signal leading_edge  : std_logic;  -- that SCLK edge, whenever it comes, is the leading one of its bit
  signal trailing_edge : std_logic;
  signal last_edge     : std_logic;
  signal begin_burst   : std_logic;
  signal take          : std_logic;

  signal sclk_rests  : std_logic;  -- SCLK is at its idle level
  signal word_waits  : std_logic;
  signal bit_over    : std_logic;
  signal word_over   : std_logic;
  signal burst_lasts : std_logic;
  signal line_open   : std_logic;

  -- Places in the word: of its first bit, of the bit on the line, of the bit that MOSI becomes at its next change.
  signal first_index    : index_t;
  signal received_index : index_t;
  signal sent_index     : index_t;

  signal sent_word     : std_logic_vector(WORD_WIDTH - 1 downto 0);
  signal received_word : std_logic_vector(WORD_WIDTH - 1 downto 0);
  signal received_bit  : std_logic;

  signal sclk : std_logic;
  signal mosi : std_logic;
  signal cs_n : std_logic_vector(LINE_COUNT - 1 downto 0);

  function index_after(index : index_t; from_bit_0 : std_logic) return index_t is
  begin
    if from_bit_0 = '1' then
      return index + 1;
    end if;
    return index - 1;
  end function;

begin

  sclk_edge     <= shifting and half_over;
  trailing_edge <= sclk_edge and not leading_edge;
  last_edge     <= trailing_edge and not more_bits;

  -- A burst begins only after SCLK has stood at its idle level for one clk cycle.
  sclk_rests  <= sclk xnor cpol;
  word_waits  <= enable and not tx_empty;
  begin_burst <= idle and sclk_rests and word_waits;
  take        <= begin_burst or (last_edge and word_waits);

  sequencer : process (clk, reset_n)
  begin
    if reset_n = '0' then
      idle         <= '1';
      shifting     <= '0';
      holding      <= '0';
      recovering   <= '0';
      half_count   <= 0;
      half_over    <= '0';
      leading_edge <= '1';
      sclk         <= '0';
    elsif rising_edge(clk) then
      idle       <= (idle and not take) or (recovering and half_over);
      shifting   <= take or (shifting and not last_edge);
      holding    <= (last_edge and not take) or (holding and not half_over);
      recovering <= (holding and half_over) or (recovering and not half_over);

      half_over <= '0';
      if idle = '1' or half_over = '1' then
        half_count <= to_integer(unsigned(divider));
        if unsigned(divider) = 0 then
          half_over <= '1';
        end if;
      else
        half_count <= half_count - 1;
        if half_count = 1 then
          half_over <= '1';
        end if;
      end if;

      if sclk_edge = '1' then
        leading_edge <= not leading_edge;
        sclk         <= not sclk;
      elsif idle = '1' then
        sclk <= cpol;
      end if;
    end if;
  end process sequencer;

  -- While idle and after the last bit, all is prepared for another word, whether one is taken or not.
  bit_over    <= idle or trailing_edge;
  word_over   <= idle or not more_bits;
  first_index <= (others => '0') when lsb_first = '1' else unsigned(wlen);

  bit_counter : process (clk, reset_n)
  begin
    if reset_n = '0' then
      bits_left      <= (others => '0');
      more_bits      <= '0';
      received_index <= (others => '0');
      sent_index     <= (others => '0');
      sent_word      <= (others => '0');
    elsif rising_edge(clk) then
      if bit_over = '1' then
        if word_over = '1' then
          bits_left      <= unsigned(wlen);
          more_bits      <= '1';
          received_index <= first_index;
          sent_index     <= first_index;
          sent_word      <= tx_word;
          if unsigned(wlen) = 0 then
            more_bits <= '0';
          end if;
          if cpha = '0' then
            sent_index <= index_after(first_index, lsb_first);
          end if;
        else
          bits_left      <= bits_left - 1;
          received_index <= index_after(received_index, lsb_first);
          sent_index     <= index_after(sent_index, lsb_first);
          if bits_left = 1 then
            more_bits <= '0';
          end if;
        end if;
      end if;
    end if;
  end process bit_counter;

  -- CPHA = 0 puts the first bit out when the word is taken and each further one at a trailing edge;
  -- CPHA = 1 puts every bit out at a leading edge.
  transmitter : process (clk, reset_n)
  begin
    if reset_n = '0' then
      mosi <= '0';
    elsif rising_edge(clk) then
      if cpha = '1' then
        if sclk_edge = '1' and leading_edge = '1' then
          mosi <= sent_word(to_integer(sent_index));
        end if;
      elsif take = '1' then
        mosi <= tx_word(to_integer(first_index));
      elsif trailing_edge = '1' and more_bits = '1' then
        mosi <= sent_word(to_integer(sent_index));
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
      if idle = '1' then
        received_word <= (others => '0');
      elsif sclk_edge = '1' and leading_edge /= cpha then
        received_word(to_integer(received_index)) <= received_bit;
      end if;
    end if;
  end process receiver;

  -- What the lines are after the coming clk edge, told without the state that it brings, which would come late.
  burst_lasts <= begin_burst or shifting or (holding and not half_over);
  line_open   <= burst_lasts or (not line_auto and (enable or holding or (recovering and not half_over)));

  -- A line never falls together with a change of the idle level: a slave would take that for a clock edge.
  selector : process (clk, reset_n)
  begin
    if reset_n = '0' then
      cs_n <= (others => '1');
    elsif rising_edge(clk) then
      for i in cs_n'range loop
        cs_n(i) <= not (line_open and line_select(i) and (sclk_rests or not cs_n(i)));
      end loop;
    end if;
  end process selector;

  tx_take   <= take;
  rx_word   <= received_word;
  busy      <= not idle;
  finishing <= recovering and half_over;
  spi_sclk  <= sclk;
  spi_mosi  <= mosi;
  spi_cs_n  <= cs_n;

end architecture rtl;
