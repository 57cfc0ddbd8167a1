library ieee;
use ieee.std_logic_1164.all;
use ieee.numeric_std.all;

entity probe_tb is
end entity probe_tb;

architecture bench of probe_tb is

  constant INPUT_LINES   : positive := 8;
  constant TRIGGER_LINES : positive := 3;
  constant DEPTH         : positive := 2048; -- samples in the memory
  constant ADDRESS_BITS  : positive := 11;
  constant SAMPLE_BITS   : positive := 9;
  constant DATA_DELAY    : natural  := 0;    -- clocks by which data_in is older than trig_in in a sample

  -- Each window holds the sample of its trigger, those in front of it and those behind it.
  constant WINDOWS         : positive := 1;
  constant SAMPLES_BEFORE  : natural  := 1024;
  constant SAMPLES_BEHIND  : natural  := 1023;
  constant SAMPLES_TO_FILL : natural  := 1024; -- from the start on, before a trigger counts

  -- What line i has to show, at i + 1: 0, 1, R (rising edge), F (falling edge), B (one of both) or - (ignored).
  constant TRIGGER_VALUES     : string(1 to TRIGGER_LINES) := "1-0";
  constant FIRST_LEVEL_VALUES : string(1 to TRIGGER_LINES) := "---";
  constant HAS_FIRST_LEVEL    : boolean := false;

  constant CAPTURES : positive := 2 + 36000 / (DEPTH + 500);

  subtype lines_t is std_logic_vector(TRIGGER_LINES - 1 downto 0);
  subtype address_t is std_logic_vector(ADDRESS_BITS - 1 downto 0);

  signal clk     : std_logic := '0';
  signal reset   : std_logic := '1';
  signal data_in : std_logic_vector(INPUT_LINES - 1 downto 0) := (others => '0');
  signal trig_in : lines_t   := (others => '0');
  -- begin own signals
  signal arm, force_trigger : std_logic := '0';
  signal window_count       : address_t;
  -- end own signals
  signal busy, triggered, done : std_logic;
  signal rd_addr : address_t := (others => '0');
  signal rd_data : std_logic_vector(SAMPLE_BITS - 1 downto 0);

  signal is_busy  : boolean := false; -- what busy has to be at the next rising edge
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

  function random_bits(count : positive) return std_logic_vector is
    variable bits   : std_logic_vector(0 to count - 1);
    variable number : positive := 1;
  begin
    for i in bits'range loop
      number  := following(number);
      bits(i) := level(number / 65536 mod 2 = 1);
    end loop;
    return bits;
  end function random_bits;

  constant NOISE : std_logic_vector(0 to 4095) := random_bits(4096);

  function text(value : std_logic_vector) return string is
    alias    bits   : std_logic_vector(1 to value'length) is value;
    variable result : string(1 to value'length);
  begin
    for i in bits'range loop
      result(i) := std_logic'image(bits(i))(2);
    end loop;
    return result;
  end function text;

  -- Whether all lines show their values; 'before' are the lines at the clock before.
  function holds(values : string; before, now : lines_t) return boolean is
    variable shows : boolean := true;
  begin
    for i in now'range loop
      case values(i + 1) is
        when '0'    => shows := shows and now(i) = '0';
        when '1'    => shows := shows and now(i) = '1';
        when 'R'    => shows := shows and before(i) = '0' and now(i) = '1';
        when 'F'    => shows := shows and before(i) = '1' and now(i) = '0';
        when 'B'    => shows := shows and before(i) /= now(i);
        when others => null;
      end case;
    end loop;
    return shows;
  end function holds;

begin

  dut : entity work.probe
    port map (
      clk           => clk,
      reset         => reset,
      data_in       => data_in,
      trig_in       => trig_in,
      -- begin own ports
      arm           => arm,
      force_trigger => force_trigger,
      window_count  => window_count,
      -- end own ports
      busy          => busy,
      triggered     => triggered,
      done          => done,
      rd_addr       => rd_addr,
      rd_data       => rd_data
    );

  clk <= not clk after 5 ns when not finished else '0';

  -- At each rising edge this process compares the outputs that the edge sees, then follows what its inputs lead to.
  model : process
    type memory_t is array (0 to DEPTH - 1) of std_logic_vector(rd_data'range);
    type data_t is array (0 to 2) of std_logic_vector(data_in'range);
    type addresses_t is array (1 to 2) of natural;
    type flags_t is array (0 to 3) of boolean;
    type status_t is record
      is_triggered, is_done : boolean;
      windows               : natural; -- complete ones
    end record;
    constant NOTHING_YET : status_t := (false, false, 0);

    variable checks : natural := 0;

    -- What was sampled: data_in now and at the clocks before, trig_in at the clock before.
    variable data        : data_t;
    variable trig_before : lines_t;

    -- The capture. Its memory is a ring, in which the sample with the address 0 has the place 'oldest'.
    variable is_capturing  : boolean := false;  -- the sample of this edge takes part
    variable is_waiting    : boolean;           -- for a trigger
    variable is_first_seen : boolean;           -- the first level came
    variable is_trigger    : boolean;           -- the sample of this edge
    variable taken, behind : natural;           -- samples from the start on, and from the trigger on
    variable memory        : memory_t;
    variable place, oldest : natural range 0 to DEPTH - 1;
    -- begin own state
    variable is_armed : boolean;
    -- end own state

    -- What the inputs led to, what the outputs show one clock later, and what they show now.
    variable status, soon, shown : status_t := NOTHING_YET;
    variable shows_busy          : boolean  := false;

    -- The last clocks: addresses, whether their samples can be read, and whether a sample was put into the memory.
    variable asked         : addresses_t := (0, 0);
    variable has_answer    : flags_t := (others => false);
    variable was_done      : boolean := false;
    variable was_kept      : flags_t := (others => false);
    variable answer_before : std_logic_vector(rd_data'range);

    procedure compare(name : string; found, expected : std_logic_vector) is
    begin
      checks := checks + 1;
      assert found = expected
        report "probe_tb: at " & integer'image(now / 1 ns) & " ns " & name & " is " & text(found) & ", expected "
               & text(expected)
        severity failure;
    end procedure compare;

    procedure compare_outputs is
    begin
      compare("busy", (0 => busy), (0 => level(shows_busy)));
      compare("triggered", (0 => triggered), (0 => level(shown.is_triggered)));
      compare("done", (0 => done), (0 => level(shown.is_done)));
      -- begin own output
      compare("window_count", window_count, std_logic_vector(to_unsigned(shown.windows, ADDRESS_BITS)));
      -- end own output
      if has_answer(2) and shown.is_done then
        compare("rd_data of address " & integer'image(asked(2)), rd_data, memory((oldest + asked(2)) mod DEPTH));
      elsif was_kept(3) then
        compare("rd_data at rest", rd_data, answer_before);
      end if;
      answer_before := rd_data;
    end procedure compare_outputs;

    procedure forget_capture is
    begin
      is_capturing := false;
      shows_busy   := false;
      status       := NOTHING_YET;
      soon         := NOTHING_YET;
      shown        := NOTHING_YET;
      was_kept     := (others => false);
    end procedure forget_capture;

    procedure start_capture is
    begin
      forget_capture;
      is_capturing  := true;
      is_waiting    := true;
      is_first_seen := false;
      shows_busy    := true;
      taken         := 0;
      place         := 0;
    end procedure start_capture;

    procedure take_sample is
    begin
      is_trigger := false;
      if is_waiting and taken >= SAMPLES_TO_FILL then
        -- begin forced
        is_trigger := force_trigger = '1';
        -- end forced
        if is_first_seen or not HAS_FIRST_LEVEL then
          is_trigger := is_trigger or holds(TRIGGER_VALUES, trig_before, trig_in);
        else
          is_first_seen := holds(FIRST_LEVEL_VALUES, trig_before, trig_in);
        end if;
      end if;
      if is_trigger then
        is_waiting          := false;
        status.is_triggered := true;
        behind              := 0;
        if status.windows = 0 then
          oldest := (place + DEPTH - SAMPLES_BEFORE) mod DEPTH;
        end if;
        -- begin own trigger
        -- end own trigger
      end if;
      if not is_waiting or SAMPLES_BEFORE > 0 then
        -- begin sample
        memory(place) := level(is_trigger) & data(DATA_DELAY);
        -- end sample
        place       := (place + 1) mod DEPTH;
        was_kept(0) := true;
      end if;
      if not is_waiting and behind = SAMPLES_BEHIND then
        is_waiting     := true;
        is_first_seen  := false;
        status.windows := status.windows + 1;
        status.is_done := status.windows = WINDOWS;
        is_capturing   := not status.is_done;
      end if;
      taken  := taken + 1;
      behind := behind + 1;
    end procedure take_sample;

  begin
    while not finished loop
      wait until rising_edge(clk) or finished;
      exit when finished;
      if now > 10 ns then -- one clock of reset
        compare_outputs;
      end if;

      asked(2)      := asked(1);
      asked(1)      := to_integer(unsigned(rd_addr));
      has_answer(2) := has_answer(1);
      -- begin readable
      has_answer(1) := was_done and shown.is_done and asked(1) < WINDOWS * (SAMPLES_BEFORE + 1 + SAMPLES_BEHIND);
      -- end readable
      was_done := shown.is_done;
      was_kept := false & was_kept(0 to 2);
      data     := data_in & data(0 to 1);

      -- begin starting
      is_armed := arm = '1' and not shows_busy;
      -- end starting
      shown      := soon;
      soon       := status;
      shows_busy := shows_busy and not shown.is_done;
      if reset = '1' then
        forget_capture;
      -- begin armed
      elsif is_armed then
        start_capture; -- with the sample of the next edge
      -- end armed
      elsif is_capturing then
        take_sample;
      end if;

      trig_before := trig_in;
      is_busy     <= shows_busy;
    end loop;
    report "probe_tb: PASSED (" & integer'image(checks) & " checks)";
    wait;
  end process model;

  -- The inputs change at falling edges.
  stimulus : process
    variable seed           : positive := 1;
    variable starts, resets : boolean  := false;
    variable age            : natural  := 0;     -- clocks since the start
    variable calm           : natural  := 0;     -- clocks from the start on in which trig_in gives no trigger
    variable is_second      : boolean  := false; -- of the two clocks of an edge
    variable wants_first    : boolean  := false; -- the lines are to show the first level, not the trigger
    variable flaw           : natural  := 0;     -- 1, 2: a line is wrong at the first, second clock; above 3 all may be

    impure function random(limit : positive) return natural is
    begin
      seed := following(seed);
      return seed mod limit;
    end function random;

    impure function random_vector(width : positive) return std_logic_vector is
      variable start : natural;
    begin
      start := random(NOISE'length - width);
      return NOISE(start to start + width - 1);
    end function random_vector;

    -- The values, of edges that of the first or second clock; ignored lines are as in 'rest'.
    impure function fitting(values : string; rest : lines_t) return lines_t is
      variable lines : lines_t := rest;
    begin
      for i in lines'range loop
        case values(i + 1) is
          when '0'    => lines(i) := '0';
          when '1'    => lines(i) := '1';
          when 'R'    => lines(i) := level(is_second);
          when 'F'    => lines(i) := level(not is_second);
          when 'B'    => lines(i) := not trig_in(i);
          when others => null;
        end case;
      end loop;
      return lines;
    end function fitting;

    -- The lines with one changed: where there is one, one that the trigger does not ignore.
    impure function spoilt(lines : lines_t) return lines_t is
      variable result  : lines_t := lines;
      variable changed : natural;
    begin
      changed := random(TRIGGER_LINES);
      for i in 1 to TRIGGER_LINES loop
        exit when TRIGGER_VALUES(changed + 1) /= '-';
        changed := (changed + 1) mod TRIGGER_LINES;
      end loop;
      result(changed) := not result(changed);
      return result;
    end function spoilt;

    impure function next_lines return lines_t is
      variable rest, lines : lines_t;
    begin
      rest := random_vector(TRIGGER_LINES);
      is_second := not is_second or age < calm;
      if age < calm then
        lines := fitting(FIRST_LEVEL_VALUES, rest);
        if random(2) = 0 or holds(TRIGGER_VALUES, trig_in, lines) then
          lines := spoilt(fitting(TRIGGER_VALUES, rest));
        end if;
        return lines;
      end if;
      if not is_second then
        wants_first := HAS_FIRST_LEVEL and random(3) = 0;
        flaw        := random(6);
      end if;
      lines := fitting(FIRST_LEVEL_VALUES, rest);
      if not wants_first and random(2) = 0 then
        lines := fitting(TRIGGER_VALUES, lines); -- both, if they do not contradict each other
      elsif not wants_first then
        lines := fitting(TRIGGER_VALUES, rest);
      end if;
      if flaw > 3 then
        return rest;
      elsif (flaw = 1 and not is_second) or (flaw = 2 and is_second) then
        return spoilt(lines);
      end if;
      return lines;
    end function next_lines;

    procedure pass_clock(address : natural) is
    begin
      reset   <= level(resets);
      rd_addr <= std_logic_vector(to_unsigned(address, ADDRESS_BITS));
      trig_in <= next_lines;
      case random(16) is
        when 0      => data_in <= (data_in'range => '0');
        when 1      => data_in <= (data_in'range => '1');
        when others => data_in <= random_vector(INPUT_LINES);
      end case;
      -- begin own inputs
      arm           <= level(starts or ((resets or is_busy) and random(4) = 0)); -- in vain, unless it starts
      force_trigger <= level((age <= SAMPLES_TO_FILL or age >= calm) and random(16) = 0);
      -- end own inputs
      wait until falling_edge(clk);
      age := age + 1;
    end procedure pass_clock;

    procedure pass_clocks(count : natural) is
    begin
      for i in 1 to count loop
        pass_clock(random(DEPTH));
      end loop;
    end procedure pass_clocks;

    procedure reset_clocks(count : natural) is
    begin
      resets := true;
      pass_clocks(count);
      resets := false;
    end procedure reset_clocks;

    procedure start(calm_clocks : natural) is
    begin
      -- begin start
      starts := true;
      -- end start
      age    := 0;
      calm   := calm_clocks;
      pass_clock(0);
      starts := false;
    end procedure start;

  begin
    reset_clocks(4);
    for number in 1 to CAPTURES loop
      for attempt in 1 to random(4) loop -- that a reset ends
        start(random(3) * SAMPLES_TO_FILL + random(2) * random(40));
        pass_clocks(random(2) * SAMPLES_TO_FILL + random(60));
        reset_clocks(1 + random(3));
        pass_clocks(random(4));
      end loop;
      case number mod 4 is
        when 0      => start(0);
        when 1      => start(SAMPLES_TO_FILL + random(8));
        when 2      => start(DEPTH / 2 + random(DEPTH));
        when others => start(random(2 * SAMPLES_BEFORE + 4));
      end case;
      while is_busy loop
        pass_clocks(1);
      end loop;
      if random(4) > 0 then
        pass_clocks(1);
        for address in 0 to DEPTH - 1 loop
          pass_clock(address);
        end loop;
        pass_clocks(100);
      end if;
      if random(2) = 0 then
        reset_clocks(1 + random(3));
        pass_clocks(random(4));
      end if;
    end loop;
    finished <= true;
    wait;
  end process stimulus;

end architecture bench;
