library ieee;
use ieee.std_logic_1164.all;
use ieee.numeric_std.all;

entity ser_des_tb is
end entity ser_des_tb;

architecture bench of ser_des_tb is

  constant WORD_SIZE     : positive := 8;
  constant SERIALISERS   : natural  := 2;
  constant DESERIALISERS : natural  := 2;

  subtype word_t is std_logic_vector(WORD_SIZE - 1 downto 0);

  constant SER_TRAINING_VALUE : word_t := "11010000";
  constant DES_TRAINING_VALUE : word_t := "11010000";

  signal reset             : std_logic := '1';
  signal word_clk, bit_clk : std_logic := '0';
  signal phase             : natural   := 0; -- from an edge of word_clk to that of bit_clk, in ns; a bit has 8
  signal finished          : boolean   := false;
  -- begin ser signals
  signal ser_training : std_logic := '0';
  signal ser_data     : std_logic_vector(SERIALISERS * WORD_SIZE - 1 downto 0) := (others => '0');
  signal ser_out      : std_logic_vector(SERIALISERS - 1 downto 0);
  -- end ser signals
  -- begin des signals
  signal des_training             : std_logic := '0';
  signal des_bitslip, des_in      : std_logic_vector(DESERIALISERS - 1 downto 0) := (others => '0');
  signal des_data                 : std_logic_vector(DESERIALISERS * WORD_SIZE - 1 downto 0);
  signal des_aligned              : std_logic_vector(DESERIALISERS - 1 downto 0);
  signal des_locked               : std_logic;
  -- end des signals

  function level(is_high : boolean) return std_logic is
  begin
    if is_high then
      return '1';
    end if;
    return '0';
  end function level;

  function text(value : std_logic_vector) return string is
    alias    bits   : std_logic_vector(1 to value'length) is value;
    variable result : string(1 to value'length);
  begin
    for i in bits'range loop
      result(i) := std_logic'image(bits(i))(2);
    end loop;
    return result;
  end function text;

  -- begin des function
  -- Whether the training value fixes the word boundary: it equals none of its own rotations.
  function is_unambiguous return boolean is
    constant TWICE  : std_logic_vector(2 * WORD_SIZE - 1 downto 0) := DES_TRAINING_VALUE & DES_TRAINING_VALUE;
    variable result : boolean := true;
  begin
    for i in 1 to WORD_SIZE - 1 loop
      result := result and TWICE(i + WORD_SIZE - 1 downto i) /= DES_TRAINING_VALUE;
    end loop;
    return result;
  end function is_unambiguous;
  -- end des function

begin

  dut : entity work.ser_des
    port map (
      -- begin ser ports
      ser_training => ser_training,
      ser_data     => ser_data,
      ser_out      => ser_out,
      -- end ser ports
      -- begin des ports
      des_training => des_training,
      des_bitslip  => des_bitslip,
      des_in       => des_in,
      des_data     => des_data,
      des_aligned  => des_aligned,
      des_locked   => des_locked,
      -- end des ports
      reset        => reset,
      word_clk     => word_clk,
      bit_clk      => bit_clk
    );

  -- Edges at the same time come in a changing order.
  clocks : process
    variable time_in_word : natural := 0; -- ns
    variable number       : natural := 0; -- of the word
  begin
    while not finished loop
      for late in boolean loop
        if late = (number mod 3 = 1 or number mod 7 > 3) then
          word_clk <= level(time_in_word < 4 * WORD_SIZE);
        else
          bit_clk <= level((time_in_word + 8 - phase) mod 8 < 4);
        end if;
        for delta_cycle in 1 to 20 loop
          exit when time_in_word > 0;
          wait for 0 ns;
        end loop;
      end loop;
      wait for 1 ns;
      time_in_word := (time_in_word + 1) mod (8 * WORD_SIZE);
      if time_in_word = 0 then
        number := number + 1;
      end if;
    end loop;
    wait;
  end process clocks;

  -- Follows the inputs at the rising edges of both clocks, and compares all outputs at each falling edge of bit_clk.
  model : process
    -- One bit edge of each word is the transfer edge: D/2 (rounded down) bit edges behind the word edge, or one more.
    -- Which of both is open where edges of both clocks coincide: then the outputs tell, and from each reset on it stays.
    type latencies_t is array (0 to 1) of boolean;
    variable fits : latencies_t := (others => true);

    variable checks   : natural := 0;
    variable words    : natural := 0; -- word edges since the end of reset
    variable position : integer := -1; -- of the last bit edge: 0 at or behind the word edge, -1 in front of it
    -- begin ser state
    variable sent, sent_before : std_logic_vector(ser_data'range); -- words taken at the last two word edges
    -- end ser state
    -- begin des state
    type line_t is record
      word       : word_t;                 -- on des_data
      slip       : natural range 0 to WORD_SIZE - 1;
      matches    : natural range 0 to 8;   -- in a row
      is_moved   : boolean;                -- by the last edge: word is still at the position before
      is_aligned : boolean;
    end record;
    type lines_t is array (des_in'range) of line_t;
    type either_t is array (latencies_t'range) of lines_t;
    type bits_t is array (des_in'range) of std_logic_vector(4 * WORD_SIZE - 1 downto 0);
    constant AFTER_RESET : line_t := ((others => '0'), 0, 0, false, false);

    variable lines     : either_t    := (others => (others => AFTER_RESET));
    variable locked    : latencies_t := (others => false);
    variable received  : bits_t;                   -- bit 0 is the last
    variable is_adrift : boolean     := false; -- searching since before the first whole word
    -- end des state

    procedure compare(name : string; found, early, late : std_logic_vector) is
      variable expected : std_logic_vector(found'range) := late;
    begin
      if fits(0) then
        expected := early;
      end if;
      checks := checks + 1;
      fits   := (fits(0) and found = early, fits(1) and found = late);
      assert fits(0) or fits(1)
        report "ser_des_tb: at " & integer'image(now / 1 ns) & " ns " & name & " is " & text(found) & ", expected "
               & text(expected)
        severity failure;
    end procedure compare;

    -- begin ser model
    -- The bits leave from the transfer edge on, the most significant one first.
    impure function sent_bit(line, transfer : natural) return std_logic_vector is
    begin
      if position >= transfer then
        return (0 => sent(line * WORD_SIZE + WORD_SIZE - 1 + transfer - position));
      end if;
      return (0 => sent_before(line * WORD_SIZE + transfer - 1 - position));
    end function sent_bit;

    procedure compare_serialisers is
    begin
      for i in ser_out'range loop
        if reset = '1' then
          compare("ser_out(" & integer'image(i) & ")", (0 => ser_out(i)), "0", "0");
        elsif words > 5 then -- those of the first four word periods may be lost
          compare("ser_out(" & integer'image(i) & ")", (0 => ser_out(i)), sent_bit(i, WORD_SIZE / 2),
                  sent_bit(i, WORD_SIZE / 2 + 1));
        end if;
      end loop;
    end procedure compare_serialisers;

    procedure take_words is
    begin
      sent_before := sent;
      for i in ser_out'range loop
        if ser_training = '1' then
          sent((i + 1) * WORD_SIZE - 1 downto i * WORD_SIZE) := SER_TRAINING_VALUE;
        else
          sent((i + 1) * WORD_SIZE - 1 downto i * WORD_SIZE) := ser_data((i + 1) * WORD_SIZE - 1 downto i * WORD_SIZE);
        end if;
      end loop;
    end procedure take_words;
    -- end ser model

    -- begin des model
    -- The word at a slip position, at a word edge. At position 0 its last bit is the one in front of the transfer edge
    -- of the third word before.
    impure function word_at(line, slip, late : natural) return word_t is
      constant LAST : natural := 3 * WORD_SIZE + 1 + position - WORD_SIZE / 2 - late - slip;
    begin
      return received(line)(LAST + WORD_SIZE - 1 downto LAST);
    end function word_at;

    procedure compare_deserialisers is
      variable early, late : line_t;
    begin
      for i in des_in'range loop
        early := lines(0)(i);
        late  := lines(1)(i);
        if not is_adrift then
          if words >= 10 or reset = '1' then -- until then parts of words come from before the end of reset
            compare("des_data of line " & integer'image(i), des_data((i + 1) * WORD_SIZE - 1 downto i * WORD_SIZE),
                    early.word, late.word);
          end if;
          compare("des_aligned(" & integer'image(i) & ")", (0 => des_aligned(i)), (0 => level(early.is_aligned)),
                  (0 => level(late.is_aligned)));
        end if;
      end loop;
      if not is_adrift then
        compare("des_locked", (0 => des_locked), (0 => level(locked(0))), (0 => level(locked(1))));
      end if;
    end procedure compare_deserialisers;

    -- One line at a word edge.
    procedure search(line : inout line_t; next_word : word_t; is_slipped : boolean) is
      variable slips : boolean := false;
    begin
      if des_training = '0' then
        slips        := is_slipped;
        line.matches := 0;
      elsif not line.is_moved and line.word /= DES_TRAINING_VALUE then
        slips           := true;
        line.matches    := 0;
        line.is_aligned := false;
      elsif not line.is_moved and line.matches < 8 then
        line.matches    := line.matches + 1;
        line.is_aligned := line.is_aligned or line.matches = 8;
      end if;
      line.word     := next_word;
      line.is_moved := slips;
      if slips then
        line.slip := (line.slip + 1) mod WORD_SIZE;
      end if;
    end procedure search;

    procedure follow_lines is
    begin
      locked := (others => true);
      for i in des_in'range loop
        for late in lines'range loop
          locked(late) := locked(late) and lines(late)(i).is_aligned;
          search(lines(late)(i), word_at(i, lines(late)(i).slip, late), des_bitslip(i) = '1');
        end loop;
      end loop;
      is_adrift := is_adrift or (words < 10 and des_training = '1');
      if is_adrift and words = 20 + 2 * WORD_SIZE then -- all lines have found the training value
        is_adrift := false;
        locked    := (others => true);
        for i in des_in'range loop
          for late in lines'range loop
            lines(late)(i) := (DES_TRAINING_VALUE, 0, 8, false, true);
            for slip in 0 to WORD_SIZE - 1 loop
              if word_at(i, slip, late) = DES_TRAINING_VALUE then
                lines(late)(i).slip := slip;
              end if;
            end loop;
          end loop;
        end loop;
      end if;
    end procedure follow_lines;
    -- end des model

  begin
    while not finished loop
      wait on word_clk, bit_clk, reset, finished;
      if rising_edge(word_clk) then
        words    := words + 1;
        if bit_clk = '1' and bit_clk'last_event = 0 ns then
          position := 0;
        else
          position := -1;
        end if;
        -- begin ser word edge
        take_words;
        -- end ser word edge
        -- begin des word edge
        follow_lines;
        -- end des word edge
      end if;
      if rising_edge(bit_clk) then
        position := position + 1;
        -- begin des bit edge
        for i in des_in'range loop
          received(i) := received(i)(4 * WORD_SIZE - 2 downto 0) & des_in(i);
        end loop;
        -- end des bit edge
      end if;
      if reset = '1' then
        words := 0;
        fits  := (true, phase = 0);
        -- begin des reset
        lines     := (others => (others => AFTER_RESET));
        locked    := (others => false);
        is_adrift := false;
        -- end des reset
      end if;
      if falling_edge(bit_clk) then
        -- begin ser compared
        compare_serialisers;
        -- end ser compared
        -- begin des compared
        compare_deserialisers;
        -- end des compared
      end if;
    end loop;
    report "ser_des_tb: PASSED (" & integer'image(checks) & " checks)";
    wait;
  end process model;

  -- Inputs change at falling edges of bit_clk, those of word_clk at one of each word; reset at any time.
  stimulus : process
    variable seed   : positive := 1;
    -- begin des stimulus
    type offsets_t is array (des_in'range) of natural;
    variable offset : offsets_t := (others => 0); -- of the words from the word edges, in bits
    -- end des stimulus

    -- Park and Miller, Communications of the ACM 31 (1988).
    impure function random(limit : positive) return natural is
      variable difference : integer;
    begin
      difference := 16807 * (seed mod 127773) - 2836 * (seed / 127773);
      if difference <= 0 then
        difference := difference + 2147483647;
      end if;
      seed := difference;
      return seed mod limit;
    end function random;

    -- Words with training and slips by hand, and training values received with wrong bits, as often as told.
    procedure pass_words(count, training_in_8, slips_in_8, errors_in_256 : natural) is
    begin
      for number in 1 to count loop
        -- begin ser inputs
        ser_training <= level(random(4) = 0);
        for i in ser_data'range loop
          ser_data(i) <= level(random(2) = 0);
        end loop;
        -- end ser inputs
        -- begin des inputs
        des_training <= level(random(8) < training_in_8);
        for i in des_in'range loop
          des_bitslip(i) <= level(random(8) < slips_in_8);
        end loop;
        -- end des inputs
        for place in WORD_SIZE - 1 downto 0 loop
          -- begin des bits
          for i in des_in'range loop
            des_in(i) <= DES_TRAINING_VALUE((place + offset(i)) mod WORD_SIZE) xor level(random(256) < errors_in_256);
          end loop;
          -- end des bits
          wait until falling_edge(bit_clk);
        end loop;
      end loop;
    end procedure pass_words;

    procedure change_reset(new_level : std_logic) is
    begin
      wait for random(8 * WORD_SIZE) * 1 ns + 500 ps;
      reset <= new_level;
    end procedure change_reset;

  begin
    for number in 0 to 5 loop
      pass_words(3, 4, 4, 128);
      case number is
        when 2      => phase <= 1;
        when 3      => phase <= 5;
        when others => phase <= 0; -- both edges at once
      end case;
      pass_words(2, 4, 4, 128);
      -- begin des phases
      for i in des_in'range loop
        offset(i) := random(WORD_SIZE);
      end loop;
      if number mod 2 = 0 and is_unambiguous then -- the search begins before reset ends
        pass_words(1, 8, 4, 0);
        change_reset('0');
        pass_words(22 + 2 * WORD_SIZE, 8, 4, 0);
      else
        pass_words(1, 0, 0, 128);
        change_reset('0');
        pass_words(12, 0, 0, 128);
      end if;
      pass_words(20 + 4 * WORD_SIZE, 0, 3, 128);
      pass_words(2 * WORD_SIZE + 10, 8, 4, 0);
      pass_words(20, 0, 2, 128);
      pass_words(100, 8, 4, 1);
      pass_words(60, 7, 4, 1);
      pass_words(60, 4, 4, 128);
      -- end des phases
      -- begin ser phases
      if reset = '1' then
        change_reset('0');
      end if;
      pass_words(100, 8, 0, 1);
      -- end ser phases
      change_reset('1');
    end loop;
    pass_words(2, 8, 8, 128);
    finished <= true;
    wait;
  end process stimulus;

end architecture bench;
