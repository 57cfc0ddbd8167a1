library ieee;
use ieee.std_logic_1164.all;
use ieee.numeric_std.all;

entity mac_fir_parallel is
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
end entity mac_fir_parallel;

-- There is a multiplier for each tap, so a sample is taken at every clock; a tree of adders sums up the products.
--
--   din -> history(0) -------> history(1) -------> ...
--               |                   |
--          multiplier          multiplier
--               |                   |
--               +---- adder tree ---+-------- ... -> output stage -> dout
--
-- Operands, products and their copies in the width of the sums fill the three registers of a DSP slice.
architecture rtl of mac_fir_parallel is

  constant INPUT_WIDTH       : positive := 12;
  constant OUTPUT_WIDTH      : positive := 10;
  constant COEFFICIENT_WIDTH : positive := 10;
  constant UNIT_COUNT        : positive := 4;
  constant TREE_LEVELS       : natural  := 2;
  constant TRUNCATED_BITS    : natural  := 9;
  constant PRODUCT_WIDTH     : positive := INPUT_WIDTH + COEFFICIENT_WIDTH;
  constant SUM_WIDTH         : positive := 22; -- holds every sum
  constant FULL_WIDTH        : positive := 22; -- of the total, extended to the output's highest bit
  constant AUX_PATTERN       : std_logic_vector(15 downto 0) := "1000000000000000";

  constant OUTPUT_MSB : natural := TRUNCATED_BITS + OUTPUT_WIDTH - 1;

  type sample_list is array (0 to UNIT_COUNT - 1) of signed(INPUT_WIDTH - 1 downto 0);
  type coefficient_list is array (0 to UNIT_COUNT - 1) of signed(COEFFICIENT_WIDTH - 1 downto 0);
  type product_list is array (0 to UNIT_COUNT - 1) of signed(PRODUCT_WIDTH - 1 downto 0);
  type sum_list is array (natural range <>) of signed(SUM_WIDTH - 1 downto 0);

  -- begin coefficients
  constant coefficients : coefficient_list := (
    0 => "0000101101", -- tap 0: 45
    1 => "0011100111", -- tap 1: 231
    2 => "0101100001", -- tap 2: 353
    3 => "1110000101"  -- tap 3: -123
  );
  -- end coefficients

  -- Goes with a sample's history, operands, products, unit sums, the levels of the tree and the result.
  signal valid : std_logic_vector(0 to TREE_LEVELS + 4) := (others => '0');

  signal history   : sample_list                       := (others => (others => '0'));
  signal samples   : sample_list                       := (others => (others => '0'));
  signal products  : product_list                      := (others => (others => '0'));
  signal unit_sums : sum_list(0 to UNIT_COUNT - 1)     := (others => (others => '0'));
  signal total     : signed(FULL_WIDTH - 1 downto 0);
  signal result    : signed(OUTPUT_WIDTH - 1 downto 0) := (others => '0');

  -- begin tree signals
  signal level_1 : sum_list(0 to 1) := (others => (others => '0'));
  signal level_2 : sum_list(0 to 0) := (others => (others => '0'));
  -- end tree signals

  signal pattern : std_logic_vector(15 downto 0) := AUX_PATTERN;

begin

  input : process (clk)
  begin
    if rising_edge(clk) then
      if rst = '1' then
        valid   <= (others => '0');
        history <= (others => (others => '0'));
      else
        valid <= din_valid & valid(0 to TREE_LEVELS + 3);
        if din_valid = '1' then
          history(0) <= signed(din);
          history(1 to UNIT_COUNT - 1) <= history(0 to UNIT_COUNT - 2);
        end if;
      end if;
    end if;
  end process input;

  multipliers : for unit in 0 to UNIT_COUNT - 1 generate
    -- A signal of its own: as a constant factor, GHDL 2.0 synthesises it with a sign of no more than 32 bits.
    signal coefficient : signed(COEFFICIENT_WIDTH - 1 downto 0);
  begin

    coefficient <= coefficients(unit);

    multiplier : process (clk)
    begin
      if rising_edge(clk) then
        samples(unit)   <= history(unit);
        products(unit)  <= samples(unit) * coefficient;
        unit_sums(unit) <= resize(products(unit), SUM_WIDTH);
      end if;
    end process multiplier;

  end generate multipliers;

  -- begin adder tree
  adder_tree : process (clk)
  begin
    if rising_edge(clk) then
      level_1(0) <= unit_sums(0) + unit_sums(1);
      level_1(1) <= unit_sums(2) + unit_sums(3);
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

  din_ready  <= '1';
  dout       <= std_logic_vector(result);
  dout_valid <= valid(TREE_LEVELS + 4);
  clk_aux1   <= pattern(15);

end architecture rtl;
