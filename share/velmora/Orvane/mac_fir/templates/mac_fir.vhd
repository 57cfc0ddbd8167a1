library ieee;
use ieee.std_logic_1164.all;
use ieee.numeric_std.all;

entity mac_fir is
  port (
    -- begin ports
    clk        : in  std_logic;
    rst        : in  std_logic;                     -- synchronous, active high
    din_valid  : in  std_logic;                     -- din holds a sample
    din_ready  : out std_logic;                     -- a sample is taken while din_valid is 1
    din        : in  std_logic_vector(11 downto 0); -- sample, signed
    dout_valid : out std_logic;                     -- dout holds a result
    dout       : out std_logic_vector(9 downto 0);  -- result, signed
    clk_aux1   : out std_logic                      -- auxiliary clock
    -- end ports
  );
end entity mac_fir;

-- Each unit multiplies and accumulates STEP_COUNT taps, one per clock; a tree of adders then sums up the units.
--
--   din -> arriving(0) -> memory of unit 0 -+-> arriving(1) -> memory of unit 1 -+-> ...
--                                           |                                    |
--                                      multiplier                           multiplier
--                                           |                                    |
--                                      accumulator                          accumulator
--                                           |                                    |
--                                           +------------ adder tree ------------+- ... -> output stage -> dout
--
-- The memories are circular, and each is read from its oldest sample to its newest. The oldest one goes on to the next
-- unit when another sample has come, which then takes its place. Words and coefficients pass two registers on their way
-- to a multiplier: that of the memory and that of the operand, so that a clock holds either the memory or the product.
architecture rtl of mac_fir is

  constant INPUT_WIDTH       : positive := 12;
  constant OUTPUT_WIDTH      : positive := 10;
  constant COEFFICIENT_WIDTH : positive := 10;
  constant STEP_COUNT        : positive := 4;
  constant UNIT_COUNT        : positive := 3;
  constant TREE_LEVELS       : natural  := 2;
  constant TRUNCATED_BITS    : natural  := 9;
  constant PRODUCT_WIDTH     : positive := INPUT_WIDTH + COEFFICIENT_WIDTH;
  constant SUM_WIDTH         : positive := 22; -- holds what the output stage needs
  constant FULL_WIDTH        : positive := 22; -- of the total, extended to the output's highest bit
  constant AUX_PATTERN       : std_logic_vector(15 downto 0) := "1000000000000000";

  constant LAST_STEP  : natural := STEP_COUNT - 1;
  constant OUTPUT_MSB : natural := TRUNCATED_BITS + OUTPUT_WIDTH - 1;

  type sample_list_t is array (natural range <>) of signed(INPUT_WIDTH - 1 downto 0);
  type coefficient_list_t is array (natural range <>) of signed(COEFFICIENT_WIDTH - 1 downto 0);
  type product_list_t is array (0 to UNIT_COUNT - 1) of signed(PRODUCT_WIDTH - 1 downto 0);
  type sum_list_t is array (natural range <>) of signed(SUM_WIDTH - 1 downto 0);

  -- The coefficients of a unit by step.
  type coefficient_table_t is array (0 to UNIT_COUNT - 1) of coefficient_list_t(0 to LAST_STEP);

  -- begin coefficients
  constant coefficients : coefficient_table_t := (
    0 => (
      0 => "0000000101", -- tap 0: 5
      1 => "1111110001", -- tap 1: -15
      2 => "1111100010", -- tap 2: -30
      3 => "0001101110"  -- tap 3: 110
    ),
    1 => (
      0 => "0101001010", -- tap 4: 330
      1 => "0101001010", -- tap 5: 330
      2 => "0001101110", -- tap 6: 110
      3 => "1111100010"  -- tap 7: -30
    ),
    2 => (
      0 => "1111110001", -- tap 8: -15
      1 => "0000000101", -- tap 9: 5
      2 => "0000000000", -- no tap
      3 => "0000000000"  -- no tap
    )
  );
  -- end coefficients

  -- Control. After a reset, clearing writes zeros to the memories. The step of a sample is the tap, counted within each
  -- unit, so it runs from LAST_STEP to 0, where it waits.
  signal clearing : std_logic                    := '1';
  signal ready    : std_logic                    := '0';
  signal step     : natural range 0 to LAST_STEP := LAST_STEP;
  signal accept   : std_logic;
  signal store    : std_logic;
  signal place    : natural range 0 to LAST_STEP := 0; -- of the oldest sample, where the next one goes
  signal address  : natural range 0 to LAST_STEP := 0; -- of the sample to read

  -- Goes with the first step of a sample, its words, operands and products.
  signal first : std_logic_vector(0 to 3) := "0000";

  -- Goes with the last step of a sample, its words, operands and products, the unit sums, the levels of the tree and the
  -- result.
  signal last : std_logic_vector(0 to TREE_LEVELS + 5) := (others => '0');

  signal arriving          : sample_list_t(0 to UNIT_COUNT - 1)      := (others => (others => '0'));
  signal sample_words      : sample_list_t(0 to UNIT_COUNT - 1)      := (others => (others => '0'));
  signal coefficient_words : coefficient_list_t(0 to UNIT_COUNT - 1) := (others => (others => '0'));
  signal samples           : sample_list_t(0 to UNIT_COUNT - 1)      := (others => (others => '0'));
  signal factors           : coefficient_list_t(0 to UNIT_COUNT - 1) := (others => (others => '0'));
  signal products          : product_list_t                          := (others => (others => '0'));
  signal unit_sums         : sum_list_t(0 to UNIT_COUNT - 1)         := (others => (others => '0'));
  signal total             : signed(FULL_WIDTH - 1 downto 0);
  signal result            : signed(OUTPUT_WIDTH - 1 downto 0)     := (others => '0');

  -- begin tree signals
  signal level_1 : sum_list_t(0 to 1) := (others => (others => '0'));
  signal level_2 : sum_list_t(0 to 0) := (others => (others => '0'));
  -- end tree signals

  signal pattern : std_logic_vector(15 downto 0) := AUX_PATTERN;

  -- The place behind another one in the circle.
  function behind(word : natural) return natural is
  begin
    if word = LAST_STEP then
      return 0;
    end if;
    return word + 1;
  end function behind;

