-- Register map and component declaration.

library ieee;
use ieee.std_logic_1164.all;

package apb_serial_master_pkg is

  constant WORD_WIDTH : integer := 32;
  constant FIFO_DEPTH : integer := 16;
  constant LINE_COUNT : integer := 4;

  -- Byte offset of each register; the comment gives its access and its meaning.
  constant REG_ID         : integer := 16#00#;  -- RO: identification, the text SPM1
  constant REG_CTRL       : integer := 16#04#;  -- RW: enable, SPI mode, bit order and word length
  constant REG_DIV        : integer := 16#08#;  -- RW: clock divider
  constant REG_CS         : integer := 16#0C#;  -- RW: chip selects
  constant REG_TXDATA     : integer := 16#10#;  -- WO: pushes a right-justified word into the TX FIFO
  constant REG_RXDATA     : integer := 16#14#;  -- RO: pops a right-justified word from the RX FIFO
  constant REG_STATUS     : integer := 16#18#;  -- RO: engine and FIFO state
  constant REG_INT_ENABLE : integer := 16#1C#;  -- RW: events that raise irq, bits as in INT_STATUS
  constant REG_INT_STATUS : integer := 16#20#;  -- R/W1C: events, cleared by writing 1
  constant REG_FIFO_CTRL  : integer := 16#24#;  -- WO: discards the content of a FIFO

  -- What a register reads after reset. TXDATA and FIFO_CTRL always read 0; RXDATA is empty.
  constant RESET_ID         : std_logic_vector(31 downto 0) := x"53504D31";
  constant RESET_CTRL       : std_logic_vector(31 downto 0) := x"00000700";
  constant RESET_DIV        : std_logic_vector(31 downto 0) := x"00000000";
  constant RESET_CS         : std_logic_vector(31 downto 0) := x"00000100";
  constant RESET_STATUS     : std_logic_vector(31 downto 0) := x"0000000A";
  constant RESET_INT_ENABLE : std_logic_vector(31 downto 0) := x"00000000";
  constant RESET_INT_STATUS : std_logic_vector(31 downto 0) := x"00000000";

  -- Bit positions, named REGISTER_FIELD. A field of several bits has a HIGH and a LOW position.
  constant CTRL_ENABLE        : integer := 0;   -- 1: words are sent, 0: stop after the current word
  constant CTRL_CPHA          : integer := 1;   -- 0: sample at the leading SCLK edge, 1: at the trailing one
  constant CTRL_CPOL          : integer := 2;   -- level of the idle SCLK
  constant CTRL_LSB_FIRST     : integer := 3;   -- 0: bit WLEN first, 1: bit 0 first
  constant CTRL_LOOPBACK      : integer := 4;   -- 1: MOSI is received in place of MISO
  constant CTRL_WLEN_LOW      : integer := 8;
  constant CTRL_WLEN_HIGH     : integer := 12;  -- word length - 1 (1 to 32 bits)
  constant DIV_DIVIDER_LOW    : integer := 0;
  constant DIV_DIVIDER_HIGH   : integer := 15;  -- half an SCLK period is DIVIDER + 1 pclk cycles
  constant CS_SELECT_LOW      : integer := 0;
  constant CS_SELECT_HIGH     : integer := 3;   -- bit i = 1: spi_cs_n(i) takes part
  constant CS_AUTO            : integer := 8;   -- 1: asserted during bursts only, 0: while ENABLE = 1
  constant STATUS_BUSY          : integer := 0;   -- a burst or its closing time is running
  constant STATUS_TX_EMPTY      : integer := 1;   -- no word waits to be sent
  constant STATUS_TX_FULL       : integer := 2;   -- the next push is refused
  constant STATUS_RX_EMPTY      : integer := 3;   -- no received word is waiting
  constant STATUS_RX_FULL       : integer := 4;   -- the next received word is lost
  constant STATUS_TX_LEVEL_LOW  : integer := 8;
  constant STATUS_TX_LEVEL_HIGH : integer := 12;  -- words in the TX FIFO, 0 to 16, without the one being sent
  constant STATUS_RX_LEVEL_LOW  : integer := 16;
  constant STATUS_RX_LEVEL_HIGH : integer := 20;  -- words in the RX FIFO, 0 to 16
  constant INT_STATUS_DONE         : integer := 0;  -- BUSY fell
  constant INT_STATUS_RX_AVAIL     : integer := 1;  -- level: RX FIFO not empty; writing 1 has no effect
  constant INT_STATUS_TX_OVERFLOW  : integer := 2;  -- TXDATA written while full, word dropped
  constant INT_STATUS_RX_OVERRUN   : integer := 3;  -- received word found the RX FIFO full and was dropped
  constant INT_STATUS_RX_UNDERFLOW : integer := 4;  -- RXDATA read while empty
  constant FIFO_CTRL_FLUSH_TX : integer := 0;  -- writing 1 empties the TX FIFO
  constant FIFO_CTRL_FLUSH_RX : integer := 1;  -- writing 1 empties the RX FIFO

  component apb_serial_master is
    port (
      pclk     : in  std_logic;
      presetn  : in  std_logic;
      psel     : in  std_logic;
      penable  : in  std_logic;
      pwrite   : in  std_logic;
      paddr    : in  std_logic_vector(7 downto 0);
      pwdata   : in  std_logic_vector(31 downto 0);
      prdata   : out std_logic_vector(31 downto 0);
      pready   : out std_logic;
      pslverr  : out std_logic;
      irq      : out std_logic;
      spi_sclk : out std_logic;
      spi_mosi : out std_logic;
      spi_miso : in  std_logic;
      spi_cs_n : out std_logic_vector(3 downto 0)
    );
  end component;

end package apb_serial_master_pkg;
