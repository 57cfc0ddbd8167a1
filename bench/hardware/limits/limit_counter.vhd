-- A counter of 16 bits, as a divider or an address has it.

library ieee;
use ieee.std_logic_1164.all;
use ieee.numeric_std.all;

entity limit_counter is
  port (
    clk   : in  std_logic;
    reset : in  std_logic;
    count : out std_logic_vector(15 downto 0)
  );
end entity limit_counter;

architecture rtl of limit_counter is

  signal value : unsigned(15 downto 0);

begin

  process (clk)
  begin
    if rising_edge(clk) then
      if reset = '1' then
        value <= (others => '0');
      else
        value <= value + 1;
      end if;
    end if;
  end process;

  count <= std_logic_vector(value);

end architecture rtl;
