-- Synchronous FIFO, 16 words of 32 bits, that reads ahead: head shows the oldest word while empty is 0.
-- Full and empty are judged before the clock edge: a push while full is ignored even when a pop makes
-- room at the same edge. A flush wins over a push.
--
-- Two pushes never come at successive clock edges, nor do two pops: a bus access takes two cycles, and so
-- does the shortest word on the serial side.

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

  subtype index_t is integer range 0 to FIFO_DEPTH - 1;
  type memory_t is array (index_t) of std_logic_vector(WORD_WIDTH - 1 downto 0);

  signal write_index      : index_t;
  signal next_write_index : index_t;
  signal read_index       : index_t;
  signal next_read_index  : index_t;

  signal is_empty    : std_logic;
  signal is_full     : std_logic;
  signal one_left    : std_logic;
  signal one_free    : std_logic;
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

  accept_push <= push and not is_full;
  accept_pop  <= pop and not is_empty;

  next_write_index <= index_after(write_index) when accept_push = '1' else write_index;
  next_read_index  <= index_after(read_index) when accept_pop = '1' else read_index;

  -- A flush lets the reader catch up with the writer.
  indices : process (clk, reset_n)
  begin
    if reset_n = '0' then
      write_index <= 0;
      read_index  <= 0;
    elsif rising_edge(clk) then
      write_index <= next_write_index;
      read_index  <= next_read_index;
      if flush = '1' then
        read_index <= next_write_index;
      end if;
    end if;
  end process indices;

  one_left <= '1' when write_index = index_after(read_index) else '0';
  one_free <= '1' when read_index = index_after(write_index) else '0';

  -- Both are known one clock ahead, so that nothing has to wait for a comparison of the indices.
  limits : process (clk, reset_n)
  begin
    if reset_n = '0' then
      is_empty <= '1';
      is_full  <= '0';
    elsif rising_edge(clk) then
      is_empty <= flush or (not accept_push and (is_empty or (accept_pop and one_left)));
      is_full  <= not flush and not accept_pop and (is_full or (accept_push and one_free));
    end if;
  end process limits;

  -- One write port and one registered read port without reset, so that any memory block fits. Nothing is read
  -- while a word is pushed, so that no block needs a rule for equal addresses: a word pushed into the empty FIFO,
  -- which may be popped at once, goes around the memory, and any other head is read at the clock edge after the
  -- push, in time for the next pop.
  storage : process (clk)
    variable memory : memory_t;
  begin
    if rising_edge(clk) then
      if push = '0' then
        memory_word <= memory(next_read_index);
      end if;
      if accept_push = '1' then
        memory(write_index) := push_word;
      end if;
    end if;
  end process storage;

  bypass : process (clk)
  begin
    if rising_edge(clk) then
      bypass_word <= push_word;
      use_bypass  <= push and is_empty;
    end if;
  end process bypass;

  head  <= bypass_word when use_bypass = '1' else memory_word;
  empty <= is_empty;
  full  <= is_full;
  level <= is_full & std_logic_vector(to_unsigned((write_index - read_index) mod FIFO_DEPTH, 4));

end architecture rtl;
