-- One look-up table between registers.

library ieee;
use ieee.std_logic_1164.all;
use ieee.numeric_std.all;

entity limit_lut is
  port (
    clk    : in  std_logic;
    inputs : in  std_logic_vector(3 downto 0);
    result : out std_logic
  );
end entity limit_lut;

architecture rtl of limit_lut is
begin

  process (clk)
  begin
    if rising_edge(clk) then
      result <= (inputs(0) xor inputs(1)) or (inputs(2) and inputs(3));
    end if;
  end process;

end architecture rtl;
