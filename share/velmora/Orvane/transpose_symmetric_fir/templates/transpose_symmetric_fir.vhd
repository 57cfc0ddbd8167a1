library ieee;
use ieee.std_logic_1164.all;
use ieee.numeric_std.all;

entity transpose_symmetric_fir is
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
end entity transpose_symmetric_fir;

-- The list of coefficients reads the same from both ends. Each pair of equal coefficients shares a multiplier behind
-- an adder that takes the newest sample and one of the history (here for six taps):
--
--   din -> history(0) -+------------------+------------------+
--             |        |                  |                  |
--             |        + history(5)       + history(3)       + history(1)
--             |        |                  |                  |
--             |   pair_sums(0)       pair_sums(1)       pair_sums(2)
--             |        |                  |                  |
--             |   products(0)        products(1)        products(2)
--             |        |                  |                  |
--     dout <--|---- sums(0) <--------- sums(1) <--------- sums(2)
--
-- A pair is what one DSP slice holds where its widths suffice: pre-adder, multiplier and adder, each with its register.
-- A product that enters the chain at pair k comes out k samples later: coefficient k weighs the samples that are k and
-- TAP_COUNT-1-k old. History and chain move with the samples, so that gaps between them do not change a result.
architecture rtl of transpose_symmetric_fir is

  constant INPUT_WIDTH       : positive := 12;
  constant OUTPUT_WIDTH      : positive := 14;
  constant COEFFICIENT_WIDTH : positive := 10;
  constant TAP_COUNT         : positive := 4;
  constant PAIR_COUNT        : positive := TAP_COUNT / 2;
  constant TRUNCATED_BITS    : natural  := 6;
  constant PRODUCT_WIDTH     : positive := INPUT_WIDTH + 1 + COEFFICIENT_WIDTH;
  constant SUM_WIDTH         : positive := 23; -- holds what can reach the output
  constant FULL_WIDTH        : positive := 23; -- of the last sum, extended to the output's highest bit

  type sample_list_t is array (0 to TAP_COUNT - 1) of signed(INPUT_WIDTH - 1 downto 0);
  type coefficient_list_t is array (0 to PAIR_COUNT - 1) of signed(COEFFICIENT_WIDTH - 1 downto 0);
  type pair_sum_list_t is array (0 to PAIR_COUNT - 1) of signed(INPUT_WIDTH downto 0);
  type product_list_t is array (0 to PAIR_COUNT - 1) of signed(PRODUCT_WIDTH - 1 downto 0);
  type sum_list_t is array (0 to PAIR_COUNT - 1) of signed(SUM_WIDTH - 1 downto 0);

  -- begin coefficients
  constant coefficients : coefficient_list_t := (
    0 => "0000101101", -- taps 0 and 3: 45
    1 => "1110000101"  -- taps 1 and 2: -123
  );
  -- end coefficients

  -- The flags go with the newest sample, its pair sums, their products and the sums that those enter.
  signal valid     : std_logic_vector(0 to 3) := (others => '0');
  signal history   : sample_list_t              := (others => (others => '0'));
  signal pair_sums : pair_sum_list_t            := (others => (others => '0'));
  signal products  : product_list_t             := (others => (others => '0'));
  signal sums      : sum_list_t                 := (others => (others => '0'));
  signal full_sum  : signed(FULL_WIDTH - 1 downto 0);

begin

  -- begin coefficient input
  -- end coefficient input

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

  samples : process (clk)
  begin
    if rising_edge(clk) then
      if rst = '1' then
        history <= (others => (others => '0'));
      elsif din_valid = '1' then
        history(0) <= signed(din);
        history(1 to TAP_COUNT - 1) <= history(0 to TAP_COUNT - 2);
      end if;
    end if;
  end process samples;

  multipliers : for pair in 0 to PAIR_COUNT - 1 generate
    -- A signal of its own, so that both factors have their full width whatever the value.
    signal coefficient : signed(COEFFICIENT_WIDTH - 1 downto 0);
  begin

    coefficient <= coefficients(pair);

    multiplier : process (clk)
    begin
      if rising_edge(clk) then
        pair_sums(pair) <= resize(history(0), INPUT_WIDTH + 1) + history(TAP_COUNT - 1 - 2 * pair);
        products(pair)  <= pair_sums(pair) * coefficient;
      end if;
    end process multiplier;

  end generate multipliers;

  chain : process (clk)
  begin
    if rising_edge(clk) then
      if rst = '1' then
        sums <= (others => (others => '0'));
      elsif valid(2) = '1' then
        sums(PAIR_COUNT - 1) <= resize(products(PAIR_COUNT - 1), SUM_WIDTH);
        for pair in 0 to PAIR_COUNT - 2 loop
          sums(pair) <= sums(pair + 1) + products(pair);
        end loop;
      end if;
    end if;
  end process chain;

  full_sum   <= resize(sums(0), FULL_WIDTH);
  dout       <= std_logic_vector(full_sum(TRUNCATED_BITS + OUTPUT_WIDTH - 1 downto TRUNCATED_BITS));
  dout_valid <= valid(3);

end architecture rtl;
