library ieee;
use ieee.std_logic_1164.all;
use ieee.numeric_std.all;

entity fifo_tb is
end entity fifo_tb;

architecture bench of fifo_tb is

  constant WORD_BITS       : positive := 8;
  constant CAPACITY        : positive := 100; -- words
  constant LEVEL_BITS      : positive := 7;
  constant ALMOST_FULL_AT  : positive := 80;  -- words and more
  constant ALMOST_EMPTY_AT : natural  := 20;  -- words and less

  signal clk     : std_logic := '0';
  signal reset   : std_logic := '1';
  signal wr_en   : std_logic := '0';
  signal rd_en   : std_logic := '0';
  signal wr_data : std_logic_vector(WORD_BITS - 1 downto 0) := (others => '0');
  signal rd_data : std_logic_vector(WORD_BITS - 1 downto 0);
  -- begin own signals
  signal rd_valid : std_logic;
  -- end own signals
  signal full, almost_full, empty, almost_empty : std_logic;
  signal level : std_logic_vector(LEVEL_BITS - 1 downto 0);

  signal offered  : natural := 0; -- the number of the word on wr_data
  signal inside   : natural := 0; -- words in the FIFO, as the model has them
  signal finished : boolean := false;

  -- The number behind one from 1 to 2**31 - 2 in the sequence of Park and Miller, Communications of the ACM 31 (1988).
  function following(number : positive) return positive is
    constant DIFFERENCE : integer := 16807 * (number mod 127773) - 2836 * (number / 127773);
  begin
    if DIFFERENCE > 0 then
      return DIFFERENCE;
    end if;
    return DIFFERENCE + 2147483647;
  end function following;

  function level_of(is_high : boolean) return std_logic is
  begin
    if is_high then
      return '1';
    end if;
    return '0';
  end function level_of;

  function random_bits(count : positive) return std_logic_vector is
    variable bits   : std_logic_vector(0 to count - 1);
    variable number : positive := 1;
  begin
    for i in bits'range loop
      number  := following(number);
      bits(i) := level_of(number / 65536 mod 2 = 1);
    end loop;
    return bits;
  end function random_bits;

  constant PLACES : positive := 4099;
  constant NOISE  : std_logic_vector(0 to PLACES + WORD_BITS - 1) := random_bits(PLACES + WORD_BITS);

  -- The word of a number; now and then one of equal bits.
  function word(number : natural) return std_logic_vector is
    constant START : natural := number mod PLACES;
    variable equal : std_logic_vector(WORD_BITS - 1 downto 0);
  begin
    if number mod 32 = 0 then
      equal := (others => NOISE(START));
      return equal;
    end if;
    return NOISE(START to START + WORD_BITS - 1);
  end function word;

  function text(value : std_logic_vector) return string is
    alias    bits   : std_logic_vector(1 to value'length) is value;
    variable result : string(1 to value'length);
  begin
    for i in bits'range loop
      result(i) := std_logic'image(bits(i))(2);
    end loop;
    return result;
  end function text;

begin

  dut : entity work.fifo
    port map (
      clk          => clk,
      reset        => reset,
      wr_en        => wr_en,
      wr_data      => wr_data,
      full         => full,
      almost_full  => almost_full,
      rd_en        => rd_en,
      rd_data      => rd_data,
      -- begin own ports
      rd_valid     => rd_valid,
      -- end own ports
      empty        => empty,
      almost_empty => almost_empty,
      level        => level
    );

  clk <= not clk after 5 ns when not finished else '0';

  wr_data <= word(offered);

  -- At each rising edge this process compares the outputs that the edge sees, then follows what its inputs lead to.
  model : process
    type queue_t is array (0 to CAPACITY - 1) of natural;
    variable queue  : queue_t; -- numbers of the words inside, a ring
    variable first  : natural range 0 to CAPACITY - 1 := 0;
    variable count  : natural range 0 to CAPACITY := 0;
    variable checks : natural := 0;

    variable is_fresh          : boolean := false; -- a word came in at the edge before
    variable is_shown          : boolean := false;
    variable was_taken         : boolean := false; -- a word, at the edge before
    variable is_known          : boolean := false; -- a word was taken since the reset
    variable taken             : natural;          -- the number of the last word taken
    variable accepts, delivers : boolean;

    procedure compare(name : string; found, expected : std_logic_vector) is
    begin
      checks := checks + 1;
      assert found = expected
        report "fifo_tb: at " & integer'image(now / 1 ns) & " ns " & name & " is " & text(found) & ", expected "
               & text(expected)
        severity failure;
    end procedure compare;

    procedure compare_outputs is
    begin
      compare("level", level, std_logic_vector(to_unsigned(count, LEVEL_BITS)));
      compare("full", (0 => full), (0 => level_of(count = CAPACITY)));
      compare("almost_full", (0 => almost_full), (0 => level_of(count >= ALMOST_FULL_AT)));
      compare("almost_empty", (0 => almost_empty), (0 => level_of(count <= ALMOST_EMPTY_AT)));
      -- begin own outputs
      is_shown := count > 0;
      compare("empty", (0 => empty), (0 => level_of(not is_shown)));
      compare("rd_valid", (0 => rd_valid), (0 => level_of(was_taken)));
      if is_known then
        compare("rd_data", rd_data, word(taken));
      end if;
      -- end own outputs
    end procedure compare_outputs;

  begin
    while not finished loop
      wait until rising_edge(clk) or finished;
      exit when finished;
      if now > 10 ns then -- one clock of reset
        compare_outputs;
      end if;
      accepts   := wr_en = '1' and count < CAPACITY;
      delivers  := rd_en = '1' and is_shown;
      is_fresh  := accepts;
      was_taken := delivers;
      if reset = '1' then
        count     := 0;
        was_taken := false;
        is_known  := false;
      else
        if accepts then
          queue((first + count) mod CAPACITY) := offered;
          count := count + 1;
        end if;
        if delivers then
          taken    := queue(first);
          is_known := true;
          first    := (first + 1) mod CAPACITY;
          count    := count - 1;
        end if;
      end if;
      inside <= count;
    end loop;
    report "fifo_tb: PASSED (" & integer'image(checks) & " checks)";
    wait;
  end process model;

  -- Goes to number after number of words and stays around it for a while. Inputs change at falling edges.
  stimulus : process
    variable seed : positive := 1;

    impure function random(limit : positive) return natural is
    begin
      seed := following(seed);
      return seed mod limit;
    end function random;

    procedure pass_clock(writes, reads : boolean) is
    begin
      wr_en   <= level_of(writes);
      rd_en   <= level_of(reads);
      offered <= random(1000000000);
      wait until falling_edge(clk);
    end procedure pass_clock;

    -- Each side is active at a number of clocks out of 16.
    procedure pass_clocks(count, writes, reads : natural) is
    begin
      for i in 1 to count loop
        pass_clock(random(16) < writes, random(16) < reads);
      end loop;
    end procedure pass_clocks;

    procedure reset_clocks(count : positive) is
    begin
      reset <= '1';
      pass_clocks(count, 8, 8);
      reset <= '0';
    end procedure reset_clocks;

    procedure go_to(wanted : integer) is
      constant LIMIT : natural := 2 * CAPACITY + 100;
    begin
      for i in 1 to LIMIT loop
        exit when inside = wanted or wanted < 0 or wanted > CAPACITY;
        pass_clock(inside < wanted or random(16) = 0, inside > wanted or random(16) = 0);
      end loop;
    end procedure go_to;

    -- Around a number of words: one side, both and none at a clock, alternating, and crossing the number again and again.
    procedure stay_at(wanted : integer) is
    begin
      go_to(wanted);
      for turn in 1 to 6 loop
        case random(5) is
          when 0      => pass_clocks(8, 16, 16);
          when 1      => pass_clocks(6, 16, 8);
          when 2      => pass_clocks(6, 8, 16);
          when 3      =>
            for i in 1 to 6 loop
              pass_clock(i mod 2 = 1, i mod 2 = 0);
            end loop;
          when others => pass_clocks(12, 8, 8);
        end case;
        if random(2) = 0 then
          go_to(wanted);
        end if;
      end loop;
    end procedure stay_at;

    procedure stay_near(wanted : natural) is
    begin
      for place in wanted - 1 to wanted + 1 loop
        stay_at(place);
      end loop;
    end procedure stay_near;

  begin
    reset_clocks(4);
    -- A reset after one word less than a round of the memory.
    for i in 1 to CAPACITY - 1 loop
      pass_clock(true, false);
    end loop;
    while inside > 0 loop
      pass_clock(false, true);
    end loop;
    reset_clocks(1);
    for number in 1 to 1 + 100 / (CAPACITY + 2) loop
      stay_near(0);
      stay_near(ALMOST_EMPTY_AT);
      stay_near(ALMOST_FULL_AT);
      stay_near(CAPACITY);
      pass_clocks(20, 16, 0);
      if random(3) = 0 then
        reset_clocks(1 + random(3));
        stay_near(1 + random(2));
      end if;
      stay_near(random(CAPACITY));
      go_to(CAPACITY);
      pass_clocks(CAPACITY / 4 + 30, 16, 16);
      go_to(0);
      pass_clocks(20, 0, 16);
      pass_clocks(CAPACITY / 4 + 30, 16, 16);
      pass_clocks(CAPACITY / 4 + 30, 8, 8);
      reset_clocks(1 + random(3));
      pass_clocks(30, 8, 8);
    end loop;
    finished <= true;
    wait;
  end process stimulus;

end architecture bench;
