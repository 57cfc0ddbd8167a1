-- The parameters as constants.

package scope_pkg is

  -- begin constants
  constant CAPTURE_DEPTH          : integer := 2048;                 -- samples in the memory
  constant CAPTURE_WIDTH          : integer := 11;                   -- bits of a sample number
  constant INPUT_LINE_COUNT       : integer := 8;                    -- lines to record
  constant TRIGGER_LINE_COUNT     : integer := 4;                    -- lines to trigger on
  constant PRE_TRIGGER_SAMPLES    : integer := 1024;                 -- samples in front of the trigger
  constant WINDOW_CAPTURE_LENGTH  : integer := 64;                   -- samples of a window
  constant WINDOW_COUNT           : integer := 32;                   -- windows that fit into the memory
  constant USER_DATA_DELAY        : integer := 0;                    -- clocks by which data_in is delayed
  constant STORE_TRIGGER          : integer := 1;                    -- bits of the trigger pulse in a sample
  constant STORE_WINDOW           : integer := 0;                    -- bits of the window number in a sample
  constant SAMPLE_WIDTH           : integer := 9;                    -- bits of a sample
  constant MULTIPLE_TRIGGER_LEVEL : boolean := true;                 -- a first level precedes the trigger
  constant TRIGGER_MODE           : string  := "basic_and_edges";    -- what the conditions can hold
  constant CAPTURE_MODE           : string  := "pre_trigger_enable"; -- what a trigger captures
  -- end constants

end package scope_pkg;

-- Records data_in around a condition on trig_in and keeps the samples for reading.

library ieee;
use ieee.std_logic_1164.all;
use ieee.numeric_std.all;

use work.scope_pkg.all;

entity scope is
  port (
    -- begin ports
    clk           : in  std_logic;                     -- clock of sampling and readout
    reset         : in  std_logic;                     -- synchronous, active high
    data_in       : in  std_logic_vector(7 downto 0);  -- lines to record
    trig_in       : in  std_logic_vector(3 downto 0);  -- lines to trigger on
    arm           : in  std_logic;                     -- starts a capture unless busy
    force_trigger : in  std_logic;                     -- stands for a trigger, whatever trig_in is
    busy          : out std_logic;                     -- capture running
    triggered     : out std_logic;                     -- a trigger came since arm
    done          : out std_logic;                     -- capture complete, memory readable
    window_count  : out std_logic_vector(10 downto 0); -- windows completed since arm
    rd_addr       : in  std_logic_vector(10 downto 0); -- number of a sample, 0 is the oldest
    rd_data       : out std_logic_vector(8 downto 0)   -- that sample, two clocks later
    -- end ports
  );
end entity scope;

