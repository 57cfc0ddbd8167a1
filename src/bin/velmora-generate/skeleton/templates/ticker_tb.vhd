-- Compares the ticks with what the page says, at every clock.

library ieee;
use ieee.std_logic_1164.all;

entity ticker_tb is
end ticker_tb;

architecture test of ticker_tb is

  constant PERIOD : positive := 10;
  constant ACTIVE : std_logic := '1';
  constant CLOCKS : positive := 3 * PERIOD + 1;

  signal clk   : std_logic := '0';
  signal reset : std_logic := '1';
  signal tick  : std_logic;

begin

  dut : entity work.ticker
    port map (clk => clk, reset => reset, tick => tick);

  process

    procedure clock is
    begin
      clk <= '0';
      wait for 5 ns;
      clk <= '1';
      wait for 5 ns;
    end clock;

    variable expected : std_logic;

  begin
    clock;
    reset <= '0';
    for n in 1 to CLOCKS loop
      clock;
      expected := not ACTIVE;
      if (n - 1) mod PERIOD >= PERIOD - 1 then
        expected := ACTIVE;
      end if;
      assert tick = expected
        report "clock " & integer'image(n) & ": tick is " & std_logic'image(tick) & ", expected " & std_logic'image(expected)
        severity failure;
    end loop;
    report "ticker_tb: PASSED (" & integer'image(CLOCKS) & " checks)";
    wait;
  end process;

end test;
