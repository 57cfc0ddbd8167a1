-- Words leave in the order in which they came.

library ieee;
use ieee.std_logic_1164.all;
use ieee.numeric_std.all;

entity fifo is
  port (
    -- begin ports
    clk          : in  std_logic;                    -- clock of both sides
    reset        : in  std_logic;                    -- synchronous, active high
    wr_en        : in  std_logic;                    -- puts wr_data in unless full
    wr_data      : in  std_logic_vector(7 downto 0); -- word to put in
    full         : out std_logic;                    -- wr_en is ignored
    almost_full  : out std_logic;                    -- level is 80 or more
    rd_en        : in  std_logic;                    -- takes the oldest word unless empty
    rd_data      : out std_logic_vector(7 downto 0); -- word taken, one clock later
    rd_valid     : out std_logic;                    -- a word was taken one clock ago
    empty        : out std_logic;                    -- rd_en is ignored
    almost_empty : out std_logic;                    -- level is 20 or less
    level        : out std_logic_vector(6 downto 0)  -- words inside
    -- end ports
  );
end entity fifo;

architecture rtl of fifo is

  -- begin constants
  constant WORD_WIDTH        : integer := 8;   -- bits of a word
  constant DEPTH             : integer := 100; -- words
  constant LEVEL_WIDTH       : integer := 7;   -- bits of a number of words
  constant ALMOST_FULL_FROM  : integer := 80;  -- words
  constant ALMOST_EMPTY_UPTO : integer := 20;  -- words
  -- end constants

  subtype index_t is integer range 0 to DEPTH - 1;
  type memory_t is array (index_t) of std_logic_vector(WORD_WIDTH - 1 downto 0);

  -- what both sides do at this clock edge
  signal write : std_logic;
  signal read  : std_logic;
  signal fetch : std_logic; -- the next word leaves the memory

  signal words           : integer range 0 to DEPTH;
  signal is_full         : std_logic;
  signal is_almost_full  : std_logic;
  signal is_empty        : std_logic;
  signal is_almost_empty : std_logic;
  -- begin fetch signals
  -- end fetch signals

  signal write_index : index_t;
  signal read_index  : index_t;
  -- begin wrap signals
  signal write_at_end : std_logic; -- write_index is the last one
  signal read_at_end  : std_logic; -- read_index is the last one
  -- end wrap signals

  function to_level(condition : boolean) return std_logic is
  begin
    if condition then
      return '1';
    end if;
    return '0';
  end function;

begin

  write <= wr_en and not is_full;
  read  <= rd_en and not is_empty;

  -- The flags are registers beside the number of words: what it will be is compared, not what it is.
  count : process (clk)
  begin
    if rising_edge(clk) then
      if reset = '1' then
        words           <= 0;
        is_full         <= '0';
        is_almost_full  <= '0';
        is_almost_empty <= '1';
      elsif write = '1' and read = '0' then
        words   <= words + 1;
        is_full <= to_level(words = DEPTH - 1);
        if words = ALMOST_FULL_FROM - 1 then
          is_almost_full <= '1';
        end if;
        if words = ALMOST_EMPTY_UPTO then
          is_almost_empty <= '0';
        end if;
      elsif write = '0' and read = '1' then
        words   <= words - 1;
        is_full <= '0';
        if words = ALMOST_FULL_FROM then
          is_almost_full <= '0';
        end if;
        if words = ALMOST_EMPTY_UPTO + 1 then
          is_almost_empty <= '1';
        end if;
      end if;
    end if;
  end process count;

  -- begin fetch
  fetch <= read;

  take : process (clk)
  begin
    if rising_edge(clk) then
      rd_valid <= read and not reset;
      if reset = '1' then
        is_empty <= '1';
      elsif write = '1' then
        is_empty <= '0';
      elsif read = '1' then
        is_empty <= to_level(words = 1);
      end if;
    end if;
  end process take;
  -- end fetch

  -- begin indices
  -- The ends are found one clock ahead, as the depth is no power of two.
  indices : process (clk)
  begin
    if rising_edge(clk) then
      if reset = '1' then
        write_index  <= 0;
        write_at_end <= '0';
      elsif write = '1' then
        write_at_end <= to_level(write_index = DEPTH - 2);
        if write_at_end = '1' then
          write_index <= 0;
        else
          write_index <= write_index + 1;
        end if;
      end if;
      if reset = '1' then
        read_index  <= 0;
        read_at_end <= '0';
      elsif fetch = '1' then
        read_at_end <= to_level(read_index = DEPTH - 2);
        if read_at_end = '1' then
          read_index <= 0;
        else
          read_index <= read_index + 1;
        end if;
      end if;
    end if;
  end process indices;
  -- end indices

  -- A word is fetched at a later clock than it is written, so that both indices never meet and any memory block fits.
  storage : process (clk)
    variable memory : memory_t;
  begin
    if rising_edge(clk) then
      if fetch = '1' then
        rd_data <= memory(read_index);
      end if;
      if write = '1' then
        memory(write_index) := wr_data;
      end if;
    end if;
  end process storage;

  full         <= is_full;
  almost_full  <= is_almost_full;
  empty        <= is_empty;
  almost_empty <= is_almost_empty;
  level        <= std_logic_vector(to_unsigned(words, LEVEL_WIDTH));

end architecture rtl;
