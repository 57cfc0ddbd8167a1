library ieee;
use ieee.std_logic_1164.all;

package ser_des_pkg is

  type LINK_LOCATION_ARRAY is array (natural range <>) of string(1 to 3);
  type LINK_DELAY_ARRAY is array (natural range <>) of string(1 to 2);

  -- begin constants
  constant LINK_WORD_CLOCK                : integer := 125;  -- MHz
  constant LINK_BIT_CLOCK                 : integer := 1000; -- MHz
  constant LINK_DATA_SIZE                 : integer := 8;    -- bits of a word
  constant LINK_SER_COUNT                 : integer := 2;    -- serialisers
  constant LINK_DES_COUNT                 : integer := 2;    -- deserialisers
  constant LINK_BANK_NUMBER               : string  := "02";
  constant LINK_SER_PADTYPE               : string  := "LVDS_2.5V";
  constant LINK_SER_DIFFERENTIAL          : string  := "True";
  constant LINK_SER_SLEW_RATE             : string  := "Fast";
  constant LINK_SER_OUTPUT_CAPACITY       : string  := "0";
  constant LINK_DES_PADTYPE               : string  := "LVDS_2.5V";
  constant LINK_DES_DIFFERENTIAL          : string  := "True";
  constant LINK_DES_TERMINATION           : string  := "100";
  constant LINK_DES_TERMINATION_REFERENCE : string  := "VT";
  constant LINK_DES_TURBO                 : string  := "False";
  constant LINK_DES_INPUT_SIGNAL_SLOPE    : string  := "0.5";
  constant LINK_SER_TRAINING_VALUE        : std_logic_vector(LINK_DATA_SIZE - 1 downto 0) := "11010000";
  constant LINK_DES_TRAINING_VALUE        : std_logic_vector(LINK_DATA_SIZE - 1 downto 0) := "11010000";

  -- Pads and the taps of their delay lines. Line i of the interface is at index i.
  constant LINK_SER_LOCATIONS : LINK_LOCATION_ARRAY(0 to 1) := (
    0 => "01P", 1 => "02P"
  );
  constant LINK_SER_OUTPUT_DELAY_LINE : LINK_DELAY_ARRAY(0 to 1) := (
    0 => "00", 1 => "07"
  );
  constant LINK_DES_LOCATIONS : LINK_LOCATION_ARRAY(0 to 1) := (
    0 => "03P", 1 => "04P"
  );
  constant LINK_DES_INPUT_DELAY_LINE : LINK_DELAY_ARRAY(0 to 1) := (
    0 => "00", 1 => "00"
  );
  -- end constants

end package ser_des_pkg;

library ieee;
use ieee.std_logic_1164.all;
-- begin arithmetic
use ieee.numeric_std.all;
-- end arithmetic

use work.ser_des_pkg.all;

entity ser_des is
  port (
    -- begin ports
    reset        : in  std_logic;                     -- asynchronous, active high, at least 2 word periods
    word_clk     : in  std_logic;
    bit_clk      : in  std_logic;                     -- LINK_DATA_SIZE times word_clk, same source, any phase
    ser_training : in  std_logic;                     -- 1: all serialisers send the training value
    ser_data     : in  std_logic_vector(15 downto 0); -- words to send, line 0 in the lowest bits
    ser_out      : out std_logic_vector(1 downto 0);  -- serial outputs, most significant bit first
    des_training : in  std_logic;                     -- 1: the deserialisers search the training value
    des_bitslip  : in  std_logic_vector(1 downto 0);  -- 1 at a word edge: one bit later, while not searching
    des_in       : in  std_logic_vector(1 downto 0);  -- serial inputs
    des_data     : out std_logic_vector(15 downto 0); -- received words, line 0 in the lowest bits
    des_aligned  : out std_logic_vector(1 downto 0);  -- the line has found the training value
    des_locked   : out std_logic                      -- all lines have
    -- end ports
  );

  -- begin attributes
  -- For the implementation tool. Lists begin with line 0.
  attribute pad_bank : string;
  attribute pad_type : string;
  attribute pad_differential : string;
  attribute pad_slew_rate : string;
  attribute pad_output_capacity : string;
  attribute pad_location : string;
  attribute pad_output_delay : string;
  attribute pad_termination : string;
  attribute pad_termination_reference : string;
  attribute pad_turbo : string;
  attribute pad_input_signal_slope : string;
  attribute pad_input_delay : string;

  attribute pad_bank of ser_out : signal is "02";
  attribute pad_type of ser_out : signal is "LVDS_2.5V";
  attribute pad_differential of ser_out : signal is "True";
  attribute pad_slew_rate of ser_out : signal is "Fast";
  attribute pad_output_capacity of ser_out : signal is "0";
  attribute pad_location of ser_out : signal is "01P,02P";
  attribute pad_output_delay of ser_out : signal is "00,07";

  attribute pad_bank of des_in : signal is "02";
  attribute pad_type of des_in : signal is "LVDS_2.5V";
  attribute pad_differential of des_in : signal is "True";
  attribute pad_termination of des_in : signal is "100";
  attribute pad_termination_reference of des_in : signal is "VT";
  attribute pad_turbo of des_in : signal is "False";
  attribute pad_input_signal_slope of des_in : signal is "0.5";
  attribute pad_location of des_in : signal is "03P,04P";
  attribute pad_input_delay of des_in : signal is "00,00";
  -- end attributes
