library ieee;
use ieee.std_logic_1164.all;
use ieee.numeric_std.all;

entity systolic_fir is
  port (
    -- begin ports
    clk        : in  std_logic;
    rst        : in  std_logic;                     -- synchronous, active high
    din_valid  : in  std_logic;                     -- din holds a sample
    din        : in  std_logic_vector(11 downto 0); -- sample, signed
    dout_valid : out std_logic;                     -- dout holds a result
    dout       : out std_logic_vector(13 downto 0)  -- result, signed
    -- end ports
  );
end entity systolic_fir;

-- Samples and sums travel side by side through one stage per tap:
--
--   din -> arrived(0) -> previous(0) -> arrived(1) -> previous(1) -> ...
--              |                            |
--          products(0)                  products(1)
--              |                            |
--           sums(0)  ------------------> sums(1)  ----------------> ... -> dout
--
-- A stage is what one DSP slice holds: two operand registers, multiplier, product register and cascade adder.
-- "arrived" counts clocks and "previous" counts samples, so that gaps between samples do not change a result.
architecture rtl of systolic_fir is

  constant INPUT_WIDTH       : positive := 12;
  constant OUTPUT_WIDTH      : positive := 14;
  constant COEFFICIENT_WIDTH : positive := 10;
  constant TAP_COUNT         : positive := 4;
  constant TRUNCATED_BITS    : natural  := 6;
  constant PRODUCT_WIDTH     : positive := INPUT_WIDTH + COEFFICIENT_WIDTH;
  constant SUM_WIDTH         : positive := 22; -- holds what can reach the output
  constant FULL_WIDTH        : positive := 22; -- of the last sum, extended to the output's highest bit

  type sample_list_t is array (natural range <>) of signed(INPUT_WIDTH - 1 downto 0);
  type coefficient_list_t is array (0 to TAP_COUNT - 1) of signed(COEFFICIENT_WIDTH - 1 downto 0);
  type product_list_t is array (0 to TAP_COUNT - 1) of signed(PRODUCT_WIDTH - 1 downto 0);
  type sum_list_t is array (0 to TAP_COUNT - 1) of signed(SUM_WIDTH - 1 downto 0);

  -- begin coefficients
  constant coefficients : coefficient_list_t := (
    0 => "0000101101", -- tap 0: 45
    1 => "0011100111", -- tap 1: 231
    2 => "0101100001", -- tap 2: 353
    3 => "1110000101"  -- tap 3: -123
  );
  -- end coefficients

  -- valid(k) goes with arrived(k); the last two flags go with the product and the sum of the last tap.
  signal valid    : std_logic_vector(0 to TAP_COUNT + 1) := (others => '0');
  signal arrived  : sample_list_t(0 to TAP_COUNT - 1)      := (others => (others => '0'));
  signal previous : sample_list_t(0 to TAP_COUNT - 2)      := (others => (others => '0'));
  signal products : product_list_t                         := (others => (others => '0'));
  signal sums     : sum_list_t                             := (others => (others => '0'));
  signal full_sum : signed(FULL_WIDTH - 1 downto 0);

begin

  -- begin coefficient input
  -- end coefficient input

  flags : process (clk)
  begin
    if rising_edge(clk) then
      if rst = '1' then
        valid <= (others => '0');
      else
        valid <= din_valid & valid(0 to TAP_COUNT);
      end if;
    end if;
  end process flags;

  -- Every stage hands on the sample before the one that passes through it.
  history : process (clk)
  begin
    if rising_edge(clk) then
      arrived(0) <= signed(din);
      for tap in previous'range loop
        if rst = '1' then
          previous(tap) <= (others => '0');
        elsif valid(tap) = '1' then
          previous(tap) <= arrived(tap);
        end if;
        arrived(tap + 1) <= previous(tap);
      end loop;
    end if;
  end process history;

  multipliers : for tap in 0 to TAP_COUNT - 1 generate
    -- A signal of its own, so that both factors have their full width whatever the value.
    signal coefficient : signed(COEFFICIENT_WIDTH - 1 downto 0);
  begin

    coefficient <= coefficients(tap);

    multiplier : process (clk)
    begin
      if rising_edge(clk) then
        products(tap) <= arrived(tap) * coefficient;
      end if;
    end process multiplier;

  end generate multipliers;

  cascade : process (clk)
  begin
    if rising_edge(clk) then
      sums(0) <= resize(products(0), SUM_WIDTH);
      for tap in 1 to TAP_COUNT - 1 loop
        sums(tap) <= sums(tap - 1) + products(tap);
      end loop;
    end if;
  end process cascade;

  full_sum   <= resize(sums(TAP_COUNT - 1), FULL_WIDTH);
  dout       <= std_logic_vector(full_sum(TRUNCATED_BITS + OUTPUT_WIDTH - 1 downto TRUNCATED_BITS));
  dout_valid <= valid(TAP_COUNT + 1);

end architecture rtl;
