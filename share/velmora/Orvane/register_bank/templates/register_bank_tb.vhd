library ieee;
use ieee.std_logic_1164.all;
use ieee.numeric_std.all;

entity register_bank_tb is
end entity register_bank_tb;

architecture bench of register_bank_tb is

  subtype word_t is std_logic_vector(31 downto 0);
  type access_t is (RW, RO, W1C, PULSE);
  type register_t is record
    access_kind : access_t;
    width       : positive;
    reset_value : word_t;
  end record;
  type registers_t is array (natural range <>) of register_t;
  type words_t is array (natural range <>) of word_t;

  -- begin table
  constant REGISTERS : registers_t(0 to 3) := (
    0 => (RW, 8, x"0000005a"), -- control
    1 => (RO, 16, x"00000000"), -- status
    2 => (W1C, 4, x"00000000"), -- events
    3 => (PULSE, 2, x"00000000")); -- command
  -- end table

  constant LAST : natural := REGISTERS'high;

  signal pclk    : std_logic := '0';
  signal presetn : std_logic := '0';
  signal psel, penable, pwrite : std_logic := '0';
  signal paddr   : std_logic_vector(7 downto 0) := (others => '0');
  signal pwdata  : word_t := (others => '0');
  signal prdata  : word_t;
  signal pready, pslverr : std_logic;

  -- By the number of a register, right-aligned.
  signal inputs  : words_t(0 to LAST) := (others => (others => '0')); -- values to read, and bits to set
  signal outputs : words_t(0 to LAST);

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

  -- The word with all bits from 'width' on cleared.
  function cut(word : word_t; width : positive) return word_t is
    variable result : word_t := (others => '0');
  begin
    result(width - 1 downto 0) := word(width - 1 downto 0);
    return result;
  end function cut;

