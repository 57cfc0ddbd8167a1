library ieee;
use ieee.std_logic_1164.all;
use ieee.numeric_std.all;

entity transpose_fir is
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
end entity transpose_fir;

-- Each sample meets all coefficients at once, and a chain of sums collects the products:
--
--   din -> sample -+------------------+------------------+---- ...
--                  |                  |                  |
--             products(0)        products(1)        products(2)
--                  |                  |                  |
--      dout <-- sums(0)  <-------- sums(1)  <-------- sums(2)  <-- ...
--
-- The chain is the history: it moves with the samples, so that gaps between them do not change a result.
architecture rtl of transpose_fir is

  constant INPUT_WIDTH       : positive := 12;
  constant OUTPUT_WIDTH      : positive := 14;
  constant COEFFICIENT_WIDTH : positive := 10;
  constant TAP_COUNT         : positive := 4;
  constant TRUNCATED_BITS    : natural  := 6;
  constant PRODUCT_WIDTH     : positive := INPUT_WIDTH + COEFFICIENT_WIDTH;
  constant SUM_WIDTH         : positive := 22; -- holds what can reach the output
  constant FULL_WIDTH        : positive := 22; -- of the last sum, extended to the output's highest bit

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

  -- The flags go with the sample, its products and the sums that they enter.
  signal valid    : std_logic_vector(0 to 2)         := (others => '0');
  signal sample   : signed(INPUT_WIDTH - 1 downto 0) := (others => '0');
  signal products : product_list_t                     := (others => (others => '0'));
  signal sums     : sum_list_t                         := (others => (others => '0'));
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
        valid <= din_valid & valid(0 to 1);
      end if;
    end if;
  end process flags;

  input_register : process (clk)
  begin
    if rising_edge(clk) then
      sample <= signed(din);
    end if;
  end process input_register;

  multipliers : for tap in 0 to TAP_COUNT - 1 generate
    -- A signal of its own, so that both factors have their full width whatever the value.
    signal coefficient : signed(COEFFICIENT_WIDTH - 1 downto 0);
  begin

    coefficient <= coefficients(tap);

    multiplier : process (clk)
    begin
      if rising_edge(clk) then
        -- begin product
        products(tap) <= sample * coefficient;
        -- end product
      end if;
    end process multiplier;

  end generate multipliers;

  chain : process (clk)
  begin
    if rising_edge(clk) then
      if rst = '1' then
        sums <= (others => (others => '0'));
      elsif valid(1) = '1' then
        sums(TAP_COUNT - 1) <= resize(products(TAP_COUNT - 1), SUM_WIDTH);
        for tap in 0 to TAP_COUNT - 2 loop
          sums(tap) <= sums(tap + 1) + products(tap);
        end loop;
      end if;
    end if;
  end process chain;

  full_sum   <= resize(sums(0), FULL_WIDTH);
  dout       <= std_logic_vector(full_sum(TRUNCATED_BITS + OUTPUT_WIDTH - 1 downto TRUNCATED_BITS));
  dout_valid <= valid(2);

end architecture rtl;
