-- The sum of a filter: one carry chain between registers.

library ieee;
use ieee.std_logic_1164.all;
use ieee.numeric_std.all;

entity limit_adder is
  port (
    clk   : in  std_logic;
    left  : in  std_logic_vector(26 downto 0);
    right : in  std_logic_vector(26 downto 0);
    sum   : out std_logic_vector(26 downto 0)
  );
end entity limit_adder;

architecture rtl of limit_adder is
begin

  process (clk)
  begin
    if rising_edge(clk) then
      sum <= std_logic_vector(signed(left) + signed(right));
    end if;
  end process;

end architecture rtl;