end entity ser_des;

-- begin crossing explained
-- Words pass between the clocks at one bit edge in D, the transfer edge, which lies half a word after the word edge:
--
--   word_clk   __/~~~~~~~~~~~~~~~\_______________/~~    words to send change here, received words are taken here
--   bit_clk    /~\_/~\_/~\_/~\_/~\_/~\_/~\_/~\_/~\_/
--   transfer   ________________/~~~\________________    words to send are taken here, received words change here
--
-- A flip-flop toggled by word_clk shows the bit clock where the word edge is. It is looked at once, after reset, and
-- whether the bit edge next to the word edge sees it before or after its change makes no difference but one bit.
-- end crossing explained
architecture rtl of ser_des is

  -- begin crossing declarations
  -- The word edge is seen 4 bit edges before the bit counter starts; the lines' transfer follows the counter by one.
  constant TRANSFER_PHASE : natural := (LINK_DATA_SIZE / 2 + 2 * LINK_DATA_SIZE - 5) mod LINK_DATA_SIZE;

  signal word_release : std_logic;
  signal word_reset   : std_logic; -- ends in step with word_clk
  signal bit_release  : std_logic;
  signal bit_reset    : std_logic; -- ends in step with bit_clk

  signal word_toggle : std_logic;                                 -- changes at every word edge
  signal toggle_seen : std_logic_vector(0 to 2);                  -- word_toggle at the last bit edges
  signal toggled     : std_logic;                                 -- it has changed there
  signal counting    : std_logic;
  signal bit_phase   : std_logic_vector(0 to LINK_DATA_SIZE - 1); -- one-hot counter of the bits of a word

  -- Each line has a transfer register of its own, which reaches all its bits. It looks at a second phase, which is never
  -- at 1 together with the first one, so that the registers of a side differ: tools join equal ones.
  function second_phase(line : natural) return natural is
  begin
    return (TRANSFER_PHASE + 1 + line mod (LINK_DATA_SIZE - 1)) mod LINK_DATA_SIZE;
  end function;
  -- end crossing declarations
  -- begin deserialiser declarations

  -- This many words in a row must be equal to the training value.
  constant MATCHES_TO_ALIGN : positive := 8;

  signal aligned : std_logic_vector(LINK_DES_COUNT - 1 downto 0);
  -- end deserialiser declarations

