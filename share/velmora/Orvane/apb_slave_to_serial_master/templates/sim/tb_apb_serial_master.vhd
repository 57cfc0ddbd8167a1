-- Compares the bridge with a model of it at every clock. Simulate tb_apb_serial_master: it reports PASSED at its end, or stops
-- with a failure at the first difference.

library ieee;
use ieee.math_real.all;
use ieee.numeric_std.all;
use ieee.std_logic_1164.all;

entity tb_apb_serial_master is
end entity tb_apb_serial_master;

architecture test of tb_apb_serial_master is

  -- VHDL-93 does not bind a component that comes from a package by its name alone.
  for device : work.apb_serial_master_pkg.apb_serial_master use entity work.apb_serial_master;

  subtype word is std_logic_vector(31 downto 0);
  type word_list is array (natural range <>) of word;

  constant ZERO       : word     := (others => '0');
  constant FIFO_DEPTH : positive := 16;

  -- The register map, told once more, so that a wrong number in the package of the design shows.
  constant ID         : natural := 16#00#;
  constant CTRL       : natural := 16#04#;
  constant DIV        : natural := 16#08#;
  constant CS         : natural := 16#0C#;
  constant TXDATA     : natural := 16#10#;
  constant RXDATA     : natural := 16#14#;
  constant STATUS     : natural := 16#18#;
  constant INT_ENABLE : natural := 16#1C#;
  constant INT_STATUS : natural := 16#20#;
  constant FIFO_CTRL  : natural := 16#24#;

  -- What can be written to the registers that keep it, and what they hold after a reset.
  constant FIELDS : word_list(ID to FIFO_CTRL) :=
    (CTRL => x"00001F1F", DIV => x"0000FFFF", CS => x"0000010F", INT_ENABLE => x"0000001F", others => ZERO);
  constant RESET_VALUES : word_list(ID to FIFO_CTRL) := (CTRL => x"00000700", CS => x"00000100", others => ZERO);

  -- bits of CTRL
  constant ENABLE    : natural := 0;
  constant CPHA      : natural := 1;
  constant CPOL      : natural := 2;
  constant LSB_FIRST : natural := 3;
  constant LOOPBACK  : natural := 4;

  -- a bit of CS
  constant AUTO : natural := 8;

  -- bits of INT_STATUS and INT_ENABLE
  constant DONE         : natural := 0;
  constant RX_AVAIL     : natural := 1;
  constant TX_OVERFLOW  : natural := 2;
  constant RX_OVERRUN   : natural := 3;
  constant RX_UNDERFLOW : natural := 4;

  -- bits of FIFO_CTRL
  constant FLUSH_TX : natural := 0;
  constant FLUSH_RX : natural := 1;

  signal pclk, presetn, psel, penable, pwrite : std_logic := '0';
  signal pready, pslverr, irq                 : std_logic;
  signal paddr                                : std_logic_vector(7 downto 0) := (others => '0');
  signal pwdata                               : word := ZERO;
  signal prdata                               : word;
  signal spi_sclk, spi_mosi                   : std_logic;
  signal spi_miso                             : std_logic := '0';
  signal spi_cs_n                             : std_logic_vector(3 downto 0);

  signal check_count : natural := 0;
  signal is_done     : boolean := false;

  type bit_list is array (boolean) of std_logic;
  constant TO_BIT : bit_list := ('0', '1');

