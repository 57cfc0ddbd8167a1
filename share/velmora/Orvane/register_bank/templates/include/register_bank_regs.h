#ifndef REGISTER_BANK_REGS_H
#define REGISTER_BANK_REGS_H

#include <stdint.h>

/* Of each register: byte offset, bits, mask of these bits, value after reset. */

/* REGISTER DEFINITIONS */

/* The registers in memory: a pointer to this at the base address. Accesses are of 32 bits. */
typedef struct {
/* REGISTER MEMBERS */
} register_bank_regs_t;

#endif
