/* limiter_tables.S: places the generated curves. The release curve is the last of the initialised
   data, so that its length decides the length of the file byte for byte (see build_payload.py). */

    .macro table name, file, alignment
    .balign \alignment
    .globl \name
    .hidden \name
    .type \name, %object
\name:
    .incbin "\file"
    .size \name, . - \name
    .endm

    .section .rodata
    table tube_gain, "tube_gain.bin", 64
    table peak_kernel, "peak_kernel.bin", 64

    .data
    table release_rate, "release_rate.bin", 8
    .globl release_rate_end
    .hidden release_rate_end
release_rate_end:

    .section .note.GNU-stack, "", %progbits
