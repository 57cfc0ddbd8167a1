-- A product of two operands between registers.

library ieee;
use ieee.std_logic_1164.all;
use ieee.numeric_std.all;

entity limit_product is
  port (
    clk     : in  std_logic;
    left    : in  std_logic_vector(11 downto 0);
    right   : in  std_logic_vector(11 downto 0);
    product : out std_logic_vector(23 downto 0)
  );
end entity limit_product;

architecture rtl of limit_product is

  signal left_operand  : signed(11 downto 0);
  signal right_operand : signed(11 downto 0);

begin

  process (clk)
  begin
    if rising_edge(clk) then
      left_operand  <= signed(left);
      right_operand <= signed(right);
      product       <= std_logic_vector(left_operand * right_operand);
    end if;
  end process;

end architecture rtl;
