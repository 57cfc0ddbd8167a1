-- The parameters as constants.

library ieee;
use ieee.std_logic_1164.all;

package startup_scope_pkg is

  -- begin constants
  constant CAPTURE_DEPTH       : integer := 2048; -- samples in the memory
  constant CAPTURE_WIDTH       : integer := 11;   -- bits of a sample number
  constant INPUT_LINE_COUNT    : integer := 8;    -- lines to record
  constant TRIGGER_LINE_COUNT  : integer := 3;    -- lines to trigger on
  constant PRE_TRIGGER_SAMPLES : integer := 100;  -- samples in front of the trigger
  -- end constants

  -- What trig_in shows at the trigger, line 0 being the rightmost.
  -- begin trigger value
  constant STARTUP_TRIG_VALUE : std_logic_vector(TRIGGER_LINE_COUNT - 1 downto 0) := "001";
  -- end trigger value

end package startup_scope_pkg;

-- Records data_in around the first match of trig_in after reset and keeps the samples for reading.

library ieee;
use ieee.std_logic_1164.all;
use ieee.numeric_std.all;

use work.startup_scope_pkg.all;

entity startup_scope is
  port (
    -- begin ports
    clk         : in  std_logic;                     -- clock of sampling and readout
    reset       : in  std_logic;                     -- synchronous, active high; its release starts the capture
    data_in     : in  std_logic_vector(7 downto 0);  -- lines to record
    trig_in     : in  std_logic_vector(2 downto 0);  -- lines to trigger on
    busy        : out std_logic;                     -- capture running
    triggered   : out std_logic;                     -- the trigger came
    done        : out std_logic;                     -- capture complete, memory readable
    first_valid : out std_logic_vector(10 downto 0); -- number of the first sample that was recorded
    rd_addr     : in  std_logic_vector(10 downto 0); -- number of a sample
    rd_data     : out std_logic_vector(7 downto 0)   -- that sample, two clocks later
    -- end ports
  );
end entity startup_scope;

architecture rtl of startup_scope is

  constant LAST_INDEX : integer := CAPTURE_DEPTH - 1;

  subtype index_t is integer range 0 to LAST_INDEX;
  subtype sample_t is std_logic_vector(INPUT_LINE_COUNT - 1 downto 0);
  type memory_t is array (index_t) of sample_t;

  -- first stage: the inputs as sampled
  signal trig_now : std_logic_vector(TRIGGER_LINE_COUNT - 1 downto 0);
  signal data_now : sample_t;

  -- second stage: the sample that the control decides on
  signal matching : std_logic;
  signal sample   : sample_t;

  -- control
  signal live     : std_logic_vector(0 to 1); -- the sample in the first and second stage takes part
  signal position : index_t;                  -- its number; the trigger's until the trigger has come
  signal at_end   : std_logic;                -- position is the last one
  signal missing  : index_t;                  -- samples that are not there in front of the trigger
  signal lacking  : std_logic;                -- missing is not 0
  signal found    : std_logic;
  signal finished : std_logic;
  signal storing  : std_logic;

  -- memory ports
  signal write_enable : std_logic;
  signal write_index  : index_t;
  signal write_data   : sample_t;
  signal read_index   : index_t;

  function to_level(condition : boolean) return std_logic is
  begin
    if condition then
      return '1';
    end if;
    return '0';
  end function;

  -- begin place in the memory
  -- The memory is a ring: its end is followed by its begin.
  function place(number : natural) return index_t is
  begin
    return number mod CAPTURE_DEPTH;
  end function;
  -- end place in the memory

begin

  sampling : process (clk)
  begin
    if rising_edge(clk) then
      trig_now <= trig_in;
      data_now <= data_in;
      sample   <= data_now;
      matching <= to_level(trig_now = STARTUP_TRIG_VALUE);
    end if;
  end process sampling;

  -- The trigger is taken at once, however few samples are in front of it. What position and missing are is known before
  -- the trigger is: the comparisons stand in front of registers.
  control : process (clk)
  begin
    if rising_edge(clk) then
      if reset = '1' then
        live     <= "00";
        busy     <= '0';
        found    <= '0';
        finished <= '0';
        position <= PRE_TRIGGER_SAMPLES;
        at_end   <= to_level(PRE_TRIGGER_SAMPLES = LAST_INDEX);
        missing  <= PRE_TRIGGER_SAMPLES;
        lacking  <= to_level(PRE_TRIGGER_SAMPLES /= 0);
      else
        live <= '1' & live(0);
        busy <= not finished;
        if storing = '1' then
          if found = '1' or matching = '1' then
            found <= '1';
            if at_end = '0' then
              position <= position + 1;
              at_end   <= to_level(position = LAST_INDEX - 1);
            else
              finished <= '1';
              busy     <= '0';
            end if;
          elsif lacking = '1' then
            missing <= missing - 1;
            lacking <= to_level(missing /= 1);
          end if;
        end if;
      end if;
    end if;
  end process control;

  storing   <= live(1) and not finished;
  triggered <= found;
  done      <= finished;

  count_of_missing : process (clk)
  begin
    if rising_edge(clk) then
      if reset = '1' then
        first_valid <= (others => '0');
      else
        first_valid <= std_logic_vector(to_unsigned(missing, CAPTURE_WIDTH));
      end if;
    end if;
  end process count_of_missing;

  -- The memory is a ring that takes every sample of the capture.
  write_port : process (clk)
  begin
    if rising_edge(clk) then
      write_enable <= storing;
      write_data   <= sample;
      if reset = '1' then
        write_enable <= '0';
        write_index  <= 0;
      elsif write_enable = '1' then
        write_index <= place(write_index + 1);
      end if;
    end if;
  end process write_port;

  -- The ring stopped in front of its oldest sample.
  read_port : process (clk)
    variable number : integer range 0 to 2 ** CAPTURE_WIDTH - 1;
  begin
    if rising_edge(clk) then
      number     := to_integer(unsigned(rd_addr));
      read_index <= place(write_index + number);
    end if;
  end process read_port;

  -- Nothing is read while a sample is written, so that any memory block fits, whatever it would read there.
  storage : process (clk)
    variable memory : memory_t;
  begin
    if rising_edge(clk) then
      if write_enable = '1' then
        memory(write_index) := write_data;
      else
        rd_data <= memory(read_index);
      end if;
    end if;
  end process storage;

end architecture rtl;
