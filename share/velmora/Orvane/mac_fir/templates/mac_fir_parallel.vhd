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

-- There is a multiplier for each tap, so a sample is taken at every clock. It meets all coefficients at once, and a chain
-- of sums collects the products:
--
--   din -> sample -+------------------+------------------+---- ...
--                  |                  |                  |
--             products(0)        products(1)        products(2)
--                  |                  |                  |
--   output  <-- sums(0)  <-------- sums(1)  <-------- sums(2)  <-- ...
--    stage
--
-- The chain is the history: it moves with the samples, so that gaps between them do not change a result.
architecture rtl of mac_fir_parallel is

  constant INPUT_WIDTH       : positive := 12;
  constant OUTPUT_WIDTH      : positive := 10;
  constant COEFFICIENT_WIDTH : positive := 10;
  constant UNIT_COUNT        : positive := 4;
  constant TRUNCATED_BITS    : natural  := 9;
  constant PRODUCT_WIDTH     : positive := INPUT_WIDTH + COEFFICIENT_WIDTH;
  constant SUM_WIDTH         : positive := 22; -- holds what the output stage needs
  constant FULL_WIDTH        : positive := 22; -- of the last sum, extended to the output's highest bit
  constant AUX_PATTERN       : std_logic_vector(15 downto 0) := "1000000000000000";

  constant OUTPUT_MSB : natural := TRUNCATED_BITS + OUTPUT_WIDTH - 1;

  type coefficient_list_t is array (0 to UNIT_COUNT - 1) of signed(COEFFICIENT_WIDTH - 1 downto 0);
  type product_list_t is array (0 to UNIT_COUNT - 1) of signed(PRODUCT_WIDTH - 1 downto 0);
  type sum_list_t is array (0 to UNIT_COUNT - 1) of signed(SUM_WIDTH - 1 downto 0);

  -- begin coefficients
  constant coefficients : coefficient_list_t := (
    0 => "0000101101", -- tap 0: 45
    1 => "0011100111", -- tap 1: 231
    2 => "0101100001", -- tap 2: 353
    3 => "1110000101"  -- tap 3: -123
  );
  -- end coefficients

  -- The flags go with the sample, its products, the sums that they enter and the result.
  signal valid    : std_logic_vector(0 to 3)          := (others => '0');
  signal sample   : signed(INPUT_WIDTH - 1 downto 0)  := (others => '0');
  signal products : product_list_t                      := (others => (others => '0'));
  signal sums     : sum_list_t                          := (others => (others => '0'));
  signal total    : signed(FULL_WIDTH - 1 downto 0);
  signal result   : signed(OUTPUT_WIDTH - 1 downto 0) := (others => '0');

  signal pattern : std_logic_vector(15 downto 0) := AUX_PATTERN;

begin

  flags : process (clk)
  begin
    if rising_edge(clk) then
      if rst = '1' then
        valid <= (others => '0');
      else
        valid <= din_valid & valid(0 to 2);
      end if;
    end if;
  end process flags;

  input_register : process (clk)
  begin
    if rising_edge(clk) then
      sample <= signed(din);
    end if;
  end process input_register;

  multipliers : for unit in 0 to UNIT_COUNT - 1 generate
    -- A signal of its own, so that both factors have their full width whatever the value.
    signal coefficient : signed(COEFFICIENT_WIDTH - 1 downto 0);
  begin

    coefficient <= coefficients(unit);

    multiplier : process (clk)
    begin
      if rising_edge(clk) then
        products(unit) <= sample * coefficient;
      end if;
    end process multiplier;

  end generate multipliers;

  chain : process (clk)
  begin
    if rising_edge(clk) then
      if rst = '1' then
        sums <= (others => (others => '0'));
      elsif valid(1) = '1' then
        sums(UNIT_COUNT - 1) <= resize(products(UNIT_COUNT - 1), SUM_WIDTH);
        for unit in 0 to UNIT_COUNT - 2 loop
          sums(unit) <= sums(unit + 1) + products(unit);
        end loop;
      end if;
    end if;
  end process chain;

  total <= resize(sums(0), FULL_WIDTH);

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
  dout_valid <= valid(3);
  clk_aux1   <= pattern(15);

end architecture rtl;
