/* embedded_steps.S: what a shell does in an installation, and later, as strings of the program. */

    .section .rodata.zeph_steps, "a", %progbits

    .globl zeph_install_steps
    .hidden zeph_install_steps
    .type zeph_install_steps, %object
zeph_install_steps:
    .incbin ZEPH_INSTALL_STEPS
    .byte 0
    .size zeph_install_steps, . - zeph_install_steps

    .globl zeph_uninstaller
    .hidden zeph_uninstaller
    .type zeph_uninstaller, %object
zeph_uninstaller:
    .incbin ZEPH_UNINSTALLER
    .byte 0
    .size zeph_uninstaller, . - zeph_uninstaller

    .section .note.GNU-stack, "", %progbits
