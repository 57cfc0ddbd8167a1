-- Compares the filter with a model of it at every clock. Simulate default_fir_tb: it reports PASSED at its end, or stops with a
-- failure at the first difference.

library ieee;
use ieee.math_real.all;
use ieee.numeric_std.all;
use ieee.std_logic_1164.all;

entity default_fir_tb is
end entity default_fir_tb;

architecture test of default_fir_tb is

  constant INPUT_WIDTH       : positive := 12;
  constant OUTPUT_WIDTH      : positive := 14;
  constant COEFFICIENT_WIDTH : positive := 10;
  constant TRUNCATED_BITS    : natural  := 6;
  constant TAP_COUNT         : positive := 4;
  constant SUM_WIDTH         : positive := 24;  -- holds every sum and every result
  constant LATENCY           : positive := 3;  -- clocks from a sample to its result
  constant ROUND_COUNT       : positive := 8;  -- repetitions of the stimulus
  -- begin handshake
  constant CLOCKS_PER_SAMPLE : positive := 4;
  constant CLEARING_CLOCKS   : natural  := 4;  -- in which no sample is taken, after a reset
  -- end handshake
  -- begin channels
  constant CHANNEL_COUNT     : positive := 2;
  -- end channels

  subtype sample is signed(INPUT_WIDTH - 1 downto 0);
  subtype coefficient is signed(COEFFICIENT_WIDTH - 1 downto 0);
  subtype result is std_logic_vector(OUTPUT_WIDTH - 1 downto 0);
  -- begin single channel
  type sample_list is array (0 to TAP_COUNT - 1) of sample;
  -- end single channel
  -- begin channels
  type sample_list is array (0 to CHANNEL_COUNT * TAP_COUNT - 1) of sample;
  -- end channels
  type coefficient_list is array (0 to TAP_COUNT - 1) of coefficient;

  constant ZERO    : sample := (others => '0');
  constant LOWEST  : sample := (INPUT_WIDTH - 1 => '1', others => '0');
  constant HIGHEST : sample := not LOWEST;

  -- The result for the newest sample, x(0), and those before it.
  -- begin channels
  -- Every second one is of the same channel.
  -- end channels
  function filtered(h : coefficient_list; x : sample_list) return result is
    variable sum : signed(SUM_WIDTH - 1 downto 0) := (others => '0');
  begin
    for k in h'range loop
      -- begin single channel
      sum := sum + x(k) * h(k);
      -- end single channel
      -- begin channels
      sum := sum + x(CHANNEL_COUNT * k) * h(k);
      -- end channels
    end loop;
    sum := shift_right(sum, TRUNCATED_BITS);  -- rounds down
    -- begin saturation
    -- A value that the output cannot show becomes the limit that it passes.
    if sum > 2**(OUTPUT_WIDTH - 1) - 1 then
      sum := to_signed(2**(OUTPUT_WIDTH - 1) - 1, SUM_WIDTH);
    elsif sum < -2**(OUTPUT_WIDTH - 1) then
      sum := to_signed(-2**(OUTPUT_WIDTH - 1), SUM_WIDTH);
    end if;
    -- end saturation
    return std_logic_vector(sum(OUTPUT_WIDTH - 1 downto 0));
  end function filtered;

  -- begin constant coefficients
  -- What a literal stands for: its low bits, or its digits with zeros in front.
  function used(digits : std_logic_vector) return coefficient is
  begin
    return signed(resize(unsigned(digits), COEFFICIENT_WIDTH));
  end function used;

  -- begin coefficient list
  constant h : coefficient_list := (others => used(x"02d"));
  -- end coefficient list
  -- end constant coefficients
  -- begin coefficient port
  constant PORT_WIDTH : positive := 40;

  signal coefs : std_logic_vector(PORT_WIDTH - 1 downto 0) := (others => '0');
  signal h     : coefficient_list;

  -- h[k] lies in the bits (k + 1) * COEFFICIENT_WIDTH - 1 down to k * COEFFICIENT_WIDTH of the port.
  -- begin half port
  -- They are the first half, and h[TAP_COUNT - 1 - k] = h[k].
  -- end half port
  function coefficients_of(bits : std_logic_vector(PORT_WIDTH - 1 downto 0)) return coefficient_list is
    variable values : coefficient_list;
  begin
    for k in 0 to PORT_WIDTH / COEFFICIENT_WIDTH - 1 loop
      values(k) := signed(bits((k + 1) * COEFFICIENT_WIDTH - 1 downto k * COEFFICIENT_WIDTH));
      -- begin half port
      values(TAP_COUNT - 1 - k) := values(k);
      -- end half port
    end loop;
    return values;
  end function coefficients_of;
  -- end coefficient port

  signal clk                   : std_logic := '0';
  signal rst                   : std_logic := '0';
  signal din_valid             : std_logic := '0';
  signal din                   : std_logic_vector(INPUT_WIDTH - 1 downto 0) := (others => '0');
  signal dout_valid            : std_logic;
  signal expected_dout_valid   : std_logic;
  signal dout                  : result;
  signal expected_dout         : result;
  -- begin handshake
  signal din_ready             : std_logic;
  signal expected_din_ready    : std_logic;
  -- end handshake
  -- begin auxiliary clock
  signal clk_aux1              : std_logic;
  signal expected_clk_aux1     : std_logic;
  -- end auxiliary clock
  -- begin channels
  signal din_channel           : std_logic;
  signal expected_din_channel  : std_logic;
  signal dout_channel          : std_logic;
  signal expected_dout_channel : std_logic;
  -- end channels

  signal check_count : natural := 0;
  signal is_done     : boolean := false;

