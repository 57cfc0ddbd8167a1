-- Self-checking test bench: registers and errors, loopback in several word lengths, and a serial slave in
-- all four modes. It ends by itself; the last message says that everything passed.

library ieee;
use ieee.std_logic_1164.all;
use ieee.numeric_std.all;

use work.apb_serial_master_pkg.all;

entity tb_apb_serial_master is
end entity tb_apb_serial_master;

architecture test of tb_apb_serial_master is

  -- VHDL-93 does not bind a component that comes from a package by its name alone.
  for dut : work.apb_serial_master_pkg.apb_serial_master use entity work.apb_serial_master;

  constant CLOCK_PERIOD : time := 10 ns;

  subtype bus_word_t is std_logic_vector(31 downto 0);

  constant SLAVE_FIRST_REPLY : bus_word_t := x"A5C30F96";

  -- One set-up of the serial side, shared by the stimulus and the model of the slave.
  type setup_t is record
    cpha        : std_logic;
    cpol        : std_logic;
    lsb_first   : std_logic;
    loopback    : std_logic;
    word_length : integer;
  end record;

  signal setup        : setup_t := ('0', '0', '0', '0', 8);
  signal all_finished : boolean := false;
  signal slave_word   : bus_word_t;

  signal pclk     : std_logic := '0';
  signal presetn  : std_logic := '0';
  signal psel     : std_logic := '0';
  signal penable  : std_logic := '0';
  signal pwrite   : std_logic := '0';
  signal paddr    : std_logic_vector(7 downto 0) := (others => '0');
  signal pwdata   : bus_word_t := (others => '0');
  signal prdata   : bus_word_t;
  signal pready   : std_logic;
  signal pslverr  : std_logic;
  signal irq      : std_logic;
  signal spi_sclk : std_logic;
  signal spi_mosi : std_logic;
  signal spi_miso : std_logic := '0';
  signal spi_cs_n : std_logic_vector(LINE_COUNT - 1 downto 0);

  -- The word cut to its lowest bits, as it comes back from a word_length-bit transfer.
  function cut(word : bus_word_t; word_length : integer) return bus_word_t is
    variable result : bus_word_t := (others => '0');
  begin
    result(word_length - 1 downto 0) := word(word_length - 1 downto 0);
    return result;
  end function;

  -- Place in the word of the bit that travels as number position, from 0.
  function place(position : integer; setting : setup_t) return integer is
  begin
    if setting.lsb_first = '1' then
      return position;
    end if;
    return setting.word_length - 1 - position;
  end function;

  function bit_mask(position : integer) return bus_word_t is
    variable result : bus_word_t := (others => '0');
  begin
    result(position) := '1';
    return result;
  end function;