architecture rtl of scope is

  -- A window is what one trigger captures, TRIGGER_POSITION the place of the trigger's sample in it.
  -- begin window size
  constant TRIGGER_POSITION : integer := PRE_TRIGGER_SAMPLES;
  constant LAST_POSITION    : integer := CAPTURE_DEPTH - 1;
  constant LAST_WINDOW      : integer := 0;
  -- end window size

  -- A window of one sample has two positions: there is always a next one.
  subtype position_t is integer range 0 to LAST_POSITION + boolean'pos(LAST_POSITION = 0);

  constant LAST_INDEX : integer := CAPTURE_DEPTH - 1;

  subtype index_t is integer range 0 to LAST_INDEX;
  subtype sample_t is std_logic_vector(SAMPLE_WIDTH - 1 downto 0);
  type memory_t is array (index_t) of sample_t;

  constant LAST_STAGE : integer := USER_DATA_DELAY + 1;

  type data_pipe_t is array (0 to LAST_STAGE) of std_logic_vector(INPUT_LINE_COUNT - 1 downto 0);

  -- first stage: the inputs as sampled
  -- begin line signals
  signal trig_now    : std_logic_vector(TRIGGER_LINE_COUNT - 1 downto 0);
  signal trig_before : std_logic_vector(TRIGGER_LINE_COUNT - 1 downto 0);
  -- end line signals
  signal force_now   : std_logic;

  -- second stage: what holds for a sample; its data stand at the end of data_pipe
  signal data_pipe         : data_pipe_t;
  signal trigger_condition : std_logic;
  -- begin first level signals
  signal first_condition   : std_logic;
  -- end first level signals
  signal forced            : std_logic;

  -- control
  signal starting   : std_logic;
  signal capturing  : std_logic;
  signal live       : std_logic_vector(0 to 1); -- the sample in the first and second stage takes part
  signal position   : position_t;
  signal waiting    : std_logic; -- position is the trigger's
  signal at_end     : std_logic; -- position is the last one
  signal window     : integer range 0 to LAST_WINDOW + 1;
  signal is_last    : std_logic; -- window is the last one
  signal trigger    : std_logic;
  signal accepted   : std_logic;
  signal storing    : std_logic;
  -- begin first level state
  signal first_seen : std_logic;
  -- end first level state

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

  -- The registers of both stages run all the time, so that the first sample after arm has a past, too.
  first_stage : process (clk)
  begin
    if rising_edge(clk) then
      -- begin line registers
      trig_now    <= trig_in;
      trig_before <= trig_now;
      -- end line registers
      force_now   <= force_trigger;
      data_pipe   <= data_in & data_pipe(0 to LAST_STAGE - 1);
    end if;
  end process first_stage;

  second_stage : process (clk)
  begin
    if rising_edge(clk) then
      forced <= force_now;
      -- begin trigger condition
      trigger_condition <=
        trig_now(0) and                          -- Trig0: 1
        not trig_now(1) and                      -- Trig1: 0
        (trig_now(2) and not trig_before(2)) and -- Trig2: Rising edge
        (trig_now(3) xor trig_before(3));        -- Trig3: Both edges
      -- end trigger condition
      -- begin first level condition
      first_condition <= trig_now(1); -- Trig1: 1
      -- end first level condition
    end if;
  end process second_stage;

  starting <= arm and not capturing;

  -- begin trigger
  trigger  <= forced or (trigger_condition and first_seen);
  -- end trigger
  accepted <= waiting and trigger;

  -- begin storing
  -- The memory is a ring that takes every sample of the capture.
  storing <= live(1);
  -- end storing

  -- What position and window are is known before the trigger is: the comparisons stand in front of registers.
  control : process (clk)
  begin
    if rising_edge(clk) then
      live <= capturing & live(0);
      if reset = '1' then
        capturing <= '0';
        live      <= "00";
        triggered <= '0';
        done      <= '0';
        window    <= 0;
      elsif starting = '1' then
        capturing <= '1';
        triggered <= '0';
        done      <= '0';
        position  <= 0;
        waiting   <= to_level(TRIGGER_POSITION = 0);
        at_end    <= to_level(LAST_POSITION = 0);
        window    <= 0;
        is_last   <= to_level(LAST_WINDOW = 0);
      elsif live(1) = '1' then
        if accepted = '1' then
          triggered <= '1';
        end if;
        if waiting = '0' or trigger = '1' then
          if at_end = '0' then
            position <= position + 1;
            waiting  <= to_level(position = TRIGGER_POSITION - 1);
            at_end   <= to_level(position = LAST_POSITION - 1);
          else
            position <= 0;
            waiting  <= to_level(TRIGGER_POSITION = 0);
            at_end   <= to_level(LAST_POSITION = 0);
            window   <= window + 1;
            if is_last = '1' then
              capturing <= '0';
              live      <= "00";
              done      <= '1';
            elsif window = LAST_WINDOW - 1 then
              is_last <= '1';
            end if;
          end if;
        end if;
      end if;
    end if;
  end process control;

  -- begin first level
  -- The first level holds for samples after the one that met it, until the trigger has come.
  first_level : process (clk)
  begin
    if rising_edge(clk) then
      if starting = '1' or accepted = '1' then
        first_seen <= '0';
      elsif live(1) = '1' and waiting = '1' and first_condition = '1' then
        first_seen <= '1';
      end if;
    end if;
  end process first_level;
  -- end first level

  busy         <= capturing;
  window_count <= std_logic_vector(to_unsigned(window, CAPTURE_WIDTH));

  write_port : process (clk)
  begin
    if rising_edge(clk) then
      write_enable <= storing;
      -- begin sample
      write_data   <= accepted & data_pipe(LAST_STAGE);
      -- end sample
      if starting = '1' then
        write_index <= 0;
      elsif write_enable = '1' then
        write_index <= place(write_index + 1);
      end if;
    end if;
  end process write_port;

  read_port : process (clk)
    variable number : integer range 0 to 2 ** CAPTURE_WIDTH - 1;
  begin
    if rising_edge(clk) then
      number := to_integer(unsigned(rd_addr));
      -- begin read index
      -- The ring stopped in front of its oldest sample.
      read_index <= place(write_index + number);
      -- end read index
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