begin

  device : component work.apb_serial_master_pkg.apb_serial_master
    port map (
      pclk => pclk, presetn => presetn, psel => psel, penable => penable, pwrite => pwrite, paddr => paddr, pwdata => pwdata,
      prdata => prdata, pready => pready, pslverr => pslverr, irq => irq,
      spi_sclk => spi_sclk, spi_mosi => spi_mosi, spi_miso => spi_miso, spi_cs_n => spi_cs_n
    );

  -- What the bridge has to do. At every edge the outputs are compared with what the state before it demands; then all changes,
  -- judged by what was before the edge.
  model : process (pclk)

    type fifo is record
      words : word_list(0 to FIFO_DEPTH - 1);  -- the oldest first
      level : natural range 0 to FIFO_DEPTH;
    end record;

    variable held        : word_list(ID to FIFO_CTRL);
    variable events      : word;  -- bits of INT_STATUS, without RX_AVAIL
    variable tx, rx      : fifo;
    variable is_busy     : boolean;  -- a burst or its closing time is running
    variable is_sending  : boolean;  -- a word is on the line
    variable since       : natural;  -- clocks since that was taken, or since the last edge of the burst
    variable sent        : word;  -- the word on the line
    variable received    : word;  -- what comes in its place
    variable has_arrived : boolean;  -- received is complete, and goes into the FIFO at this edge
    variable sclk, mosi  : std_logic;
    variable lines       : std_logic_vector(3 downto 0);  -- 1: low
    variable raised      : std_logic;  -- irq

    variable word_length       : positive;
    variable half_period       : positive;  -- of SCLK, in clocks
    variable address           : natural range 0 to 255;
    variable is_read, is_write : boolean;
    variable word_waits        : boolean;  -- and may be sent
    variable rests             : boolean;  -- SCLK is at its idle level
    variable is_open           : boolean;  -- lines may be low
    variable tx_full, rx_full  : boolean;  -- before this edge
    variable come              : word;  -- events of this edge
    variable count             : natural := 0;

    procedure push(variable into : inout fifo; data : word) is
    begin
      into.words(into.level) := data;
      into.level             := into.level + 1;
    end procedure push;

    procedure pop(variable from : inout fifo) is
    begin
      from.words(0 to FIFO_DEPTH - 2) := from.words(1 to FIFO_DEPTH - 1);
      from.level                      := from.level - 1;
    end procedure pop;

    impure function all_events return word is
      variable data : word := events;
    begin
      data(RX_AVAIL) := TO_BIT(rx.level > 0);
      return data;
    end function all_events;

    impure function is_refused return boolean is
    begin
      case address is
        when ID | STATUS => return is_write;
        when TXDATA      => return is_write and tx.level = FIFO_DEPTH;
        when RXDATA      => return is_write or rx.level = 0;
        when others      => return address mod 4 /= 0 or address > FIFO_CTRL;
      end case;
    end function is_refused;

    impure function read_data return word is
      variable data : word := ZERO;
    begin
      if is_refused then
        return ZERO;
      end if;
      case address is
        when ID         => return x"53504D31";
        when RXDATA     => return rx.words(0);
        when INT_STATUS => return all_events;
        when STATUS =>
          data(0)            := TO_BIT(is_busy);
          data(1)            := TO_BIT(tx.level = 0);
          data(2)            := TO_BIT(tx.level = FIFO_DEPTH);
          data(3)            := TO_BIT(rx.level = 0);
          data(4)            := TO_BIT(rx.level = FIFO_DEPTH);
          data(12 downto 8)  := std_logic_vector(to_unsigned(tx.level, 5));
          data(20 downto 16) := std_logic_vector(to_unsigned(rx.level, 5));
          return data;
        when others => return held(address);
      end case;
    end function read_data;

    -- Where the bit is in the word that travels as number position, from 0.
    impure function place(position : natural) return natural is
    begin
      if held(CTRL)(LSB_FIRST) = '1' then
        return position;
      end if;
      return word_length - 1 - position;
    end function place;

    procedure take_word is
    begin
      is_busy    := true;
      is_sending := true;
      since      := 0;
      sent       := tx.words(0);
      pop(tx);
      if held(CTRL)(CPHA) = '0' then
        mosi := sent(place(0));
      end if;
    end procedure take_word;

    -- The edge of SCLK of that number in the word, from 1; odd ones are leading.
    procedure sclk_edge(number : positive) is
      constant POSITION : natural   := (number - 1) / 2;
      constant LEADING  : std_logic := TO_BIT(number mod 2 = 1);
    begin
      sclk := not sclk;
      if number = 1 then
        received := ZERO;
      end if;
      if LEADING /= held(CTRL)(CPHA) then
        received(place(POSITION)) := (spi_miso and not held(CTRL)(LOOPBACK)) or (mosi and held(CTRL)(LOOPBACK));
      elsif LEADING = '1' then
        mosi := sent(place(POSITION));
      elsif POSITION + 1 < word_length then
        mosi := sent(place(POSITION + 1));
      end if;
      if number = 2 * word_length then
        has_arrived := true;
        is_sending  := false;
        since       := 0;
        if word_waits then
          take_word;
        end if;
      end if;
    end procedure sclk_edge;

    function image(bits : std_logic_vector) return string is
      alias digits  : std_logic_vector(1 to bits'length) is bits;
      variable text : string(1 to bits'length);
    begin
      for i in text'range loop
        text(i) := std_logic'image(digits(i))(2);
      end loop;
      return text;
    end function image;

    procedure compare(name : string; found, expected : std_logic_vector) is
    begin
      assert found = expected
        report "tb_apb_serial_master: at " & integer'image(now / 1 ns) & " ns " & name & " is " & image(found) & ", expected "
          & image(expected)
        severity failure;
      count := count + 1;
    end procedure compare;

    procedure compare(name : string; found, expected : std_logic) is
    begin
      compare(name, std_logic_vector'(0 => found), std_logic_vector'(0 => expected));
    end procedure compare;

  begin
    if rising_edge(pclk) then
      if presetn = '0' then
        held        := RESET_VALUES;
        events      := ZERO;
        tx.level    := 0;
        rx.level    := 0;
        is_busy     := false;
        is_sending  := false;
        has_arrived := false;
        sclk        := '0';
        mosi        := '0';
        lines       := "0000";
        raised      := '0';
      end if;

      address     := to_integer(unsigned(paddr));
      is_read     := psel = '1' and penable = '1' and pwrite = '0';
      is_write    := psel = '1' and penable = '1' and pwrite = '1';
      word_length := to_integer(unsigned(held(CTRL)(12 downto 8))) + 1;
      half_period := to_integer(unsigned(held(DIV)(15 downto 0))) + 1;
      word_waits  := held(CTRL)(ENABLE) = '1' and tx.level > 0;
      rests       := sclk = held(CTRL)(CPOL);
      tx_full     := tx.level = FIFO_DEPTH;
      rx_full     := rx.level = FIFO_DEPTH;

      compare("pready", pready, '1');
      compare("pslverr", pslverr, TO_BIT((is_read or is_write) and is_refused));
      if is_read then
        compare("prdata", prdata, read_data);
      end if;
      compare("irq", irq, raised);
      compare("spi_sclk", spi_sclk, sclk);
      compare("spi_mosi", spi_mosi, mosi);
      compare("spi_cs_n", spi_cs_n, not lines);
    end if;

    if rising_edge(pclk) and presetn = '1' then
      raised := TO_BIT((all_events and held(INT_ENABLE)) /= ZERO);
      come   := ZERO;

      -- A received word comes in one clock after its last edge.
      if is_read and address = RXDATA then
        if rx.level = 0 then
          come(RX_UNDERFLOW) := '1';
        else
          pop(rx);
        end if;
      end if;
      if has_arrived and rx_full then
        come(RX_OVERRUN) := '1';
      elsif has_arrived then
        push(rx, received);
      end if;
      has_arrived := false;

      since := since + 1;
      if not is_busy then
        if word_waits and rests then
          take_word;
        end if;
        sclk := held(CTRL)(CPOL);
      elsif is_sending then
        if since mod half_period = 0 then
          sclk_edge(since / half_period);
        end if;
      elsif since = 2 * half_period then
        is_busy    := false;
        come(DONE) := '1';
      end if;

      -- Lines are low during a burst or while ENABLE = 1. They fall only while SCLK rests.
      is_open := is_sending or (is_busy and since < half_period);
      if held(CS)(AUTO) = '0' then
        is_open := held(CTRL)(ENABLE) = '1' or is_busy;
      end if;
      for i in lines'range loop
        lines(i) := TO_BIT(is_open and held(CS)(i) = '1' and (rests or lines(i) = '1'));
      end loop;

      -- An event wins over its clearing, and a flush over what came into the FIFO at this edge.
      if is_write and address = INT_STATUS then
        events := events and not pwdata;
      elsif is_write and address = TXDATA and tx_full then
        come(TX_OVERFLOW) := '1';
      elsif is_write and address = TXDATA then
        push(tx, pwdata);
      elsif is_write and address = FIFO_CTRL then
        if pwdata(FLUSH_TX) = '1' then
          tx.level := 0;
        end if;
        if pwdata(FLUSH_RX) = '1' then
          rx.level := 0;
        end if;
      elsif is_write and not is_refused then
        held(address) := pwdata and FIELDS(address);
      end if;
      events := events or come;
    end if;
    check_count <= count;
  end process model;

  clock : process
  begin
    while not is_done loop
      wait for 5 ns;
      pclk <= not pclk;
    end loop;
    wait;
  end process clock;

  -- Inputs change 1 ns after an edge. MISO is random in every clock.
  stimulus : process

    variable seed_1  : positive := 20011;
    variable seed_2  : positive := 4711;
    variable control : natural;  -- what CTRL is set to, with ENABLE = 0

    -- A number from 0 to limit - 1.
    impure function random(limit : positive) return natural is
      variable number : real;
    begin
      uniform(seed_1, seed_2, number);
      return integer(floor(number * real(limit)));
    end function random;

    impure function random_word return word is
    begin
      return std_logic_vector(to_unsigned(random(2**16), 16)) & std_logic_vector(to_unsigned(random(2**16), 16));
    end function random_word;

    procedure wait_clocks(number : natural) is
    begin
      for i in 1 to number loop
        spi_miso <= TO_BIT(random(2) = 1);
        wait until rising_edge(pclk);
        wait for 1 ns;
      end loop;
    end procedure wait_clocks;

    -- Between accesses penable means nothing, nor do address and data, which stay.
    procedure idle(clocks : natural) is
    begin
      psel    <= '0';
      penable <= TO_BIT(random(2) = 1);
      wait_clocks(clocks);
    end procedure idle;

    -- Without penable it is none.
    procedure access_bus(address : natural; data : word; direction, enabled : std_logic) is
    begin
      psel    <= '1';
      penable <= '0';
      pwrite  <= direction;
      paddr   <= std_logic_vector(to_unsigned(address, 8));
      pwdata  <= data;
      wait_clocks(1);
      penable <= enabled;
      wait_clocks(1);
      psel <= '0';
    end procedure access_bus;

    procedure write(address, data : natural) is
    begin
      access_bus(address, std_logic_vector(to_unsigned(data, 32)), '1', '1');
    end procedure write;

    procedure write_random(address : natural) is
    begin
      access_bus(address, random_word, '1', '1');
    end procedure write_random;

    procedure read(address : natural) is
    begin
      access_bus(address, random_word, '0', '1');
    end procedure read;

    procedure reset is
    begin
      presetn <= '0';
      idle(2);
      presetn <= '1';
    end procedure reset;

    -- The mode holds bits 4 to 0 of CTRL.
    procedure configure(mode, length, half_period, lines : natural) is
    begin
      control := mode + (length - 1) * 2**8;
      write(CTRL, control);
      write(DIV, half_period - 1);
      write(CS, lines);
    end procedure configure;

    -- Pops the words and one more, and reads and clears the events.
    procedure read_all(words : natural) is
    begin
      for i in 0 to words loop
        read(RXDATA);
        idle(random(2));
      end loop;
      read(STATUS);
      read(INT_STATUS);
      write_random(INT_STATUS);
      read(INT_STATUS);
    end procedure read_all;

    -- Every address, and clocks with psel but without penable, which are no accesses. ENABLE stays 0.
    procedure check_registers is
      variable data : word;
    begin
      for round in 0 to 2 loop
        for address in 0 to 255 loop
          if round > 0 then
            data         := random_word;
            data(ENABLE) := '0';
            access_bus(address, data, '1', '1');
            access_bus(address, not data, '1', '0');
          end if;
          read(address);
          read(4 * random(10));
        end loop;
      end loop;
    end procedure check_registers;

    -- More words than the FIFOs hold, then words that come and go as fast as they can.
    procedure check_fifos is
    begin
      for phase in 0 to 1 loop
        configure(0, 1 + 3 * phase, 1, 16#10F#);
        for i in 0 to FIFO_DEPTH loop
          write_random(TXDATA);
          read(STATUS);
        end loop;
        write(CTRL, control + 1);
        idle(phase);
        for i in 1 to 6 loop
          write_random(TXDATA);
        end loop;
        for i in 1 to 8 - 4 * phase loop
          read(RXDATA);
        end loop;
        idle(200);
        read_all(FIFO_DEPTH);
      end loop;
    end procedure check_fifos;

    -- Words that come and go at random, with one interrupt enabled; bursts form as they come. CPOL changes with ENABLE.
    procedure check_stream(mode, length, half_period, lines, words : natural) is
      constant WORD_CLOCKS : natural := 2 * (length + 2) * half_period;
    begin
      configure(mode, length, half_period, lines);
      write(INT_ENABLE, 2**random(5));
      write_random(TXDATA);
      control := control - mode + (mode + 2**CPOL) mod 2**5;
      write(CTRL, control + 1);
      for i in 2 to words loop
        read(STATUS);
        for j in 1 to random(4) loop
          read(RXDATA + 4 * random(4));
          idle(random(2) * random(WORD_CLOCKS));
        end loop;
        write_random(TXDATA);
        if random(5) = 0 then
          write_random(INT_STATUS);
        end if;
      end loop;
      read(STATUS);
      idle(words * WORD_CLOCKS);
      write(CTRL, control);
      read_all(FIFO_DEPTH);
    end procedure check_stream;

    -- One access, or a reset, moves clock by clock over all that happens in the first and the last words of a burst.
    procedure check_coincidences(mode, length, half_period, lines : natural) is
      type scan is record
        words   : positive;
        action  : character;  -- read, write, set ENABLE to 0, reset
        address : natural;
        data    : natural;
      end record;
      type scan_list is array (positive range <>) of scan;
      constant LONG        : positive  := FIFO_DEPTH + 1;
      constant SCANS       : scan_list := (
        (2, 'w', FIFO_CTRL, 1), (2, 'w', FIFO_CTRL, 2), (2, 'w', FIFO_CTRL, 16#7FFFFFFC#), (1, 'w', INT_STATUS, 16#1F#),
        (2, 'r', INT_STATUS, 0), (1, 'r', STATUS, 0), (1, 'r', RXDATA, 0), (LONG, 'w', TXDATA, 16#1234567#),
        (LONG, 'w', INT_STATUS, 2**RX_OVERRUN), (LONG, 'r', RXDATA, 0), (2, 'e', 0, 0), (2, '-', 0, 0));
      constant WORD_CLOCKS : positive  := 2 * length * half_period;
      variable last        : natural;
    begin
      for i in SCANS'range loop
        last := SCANS(i).words * WORD_CLOCKS + 2 * half_period + 3;
        for clocks in 0 to last loop
          next when clocks > 2 * WORD_CLOCKS and clocks < last - 2 * WORD_CLOCKS;
          reset;
          configure(mode, length, half_period, lines);
          write_random(INT_ENABLE);
          for number in 1 to SCANS(i).words loop
            if number = LONG then
              write(CTRL, control + 1);
            end if;
            write_random(TXDATA);
          end loop;
          write(CTRL, control + 1);
          idle(clocks);
          case SCANS(i).action is
            when 'w'    => write(SCANS(i).address, SCANS(i).data);
            when 'r'    => read(SCANS(i).address);
            when 'e'    => write(CTRL, control);
            when others => reset;
          end case;
          idle(last - clocks + WORD_CLOCKS);
          write(CTRL, control + 1);
          idle(3 * WORD_CLOCKS + 4 * half_period);
          read_all(SCANS(i).words);
        end loop;
      end loop;
    end procedure check_coincidences;

  begin
    reset;
    assert work.apb_serial_master_pkg.RESET_STATUS = x"0000000A"
      report "tb_apb_serial_master: RESET_STATUS of the package is wrong" severity failure;
    check_registers;
    reset;
    check_fifos;
    check_coincidences(0, 3, 1, 16#101#);
    check_coincidences(2**CPHA + 2**CPOL, 2, 2, 16#008#);
    for length in 1 to 32 loop
      check_stream(2 * random(16), length, 1 + random(4), 2**AUTO * random(2) + 2**random(4), 3);
    end loop;
    for mode in 0 to 7 loop
      check_stream(2 * mode, 1 + random(32), 1 + random(4), 2**AUTO * random(2) + random(16), 20);
    end loop;
    check_stream(2**LOOPBACK, 1, 16#156#, 16#104#, 1);
    check_stream(2**CPHA, 1, 16#AAAB#, 16#108#, 1);

    report "tb_apb_serial_master: PASSED (" & integer'image(check_count) & " checks)";
    is_done <= true;
    wait;
  end process stimulus;

end architecture test;
