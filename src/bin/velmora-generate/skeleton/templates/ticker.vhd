-- Gives a tick of one clock in every PERIOD clocks.

library ieee;
use ieee.std_logic_1164.all;

entity ticker is
  port (
    clk   : in  std_logic;
    reset : in  std_logic;
    tick  : out std_logic);
end ticker;

architecture rtl of ticker is

  constant PERIOD : positive := 10;
  constant ACTIVE : std_logic := '1';

  signal count : natural range 0 to PERIOD - 1 := 0;

begin

  process (clk)
  begin
    if rising_edge(clk) then
      tick  <= not ACTIVE;
      count <= 0;
      if reset = '0' then
        if count >= PERIOD - 1 then
          tick <= ACTIVE;
        end if;
        if count < PERIOD - 1 then
          count <= count + 1;
        end if;
      end if;
    end if;
  end process;

end rtl;