begin

  dut : entity work.register_bank
    port map (
      pclk    => pclk,
      presetn => presetn,
      psel    => psel,
      penable => penable,
      pwrite  => pwrite,
      paddr   => paddr,
      pwdata  => pwdata,
      prdata  => prdata,
      pready  => pready,
      pslverr => pslverr,
      -- begin connections
      control_out   => outputs(0)(7 downto 0),
      status_in     => inputs(1)(15 downto 0),
      events_set    => inputs(2)(3 downto 0),
      events_out    => outputs(2)(3 downto 0),
      command_pulse => outputs(3)(1 downto 0)
      -- end connections
    );

  pclk <= not pclk after 5 ns when not finished else '0';

  -- At each rising edge this process compares the outputs that the edge sees, then follows what its inputs lead to.
  model : process
    variable values     : words_t(0 to LAST); -- of the outputs
    variable answer     : word_t;             -- to the access whose setup cycle was seen
    variable is_access  : boolean := false;   -- that cycle was the one before
    variable is_refused : boolean := false;
    variable number     : natural;
    variable exists     : boolean;
    variable checks     : natural := 0;

    procedure compare(name : string; found, expected : std_logic_vector) is
    begin
      checks := checks + 1;
      assert found = expected
        report "register_bank_tb: at " & integer'image(now / 1 ns) & " ns " & name & " is " & text(found) & ", expected "
               & text(expected)
        severity failure;
    end procedure compare;

    procedure reset_values is
    begin
      is_access  := false;
      is_refused := false;
      for i in REGISTERS'range loop
        values(i) := REGISTERS(i).reset_value;
      end loop;
    end procedure reset_values;

    procedure compare_outputs is
    begin
      compare("pready", (0 => pready), (0 => '1'));
      compare("pslverr", (0 => pslverr), (0 => level(is_access and is_refused)));
      if is_access and psel = '1' and pwrite = '0' then
        compare("prdata", prdata, answer);
      end if;
      for i in REGISTERS'range loop
        if REGISTERS(i).access_kind /= RO then
          compare("output of register " & integer'image(i), outputs(i)(REGISTERS(i).width - 1 downto 0),
                  values(i)(REGISTERS(i).width - 1 downto 0));
        end if;
      end loop;
    end procedure compare_outputs;

    -- What the registers do at every edge, and at the one that ends the access cycle of a write.
    procedure follow_register(i : natural; is_written : boolean) is
      variable value : word_t;
    begin
      value := values(i);
      case REGISTERS(i).access_kind is
        when RW =>
          if is_written then
            value := pwdata;
          end if;
        when W1C =>
          if is_written then
            value := value and not pwdata;
          end if;
          value := value or inputs(i);
        when PULSE =>
          value := (others => '0');
          if is_written then
            value := pwdata;
          end if;
        when RO =>
          null;
      end case;
      values(i) := cut(value, REGISTERS(i).width);
    end procedure follow_register;

    procedure look_for_answer is
    begin
      number     := to_integer(unsigned(paddr)) / 4;
      exists     := number <= LAST and paddr(1 downto 0) = "00";
      answer     := (others => '0');
      is_refused := not exists;
      if exists then
        case REGISTERS(number).access_kind is
          when RW | W1C => answer := values(number);
          when PULSE    => null;
          when RO       =>
            answer     := cut(inputs(number), REGISTERS(number).width);
            is_refused := pwrite = '1';
        end case;
      end if;
    end procedure look_for_answer;

  begin
    while not finished loop
      wait until rising_edge(pclk) or finished;
      exit when finished;
      if presetn = '0' then
        reset_values;
      end if;
      compare_outputs;
      if presetn = '1' then
        if psel = '1' and penable = '0' then
          look_for_answer;
        end if;
        for i in REGISTERS'range loop
          follow_register(i, is_access and psel = '1' and penable = '1' and pwrite = '1' and not is_refused and number = i);
        end loop;
        is_access := psel = '1' and penable = '0';
      end if;
    end loop;
    report "register_bank_tb: PASSED (" & integer'image(checks) & " checks)";
    wait;
  end process model;

  -- Accesses to all addresses, to other slaves of the bus and none, with resets between them. Inputs change at falling edges.
  stimulus : process
    variable seed : positive := 1;

    impure function random(limit : positive) return natural is
    begin
      seed := following(seed);
      return seed / 8 mod limit;
    end function random;

    impure function random_word return word_t is
      variable word : word_t;
    begin
      case random(8) is
        when 0      => word := (others => '0');
        when 1      => word := (others => '1');
        when others => word := std_logic_vector(to_unsigned(random(65536), 16)) & std_logic_vector(to_unsigned(random(65536), 16));
      end case;
      return word;
    end function random_word;

    procedure pass_clock is
    begin
      for i in REGISTERS'range loop
        if REGISTERS(i).access_kind = RO or random(4) = 0 then
          inputs(i) <= random_word and random_word;
        elsif random(2) = 0 then
          inputs(i) <= (others => '0');
        end if;
      end loop;
      wait until falling_edge(pclk);
    end procedure pass_clock;

    procedure access_register(address : natural; is_write : boolean) is
    begin
      psel    <= '1';
      penable <= '0';
      pwrite  <= level(is_write);
      paddr   <= std_logic_vector(to_unsigned(address, 8));
      pwdata  <= random_word;
      pass_clock;
      penable <= '1';
      pass_clock;
      psel    <= '0';
      penable <= '0';
    end procedure access_register;

    -- Cycles of another slave: everything but psel is as in an access of this one.
    procedure pass_others(address : natural) is
    begin
      paddr <= std_logic_vector(to_unsigned(address, 8));
      for i in 1 to random(3) loop
        pwrite  <= level(random(4) > 0);
        pwdata  <= random_word;
        penable <= '0';
        pass_clock;
        penable <= '1';
        pass_clock;
      end loop;
      penable <= '0';
    end procedure pass_others;

    impure function some_address return natural is
    begin
      case random(16) is
        when 0      => return random(256);
        when 1      => return 4 * (random(LAST + 1) + 32) mod 256;
        when 2      => return (4 * (LAST + 1)) mod 256;
        when 3      => return 4 * random(LAST + 1) + 1 + random(3);
        when others => return 4 * random(LAST + 1);
      end case;
    end function some_address;

    procedure reset_clocks(count : positive) is
    begin
      presetn <= '0';
      for i in 1 to count loop
        pass_clock;
      end loop;
      presetn <= '1';
    end procedure reset_clocks;

  begin
    reset_clocks(3);
    for i in 0 to 255 loop -- after the reset, all of it
      access_register(i, false);
    end loop;
    for i in 0 to 255 loop
      access_register(i, true);
      access_register(i, false);
    end loop;
    for turn in 1 to 100 * (LAST + 1) + 2000 loop
      access_register(some_address, random(2) = 0);
      case random(8) is
        when 0      => pass_others(some_address);
        when 1      =>
          for i in 1 to random(4) loop
            pass_clock;
          end loop;
        when others => null; -- the next access follows at once
      end case;
      if random(64) = 0 then
        reset_clocks(1 + random(3));
      end if;
    end loop;
    finished <= true;
    wait;
  end process stimulus;

end architecture bench;
