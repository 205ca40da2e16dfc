/* embedded_artwork.S: the converted pictures as read-only bytes of the program. The blobs are found
   in the folder that the build gives the assembler with -I. */

    .macro inline_image name
    .balign 16
    .globl inline_image_\name
    .hidden inline_image_\name
    .type inline_image_\name, %object
inline_image_\name:
    .incbin "\name\().blob"
    .size inline_image_\name, . - inline_image_\name
    .endm

    .section .rodata.inline_images, "a", %progbits
    inline_image splash
    inline_image background
    inline_image window_icon
    inline_image folder_icon

    .section .note.GNU-stack, "", %progbits
