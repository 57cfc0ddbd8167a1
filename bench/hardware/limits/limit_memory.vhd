-- A memory of 2048 words of 16 bits with one write port and one registered read port, between registers.

library ieee;
use ieee.std_logic_1164.all;
use ieee.numeric_std.all;

entity limit_memory is
  port (
    clk           : in  std_logic;
    write         : in  std_logic;
    write_address : in  std_logic_vector(10 downto 0);
    write_word    : in  std_logic_vector(15 downto 0);
    read_address  : in  std_logic_vector(10 downto 0);
    read_word     : out std_logic_vector(15 downto 0)
  );
end entity limit_memory;

architecture rtl of limit_memory is

  type memory_t is array (0 to 2047) of std_logic_vector(15 downto 0);

begin

  process (clk)
    variable memory : memory_t;
  begin
    if rising_edge(clk) then
      if write = '1' then
        memory(to_integer(unsigned(write_address))) := write_word;
      else
        read_word <= memory(to_integer(unsigned(read_address)));
      end if;
    end if;
  end process;

end architecture rtl;
