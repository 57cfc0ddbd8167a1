// Byte offset of each register.

`ifndef APB_SERIAL_MASTER_REGS_VH
`define APB_SERIAL_MASTER_REGS_VH

// REGISTER DEFINITIONS

`endif