begin

  -- begin crossing
  release_words : process (reset, word_clk)
  begin
    if reset = '1' then
      word_release <= '1';
      word_reset   <= '1';
    elsif rising_edge(word_clk) then
      word_release <= '0';
      word_reset   <= word_release;
    end if;
  end process release_words;

  release_bits : process (reset, bit_clk)
  begin
    if reset = '1' then
      bit_release <= '1';
      bit_reset   <= '1';
    elsif rising_edge(bit_clk) then
      bit_release <= '0';
      bit_reset   <= bit_release;
    end if;
  end process release_bits;

  toggle : process (word_reset, word_clk)
  begin
    if word_reset = '1' then
      word_toggle <= '0';
    elsif rising_edge(word_clk) then
      word_toggle <= not word_toggle;
    end if;
  end process toggle;

  -- Follows a toggle that rests for at least one word after reset, so that the first change is a word edge.
  see_toggle : process (reset, bit_clk)
  begin
    if reset = '1' then
      toggle_seen <= (others => '0');
      toggled     <= '0';
    elsif rising_edge(bit_clk) then
      toggle_seen <= word_toggle & toggle_seen(0 to 1);
      toggled     <= toggle_seen(1) xor toggle_seen(2);
    end if;
  end process see_toggle;

  count_bits : process (bit_reset, bit_clk)
  begin
    if bit_reset = '1' then
      counting  <= '0';
      bit_phase <= (others => '0');
    elsif rising_edge(bit_clk) then
      counting     <= counting or toggled;
      bit_phase    <= bit_phase(LINK_DATA_SIZE - 1) & bit_phase(0 to LINK_DATA_SIZE - 2);
      bit_phase(0) <= bit_phase(LINK_DATA_SIZE - 1) or (toggled and not counting);
    end if;
  end process count_bits;

  -- end crossing

  -- begin serialisers
  serialisers : for i in 0 to LINK_SER_COUNT - 1 generate
    signal sent_word   : std_logic_vector(LINK_DATA_SIZE - 1 downto 0);
    signal transfer    : std_logic;
    signal out_shifter : std_logic_vector(LINK_DATA_SIZE - 1 downto 0);
  begin

    take_word : process (word_reset, word_clk)
    begin
      if word_reset = '1' then
        sent_word <= (others => '0');
      elsif rising_edge(word_clk) then
        if ser_training = '1' then
          sent_word <= LINK_SER_TRAINING_VALUE;
        else
          sent_word <= ser_data((i + 1) * LINK_DATA_SIZE - 1 downto i * LINK_DATA_SIZE);
        end if;
      end if;
    end process take_word;

    shift_out : process (bit_reset, bit_clk)
    begin
      if bit_reset = '1' then
        transfer    <= '0';
        out_shifter <= (others => '0');
      elsif rising_edge(bit_clk) then
        transfer <= bit_phase(TRANSFER_PHASE) and not bit_phase(second_phase(i));
        if transfer = '1' then
          out_shifter <= sent_word;
        else
          out_shifter <= out_shifter(LINK_DATA_SIZE - 2 downto 0) & '0';
        end if;
      end if;
    end process shift_out;

    ser_out(i) <= out_shifter(LINK_DATA_SIZE - 1);

  end generate serialisers;
  -- end serialisers

  -- begin deserialisers
  deserialisers : for i in 0 to LINK_DES_COUNT - 1 generate
    signal transfer   : std_logic;
    signal in_shifter : std_logic_vector(LINK_DATA_SIZE - 1 downto 0);
    signal frame      : std_logic_vector(LINK_DATA_SIZE - 1 downto 0); -- bits between two transfer edges
    signal stream     : unsigned(2 * LINK_DATA_SIZE - 1 downto 0);     -- the last two frames, the older one to the left
    signal slip       : natural range 0 to LINK_DATA_SIZE - 1;
    signal slip_step  : std_logic;
    signal slipped    : std_logic;                                     -- word does not show the last step yet
    signal word       : std_logic_vector(LINK_DATA_SIZE - 1 downto 0);
    signal mismatch   : std_logic;
    signal matches    : natural range 0 to MATCHES_TO_ALIGN - 1;
  begin

    shift_in : process (bit_reset, bit_clk)
    begin
      if bit_reset = '1' then
        transfer   <= '0';
        in_shifter <= (others => '0');
        frame      <= (others => '0');
      elsif rising_edge(bit_clk) then
        transfer   <= bit_phase(TRANSFER_PHASE) and not bit_phase(second_phase(i));
        in_shifter <= in_shifter(LINK_DATA_SIZE - 2 downto 0) & des_in(i);
        if transfer = '1' then
          frame <= in_shifter;
        end if;
      end if;
    end process shift_in;

    -- A word begins "slip" bits after the beginning of the older frame.
    give_word : process (word_reset, word_clk)
      variable shifted : unsigned(stream'range);
    begin
      if word_reset = '1' then
        stream <= (others => '0');
        word   <= (others => '0');
      elsif rising_edge(word_clk) then
        stream  <= stream(LINK_DATA_SIZE - 1 downto 0) & unsigned(frame);
        shifted := shift_left(stream, slip);
        word    <= std_logic_vector(shifted(2 * LINK_DATA_SIZE - 1 downto LINK_DATA_SIZE));
      end if;
    end process give_word;

    mismatch  <= '0' when word = LINK_DES_TRAINING_VALUE else '1';
    slip_step <= mismatch and not slipped when des_training = '1' else des_bitslip(i);

    step_slip : process (word_reset, word_clk)
    begin
      if word_reset = '1' then
        slip    <= 0;
        slipped <= '0';
      elsif rising_edge(word_clk) then
        slipped <= slip_step;
        if slip_step = '1' then
          if slip = LINK_DATA_SIZE - 1 then
            slip <= 0;
          else
            slip <= slip + 1;
          end if;
        end if;
      end if;
    end process step_slip;

    search : process (word_reset, word_clk)
    begin
      if word_reset = '1' then
        matches    <= 0;
        aligned(i) <= '0';
      elsif rising_edge(word_clk) then
        if des_training = '0' then
          matches <= 0;
        elsif slipped = '0' then
          if mismatch = '1' then
            matches    <= 0;
            aligned(i) <= '0';
          elsif matches = MATCHES_TO_ALIGN - 1 then
            aligned(i) <= '1';
          else
            matches <= matches + 1;
          end if;
        end if;
      end if;
    end process search;

    des_data((i + 1) * LINK_DATA_SIZE - 1 downto i * LINK_DATA_SIZE) <= word;

  end generate deserialisers;

  des_aligned <= aligned;

  lock : process (word_reset, word_clk)
  begin
    if word_reset = '1' then
      des_locked <= '0';
    elsif rising_edge(word_clk) then
      if aligned = (aligned'range => '1') then
        des_locked <= '1';
      else
        des_locked <= '0';
      end if;
    end if;
  end process lock;
  -- end deserialisers

end architecture rtl;