begin

  dut : component work.apb_serial_master_pkg.apb_serial_master
    port map (
      pclk     => pclk,
      presetn  => presetn,
      psel     => psel,
      penable  => penable,
      pwrite   => pwrite,
      paddr    => paddr,
      pwdata   => pwdata,
      prdata   => prdata,
      pready   => pready,
      pslverr  => pslverr,
      irq      => irq,
      spi_sclk => spi_sclk,
      spi_mosi => spi_mosi,
      spi_miso => spi_miso,
      spi_cs_n => spi_cs_n
    );

  clock : process
  begin
    while not all_finished loop
      pclk <= '0';
      wait for CLOCK_PERIOD / 2;
      pclk <= '1';
      wait for CLOCK_PERIOD / 2;
    end loop;
    wait;
  end process clock;

  -- Slave on line 0: answers the first word of a burst with a fixed word and each further one with the
  -- complement of the word before.
  slave : process (spi_cs_n(0), spi_sclk)
    variable position : integer range 0 to WORD_WIDTH - 1;
    variable received : bus_word_t;
    variable reply    : bus_word_t;
    variable leading  : boolean;
  begin
    if spi_cs_n(0) /= '0' then
      null;
    elsif spi_cs_n(0)'event then
      position := 0;
      received := (others => '0');
      reply    := SLAVE_FIRST_REPLY;
      if setup.cpha = '0' then
        spi_miso <= reply(place(0, setup));
      end if;
    elsif spi_sclk'event then
      leading := spi_sclk /= setup.cpol;
      if leading = (setup.cpha = '0') then
        received(place(position, setup)) := spi_mosi;
        position := (position + 1) mod setup.word_length;
        if position = 0 then
          slave_word <= received;
          reply      := not received;
        end if;
      else
        spi_miso <= reply(place(position, setup));
      end if;
    end if;
  end process slave;

  stimulus : process

    -- One APB access; expect_error is the pslverr that belongs to it.
    procedure bus_access(write_access : std_logic; address : integer; expect_error : std_logic) is
    begin
      psel    <= '1';
      penable <= '0';
      pwrite  <= write_access;
      paddr   <= std_logic_vector(to_unsigned(address, paddr'length));
      wait until rising_edge(pclk);
      penable <= '1';
      wait until rising_edge(pclk);
      assert pready = '1' report "pready is not 1" severity failure;
      assert pslverr = expect_error
        report "wrong pslverr at address " & integer'image(address) severity failure;
      psel    <= '0';
      penable <= '0';
    end procedure;

    procedure bus_write(address : integer; data : bus_word_t; expect_error : std_logic := '0') is
    begin
      pwdata <= data;
      bus_access('1', address, expect_error);
    end procedure;

    procedure expect_read(address : integer; data : bus_word_t; expect_error : std_logic := '0') is
    begin
      bus_access('0', address, expect_error);
      assert prdata = data report "wrong data at address " & integer'image(address) severity failure;
    end procedure;

    procedure wait_while_busy is
    begin
      loop
        bus_access('0', REG_STATUS, '0');
        exit when prdata(STATUS_BUSY) = '0' and prdata(STATUS_TX_EMPTY) = '1';
      end loop;
    end procedure;

    -- Sets the serial side up with line 0 selected and leaves it disabled.
    procedure configure(setting : setup_t; divider : integer) is
      variable control : bus_word_t := (others => '0');
    begin
      setup                   <= setting;
      control(CTRL_CPHA)      := setting.cpha;
      control(CTRL_CPOL)      := setting.cpol;
      control(CTRL_LSB_FIRST) := setting.lsb_first;
      control(CTRL_LOOPBACK)  := setting.loopback;
      control(CTRL_WLEN_HIGH downto CTRL_WLEN_LOW) :=
        std_logic_vector(to_unsigned(setting.word_length - 1, CTRL_WLEN_HIGH - CTRL_WLEN_LOW + 1));
      bus_write(REG_CTRL, control);
      bus_write(REG_DIV, std_logic_vector(to_unsigned(divider, 32)));
      bus_write(REG_CS, bit_mask(CS_AUTO) or bit_mask(CS_SELECT_LOW));
    end procedure;

    -- Changes ENABLE alone.
    procedure set_enable(value : std_logic) is
      variable control : bus_word_t;
    begin
      bus_access('0', REG_CTRL, '0');
      control              := prdata;
      control(CTRL_ENABLE) := value;
      bus_write(REG_CTRL, control);
    end procedure;

    -- Word number index of a test; every word differs from its neighbours in many bits.
    function test_word(index : integer) return bus_word_t is
    begin
      return std_logic_vector(rotate_left(unsigned'(x"1B7E42D9"), 5 * index));
    end function;

    -- Sends count words as one burst and checks what comes back.
    procedure transfer(setting : setup_t; divider : integer; count : integer) is
      variable expected : bus_word_t;
    begin
      configure(setting, divider);
      for i in 0 to count - 1 loop
        bus_write(REG_TXDATA, test_word(i));
      end loop;
      set_enable('1');
      wait_while_busy;
      for i in 0 to count - 1 loop
        if setting.loopback = '1' then
          expected := test_word(i);
        elsif i = 0 then
          expected := SLAVE_FIRST_REPLY;
        else
          expected := not test_word(i - 1);
        end if;
        expect_read(REG_RXDATA, cut(expected, setting.word_length));
      end loop;
      if setting.loopback = '0' then
        assert slave_word = cut(test_word(count - 1), setting.word_length)
          report "wrong word at the slave" severity failure;
      end if;
      set_enable('0');
    end procedure;

    procedure check_registers is
    begin
      expect_read(REG_ID, RESET_ID);
      expect_read(REG_CTRL, RESET_CTRL);
      expect_read(REG_DIV, RESET_DIV);
      expect_read(REG_CS, RESET_CS);
      expect_read(REG_STATUS, RESET_STATUS);
      expect_read(REG_INT_ENABLE, RESET_INT_ENABLE);
      expect_read(REG_INT_STATUS, RESET_INT_STATUS);
      expect_read(REG_TXDATA, x"00000000");
      expect_read(REG_FIFO_CTRL, x"00000000");

      bus_write(REG_ID, x"FFFFFFFF", expect_error => '1');
      bus_write(REG_STATUS, x"FFFFFFFF", expect_error => '1');
      bus_write(REG_DIV + 2, x"FFFFFFFF", expect_error => '1');
      expect_read(REG_FIFO_CTRL + 4, x"00000000", expect_error => '1');
      expect_read(REG_DIV, RESET_DIV);

      bus_write(REG_CS, x"FFFFFFFF");
      expect_read(REG_CS, x"0000010F");
      bus_write(REG_CS, RESET_CS);
    end procedure;

    procedure check_fifos is
    begin
      for i in 0 to FIFO_DEPTH - 1 loop
        bus_write(REG_TXDATA, test_word(i));
      end loop;
      expect_read(REG_STATUS, x"0000100C");
      bus_write(REG_TXDATA, x"00000000", expect_error => '1');
      expect_read(REG_RXDATA, x"00000000", expect_error => '1');
      expect_read(REG_INT_STATUS, bit_mask(INT_STATUS_TX_OVERFLOW) or bit_mask(INT_STATUS_RX_UNDERFLOW));
      bus_write(REG_FIFO_CTRL, bit_mask(FIFO_CTRL_FLUSH_TX));
      expect_read(REG_STATUS, RESET_STATUS);
      bus_write(REG_INT_STATUS, x"FFFFFFFF");
      expect_read(REG_INT_STATUS, RESET_INT_STATUS);
    end procedure;

    procedure check_interrupt is
    begin
      bus_write(REG_INT_STATUS, x"FFFFFFFF");
      bus_write(REG_INT_ENABLE, bit_mask(INT_STATUS_DONE));
      transfer(('0', '0', '0', '1', 8), divider => 1, count => 1);
      assert irq = '1' report "irq missing after a burst" severity failure;
      bus_write(REG_INT_STATUS, bit_mask(INT_STATUS_DONE));
      wait until rising_edge(pclk);
      wait until rising_edge(pclk);
      assert irq = '0' report "irq not cleared" severity failure;
    end procedure;

    constant LEVELS : std_logic_vector(0 to 1) := "01";

  begin
    wait for 4 * CLOCK_PERIOD;
    wait until rising_edge(pclk);
    presetn <= '1';
    wait until rising_edge(pclk);

    check_registers;
    check_fifos;
    check_interrupt;

    for word_length in 1 to WORD_WIDTH loop
      transfer(('1', '0', LEVELS(word_length mod 2), '1', word_length), divider => 0, count => 3);
    end loop;

    for cpol in LEVELS'range loop
      for cpha in LEVELS'range loop
        for order in LEVELS'range loop
          transfer((LEVELS(cpha), LEVELS(cpol), LEVELS(order), '0', 8), divider => 0, count => FIFO_DEPTH);
          transfer((LEVELS(cpha), LEVELS(cpol), LEVELS(order), '0', 1), divider => 1, count => 5);
          transfer((LEVELS(cpha), LEVELS(cpol), LEVELS(order), '0', 32), divider => 2, count => 4);
        end loop;
      end loop;
    end loop;

    report "tb_apb_serial_master: PASSED";
    all_finished <= true;
    wait;
  end process stimulus;

end architecture test;
