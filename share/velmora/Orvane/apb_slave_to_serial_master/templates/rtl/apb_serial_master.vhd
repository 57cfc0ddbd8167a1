-- APB3 slave without wait states: registers, FIFOs and interrupts in front of the serial engine.

library ieee;
use ieee.std_logic_1164.all;
use ieee.numeric_std.all;

use work.apb_serial_master_pkg.all;

entity apb_serial_master is
  port (
    -- APB3 slave
    pclk     : in  std_logic;
    presetn  : in  std_logic;  -- asynchronous
    psel     : in  std_logic;
    penable  : in  std_logic;
    pwrite   : in  std_logic;
    paddr    : in  std_logic_vector(7 downto 0);
    pwdata   : in  std_logic_vector(31 downto 0);
    prdata   : out std_logic_vector(31 downto 0);
    pready   : out std_logic;
    pslverr  : out std_logic;
    -- interrupt, active high
    irq      : out std_logic;
    -- serial master
    spi_sclk : out std_logic;
    spi_mosi : out std_logic;
    spi_miso : in  std_logic;
    spi_cs_n : out std_logic_vector(3 downto 0)
  );
end entity apb_serial_master;

architecture rtl of apb_serial_master is

  -- configuration registers
  signal enable      : std_logic;
  signal cpha        : std_logic;
  signal cpol        : std_logic;
  signal lsb_first   : std_logic;
  signal loopback    : std_logic;
  signal wlen        : std_logic_vector(CTRL_WLEN_HIGH - CTRL_WLEN_LOW downto 0);
  signal divider     : std_logic_vector(DIV_DIVIDER_HIGH downto DIV_DIVIDER_LOW);
  signal line_select : std_logic_vector(CS_SELECT_HIGH downto CS_SELECT_LOW);
  signal line_auto   : std_logic;

  -- interrupts, bits as in INT_STATUS
  subtype events_t is std_logic_vector(INT_STATUS_RX_UNDERFLOW downto INT_STATUS_DONE);
  signal int_enable : events_t;
  signal int_status : events_t;
  signal int_sticky : events_t;
  signal int_set    : events_t;
  signal int_clear  : events_t;

  -- bus access, each active for the one cycle before the edge at which it takes effect
  signal refused          : std_logic;
  signal write_ctrl       : std_logic;
  signal write_div        : std_logic;
  signal write_cs         : std_logic;
  signal write_int_enable : std_logic;
  signal write_int_status : std_logic;
  signal write_fifo_ctrl  : std_logic;
  signal tx_push          : std_logic;
  signal rx_pop           : std_logic;
  signal tx_flush         : std_logic;
  signal rx_flush         : std_logic;

  -- FIFOs and engine
  signal tx_word   : std_logic_vector(WORD_WIDTH - 1 downto 0);
  signal tx_take   : std_logic;
  signal tx_empty  : std_logic;
  signal tx_full   : std_logic;
  signal tx_level  : std_logic_vector(4 downto 0);
  signal rx_word   : std_logic_vector(WORD_WIDTH - 1 downto 0);
  signal rx_push   : std_logic;
  signal rx_head   : std_logic_vector(WORD_WIDTH - 1 downto 0);
  signal rx_empty  : std_logic;
  signal rx_full   : std_logic;
  signal rx_level  : std_logic_vector(4 downto 0);
  signal busy      : std_logic;
  signal finishing : std_logic;

  function goes_to(offset : integer; address : std_logic_vector) return boolean is
  begin
    return address = std_logic_vector(to_unsigned(offset, address'length));
  end function;

begin

  pready  <= '1';
  pslverr <= refused;

  -- An address that is not a multiple of 4 equals no offset and is refused like any unknown one.
  -- Chains of comparisons, here and below: the offsets are numbers, which are no choices of a case over the address.
  decode : process (psel, penable, pwrite, paddr, tx_full, rx_empty)
  begin
    refused          <= '0';
    write_ctrl       <= '0';
    write_div        <= '0';
    write_cs         <= '0';
    write_int_enable <= '0';
    write_int_status <= '0';
    write_fifo_ctrl  <= '0';
    tx_push          <= '0';
    rx_pop           <= '0';

    if psel = '1' and penable = '1' then
      if goes_to(REG_ID, paddr) or goes_to(REG_STATUS, paddr) then
        refused <= pwrite;
      elsif goes_to(REG_CTRL, paddr) then
        write_ctrl <= pwrite;
      elsif goes_to(REG_DIV, paddr) then
        write_div <= pwrite;
      elsif goes_to(REG_CS, paddr) then
        write_cs <= pwrite;
      elsif goes_to(REG_TXDATA, paddr) then
        tx_push <= pwrite;
        refused <= pwrite and tx_full;
      elsif goes_to(REG_RXDATA, paddr) then
        rx_pop  <= not pwrite;
        refused <= pwrite or rx_empty;
      elsif goes_to(REG_INT_ENABLE, paddr) then
        write_int_enable <= pwrite;
      elsif goes_to(REG_INT_STATUS, paddr) then
        write_int_status <= pwrite;
      elsif goes_to(REG_FIFO_CTRL, paddr) then
        write_fifo_ctrl <= pwrite;
      else
        refused <= '1';
      end if;
    end if;
  end process decode;

  tx_flush <= write_fifo_ctrl and pwdata(FIFO_CTRL_FLUSH_TX);
  rx_flush <= write_fifo_ctrl and pwdata(FIFO_CTRL_FLUSH_RX);

  -- A refused read returns 0: no unknown address has a branch here, and an empty RX FIFO gives 0.
  read_mux : process (psel, penable, pwrite, paddr, enable, cpha, cpol, lsb_first, loopback, wlen, divider,
                      line_select, line_auto, rx_head, busy, tx_empty, tx_full, tx_level, rx_empty, rx_full,
                      rx_level, int_enable, int_status)
    variable value : std_logic_vector(31 downto 0);
  begin
    value := (others => '0');
    if psel = '1' and penable = '1' and pwrite = '0' then
      if goes_to(REG_ID, paddr) then
        value := RESET_ID;
      elsif goes_to(REG_CTRL, paddr) then
        value(CTRL_ENABLE)                         := enable;
        value(CTRL_CPHA)                           := cpha;
        value(CTRL_CPOL)                           := cpol;
        value(CTRL_LSB_FIRST)                      := lsb_first;
        value(CTRL_LOOPBACK)                       := loopback;
        value(CTRL_WLEN_HIGH downto CTRL_WLEN_LOW) := wlen;
      elsif goes_to(REG_DIV, paddr) then
        value(divider'range) := divider;
      elsif goes_to(REG_CS, paddr) then
        value(line_select'range) := line_select;
        value(CS_AUTO)           := line_auto;
      elsif goes_to(REG_RXDATA, paddr) and rx_empty = '0' then
        value := rx_head;
      elsif goes_to(REG_STATUS, paddr) then
        value(STATUS_BUSY)                                     := busy;
        value(STATUS_TX_EMPTY)                                 := tx_empty;
        value(STATUS_TX_FULL)                                  := tx_full;
        value(STATUS_RX_EMPTY)                                 := rx_empty;
        value(STATUS_RX_FULL)                                  := rx_full;
        value(STATUS_TX_LEVEL_HIGH downto STATUS_TX_LEVEL_LOW) := tx_level;
        value(STATUS_RX_LEVEL_HIGH downto STATUS_RX_LEVEL_LOW) := rx_level;
      elsif goes_to(REG_INT_ENABLE, paddr) then
        value(int_enable'range) := int_enable;
      elsif goes_to(REG_INT_STATUS, paddr) then
        value(int_status'range) := int_status;
      end if;
    end if;
    prdata <= value;
  end process read_mux;

  configuration_registers : process (pclk, presetn)
  begin
    if presetn = '0' then
      enable      <= RESET_CTRL(CTRL_ENABLE);
      cpha        <= RESET_CTRL(CTRL_CPHA);
      cpol        <= RESET_CTRL(CTRL_CPOL);
      lsb_first   <= RESET_CTRL(CTRL_LSB_FIRST);
      loopback    <= RESET_CTRL(CTRL_LOOPBACK);
      wlen        <= RESET_CTRL(CTRL_WLEN_HIGH downto CTRL_WLEN_LOW);
      divider     <= RESET_DIV(divider'range);
      line_select <= RESET_CS(line_select'range);
      line_auto   <= RESET_CS(CS_AUTO);
      int_enable  <= RESET_INT_ENABLE(int_enable'range);
    elsif rising_edge(pclk) then
      if write_ctrl = '1' then
        enable    <= pwdata(CTRL_ENABLE);
        cpha      <= pwdata(CTRL_CPHA);
        cpol      <= pwdata(CTRL_CPOL);
        lsb_first <= pwdata(CTRL_LSB_FIRST);
        loopback  <= pwdata(CTRL_LOOPBACK);
        wlen      <= pwdata(CTRL_WLEN_HIGH downto CTRL_WLEN_LOW);
      end if;
      if write_div = '1' then
        divider <= pwdata(divider'range);
      end if;
      if write_cs = '1' then
        line_select <= pwdata(line_select'range);
        line_auto   <= pwdata(CS_AUTO);
      end if;
      if write_int_enable = '1' then
        int_enable <= pwdata(int_enable'range);
      end if;
    end if;
  end process configuration_registers;

  int_set(INT_STATUS_DONE)         <= finishing;
  int_set(INT_STATUS_RX_AVAIL)     <= '0';  -- a level, see int_status
  int_set(INT_STATUS_TX_OVERFLOW)  <= tx_push and tx_full;
  int_set(INT_STATUS_RX_OVERRUN)   <= rx_push and rx_full;
  int_set(INT_STATUS_RX_UNDERFLOW) <= rx_pop and rx_empty;

  int_clear <= pwdata(int_clear'range) when write_int_status = '1' else (others => '0');

  -- An event that comes while software clears its bit is kept.
  interrupts : process (pclk, presetn)
  begin
    if presetn = '0' then
      int_sticky <= RESET_INT_STATUS(int_sticky'range);
      irq        <= '0';
    elsif rising_edge(pclk) then
      int_sticky <= (int_sticky and not int_clear) or int_set;
      irq        <= '0';
      for i in int_status'range loop
        if int_status(i) = '1' and int_enable(i) = '1' then
          irq <= '1';
        end if;
      end loop;
    end if;
  end process interrupts;

  int_status_bits : process (int_sticky, rx_empty)
  begin
    int_status                      <= int_sticky;
    int_status(INT_STATUS_RX_AVAIL) <= not rx_empty;
  end process int_status_bits;

  transmit_words : entity work.apb_serial_master_fifo
    port map (
      clk       => pclk,
      reset_n   => presetn,
      flush     => tx_flush,
      push      => tx_push,
      push_word => pwdata,
      pop       => tx_take,
      head      => tx_word,
      empty     => tx_empty,
      full      => tx_full,
      level     => tx_level
    );

  receive_words : entity work.apb_serial_master_fifo
    port map (
      clk       => pclk,
      reset_n   => presetn,
      flush     => rx_flush,
      push      => rx_push,
      push_word => rx_word,
      pop       => rx_pop,
      head      => rx_head,
      empty     => rx_empty,
      full      => rx_full,
      level     => rx_level
    );

  serial_side : entity work.apb_serial_master_engine
    port map (
      clk         => pclk,
      reset_n     => presetn,
      enable      => enable,
      cpha        => cpha,
      cpol        => cpol,
      lsb_first   => lsb_first,
      loopback    => loopback,
      wlen        => wlen,
      divider     => divider,
      line_select => line_select,
      line_auto   => line_auto,
      tx_word     => tx_word,
      tx_empty    => tx_empty,
      tx_take     => tx_take,
      rx_word     => rx_word,
      rx_push     => rx_push,
      busy        => busy,
      finishing   => finishing,
      spi_sclk    => spi_sclk,
      spi_mosi    => spi_mosi,
      spi_miso    => spi_miso,
      spi_cs_n    => spi_cs_n
    );

end architecture rtl;
