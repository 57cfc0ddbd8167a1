-- Synchronous FIFO, 16 words of 32 bits, that reads ahead: head shows the oldest word while empty is 0.
-- Full and empty are judged before the clock edge: a push while full is ignored even when a pop makes
-- room at the same edge. A flush wins over a push.

library ieee;
use ieee.std_logic_1164.all;
use ieee.numeric_std.all;

use work.apb_serial_master_pkg.all;

entity apb_serial_master_fifo is
  port (
    clk       : in  std_logic;
    reset_n   : in  std_logic;
    flush     : in  std_logic;
    push      : in  std_logic;
    push_word : in  std_logic_vector(31 downto 0);
    pop       : in  std_logic;
    head      : out std_logic_vector(31 downto 0);
    empty     : out std_logic;
    full      : out std_logic;
    level     : out std_logic_vector(4 downto 0)
  );
end entity apb_serial_master_fifo;

architecture rtl of apb_serial_master_fifo is

  constant LAST_INDEX : integer := FIFO_DEPTH - 1;

  subtype index_t is integer range 0 to LAST_INDEX;
  type memory_t is array (0 to LAST_INDEX) of std_logic_vector(WORD_WIDTH - 1 downto 0);

  signal write_index     : index_t;
  signal read_index      : index_t;
  signal next_read_index : index_t;
  signal word_count      : integer range 0 to FIFO_DEPTH;

  signal is_empty    : std_logic;
  signal is_full     : std_logic;
  signal accept_push : std_logic;
  signal accept_pop  : std_logic;

  signal memory_word : std_logic_vector(WORD_WIDTH - 1 downto 0);
  signal bypass_word : std_logic_vector(WORD_WIDTH - 1 downto 0);
  signal use_bypass  : std_logic;

  function index_after(index : index_t) return index_t is
  begin
    return (index + 1) mod FIFO_DEPTH;
  end function;

begin

  is_empty    <= '1' when word_count = 0 else '0';
  is_full     <= '1' when word_count = FIFO_DEPTH else '0';
  accept_push <= push and not is_full and not flush;
  accept_pop  <= pop and not is_empty;

  next_read_index <= index_after(read_index) when accept_pop = '1' else read_index;

  pointers : process (clk, reset_n)
  begin
    if reset_n = '0' then
      write_index <= 0;
      read_index  <= 0;
      word_count  <= 0;
    elsif rising_edge(clk) then
      if flush = '1' then
        write_index <= 0;
        read_index  <= 0;
        word_count  <= 0;
      else
        read_index <= next_read_index;
        if accept_push = '1' then
          write_index <= index_after(write_index);
        end if;
        if accept_push = '1' and accept_pop = '0' then
          word_count <= word_count + 1;
        elsif accept_push = '0' and accept_pop = '1' then
          word_count <= word_count - 1;
        end if;
      end if;
    end if;
  end process pointers;

  -- One write port and one registered read port without reset, so that any memory block fits.
  storage : process (clk)
    variable memory : memory_t;
  begin
    if rising_edge(clk) then
      memory_word <= memory(next_read_index);
      if accept_push = '1' then
        memory(write_index) := push_word;
      end if;
    end if;
  end process storage;

  -- The memory is read before it is written: a word pushed to the address being read goes around it.
  bypass : process (clk)
  begin
    if rising_edge(clk) then
      bypass_word <= push_word;
      use_bypass  <= '0';
      if accept_push = '1' and write_index = next_read_index then
        use_bypass <= '1';
      end if;
    end if;
  end process bypass;

  head  <= bypass_word when use_bypass = '1' else memory_word;
  empty <= is_empty;
  full  <= is_full;
  level <= std_logic_vector(to_unsigned(word_count, 5));

end architecture rtl;
