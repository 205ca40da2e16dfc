/* embedded_steps.S: the text of the installation's steps, as a string of the program. */

    .section .rodata.zeph_steps, "a", %progbits
    .globl zeph_install_steps
    .hidden zeph_install_steps
    .type zeph_install_steps, %object
zeph_install_steps:
    .incbin ZEPH_INSTALL_STEPS
    .byte 0
    .size zeph_install_steps, . - zeph_install_steps

    .section .note.GNU-stack, "", %progbits