begin

  accept <= din_valid and ready;
  store  <= first(0) or clearing;

  -- A sample is accepted when idle or at the last step of the one before.
  control : process (clk)
  begin
    if rising_edge(clk) then
      if rst = '1' then
        clearing <= '1';
        ready    <= '0';
        step     <= LAST_STEP;
      elsif accept = '1' then
        ready <= '0';
        step  <= LAST_STEP;
      elsif step = 0 then
        clearing <= '0';
        ready    <= '1';
      else
        if step = 1 then
          ready <= not clearing;
        end if;
        step <= step - 1;
      end if;
    end if;
  end process control;

  addresses : process (clk)
  begin
    if rising_edge(clk) then
      if accept = '1' then
        address <= behind(place);
      else
        address <= behind(address);
      end if;
      if store = '1' then
        place <= behind(place);
      end if;
    end if;
  end process addresses;

  flags : process (clk)
  begin
    if rising_edge(clk) then
      if rst = '1' then
        first <= "0000";
        last  <= (others => '0');
      else
        first <= accept & first(0 to 2);
        last  <= '0' & last(0 to TREE_LEVELS + 4);
        if step = 1 then
          last(0) <= not clearing;
        end if;
      end if;
    end if;
  end process flags;

  arrival : process (clk)
  begin
    if rising_edge(clk) then
      arriving(0) <= signed(din);
      if rst = '1' or clearing = '1' then
        arriving(0) <= (others => '0');
      end if;
      for unit in 1 to UNIT_COUNT - 1 loop
        if rst = '1' then
          arriving(unit) <= (others => '0');
        elsif first(1) = '1' then
          arriving(unit) <= sample_words(unit - 1);
        end if;
      end loop;
    end if;
  end process arrival;

  mac_units : for unit in 0 to UNIT_COUNT - 1 generate
    constant own_coefficients : coefficient_list_t(0 to LAST_STEP) := coefficients(unit);

    signal memory : sample_list_t(0 to LAST_STEP) := (others => (others => '0'));
  begin

    -- Nothing reads the word that is written, so the memory needs no rule for that.
    memories : process (clk)
    begin
      if rising_edge(clk) then
        if store = '1' then
          memory(place) <= arriving(unit);
        end if;
        if clearing = '0' then
          sample_words(unit) <= memory(address);
          if store = '1' and address = place then
            sample_words(unit) <= (others => 'X');
          end if;
        end if;
        coefficient_words(unit) <= own_coefficients(step);
      end if;
    end process memories;

    multiply_accumulate : process (clk)
    begin
      if rising_edge(clk) then
        samples(unit)  <= sample_words(unit);
        factors(unit)  <= coefficient_words(unit);
        products(unit) <= samples(unit) * factors(unit);
        if first(3) = '1' then
          unit_sums(unit) <= resize(products(unit), SUM_WIDTH);
        else
          unit_sums(unit) <= unit_sums(unit) + products(unit);
        end if;
      end if;
    end process multiply_accumulate;

  end generate mac_units;

  -- begin adder tree
  adder_tree : process (clk)
  begin
    if rising_edge(clk) then
      level_1(0) <= unit_sums(0) + unit_sums(1);
      level_1(1) <= unit_sums(2);
      level_2(0) <= level_1(0) + level_1(1);
    end if;
  end process adder_tree;

  total <= resize(level_2(0), FULL_WIDTH);
  -- end adder tree

  -- begin output stage
  -- The result is limited where the bits from its sign on are not all equal.
  output_stage : process (clk)
    variable upper : signed(FULL_WIDTH - 1 downto OUTPUT_MSB);
  begin
    if rising_edge(clk) then
      upper := total(FULL_WIDTH - 1 downto OUTPUT_MSB);
      if upper = 0 or upper = -1 then
        result <= total(OUTPUT_MSB downto TRUNCATED_BITS);
      elsif total(FULL_WIDTH - 1) = '1' then
        result <= (OUTPUT_WIDTH - 1 => '1', others => '0');
      else
        result <= (OUTPUT_WIDTH - 1 => '0', others => '1');
      end if;
    end if;
  end process output_stage;
  -- end output stage

  -- The pattern goes round for ever, leftmost bit first; the output comes straight from a register.
  auxiliary_clock : process (clk)
  begin
    if rising_edge(clk) then
      if rst = '1' then
        pattern <= AUX_PATTERN;
      else
        pattern <= pattern(14 downto 0) & pattern(15);
      end if;
    end if;
  end process auxiliary_clock;

  din_ready  <= ready;
  dout       <= std_logic_vector(result);
  dout_valid <= last(TREE_LEVELS + 5);
  clk_aux1   <= pattern(15);

end architecture rtl;