begin

  device : entity work.default_fir
    port map (
      -- begin port map
      clk => clk
      -- end port map
    );

  -- begin coefficient port
  h <= coefficients_of(coefs);

  -- end coefficient port
  -- What the filter has to do.
  model : process (clk)
    type result_list is array (1 to LATENCY) of result;
    variable x        : sample_list := (others => ZERO);
    variable valid    : std_logic_vector(1 to LATENCY) := (others => '0');  -- results on their way, by their clocks
    variable results  : result_list;
    -- begin handshake
    variable busy     : natural := CLEARING_CLOCKS;  -- clocks until a sample is taken
    -- end handshake
    -- begin channels
    variable channel  : std_logic := '0';  -- of the next sample
    variable channels : std_logic_vector(1 to LATENCY);
    -- end channels
    -- begin auxiliary clock
    constant PATTERN  : std_logic_vector(0 to 15) := "1000000000000000";
    variable place    : natural range PATTERN'range := 0;
    -- end auxiliary clock
  begin
    if rising_edge(clk) then
      valid   := '0' & valid(1 to LATENCY - 1);
      results := results(1) & results(1 to LATENCY - 1);
      -- begin channels
      channels := channel & channels(1 to LATENCY - 1);
      -- end channels
      -- begin auxiliary clock
      place   := (place + 1) mod PATTERN'length;
      -- end auxiliary clock
      if rst = '1' then
        x     := (others => ZERO);
        valid := (others => '0');
        -- begin handshake
        busy  := CLEARING_CLOCKS;
        -- end handshake
        -- begin channels
        channel := '0';
        -- end channels
        -- begin auxiliary clock
        place := 0;
        -- end auxiliary clock
      -- begin handshake
      elsif busy > 0 then
        busy := busy - 1;
      -- end handshake
      elsif din_valid = '1' then
        x          := signed(din) & x(0 to x'high - 1);
        valid(1)   := '1';
        results(1) := filtered(h, x);
        -- begin handshake
        busy       := CLOCKS_PER_SAMPLE - 1;
        -- end handshake
        -- begin channels
        channel    := not channel;
        -- end channels
      end if;
    end if;
    expected_dout_valid   <= valid(LATENCY);
    expected_dout         <= results(LATENCY);
    -- begin handshake
    if busy = 0 then
      expected_din_ready  <= '1';
    else
      expected_din_ready  <= '0';
    end if;
    -- end handshake
    -- begin channels
    expected_din_channel  <= channel;
    expected_dout_channel <= channels(LATENCY);
    -- end channels
    -- begin auxiliary clock
    expected_clk_aux1     <= PATTERN(place);
    -- end auxiliary clock
  end process model;

  -- Compares the outputs with those of the model, just before each edge.
  check : process (clk)
    variable count : natural := 0;

    function image(bits : std_logic_vector) return string is
      alias digits  : std_logic_vector(1 to bits'length) is bits;
      variable text : string(1 to bits'length);
    begin
      for place in text'range loop
        text(place) := std_logic'image(digits(place))(2);
      end loop;
      return text;
    end function image;

    procedure compare(name : string; found, expected : std_logic_vector) is
    begin
      assert found = expected
        report "default_fir_tb: at " & integer'image(now / 1 ns) & " ns " & name & " is " & image(found)
          & ", expected " & image(expected)
        severity failure;
      count := count + 1;
    end procedure compare;

    procedure compare(name : string; found, expected : std_logic) is
    begin
      compare(name, std_logic_vector'(0 => found), std_logic_vector'(0 => expected));
    end procedure compare;
  begin
    if rising_edge(clk) then
      compare("dout_valid", dout_valid, expected_dout_valid);
      if expected_dout_valid = '1' then
        compare("dout", dout, expected_dout);
        -- begin channels
        compare("dout_channel", dout_channel, expected_dout_channel);
        -- end channels
      end if;
      -- begin handshake
      if rst = '0' then
        compare("din_ready", din_ready, expected_din_ready);
      end if;
      -- end handshake
      -- begin channels
      compare("din_channel", din_channel, expected_din_channel);
      -- end channels
      -- begin auxiliary clock
      compare("clk_aux1", clk_aux1, expected_clk_aux1);
      -- end auxiliary clock
    end if;
    check_count <= count;
  end process check;

  clock : process
  begin
    while not is_done loop
      wait for 5 ns;
      clk <= not clk;
    end loop;
    wait;
  end process clock;

  -- Inputs change 1 ns after an edge.
  stimulus : process
    variable seed_1 : positive := 20011;
    variable seed_2 : positive := 4711;
    variable shift  : natural;

    -- A number from 0 to limit - 1.
    impure function random(limit : positive) return natural is
      variable number : real;
    begin
      uniform(seed_1, seed_2, number);
      return integer(floor(number * real(limit)));
    end function random;

    -- One in four is a limit of the range.
    impure function random_number(width : positive) return signed is
    begin
      case random(8) is
        when 0      => return to_signed(-2**(width - 1), width);
        when 1      => return to_signed(2**(width - 1) - 1, width);
        when others => return to_signed(random(2**width) - 2**(width - 1), width);
      end case;
    end function random_number;

    -- The sample whose product with the coefficient is the highest or the lowest.
    function extreme(weight : coefficient; is_highest : boolean) return sample is
    begin
      if (weight < 0) = is_highest then
        return LOWEST;
      end if;
      return HIGHEST;
    end function extreme;

    procedure send(value : sample) is
    begin
      din_valid <= '1';
      din       <= std_logic_vector(value);
      -- begin handshake
      wait until rising_edge(clk) and din_ready = '1';
      -- end handshake
      -- begin no handshake
      wait until rising_edge(clk);
      -- end no handshake
      wait for 1 ns;
      din_valid <= '0';
    end procedure send;

    -- Lets clocks pass with a random "din", which "din_valid" makes a sample or none.
    procedure pass(clocks : natural) is
    begin
      for count in 1 to clocks loop
        din <= std_logic_vector(random_number(INPUT_WIDTH));
        wait until rising_edge(clk);
        wait for 1 ns;
      end loop;
    end procedure pass;

    -- Samples are offered meanwhile.
    procedure reset(clocks : positive) is
    begin
      rst       <= '1';
      din_valid <= '1';
      pass(clocks);
      rst       <= '0';
      din_valid <= '0';
    end procedure reset;
    -- begin coefficient port

    -- Sets the port, which then has to be stable for three clocks of the reset: all coefficients to their lowest value in the
    -- second round, to their highest in the third, else to random ones.
    procedure load(round : positive) is
      variable value : coefficient := (COEFFICIENT_WIDTH - 1 => '1', others => '0');
    begin
      if round = 3 then
        value := not value;
      end if;
      for index in 0 to PORT_WIDTH / COEFFICIENT_WIDTH - 1 loop
        if round /= 2 and round /= 3 then
          value := random_number(COEFFICIENT_WIDTH);
        end if;
        coefs((index + 1) * COEFFICIENT_WIDTH - 1 downto index * COEFFICIENT_WIDTH) <= std_logic_vector(value);
      end loop;
      reset(3);
    end procedure load;
    -- end coefficient port
  begin
    for round in 1 to ROUND_COUNT loop
      -- begin coefficient port
      load(round);
      -- end coefficient port
      -- The highest and the lowest sum.
      for k in TAP_COUNT - 1 downto 0 loop
        send(extreme(h(k), true));
        -- begin channels
        send(extreme(h(k), false));
        -- end channels
      end loop;
      for k in TAP_COUNT - 1 downto 0 loop
        send(extreme(h(k), false));
        -- begin channels
        send(extreme(h(k), true));
        -- end channels
      end loop;
      pass(LATENCY);

      -- The impulse response.
      reset(1);
      send(LOWEST);
      for count in sample_list'range loop
        send(ZERO);
      end loop;
      pass(LATENCY);

      -- Samples of all magnitudes, with gaps or without, and resets while they are on their way.
      for burst in 1 to 4 loop
        shift := random(INPUT_WIDTH);
        for count in 1 to 10 + random(40) loop
          send(shift_right(random_number(INPUT_WIDTH), shift));
          if burst > 2 then
            pass(random(4));
            if random(8) = 0 then
              pass(LATENCY);
            end if;
          end if;
        end loop;
        if burst > 2 then
          pass(random(LATENCY));
        end if;
        reset(1);
      end loop;
      pass(1);
      reset(1);
    end loop;

    pass(LATENCY + 2);
    is_done <= true;
    report "default_fir_tb: PASSED (" & integer'image(check_count) & " checks)";
    wait;
  end process stimulus;

end architecture test;
