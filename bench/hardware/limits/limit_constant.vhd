-- A product by a constant between registers.

library ieee;
use ieee.std_logic_1164.all;
use ieee.numeric_std.all;

entity limit_constant is
  port (
    clk     : in  std_logic;
    operand : in  std_logic_vector(11 downto 0);
    product : out std_logic_vector(23 downto 0)
  );
end entity limit_constant;

architecture rtl of limit_constant is

  signal factor : signed(11 downto 0);

begin

  process (clk)
  begin
    if rising_edge(clk) then
      factor  <= signed(operand);
      product <= std_logic_vector(factor * to_signed(1709, 12));
    end if;
  end process;

end architecture rtl;
