/* embedded_payload.S: lays the pictures' table, the plug-in archive and the desktop icon one behind
   the other. ZEPH_ARCHIVE_BYTES is the length that the program was compiled for. */

    .macro payload_symbol name
    .globl \name
    .hidden \name
    .type \name, %object
\name:
    .endm

    /* Only the table needs relocating; being one section keeps the order whatever the linker does. */
    .section .data.rel.ro.zeph_payload, "aw", %progbits
    .balign 32
    payload_symbol zeph_payload_images
    .dc.a inline_image_splash
    .dc.a inline_image_background
    .dc.a inline_image_window_icon
    .size zeph_payload_images, . - zeph_payload_images

    payload_symbol zeph_payload_archive
    .incbin ZEPH_PAYLOAD_ARCHIVE
    .size zeph_payload_archive, . - zeph_payload_archive

    payload_symbol zeph_payload_icon
    .incbin ZEPH_PAYLOAD_ICON
    .size zeph_payload_icon, . - zeph_payload_icon
    payload_symbol zeph_payload_end

    .if (zeph_payload_icon - zeph_payload_archive) != ZEPH_ARCHIVE_BYTES
    .error "the embedded archive does not have the length that the program was compiled for"
    .endif

    .section .note.GNU-stack, "", %progbits
