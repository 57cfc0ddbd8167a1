-- APB3 slave without wait states: registers between software and logic.

library ieee;
use ieee.std_logic_1164.all;

entity register_bank is
  port (
    -- begin ports
    pclk          : in  std_logic;
    presetn       : in  std_logic;                     -- asynchronous, active low
    psel          : in  std_logic;
    penable       : in  std_logic;
    pwrite        : in  std_logic;
    paddr         : in  std_logic_vector(7 downto 0);  -- byte address
    pwdata        : in  std_logic_vector(31 downto 0);
    prdata        : out std_logic_vector(31 downto 0);
    pready        : out std_logic;                     -- always 1
    pslverr       : out std_logic;                     -- access refused
    control_out   : out std_logic_vector(7 downto 0);  -- value
    status_in     : in  std_logic_vector(15 downto 0); -- value to read
    events_set    : in  std_logic_vector(3 downto 0);  -- sets bits
    events_out    : out std_logic_vector(3 downto 0);  -- bits that are set
    command_pulse : out std_logic_vector(1 downto 0)   -- bits written as 1, for one clock
    -- end ports
  );
end entity register_bank;

architecture rtl of register_bank is

  -- begin registers
  signal control_reg : std_logic_vector(7 downto 0);
  signal events_reg  : std_logic_vector(3 downto 0);
  signal command_reg : std_logic_vector(1 downto 0);
  -- end registers

  -- The access cycle, which follows at once, writes this register.
  -- begin write signals
  signal control_write : std_logic;
  signal events_write  : std_logic;
  signal command_write : std_logic;
  -- end write signals

begin

  pready <= '1';

  -- The setup cycle of an access looks for the register: the access cycle finds everything in registers. Only one address
  -- fits, so that what is read is an OR of all and no chain of choices.
  setup : process (pclk, presetn)
    variable value   : std_logic_vector(31 downto 0);
    variable refused : std_logic;
  begin
    if presetn = '0' then
      prdata  <= (others => '0');
      pslverr <= '0';
      -- begin reset writes
      control_write <= '0';
      events_write  <= '0';
      command_write <= '0';
      -- end reset writes
    elsif rising_edge(pclk) then
      pslverr <= '0';
      -- begin no writes
      control_write <= '0';
      events_write  <= '0';
      command_write <= '0';
      -- end no writes
      if psel = '1' and penable = '0' then
        value   := (others => '0');
        refused := '1';
        -- begin choices
        if paddr = x"00" then -- control
          refused           := '0';
          control_write     <= pwrite;
          value(7 downto 0) := value(7 downto 0) or control_reg;
        end if;
        if paddr = x"04" then -- status
          refused            := pwrite;
          value(15 downto 0) := value(15 downto 0) or status_in;
        end if;
        if paddr = x"08" then -- events
          refused           := '0';
          events_write      <= pwrite;
          value(3 downto 0) := value(3 downto 0) or events_reg;
        end if;
        if paddr = x"0c" then -- command
          refused       := '0';
          command_write <= pwrite;
        end if;
        -- end choices
        prdata  <= value;
        pslverr <= refused;
      end if;
    end if;
  end process setup;

  -- begin storage
  access_cycle : process (pclk, presetn)
  begin
    if presetn = '0' then
      -- begin resets
      control_reg <= "01011010";
      events_reg  <= "0000";
      command_reg <= "00";
      -- end resets
    elsif rising_edge(pclk) then
      -- begin defaults
      events_reg  <= events_reg or events_set;
      command_reg <= "00";
      -- end defaults
      -- begin writes
      if control_write = '1' then
        control_reg <= pwdata(7 downto 0);
      end if;
      if events_write = '1' then
        events_reg <= (events_reg and not pwdata(3 downto 0)) or events_set;
      end if;
      if command_write = '1' then
        command_reg <= pwdata(1 downto 0);
      end if;
      -- end writes
    end if;
  end process access_cycle;
  -- end storage

  -- begin outputs
  control_out   <= control_reg;
  events_out    <= events_reg;
  command_pulse <= command_reg;
  -- end outputs

end architecture rtl;
