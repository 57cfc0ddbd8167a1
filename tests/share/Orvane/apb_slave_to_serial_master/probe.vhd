-- Applies one line of stimulus.txt per pclk cycle and writes what the outputs are just before the rising
-- edge that ends the cycle as one line of response.txt.
--
-- Stimulus: presetn psel penable pwrite paddr(8) pwdata(32) spi_miso, most significant bit first.
-- Response: prdata(32) pready pslverr irq spi_sclk spi_mosi spi_cs_n(4).

library ieee;
use ieee.std_logic_1164.all;

use std.textio.all;

entity apb_serial_master_probe is
end entity apb_serial_master_probe;

architecture test of apb_serial_master_probe is

  signal inputs  : std_logic_vector(1 to 45) := (others => '0');
  signal outputs : std_logic_vector(1 to 41);
  signal pclk    : std_logic := '0';

begin

  dut : entity work.apb_serial_master
    port map (
      pclk     => pclk,
      presetn  => inputs(1),
      psel     => inputs(2),
      penable  => inputs(3),
      pwrite   => inputs(4),
      paddr    => inputs(5 to 12),
      pwdata   => inputs(13 to 44),
      spi_miso => inputs(45),
      prdata   => outputs(1 to 32),
      pready   => outputs(33),
      pslverr  => outputs(34),
      irq      => outputs(35),
      spi_sclk => outputs(36),
      spi_mosi => outputs(37),
      spi_cs_n => outputs(38 to 41)
    );

  cycles : process
    file stimulus       : text open read_mode is "stimulus.txt";
    file response       : text open write_mode is "response.txt";
    variable given      : line;
    variable seen       : line;
    variable characters : string(1 to inputs'length);
    variable values     : string(1 to outputs'length);
  begin
    while not endfile(stimulus) loop
      readline(stimulus, given);
      read(given, characters);
      for i in characters'range loop
        if characters(i) = '1' then
          inputs(i) <= '1';
        else
          inputs(i) <= '0';
        end if;
      end loop;
      pclk <= '0';
      wait for 5 ns;
      for i in values'range loop
        case outputs(i) is
          when '0'    => values(i) := '0';
          when '1'    => values(i) := '1';
          when others => values(i) := 'X';
        end case;
      end loop;
      write(seen, values);
      writeline(response, seen);
      pclk <= '1';
      wait for 5 ns;
    end loop;
    wait;
  end process cycles;

end architecture test;
